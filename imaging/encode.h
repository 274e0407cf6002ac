// Pictures as the bytes of files. Every function throws Error when the encoder refuses the picture.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace ZelImage::Internal {

// Gray (one channel) or red, green and blue (three); samples of 8 bits, or of 16 as the machine
// stores them. Lines follow each other without gaps.
struct Picture {
    size_t width;
    size_t height;
    size_t channels;
    uint32_t depth;
    const uint8_t* samples;

    size_t LineSamples() const { return width * channels; }
    size_t LineBytes() const { return LineSamples() * (depth / 8); }
    const uint8_t* Line(size_t y) const { return samples + y * LineBytes(); }
};

std::vector<uint8_t> EncodePng(const Picture& picture);

// Without compression, which is the fastest. Refuses a picture of 4 GB.
std::vector<uint8_t> EncodeTiff(const Picture& picture);

// Only resembles the picture, which has 8 bits. Refuses one of more than 65500 lines. Quality 1 to
// 100.
std::vector<uint8_t> EncodeJpeg(const Picture& picture, int quality);

}  // namespace ZelImage::Internal
