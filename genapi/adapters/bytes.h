// Numbers in messages and buffers, wherever they lie and whatever the byte order of the machine.
#pragma once

#include <cstdint>

#include <GenApi/GenApiNamespace.h>

namespace GENAPI_NAMESPACE {
namespace Engine {

inline std::uint16_t big16(const std::uint8_t* bytes) {
    return static_cast<std::uint16_t>(bytes[0] << 8 | bytes[1]);
}

inline std::uint32_t big32(const std::uint8_t* bytes) {
    return static_cast<std::uint32_t>(big16(bytes)) << 16 | big16(bytes + 2);
}

inline std::uint16_t little16(const std::uint8_t* bytes) {
    return static_cast<std::uint16_t>(bytes[1] << 8 | bytes[0]);
}

inline std::uint32_t little32(const std::uint8_t* bytes) {
    return static_cast<std::uint32_t>(little16(bytes + 2)) << 16 | little16(bytes);
}

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE
