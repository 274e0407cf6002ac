// Opening a camera, reading a feature and closing it again, over and over, leaves nothing behind.
#include <chrono>
#include <thread>

#include <gtest/gtest.h>

#include "ZelCam/ZelCam.h"
#include "ZelGenParam/Array.h"
#include "tests/support/holder.h"
#include "tests/support/processstate.h"
#include "tests/support/simulator.h"

namespace {

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr int kRounds = 100;  // a sanitizer keeps freed memory, and takes its time
constexpr bool kCountsMemory = false;
#elif defined(ZELCAM_EMULATED)
constexpr int kRounds = 100;  // what is resident is the emulator, which keeps something of threads
constexpr bool kCountsMemory = false;
#else
constexpr int kRounds = 1000;
constexpr bool kCountsMemory = true;
#endif
constexpr int kWarmUp = kRounds / 5;

// Less than a round could leave behind: half a KiB for each.
constexpr long kToleratedKiB = kRounds / 2;

void OpenReadClose(ZelCam::DeviceInfo* info) {
    ZelCamErr err = ZelCamErr_Error;
    ZelCam::Device* const camera = ZelCam_CreateDevice(info, ZelCam::DeviceAccess::Exclusive, &err);
    ASSERT_NE(camera, nullptr) << err;
    ZelGenParam::Array* const features = camera->GetCameraParameters(&err);
    ASSERT_NE(features, nullptr) << err;
    EXPECT_STRNE(features->GetStringValue("DeviceModelName", &err), nullptr);
    EXPECT_EQ(err, ZelCamErr_Success);
    camera->Release();
}

ZelCam::DeviceInfo* FirstCamera(ZelCam::System* system) {
    ZelCam::List<ZelCam::Interface>* const interfaces =
        system->GetInterfaceList(ZelCam::InterfaceType::Unknown);
    for (auto* each = interfaces->GetFirst(); each; each = interfaces->GetNext()) {
        each->ReEnumerateDevices(nullptr, 1000);
        if (ZelCam::DeviceInfo* const info = each->GetFirstDeviceInfo()) return info;
    }
    return nullptr;
}

TEST(Rounds, OfOpeningReadingAndClosingLeaveNothingBehind) {
    const ZelTest::Simulator simulator;
    ASSERT_EQ(simulator.configure(nullptr), 0);
    const ZelTest::Holder<ZelCam::System> system(ZelCam_GetSystem());
    ASSERT_NE(system, nullptr);
    ZelCam::DeviceInfo* const info = FirstCamera(system.get());
    ASSERT_NE(info, nullptr);

    for (int i = 0; i < kWarmUp && !HasFailure(); ++i)
        OpenReadClose(info);
    const auto before = ZelTest::ProcessState::Now();
    for (int i = 0; i < kRounds && !HasFailure(); ++i)
        OpenReadClose(info);
    // A thread that was joined may still be on its way out.
    auto after = ZelTest::ProcessState::Now();
    for (int i = 0; i < 100 && after.threads > before.threads; ++i) {
        std::this_thread::sleep_for(std::chrono::milliseconds(100));
        after = ZelTest::ProcessState::Now();
    }

    EXPECT_EQ(after.threads, before.threads);
    EXPECT_EQ(after.descriptors, before.descriptors);
    if (kCountsMemory) {
        EXPECT_LE(after.residentKiB - before.residentKiB, kToleratedKiB);
    }
}

}  // namespace
