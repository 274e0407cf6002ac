// An image of a camera: any pixel format, size and pitch, over fewer or more bytes than it needs.
// It becomes a picture of that size, numbers and a file, or there is a reason why not.
//
// The first two bytes of an input choose the format, 0 one that is not known, the third the
// options. Width, height and pitch follow, each as a byte that says how many bytes it has (1 to 8)
// and these. The rest is the image.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <vector>

#include "ZelImage/ZelImage.h"
#include "fuzz/message.h"

namespace {

void Require(bool condition) {
    if (!condition) std::abort();
}

// All of the table, behind one that is unknown.
std::vector<uint64_t> MakeFormats() {
    std::vector<uint64_t> formats = {0x01080FFF};
    for (size_t i = 0; ZelImage::FormatAt(i) != 0; ++i)
        formats.push_back(ZelImage::FormatAt(i));
    return formats;
}

size_t Size(Fuzz::Message& input) {
    return input.Number(1 + input.Number(1) % 8);
}

void RequireReason(ZelCamErr error) {
    Require(error == ZelCamErr_Success || *ZelImage::LastReason() != '\0');
}

// A conversion that has a size succeeds, unless the image itself cannot be had: its bytes, or those
// of a mosaic that is too small.
void Convert(const ZelImage::View& view, uint64_t target, const ZelImage::ConvertOptions& options) {
    const size_t size = ZelImage::ConvertedSize(view, target, 0);
    if (size == 0 || ZelImage::ImageSize(view) > view.size) return;
    std::vector<uint8_t> picture(size);
    const ZelCamErr error =
        ZelImage::Convert(view, target, &options, picture.data(), picture.size(), 0);
    Require(error == ZelCamErr_Success || view.width < 2 || view.height < 2);
    RequireReason(error);
}

bool Drop(void*, const void*, size_t) {
    return true;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    static const std::vector<uint64_t> kFormats = MakeFormats();
    Fuzz::Message input{data, size};
    ZelImage::View view;
    view.pixelFormat = kFormats[input.Number(2) % kFormats.size()];
    const uint64_t choice = input.Number(1);
    ZelImage::ConvertOptions options;
    options.demosaic = static_cast<ZelImage::Demosaic>(choice % 2);
    options.matrix = static_cast<ZelImage::YuvMatrix>(choice / 2 % 4);
    options.range = static_cast<ZelImage::YuvRange>(choice / 8 % 3);
    view.width = Size(input);
    view.height = Size(input);
    view.linePitch = Size(input);
    view.data = input.data;
    view.size = input.size;

    ZelImage::FormatInfo info{};
    ZelImage::DescribeFormat(view.pixelFormat, &info, sizeof info);
    Convert(view, info.pictureFormat, options);
    Convert(view, info.unpackedFormat, options);
    Convert(view, ZelImage::FormatByName(choice < 128 ? "BGRa8" : "Mono8"), options);
    const size_t numbers = ZelImage::UnpackedSize(view);
    if (numbers != 0 && ZelImage::ImageSize(view) <= view.size) {
        std::vector<uint8_t> unpacked(numbers);
        Require(ZelImage::Unpack(view, unpacked.data(), numbers) == ZelCamErr_Success);
    }
    const auto type = static_cast<ZelImage::FileType>(1 + choice / 24 % 4);
    RequireReason(ZelImage::Encode(view, type, nullptr, Drop, nullptr));
    return 0;
}
