// Reads pictures with libpng, libtiff and libjpeg, independent of the code of the tool.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

struct PictureFile {
    size_t width = 0;
    size_t height = 0;
    size_t channels = 0;
    unsigned depth = 0;
    std::vector<uint16_t> samples;

    std::vector<uint16_t> Pixel(size_t x, size_t y) const;
};

// All throw std::runtime_error for a file of another format.
PictureFile ReadPng(const std::vector<uint8_t>& bytes);
PictureFile ReadPngFile(const std::string& path);
PictureFile ReadTiffFile(const std::string& path);
PictureFile ReadJpegFile(const std::string& path);
