#include "tools/imaging/png.h"

#include <csetjmp>
#include <exception>
#include <png.h>

#include "tools/imaging/pixelformat.h"

namespace Imaging {
namespace {

// The encoder is C and reports failures with longjmp, which must not skip a destructor: objects
// live in this class and outside the function that calls setjmp, and callbacks throw nothing.
class PngEncoder {
  public:
    PngEncoder() : png_(png_create_write_struct(PNG_LIBPNG_VER_STRING, this, OnError, OnWarning)) {
        if (png_ == nullptr) throw Error("the PNG encoder does not start");
        info_ = png_create_info_struct(png_);
    }
    ~PngEncoder() { png_destroy_write_struct(&png_, &info_); }
    PngEncoder(const PngEncoder&) = delete;
    PngEncoder& operator=(const PngEncoder&) = delete;

    std::vector<uint8_t> Encode(const Picture& picture) {
        row_.resize(picture.width * picture.channels * (picture.depth / 8));
        if (!Run(picture)) throw Error("PNG: " + message_);
        return std::move(bytes_);
    }

  private:
    bool Run(const Picture& picture) {
        if (setjmp(png_jmpbuf(png_)) != 0) return false;
        WriteAll(picture);
        return true;
    }

    void WriteAll(const Picture& picture) {
        png_set_write_fn(png_, this, OnWrite, nullptr);
        png_set_IHDR(png_, info_, static_cast<png_uint_32>(picture.width),
                     static_cast<png_uint_32>(picture.height), static_cast<int>(picture.depth),
                     picture.channels == 1 ? PNG_COLOR_TYPE_GRAY : PNG_COLOR_TYPE_RGB,
                     PNG_INTERLACE_NONE, PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
        // Frames come faster than the best compression is found.
        png_set_compression_level(png_, 1);
        png_set_filter(png_, PNG_FILTER_TYPE_BASE, PNG_FILTER_SUB);
        png_write_info(png_, info_);
        const size_t perLine = picture.width * picture.channels;
        for (size_t y = 0; y < picture.height; ++y) {
            FillRow(picture.samples.data() + y * perLine, perLine, picture.depth);
            png_write_row(png_, row_.data());
        }
        png_write_end(png_, info_);
    }

    void FillRow(const uint16_t* samples, size_t count, uint32_t depth) {
        uint8_t* out = row_.data();
        for (size_t i = 0; i < count; ++i) {
            if (depth == 16) *out++ = static_cast<uint8_t>(samples[i] >> 8);
            *out++ = static_cast<uint8_t>(samples[i]);
        }
    }

    static void OnWrite(png_structp png, png_bytep data, size_t size) {
        auto& self = *static_cast<PngEncoder*>(png_get_io_ptr(png));
        try {
            self.bytes_.insert(self.bytes_.end(), data, data + size);
            return;
        } catch (const std::exception&) {
            // Reported below, outside of the handler that the jump would leave.
        }
        png_error(png, "out of memory");
    }

    static void OnError(png_structp png, png_const_charp message) {
        static_cast<PngEncoder*>(png_get_error_ptr(png))->KeepMessage(message);
        png_longjmp(png, 1);
    }

    static void OnWarning(png_structp, png_const_charp) {}

    void KeepMessage(const char* message) noexcept { message_ = message; }

    png_structp png_;
    png_infop info_ = nullptr;
    std::string message_;
    std::vector<uint8_t> row_;
    std::vector<uint8_t> bytes_;
};

}  // namespace

std::vector<uint8_t> EncodePng(const Picture& picture) {
    return PngEncoder().Encode(picture);
}

}  // namespace Imaging
