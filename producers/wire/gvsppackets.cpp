#include "producers/wire/gvsppackets.h"

namespace ZelCti::Gvsp {

std::optional<uint64_t> ImageSize(uint32_t pixelFormat, const Geometry& geometry) {
    constexpr uint64_t kBitsPerByte = 8;
    const uint64_t bitsPerPixel = pixelFormat >> 16 & 0xFF;
    const uint64_t bitsPerLine = geometry.sizeX * bitsPerPixel;
    const uint64_t bytesPerLine =
        (bitsPerLine + kBitsPerByte - 1) / kBitsPerByte + geometry.paddingX;
    const uint64_t mostLines =
        bytesPerLine == 0 ? UINT64_MAX : (UINT64_MAX - geometry.paddingY) / bytesPerLine;
    if (geometry.sizeY > mostLines) return std::nullopt;
    return geometry.sizeY * bytesPerLine + geometry.paddingY;
}

}  // namespace ZelCti::Gvsp
