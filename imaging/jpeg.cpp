#include <csetjmp>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <jpeglib.h>
#include <string>

#include "imaging/encode.h"
#include "imaging/error.h"

namespace ZelImage::Internal {
namespace {

// The encoder is C and reports failures with longjmp, which must not skip a destructor: objects
// live in this class and outside the function that calls setjmp.
class JpegEncoder {
  public:
    explicit JpegEncoder(int quality) : quality_(quality) {
        jpeg_.err = jpeg_std_error(&errors_);
        jpeg_.client_data = this;
        errors_.error_exit = OnError;
        errors_.output_message = [](j_common_ptr) {};
    }
    ~JpegEncoder() {
        jpeg_destroy_compress(&jpeg_);
        std::free(bytes_);
    }
    JpegEncoder(const JpegEncoder&) = delete;
    JpegEncoder& operator=(const JpegEncoder&) = delete;

    std::vector<uint8_t> Encode(const Picture& picture) {
        line_.resize(picture.LineBytes());
        if (!Run(picture)) throw Error(std::string("JPEG: ") + message_);
        return {bytes_, bytes_ + size_};
    }

  private:
    bool Run(const Picture& picture) {
        if (setjmp(jump_) != 0) return false;
        WriteAll(picture);
        return true;
    }

    void WriteAll(const Picture& picture) {
        jpeg_create_compress(&jpeg_);
        jpeg_mem_dest(&jpeg_, &bytes_, &size_);
        jpeg_.image_width = static_cast<JDIMENSION>(picture.width);
        jpeg_.image_height = static_cast<JDIMENSION>(picture.height);
        jpeg_.input_components = static_cast<int>(picture.channels);
        jpeg_.in_color_space = picture.channels == 1 ? JCS_GRAYSCALE : JCS_RGB;
        jpeg_set_defaults(&jpeg_);
        jpeg_set_quality(&jpeg_, quality_, TRUE);
        jpeg_start_compress(&jpeg_, TRUE);
        while (jpeg_.next_scanline < jpeg_.image_height) {
            std::memcpy(line_.data(), picture.Line(jpeg_.next_scanline), line_.size());
            JSAMPROW line = line_.data();
            jpeg_write_scanlines(&jpeg_, &line, 1);
        }
        jpeg_finish_compress(&jpeg_);
    }

    static void OnError(j_common_ptr jpeg) {
        auto& self = *static_cast<JpegEncoder*>(jpeg->client_data);
        jpeg->err->format_message(jpeg, self.message_);
        longjmp(self.jump_, 1);
    }

    jpeg_compress_struct jpeg_{};
    jpeg_error_mgr errors_{};
    jmp_buf jump_{};
    char message_[JMSG_LENGTH_MAX] = "";
    const int quality_;
    std::vector<uint8_t> line_;       // the encoder asks for lines that it may change
    unsigned char* bytes_ = nullptr;  // the encoder's
    unsigned long size_ = 0;
};

}  // namespace

std::vector<uint8_t> EncodeJpeg(const Picture& picture, int quality) {
    return JpegEncoder(quality).Encode(picture);
}

}  // namespace ZelImage::Internal
