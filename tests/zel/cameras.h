// Cameras for the tests of the layer.
#pragma once

#include <cstdlib>

#include <gtest/gtest.h>

#include "tests/support/simulator.h"
#include "zel/camera.h"

namespace ZelTest {

constexpr const char* kLeft =
    "<Camera id='left' model='L' serial='1' userName='eye' width='64' height='48' frameRate='0'/>";

// Frames as fast as they are asked for.
constexpr const char* kCameras =
    "<ZelSim>"
    "<Interface id='eth0' type='GEV'>"
    "<Camera id='left' model='L' serial='1' userName='eye' width='64' height='48' frameRate='0'/>"
    "<Camera id='right' serial='2' width='30' height='20' frameRate='0' pixelFormat='BGR8'"
    " xPadding='6'/>"
    "</Interface>"
    "</ZelSim>";

class ZelLayer : public testing::Test {
  protected:
    void SetUp() override {
        // Other tests have cameras on loopback, which are real ones to this program.
        setenv("ZELGEV_INTERFACES", "none", 1);
        ASSERT_EQ(simulator.configure(kCameras), 0);
    }
    void TearDown() override { EXPECT_EQ(simulator.openHandles(), 0U); }

    Simulator simulator;
};

// The error that `action` throws.
template <typename Action>
zel::Error ErrorOf(Action action) {
    try {
        action();
    } catch (const zel::Error& error) {
        return error;
    }
    return {ZelCamErr_Success, "nothing was thrown"};
}

}  // namespace ZelTest
