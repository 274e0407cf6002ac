// The producer file and what it lists.

#include <thread>

#include <gmock/gmock.h>

#include "tests/simulator/producer.h"

using namespace GenTL;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

namespace {

TEST(ProducerFile, NeedsInitialisationAndUnloads) {
    {
        Producer p;
        TL_HANDLE system = nullptr;
        EXPECT_EQ(p.TLOpen(&system), GC_ERR_NOT_INITIALIZED);
        EXPECT_EQ(p.GCCloseLib(), GC_ERR_NOT_INITIALIZED);
        // Two clients: what the second has open outlives the end of the first.
        ASSERT_EQ(p.GCInitLib(), GC_ERR_SUCCESS);
        ASSERT_EQ(p.GCInitLib(), GC_ERR_SUCCESS);
        ASSERT_EQ(p.TLOpen(&system), GC_ERR_SUCCESS);
        ASSERT_EQ(p.GCCloseLib(), GC_ERR_SUCCESS);
        uint32_t count = 0;
        EXPECT_EQ(p.TLGetNumInterfaces(system, &count), GC_ERR_SUCCESS);
        ASSERT_EQ(p.GCCloseLib(), GC_ERR_SUCCESS);
        EXPECT_EQ(p.TLGetNumInterfaces(system, &count), GC_ERR_NOT_INITIALIZED);
        EXPECT_EQ(p.GetNumOpenHandles(), 0U);
        ASSERT_TRUE(Producer::IsLoaded());
    }
    EXPECT_FALSE(Producer::IsLoaded());
}

TEST(ProducerFile, UnloadsAfterFailuresOnOtherThreads) {
    {
        Producer p;
        ASSERT_EQ(p.GCInitLib(), GC_ERR_SUCCESS);
        std::thread([&] { EXPECT_EQ(p.TLClose(nullptr), GC_ERR_INVALID_HANDLE); }).join();
        EXPECT_EQ(p.GCCloseLib(), GC_ERR_SUCCESS);
    }
    EXPECT_FALSE(Producer::IsLoaded());
}

class ModuleTest : public SimulatorTest {};

TEST_F(ModuleTest, DefaultWorldHasTwoGigECamerasAndOneUsbCamera) {
    const IF_HANDLE gev = OpenInterface("GEV0");
    const IF_HANDLE usb = OpenInterface("U3V0");
    EXPECT_THAT(DeviceIds(gev), ElementsAre("GEV0-CAM0", "GEV0-CAM1"));
    EXPECT_THAT(DeviceIds(usb), ElementsAre("U3V0-CAM0"));
}

// One file for all cameras, real ones too: only its interfaces are named as simulated.
TEST_F(ModuleTest, ProducerIsNotNamedAsSimulated) {
    const auto text = [](auto query, PORT_HANDLE module, int32_t command) {
        return Ask(query, module, command).Text();
    };
    EXPECT_EQ(Ask(p.GCGetInfo, TL_INFO_PATHNAME).Text(), ZELCTI_PATH);
    EXPECT_EQ(text(p.TLGetInfo, system, TL_INFO_ID), "ZelCTI");
    EXPECT_EQ(text(p.TLGetInfo, system, TL_INFO_MODEL), "ZelCam GenTL producer");
    EXPECT_EQ(text(p.TLGetInfo, system, TL_INFO_DISPLAYNAME), "ZelCam cameras");
    EXPECT_EQ(text(p.GCGetPortInfo, system, PORT_INFO_ID), "ZelCTI");
    EXPECT_EQ(text(p.GCGetPortInfo, system, PORT_INFO_MODEL), "ZelCam GenTL producer");
    interface = OpenInterface("GEV0");
    EXPECT_EQ(text(p.GCGetPortInfo, interface, PORT_INFO_VENDOR), ZELSIM_INTERFACE_VENDOR);
    EXPECT_EQ(text(p.GCGetPortInfo, interface, PORT_INFO_MODEL), ZELSIM_INTERFACE_MODEL);
}

TEST_F(ModuleTest, ConfigurationsDescribeInterfacesAndCameras) {
    UseConfig(R"(<ZelSim>
        <Interface id="A" type="HDSDI" displayName="Grabber" version="2.5"/>
        <Interface id="B" type="U3V">
            <Camera id="C" vendor="V" model="M" serial="S" version="3" usbHostInfo="port 7"
                    timestampFrequency="1000" userName="Left"/>
            <Camera id="D"/>
        </Interface></ZelSim>)");
    const IF_HANDLE a = OpenInterface("A");
    const IF_HANDLE b = OpenInterface("B");
    EXPECT_EQ(Ask(p.IFGetInfo, a, INTERFACE_INFO_TLTYPE).Text(), "HDSDI");
    EXPECT_EQ(Ask(p.IFGetInfo, a, INTERFACE_INFO_DISPLAYNAME).Text(), "Grabber");
    EXPECT_EQ(Ask(p.IFGetInfo, a, INTERFACE_INFO_CUSTOM_ID).Text(), "2.5");
    EXPECT_EQ(Ask(p.IFGetInfo, b, INTERFACE_INFO_DISPLAYNAME).Text(), "B");
    const std::pair<int32_t, const char*> texts[] = {
        {DEVICE_INFO_VENDOR, "V"},  {DEVICE_INFO_MODEL, "M"},
        {DEVICE_INFO_VERSION, "3"}, {DEVICE_INFO_SERIAL_NUMBER, "S"},
        {1100, "port 7"},           {DEVICE_INFO_USER_DEFINED_NAME, "Left"}};
    for (const auto& [command, text] : texts)
        EXPECT_EQ(DeviceInfo(b, "C", command).Text(), text) << command;
    EXPECT_EQ(DeviceInfo(b, "C", DEVICE_INFO_TIMESTAMP_FREQUENCY).Uint64(), 1000U);
    EXPECT_THAT(DeviceIds(a), IsEmpty());
}

TEST_F(ModuleTest, HostInfoExistsOnUsbOnly) {
    EXPECT_EQ(DeviceInfo(OpenInterface("GEV0"), "GEV0-CAM0", 1100).code, GC_ERR_NOT_IMPLEMENTED);
}

TEST_F(ModuleTest, CamerasComeAndGo) {
    interface = OpenInterface("U3V0");
    ASSERT_EQ(p.PlugCamera("U3V0", "<Camera id='new'/>"), GC_ERR_SUCCESS);
    ASSERT_EQ(p.UnplugCamera("U3V0-CAM0"), GC_ERR_SUCCESS);
    EXPECT_THAT(DeviceIds(interface), ElementsAre("U3V0-CAM0"));
    EXPECT_EQ(DeviceInfo(interface, "U3V0-CAM0", DEVICE_INFO_ACCESS_STATUS).Int32(),
              DEVICE_ACCESS_STATUS_NOACCESS);
    const auto open = [&](const char* id) {
        return p.IFOpenDevice(interface, id, DEVICE_ACCESS_CONTROL, &device);
    };
    EXPECT_EQ(open("U3V0-CAM0"), GC_ERR_IO);
    EXPECT_EQ(open("new"), GC_ERR_INVALID_ID);

    EXPECT_EQ(p.IFUpdateDeviceList(interface, nullptr, 0), GC_ERR_SUCCESS);
    EXPECT_THAT(DeviceIds(interface), ElementsAre("new"));
    EXPECT_EQ(open("new"), GC_ERR_SUCCESS);

    EXPECT_EQ(p.PlugCamera("U3V0", "<Camera id='new'/>"), GC_ERR_RESOURCE_IN_USE);
    EXPECT_EQ(p.PlugCamera("none", "<Camera id='other'/>"), GC_ERR_INVALID_ID);
    EXPECT_EQ(p.UnplugCamera("other"), GC_ERR_INVALID_ID);
}

}  // namespace
