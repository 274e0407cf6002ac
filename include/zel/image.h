// Images as they lie in the memory of a frame.
#ifndef ZEL_IMAGE_H
#define ZEL_IMAGE_H

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <utility>

namespace zel {

namespace detail {

// How an image lies in memory, by its PFNC number.
struct Planes {
    size_t count;       // images of one component after each other
    uint32_t lineBits;  // of a pixel in the first of them
};

inline Planes planesOf(uint64_t format) {
    const auto bits = static_cast<uint32_t>(format >> 16 & 0xFF);
    switch (format) {
        case 0x02180021:  // RGB8_Planar
        case 0x02300022:  // RGB10_Planar
        case 0x02300023:  // RGB12_Planar
        case 0x02300024:  // RGB16_Planar
        case 0x021800B3:  // Coord3D_ABC8_Planar
        case 0x021E00DC:  // Coord3D_ABC10p_Planar
        case 0x022400DF:  // Coord3D_ABC12p_Planar
        case 0x023000BA:  // Coord3D_ABC16_Planar
        case 0x026000C1:  // Coord3D_ABC32f_Planar
            return {3, bits / 3};
        case 0x021000B5:  // Coord3D_AC8_Planar
        case 0x021400F1:  // Coord3D_AC10p_Planar
        case 0x021800F3:  // Coord3D_AC12p_Planar
        case 0x022000BC:  // Coord3D_AC16_Planar
        case 0x024000C3:  // Coord3D_AC32f_Planar
            return {2, bits / 2};
        case 0x020C0112:  // YCbCr420_8_YY_CbCr_Semiplanar
        case 0x020C0114:  // YCbCr420_8_YY_CrCb_Semiplanar
            return {2, 8};
        default:
            return {1, bits};
    }
}

}  // namespace detail

// The layout of an image in memory.
struct ImageLayout {
    uint64_t format = 0;  // PFNC number, see GenTL/PFNC.h
    size_t width = 0;     // pixels of a line
    size_t height = 0;    // lines
    size_t xOffset = 0;   // place on the sensor, in pixels
    size_t yOffset = 0;
    size_t linePadding = 0;      // bytes after each line
    size_t deliveredHeight = 0;  // lines that came; `height` if the producer does not say
};

// An image in the memory of a frame. It keeps the frame leased, so that the memory stays as it is
// for as long as the image exists; see Frame.
class Image {
  public:
    Image() = default;

    // The first byte, and the number of bytes that belong to the image.
    const uint8_t* data() const { return data_; }
    size_t size() const { return size_; }

    // The PFNC number of the pixel format, see GenTL/PFNC.h.
    uint64_t format() const { return layout_.format; }

    // The bits that a pixel occupies, which are part of the PFNC number.
    uint32_t bitsPerPixel() const { return static_cast<uint32_t>(layout_.format >> 16 & 0xFF); }

    size_t width() const { return layout_.width; }
    size_t height() const { return layout_.height; }

    // Bytes from one line to the next: the bits of a line rounded up to whole bytes, and the
    // padding. Of a planar format, those of the first plane.
    size_t pitch() const {
        const size_t bits = layout_.width * detail::planesOf(layout_.format).lineBits;
        return (bits + 7) / 8 + layout_.linePadding;
    }

    // The number of planes: 1 for all formats but planar and semiplanar ones.
    size_t planes() const { return detail::planesOf(layout_.format).count; }

    // The place of the image on the sensor, in pixels.
    size_t xOffset() const { return layout_.xOffset; }
    size_t yOffset() const { return layout_.yOffset; }

    // The lines that came, of cameras whose frames end early.
    size_t deliveredHeight() const { return layout_.deliveredHeight; }

    // A line of the first plane.
    const uint8_t* line(size_t y) const { return data_ + y * pitch(); }

    bool empty() const { return size_ == 0; }

    // For the layer itself: `available` bytes of memory that `keep` keeps begin at `data`. The
    // image ends where they do.
    Image(std::shared_ptr<const void> keep, const uint8_t* data, size_t available,
          const ImageLayout& layout)
        : keep_(std::move(keep)), data_(data), layout_(layout) {
        size_ = std::min(available, bytes());
    }

  private:
    size_t bytes() const {
        const bool isSemiplanar = planes() == 2 && bitsPerPixel() == 12;
        const size_t lines =
            isSemiplanar ? layout_.height + (layout_.height + 1) / 2 : layout_.height * planes();
        return pitch() * lines;
    }

    std::shared_ptr<const void> keep_;
    const uint8_t* data_ = nullptr;
    size_t size_ = 0;
    ImageLayout layout_;
};

}  // namespace zel

#endif  // ZEL_IMAGE_H
