#include "tests/tools/pngfile.h"

#include <csetjmp>
#include <cstring>
#include <fstream>
#include <iterator>
#include <png.h>
#include <stdexcept>

namespace {

struct Source {
    const uint8_t* next;
    size_t left;
};

void ReadFromMemory(png_structp png, png_bytep out, size_t size) {
    auto& source = *static_cast<Source*>(png_get_io_ptr(png));
    if (size > source.left) png_error(png, "the file ends early");
    std::memcpy(out, source.next, size);
    source.next += size;
    source.left -= size;
}

// Jumps back instead of throwing through C; `rows` belongs to the caller and survives the jump.
bool Decode(png_structp png, png_infop info, Source* source, std::vector<uint8_t>* rows) {
    if (setjmp(png_jmpbuf(png)) != 0) return false;
    png_set_read_fn(png, source, ReadFromMemory);
    png_read_info(png, info);
    const size_t rowBytes = png_get_rowbytes(png, info);
    rows->resize(rowBytes * png_get_image_height(png, info));
    for (size_t offset = 0; offset < rows->size(); offset += rowBytes) {
        png_read_row(png, rows->data() + offset, nullptr);
    }
    png_read_end(png, nullptr);
    return true;
}

PngFile Describe(png_structp png, png_infop info, const std::vector<uint8_t>& rows) {
    PngFile file;
    file.width = png_get_image_width(png, info);
    file.height = png_get_image_height(png, info);
    file.channels = png_get_channels(png, info);
    file.depth = png_get_bit_depth(png, info);
    const size_t step = file.depth / 8;
    for (size_t i = 0; i < rows.size(); i += step) {
        file.samples.push_back(
            static_cast<uint16_t>(step == 1 ? rows[i] : rows[i] << 8 | rows[i + 1]));
    }
    return file;
}

}  // namespace

std::vector<uint16_t> PngFile::Pixel(size_t x, size_t y) const {
    const auto first = samples.begin() + static_cast<std::ptrdiff_t>((y * width + x) * channels);
    return {first, first + static_cast<std::ptrdiff_t>(channels)};
}

PngFile ReadPng(const std::vector<uint8_t>& bytes) {
    png_structp png = png_create_read_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
    png_infop info = png_create_info_struct(png);
    Source source{bytes.data(), bytes.size()};
    std::vector<uint8_t> rows;
    const bool good = Decode(png, info, &source, &rows);
    PngFile file;
    if (good) file = Describe(png, info, rows);
    png_destroy_read_struct(&png, &info, nullptr);
    if (!good) throw std::runtime_error("not a PNG file");
    return file;
}

PngFile ReadPngFile(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    if (!in) throw std::runtime_error("cannot read " + path);
    return ReadPng({std::istreambuf_iterator<char>(in), {}});
}
