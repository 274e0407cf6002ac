// Conversions of images, on one thread: beside memcpy of the bytes of the image, and beside OpenCV
// where it is installed and has the same conversion. The image has 12 million pixels.
#include <algorithm>
#include <cstring>
#include <string>
#include <vector>

#include "ZelImage/ZelImage.h"
#include "bench/groups.h"
#include "bench/imaging/opencv.h"
#include "bench/measure.h"

namespace Bench {

namespace {

constexpr size_t kWidth = 4096;
constexpr size_t kHeight = 3000;
constexpr int kImageRounds = 7;
constexpr double kMegabyte = 1e6;

struct Conversion {
    const char* from;
    const char* to;
    // The most that the time may be, compared with memcpy and with OpenCV; 0 for any.
    double limitToCopy = 0;
    double limitToOpenCv = 0;
    ZelImage::Demosaic demosaic = ZelImage::Demosaic::Bilinear;
};

constexpr Conversion kConversions[] = {
    {"Mono10p", "Mono10", 2},
    {"Mono12p", "Mono12", 2},
    {"Mono14p", "Mono14"},
    {"Mono10Packed", "Mono10"},
    {"Mono12Packed", "Mono12"},
    {"Mono12", "Mono8"},
    {"Mono12p", "Mono8"},
    {"Mono12", "Mono16"},
    {"Mono8", "RGB8"},
    {"BayerRG8", "RGB8", 0, 1},
    {"BayerRG8", "BGRa8"},
    {"BayerRG8", "RGB8", 0, 0, ZelImage::Demosaic::EdgeAware},
    {"BayerRG12p", "RGB8"},
    {"BayerRG16", "RGB16"},
    {"RGB8", "BGR8"},
    {"RGB8", "BGRa8"},
    {"RGB8", "Mono8"},
    {"RGB8_Planar", "RGB8"},
    {"YCbCr601_422_8", "RGB8"},
    {"YCbCr422_8_CbYCrY", "RGB8"},
    {"YCbCr420_8_YY_CbCr_Semiplanar", "RGB8"},
    {"YCbCr709_422_10p", "RGB16"},
};

// An image and room for the result, which is in memory before it is measured.
class ConvertedImage {
  public:
    explicit ConvertedImage(const Conversion& conversion)
        : target_(ZelImage::FormatByName(conversion.to)) {
        options_.demosaic = conversion.demosaic;
        view_.pixelFormat = ZelImage::FormatByName(conversion.from);
        view_.width = kWidth;
        view_.height = kHeight;
        image_.resize(ZelImage::ImageSize(view_));
        for (size_t i = 0; i < image_.size(); ++i)
            image_[i] = static_cast<uint8_t>(i * 167 + i / 4096 * 29);
        view_.data = image_.data();
        view_.size = image_.size();
        result_.resize(ZelImage::ConvertedSize(view_, target_, 0));
        copy_.resize(image_.size());
    }

    void Convert() {
        if (ZelImage::Convert(view_, target_, &options_, result_.data(), result_.size(), 0) !=
            ZelCamErr_Success)
            throw std::runtime_error(ZelImage::LastReason());
        Keep(result_.data());
    }

    void Copy() {
        std::memcpy(copy_.data(), image_.data(), image_.size());
        Keep(copy_.data());
    }

    std::vector<uint8_t>& Image() { return image_; }
    double Megabytes() const { return static_cast<double>(image_.size()) / kMegabyte; }

  private:
    const uint64_t target_;
    ZelImage::ConvertOptions options_;
    ZelImage::View view_;
    std::vector<uint8_t> image_;
    std::vector<uint8_t> result_;
    std::vector<uint8_t> copy_;
};

// Microseconds that a megabyte of the image takes.
template <typename Work>
double TimeOfMegabyte(const ConvertedImage& image, const Work& work) {
    return TimeOf(work) / 1000 / image.Megabytes();
}

template <typename Other>
Figure Compare(ConvertedImage& image, const std::string& name, const std::string& baseName,
               double limit, const Other& other) {
    Figure figure{"imaging", name, "us/MB", {}, baseName};
    if (limit > 0) figure.limit = limit;
    image.Convert();
    other();
    Interleave(
        kImageRounds,
        [&] { figure.rounds.push_back(TimeOfMegabyte(image, [&] { image.Convert(); })); },
        [&] { figure.baseRounds.push_back(TimeOfMegabyte(image, other)); });
    return figure;
}

void Measure(Report& report, const Conversion& conversion) {
    const bool isEdgeAware = conversion.demosaic == ZelImage::Demosaic::EdgeAware;
    const std::string name =
        std::string(conversion.from) + " to " + conversion.to + (isEdgeAware ? ", edge-aware" : "");
    ConvertedImage image(conversion);
    const Figure beside =
        Compare(image, name, "memcpy", conversion.limitToCopy, [&] { image.Copy(); });
    Figure speed{"imaging", name, "MB/s", {}};
    for (const double time : beside.rounds)
        speed.rounds.push_back(kMegabyte / time);
    report.Add(speed);
    report.Add(beside);
    const auto same = SameByOpenCv(conversion.from, conversion.to, isEdgeAware,
                                   image.Image().data(), kWidth, kHeight);
    if (same) report.Add(Compare(image, name, "OpenCV", conversion.limitToOpenCv, same));
}

}  // namespace

void MeasureImaging(Report& report) {
    for (const Conversion& conversion : kConversions)
        Measure(report, conversion);
}

}  // namespace Bench
