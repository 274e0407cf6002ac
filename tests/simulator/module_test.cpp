// Loading, handles, information, lists, access and ports.

#include <limits>
#include <thread>

#include <gmock/gmock.h>

#include "tests/simulator/producer.h"

using namespace GenTL;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
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

TEST_F(ModuleTest, RefusesHandlesThatAreNoneOrOfAnotherKind) {
    int local = 0;
    uint32_t count = 0;
    const IF_HANDLE interface = OpenInterface("GEV0");
    const auto nearby = [&](intptr_t distance) {
        return reinterpret_cast<void*>(reinterpret_cast<intptr_t>(system) + distance);
    };
    for (void* handle : {static_cast<void*>(nullptr), static_cast<void*>(&local), nearby(1000),
                         nearby(1 << 24), nearby(0xFFFF00), interface}) {
        EXPECT_EQ(p.TLGetNumInterfaces(handle, &count), GC_ERR_INVALID_HANDLE) << handle;
    }
    EXPECT_EQ(p.EventKill(interface), GC_ERR_INVALID_HANDLE);
    EXPECT_THAT(LastErrorText(), HasSubstr("EventKill"));
}

TEST_F(ModuleTest, ClosingAModuleClosesAllBelowIt) {
    const size_t before = p.GetNumOpenHandles();
    const IF_HANDLE interface = OpenInterface("GEV0");
    DEV_HANDLE device = nullptr;
    PORT_HANDLE remote = nullptr;
    DS_HANDLE stream = nullptr;
    BUFFER_HANDLE buffer = nullptr;
    EVENT_HANDLE event = nullptr;
    ASSERT_EQ(OpenDevice(interface, "GEV0-CAM0", DEVICE_ACCESS_EXCLUSIVE, &device), 0);
    ASSERT_EQ(p.DevGetPort(device, &remote), GC_ERR_SUCCESS);
    ASSERT_EQ(p.DevOpenDataStream(device, "GEV0-CAM0/Stream0", &stream), GC_ERR_SUCCESS);
    ASSERT_EQ(p.DSAllocAndAnnounceBuffer(stream, 1000, nullptr, &buffer), GC_ERR_SUCCESS);
    ASSERT_EQ(p.GCRegisterEvent(stream, EVENT_NEW_BUFFER, &event), GC_ERR_SUCCESS);
    DEV_HANDLE parent = nullptr;
    EXPECT_EQ(p.DSGetParentDev(stream, &parent), GC_ERR_SUCCESS);
    EXPECT_EQ(parent, device);
    ASSERT_EQ(p.IFClose(interface), GC_ERR_SUCCESS);
    EXPECT_EQ(p.GetNumOpenHandles(), before);
    EXPECT_EQ(p.IFClose(interface), GC_ERR_INVALID_HANDLE);
    EXPECT_EQ(p.DevClose(device), GC_ERR_INVALID_HANDLE);
    EXPECT_EQ(p.DSClose(stream), GC_ERR_INVALID_HANDLE);
    EXPECT_EQ(p.DSQueueBuffer(stream, buffer), GC_ERR_INVALID_HANDLE);
    EXPECT_EQ(p.EventKill(event), GC_ERR_INVALID_HANDLE);
    size_t size = 4;
    EXPECT_EQ(p.GCReadPort(remote, 0, &size, &size), GC_ERR_INVALID_HANDLE);
    // The slot of a stale handle does not revive it, and the camera is free again.
    const IF_HANDLE stale = OpenInterface("GEV0");
    ASSERT_EQ(p.IFClose(stale), GC_ERR_SUCCESS);
    const IF_HANDLE again = OpenInterface("GEV0");
    EXPECT_EQ(p.IFClose(stale), GC_ERR_INVALID_HANDLE);
    EXPECT_EQ(OpenDevice(again, "GEV0-CAM0", DEVICE_ACCESS_EXCLUSIVE, &device), GC_ERR_SUCCESS);
}

TEST_F(ModuleTest, AnswersInfoCommandsInTwoCalls) {
    INFO_DATATYPE type = INFO_DATATYPE_UNKNOWN;
    size_t size = 0;
    ASSERT_EQ(p.TLGetInfo(system, TL_INFO_TLTYPE, &type, nullptr, &size), GC_ERR_SUCCESS);
    EXPECT_EQ(type, INFO_DATATYPE_STRING);
    EXPECT_EQ(size, sizeof("Mixed"));
    char text[16] = {};
    size = 5;
    EXPECT_EQ(p.TLGetInfo(system, TL_INFO_TLTYPE, &type, text, &size), GC_ERR_BUFFER_TOO_SMALL);
    EXPECT_EQ(size, sizeof("Mixed"));
    size = sizeof(text);
    EXPECT_EQ(p.TLGetInfo(system, TL_INFO_TLTYPE, nullptr, text, &size), GC_ERR_SUCCESS);
    EXPECT_STREQ(text, "Mixed");
    EXPECT_EQ(p.TLGetInfo(system, TL_INFO_TLTYPE, &type, text, nullptr), GC_ERR_INVALID_PARAMETER);
    EXPECT_EQ(p.TLGetInfo(system, 999, &type, text, &size), GC_ERR_NOT_IMPLEMENTED);
    EXPECT_EQ(p.TLGetNumInterfaces(system, nullptr), GC_ERR_INVALID_PARAMETER);
    EXPECT_EQ(p.TLOpen(nullptr), GC_ERR_INVALID_PARAMETER);
    EXPECT_EQ(p.TLGetInterfaceID(system, 2, text, &size), GC_ERR_INVALID_INDEX);
    IF_HANDLE interface = nullptr;
    EXPECT_EQ(p.TLOpenInterface(system, "gev0", &interface), GC_ERR_INVALID_ID);
    const Info path = Ask([&](INFO_DATATYPE* t, void* buffer, size_t* s) {
        return p.GCGetInfo(TL_INFO_PATHNAME, t, buffer, s);
    });
    EXPECT_EQ(path.Text(), ZELCTI_PATH);
}

// One file for all cameras, real ones too: only its interfaces are named as simulated.
TEST_F(ModuleTest, ProducerIsNotNamedAsSimulated) {
    const auto text = [](auto query, GenTL::PORT_HANDLE module, int32_t command) {
        return Ask([&](INFO_DATATYPE* type, void* buffer, size_t* size) {
                   return query(module, command, type, buffer, size);
               })
            .Text();
    };
    EXPECT_EQ(text(p.TLGetInfo, system, TL_INFO_ID), "ZelCTI");
    EXPECT_EQ(text(p.TLGetInfo, system, TL_INFO_MODEL), "ZelCam GenTL producer");
    EXPECT_EQ(text(p.TLGetInfo, system, TL_INFO_DISPLAYNAME), "ZelCam cameras");
    EXPECT_EQ(text(p.GCGetPortInfo, system, PORT_INFO_ID), "ZelCTI");
    EXPECT_EQ(text(p.GCGetPortInfo, system, PORT_INFO_MODEL), "ZelCam GenTL producer");
    const IF_HANDLE interface = OpenInterface("GEV0");
    EXPECT_EQ(text(p.GCGetPortInfo, interface, PORT_INFO_VENDOR), ZELSIM_INTERFACE_VENDOR);
    EXPECT_EQ(text(p.GCGetPortInfo, interface, PORT_INFO_MODEL), ZELSIM_INTERFACE_MODEL);
}

TEST_F(ModuleTest, LastErrorBelongsToTheThread) {
    EXPECT_EQ(p.TLClose(nullptr), GC_ERR_INVALID_HANDLE);
    std::thread([&] {
        GC_ERROR code = 1;
        size_t size = 0;
        EXPECT_EQ(p.GCGetLastError(&code, nullptr, &size), GC_ERR_SUCCESS);
        EXPECT_EQ(code, GC_ERR_SUCCESS);
    }).join();
    EXPECT_THAT(LastErrorText(), HasSubstr("TLClose"));
}

TEST_F(ModuleTest, DescribesInterfacesAndDevices) {
    UseConfig(R"(<ZelSim>
        <Interface id="A" type="HDSDI" displayName="Grabber" version="2.5"/>
        <Interface id="B" type="U3V">
            <Camera id="C" vendor="V" model="M" serial="S" version="3" usbHostInfo="port 7"
                    timestampFrequency="1000"/>
            <Camera id="D" userName="Left"/>
        </Interface></ZelSim>)");
    const IF_HANDLE a = OpenInterface("A");
    const IF_HANDLE b = OpenInterface("B");
    const auto interfaceInfo = [&](IF_HANDLE interface, int32_t command) {
        return Ask([&](INFO_DATATYPE* type, void* buffer, size_t* size) {
            return p.IFGetInfo(interface, command, type, buffer, size);
        });
    };
    EXPECT_EQ(interfaceInfo(a, INTERFACE_INFO_TLTYPE).Text(), "HDSDI");
    EXPECT_EQ(interfaceInfo(a, INTERFACE_INFO_DISPLAYNAME).Text(), "Grabber");
    EXPECT_EQ(interfaceInfo(a, INTERFACE_INFO_CUSTOM_ID).Text(), "2.5");
    EXPECT_EQ(interfaceInfo(b, INTERFACE_INFO_DISPLAYNAME).Text(), "B");
    EXPECT_EQ(DeviceInfo(b, "C", DEVICE_INFO_VENDOR).Text(), "V");
    EXPECT_EQ(DeviceInfo(b, "C", DEVICE_INFO_DISPLAYNAME).Text(), "V M (S)");
    EXPECT_EQ(DeviceInfo(b, "D", DEVICE_INFO_DISPLAYNAME).Text(), "Left");
    EXPECT_EQ(DeviceInfo(b, "C", DEVICE_INFO_VERSION).Text(), "3");
    EXPECT_EQ(DeviceInfo(b, "C", DEVICE_INFO_TIMESTAMP_FREQUENCY).Uint64(), 1000U);
    EXPECT_EQ(DeviceInfo(b, "C", 1100).Text(), "port 7");
    EXPECT_EQ(DeviceInfo(b, "X", DEVICE_INFO_VENDOR).code, GC_ERR_INVALID_ID);
    EXPECT_EQ(DeviceInfo(b, nullptr, DEVICE_INFO_VENDOR).code, GC_ERR_INVALID_PARAMETER);
    EXPECT_THAT(DeviceIds(a), IsEmpty());
}

TEST_F(ModuleTest, HostInfoExistsOnUsbOnly) {
    EXPECT_EQ(DeviceInfo(OpenInterface("GEV0"), "GEV0-CAM0", 1100).code, GC_ERR_NOT_IMPLEMENTED);
}

TEST_F(ModuleTest, ListsChangeByUpdatesOnly) {
    const IF_HANDLE interface = OpenInterface("U3V0");
    bool8_t changed = 0;
    EXPECT_EQ(p.IFUpdateDeviceList(interface, &changed, 0), GC_ERR_SUCCESS);
    EXPECT_EQ(changed, 1) << "the first update reports what is there";
    EXPECT_EQ(p.IFUpdateDeviceList(interface, &changed, 0), GC_ERR_SUCCESS);
    EXPECT_EQ(changed, 0);

    ASSERT_EQ(p.PlugCamera("U3V0", "<Camera id='new'/>"), GC_ERR_SUCCESS);
    ASSERT_EQ(p.UnplugCamera("U3V0-CAM0"), GC_ERR_SUCCESS);
    EXPECT_THAT(DeviceIds(interface), ElementsAre("U3V0-CAM0"));
    EXPECT_EQ(DeviceInfo(interface, "U3V0-CAM0", DEVICE_INFO_ACCESS_STATUS).Int32(),
              DEVICE_ACCESS_STATUS_NOACCESS);
    DEV_HANDLE device = nullptr;
    EXPECT_EQ(OpenDevice(interface, "U3V0-CAM0", DEVICE_ACCESS_CONTROL, &device), GC_ERR_IO);
    EXPECT_EQ(OpenDevice(interface, "new", DEVICE_ACCESS_CONTROL, &device), GC_ERR_INVALID_ID);

    EXPECT_EQ(p.IFUpdateDeviceList(interface, nullptr, 0), GC_ERR_SUCCESS);
    EXPECT_THAT(DeviceIds(interface), ElementsAre("new"));
    EXPECT_EQ(OpenDevice(interface, "new", DEVICE_ACCESS_CONTROL, &device), GC_ERR_SUCCESS);

    EXPECT_EQ(p.PlugCamera("U3V0", "<Camera id='new'/>"), GC_ERR_RESOURCE_IN_USE);
    EXPECT_EQ(p.PlugCamera("none", "<Camera id='other'/>"), GC_ERR_INVALID_ID);
    EXPECT_EQ(p.UnplugCamera("other"), GC_ERR_INVALID_ID);
}

TEST_F(ModuleTest, AccessModesExcludeEachOther) {
    TL_HANDLE otherSystem = nullptr;
    ASSERT_EQ(p.TLOpen(&otherSystem), GC_ERR_SUCCESS);
    IF_HANDLE other = nullptr;
    ASSERT_EQ(p.TLOpenInterface(otherSystem, "GEV0", &other), GC_ERR_SUCCESS);
    const IF_HANDLE own = OpenInterface("GEV0");
    IF_HANDLE twice = nullptr;
    EXPECT_EQ(p.TLOpenInterface(system, "GEV0", &twice), GC_ERR_RESOURCE_IN_USE);

    const auto status = [&](IF_HANDLE interface) {
        return DeviceInfo(interface, "GEV0-CAM0", DEVICE_INFO_ACCESS_STATUS).Int32();
    };
    const auto open = [&](IF_HANDLE interface, int32_t access, DEV_HANDLE* device) {
        return OpenDevice(interface, "GEV0-CAM0", access, device);
    };
    DEV_HANDLE first = nullptr;
    DEV_HANDLE second = nullptr;
    EXPECT_EQ(status(own), DEVICE_ACCESS_STATUS_READWRITE);
    EXPECT_EQ(open(own, DEVICE_ACCESS_NONE, &first), GC_ERR_INVALID_PARAMETER);

    ASSERT_EQ(open(own, DEVICE_ACCESS_EXCLUSIVE, &first), GC_ERR_SUCCESS);
    EXPECT_EQ(status(own), DEVICE_ACCESS_STATUS_OPEN_READWRITE);
    EXPECT_EQ(status(other), DEVICE_ACCESS_STATUS_BUSY);
    EXPECT_EQ(open(other, DEVICE_ACCESS_READONLY, &second), GC_ERR_RESOURCE_IN_USE);
    EXPECT_EQ(open(own, DEVICE_ACCESS_CONTROL, &second), GC_ERR_RESOURCE_IN_USE);
    ASSERT_EQ(p.DevClose(first), GC_ERR_SUCCESS);

    ASSERT_EQ(open(own, DEVICE_ACCESS_CONTROL, &first), GC_ERR_SUCCESS);
    EXPECT_EQ(status(other), DEVICE_ACCESS_STATUS_READONLY);
    EXPECT_EQ(open(other, DEVICE_ACCESS_CONTROL, &second), GC_ERR_RESOURCE_IN_USE);
    ASSERT_EQ(open(other, DEVICE_ACCESS_READONLY, &second), GC_ERR_SUCCESS);
    EXPECT_EQ(status(other), DEVICE_ACCESS_STATUS_OPEN_READONLY);

    // One camera: what the one writes the other reads, but does not write.
    PORT_HANDLE writer = nullptr;
    PORT_HANDLE reader = nullptr;
    ASSERT_EQ(p.DevGetPort(first, &writer), GC_ERR_SUCCESS);
    ASSERT_EQ(p.DevGetPort(second, &reader), GC_ERR_SUCCESS);
    uint32_t value = 0x12345678;
    size_t size = sizeof(value);
    EXPECT_EQ(p.GCWritePort(writer, 0x100, &value, &size), GC_ERR_SUCCESS);
    value = 0;
    EXPECT_EQ(p.GCReadPort(reader, 0x100, &value, &size), GC_ERR_SUCCESS);
    EXPECT_EQ(value, 0x12345678U);
    EXPECT_EQ(p.GCWritePort(reader, 0x100, &value, &size), GC_ERR_ACCESS_DENIED);
    ASSERT_EQ(p.DevClose(first), GC_ERR_SUCCESS);
    EXPECT_EQ(open(own, DEVICE_ACCESS_EXCLUSIVE, &first), GC_ERR_RESOURCE_IN_USE);
    ASSERT_EQ(p.TLClose(otherSystem), GC_ERR_SUCCESS);
    EXPECT_EQ(open(own, DEVICE_ACCESS_EXCLUSIVE, &first), GC_ERR_SUCCESS);
}

class PortTest : public CameraTest {
  protected:
    Info PortInfo(PORT_HANDLE port, int32_t command) {
        return Ask([&](INFO_DATATYPE* type, void* buffer, size_t* size) {
            return p.GCGetPortInfo(port, command, type, buffer, size);
        });
    }
};

TEST_F(PortTest, EveryModuleIsAPort) {
    OpenCamera("bigEndian='true'", "CXP");
    PORT_HANDLE remote = nullptr;
    PORT_HANDLE again = nullptr;
    ASSERT_EQ(p.DevGetPort(device, &remote), GC_ERR_SUCCESS);
    ASSERT_EQ(p.DevGetPort(device, &again), GC_ERR_SUCCESS);
    EXPECT_EQ(remote, again);
    const struct {
        PORT_HANDLE port;
        const char* module;
        const char* name;
    } ports[] = {
        {system, "TLSystem", "TLPort"},         {interface, "TLInterface", "InterfacePort"},
        {device, "TLDevice", "DevicePort"},     {remote, "Device", "Device"},
        {stream, "TLDataStream", "StreamPort"}, {Allocate(), "TLBuffer", "BufferPort"}};
    for (const auto& port : ports) {
        EXPECT_EQ(PortInfo(port.port, PORT_INFO_MODULE).Text(), port.module);
        EXPECT_EQ(PortInfo(port.port, PORT_INFO_PORTNAME).Text(), port.name);
        EXPECT_EQ(PortInfo(port.port, PORT_INFO_BIG_ENDIAN).Bool(), port.port == remote);
        uint64_t value = 0x1122334455667788;
        size_t size = sizeof(value);
        EXPECT_EQ(p.GCWritePort(port.port, 4092, &value, &size), GC_ERR_SUCCESS);
        value = 0;
        EXPECT_EQ(p.GCReadPort(port.port, 4092, &value, &size), GC_ERR_SUCCESS);
        EXPECT_EQ(value, 0x1122334455667788U) << "across the end of a page of " << port.module;
        uint32_t numUrls = 1;
        EXPECT_EQ(p.GCGetNumPortURLs(port.port, &numUrls), GC_ERR_SUCCESS);
        EXPECT_EQ(numUrls, port.name == std::string("BufferPort") ? 0U : 1U);
    }
    EXPECT_EQ(PortInfo(remote, PORT_INFO_TLTYPE).Text(), "CXP");
    size_t size = 1;
    char byte = 0;
    EXPECT_EQ(p.GCReadPort(system, 0x100000, &byte, &size), GC_ERR_INVALID_ADDRESS);
    size = 2;
    EXPECT_EQ(p.GCReadPort(remote, std::numeric_limits<uint64_t>::max(), &byte, &size),
              GC_ERR_INVALID_ADDRESS);
}

TEST_F(PortTest, StackedAccessStopsAtTheFirstFailure) {
    OpenCamera("");
    uint16_t values[3] = {1, 2, 3};
    GenTL::PORT_REGISTER_STACK_ENTRY entries[3] = {
        {0, &values[0], 2}, {2, &values[1], 2}, {4, &values[2], 2}};
    size_t count = 3;
    ASSERT_EQ(p.GCWritePortStacked(device, entries, &count), GC_ERR_SUCCESS);
    EXPECT_EQ(count, 3U);
    uint64_t all = 0;
    size_t size = sizeof(all);
    EXPECT_EQ(p.GCReadPort(device, 0, &all, &size), GC_ERR_SUCCESS);
    EXPECT_EQ(all, 0x000300020001U);
    values[0] = values[2] = 9;
    entries[1].Address = 0xFFFFF;
    EXPECT_EQ(p.GCReadPortStacked(device, entries, &count), GC_ERR_INVALID_ADDRESS);
    EXPECT_EQ(count, 1U);
    EXPECT_EQ(values[0], 1);
    EXPECT_EQ(values[2], 9);
}

}  // namespace
