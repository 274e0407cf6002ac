// Opening a camera, reading a feature and closing it again, over and over, leaves nothing behind.
#include <gtest/gtest.h>

#include "ZelCam/ZelCam.h"
#include "ZelGenParam/Array.h"
#include "tests/support/holder.h"
#include "tests/support/processstate.h"
#include "tests/support/simulator.h"

namespace {

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__) || defined(ZELCAM_EMULATED)
constexpr int kRounds = 100;
#else
constexpr int kRounds = 1000;
#endif
constexpr int kWarmUp = kRounds / 5;

// Less than each round could leave behind.
constexpr long kToleratedBytes = 24L * kRounds;

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
    const auto after = ZelTest::ProcessState::Now();

    // A thread that was joined may still be on its way out, before and after.
    EXPECT_LT(after.threads, before.threads + kRounds / 10);
    EXPECT_LE(after.descriptors, before.descriptors);
    EXPECT_LE(after.allocatedBytes, before.allocatedBytes + kToleratedBytes);
}

}  // namespace
