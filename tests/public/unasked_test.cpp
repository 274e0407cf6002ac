// A program that nobody gave simulated cameras meets none; the environment gives it some.
#include <cstddef>
#include <cstdint>
#include <cstdlib>

#include <gtest/gtest.h>

#include "ZelCam/ZelCam.h"
#include "tests/support/holder.h"

namespace {

using ZelTest::Holder;

class SimulatedCameras : public testing::Test {
  protected:
    SimulatedCameras() {
        unsetenv("ZELSIM");
        unsetenv("ZELSIM_CONFIG");
    }

    // Opens the first camera; stores the code.
    static Holder<ZelCam::Device> OpenFirst(ZelCamErr* err) {
        return Holder<ZelCam::Device>(
            ZelCam_CreateDevice(nullptr, ZelCam::DeviceAccess::Control, err));
    }

    static size_t CountInterfaces(ZelCam::System& system) {
        const Holder<ZelCam::List<ZelCam::Interface>> list(
            system.GetInterfaceList(ZelCam::InterfaceType::Unknown));
        return list == nullptr ? SIZE_MAX : list->GetCount();
    }
};

TEST_F(SimulatedCameras, AreNotThereUnasked) {
    const Holder<ZelCam::System> system(ZelCam_GetSystem());
    ASSERT_NE(system, nullptr);
    EXPECT_STREQ(system->GetDisplayName(), "ZelCam cameras");
    EXPECT_EQ(CountInterfaces(*system), 0U);
    ZelCamErr err = ZelCamErr_Success;
    EXPECT_EQ(OpenFirst(&err), nullptr);
    EXPECT_EQ(err, ZelCamErr_GenTL_Error);
}

TEST_F(SimulatedCameras, AreThereWhenTheEnvironmentAsks) {
    setenv("ZELSIM", "1", 1);
    ZelCamErr err = ZelCamErr_Error;
    EXPECT_NE(OpenFirst(&err), nullptr);
    EXPECT_EQ(err, ZelCamErr_Success);
}

}  // namespace
