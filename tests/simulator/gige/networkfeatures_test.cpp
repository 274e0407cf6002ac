// Features over bootstrap registers: which bits of which register they show and change.

#include <map>
#include <string>

#include <GenApi/EventAdapterGEV.h>
#include <GenApi/GenApi.h>
#include <GenApi/PortImpl.h>
#include <gmock/gmock.h>

#include "producers/simulator/gige/control/messagechannel.h"
#include "producers/simulator/simulatedcamera.h"

namespace ZelSim {

using namespace GENAPI_NAMESPACE;

namespace {

// A camera whose bootstrap registers are memory, with its node map.
class NetworkFeatures : public ::testing::Test, protected CPortImpl {
  protected:
    NetworkFeatures() { Load(Config()); }

    static CameraConfig Config() {
        CameraConfig config;
        config.id = "C";
        config.streams = 2;
        config.network.emplace();
        return config;
    }

    void Load(const CameraConfig& config) {
        camera = std::make_shared<SimulatedCamera>(config, TLTypeGEVName, Bootstrap());
        map = std::make_unique<CNodeMapRef>();
        const std::string url = camera->Registers().Urls().at(0).Text();
        const size_t size = std::stoul(url.substr(url.rfind(';') + 1), nullptr, 16);
        std::string text(size, '\0');
        camera->Registers().Read(0x80000000, text.data(), text.size());
        map->_LoadXMLFromString(text.c_str());
        map->_Connect(this, "Device");
        // Everything is there.
        SetRegister(0x0934, 0xFFFFFFFF);
        SetRegister(0x092C, 0xFFFFFFFF);
        SetRegister(0x0930, 0xFFFFFFFF);
        SetRegister(0x0010, 0x00000007);
        SetRegister(0x0D20, 0xFFFFFFFF);
        SetRegister(0x0D60, 0xFFFFFFFF);
    }

    static SimulatedCamera::Surroundings Bootstrap() {
        SimulatedCamera::Surroundings surroundings;
        surroundings.addRegisters = [](ZelCti::RegisterSpace& space) {
            ZelCti::Register memory;
            memory.size = 0xA000;
            space.Add(std::move(memory));
        };
        return surroundings;
    }

    void SetRegister(uint64_t address, uint32_t value) {
        uint8_t bytes[4];
        ZelCti::StoreInteger(bytes, sizeof(bytes), value, ZelCti::ByteOrder::Big);
        camera->Registers().Write(address, bytes, sizeof(bytes));
    }
    uint32_t Register(uint64_t address) {
        uint8_t bytes[4];
        camera->Registers().Read(address, bytes, sizeof(bytes));
        return static_cast<uint32_t>(
            ZelCti::LoadInteger(bytes, sizeof(bytes), ZelCti::ByteOrder::Big));
    }

    INode* Node(const std::string& name) { return map->_GetNode(name.c_str()); }
    std::string Text(const std::string& name) { return CValuePtr(Node(name))->ToString().c_str(); }
    void Set(const std::string& name, const std::string& value) {
        CValuePtr(Node(name))->FromString(value.c_str());
    }

    EAccessMode GetAccessMode() const override { return RW; }
    void Read(void* buffer, int64_t address, int64_t length) override {
        camera->Registers().Read(static_cast<uint64_t>(address), buffer,
                                 static_cast<size_t>(length));
    }
    void Write(const void* buffer, int64_t address, int64_t length) override {
        camera->Registers().Write(static_cast<uint64_t>(address), buffer,
                                  static_cast<size_t>(length));
    }

    std::shared_ptr<SimulatedCamera> camera;
    std::unique_ptr<CNodeMapRef> map;
};

}  // namespace

TEST_F(NetworkFeatures, ShowTheirBits) {
    const struct {
        const char* name;
        uint32_t address;
        uint32_t value;
        const char* shown;
    } kCases[] = {
        {"GevVersionMajor", 0x0000, 0x00020001, "2"},
        {"GevVersionMinor", 0x0000, 0x00020001, "1"},
        {"GevDeviceModeIsBigEndian", 0x0004, 0x80000000, "1"},
        {"GevDeviceModeCharacterSet", 0x0004, 0x80000001, "UTF8"},
        {"GevMACAddress", 0x000C, 0x12345678, "00:00:12:34:56:78"},
        {"GevCurrentIPConfigurationLLA", 0x0014, 0x4, "1"},
        {"GevCurrentIPConfigurationDHCP", 0x0014, 0x2, "1"},
        {"GevCurrentIPConfigurationPersistentIP", 0x0014, 0x6, "0"},
        {"GevCurrentIPAddress", 0x0024, 0x0A4D0002, "10.77.0.2"},
        {"GevCurrentSubnetMask", 0x0034, 0xFFFFFF00, "255.255.255.0"},
        {"GevCurrentDefaultGateway", 0x0044, 0x0A4D0001, "10.77.0.1"},
        {"GevFirstURL", 0x0200, 0x66696C65, "file"},
        {"GevNumberOfInterfaces", 0x0600, 1, "1"},
        {"GevPersistentIPAddress", 0x064C, 0x0A4D0003, "10.77.0.3"},
        {"GevPersistentSubnetMask", 0x065C, 0xFFFF0000, "255.255.0.0"},
        {"GevPersistentDefaultGateway", 0x066C, 0x0A4D0004, "10.77.0.4"},
        {"GevLinkSpeed", 0x0670, 1000, "1000"},
        {"GevMessageChannelCount", 0x0900, 1, "1"},
        {"GevStreamChannelCount", 0x0904, 2, "2"},
        {"GevHeartbeatTimeout", 0x0938, 3000, "3000"},
        {"DeviceLinkHeartbeatTimeout", 0x0938, 2500, "2.5e+06"},
        {"GevTimestampTickFrequency", 0x0940, 1000000000, "1000000000"},
        {"GevTimestampTickFrequency", 0x093C, 1, "5294967296"},
        {"GevTimestampValue", 0x094C, 77, "77"},
        {"GevDiscoveryAckDelay", 0x0950, 500, "500"},
        {"GevGVCPHeartbeatDisable", 0x0954, 0x1, "1"},
        {"GevGVCPPendingAck", 0x0954, 0x2, "1"},
        {"GevGVCPExtendedStatusCodes", 0x0954, 0x4, "1"},
        {"ActionUnconditionalMode", 0x0954, 0x8, "On"},
        {"PtpEnable", 0x0954, 0x80000, "1"},
        {"GevGVCPPendingTimeout", 0x0958, 250, "250"},
        {"GevGVSPExtendedIDMode", 0x0960, 0x40000000, "On"},
        {"PtpStatus", 0x096C, 6, "Master"},
        {"ActionQueueSize", 0x0970, 8, "8"},
        {"GevCCP", 0x0A00, 2, "ControlAccess"},
        {"GevPrimaryApplicationSocket", 0x0A04, 4001, "4001"},
        {"GevPrimaryApplicationIPAddress", 0x0A14, 0x0A4D0001, "10.77.0.1"},
        {"GevMCPHostPort", 0x0B00, 0x0001ABCD, "43981"},
        {"GevMCDA", 0x0B10, 0x0A4D0001, "10.77.0.1"},
        {"GevMCTT", 0x0B14, 200, "200"},
        {"GevMCRC", 0x0B18, 3, "3"},
        {"GevMCSP", 0x0B1C, 50000, "50000"},
        {"GevSCPDirection", 0x0D00, 0x80000000, "Receiver"},
        {"GevSCPInterfaceIndex", 0x0D00, 0x00031234, "3"},
        {"GevSCPHostPort", 0x0D00, 0x00031234, "4660"},
        {"GevSCPSDoNotFragment", 0x0D04, 0x40000000, "1"},
        {"GevSCPSBigEndian", 0x0D04, 0x20000000, "1"},
        {"GevSCPSPacketSize", 0x0D04, 0x400005DC, "1500"},
        {"GevSCPD", 0x0D08, 1000, "1000"},
        {"GevSCDA", 0x0D18, 0xE0000101, "224.0.1.1"},
        {"GevSCSP", 0x0D1C, 50001, "50001"},
        {"GevSCCFGGenDC", 0x0D24, 0x80, "1"},
        {"GevSCCFGMultiPart", 0x0D24, 0x40, "1"},
        {"GevSCCFGLargeLeaderTrailer", 0x0D24, 0x20, "1"},
        {"GevSCCFGPacketResendDestination", 0x0D24, 0x08, "1"},
        {"GevSCCFGAllInTransmission", 0x0D24, 0x04, "1"},
        {"GevSCCFGUnconditionalStreaming", 0x0D24, 0x02, "1"},
        {"GevSCCFGExtendedChunkData", 0x0D24, 0x01, "1"},
        {"ActionGroupKey", 0x9800, 7, "0x7"},
        {"ActionGroupMask", 0x9804, 8, "0x8"},
    };
    for (const auto& c : kCases) {
        SCOPED_TRACE(c.name);
        SetRegister(c.address, c.value);
        EXPECT_EQ(Text(c.name), c.shown);
    }
}

TEST_F(NetworkFeatures, ChangeTheirBitsOnly) {
    SetRegister(0x0D04, 0x200005DC);
    Set("GevSCPSDoNotFragment", "1");
    EXPECT_EQ(Register(0x0D04), 0x600005DCU);
    Set("GevSCPSPacketSize", "9000");
    EXPECT_EQ(Register(0x0D04), 0x60002328U);
    CCommandPtr(Node("GevSCPSFireTestPacket"))->Execute();
    EXPECT_EQ(Register(0x0D04), 0xE0002328U);
    SetRegister(0x0D00, 0x00030000);
    Set("GevSCPHostPort", "54415");
    EXPECT_EQ(Register(0x0D00), 0x0003D48FU);
    Set("PtpEnable", "1");
    Set("GevGVCPPendingAck", "1");
    EXPECT_EQ(Register(0x0954), 0x00080002U);
    CCommandPtr(Node("GevTimestampControlLatch"))->Execute();
    EXPECT_EQ(Register(0x0944), 2U);
    CCommandPtr(Node("GevTimestampControlLatchReset"))->Execute();
    EXPECT_EQ(Register(0x0944), 3U);
    CCommandPtr(Node("GevTimestampControlReset"))->Execute();
    EXPECT_EQ(Register(0x0944), 1U);
    Set("ActionDeviceKey", "0x11223344");
    EXPECT_EQ(Register(0x090C), 0x11223344U);
    EXPECT_FALSE(IsReadable(Node("ActionDeviceKey")));
    EXPECT_FALSE(IsWritable(Node("GevSCPDirection")));
    EXPECT_FALSE(IsWritable(Node("GevCurrentIPAddress")));
}

TEST_F(NetworkFeatures, SelectorsChooseChannelsAndSignals) {
    SetRegister(0x0D44, 576);
    Set("GevStreamChannelSelector", "1");
    EXPECT_EQ(Text("GevSCPSPacketSize"), "576");
    Set("GevSCDA", "10.77.0.1");
    EXPECT_EQ(Register(0x0D58), 0x0A4D0001U);
    Set("GevSCCFGAllInTransmission", "1");
    EXPECT_EQ(Register(0x0D64), 4U);
    Set("ActionSelector", "1");
    Set("ActionGroupKey", "5");
    Set("ActionGroupMask", "6");
    EXPECT_EQ(Register(0x9810), 5U);
    EXPECT_EQ(Register(0x9814), 6U);
    EXPECT_THROW(Set("ActionSelector", "4"), GENICAM_NAMESPACE::GenericException);
}

TEST_F(NetworkFeatures, AreThereIfTheCameraCan) {
    SetRegister(0x0934, 0xFFFFFFFF & ~0x00080000U & ~0x00000040U);
    SetRegister(0x092C, 0);
    SetRegister(0x0D20, 0x2);
    EXPECT_FALSE(IsImplemented(Node("PtpStatus")));
    EXPECT_FALSE(IsImplemented(Node("PtpEnable")));
    EXPECT_FALSE(IsImplemented(Node("ActionGroupKey")));
    EXPECT_FALSE(IsImplemented(Node("GevSCSP")));
    EXPECT_FALSE(IsImplemented(Node("GevSCCFGMultiPart")));
    EXPECT_TRUE(IsImplemented(Node("GevSCCFGUnconditionalStreaming")));
    EXPECT_TRUE(IsImplemented(Node("GevLinkSpeed")));

    const std::pair<const char*, const char*> kOptions[] = {{"UserDefinedName", "1"},
                                                            {"Ptp", "0"},
                                                            {"Action", "0"},
                                                            {"CommandsConcatenation", "1"},
                                                            {"StreamChannelSourceSocket", "0"},
                                                            {"MessageChannelSourceSocket", "1"},
                                                            {"IPConfigurationLLA", "1"},
                                                            {"IPConfigurationPersistentIP", "1"}};
    for (const auto& [option, has] : kOptions) {
        Set("GevSupportedOptionSelector", option);
        EXPECT_EQ(Text("GevSupportedOption"), has) << option;
    }
}

// What the addresses of the camera's own features must not touch, and what its clock shows.
TEST_F(NetworkFeatures, OwnRegistersLieBehind) {
    CameraConfig config = Config();
    config.bigEndian = true;
    Load(config);
    Set("Width", "64");
    Set("LineSelector", "Line1");
    Set("LineInverter", "1");
    EXPECT_EQ(Text("LineStatusAll"), "0x2");
    EXPECT_EQ(Register(0x12110), 64U);
    for (uint64_t address = 0x2000; address < 0x9000; address += 4)
        ASSERT_EQ(Register(address), 0U) << address;
    camera->Hardware().SetClock(5000000000);
    CCommandPtr(Node("TimestampLatch"))->Execute();
    EXPECT_GE(CIntegerPtr(Node("TimestampLatchValue"))->GetValue(), 5000000000);
    CCommandPtr(Node("TimestampReset"))->Execute();
    CCommandPtr(Node("TimestampLatch"))->Execute();
    EXPECT_LT(CIntegerPtr(Node("TimestampLatchValue"))->GetValue(), 5000000000);
    CCommandPtr(Node("PtpDataSetLatch"))->Execute();
    EXPECT_LT(CIntegerPtr(Node("PtpOffsetFromMaster"))->GetValue(), -1000000000000);
    SetRegister(0x0008, 0x00001234);
    SetRegister(0x000C, 0x56789ABC);
    EXPECT_EQ(Text("PtpClockID"), "0x123456fffe789abc");
    Set("TriggerSource", "Action1");
    EXPECT_EQ(camera->Hardware().Settings()->triggerSource, TriggerSource::Action1);
}

// The messages of the channel, with block ids of either size.
TEST_F(NetworkFeatures, ReadTheEventsOfTheMessageChannel) {
    std::vector<std::vector<uint8_t>> sent;
    MessageChannel channel(
        1,
        [&](const ZelCti::Endpoint&, ZelCti::ByteView message) {
            sent.emplace_back(message.data, message.data + message.size);
        },
        [] {});
    channel.SetPort(1);
    const auto subscription = camera->Hardware().Events().Subscribe(channel);
    CEventAdapterGEV adapter(map->_Ptr);
    const auto deliver = [&](EventKind kind, uint64_t time, std::optional<uint64_t> frame) {
        camera->Hardware().Events().Send(kind, time, frame);
        channel.OnTimer({});
        adapter.DeliverMessage(sent.back().data(), static_cast<uint32_t>(sent.back().size()));
    };
    camera->Hardware().Events().SetOn(EventKind::FrameEnd, true);
    deliver(EventKind::FrameEnd, 1234, 0x10005);
    EXPECT_EQ(Text("EventFrameEndTimestamp"), "1234");
    EXPECT_EQ(Text("EventFrameEndFrameID"), "65541");
    Set("GevGVSPExtendedIDMode", "On");
    channel.SetExtendedIds(true);
    deliver(EventKind::FrameEnd, 5678, 0x10006);
    EXPECT_EQ(Text("EventFrameEndTimestamp"), "5678");
    EXPECT_EQ(Text("EventFrameEndFrameID"), "65542");
    deliver(EventKind::ActionLate, 99, std::nullopt);
    EXPECT_EQ(Text("EventActionLateTimestamp"), "99");
}

TEST_F(NetworkFeatures, CamerasWithoutStreamsHaveNoStreamChannels) {
    CameraConfig config = Config();
    config.streams = 0;
    Load(config);
    EXPECT_EQ(Node("GevStreamChannelSelector"), nullptr);
    EXPECT_EQ(Node("GevSCPSPacketSize"), nullptr);
    EXPECT_NE(Node("GevCCP"), nullptr);
}

}  // namespace ZelSim
