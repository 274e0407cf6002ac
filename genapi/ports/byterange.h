// The check of accesses to ports over memory.
#pragma once

#include <cstdint>

#include <GenApi/GenApiNamespace.h>

namespace GENAPI_NAMESPACE {
namespace Engine {

// Reading eight bytes here asks a port over memory how many bytes it holds, as a little-endian
// number; registers with negative addresses count from there.
constexpr std::int64_t kPortSizeAddress = 0x7FFFFFFFFFFFFFF0;
constexpr std::int64_t kPortSizeLength = 8;

// Answers that question. False when another address is read.
bool readPortSize(void* buffer, std::int64_t address, std::int64_t length, std::int64_t size);

// RuntimeException unless [address, address + length] lies within [begin, end]; the text begins
// with the name of the port.
void checkByteRange(const char* portName, std::int64_t address, std::int64_t length,
                    std::int64_t begin, std::int64_t end);

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE
