// Handles, info commands, ports and the features of modules.

#include <limits>
#include <stdexcept>
#include <thread>

#include <gmock/gmock.h>

#include "tests/producer/producertest.h"
#include "tests/support/portnodemap.h"

using namespace GenTL;
using ::testing::ElementsAre;
using ::testing::EndsWith;
using ::testing::HasSubstr;
using ::testing::MatchesRegex;
using ::testing::StartsWith;
using ::testing::UnorderedElementsAre;
using ZelCti::Error;
using ZelCti::FeatureTable;
using ZelTest::Ask;
using ZelTest::PortNodeMap;

namespace {

class ModuleTest : public ProducerTest {
  protected:
    ModuleTest() {
        camera->numStreams = 2;
        OpenCamera();
        Steps();
    }
    GC_ERROR Read(PORT_HANDLE port, uint64_t address) {
        uint32_t value = 0;
        size_t size = sizeof(value);
        return GCReadPort(port, address, &value, &size);
    }
};

TEST_F(ModuleTest, RefusesHandlesThatAreNoneOrOfAnotherKind) {
    int local = 0;
    uint32_t count = 0;
    const auto nearby = [&](intptr_t distance) {
        return reinterpret_cast<void*>(reinterpret_cast<intptr_t>(system) + distance);
    };
    for (void* handle : {static_cast<void*>(nullptr), static_cast<void*>(&local), nearby(1000),
                         nearby(1 << 24), nearby(0xFFFF00), interface}) {
        EXPECT_EQ(TLGetNumInterfaces(handle, &count), GC_ERR_INVALID_HANDLE) << handle;
    }
    EXPECT_EQ(EventKill(interface), GC_ERR_INVALID_HANDLE);
    EXPECT_THAT(LastErrorText(), HasSubstr("EventKill"));
}

TEST_F(ModuleTest, ClosingAModuleClosesAllBelowIt) {
    const PORT_HANDLE remote = Remote();
    const BUFFER_HANDLE buffer = Allocate();
    DEV_HANDLE parent = nullptr;
    EXPECT_EQ(DSGetParentDev(stream, &parent), GC_ERR_SUCCESS);
    EXPECT_EQ(parent, device);
    ASSERT_EQ(IFClose(interface), GC_ERR_SUCCESS);
    EXPECT_EQ(NumHandles(), 1U);
    EXPECT_EQ(IFClose(interface), GC_ERR_INVALID_HANDLE);
    EXPECT_EQ(DevClose(device), GC_ERR_INVALID_HANDLE);
    EXPECT_EQ(DSClose(stream), GC_ERR_INVALID_HANDLE);
    EXPECT_EQ(DSQueueBuffer(stream, buffer), GC_ERR_INVALID_HANDLE);
    EXPECT_EQ(EventKill(newBuffer), GC_ERR_INVALID_HANDLE);
    EXPECT_EQ(Read(remote, 0), GC_ERR_INVALID_HANDLE);
    // The slot of a stale handle does not revive it, and the camera is free again.
    const IF_HANDLE stale = OpenInterface("I");
    ASSERT_EQ(IFClose(stale), GC_ERR_SUCCESS);
    OpenCamera();
    EXPECT_EQ(IFClose(stale), GC_ERR_INVALID_HANDLE);
}

TEST_F(ModuleTest, TheTransportIsClosedInOrderAndOnce) {
    DS_HANDLE second = nullptr;
    ASSERT_EQ(DevOpenDataStream(device, "C/Stream1", &second), GC_ERR_SUCCESS);
    AllocateAndQueue(1);
    ASSERT_EQ(StartStream(), GC_ERR_SUCCESS);
    ASSERT_EQ(DevClose(device), GC_ERR_SUCCESS);
    const std::vector<std::string> steps = Steps();
    EXPECT_THAT(
        std::vector<std::string>(steps.begin(), steps.end() - 2),
        UnorderedElementsAre("Start", "Kill", "Stop at once", "~Stream", "Kill", "~Stream"));
    EXPECT_THAT(std::vector<std::string>(steps.end() - 2, steps.end()),
                ElementsAre("Close", "~Connection"));
}

TEST_F(ModuleTest, TransportsEndWithTheLibrary) {
    const std::weak_ptr<ZelCti::Transport> transport = script.transports.front();
    script.transports = {std::make_shared<ZelTest::ScriptedTransport>()};
    ASSERT_EQ(GCCloseLib(), GC_ERR_SUCCESS);
    EXPECT_TRUE(transport.expired());
    ASSERT_EQ(GCInitLib(), GC_ERR_SUCCESS);
    ASSERT_EQ(TLOpen(&system), GC_ERR_SUCCESS);
    uint32_t count = 1;
    EXPECT_EQ(TLGetNumInterfaces(system, &count), GC_ERR_SUCCESS);
    EXPECT_EQ(count, 0U) << "of the transport that is there now";
}

TEST_F(ModuleTest, AnswersInfoCommandsInTwoCalls) {
    INFO_DATATYPE type = INFO_DATATYPE_UNKNOWN;
    size_t size = 0;
    ASSERT_EQ(TLGetInfo(system, TL_INFO_TLTYPE, &type, nullptr, &size), GC_ERR_SUCCESS);
    EXPECT_EQ(type, INFO_DATATYPE_STRING);
    EXPECT_EQ(size, sizeof("Mixed"));
    char text[16] = {};
    size = 5;
    EXPECT_EQ(TLGetInfo(system, TL_INFO_TLTYPE, &type, text, &size), GC_ERR_BUFFER_TOO_SMALL);
    EXPECT_EQ(size, sizeof("Mixed"));
    size = sizeof(text);
    EXPECT_EQ(TLGetInfo(system, TL_INFO_TLTYPE, nullptr, text, &size), GC_ERR_SUCCESS);
    EXPECT_STREQ(text, "Mixed");
    EXPECT_EQ(TLGetInfo(system, TL_INFO_TLTYPE, &type, text, nullptr), GC_ERR_INVALID_PARAMETER);
    EXPECT_EQ(TLGetInfo(system, 999, &type, text, &size), GC_ERR_NOT_IMPLEMENTED);
    EXPECT_EQ(TLGetNumInterfaces(system, nullptr), GC_ERR_INVALID_PARAMETER);
    EXPECT_EQ(TLOpen(nullptr), GC_ERR_INVALID_PARAMETER);
    EXPECT_EQ(TLGetInterfaceID(system, 2, text, &size), GC_ERR_INVALID_INDEX);
    EXPECT_EQ(TLOpenInterface(system, "i", &interface), GC_ERR_INVALID_ID);
}

TEST_F(ModuleTest, LastErrorBelongsToTheThread) {
    EXPECT_EQ(TLClose(nullptr), GC_ERR_INVALID_HANDLE);
    std::thread([&] {
        GC_ERROR code = 1;
        size_t size = 0;
        EXPECT_EQ(GCGetLastError(&code, nullptr, &size), GC_ERR_SUCCESS);
        EXPECT_EQ(code, GC_ERR_SUCCESS);
    }).join();
    EXPECT_THAT(LastErrorText(), HasSubstr("TLClose"));
}

TEST_F(ModuleTest, EveryModuleIsAPort) {
    ASSERT_EQ(DevClose(device), GC_ERR_SUCCESS);
    camera->info.bigEndian = true;
    camera->info.tlType = "CXP";
    ASSERT_EQ(IFClose(interface), GC_ERR_SUCCESS);
    OpenCamera();
    const PORT_HANDLE remote = Remote();
    EXPECT_EQ(remote, Remote());
    const struct {
        PORT_HANDLE port;
        const char* module;
        const char* name;
    } ports[] = {
        {system, "TLSystem", "TLPort"},         {interface, "TLInterface", "InterfacePort"},
        {device, "TLDevice", "DevicePort"},     {remote, "Device", "Device"},
        {stream, "TLDataStream", "StreamPort"}, {Allocate(), "TLBuffer", "BufferPort"}};
    for (const auto& port : ports) {
        const auto info = [&](int32_t command) { return Ask(GCGetPortInfo, port.port, command); };
        EXPECT_EQ(info(PORT_INFO_MODULE).Text(), port.module);
        EXPECT_EQ(info(PORT_INFO_PORTNAME).Text(), port.name);
        EXPECT_EQ(info(PORT_INFO_BIG_ENDIAN).Bool(), port.port == remote);
        uint64_t value = 0x1122334455667788;
        size_t size = sizeof(value);
        EXPECT_EQ(GCWritePort(port.port, 4092, &value, &size), GC_ERR_SUCCESS);
        value = 0;
        EXPECT_EQ(GCReadPort(port.port, 4092, &value, &size), GC_ERR_SUCCESS);
        EXPECT_EQ(value, 0x1122334455667788U) << "across the end of a page of " << port.module;
        uint32_t numUrls = 1;
        EXPECT_EQ(GCGetNumPortURLs(port.port, &numUrls), GC_ERR_SUCCESS);
        EXPECT_EQ(numUrls, port.name == std::string("BufferPort") ? 0U : 1U);
    }
    EXPECT_EQ(Ask(GCGetPortInfo, remote, PORT_INFO_TLTYPE).Text(), "CXP");
    EXPECT_EQ(Read(system, 0x100000), GC_ERR_INVALID_ADDRESS);
    EXPECT_EQ(Read(system, std::numeric_limits<uint64_t>::max() - 1), GC_ERR_INVALID_ADDRESS);
}

TEST_F(ModuleTest, StackedAccessStopsAtTheFirstFailure) {
    uint16_t values[3] = {1, 2, 3};
    PORT_REGISTER_STACK_ENTRY entries[3] = {
        {0, &values[0], 2}, {2, &values[1], 2}, {4, &values[2], 2}};
    size_t count = 3;
    ASSERT_EQ(GCWritePortStacked(device, entries, &count), GC_ERR_SUCCESS);
    EXPECT_EQ(count, 3U);
    uint64_t all = 0;
    size_t size = sizeof(all);
    EXPECT_EQ(GCReadPort(device, 0, &all, &size), GC_ERR_SUCCESS);
    EXPECT_EQ(all, 0x000300020001U);
    values[0] = values[2] = 9;
    entries[1].Address = 0xFFFFF;
    EXPECT_EQ(GCReadPortStacked(device, entries, &count), GC_ERR_INVALID_ADDRESS);
    EXPECT_EQ(count, 1U);
    EXPECT_EQ(values[0], 1);
    EXPECT_EQ(values[2], 9);
}

TEST_F(ModuleTest, FailedAccessesToTheCameraHaveTheirCodes) {
    const PORT_HANDLE remote = Remote();
    script.Fail("Read", Error(GC_ERR_TIMEOUT, "no acknowledge"));
    EXPECT_EQ(Read(remote, 0), GC_ERR_TIMEOUT);
    EXPECT_THAT(LastErrorText(), HasSubstr("no acknowledge"));
    script.Fail("Write", Error(GC_ERR_INVALID_VALUE, "refused"));
    uint32_t value = 0;
    size_t size = sizeof(value);
    EXPECT_EQ(GCWritePort(remote, 0, &value, &size), GC_ERR_INVALID_VALUE);
    script.Fail("Read", std::runtime_error("unforeseen"));
    EXPECT_EQ(Read(remote, 0), GC_ERR_ERROR);
    EXPECT_EQ(Read(remote, 0), GC_ERR_SUCCESS);
    PortNodeMap map(Functions(), device);
    EXPECT_EQ(map.Integer("LinkReadCount"), 3) << "those that failed, too";
    EXPECT_EQ(map.Integer("LinkWriteCount"), 1);
}

TEST_F(ModuleTest, TheDescriptionIsAnnouncedAndReadThroughThePort) {
    const auto info = [&](uint32_t index, int32_t command) {
        return Ask(GCGetPortURLInfo, device, index, command);
    };
    const std::string url = info(0, URL_INFO_URL).Text();
    EXPECT_THAT(url,
                MatchesRegex("Local:ZelSim_Device.zip;80000000;[0-9A-F]+.SchemaVersion=1.1.0"));
    EXPECT_EQ(info(0, URL_INFO_SCHEME).Int32(), URL_SCHEME_LOCAL);
    EXPECT_EQ(info(0, URL_INFO_SCHEMA_VER_MINOR).Int32(), 1);
    EXPECT_EQ(info(0, URL_INFO_FILE_SHA1_HASH).code, GC_ERR_NOT_AVAILABLE);
    EXPECT_EQ(info(0, 999).code, GC_ERR_NOT_IMPLEMENTED);
    EXPECT_EQ(info(1, URL_INFO_URL).code, GC_ERR_INVALID_INDEX);

    size_t size = 0;
    ASSERT_EQ(GCGetPortURL(device, nullptr, &size), GC_ERR_SUCCESS);
    EXPECT_EQ(size, url.size() + 2);

    // Whole registers can be read, and nothing can be written.
    const uint64_t address = info(0, URL_INFO_FILE_REGISTER_ADDRESS).Uint64();
    size = (info(0, URL_INFO_FILE_SIZE).Uint64() + 3) / 4 * 4;
    std::vector<char> bytes(size + 4);
    EXPECT_EQ(GCReadPort(device, address, bytes.data(), &size), GC_ERR_SUCCESS);
    EXPECT_THAT(std::string(bytes.begin(), bytes.end()), StartsWith("PK"));
    EXPECT_EQ(GCWritePort(device, address, bytes.data(), &size), GC_ERR_ACCESS_DENIED);
    size += 4;
    EXPECT_EQ(GCReadPort(device, address, bytes.data(), &size), GC_ERR_INVALID_ADDRESS);
}

TEST_F(ModuleTest, TheFirstDescriptionIsTheFirstChoice) {
    ASSERT_EQ(IFClose(interface), GC_ERR_SUCCESS);
    camera->urls.emplace(camera->urls.begin(), "http://maker/camera.zip");
    OpenCamera();
    const PORT_HANDLE remote = Remote();
    const auto info = [&](uint32_t index, int32_t command) {
        return Ask(GCGetPortURLInfo, remote, index, command);
    };
    EXPECT_EQ(info(0, URL_INFO_URL).Text(), "http://maker/camera.zip");
    EXPECT_EQ(info(0, URL_INFO_SCHEME).Int32(), URL_SCHEME_HTTP);
    EXPECT_EQ(info(0, URL_INFO_FILE_SIZE).code, GC_ERR_NOT_AVAILABLE);
    EXPECT_EQ(info(1, URL_INFO_FILE_REGISTER_ADDRESS).Uint64(), 0x1000U);
    EXPECT_EQ(info(1, URL_INFO_FILE_SIZE).Uint64(), 0x20U);
    EXPECT_EQ(info(2, URL_INFO_URL).code, GC_ERR_INVALID_INDEX);
    std::string all(100, 'x');
    size_t size = all.size();
    ASSERT_EQ(GCGetPortURL(remote, all.data(), &size), GC_ERR_SUCCESS);
    all.resize(size);
    using namespace std::string_literals;
    EXPECT_EQ(all, "http://maker/camera.zip\0Local:camera.xml;1000;20\0\0"s);
}

// Interface, device and stream each have rows of the transport among their own.
TEST_F(ModuleTest, TransportsAddFeatures) {
    ASSERT_EQ(IFClose(interface), GC_ERR_SUCCESS);
    uint64_t written = 0;
    host->rows = [](FeatureTable& features, const auto& selected) {
        features.StringReg("SelectedUserID").In("DeviceEnumeration").At(0x4000, 16).Get([=] {
            return selected()->UserName();
        });
    };
    camera->deviceRows = [&](FeatureTable& features) {
        features.Category("Transport", "Features of the transport.");
        features.Integer("PacketSize", "Size of a packet.")
            .At(0x4000)
            .Get([&] { return written; })
            .Set([&](uint64_t value) { written = value; });
    };
    camera->streamRows = [](FeatureTable& features) {
        features.IntReg("ResendCount").In("BufferHandlingControl").At(0x4000).Get([] { return 3; });
    };
    camera->userName = "Left";
    OpenCamera();
    EXPECT_EQ(PortNodeMap(Functions(), interface).Get("SelectedUserID"), "Left");
    PortNodeMap map(Functions(), device);
    map.SetInteger("PacketSize", 1500);
    EXPECT_EQ(written, 1500U);
    EXPECT_EQ(map.Integer("PacketSize"), 1500);
    EXPECT_EQ(PortNodeMap(Functions(), stream).Integer("ResendCount"), 3);
}

TEST_F(ModuleTest, SystemFeaturesFollowTheSelectedInterface) {
    const auto usb = std::make_shared<ZelTest::ScriptedInterface>("U");
    usb->info.tlType = "U3V";
    Use({std::make_shared<ZelTest::ScriptedTransport>(ZelCti::InterfaceList{host}),
         std::make_shared<ZelTest::ScriptedTransport>(ZelCti::InterfaceList{usb})});
    PortNodeMap map(Functions(), system);
    EXPECT_EQ(map.Get("TLVendorName"), "Tests");
    EXPECT_EQ(map.Get("TLType"), "Mixed");
    EXPECT_EQ(map.Integer("GenTLVersionMinor"), 6);
    EXPECT_THAT(map.Get("TLPath"), EndsWith("producer_test"));
    EXPECT_EQ(map.Get("InterfaceID"), "I");
    map.SetInteger("InterfaceSelector", 1);
    EXPECT_EQ(map.Get("InterfaceID"), "U");
    EXPECT_EQ(map.Get("InterfaceType"), "USB3Vision");
    EXPECT_THROW(map.SetInteger("InterfaceSelector", 2), GENICAM_NAMESPACE::OutOfRangeException);
}

TEST_F(ModuleTest, InterfaceFeaturesFollowTheListOfCameras) {
    const auto second = std::make_shared<ZelTest::ScriptedCamera>("D");
    host->present = {camera, second};
    PortNodeMap map(Functions(), interface);
    map.Execute("DeviceUpdateList");
    map.SetInteger("DeviceSelector", 1);
    EXPECT_EQ(map.Get("DeviceID"), "D");
    EXPECT_EQ(map.Get("DeviceAccessStatus"), "ReadWrite");
    second->status = DEVICE_ACCESS_STATUS_NOACCESS;
    EXPECT_EQ(map.Get("DeviceAccessStatus"), "NoAccess");

    // What was selected is gone.
    host->present = {camera};
    map.Execute("DeviceUpdateList");
    EXPECT_EQ(map.Integer("DeviceSelector"), 0);
    EXPECT_EQ(map.Get("DeviceID"), "C");
    EXPECT_EQ(map.Get("DeviceAccessStatus"), "OpenReadWrite");
    host->present.clear();
    map.Execute("DeviceUpdateList");
    EXPECT_FALSE(map.IsReadable("DeviceSelector"));
    EXPECT_FALSE(map.IsReadable("DeviceID"));
}

TEST_F(ModuleTest, DeviceFeaturesDescribeTheCameraAndItsStreams) {
    PortNodeMap map(Functions(), device);
    EXPECT_EQ(map.Get("DeviceSerialNumber"), "S");
    EXPECT_EQ(map.Get("DeviceType"), "GigEVision");
    EXPECT_EQ(map.Get("DeviceAccessStatus"), "OpenReadWrite");
    map.SetInteger("StreamSelector", 1);
    EXPECT_EQ(map.Get("StreamID"), "C/Stream1");
    EXPECT_THROW(map.SetInteger("StreamSelector", 2), GENICAM_NAMESPACE::OutOfRangeException);
}

}  // namespace
