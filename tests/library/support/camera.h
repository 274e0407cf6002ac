// A description with a feature of each kind over the registers of a FakePort, and an array of it.
#pragma once

#include <memory>

#include <gtest/gtest.h>

#include "ZelCameraApi/ZelGenParam/arrayimpl.h"
#include "tests/genapi/support/description.h"
#include "tests/library/support/fakeport.h"

inline std::string CameraDescription() {
    using namespace test;
    const auto feature = [](const char* name) { return Element("pFeature", name); };
    const std::string lock = Element("pIsLocked", "Locked");
    return Document(
        Named("Category", "Root",
              feature("Int") + feature("Float") + feature("String") + feature("Enum") +
                  feature("Boolean") + feature("Command") + feature("Category")) +
        Named("Category", "Category", feature("ReadOnly") + feature("Raw") + feature("Hidden")) +
        Named("Integer", "Int",
              "<ToolTip>Tip</ToolTip><Description>About</Description><DisplayName>Shown"
              "</DisplayName><Visibility>Guru</Visibility>" +
                  lock +
                  "<Streamable>Yes</Streamable>"
                  "<pValue>IntReg</pValue><Min>10</Min><Max>100</Max><Inc>5</Inc>") +
        IntReg("IntReg", 0) +
        Named("Float", "Float",
              lock + "<pValue>FloatReg</pValue><Min>0</Min><Max>2</Max><Unit>s</Unit>") +
        Named("FloatReg", "FloatReg", RegisterAt(8, 8) + Element("PollingTime", 100) + kLittle) +
        Named("StringReg", "String", lock + RegisterAt(16, 8)) +
        Named("Enumeration", "Enum",
              lock + Entry("One", 1) + Entry("Two", 2) + Element("pValue", "EnumReg")) +
        IntReg("EnumReg", 24) +
        Named("Boolean", "Boolean",
              lock + "<pValue>BooleanReg</pValue><OnValue>1</OnValue>"
                     "<OffValue>0</OffValue>") +
        IntReg("BooleanReg", 28) +
        Named("Command", "Command",
              lock + "<pValue>CommandReg</pValue><CommandValue>1</CommandValue>") +
        IntReg("CommandReg", 32) +
        Named("Integer", "ReadOnly", "<ImposedAccessMode>RO</ImposedAccessMode><Value>3</Value>") +
        Named("Register", "Raw", RegisterAt(40, 8)) +
        Named("Integer", "Hidden", "<pIsAvailable>ReadZero</pIsAvailable><Value>3</Value>") +
        Named("Integer", "ReadZero", Element("Value", 0)) +
        // No features of a category.
        IntReg("Locked", 56) + Named("IntReg", "WriteOnly", RegisterAt(48, 4, "WO") + kLittle) +
        Named("IntReg", "NoLength",
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
