// Frames through the friendly layer.
#include <atomic>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <future>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/components.h"
#include "tests/support/temporaryfolder.h"
#include "tests/zel/cameras.h"
#include "zel/camera.h"
#include "zel/merge.h"
#include "zel/picture.h"

namespace {

using testing::HasSubstr;
using ZelTest::ErrorOf;
using ZelTest::ZelLayer;

bool IsLocked(const zel::Camera& camera) {
    return camera["TLParamsLocked"].as<bool>();
}

std::vector<uint8_t> BytesOf(const zel::Image& image) {
    return {image.data(), image.data() + image.size()};
}

TEST_F(ZelLayer, ALoopStartsTheCameraAndStopsItOnEveryWayOut) {
    zel::Camera camera = zel::open("left");
    uint64_t next = 0;
    size_t count = 0;
    for (const zel::Frame& frame : camera.frames(20)) {
        if (count++ > 0) {
            EXPECT_EQ(frame.id(), next);
        }
        next = frame.id() + 1;
        EXPECT_TRUE(frame.isComplete());
        EXPECT_EQ(frame.missed(), 0U);
        EXPECT_TRUE(IsLocked(camera));
        EXPECT_THAT(ErrorOf([&] { camera["Width"] = 32; }).what(), HasSubstr("being grabbed"));
    }
    EXPECT_EQ(count, 20U);
    EXPECT_FALSE(IsLocked(camera));

    for (const zel::Frame& frame : camera.frames()) {
        EXPECT_EQ(ErrorOf([&] { camera.frames(); }).code(), ZelCamErr_AcquisitionActive);
        if (frame.image().width() == 64) break;
    }
    EXPECT_FALSE(IsLocked(camera));
    EXPECT_THROW(
        {
            for (const zel::Frame& frame : camera.frames())
                throw std::runtime_error(std::to_string(frame.id()));
        },
        std::runtime_error);
    EXPECT_FALSE(IsLocked(camera));

    camera["AcquisitionMode"] = "SingleFrame";
    count = 0;
    for (const zel::Frame& frame : camera.frames())
        count += frame.isComplete() ? 1U : 0U;
    EXPECT_EQ(count, 1U);
    EXPECT_EQ(camera.grab().image().height(), 48U);
}

TEST_F(ZelLayer, AnImageLiesAsItsFormatSays) {
    zel::Camera camera = zel::open("right");
    const zel::Frame frame = camera.grab();
    const zel::Image image = frame.image();
    EXPECT_EQ(image.format(), 0x02180015U);  // BGR8
    EXPECT_EQ(image.width(), 30U);
    EXPECT_EQ(image.deliveredHeight(), 20U);
    EXPECT_EQ(image.pitch(), 96U);
    EXPECT_EQ(image.size(), 1920U);
    EXPECT_EQ(image.line(1), image.data() + 96);
    EXPECT_TRUE(frame.parts().empty());
    EXPECT_TRUE(frame.chunks().all().empty());
}

TEST_F(ZelLayer, ImagesBecomePictures) {
    zel::Camera camera = zel::open("right");
    const zel::Frame frame = camera.grab();
    const zel::Image image = frame.image();
    const zel::Picture rgb = zel::convert(image, "RGB8");
    EXPECT_EQ(rgb.size(), 30U * 20U * 3U);
    for (size_t y = 0; y < 20; ++y)
        EXPECT_EQ(rgb.line(y)[0], image.line(y)[2]) << y;
    EXPECT_EQ(ErrorOf([&] { zel::convert(image, "Mono12p"); }).code(), ZelCamErr_InvalidArgument);

    const ZelTest::TemporaryFolder folder;
    zel::save(rgb, folder.Path() / "shot.raw");
    EXPECT_EQ(std::filesystem::file_size(folder.Path() / "shot.raw"), rgb.size());
    EXPECT_THAT(ErrorOf([&] { zel::save(image, folder.Path() / "shot.xyz"); }).what(),
                HasSubstr("xyz"));
}

TEST_F(ZelLayer, PlanarFormatsHaveALineOfOnePlane) {
    const auto imageOf = [](uint64_t format) {
        static const uint8_t kMemory[4096] = {};
        zel::ImageLayout layout;
        layout.format = format;
        layout.width = 10;
        layout.height = 4;
        return zel::Image(nullptr, kMemory, sizeof kMemory, layout);
    };
    EXPECT_EQ(imageOf(0x02180021).pitch(), 10U);  // RGB8_Planar
    EXPECT_EQ(imageOf(0x02180021).size(), 120U);
    EXPECT_EQ(imageOf(0x020C0112).size(), 60U);   // YCbCr420_8_YY_CbCr_Semiplanar
    EXPECT_EQ(imageOf(0x010A0046).pitch(), 13U);  // Mono10p
    EXPECT_EQ(imageOf(0x024000C3).pitch(), 40U);  // Coord3D_AC32f_Planar
    EXPECT_EQ(imageOf(0x024000C3).planes(), 2U);
}

TEST_F(ZelLayer, AFrameIsALeaseAndItsImagesOutliveTheStream) {
    zel::Camera camera = zel::open("left");
    zel::FrameOptions options;
    options.buffers = 4;
    options.timeout = std::chrono::milliseconds(300);
    zel::Frames frames = camera.frames(options);
    std::vector<zel::Frame> kept;
    kept.reserve(options.buffers);
    for (size_t i = 0; i < options.buffers; ++i)
        kept.push_back(*frames.next());
    const zel::Error starving = ErrorOf([&] { frames.next(); });
    EXPECT_TRUE(starving.isTimeout());
    EXPECT_THAT(starving.what(), HasSubstr("the program has all buffers"));

    const zel::Frame copy = kept.front().copy();
    EXPECT_EQ(copy.id(), kept.front().id());
    const zel::Image image = kept.front().image();
    const std::vector<uint8_t> before = BytesOf(image);
    kept.pop_back();
    std::optional<zel::Frame> last = frames.next();
    ASSERT_TRUE(last);
    EXPECT_EQ(BytesOf(image), before);
    frames.stop();
    EXPECT_FALSE(frames.next());
    EXPECT_EQ(ErrorOf([&] { (void)last->id(); }).code(), ZelCamErr_GenTL_InvalidBuffer);
    camera.close();
    EXPECT_EQ(BytesOf(image), before);
    EXPECT_EQ(BytesOf(copy.image()), before);
}

TEST_F(ZelLayer, ALeaseThatAnotherThreadEndsWakesWhoWaits) {
    zel::Camera camera = zel::open("left");
    zel::FrameOptions options;
    options.buffers = 2;
    options.timeout = std::chrono::seconds(60);
    zel::Frames frames = camera.frames(options);
    const uint64_t before = simulator.callCount("EventKill");
    for (int i = 0; i < 50; ++i) {
        std::vector<zel::Frame> all;
        all.push_back(*frames.next());
        all.push_back(*frames.next());
        // Before the wait begins, while it begins, and while it lasts.
        std::thread other([taken = std::move(all), i]() mutable {
            std::this_thread::sleep_for(std::chrono::microseconds(50 * i));
            taken.clear();
        });
        ASSERT_TRUE(frames.next());
        other.join();
    }
    EXPECT_GT(simulator.callCount("EventKill"), before);
}

TEST_F(ZelLayer, CancelEndsTheLoopOfAnotherThread) {
    zel::Camera camera = zel::open("left");
    camera["TriggerMode"].at("TriggerSelector", "FrameStart") = "On";
    zel::FrameOptions options;
    options.timeout = std::chrono::milliseconds(50);
    const zel::Error error = ErrorOf([&] { camera.frames(options).next(); });
    EXPECT_THAT(error.what(), HasSubstr("TriggerMode"));

    options.timeout = std::chrono::seconds(60);
    zel::Frames frames = camera.frames(options);
    auto waiting = std::async(std::launch::async, [&] { return frames.next().has_value(); });
    camera.cancel();
    EXPECT_FALSE(waiting.get());
}

TEST_F(ZelLayer, OnlyTheNewestFrameIsGivenIfThatIsWanted) {
    zel::Camera camera = zel::open("left");
    zel::FrameOptions options;
    options.newestOnly = true;
    options.buffers = 4;
    zel::Frames frames = camera.frames(options);
    const uint64_t first = frames.next()->id();
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
    const std::optional<zel::Frame> second = frames.next();
    EXPECT_GE(second->id(), first + 4);
    EXPECT_EQ(second->missed(), second->id() - first - 1);
}

TEST_F(ZelLayer, ChunksAreThoseOfTheirFrame) {
    zel::Camera camera = zel::open("left");
    camera["ChunkModeActive"] = true;
    for (const char* kind : {"ExposureTime", "FrameID"})
        camera["ChunkEnable"].at("ChunkSelector", kind) = true;
    camera["ExposureTime"] = 123;
    zel::Frames frames = camera.frames();
    const zel::Frame first = *frames.next();
    const zel::Frame second = *frames.next();
    EXPECT_EQ(second.chunks()["FrameID"].as<uint64_t>(), second.id());
    EXPECT_EQ(first.chunks()["ChunkFrameID"].as<uint64_t>(), first.id());
    const double exposure = first.chunks()["ExposureTime"];
    EXPECT_EQ(exposure, 123);
    EXPECT_EQ(ErrorOf([&] { first.chunks()["Gain"]; }).code(), ZelCamErr_AccessDenied);
    const zel::Frame copy = first.copy();
    frames.stop();
    EXPECT_EQ(copy.chunks()["FrameID"].as<uint64_t>(), copy.id());
    EXPECT_EQ(copy.chunks().all().size(), 2U);
}

TEST_F(ZelLayer, PartsAreImagesOfTheirOwn) {
    for (const std::string payload : {"MultiPart", "GenDC"}) {
        const std::string cameras =
            "<ZelSim><Interface id='eth0' type='GEV'><Camera id='depth' width='30' height='20' "
            "frameRate='0' payload='" +
            payload + "'/></Interface></ZelSim>";
        ASSERT_EQ(simulator.configure(cameras.c_str()), 0);
        zel::Camera camera = zel::open("depth");
        for (const char* component : {"Range", "Confidence"})
            camera["ComponentEnable"].at("ComponentSelector", component) = true;
        zel::Frames frames = camera.frames(2);
        for (const zel::Frame& live : frames) {
            const zel::Frame copy = live.copy();
            for (const zel::Frame* const frame : {&live, &copy}) {
                const std::vector<zel::Part> parts = frame->parts();
                ASSERT_EQ(parts.size(), 3U) << payload;
                EXPECT_EQ(frame->image().data(), parts[0].image.data());
                EXPECT_EQ(parts[0].image.format(), 0x01080001U);  // Mono8
                EXPECT_EQ(parts[1].image.format(), 0x011000B8U);  // Coord3D_C16
                EXPECT_EQ(parts[2].type, 9U);
                EXPECT_EQ(BytesOf(parts[1].image), ZelTest::RangeBytes(live.id(), 30, 20, 0));
                EXPECT_EQ(BytesOf(parts[2].image), ZelTest::ConfidenceBytes(live.id(), 30, 20, 0));
            }
        }
    }
}

TEST_F(ZelLayer, ACameraThatComesBackGoesOnAsItWas) {
    zel::Camera camera = zel::open("left");
    camera["Width"] = 32;
    std::atomic<int> losses{0};
    camera.onLost([&](const zel::Error& error) { losses += error.isLost() ? 1 : 0; });
    zel::FrameOptions options;
    options.reconnect = true;
    zel::Frames frames = camera.frames(options);
    const zel::Feature exposure = camera["ExposureTime"];
    exposure.set(2345);
    double seen = 0;
    auto subscription =
        exposure.onChange([&](const zel::Feature& feature) { seen = feature.as<double>(); });
    ASSERT_TRUE(frames.next());
    const std::optional<zel::Frame> kept = frames.next();

    ASSERT_EQ(simulator.unplug("left"), 0);
    std::thread returning([&] {
        std::this_thread::sleep_for(std::chrono::milliseconds(200));
        EXPECT_EQ(simulator.plug("eth0", ZelTest::kLeft), 0);
    });
    std::optional<zel::Frame> frame;
    while ((frame = frames.next()) && losses == 0) {
    }
    returning.join();
    ASSERT_TRUE(frame);
    EXPECT_EQ(losses, 1);
    EXPECT_GT(frame->missed(), 0U);
    EXPECT_EQ(frame->image().width(), 32U);
    EXPECT_EQ(exposure.as<double>(), 2345);
    exposure.set(999);
    EXPECT_EQ(seen, 999);
    EXPECT_EQ(ErrorOf([&] { (void)kept->id(); }).code(), ZelCamErr_GenTL_InvalidBuffer);

    frames = zel::Frames(nullptr);
    zel::Frames unforgiving = camera.frames();
    ASSERT_EQ(simulator.unplug("left"), 0);
    EXPECT_TRUE(ErrorOf([&] {
                    while (unforgiving.next()) {
                    }
                }).isLost());
    EXPECT_EQ(losses, 2);
    EXPECT_TRUE(ErrorOf([&] { exposure.set(1); }).isLost());
}

TEST_F(ZelLayer, FramesOfSeveralCamerasMergeAndGroup) {
    zel::Camera left = zel::open("left");
    zel::Camera right = zel::open("right");
    size_t counts[2] = {};
    for (auto& [source, frame] : zel::merge(left.frames(10), right.frames(20))) {
        EXPECT_EQ(frame.image().width(), source == 0 ? 64U : 30U);
        ++counts[source];
    }
    EXPECT_EQ(counts[0], 10U);
    EXPECT_EQ(counts[1], 20U);

    size_t numGroups = 0;
    for (const std::vector<zel::Frame>& group :
         zel::groups(~uint64_t{0}, left.frames(5), right.frames(5)))
        numGroups += group.size() == 2 ? 1U : 0U;
    EXPECT_EQ(numGroups, 5U);

    // Only the second frame of the left camera has a counterpart.
    for (zel::Camera* const camera : {&left, &right})
        (*camera)["TriggerMode"].at("TriggerSelector", "FrameStart") = "On";
    {
        auto pairs = zel::groups(1'000'000'000, left.frames(2), right.frames(1));
        left["TriggerSoftware"].execute();
        std::this_thread::sleep_for(std::chrono::milliseconds(1500));
        left["TriggerSoftware"].execute();
        right["TriggerSoftware"].execute();
        const auto pair = pairs.next();
        ASSERT_TRUE(pair);
        const auto difference =
            static_cast<int64_t>(pair->at(1).timestamp() - pair->at(0).timestamp());
        EXPECT_LT(std::abs(difference), 1'000'000'000);
        EXPECT_FALSE(pairs.next());
    }

    for (zel::Camera* const camera : {&left, &right})
        (*camera)["TriggerMode"].at("TriggerSelector", "FrameStart") = "Off";
    auto endless = zel::merge(left.frames(), right.frames());
    ASSERT_TRUE(endless.next());
}

}  // namespace
