// Features and registers of the simulated cameras that do not show in frames.

#include <iterator>
#include <thread>

#include <GenApi/Filestream.h>

#include "tests/simulator/cameranodestest.h"
#include "tests/simulator/producer.h"

using namespace GenTL;
using GENAPI_NAMESPACE::IDevFileStream;
using GENAPI_NAMESPACE::ODevFileStream;

namespace {

constexpr uint64_t kFlashCommand = 0x20006050;
constexpr uint64_t kFlashStatus = 0x20006058;
constexpr uint64_t kFlashPageControl = 0x20006100;
constexpr uint64_t kFlashWindow = 0x30000000;

class CameraDeviceTest : public CameraNodesTest {
  protected:
    GC_ERROR Write(uint64_t address, uint32_t value) {
        size_t size = sizeof value;
        return p.GCWritePort(Remote(), address, &value, &size);
    }
    GC_ERROR Read(uint64_t address, uint32_t* value) {
        size_t size = sizeof *value;
        return p.GCReadPort(Remote(), address, value, &size);
    }
    uint32_t Value(uint64_t address) {
        uint32_t value = 0;
        EXPECT_EQ(Read(address, &value), GC_ERR_SUCCESS);
        return value;
    }
};

// The byte order of the camera is that of all its numbers and of none of its bit fields.
class ByteOrderTest : public CameraDeviceTest, public ::testing::WithParamInterface<const char*> {};

TEST_P(ByteOrderTest, FeaturesKeepWhatIsWritten) {
    Open(std::string("serial='77' userName='One' bigEndian='") + GetParam() + "'", "GEV");
    EXPECT_EQ(nodes->Get("DeviceSerialNumber"), "77");
    nodes->Set("DeviceUserID", "Two");
    EXPECT_EQ(DeviceInfo(interface, "C", DEVICE_INFO_USER_DEFINED_NAME).Text(), "Two");
    nodes->SetInteger("Width", 100);
    nodes->Set("Gamma", "0.5");
    EXPECT_EQ(nodes->Integer("PayloadSize"), 100 * 480);
    EXPECT_EQ(nodes->Get("Gamma"), "0.5");
    EXPECT_EQ(nodes->Integer("CapabilityUserSets"), 3);

    nodes->Set("LineSelector", "Line1");
    nodes->Set("LineInverter", "1");
    nodes->SetInteger("LineDebouncerTime", 200);
    EXPECT_EQ(nodes->Get("LineMode"), "Input");
    EXPECT_EQ(nodes->Get("LineStatus"), "1");
    EXPECT_EQ(nodes->Integer("LineStatusAll"), 2);
    EXPECT_EQ(Value(0x2404), 0xC802U);
}
INSTANTIATE_TEST_SUITE_P(Orders, ByteOrderTest, ::testing::Values("false", "true"));

TEST_F(CameraDeviceTest, UserSetsKeepSettings) {
    Open("width='64'", "U3V");
    nodes->SetInteger("Width", 32);
    nodes->Set("Gain", "6");
    nodes->Set("UserSetSelector", "UserSet1");
    nodes->Execute("UserSetSave");
    nodes->Set("UserSetSelector", "Default");
    nodes->Execute("UserSetLoad");
    EXPECT_EQ(nodes->Integer("Width"), 64);
    EXPECT_EQ(nodes->Get("Gain"), "0");
    EXPECT_FALSE(GENAPI_NAMESPACE::IsWritable(nodes->Node("UserSetSave")));
    EXPECT_EQ(Write(0x2520, 1), GC_ERR_ACCESS_DENIED);
}

// A reset takes the power: clients lose the camera, which comes back as another one.
TEST_F(CameraDeviceTest, WhatIsPermanentSurvivesAReset) {
    Open("width='64' flashBusyTime='0'", "U3V");
    nodes->SetInteger("Width", 32);
    nodes->Set("UserSetSelector", "UserSet1");
    nodes->Execute("UserSetSave");
    nodes->Set("UserSetDefault", "UserSet1");
    nodes->Set("DeviceUserID", "Left");
    nodes->Set("EventSelector", "FrameStart");
    nodes->Set("EventNotification", "On");
    nodes->SetInteger("TLParamsLocked", 1);
    EXPECT_EQ(Write(0x4000, 77), GC_ERR_SUCCESS);  // UserMemory
    EXPECT_EQ(Write(kFlashCommand, 0x1410000), GC_ERR_SUCCESS);
    ODevFileStream(&nodes->Map(), "UserFile") << "kept";
    AllocateAndQueue(1);
    ASSERT_EQ(StartStream(), GC_ERR_SUCCESS);

    const DEV_HANDLE lost = device;
    const PORT_HANDLE lostPort = Remote();
    nodes->Execute("DeviceReset");
    uint32_t value = 0;
    size_t size = sizeof(value);
    EXPECT_EQ(p.GCReadPort(lostPort, 0x2110, &value, &size), GC_ERR_IO);
    bool8_t changed = 0;
    EXPECT_EQ(p.IFUpdateDeviceList(interface, &changed, 0), GC_ERR_SUCCESS);
    EXPECT_TRUE(changed);
    EXPECT_EQ(DeviceIds(interface), std::vector<std::string>{"C"});
    ASSERT_EQ(p.IFOpenDevice(interface, "C", DEVICE_ACCESS_EXCLUSIVE, &device), GC_ERR_SUCCESS);
    EXPECT_EQ(p.DevClose(lost), GC_ERR_SUCCESS);

    nodes = std::make_unique<PortNodeMap>(p, Remote());
    EXPECT_EQ(nodes->Integer("Width"), 32);
    EXPECT_EQ(nodes->Get("UserSetDefault"), "UserSet1");
    EXPECT_EQ(nodes->Get("DeviceUserID"), "Left");
    EXPECT_EQ(Value(kFlashWindow + 0x41FFFC), 0xFFFFFFFFU);
    EXPECT_EQ(Value(kFlashWindow + 0x420000), 0U);
    IDevFileStream file(&nodes->Map(), "UserFile");
    EXPECT_EQ(std::string(std::istreambuf_iterator<char>(file), {}), "kept");

    // The rest starts anew; the set of the factory is still there.
    nodes->Set("EventSelector", "FrameStart");
    EXPECT_EQ(nodes->Get("EventNotification"), "Off");
    EXPECT_EQ(Value(0x4000), 0U);
    nodes->Execute("UserSetLoad");
    EXPECT_EQ(nodes->Integer("Width"), 64);
}

TEST_F(CameraDeviceTest, CommandsTakeTheirTime) {
    Open("", "CL");
    nodes->Execute("BlackLevelCalibrate");
    const GENAPI_NAMESPACE::CCommandPtr calibrate = nodes->Node("BlackLevelCalibrate");
    EXPECT_FALSE(nodes->IsReadable("BlackLevelCalibrationCount"));
    nodes->SetInteger("FactoryKey", 0x5A454C);
    EXPECT_EQ(nodes->Integer("BlackLevelCalibrationCount"), 1);
    while (!calibrate->IsDone())
        std::this_thread::yield();
    EXPECT_EQ(nodes->Integer("BlackLevelCalibrateReg"), 0);

    nodes->Execute("TimestampLatch");
    const int64_t first = nodes->Integer("TimestampLatchValue");
    nodes->Execute("TimestampLatch");
    EXPECT_GT(nodes->Integer("TimestampLatchValue"), first);
}

TEST_F(CameraDeviceTest, RegistersRefuseWhatTheyDoNotAllow) {
    Open("", "GEV");
    uint32_t value = 0;
    EXPECT_EQ(Write(0x2100, 1), GC_ERR_ACCESS_DENIED);      // SensorWidth
    EXPECT_EQ(Read(0x2510, &value), GC_ERR_ACCESS_DENIED);  // UserSetLoad
    EXPECT_EQ(Write(0x2110, 641), GC_ERR_INVALID_VALUE);    // Width
    EXPECT_EQ(Write(0x2608, 2), GC_ERR_INVALID_VALUE);      // TLParamsLocked
    EXPECT_EQ(Write(0x2620, 575), GC_ERR_INVALID_VALUE);    // GevSCPSPacketSize
    EXPECT_EQ(Write(0x212C, 0x01080001), GC_ERR_SUCCESS);   // PixelFormat
    EXPECT_EQ(Write(0x212C, 0x12345678), GC_ERR_INVALID_VALUE);
    EXPECT_EQ(Value(0x212C), 0x01080001U);
    EXPECT_EQ(Write(0x2504, 3), GC_ERR_INVALID_VALUE);  // UserSetDefault

    // A write that touches half of two registers changes these halves.
    const std::vector<uint8_t> bytes{1, 0, 1, 0};
    size_t size = bytes.size();
    EXPECT_EQ(p.GCWritePort(Remote(), 0x2112, bytes.data(), &size), GC_ERR_INVALID_VALUE);
    EXPECT_EQ(Value(0x2110), 640U);
    EXPECT_EQ(Value(0x2114), 480U);
}

class CameraFileTest : public CameraDeviceTest {
  protected:
    // Returns the status and the result.
    std::pair<std::string, int64_t> Operate(const char* operation) {
        nodes->Set("FileOperationSelector", operation);
        nodes->Execute("FileOperationExecute");
        return {nodes->Get("FileOperationStatus"), nodes->Integer("FileOperationResult")};
    }
    std::pair<std::string, int64_t> Open(const char* mode) {
        nodes->Set("FileOpenMode", mode);
        return Operate("Open");
    }
    std::pair<std::string, int64_t> Access(const char* operation, int64_t offset, int64_t length) {
        nodes->SetInteger("FileAccessOffset", offset);
        nodes->SetInteger("FileAccessLength", length);
        return Operate(operation);
    }
    std::string Buffer(size_t size) {
        std::string bytes(1024, 0);
        GENAPI_NAMESPACE::CRegisterPtr(nodes->Node("FileAccessBuffer"))
            ->Get(reinterpret_cast<uint8_t*>(bytes.data()), 1024);
        return bytes.substr(0, size);
    }
    void SetBuffer(std::string bytes) {
        bytes.resize(1024);
        GENAPI_NAMESPACE::CRegisterPtr(nodes->Node("FileAccessBuffer"))
            ->Set(reinterpret_cast<const uint8_t*>(bytes.data()), 1024);
    }

    using Done = std::pair<std::string, int64_t>;
    const Done failed{"Failure", 0};
};

TEST_F(CameraFileTest, StreamsKeepWhatIsWritten) {
    CameraNodesTest::Open("flashBusyTime='0' bigEndian='true'", "GEV");
    std::string text;
    for (int i = 0; i < 1000; ++i)
        text += std::to_string(i) + " ";
    for (const char* name : {"UserFile", "Firmware"}) {
        {
            ODevFileStream out(&nodes->Map(), name);
            EXPECT_TRUE(out << text << std::flush);
        }
        IDevFileStream in(&nodes->Map(), name);
        std::string read(text.size(), '\0');
        EXPECT_TRUE(in.read(read.data(), static_cast<std::streamsize>(read.size())));
        EXPECT_EQ(read, text) << name;
    }
    EXPECT_EQ(Value(kFlashWindow + 0x400000), 0x20312030U);  // "0 1 "
    { ODevFileStream(&nodes->Map(), "UserFile") << "short"; }
    nodes->Set("FileSelector", "UserFile");
    EXPECT_EQ(nodes->Integer("FileSize"), 5);
    nodes->Set("FileSelector", "Firmware");
    EXPECT_EQ(nodes->Integer("FileSize"), 0x400000);
}

TEST_F(CameraFileTest, OperationsNeedAnOpenFileOfTheirMode) {
    CameraNodesTest::Open("", "U3V");
    nodes->Set("FileSelector", "UserFile");
    SetBuffer("0123456789");
    EXPECT_EQ(Operate("Close"), failed);
    EXPECT_EQ(Access("Write", 0, 10), failed);
    EXPECT_EQ(Open("Write"), Done("Success", 0));
    EXPECT_EQ(Open("Write"), failed);
    EXPECT_EQ(Access("Write", 2, 10), Done("Success", 10));
    EXPECT_EQ(Access("Read", 0, 10), failed);
    EXPECT_EQ(Operate("Delete"), failed);
    EXPECT_EQ(Operate("Close"), Done("Success", 0));

    EXPECT_EQ(Open("Read"), Done("Success", 0));
    EXPECT_EQ(Access("Write", 0, 10), failed);
    EXPECT_EQ(Access("Read", 0, 1024), Done("Success", 12));
    EXPECT_EQ(Buffer(12), std::string("\0\0", 2) + "0123456789");
    EXPECT_EQ(Access("Read", 10, 1024), Done("Success", 2));
    EXPECT_EQ(Buffer(2), "89");
    EXPECT_EQ(Access("Read", 100, 1), Done("Success", 0));
    EXPECT_EQ(Operate("Close"), Done("Success", 0));
    EXPECT_EQ(Operate("Delete"), Done("Success", 0));
    EXPECT_EQ(nodes->Integer("FileSize"), 0);

    EXPECT_EQ(Open("ReadWrite"), Done("Success", 0));
    EXPECT_EQ(Access("Write", 65530, 10), Done("Success", 6));
    EXPECT_EQ(Access("Write", 65536, 10), failed);
    EXPECT_EQ(Access("Read", 65530, 10), Done("Success", 6));
    EXPECT_EQ(nodes->Integer("FileSize"), 65536);
    EXPECT_THROW(nodes->SetInteger("FileAccessLength", 1025),
                 GENICAM_NAMESPACE::OutOfRangeException);

    nodes->Set("FileSelector", "Firmware");
    EXPECT_EQ(Operate("Delete"), failed);
    EXPECT_EQ(Open("ReadWrite"), Done("Success", 0));
    EXPECT_EQ(Access("Read", 0x3FFFFE, 10), Done("Success", 2));
    EXPECT_EQ(Access("Write", 0x400000, 10), failed);
}

// Across sectors, and once more over what is there.
TEST_F(CameraFileTest, TheFirmwareIsWrittenAsTheFlashIs) {
    CameraNodesTest::Open("flashBusyTime='0'", "GEV");
    nodes->Set("FileSelector", "Firmware");
    EXPECT_EQ(Open("ReadWrite"), Done("Success", 0));
    for (const char* text : {"abcdefgh", "ABCDEFGH"}) {
        SetBuffer(text);
        EXPECT_EQ(Access("Write", 0xFFFC, 8), Done("Success", 8));
        EXPECT_EQ(Access("Read", 0xFFFC, 8), Done("Success", 8));
        EXPECT_EQ(Buffer(8), text);
    }
    EXPECT_EQ(Value(kFlashWindow + 0x410000), 0x48474645U);  // "EFGH"
    EXPECT_EQ(Value(kFlashWindow + 0x410004), 0U);
}

TEST_F(CameraFileTest, AWriteOfTheFirmwareTakesItsTime) {
    CameraNodesTest::Open("flashBusyTime='60000'", "GEV");
    nodes->Set("FileSelector", "Firmware");
    EXPECT_EQ(Open("ReadWrite"), Done("Success", 0));
    EXPECT_EQ(Access("Write", 0, 4), Done("Success", 4));
    EXPECT_FALSE(GENAPI_NAMESPACE::CCommandPtr(nodes->Node("FileOperationExecute"))->IsDone());
    EXPECT_THROW(Access("Read", 0, 4), std::runtime_error);
    EXPECT_EQ(Write(kFlashCommand, 0x1400000), GC_ERR_BUSY);
    nodes->Set("FileSelector", "UserFile");
    EXPECT_TRUE(GENAPI_NAMESPACE::CCommandPtr(nodes->Node("FileOperationExecute"))->IsDone());
}

TEST_F(CameraDeviceTest, TheFlashErasesAndPrograms) {
    Open("flashBusyTime='1'", "GEV");
    const auto whenIdle = [this](uint32_t command) {
        GC_ERROR code = GC_ERR_BUSY;
        while ((code = Write(kFlashCommand, command)) == GC_ERR_BUSY)
            std::this_thread::yield();
        return code;
    };
    EXPECT_EQ(whenIdle(0x17F0000), GC_ERR_SUCCESS);  // the last sector
    while ((Value(kFlashStatus) & 0xFFU) != 0)
        ASSERT_EQ(Write(kFlashCommand, 0x6000000), GC_ERR_SUCCESS);
    EXPECT_EQ(Value(kFlashWindow + 0x7FFFFC), 0xFFFFFFFFU);
    EXPECT_EQ(whenIdle(0x1800000), GC_ERR_INVALID_VALUE);

    ASSERT_EQ(Write(0x10000300, 0x12345678), GC_ERR_SUCCESS);
    EXPECT_EQ(whenIdle(0x37F0000), GC_ERR_ACCESS_DENIED);
    ASSERT_EQ(Write(kFlashPageControl, 0x1000001), GC_ERR_SUCCESS);
    EXPECT_EQ(whenIdle(0x37F0000), GC_ERR_SUCCESS);
    EXPECT_EQ(Value(kFlashWindow + 0x7F0000), 0x12345678U);
    EXPECT_EQ(Value(kFlashWindow + 0x7F0004), 0U);

    // Again without erasing: bits are cleared and not set.
    GC_ERROR code = GC_ERR_BUSY;
    while ((code = Write(0x10000300, 0xFFFF0000)) == GC_ERR_BUSY)
        std::this_thread::yield();
    ASSERT_EQ(code, GC_ERR_SUCCESS);
    ASSERT_EQ(Write(kFlashPageControl, 0x1000001), GC_ERR_SUCCESS);
    EXPECT_EQ(whenIdle(0x37F0000), GC_ERR_SUCCESS);
    EXPECT_EQ(Value(kFlashWindow + 0x7F0000), 0x12340000U);
}

TEST_F(CameraDeviceTest, TheFlashIsBusyForAWhile) {
    Open("flashBusyTime='60000'", "GEV");
    EXPECT_EQ(Write(kFlashCommand, 0x1400000), GC_ERR_SUCCESS);
    EXPECT_NE(Value(kFlashStatus) & 0xFFU, 0U);
    EXPECT_EQ(Write(kFlashCommand, 0x6000000), GC_ERR_SUCCESS);
    EXPECT_EQ(Write(kFlashCommand, 0x1410000), GC_ERR_BUSY);
    EXPECT_EQ(Write(0x10000300, 0), GC_ERR_BUSY);
    EXPECT_EQ(Write(kFlashPageControl, 0x1000001), GC_ERR_BUSY);
}

TEST_F(CameraDeviceTest, TheFlashIsAsStrictAsARealOne) {
    Open("flashBusyTime='0'", "GEV");
    EXPECT_EQ(Write(kFlashCommand, 0x1400100), GC_ERR_INVALID_VALUE);  // within a sector
    EXPECT_EQ(Write(kFlashPageControl, 0x1000001), GC_ERR_SUCCESS);
    EXPECT_EQ(Write(kFlashCommand, 0x3400004), GC_ERR_INVALID_VALUE);  // within a page

    // The status is what the last poll saw.
    EXPECT_EQ(Write(kFlashCommand, 0x1400000), GC_ERR_SUCCESS);
    EXPECT_EQ(Value(kFlashStatus), 1U);
    EXPECT_EQ(Write(kFlashCommand, 0x6000000), GC_ERR_SUCCESS);
    EXPECT_EQ(Value(kFlashStatus), 0U);

    const std::vector<uint8_t> erase{0, 0, 0x40, 1, 0, 0, 0, 0};
    size_t size = erase.size();
    EXPECT_EQ(p.GCWritePort(Remote(), kFlashCommand, erase.data(), &size),
              GC_ERR_INVALID_PARAMETER);
    uint16_t half = 0;
    size = sizeof half;
    EXPECT_EQ(p.GCReadPort(Remote(), kFlashStatus, &half, &size), GC_ERR_INVALID_PARAMETER);
}

}  // namespace
