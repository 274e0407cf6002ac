// Unpacks the components of a line to numbers.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "imaging/shape.h"

namespace ZelImage::Internal {

// Unpacks `count` components; the first form for formats of up to 8 bits, the second one for those
// of 9 to 16. In formats that are not packed, a number above full scale becomes full scale.
void UnpackLine(const Format& format, const uint8_t* line, size_t count, uint8_t* out);
void UnpackLine(const Format& format, const uint8_t* line, size_t count, uint16_t* out);

// Lines of the first plane of an image as components. It keeps the last ones that were asked for.
template <typename Sample>
class LineWindow {
  public:
    // `lines` is how many lines next to each other are used at once.
    LineWindow(const Image& image, size_t lines)
        : image_(image),
          count_(image.shape.planes[0].components),
          isDirect_(sizeof(Sample) == 1 && image.format.packing == Packing::Unpacked &&
                    image.format.depth == 8),
          kept_(isDirect_ ? 0 : lines) {
        for (Kept& kept : kept_)
            kept.components.resize(count_);
    }

    const Sample* Line(size_t y) {
        const uint8_t* const stored = image_.Line(0, y);
        if constexpr (sizeof(Sample) == 1) {
            if (isDirect_) return stored;
        }
        Kept& kept = kept_[y % kept_.size()];
        if (kept.line != y) UnpackLine(image_.format, stored, count_, kept.components.data());
        kept.line = y;
        return kept.components.data();
    }

  private:
    struct Kept {
        size_t line = SIZE_MAX;
        std::vector<Sample> components;
    };

    const Image& image_;
    const size_t count_;
    const bool isDirect_;
    std::vector<Kept> kept_;
};

}  // namespace ZelImage::Internal
