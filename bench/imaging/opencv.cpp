#include "bench/imaging/opencv.h"

#ifdef BENCH_OPENCV
#include <algorithm>
#include <iterator>
#include <memory>

#include <opencv2/imgproc.hpp>
#endif

namespace Bench {

#ifdef BENCH_OPENCV

namespace {

struct Conversion {
    const char* from;
    const char* to;
    bool isEdgeAware;
    int type;  // of the image
    int code;
};

// OpenCV names a mosaic by the second and third pixel of the second line. Its YUV is the limited
// range of BT.601.
constexpr Conversion kConversions[] = {
    {"BayerRG8", "RGB8", false, CV_8UC1, cv::COLOR_BayerBG2RGB},
    {"BayerRG8", "BGRa8", false, CV_8UC1, cv::COLOR_BayerBG2BGRA},
    {"BayerRG8", "RGB8", true, CV_8UC1, cv::COLOR_BayerBG2RGB_EA},
    {"BayerRG16", "RGB16", false, CV_16UC1, cv::COLOR_BayerBG2RGB},
    {"Mono8", "RGB8", false, CV_8UC1, cv::COLOR_GRAY2RGB},
    {"RGB8", "BGR8", false, CV_8UC3, cv::COLOR_RGB2BGR},
    {"RGB8", "BGRa8", false, CV_8UC3, cv::COLOR_RGB2BGRA},
    {"RGB8", "Mono8", false, CV_8UC3, cv::COLOR_RGB2GRAY},
    {"YCbCr601_422_8", "RGB8", false, CV_8UC2, cv::COLOR_YUV2RGB_YUY2},
};

}  // namespace

std::function<void()> SameByOpenCv(const std::string& from, const std::string& to, bool isEdgeAware,
                                   uint8_t* image, size_t width, size_t height) {
    const auto* const found =
        std::find_if(std::begin(kConversions), std::end(kConversions), [&](const auto& each) {
            return from == each.from && to == each.to && isEdgeAware == each.isEdgeAware;
        });
    if (found == std::end(kConversions)) return {};
    cv::setNumThreads(1);
    const auto result = std::make_shared<cv::Mat>();
    const cv::Mat source(static_cast<int>(height), static_cast<int>(width), found->type, image);
    return [source, result, code = found->code] { cv::cvtColor(source, *result, code); };
}

#else

std::function<void()> SameByOpenCv(const std::string& /*from*/, const std::string& /*to*/,
                                   bool /*isEdgeAware*/, uint8_t* /*image*/, size_t /*width*/,
                                   size_t /*height*/) {
    return {};
}

#endif

}  // namespace Bench
