// Checks accesses to ports over memory.
#pragma once

#include <cstdint>

#include <GenApi/GenApiNamespace.h>

namespace GENAPI_NAMESPACE {
namespace Engine {

// Reading eight bytes at this address asks a port over memory for its size, as a little-endian
// number. Registers with negative addresses count from there.
constexpr int64_t kPortSizeAddress = 0x7FFFFFFFFFFFFFF0;
constexpr int64_t kPortSizeLength = 8;

// Answers a read of the size; false for reads of other addresses.
bool ReadPortSize(void* buffer, int64_t address, int64_t length, int64_t size);

// RuntimeException unless [address, address + length] lies within [begin, end]; its text begins
// with the name of the port.
void CheckByteRange(const char* portName, int64_t address, int64_t length, int64_t begin,
                    int64_t end);

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE
