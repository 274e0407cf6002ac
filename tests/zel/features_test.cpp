// Cameras and their features through the friendly layer.
#include <fstream>
#include <string>
#include <thread>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/temporaryfolder.h"
#include "tests/zel/cameras.h"
#include "zel/camera.h"

namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using ZelTest::ErrorOf;
using ZelTest::ZelLayer;

TEST_F(ZelLayer, CamerasAreFoundByEveryNameAndOpenedUnlessTheyAreInUse) {
    const zel::CameraList found = zel::cameras();
    ASSERT_EQ(found.size(), 2U);
    EXPECT_EQ(found[0].description(), "left (ZelCam L, serial number 1, \"eye\", simulated)");
    EXPECT_EQ(found[1].interfaceId, "eth0");
    for (const char* name : {"left", "1", "eye"})
        EXPECT_EQ(zel::open(name).info().id, "left") << name;

    const zel::Camera first = zel::open();
    EXPECT_EQ(first.info().id, "left");
    EXPECT_EQ(zel::open().info().id, "right");
    EXPECT_NE(ErrorOf([] { zel::open("left"); }).code(), ZelCamErr_Success);
    const zel::Error error = ErrorOf([] { zel::open("4711"); });
    EXPECT_EQ(error.code(), ZelCamErr_NotFound);
    EXPECT_THAT(error.what(), HasSubstr("serial number 2"));
}

TEST_F(ZelLayer, ABrokenProducerHidesNoOtherAndIsReported) {
    zel::SearchOptions options;
    options.producers = {"/nonexistent.cti"};
    const zel::CameraList found = zel::cameras(options);
    EXPECT_EQ(found.size(), 2U);
    EXPECT_THAT(found.problems(), ElementsAre(HasSubstr("/nonexistent.cti")));
}

TEST_F(ZelLayer, FeaturesTakeAndGiveWhatTheirKindAllows) {
    const zel::Camera camera = zel::open("left");
    camera["ExposureTime"] = 5000;
    EXPECT_EQ(camera["ExposureTime"].as<double>(), 5000.0);
    camera["Width"] = 32.0;
    const int width = camera["Width"];
    EXPECT_EQ(width, 32);
    camera["PixelFormat"] = "Mono16";
    EXPECT_EQ(camera["PixelFormat"].text(), "Mono16");
    EXPECT_EQ(camera["PixelFormat"].as<int64_t>(), 0x01100007);
    camera["ReverseX"] = true;
    EXPECT_EQ(camera["ReverseX"].as<int>(), 1);
    EXPECT_EQ(camera["ReverseX"].text(), "1");
    camera["DeviceUserID"] = std::string("ear");
    const std::string name = camera["DeviceUserID"];
    EXPECT_EQ(name, "ear");
    camera["TimestampLatch"].execute();
    EXPECT_GT(camera["TimestampLatchValue"].as<uint64_t>(), 0U);
}

TEST_F(ZelLayer, AFailureNamesTheFeatureAndTheReason) {
    const zel::Camera camera = zel::open("left");
    const zel::Error range = ErrorOf([&] { camera["ExposureTime"] = 1e12; });
    EXPECT_EQ(range.code(), ZelCamErr_OutOfRange);
    EXPECT_EQ(range.feature(), "ExposureTime");
    EXPECT_THAT(range.what(), HasSubstr("us"));
    EXPECT_EQ(ErrorOf([&] { camera["Widht"] = 1; }).code(), ZelCamErr_ParamNotFound);
    EXPECT_EQ(ErrorOf([&] { camera["Width"] = 1.5; }).code(), ZelCamErr_InvalidValue);
    EXPECT_EQ(ErrorOf([&] { camera["ReverseX"] = 2; }).code(), ZelCamErr_InvalidValue);
    EXPECT_EQ(ErrorOf([&] { camera["PixelFormat"] = "Mono7"; }).feature(), "PixelFormat");
    EXPECT_EQ(ErrorOf([&] { camera["Width"].execute(); }).code(), ZelCamErr_WrongParamType);
    camera["Width"] = 64;
    EXPECT_EQ(ErrorOf([&] { (void)camera["PayloadSize"].as<int8_t>(); }).code(),
              ZelCamErr_OutOfRange);
    EXPECT_FALSE(camera.has("Widht"));
}

TEST_F(ZelLayer, AFeatureDescribesItself) {
    const zel::Camera camera = zel::open("left");
    const zel::Feature exposure = camera["ExposureTime"];
    EXPECT_EQ(exposure.kind(), zel::Kind::Float);
    EXPECT_EQ(exposure.unit(), "us");
    EXPECT_LT(exposure.min(), exposure.max());
    EXPECT_EQ(camera["Width"].max<int>(), 64);
    EXPECT_GT(camera["Width"].increment(), 0);
    EXPECT_THAT(camera["PixelFormat"].entries(), Contains("Mono8"));
    EXPECT_TRUE(exposure.isWritable() && exposure.isReadable() && exposure.isAvailable());
    EXPECT_FALSE(exposure.displayName().empty());
    EXPECT_FALSE(camera["PayloadSize"].isWritable());
    std::vector<std::string> names;
    for (const zel::Feature& feature : camera.features())
        names.push_back(feature.name());
    EXPECT_THAT(names, Contains("ExposureTime"));
    EXPECT_THAT(names, testing::Not(Contains("Root")));
    EXPECT_TRUE(camera.of(zel::Module::Stream).has("StreamID"));
    EXPECT_TRUE(camera.of(zel::Module::Transport).has("DeviceID"));
    EXPECT_TRUE(camera.of(zel::Module::Interface).has("InterfaceID"));
}

TEST_F(ZelLayer, AValueUnderASelectorLeavesTheSelector) {
    const zel::Camera camera = zel::open("left");
    camera["GainSelector"] = "All";
    const zel::Feature red = camera["Gain"].at("GainSelector", "Red");
    red.set(3.0);
    EXPECT_EQ(camera["GainSelector"].text(), "All");
    EXPECT_EQ(red.as<double>(), 3.0);
    EXPECT_EQ(camera["Gain"].at("GainSelector", "Blue").as<double>(), 0.0);
    EXPECT_EQ(ErrorOf([&] { camera["Gain"].at("GainSelector", "Pink").set(1); }).feature(),
              "GainSelector");
    EXPECT_EQ(camera["GainSelector"].text(), "All");
}

TEST_F(ZelLayer, ChangesAreReportedWhileTheSubscriptionLives) {
    zel::Camera camera = zel::open("left");
    std::vector<double> seen;
    zel::Subscription kept;
    {
        auto subscription = camera["ExposureTime"].onChange(
            [&seen](const zel::Feature& feature) { seen.push_back(feature.as<double>()); });
        camera["ExposureTime"] = 100;
        kept = std::move(subscription);
    }
    camera["ExposureTime"] = 200;
    kept.end();
    camera["ExposureTime"] = 300;
    EXPECT_THAT(seen, ElementsAre(100, 200));
    kept = camera["ExposureTime"].onChange([](const zel::Feature&) {});
    camera.close();
    EXPECT_EQ(ErrorOf([&] { camera["ExposureTime"] = 1; }).code(), ZelCamErr_GenTL_NotInitialized);
    EXPECT_EQ(simulator.openHandles(), 0U);
}

TEST_F(ZelLayer, EventsArriveByName) {
    zel::Camera camera = zel::open("left");
    std::mutex mutex;
    std::condition_variable changed;
    std::vector<int64_t> times;
    auto subscription = camera.on("Test", [&](const zel::Event& event) {
        const std::lock_guard<std::mutex> lock(mutex);
        times.push_back(event["Timestamp"]);
        changed.notify_all();
    });
    const zel::Feature notification = camera["EventNotification"].at("EventSelector", "Test");
    EXPECT_EQ(notification.text(), "On");
    camera["TestEventGenerate"].execute();
    {
        std::unique_lock<std::mutex> lock(mutex);
        ASSERT_TRUE(
            changed.wait_for(lock, std::chrono::seconds(30), [&] { return !times.empty(); }));
        EXPECT_GT(times.front(), 0);
    }
    subscription.end();
    EXPECT_EQ(notification.text(), "Off");
}

TEST_F(ZelLayer, SettingsAreSavedLoadedAndCompared) {
    const ZelTest::TemporaryFolder folder;
    const std::string file = (folder.Path() / "settings.xml").string();
    zel::Camera camera = zel::open("left");
    camera["Gain"].at("GainSelector", "Red") = 1.0;
    camera.save(file);
    EXPECT_TRUE(camera.diff(file).empty());
    camera["Gain"].at("GainSelector", "Red") = 2.0;
    camera["Width"] = 32;
    const std::vector<zel::Difference> differences = camera.diff(file);
    ASSERT_EQ(differences.size(), 2U);
    EXPECT_EQ(differences[0].feature, "Gain[GainSelector=Red]");
    EXPECT_EQ(differences[0].current, "2");
    EXPECT_EQ(differences[1].feature, "Width");
    EXPECT_EQ(differences[1].saved, "64");
    camera.load(file);
    EXPECT_TRUE(camera.diff(file).empty());
    EXPECT_EQ(ErrorOf([&] { camera.load(file + ".no"); }).code(), ZelCamErr_FileOpenFailed);
}

TEST_F(ZelLayer, AReadThatFailedIsNotTriedAgain) {
    const zel::Camera camera = zel::open("left");
    EXPECT_GE(camera["LineStatusAll"].as<int>(), 0);
    ZelSimFault fault{};
    fault.function = "GCReadPort";
    fault.command = ZELSIM_ANY_COMMAND;
    fault.count = ZELSIM_FOREVER;
    fault.actions = ZELSIM_FAULT_RETURN;
    fault.code = ZelCamErr_GenTL_Timeout;
    ASSERT_EQ(simulator.injectFault(&fault), 0);
    const uint64_t before = simulator.callCount("GCReadPort");
    EXPECT_EQ(ErrorOf([&] { camera["LineStatusAll"].as<int>(); }).code(), ZelCamErr_Error);
    EXPECT_EQ(simulator.callCount("GCReadPort"), before + 1);
    simulator.clearFaults();
}

}  // namespace
