#include <algorithm>
#include <cstdarg>
#include <cstdio>
#include <exception>
#include <memory>
#include <string>
#include <tiffio.h>

#include "imaging/encode.h"
#include "imaging/error.h"

namespace ZelImage::Internal {
namespace {

// A file in memory for the encoder, which is C: nothing here throws.
class MemoryFile {
  public:
    std::vector<uint8_t>& Bytes() { return bytes_; }
    const std::string& Message() const { return message_; }

    static tmsize_t Read(thandle_t, void*, tmsize_t) { return 0; }
    static tmsize_t Write(thandle_t file, void* data, tmsize_t size) {
        return static_cast<MemoryFile*>(file)->Store(static_cast<const uint8_t*>(data), size);
    }
    static toff_t Seek(thandle_t file, toff_t offset, int whence) {
        auto& self = *static_cast<MemoryFile*>(file);
        if (whence == SEEK_CUR) offset += self.at_;
        if (whence == SEEK_END) offset += self.bytes_.size();
        return self.at_ = offset;
    }
    static int Close(thandle_t) { return 0; }
    static toff_t Size(thandle_t file) { return static_cast<MemoryFile*>(file)->bytes_.size(); }
    static int Note(TIFF*, void* file, const char*, const char* format, va_list arguments) {
        char text[200];
        std::vsnprintf(text, sizeof text, format, arguments);
        static_cast<MemoryFile*>(file)->KeepMessage(text);
        return 1;
    }
    static int Ignore(TIFF*, void*, const char*, const char*, va_list) { return 1; }

  private:
    tmsize_t Store(const uint8_t* data, tmsize_t size) noexcept {
        try {
            const size_t end = at_ + static_cast<size_t>(size);
            if (at_ == bytes_.size()) {
                bytes_.insert(bytes_.end(), data, data + size);
            } else {
                bytes_.resize(std::max(bytes_.size(), end));
                std::copy(data, data + size, bytes_.begin() + static_cast<std::ptrdiff_t>(at_));
            }
            at_ = end;
            return size;
        } catch (const std::exception&) {
            return 0;  // out of memory
        }
    }
    void KeepMessage(const char* text) noexcept { message_ = text; }

    std::vector<uint8_t> bytes_;
    size_t at_ = 0;
    std::string message_;
};

using OpenedTiff = std::unique_ptr<TIFF, void (*)(TIFF*)>;

OpenedTiff Open(MemoryFile& file) {
    const std::unique_ptr<TIFFOpenOptions, void (*)(TIFFOpenOptions*)> options(
        TIFFOpenOptionsAlloc(), TIFFOpenOptionsFree);
    if (options == nullptr) return {nullptr, TIFFClose};
    TIFFOpenOptionsSetErrorHandlerExtR(options.get(), MemoryFile::Note, &file);
    TIFFOpenOptionsSetWarningHandlerExtR(options.get(), MemoryFile::Ignore, &file);
    return {TIFFClientOpenExt("picture", "w", &file, MemoryFile::Read, MemoryFile::Write,
                              MemoryFile::Seek, MemoryFile::Close, MemoryFile::Size, nullptr,
                              nullptr, options.get()),
            TIFFClose};
}

void Describe(TIFF* tiff, const Picture& picture) {
    TIFFSetField(tiff, TIFFTAG_IMAGEWIDTH, static_cast<uint32_t>(picture.width));
    TIFFSetField(tiff, TIFFTAG_IMAGELENGTH, static_cast<uint32_t>(picture.height));
    TIFFSetField(tiff, TIFFTAG_BITSPERSAMPLE, static_cast<int>(picture.depth));
    TIFFSetField(tiff, TIFFTAG_SAMPLESPERPIXEL, static_cast<int>(picture.channels));
    TIFFSetField(tiff, TIFFTAG_PHOTOMETRIC,
                 picture.channels == 1 ? PHOTOMETRIC_MINISBLACK : PHOTOMETRIC_RGB);
    TIFFSetField(tiff, TIFFTAG_PLANARCONFIG, PLANARCONFIG_CONTIG);
    TIFFSetField(tiff, TIFFTAG_COMPRESSION, COMPRESSION_NONE);
    TIFFSetField(tiff, TIFFTAG_ORIENTATION, ORIENTATION_TOPLEFT);
    TIFFSetField(tiff, TIFFTAG_ROWSPERSTRIP, TIFFDefaultStripSize(tiff, 0));
}

// Samples lie in memory as in the file. The encoder asks for lines that it may change.
bool WriteLines(TIFF* tiff, const Picture& picture) {
    std::vector<uint8_t> line(picture.LineBytes());
    for (size_t y = 0; y < picture.height; ++y) {
        std::copy(picture.Line(y), picture.Line(y) + line.size(), line.begin());
        if (TIFFWriteScanline(tiff, line.data(), static_cast<uint32_t>(y)) != 1) return false;
    }
    return true;
}

}  // namespace

std::vector<uint8_t> EncodeTiff(const Picture& picture) {
    MemoryFile file;
    file.Bytes().reserve(picture.LineBytes() * picture.height + 4096);
    OpenedTiff tiff = Open(file);
    if (tiff == nullptr) throw Error("TIFF: the encoder does not start");
    Describe(tiff.get(), picture);
    const bool good = WriteLines(tiff.get(), picture) && TIFFFlush(tiff.get()) == 1;
    tiff.reset();
    if (!good) throw Error("TIFF: " + file.Message());
    return std::move(file.Bytes());
}

}  // namespace ZelImage::Internal
