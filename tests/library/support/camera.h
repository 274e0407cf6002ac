// A description with a feature of each kind over the registers of a FakePort, and an array of it.
#pragma once

#include <memory>

#include <gtest/gtest.h>

#include "ZelCameraApi/ZelGenParam/arrayimpl.h"
#include "tests/genapi/support/description.h"
#include "tests/library/support/fakeport.h"

inline std::string CameraDescription() {
    using namespace test;
    const auto feature = [](const char* name) { return element("pFeature", name); };
    const std::string lock = element("pIsLocked", "Locked");
    return document(
        named("Category", "Root",
              feature("Int") + feature("Float") + feature("String") + feature("Enum") +
                  feature("Boolean") + feature("Command") + feature("Category")) +
        named("Category", "Category", feature("ReadOnly") + feature("Raw") + feature("Hidden")) +
        named("Integer", "Int",
              "<ToolTip>Tip</ToolTip><Description>About</Description><DisplayName>Shown"
              "</DisplayName><Visibility>Guru</Visibility>" +
                  lock +
                  "<Streamable>Yes</Streamable>"
                  "<pValue>IntReg</pValue><Min>10</Min><Max>100</Max><Inc>5</Inc>") +
        intReg("IntReg", 0) +
        named("Float", "Float",
              lock + "<pValue>FloatReg</pValue><Min>0</Min><Max>2</Max><Unit>s</Unit>") +
        named("FloatReg", "FloatReg", registerAt(8, 8) + element("PollingTime", 100) + kLittle) +
        named("StringReg", "String", lock + registerAt(16, 8)) +
        named("Enumeration", "Enum",
              lock + entry("One", 1) + entry("Two", 2) + element("pValue", "EnumReg")) +
        intReg("EnumReg", 24) +
        named("Boolean", "Boolean",
              lock + "<pValue>BooleanReg</pValue><OnValue>1</OnValue>"
                     "<OffValue>0</OffValue>") +
        intReg("BooleanReg", 28) +
        named("Command", "Command",
              lock + "<pValue>CommandReg</pValue><CommandValue>1</CommandValue>") +
        intReg("CommandReg", 32) +
        named("Integer", "ReadOnly", "<ImposedAccessMode>RO</ImposedAccessMode><Value>3</Value>") +
        named("Register", "Raw", registerAt(40, 8)) +
        named("Integer", "Hidden", "<pIsAvailable>ReadZero</pIsAvailable><Value>3</Value>") +
        named("Integer", "ReadZero", element("Value", 0)) +
        // No features of a category.
        intReg("Locked", 56) + named("IntReg", "WriteOnly", registerAt(48, 4, "WO") + kLittle) +
        named("IntReg", "NoLength",
              "<Address>52</Address><pLength>ReadZero</pLength><AccessMode>RW</AccessMode>"
              "<pPort>Device</pPort>" +
                  kLittle) +
        kPort);
}

// Feature values: Int 50, Enum 1, all others zero; nothing is locked.
class CameraTest : public testing::Test {
  protected:
    CameraTest() {
        port.Announce(CameraDescription());
        port.memory[0] = 50;
        port.memory[24] = 1;
        ZelCamErr created = ZelCamErr_Error;
        array = ZelCameraApi::Internal::CreateArray(port.Module(), &created, nullptr);
        EXPECT_EQ(created, ZelCamErr_Success);
    }
    void SetUp() override { ASSERT_NE(array, nullptr); }

    FakePort port;
    std::unique_ptr<ZelCameraApi::Internal::ArrayImpl> array;
    ZelCamErr err = ZelCamErr_Success;
};
