// Devices: opening, streams, registers, events, and the order in which everything ends.
#include "ZelCameraApi/deviceimpl.h"

#include <thread>

#include "tests/library/support/fixture.h"

using testing::ElementsAre;
using testing::IsEmpty;
using ZelCam::DeviceAccess;

namespace {

using DeviceTest = SessionTest;

// A DeviceInfo of another implementation.
class ForeignDeviceInfo final : public ZelCam::DeviceInfo {
  public:
    ZelCam::Interface* GetInterface() override { return nullptr; }
    const char* GetID() override { return "cam0"; }
    const char* GetVendor() override { return nullptr; }
    const char* GetModel() override { return nullptr; }
    const char* GetDisplayName() override { return nullptr; }
    const char* GetUserDefinedName() override { return nullptr; }
    const char* GetSerialNumber() override { return nullptr; }
    const char* GetVersion() override { return nullptr; }
    int32_t GetAccessStatus() override { return 0; }
    const char* GetUSB3HostInfo() override { return nullptr; }
    const char* GetIPAddress(ZelCamErr* /*err*/) override { return nullptr; }
    const char* GetIPMask(ZelCamErr* /*err*/) override { return nullptr; }
    const char* GetIPGateway(ZelCamErr* /*err*/) override { return nullptr; }
    ZelCamErr GetIP(uint32_t* /*a*/, uint32_t* /*m*/, uint32_t* /*g*/) override { return {}; }
    ZelCamErr ForceIP(const char* /*a*/, const char* /*m*/, const char* /*g*/) override {
        return {};
    }
    ZelCamErr ForceIP(uint32_t /*a*/, uint32_t /*m*/, uint32_t /*g*/) override { return {}; }
    ZelCamErr SetExternalXml(const char* /*fileName*/) override { return {}; }
    const char* GetExternalXml() override { return nullptr; }
};

}  // namespace

TEST_F(DeviceTest, AccessBecomesTheProducersFlag) {
    const std::pair<uint32_t, const char*> flags[] = {{0, "IFOpenDevice 2 cam0"},
                                                      {1, "IFOpenDevice 3 cam0"},
                                                      {2, "IFOpenDevice 4 cam0"},
                                                      {3, "IFOpenDevice 1 cam0"},
                                                      {UINT32_MAX, "IFOpenDevice 1 cam0"}};
    OpenInterface();
    info = iface->GetFirstDeviceInfo();
    for (const auto& [access, call] : flags) {
        Calls();
        ZelCamErr err = kUntouched;
        const Holder<ZelCam::Device> opened(
            ZelCam_CreateDevice(info, static_cast<DeviceAccess>(access), &err));
        EXPECT_NE(opened, nullptr);
        EXPECT_EQ(err, ZelCamErr_Success);
        EXPECT_THAT(Calls(), ElementsAre(call, "DevGetPort"));
    }
}

TEST_F(DeviceTest, AnIdentifierThatIsNotListedIsSettledWhenItIsOpened) {
    OpenInterface();
    ZelCamErr err = kUntouched;
    EXPECT_EQ(ZelCam_CreateDevice(iface->GetDeviceInfoById("none"), DeviceAccess::Control, &err),
              nullptr);
    EXPECT_EQ(err, ZelCamErr_GenTL_InvalidId);
}

TEST_F(DeviceTest, AForeignDeviceInfoLeavesTheErrorAlone) {
    OpenInterface();
    ForeignDeviceInfo foreign;
    ZelCamErr err = kUntouched;
    EXPECT_EQ(ZelCam_CreateDevice(&foreign, DeviceAccess::Control, &err), nullptr);
    EXPECT_EQ(err, kUntouched);
    EXPECT_EQ(ZelCam_CreateDevice(&foreign, DeviceAccess::Control, nullptr), nullptr);
}

TEST_F(DeviceTest, WithoutAnInfoTheFirstCameraIsOpenedWithASystemOfItsOwn) {
    producer.SetWorld({{"empty", "GEV", {}}, {"ifA", "GEV", {"b", "a"}}, {"ifB", "U3V", {"c"}}});
    ZelCamErr err = kUntouched;
    ZelCam::Device* const own = ZelCam_CreateDevice(nullptr, DeviceAccess::ReadOnly, &err);
    ASSERT_NE(own, nullptr);
    EXPECT_EQ(err, ZelCamErr_Success);
    EXPECT_STREQ(own->GetInfo()->GetID(), "a");
    EXPECT_STREQ(own->GetInfo()->GetInterface()->GetId(), "ifA");
    EXPECT_EQ(producer.GetCount("IFOpenDevice", GenTL::DEVICE_ACCESS_READONLY), 1U);
    ASSERT_NE(own->GetStreamByIndex(0), nullptr);
    EXPECT_EQ(own->RegisterEvent(5, Subscriber::Form1, &subscriber), 0);
    Calls();
    own->Release();
    const std::vector<std::string> calls = Calls();
    ASSERT_GE(calls.size(), 6U);
    EXPECT_THAT((std::vector<std::string>{calls.end() - 6, calls.end()}),
                ElementsAre("DevClose", "IFClose", "IFClose", "IFClose", "TLClose", "GCCloseLib"));
}

TEST_F(DeviceTest, WithoutAnInfoFailuresReleaseTheSystem) {
    const auto expectFailure = [this](ZelCamErr code) {
        ZelCamErr err = kUntouched;
        EXPECT_EQ(ZelCam_CreateDevice(nullptr, DeviceAccess::Control, &err), nullptr);
        EXPECT_EQ(err, code);
        EXPECT_THAT(producer.GetOpenHandles(), IsEmpty());
    };
    producer.SetWorld({{"empty", "GEV", {}}});
    expectFailure(ZelCamErr_GenTL_Error);
    producer.SetWorld({});
    expectFailure(ZelCamErr_GenTL_Error);
    EXPECT_EQ(ZelCam_CreateDevice(nullptr, DeviceAccess::Control, nullptr), nullptr);
}

TEST_F(DeviceTest, SeveralDevicesOfOneInfoAreSeparate) {
    OpenDevice();
    ZelCam::Device* const other = ZelCam_CreateDevice(info, DeviceAccess::Control, nullptr);
    ASSERT_NE(other, nullptr);
    EXPECT_NE(other, device);
    EXPECT_EQ(other->GetInfo(), device->GetInfo());
    device->Release();
    EXPECT_EQ(other->GetNumStreams(), 1U);  // the System closes it
}

TEST_F(DeviceTest, StreamsAreOpenedOnceAndFoundAgain) {
    OpenDevice();
    Calls();
    EXPECT_EQ(device->GetNumStreams(), 1U);
    ZelCam::Stream* const first = device->GetStreamByIndex(0);
    ASSERT_NE(first, nullptr);
    EXPECT_THAT(Calls(),
                ElementsAre("DevGetNumDataStreams", "DevGetDataStreamID 0?", "DevGetDataStreamID 0",
                            "DevOpenDataStream stream0", "GCRegisterEvent 1"));
    EXPECT_EQ(device->GetStreamById("stream0"), first);
    EXPECT_EQ(device->GetStreamByIndex(0), first);
    EXPECT_EQ(producer.GetCount("DevOpenDataStream"), 1U);
    first->Release();
    EXPECT_NE(device->GetStreamById("stream0"), nullptr);
    EXPECT_EQ(producer.GetCount("DevOpenDataStream"), 2U);
    EXPECT_EQ(producer.GetCount("DSClose"), 1U);
}

TEST_F(DeviceTest, StreamsThatCannotBeHadAreNull) {
    OpenDevice();
    EXPECT_EQ(device->GetStreamByIndex(1), nullptr);
    EXPECT_EQ(device->GetStreamById("stream9"), nullptr);
    EXPECT_EQ(device->GetStreamById(nullptr), nullptr);
}

TEST_F(DeviceTest, EndiannessIsAskedOfTheRemotePort) {
    OpenDevice();
    Calls();
    EXPECT_EQ(device->GetEndianness(), 1U);
    EXPECT_THAT(Calls(), ElementsAre("GCGetPortInfo 6"));
    Answer("GCGetPortInfo", 6, Scripted::Gives(uint8_t{1}, GenTL::INFO_DATATYPE_BOOL8));
    EXPECT_EQ(device->GetEndianness(), 0U);
}

TEST_F(DeviceTest, RegistersAreReadAndWrittenThroughTheRemotePort) {
    OpenDevice();
    const std::vector<uint8_t> bytes = {0xDE, 0xAD, 0xBE, 0xEF, 0x01};
    size_t written = 4711;
    Calls();
    EXPECT_EQ(device->WriteMem(0x1000, bytes.data(), bytes.size(), &written), 0);
    EXPECT_EQ(written, 4711U);  // never touched
    std::vector<uint8_t> read(4);
    EXPECT_EQ(device->ReadMem(0x1001, read.data(), read.size()), 0);
    EXPECT_THAT(read, ElementsAre(0xAD, 0xBE, 0xEF, 0x01));
    for (const Scripted::Call& call : producer.TakeCalls())
        EXPECT_EQ(call.handle, HandleOf("port cam0")) << call.Text();

    // How many bytes went over does not matter, only the code.
    Answer("GCReadPort", Scripted::kAnyCommand, Scripted::ReportsSize(1));
    EXPECT_EQ(device->ReadMem(0x1000, read.data(), read.size()), 0);
}

TEST_F(DeviceTest, EventsAreThoseOfTheDevice) {
    OpenDevice();
    EXPECT_EQ(device->RegisterEvent2(5, Subscriber::Form2, &subscriber), 0);
    ASSERT_TRUE(producer.FireEvent(HandleOf("device cam0"), 5, {1, 2, 3}));
    EXPECT_EQ(subscriber.Await(1).at(0).type, 5U);
    EXPECT_EQ(device->UnRegisterEvent2(5, Subscriber::Form2, &subscriber), 0);
    EXPECT_EQ(device->UnRegisterEvent(5, Subscriber::Form1, &subscriber), -1002);
    // The producer knows which there are.
    EXPECT_EQ(device->RegisterEvent(UINT32_MAX, Subscriber::Form1, &subscriber), 0);
    EXPECT_EQ(producer.GetCount("GCRegisterEvent", -1), 1U);
}

TEST_F(DeviceTest, EndsEventsThenStreamsThenItself) {
    OpenStream();
    EXPECT_EQ(device->RegisterEvent(5, Subscriber::Form1, &subscriber), 0);
    ASSERT_TRUE(producer.AwaitWaiter(HandleOf("device cam0"), 5));
    Calls();
    device->Release();
    EXPECT_THAT(CallsWithoutRepeatedKills(),
                ElementsAre("EventKill", "GCUnregisterEvent 5", "DSGetInfo 8",
                            "GCUnregisterEvent 1", "DSFlushQueue 4", "DSClose", "DevClose"));
}
