// Turns results of a producer's port into the exceptions that a node map expects.
#pragma once

#include <cstddef>
#include <cstdint>

namespace ZelCameraApi::Internal {

// One access to a port's registers, for the texts of exceptions.
struct PortAccess {
    const char* verb;  // "Read" or "Write"
    int64_t address;
    int64_t length;
};

// Throws unless the access succeeded and moved all its bytes.
void CheckPortAccess(const PortAccess& access, int result, size_t actualSize);

// Throws unless GCGetPortInfo succeeded.
void CheckPortInfo(int command, int result);

}  // namespace ZelCameraApi::Internal
