#include "imaging/picture.h"

#include <array>
#include <cstring>
#include <string>
#include <utility>
#include <vector>

#include "gentl/PFNC.h"
#include "imaging/error.h"
#include "imaging/kernels/kernels.h"
#include "imaging/picturesource.h"

namespace ZelImage::Internal {

namespace {

namespace PFNC = GenICam_3_0::PFNC;

using ReadChannels8 = const uint8_t* const*;
using ReadChannels16 = const uint16_t* const*;

void Stretch(const uint8_t* in, size_t count, uint32_t depth, uint8_t* out) {
    Kernels::Best().stretchTo8(in, count, depth, out);
}
void Stretch(const uint16_t* in, size_t count, uint32_t depth, uint8_t* out) {
    Kernels::Best().narrowTo8(in, count, depth, out);
}
void Stretch(const uint8_t* in, size_t count, uint32_t depth, uint16_t* out) {
    Kernels::Best().widenTo16(in, count, depth, out);
}
void Stretch(const uint16_t* in, size_t count, uint32_t depth, uint16_t* out) {
    Kernels::Best().stretchTo16(in, count, depth, out);
}
void Join(ReadChannels8 channels, size_t count, uint8_t* out) {
    Kernels::Best().join8(channels, count, out);
}
void Join(ReadChannels16 channels, size_t count, uint16_t* out) {
    Kernels::Best().join16(channels, count, out);
}
void TakeLuma(ReadChannels8 rgb, size_t count, uint8_t* out) {
    Kernels::Best().luma8(rgb, count, out);
}
void TakeLuma(ReadChannels16 rgb, size_t count, uint16_t* out) {
    Kernels::Best().luma16(rgb, count, out);
}

// Lines of channels: room for them, and where each is.
template <typename Sample>
class ChannelLines {
  public:
    ChannelLines(size_t width, size_t count) : samples_(width * count) {
        for (size_t i = 0; i < count; ++i)
            channels_[i] = samples_.data() + i * width;
    }

    const Channels<Sample>& Get() const { return channels_; }
    bool Has(size_t channel) const { return channels_[channel] != nullptr; }

  private:
    std::vector<Sample> samples_;
    Channels<Sample> channels_{};
};

// Writes lines of samples of `From`, `depth` bits, as pixels of `To`.
template <typename From, typename To>
class LineWriter {
  public:
    LineWriter(size_t width, size_t channels, uint32_t depth, const PictureForm& form)
        : width_(width),
          depth_(depth),
          form_(form),
          isStretched_(sizeof(From) != sizeof(To) || depth != form.depth),
          read_(width, channels),
          stretched_(width, isStretched_ ? channels : 0),
          opaque_(form.channels == 4 && channels < 4 ? width : 0, static_cast<To>(~0U)),
          line_(width * form.channels) {}

    // Where the next line comes to.
    const Channels<From>& Room() const { return read_.Get(); }

    void Write(uint8_t* to) {
        // Memory for words may begin anywhere.
        const bool isAligned = reinterpret_cast<uintptr_t>(to) % alignof(To) == 0;
        To* const pixels = isAligned ? reinterpret_cast<To*>(to) : line_.data();
        WritePixels(pixels);
        if (!isAligned) std::memcpy(to, pixels, line_.size() * sizeof(To));
    }

  private:
    void WritePixels(To* pixels) {
        const bool isGray = !read_.Has(1);
        if (isGray && form_.channels == 1) return WriteGray(pixels);
        std::array<const To*, 4> samples = Samples();
        if (isGray) samples[1] = samples[2] = samples[0];
        if (form_.channels == 1) return TakeLuma(samples.data(), width_, pixels);
        if (form_.isBlueFirst) std::swap(samples[0], samples[2]);
        if (form_.channels == 3) samples[3] = nullptr;
        if (!opaque_.empty()) samples[3] = opaque_.data();
        Join(samples.data(), width_, pixels);
    }

    void WriteGray(To* pixels) {
        const From* const gray = read_.Get()[0];
        if (isStretched_) return Stretch(gray, width_, depth_, pixels);
        std::memcpy(pixels, gray, width_ * sizeof(To));
    }

    // The line that was read, at full scale of the target.
    std::array<const To*, 4> Samples() {
        std::array<const To*, 4> samples{};
        for (size_t i = 0; i < samples.size(); ++i) {
            if (!read_.Has(i)) break;
            if constexpr (sizeof(From) == sizeof(To)) samples[i] = read_.Get()[i];
            if (!isStretched_) continue;
            Stretch(read_.Get()[i], width_, depth_, stretched_.Get()[i]);
            samples[i] = stretched_.Get()[i];
        }
        return samples;
    }

    const size_t width_;
    const uint32_t depth_;
    const PictureForm form_;
    const bool isStretched_;
    ChannelLines<From> read_;
    ChannelLines<To> stretched_;
    std::vector<To> opaque_;  // alpha where the image has none
    std::vector<To> line_;
};

template <typename Sample>
PictureSourcePtr<Sample> MakeSource(const Image& image, const ConvertOptions& options) {
    switch (image.format.kind) {
        case FormatKind::Bayer:
            return options.demosaic == Demosaic::EdgeAware ? MakeEdgeAwareSource<Sample>(image)
                                                           : MakeBilinearSource<Sample>(image);
        case FormatKind::SparseColour:
            return MakeSparseSource<Sample>(image);
        case FormatKind::BiColour:
            return MakeBiColourSource<Sample>(image);
        case FormatKind::Rgb:
            return MakeRgbSource<Sample>(image);
        default:
            return MakeGraySource<Sample>(image);
    }
}

template <typename From, typename To>
void ConvertLines(PictureSource<From>& source, LineWriter<From, To>& writer, size_t height,
                  uint8_t* to, size_t pitch) {
    for (size_t y = 0; y < height; ++y, to += pitch) {
        source.Read(y, writer.Room());
        writer.Write(to);
    }
}

template <typename To>
void ConvertYuv(const Image& image, const PictureForm& form, const ConvertOptions& options,
                uint8_t* to, size_t pitch) {
    const bool isGray = form.channels == 1;
    const auto source = MakeYuvSource<To>(image, options, isGray);
    LineWriter<To, To> writer(image.width, isGray ? 1 : 3, form.depth, form);
    ConvertLines(*source, writer, image.height, to, pitch);
}

template <typename From, typename To>
void ConvertSamples(const Image& image, const PictureForm& form, const ConvertOptions& options,
                    uint8_t* to, size_t pitch) {
    const auto source = MakeSource<From>(image, options);
    LineWriter<From, To> writer(image.width, image.format.PictureChannels(),
                                SampleDepth(image.format), form);
    ConvertLines(*source, writer, image.height, to, pitch);
}

template <typename To>
void ConvertTo(const Image& image, const PictureForm& form, const ConvertOptions& options,
               uint8_t* to, size_t pitch) {
    if (image.format.kind == FormatKind::Yuv)
        return ConvertYuv<To>(image, form, options, to, pitch);
    if (image.format.PictureDepth() == 8)
        return ConvertSamples<uint8_t, To>(image, form, options, to, pitch);
    ConvertSamples<uint16_t, To>(image, form, options, to, pitch);
}

}  // namespace

bool FindForm(uint64_t pixelFormat, PictureForm& form) {
    constexpr std::pair<uint64_t, PictureForm> kForms[] = {
        {PFNC::Mono8, {1, 8, false}}, {PFNC::Mono16, {1, 16, false}}, {PFNC::RGB8, {3, 8, false}},
        {PFNC::BGR8, {3, 8, true}},   {PFNC::RGB16, {3, 16, false}},  {PFNC::BGR16, {3, 16, true}},
        {PFNC::RGBa8, {4, 8, false}}, {PFNC::BGRa8, {4, 8, true}},
    };
    for (const auto& [value, known] : kForms) {
        if (value != pixelFormat) continue;
        form = known;
        return true;
    }
    return false;
}

void RequirePicture(const Image& image) {
    const Format& format = image.format;
    if (format.PictureChannels() != 0) return;
    throw Error(std::string("the pixel format ") + format.name +
                (format.packing == Packing::Unknown ? " cannot be unpacked" : " is not a picture"));
}

void ConvertToPicture(const Image& image, const PictureForm& form, const ConvertOptions& options,
                      uint8_t* to, size_t pitch) {
    RequirePicture(image);
    if (form.depth == 8) return ConvertTo<uint8_t>(image, form, options, to, pitch);
    ConvertTo<uint16_t>(image, form, options, to, pitch);
}

}  // namespace ZelImage::Internal
