// Reads numbers in messages and buffers, at any alignment and whatever the byte order of the
// machine.
#pragma once

#include <cstdint>

#include <GenApi/GenApiNamespace.h>

namespace GENAPI_NAMESPACE {
namespace Engine {

inline uint16_t Big16(const uint8_t* bytes) {
    return static_cast<uint16_t>(bytes[0] << 8 | bytes[1]);
}

inline uint32_t Big32(const uint8_t* bytes) {
    return static_cast<uint32_t>(Big16(bytes)) << 16 | Big16(bytes + 2);
}

inline uint16_t Little16(const uint8_t* bytes) {
    return static_cast<uint16_t>(bytes[1] << 8 | bytes[0]);
}

inline uint32_t Little32(const uint8_t* bytes) {
    return static_cast<uint32_t>(Little16(bytes + 2)) << 16 | Little16(bytes);
}

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE
