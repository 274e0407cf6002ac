// An image of a camera: any pixel format, size and padding, over fewer or more bytes than it needs.
// It becomes a picture of that size, or there is a reason why not.
//
// The first byte of an input chooses the format, 0 one that is not known. Width, height and padding
// follow, each as a byte that says how many bytes it has (1 to 8) and these. The rest is the image.
#include "tools/imaging/decode.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <vector>

#include "fuzz/message.h"
#include "tools/imaging/pixelformat.h"

namespace {

// All that can be decoded, behind one that cannot: numbers are made of one or three components,
// bits of a pixel and a small number of their own.
std::vector<uint64_t> MakeFormats() {
    std::vector<uint64_t> formats = {0x01080FFF};
    for (uint64_t components : {1U, 2U})
        for (uint64_t bits = 1; bits <= 64; ++bits)
            for (uint64_t id = 0; id < 0x200; ++id) {
                const uint64_t number = components << 24 | bits << 16 | id;
                if (Imaging::FindPixelFormat(number) != nullptr) formats.push_back(number);
            }
    return formats;
}

void Require(bool condition) {
    if (!condition) std::abort();
}

size_t Size(Fuzz::Message& input) {
    return input.Number(1 + input.Number(1) % 8);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    static const std::vector<uint64_t> kFormats = MakeFormats();
    Fuzz::Message input{data, size};
    const uint64_t format = kFormats[input.Number(1) % kFormats.size()];
    const size_t width = Size(input);
    const size_t height = Size(input);
    const size_t padding = Size(input);
    try {
        const Imaging::Picture picture =
            Imaging::Decode({input.data, input.size, format, width, height, padding});
        Require(picture.width == width && picture.height == height);
        Require(picture.samples.size() == width * height * picture.channels);
    } catch (const Imaging::Error& error) {
        Require(*error.what() != '\0');
    }
    return 0;
}
