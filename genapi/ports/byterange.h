// The check of accesses to ports over memory.
#pragma once

#include <cstdint>

#include <GenApi/GenApiNamespace.h>

namespace GENAPI_NAMESPACE {
namespace Engine {

// RuntimeException unless [address, address + length] lies within [begin, end]; the text begins
// with the name of the port.
void checkByteRange(const char* portName, std::int64_t address, std::int64_t length,
                    std::int64_t begin, std::int64_t end);

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE
