// Reads PNG files back, with the decoder of libpng and not with code of the tool.
#ifndef ZELCAM_TESTS_TOOLS_PNGFILE_H
#define ZELCAM_TESTS_TOOLS_PNGFILE_H

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

struct PngFile {
    size_t width = 0;
    size_t height = 0;
    size_t channels = 0;
    unsigned depth = 0;
    std::vector<uint16_t> samples;

    std::vector<uint16_t> Pixel(size_t x, size_t y) const;
};

// Throws std::runtime_error when the bytes are not a PNG file.
PngFile ReadPng(const std::vector<uint8_t>& bytes);
PngFile ReadPngFile(const std::string& path);

#endif  // ZELCAM_TESTS_TOOLS_PNGFILE_H
