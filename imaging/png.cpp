#include <algorithm>
#include <cstring>
#include <libdeflate.h>
#include <memory>

#include "imaging/encode.h"
#include "imaging/error.h"

namespace ZelImage::Internal {
namespace {

// Frames come faster than the best compression is found.
constexpr int kCompressionLevel = 1;
constexpr uint8_t kSubFilter = 1;  // each byte less that of the pixel before

// A line as the bytes of the file: samples with the high byte first.
void StoreLine(const Picture& picture, size_t y, uint8_t* out) {
    std::memcpy(out, picture.Line(y), picture.LineBytes());
    if (picture.depth == 8) return;
    for (size_t i = 0; i < picture.LineSamples(); ++i) {
        uint16_t sample = 0;
        std::memcpy(&sample, out + 2 * i, sizeof sample);
        out[2 * i] = static_cast<uint8_t>(sample >> 8);
        out[2 * i + 1] = static_cast<uint8_t>(sample);
    }
}

std::vector<uint8_t> FilteredLines(const Picture& picture) {
    const size_t pixel = picture.channels * (picture.depth / 8);
    const size_t size = picture.LineBytes();
    std::vector<uint8_t> line(pixel + size);  // behind a pixel of zeros
    std::vector<uint8_t> lines((1 + size) * picture.height);
    uint8_t* out = lines.data();
    for (size_t y = 0; y < picture.height; ++y) {
        StoreLine(picture, y, line.data() + pixel);
        *out++ = kSubFilter;
        for (size_t i = 0; i < size; ++i)
            out[i] = static_cast<uint8_t>(line[pixel + i] - line[i]);
        out += size;
    }
    return lines;
}

std::vector<uint8_t> Compress(const std::vector<uint8_t>& bytes) {
    const std::unique_ptr<libdeflate_compressor, void (*)(libdeflate_compressor*)> compressor(
        libdeflate_alloc_compressor(kCompressionLevel), libdeflate_free_compressor);
    if (compressor == nullptr) throw Error("PNG: the encoder does not start");
    std::vector<uint8_t> result(libdeflate_zlib_compress_bound(compressor.get(), bytes.size()));
    result.resize(libdeflate_zlib_compress(compressor.get(), bytes.data(), bytes.size(),
                                           result.data(), result.size()));
    if (result.empty()) throw Error("PNG: the picture cannot be compressed");
    return result;
}

void AppendNumber(std::vector<uint8_t>& file, uint32_t number) {
    for (int shift = 24; shift >= 0; shift -= 8)
        file.push_back(static_cast<uint8_t>(number >> shift));
}

void AppendChunk(std::vector<uint8_t>& file, const char* type, const uint8_t* data, size_t size) {
    AppendNumber(file, static_cast<uint32_t>(size));
    const size_t start = file.size();
    file.insert(file.end(), type, type + 4);
    file.insert(file.end(), data, data + size);
    AppendNumber(file, libdeflate_crc32(0, file.data() + start, file.size() - start));
}

// A chunk holds less than 2 GB; the data may be cut anywhere.
void AppendData(std::vector<uint8_t>& file, const std::vector<uint8_t>& data) {
    constexpr size_t kLongest = size_t{1} << 30;
    for (size_t at = 0; at < data.size(); at += kLongest)
        AppendChunk(file, "IDAT", data.data() + at, std::min(kLongest, data.size() - at));
}

std::vector<uint8_t> Header(const Picture& picture) {
    constexpr uint8_t kGray = 0;
    constexpr uint8_t kRgb = 2;
    std::vector<uint8_t> header;
    AppendNumber(header, static_cast<uint32_t>(picture.width));
    AppendNumber(header, static_cast<uint32_t>(picture.height));
    header.push_back(static_cast<uint8_t>(picture.depth));
    header.push_back(picture.channels == 1 ? kGray : kRgb);
    header.insert(header.end(), 3, 0);  // the only compression and filters, and no interlacing
    return header;
}

}  // namespace

std::vector<uint8_t> EncodePng(const Picture& picture) {
    const std::vector<uint8_t> data = Compress(FilteredLines(picture));
    const std::vector<uint8_t> header = Header(picture);
    std::vector<uint8_t> file = {0x89, 'P', 'N', 'G', '\r', '\n', 0x1A, '\n'};
    file.reserve(data.size() + 100);
    AppendChunk(file, "IHDR", header.data(), header.size());
    AppendData(file, data);
    AppendChunk(file, "IEND", nullptr, 0);
    return file;
}

}  // namespace ZelImage::Internal
