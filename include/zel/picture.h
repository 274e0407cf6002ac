// Pictures of images: converted, and saved. Programs that use this header link libZelImage.
#ifndef ZEL_PICTURE_H
#define ZEL_PICTURE_H

#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <string>
#include <utility>
#include <vector>

#include "ZelImage/ZelImage.h"
#include "zel/error.h"
#include "zel/image.h"

namespace zel {

using ZelImage::ConvertOptions;
using ZelImage::SaveOptions;

// An image with memory of its own: lines without padding.
class Picture {
  public:
    const uint8_t* data() const { return bytes_.data(); }
    size_t size() const { return bytes_.size(); }
    uint64_t format() const { return format_; }
    size_t width() const { return width_; }
    size_t height() const { return height_; }
    size_t pitch() const { return ZelImage::LineBytes(format_, width_); }
    const uint8_t* line(size_t y) const { return data() + y * pitch(); }

    // For the layer itself.
    Picture(uint64_t format, size_t width, size_t height, std::vector<uint8_t> bytes)
        : format_(format), width_(width), height_(height), bytes_(std::move(bytes)) {}

  private:
    uint64_t format_;
    size_t width_;
    size_t height_;
    std::vector<uint8_t> bytes_;
};

namespace detail {

inline ZelImage::View viewOf(const Image& image) {
    return {image.data(),  image.size(),   image.format(),
            image.width(), image.height(), image.pitch()};
}

inline ZelImage::View viewOf(const Picture& picture) {
    return {picture.data(),  picture.size(),   picture.format(),
            picture.width(), picture.height(), picture.pitch()};
}

}  // namespace detail

// The PFNC name of a pixel format, or its number as "0x01080001".
inline std::string formatName(uint64_t format) {
    if (const char* const name = ZelImage::FormatName(format)) return name;
    char number[24];
    std::snprintf(number, sizeof number, "0x%08llX", static_cast<unsigned long long>(format));
    return number;
}

// The image in another pixel format, by its PFNC name: "RGB8", "BGR8", "RGBa8", "BGRa8", "Mono8",
// "RGB16", "BGR16", "Mono16", or the same components unpacked ("Mono12" of "Mono12p"). See
// ZelImage::Convert.
template <typename AnyImage>
Picture convert(const AnyImage& image, const std::string& format,
                const ConvertOptions& options = {}) {
    const ZelImage::View view = detail::viewOf(image);
    const uint64_t number = ZelImage::FormatByName(format.c_str());
    std::vector<uint8_t> bytes(ZelImage::ConvertedSize(view, number, 0));
    detail::check(ZelImage::Convert(view, number, &options, bytes.data(), bytes.size(), 0),
                  "converting " + formatName(view.pixelFormat) + " to " + format, "",
                  ZelImage::LastReason());
    return {number, view.width, view.height, std::move(bytes)};
}

// Writes an image to a file whose name ends with .png, .tif, .tiff, .jpg, .jpeg or .raw. The file
// is replaced as a whole. See ZelImage::Save.
template <typename AnyImage>
void save(const AnyImage& image, const std::filesystem::path& file,
          const SaveOptions& options = {}) {
    detail::check(ZelImage::Save(detail::viewOf(image), file.c_str(), &options),
                  "saving " + file.string(), "", ZelImage::LastReason());
}

}  // namespace zel

#endif  // ZEL_PICTURE_H
