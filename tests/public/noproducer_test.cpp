// Run where the loader finds a file of the default producer's name that is no producer.
#include <gtest/gtest.h>

#include "ZelCam/ZelCam.h"

TEST(NoProducer, ThereIsNoSystemAndNoDevice) {
    EXPECT_EQ(ZelCam_GetSystem(), nullptr);
    ZelCamErr err = ZelCamErr_Success;
    EXPECT_EQ(ZelCam_CreateDevice(nullptr, ZelCam::DeviceAccess::Control, &err), nullptr);
    EXPECT_EQ(err, ZelCamErr_GenTL_Error);
}
