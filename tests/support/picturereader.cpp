#include "tests/support/picturereader.h"

#include <csetjmp>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <iterator>
#include <jpeglib.h>
#include <memory>
#include <png.h>
#include <stdexcept>
#include <tiffio.h>

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

PictureFile Describe(png_structp png, png_infop info, const std::vector<uint8_t>& rows) {
    PictureFile file;
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

std::vector<uint16_t> PictureFile::Pixel(size_t x, size_t y) const {
    const auto first = samples.begin() + static_cast<std::ptrdiff_t>((y * width + x) * channels);
    return {first, first + static_cast<std::ptrdiff_t>(channels)};
}

PictureFile ReadPng(const std::vector<uint8_t>& bytes) {
    png_structp png = png_create_read_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
    png_infop info = png_create_info_struct(png);
    Source source{bytes.data(), bytes.size()};
    std::vector<uint8_t> rows;
    const bool good = Decode(png, info, &source, &rows);
    PictureFile file;
    if (good) file = Describe(png, info, rows);
    png_destroy_read_struct(&png, &info, nullptr);
    if (!good) throw std::runtime_error("not a PNG file");
    return file;
}

PictureFile ReadPngFile(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    if (!in) throw std::runtime_error("cannot read " + path);
    return ReadPng({std::istreambuf_iterator<char>(in), {}});
}

PictureFile ReadTiffFile(const std::string& path) {
    const std::unique_ptr<TIFF, void (*)(TIFF*)> tiff(TIFFOpen(path.c_str(), "r"), TIFFClose);
    if (tiff == nullptr) throw std::runtime_error("no TIFF file");
    uint32_t width = 0;
    uint32_t height = 0;
    uint16_t channels = 0;
    uint16_t depth = 0;
    uint16_t meaning = 0;
    TIFFGetField(tiff.get(), TIFFTAG_IMAGEWIDTH, &width);
    TIFFGetField(tiff.get(), TIFFTAG_IMAGELENGTH, &height);
    TIFFGetField(tiff.get(), TIFFTAG_SAMPLESPERPIXEL, &channels);
    TIFFGetField(tiff.get(), TIFFTAG_BITSPERSAMPLE, &depth);
    TIFFGetField(tiff.get(), TIFFTAG_PHOTOMETRIC, &meaning);
    if (meaning != (channels == 1 ? PHOTOMETRIC_MINISBLACK : PHOTOMETRIC_RGB)) {
        throw std::runtime_error("the TIFF file means other colours");
    }
    PictureFile file{width, height, channels, depth, {}};
    std::vector<uint8_t> line(static_cast<size_t>(TIFFScanlineSize(tiff.get())));
    for (uint32_t y = 0; y < height; ++y) {
        if (TIFFReadScanline(tiff.get(), line.data(), y) != 1) {
            throw std::runtime_error("the TIFF file ends early");
        }
        for (size_t i = 0; i < line.size(); i += depth / 8) {
            uint16_t sample = line[i];
            if (depth == 16) std::memcpy(&sample, &line[i], sizeof sample);
            file.samples.push_back(sample);
        }
    }
    return file;
}

PictureFile ReadJpegFile(const std::string& path) {
    const std::unique_ptr<FILE, int (*)(FILE*)> in(std::fopen(path.c_str(), "rb"), std::fclose);
    if (in == nullptr) throw std::runtime_error("cannot read " + path);
    jpeg_decompress_struct jpeg{};
    jpeg_error_mgr errors{};
    jpeg.err = jpeg_std_error(&errors);
    errors.error_exit = [](j_common_ptr) { throw std::runtime_error("no JPEG file"); };
    jpeg_create_decompress(&jpeg);
    jpeg_stdio_src(&jpeg, in.get());
    jpeg_read_header(&jpeg, TRUE);
    jpeg_start_decompress(&jpeg);
    PictureFile file{
        jpeg.output_width, jpeg.output_height, static_cast<size_t>(jpeg.output_components), 8, {}};
    std::vector<uint8_t> line(file.width * file.channels);
    while (jpeg.output_scanline < jpeg.output_height) {
        JSAMPROW row = line.data();
        jpeg_read_scanlines(&jpeg, &row, 1);
        file.samples.insert(file.samples.end(), line.begin(), line.end());
    }
    jpeg_destroy_decompress(&jpeg);
    return file;
}
