// Images of the camera's formats as pictures, beside what the camera means to show.
#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/zel/cameras.h"
#include "zel/camera.h"

namespace {

using ZelTest::ZelLayer;

// Low enough to have nothing that moves: eight bars.
constexpr size_t kWidth = 256;
constexpr size_t kHeight = 16;
constexpr const char* kCamera =
    "<ZelSim><Interface id='eth0' type='GEV'>"
    "<Camera id='all' width='256' height='16' frameRate='0'/></Interface></ZelSim>";

bool StartsWith(const std::string& text, const char* start) {
    return text.rfind(start, 0) == 0;
}

// What is lost on the way there: chroma in 8 bits, and the rounding of the rest.
int ToleranceOf(const std::string& format) {
    return StartsWith(format, "Y") ? 2 : StartsWith(format, "Mono") ? 1 : 0;
}

class Pictures : public ZelLayer {
  protected:
    void SetUp() override {
        ZelLayer::SetUp();
        ASSERT_EQ(simulator.configure(kCamera), 0);
    }

    static std::vector<uint8_t> PictureIn(zel::Camera& camera, const std::string& format) {
        camera["PixelFormat"] = format;
        const zel::Frame frame = camera.grab();
        const zel::Picture picture = zel::convert(frame.image(), "RGB8");
        EXPECT_EQ(picture.width(), kWidth);
        EXPECT_EQ(picture.height(), kHeight);
        return {picture.data(), picture.data() + picture.size()};
    }

    // The colour that the camera means at a place: grey for formats without colour.
    static uint8_t Meant(const std::string& format, const uint8_t* rgb, size_t channel) {
        if (!StartsWith(format, "Mono")) return rgb[channel];
        return static_cast<uint8_t>(std::lround(0.299 * rgb[0] + 0.587 * rgb[1] + 0.114 * rgb[2]));
    }
};

TEST_F(Pictures, OfEveryFormatShowWhatTheCameraMeans) {
    zel::Camera camera = zel::open("all");
    const std::vector<uint8_t> meant = PictureIn(camera, "RGB8");
    ASSERT_EQ(std::vector<uint8_t>(&meant[0], &meant[3]), (std::vector<uint8_t>{255, 255, 255}));
    const std::vector<std::string> formats = camera["PixelFormat"].entries();
    ASSERT_GE(formats.size(), 89U);
    for (const std::string& format : formats) {
        const std::vector<uint8_t> picture = PictureIn(camera, format);
        ASSERT_EQ(picture.size(), meant.size()) << format;
        int largest = 0;
        for (size_t i = 0; i < meant.size(); ++i) {
            // At the edge of a bar, a pixel has colours of its neighbours.
            const size_t x = i / 3 % kWidth;
            if (x % 32 < 2 || x % 32 >= 30) continue;
            const int difference = picture[i] - Meant(format, &meant[i - i % 3], i % 3);
            largest = std::max(largest, std::abs(difference));
        }
        EXPECT_LE(largest, ToleranceOf(format)) << format;
    }
}

}  // namespace
