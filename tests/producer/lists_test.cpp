// Transports, interfaces and cameras: how they are listed, described and opened, and what remains
// when one of their operations fails.

#include <new>
#include <stdexcept>

#include <gmock/gmock.h>

#include "tests/producer/producertest.h"
#include "tests/support/portnodemap.h"

using namespace GenTL;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::SizeIs;
using ZelCti::CameraList;
using ZelCti::Error;
using ZelCti::InterfaceList;
using ZelTest::PortNodeMap;
using ZelTest::ScriptedCamera;
using ZelTest::ScriptedInterface;
using ZelTest::ScriptedTransport;

namespace {

class ListTest : public ProducerTest {
  protected:
    std::vector<std::string> InterfaceIds() {
        uint32_t count = 0;
        EXPECT_EQ(TLGetNumInterfaces(system, &count), GC_ERR_SUCCESS);
        std::vector<std::string> ids;
        for (uint32_t i = 0; i < count; ++i) {
            char id[16] = {};
            size_t size = sizeof(id);
            EXPECT_EQ(TLGetInterfaceID(system, i, id, &size), GC_ERR_SUCCESS);
            ids.emplace_back(id);
        }
        return ids;
    }
    // Whether an update reports a change.
    bool InterfacesChange() {
        bool8_t changed = 0;
        EXPECT_EQ(TLUpdateInterfaceList(system, &changed, 0), GC_ERR_SUCCESS);
        return changed != 0;
    }
    bool CamerasChange() {
        bool8_t changed = 0;
        EXPECT_EQ(IFUpdateDeviceList(interface, &changed, 0), GC_ERR_SUCCESS);
        return changed != 0;
    }
    GC_ERROR Open(IF_HANDLE from, int32_t access, DEV_HANDLE* opened) {
        return IFOpenDevice(from, "C", access, opened);
    }
    int32_t Status(IF_HANDLE from) {
        return DeviceInfo(from, "C", DEVICE_INFO_ACCESS_STATUS).Int32();
    }
};

TEST_F(ListTest, InterfacesFollowTheOrderOfTheTransports) {
    const auto make = [](const char* id) { return std::make_shared<ScriptedInterface>(id); };
    const auto first = std::make_shared<ScriptedTransport>(InterfaceList{make("b"), make("a")});
    const auto second = std::make_shared<ScriptedTransport>();
    const auto third = std::make_shared<ScriptedTransport>(InterfaceList{make("0")});
    Use({first, second, third});
    EXPECT_THAT(InterfaceIds(), ElementsAre("b", "a", "0"));
    EXPECT_TRUE(InterfacesChange()) << "the first update reports what is there";
    EXPECT_FALSE(InterfacesChange());
    second->present = {make("new")};
    EXPECT_THAT(InterfaceIds(), SizeIs(3)) << "lists change by updates only";
    EXPECT_TRUE(InterfacesChange());
    EXPECT_THAT(InterfaceIds(), ElementsAre("b", "a", "new", "0"));
    Use({});
    EXPECT_THAT(InterfaceIds(), IsEmpty());
    EXPECT_FALSE(InterfacesChange());
}

TEST_F(ListTest, AFailedUpdateLosesNothing) {
    const auto other = std::make_shared<ScriptedTransport>();
    Use({other, std::make_shared<ScriptedTransport>(InterfaceList{host})});
    EXPECT_TRUE(InterfacesChange());
    other->present = {std::make_shared<ScriptedInterface>("J")};
    script.Fail("UpdateInterfaces", Error(GC_ERR_BUSY, "no socket"));
    EXPECT_EQ(TLUpdateInterfaceList(system, nullptr, 0), GC_ERR_BUSY);
    EXPECT_THAT(LastErrorText(), HasSubstr("no socket"));
    EXPECT_THAT(InterfaceIds(), ElementsAre("I"));
    EXPECT_TRUE(InterfacesChange());
    EXPECT_THAT(InterfaceIds(), ElementsAre("J", "I"));

    interface = OpenInterface("I");
    EXPECT_TRUE(CamerasChange());
    script.Fail("UpdateCameras", std::bad_alloc());
    EXPECT_EQ(IFUpdateDeviceList(interface, nullptr, 0), GC_ERR_OUT_OF_MEMORY);
    EXPECT_THAT(DeviceIds(interface), ElementsAre("C"));
    EXPECT_FALSE(CamerasChange());
}

TEST_F(ListTest, AnUpdateHasTheTimeThatTheClientGives) {
    interface = OpenInterface("I");
    const auto before = std::chrono::steady_clock::now();
    EXPECT_EQ(IFUpdateDeviceList(interface, nullptr, 5000), GC_ERR_SUCCESS);
    EXPECT_GE(host->lastDeadline, before + std::chrono::seconds(5));
    EXPECT_LE(host->lastDeadline, std::chrono::steady_clock::now() + std::chrono::seconds(5));
    EXPECT_EQ(IFUpdateDeviceList(interface, nullptr, GENTL_INFINITE), GC_ERR_SUCCESS);
    EXPECT_EQ(host->lastDeadline, ZelCti::Deadline::max());
}

TEST_F(ListTest, ConsumersThatDoNotUpdateFindCameras) {
    host = std::make_shared<ScriptedInterface>("I");
    host->present = {camera};
    host->needsSearch = true;
    Use({std::make_shared<ScriptedTransport>(InterfaceList{host})});
    EXPECT_TRUE(InterfacesChange());
    interface = OpenInterface("I");
    EXPECT_EQ(host->lastDeadline, ZelCti::Deadline{}) << "opening searches for nothing";
    const auto before = std::chrono::steady_clock::now();
    DEV_HANDLE opened = nullptr;
    EXPECT_EQ(Open(interface, DEVICE_ACCESS_EXCLUSIVE, &opened), GC_ERR_SUCCESS);
    EXPECT_LE(host->lastDeadline, std::chrono::steady_clock::now() + std::chrono::seconds(1));
    EXPECT_GE(host->lastDeadline, before);

    host->present.push_back(std::make_shared<ScriptedCamera>("D"));
    EXPECT_THAT(DeviceIds(interface), ElementsAre("C")) << "one search is enough";
    EXPECT_TRUE(CamerasChange()) << "the first update reports what is there";
    EXPECT_THAT(DeviceIds(interface), ElementsAre("C", "D"));
}

TEST_F(ListTest, ACameraThatComesBackIsAnotherOne) {
    OpenCamera();
    EXPECT_TRUE(CamerasChange());
    camera->Lose();
    EXPECT_EQ(Status(interface), DEVICE_ACCESS_STATUS_NOACCESS);
    uint32_t count = 0;
    EXPECT_EQ(DevGetNumDataStreams(device, &count), GC_ERR_IO);

    DEV_HANDLE second = nullptr;
    EXPECT_EQ(Open(interface, DEVICE_ACCESS_EXCLUSIVE, &second), GC_ERR_IO);

    const auto again = std::make_shared<ScriptedCamera>("C");
    host->present = {again};
    EXPECT_EQ(Status(interface), DEVICE_ACCESS_STATUS_NOACCESS) << "not before an update";
    EXPECT_TRUE(CamerasChange()) << "with the same identifier";
    EXPECT_EQ(Status(interface), DEVICE_ACCESS_STATUS_READWRITE) << "of the new one";
    ASSERT_EQ(Open(interface, DEVICE_ACCESS_EXCLUSIVE, &second), GC_ERR_SUCCESS);
    EXPECT_EQ(DevGetNumDataStreams(device, &count), GC_ERR_IO) << "of the old one";
    EXPECT_EQ(DevClose(device), GC_ERR_SUCCESS);
    EXPECT_EQ(DevGetNumDataStreams(second, &count), GC_ERR_SUCCESS);
    EXPECT_EQ(Status(interface), DEVICE_ACCESS_STATUS_OPEN_READWRITE);
}

TEST_F(ListTest, NamesCamerasForPeople) {
    const auto other = std::make_shared<ScriptedCamera>("D");
    other->userName = "Left";
    host->present = {camera, other};
    interface = OpenInterface("I");
    ASSERT_TRUE(CamerasChange());
    EXPECT_EQ(DeviceInfo(interface, "C", DEVICE_INFO_DISPLAYNAME).Text(), "V M (S)");
    EXPECT_EQ(DeviceInfo(interface, "D", DEVICE_INFO_DISPLAYNAME).Text(), "Left");
    other->displayName = "Left at 10.0.0.5";
    EXPECT_EQ(DeviceInfo(interface, "D", DEVICE_INFO_DISPLAYNAME).Text(), "Left at 10.0.0.5");
    EXPECT_EQ(DeviceInfo(interface, "D", DEVICE_INFO_TIMESTAMP_FREQUENCY).Uint64(), 1000U);
    other->timestampFrequency = 0;
    EXPECT_EQ(DeviceInfo(interface, "D", DEVICE_INFO_TIMESTAMP_FREQUENCY).code,
              GC_ERR_NOT_AVAILABLE);
    EXPECT_EQ(DeviceInfo(interface, "X", DEVICE_INFO_VENDOR).code, GC_ERR_INVALID_ID);
    EXPECT_EQ(DeviceInfo(interface, nullptr, DEVICE_INFO_VENDOR).code, GC_ERR_INVALID_PARAMETER);

    script.Fail("UserName", Error(GC_ERR_IO, "no answer"));
    EXPECT_EQ(DeviceInfo(interface, "C", DEVICE_INFO_DISPLAYNAME).code, GC_ERR_IO);
    script.Fail("AccessStatus", std::runtime_error("unforeseen"));
    EXPECT_EQ(DeviceInfo(interface, "C", DEVICE_INFO_ACCESS_STATUS).code, GC_ERR_ERROR);
    EXPECT_THAT(LastErrorText(), HasSubstr("unforeseen"));
}

TEST_F(ListTest, AccessModesExcludeEachOther) {
    TL_HANDLE otherSystem = nullptr;
    ASSERT_EQ(TLOpen(&otherSystem), GC_ERR_SUCCESS);
    IF_HANDLE other = nullptr;
    ASSERT_EQ(TLOpenInterface(otherSystem, "I", &other), GC_ERR_SUCCESS);
    const IF_HANDLE own = OpenInterface("I");
    EXPECT_EQ(Status(own), DEVICE_ACCESS_STATUS_READWRITE);

    DEV_HANDLE first = nullptr;
    DEV_HANDLE second = nullptr;
    EXPECT_EQ(Open(own, DEVICE_ACCESS_NONE, &first), GC_ERR_INVALID_PARAMETER);
    ASSERT_EQ(Open(own, DEVICE_ACCESS_EXCLUSIVE, &first), GC_ERR_SUCCESS);
    EXPECT_EQ(Status(own), DEVICE_ACCESS_STATUS_OPEN_READWRITE);
    EXPECT_EQ(Status(other), DEVICE_ACCESS_STATUS_BUSY);
    EXPECT_EQ(Open(other, DEVICE_ACCESS_READONLY, &second), GC_ERR_RESOURCE_IN_USE);
    EXPECT_EQ(Open(own, DEVICE_ACCESS_CONTROL, &second), GC_ERR_RESOURCE_IN_USE);
    ASSERT_EQ(DevClose(first), GC_ERR_SUCCESS);

    ASSERT_EQ(Open(own, DEVICE_ACCESS_CONTROL, &first), GC_ERR_SUCCESS);
    EXPECT_EQ(Status(other), DEVICE_ACCESS_STATUS_READONLY);
    EXPECT_EQ(Open(other, DEVICE_ACCESS_CONTROL, &second), GC_ERR_RESOURCE_IN_USE);
    ASSERT_EQ(Open(other, DEVICE_ACCESS_READONLY, &second), GC_ERR_SUCCESS);
    EXPECT_EQ(Status(other), DEVICE_ACCESS_STATUS_OPEN_READONLY);

    // One camera: what the one writes the other reads, but does not write.
    PORT_HANDLE writer = nullptr;
    PORT_HANDLE reader = nullptr;
    ASSERT_EQ(DevGetPort(first, &writer), GC_ERR_SUCCESS);
    ASSERT_EQ(DevGetPort(second, &reader), GC_ERR_SUCCESS);
    uint32_t value = 0x12345678;
    size_t size = sizeof(value);
    EXPECT_EQ(GCWritePort(writer, 0x100, &value, &size), GC_ERR_SUCCESS);
    value = 0;
    EXPECT_EQ(GCReadPort(reader, 0x100, &value, &size), GC_ERR_SUCCESS);
    EXPECT_EQ(value, 0x12345678U);
    EXPECT_EQ(GCWritePort(reader, 0x100, &value, &size), GC_ERR_ACCESS_DENIED);
    ASSERT_EQ(DevClose(first), GC_ERR_SUCCESS);
    EXPECT_EQ(Open(own, DEVICE_ACCESS_EXCLUSIVE, &first), GC_ERR_RESOURCE_IN_USE);
    ASSERT_EQ(TLClose(otherSystem), GC_ERR_SUCCESS);
    EXPECT_EQ(Open(own, DEVICE_ACCESS_EXCLUSIVE, &first), GC_ERR_SUCCESS);

    // Of other processes the transport knows. Nobody is told a reason who needs none.
    PortNodeMap features(Functions(), own);
    EXPECT_EQ(features.Get("DeviceAccessReason"), "");
    ASSERT_EQ(DevClose(first), GC_ERR_SUCCESS);
    EXPECT_EQ(features.Get("DeviceAccessReason"), "");
    for (const auto status : {DEVICE_ACCESS_STATUS_READONLY, DEVICE_ACCESS_STATUS_NOACCESS,
                              DEVICE_ACCESS_STATUS_BUSY}) {
        camera->status = status;
        EXPECT_EQ(Status(own), status);
        EXPECT_EQ(features.Get("DeviceAccessReason"), camera->accessReason);
    }
}

// Whatever fails, the camera is free.
TEST_F(ListTest, AnOpenThatFailsLeavesNothingOpen) {
    interface = OpenInterface("I");
    const size_t before = NumHandles();
    const auto expect = [&](GC_ERROR code) {
        EXPECT_EQ(Open(interface, DEVICE_ACCESS_EXCLUSIVE, &device), code);
        EXPECT_THAT(Steps(), IsEmpty());
        EXPECT_EQ(NumHandles(), before);
        EXPECT_EQ(Status(interface), DEVICE_ACCESS_STATUS_READWRITE);
    };
    script.Fail("Open", Error(GC_ERR_ACCESS_DENIED, "another process controls it"));
    expect(GC_ERR_ACCESS_DENIED);
    script.Fail("Open", std::bad_alloc());
    expect(GC_ERR_OUT_OF_MEMORY);
    ASSERT_EQ(Open(interface, DEVICE_ACCESS_EXCLUSIVE, &device), GC_ERR_SUCCESS);

    // The same for a stream.
    script.Fail("OpenStream", Error(GC_ERR_BUSY, "no channel"));
    EXPECT_EQ(DevOpenDataStream(device, "C/Stream0", &stream), GC_ERR_BUSY);
    EXPECT_EQ(DevOpenDataStream(device, "C/Stream0", &stream), GC_ERR_SUCCESS);
}

// The first use of a port declares the features of the transport, and the next one tries again.
TEST_F(ListTest, FeaturesThatCannotBeDeclaredFailTheUseOfThePort) {
    interface = OpenInterface("I");
    ASSERT_EQ(Open(interface, DEVICE_ACCESS_EXCLUSIVE, &device), GC_ERR_SUCCESS);
    const auto use = [&] {
        uint32_t count = 0;
        return GCGetNumPortURLs(device, &count);
    };
    camera->deviceRows = [](ZelCti::FeatureTable&) { throw Error(GC_ERR_IO, "no answer"); };
    EXPECT_EQ(use(), GC_ERR_IO);
    camera->deviceRows = [](ZelCti::FeatureTable& features) {
        features.IntReg("Overlap").At(0x2700);  // DeviceType
    };
    EXPECT_EQ(use(), GC_ERR_ERROR);
    EXPECT_THAT(LastErrorText(), HasSubstr("Overlap"));
    camera->deviceRows = [](ZelCti::FeatureTable&) {};
    EXPECT_EQ(use(), GC_ERR_SUCCESS);
}

}  // namespace
