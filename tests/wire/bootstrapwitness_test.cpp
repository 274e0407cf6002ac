// Wireshark's dissector, which was written without us, tells the address and the bits of each
// bootstrap register.

#include <set>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "producers/wire/bootstrap.h"
#include "producers/wire/gvcpcommands.h"
#include "tests/wire/dissection.h"

namespace ZelCti::Gev {

using namespace WireTest;
using testing::ElementsAre;

namespace {

constexpr uint16_t kAnyPort = 50000;

// A register with a value, and the only field that tshark shows for it with another value than 0.
struct ShownValue {
    const Register* reg;
    uint32_t value;
    const char* field;  // without its beginning
};
const ShownValue kShownValues[] = {
    {&kVersion, 0x00020000, "specversion.major=0x00000002"},
    {&kVersion, 0x00000001, "specversion.minor=0x00000001"},
    {&kDeviceMode, DeviceMode::kBigEndian, "devicemode.endianness=1"},
    {&kDeviceMode, DeviceMode::kClass, "devicemode.deviceclass=0x00000007"},
    {&kDeviceMode, DeviceMode::kLink, "devicemode.currentlinkconfiguration=0x00000003"},
    {&kDeviceMode, DeviceMode::kAscii, "devicemode.characterset=0x00000002"},
    {&kMacHigh, 0x1234, "machigh=0x00001234"},
    {&kMacLow, 0x12345678, "maclow=0x12345678"},
    {&kSupportedIpConfiguration, IpConfiguration::kHandlesPause, "ipconfig.canhandlepauseframes=1"},
    {&kSupportedIpConfiguration, IpConfiguration::kGeneratesPause,
     "ipconfig.cangeneratepauseframes=1"},
    {&kSupportedIpConfiguration, IpConfiguration::kLla, "ipconfig.lla=1"},
    {&kCurrentIpConfiguration, IpConfiguration::kDhcp, "ipconfig.dhcp=1"},
    {&kCurrentIpConfiguration, IpConfiguration::kPersistentIp, "ipconfig.persistentip=1"},
    {&kCurrentIp, 0x0A4D0002, "currentip=10.77.0.2"},
    {&kCurrentSubnetMask, 0xFFFFFF00, "currentsubnetmask=255.255.255.0"},
    {&kCurrentDefaultGateway, 0x0A4D00FE, "currentdefaultgateway=10.77.0.254"},
    {&kNumberOfInterfaces, 4, "numberofnetworminterfaces=4"},
    {&kPersistentIp, 0x0A4D0002, "persistentip=10.77.0.2"},
    {&kPersistentSubnetMask, 0xFFFFFF00, "persistentsubnetmask=255.255.255.0"},
    {&kPersistentDefaultGateway, 0x0A4D00FE, "persistentgateway=10.77.0.254"},
    {&kLinkSpeed, 1000, "linkspeed=1000"},
    {&kFurtherMacHigh, 0x1234, "machigh=0x00001234"},
    {&kFurtherMacLow, 0x12345678, "maclow=0x12345678"},
    {&kFurtherSupportedIpConfiguration, IpConfiguration::kLla, "ipconfig.lla=1"},
    {&kFurtherCurrentIpConfiguration, IpConfiguration::kDhcp, "ipconfig.dhcp=1"},
    {&kFurtherCurrentIp, 0x0A4D0002, "currentip=10.77.0.2"},
    {&kFurtherCurrentSubnetMask, 0xFFFFFF00, "currentsubnetmask=255.255.255.0"},
    {&kFurtherCurrentDefaultGateway, 0x0A4D00FE, "currentdefaultgateway=10.77.0.254"},
    {&kNumberOfMessageChannels, 1, "numberofmessagechannels=1"},
    {&kNumberOfStreamChannels, 5, "numberofstreamchannels=5"},
    {&kNumberOfActionSignals, 6, "numberofactionsignals=6"},
    {&kGvspCapability, GvspCapability::kScsp, "sccaps.scspxregistersupported=1"},
    {&kGvspCapability, GvspCapability::kBlockIds16, "sccaps.16bitblockidsupported=1"},
    {&kGvspCapability, GvspCapability::kMaximumBlockSize, "sccaps.scmbssupported=1"},
    {&kGvspCapability, GvspCapability::kExtendedBootstrapAddress, "sccaps.scebasupported=1"},
    {&kMessageChannelCapability, MessageChannelCapability::kMcsp, "mccaps.mcspsupported=1"},
    {&kMessageChannelCapability, MessageChannelCapability::kMccfg, "mccaps.mccfgsupported=1"},
    {&kMessageChannelCapability, MessageChannelCapability::kMcec, "mccaps.mcecsupported=1"},
    {&kGvcpCapability, GvcpCapability::kUserDefinedName, "capability.userdefined=1"},
    {&kGvcpCapability, GvcpCapability::kSerialNumber, "capability.serialnumber=1"},
    {&kGvcpCapability, GvcpCapability::kHeartbeatDisable, "capability.heartbeatdisabled=1"},
    {&kGvcpCapability, GvcpCapability::kLinkSpeed, "capability.linkspeed=1"},
    {&kGvcpCapability, GvcpCapability::kPrimaryApplication, "capability.ccpapplicationportip=1"},
    {&kGvcpCapability, GvcpCapability::kManifestTable, "capability.manifesttable=1"},
    {&kGvcpCapability, GvcpCapability::kTestData, "capability.testdata=1"},
    {&kGvcpCapability, GvcpCapability::kDiscoveryAckDelay, "capability.discoveryackdelay=1"},
    {&kGvcpCapability, GvcpCapability::kDiscoveryAckDelayWritable,
     "capability.writablediscoveryackdelay=1"},
    {&kGvcpCapability, GvcpCapability::kStatusCodes11,
     "capability.extendedstatuscodesupportedv1_1=1"},
    {&kGvcpCapability, GvcpCapability::kSwitchover, "capability.primaryapplicationswitchover=1"},
    {&kGvcpCapability, GvcpCapability::kUnconditionalAction,
     "capability.unconditionalactioncommand=1"},
    {&kGvcpCapability, GvcpCapability::kIeee1588, "capability.ieee1588=1"},
    {&kGvcpCapability, GvcpCapability::kStatusCodes20,
     "capability.pendingextendedstatuscodev2_0=1"},
    {&kGvcpCapability, GvcpCapability::kScheduledAction, "capability.scheduledactioncommand=1"},
    {&kGvcpCapability, GvcpCapability::kIeee1588Extended,
     "capability.ieee1588extendedcapabilities=1"},
    {&kGvcpCapability, GvcpCapability::kAction, "capability.actioncommand=1"},
    {&kGvcpCapability, GvcpCapability::kPendingAck, "capability.pendingack=1"},
    {&kGvcpCapability, GvcpCapability::kEventData, "capability.eventdata=1"},
    {&kGvcpCapability, GvcpCapability::kEvent, "capability.eventsignal=1"},
    {&kGvcpCapability, GvcpCapability::kPacketResend, "capability.packetresendcmd=1"},
    {&kGvcpCapability, GvcpCapability::kWriteMem, "capability.writemem=1"},
    {&kGvcpCapability, GvcpCapability::kConcatenation, "capability.concatenation=1"},
    {&kHeartbeatTimeout, 3000, "heartbeattimeout=3000"},
    {&kTimestampTickFrequencyHigh, 7, "timestamptickfrequencyhigh=7"},
    {&kTimestampTickFrequencyLow, 8, "timestamptickfrequencylow=8"},
    {&kTimestampControl, TimestampControl::kLatch, "timestampcontrol.latch=1"},
    {&kTimestampControl, TimestampControl::kReset, "timestampcontrol.reset=1"},
    {&kLatchedTimestampHigh, 9, "timestampvaluehigh=9"},
    {&kLatchedTimestampLow, 10, "timestampvaluelow=10"},
    {&kDiscoveryAckDelay, 11, "discoveryackdelay=11"},
    {&kGvcpConfiguration, GvcpConfiguration::kIeee1588, "config.ieee1588enable=1"},
    {&kGvcpConfiguration, GvcpConfiguration::kStatusCodes20, "config.statuscodesv2_0enable=1"},
    {&kGvcpConfiguration, GvcpConfiguration::kUnconditionalAction,
     "config.unconditionalactioncommandenable=1"},
    {&kGvcpConfiguration, GvcpConfiguration::kStatusCodes11, "config.statuscodesv1_1enable=1"},
    {&kGvcpConfiguration, GvcpConfiguration::kPendingAck, "config.pendingackenable=1"},
    {&kGvcpConfiguration, GvcpConfiguration::kHeartbeatDisable, "config.heartbeatdisable=1"},
    {&kPendingTimeout, 12, "pending.timeout=12"},
    {&kSwitchoverKey, 13, "controlswitchoverkey=13"},
    {&kGvspConfiguration, GvspConfiguration::kBlockIds64, "gvcspconfig.64bitblockidenable=1"},
    {&kPhysicalLinkCapability, PhysicalLink::kDynamicLag, "link.dlag=1"},
    {&kPhysicalLinkCapability, PhysicalLink::kStaticLag, "link.slag=1"},
    {&kPhysicalLinkConfiguration, PhysicalLink::kMultiple, "link.ml=1"},
    {&kPhysicalLinkConfiguration, PhysicalLink::kSingle, "link.sl=1"},
    {&kIeee1588Status, 9, "ieee1588.clockstatus=0x00000009"},
    {&kScheduledActionQueueSize, 14, "scheduledactioncommandqueuesize=14"},
    {&kIeee1588ExtendedCapabilities, Ieee1588Extended::kProfiles,
     "ieee1588extendedcapabilities.profileregisterspresent=1"},
    {&kIeee1588SupportedProfiles, Ieee1588Profile::kPtpDefault, "ieee1588supportedprofiles.ptp=1"},
    {&kIeee1588SupportedProfiles, Ieee1588Profile::k8021As,
     "ieee1588supportedprofiles.802dot1as=1"},
    {&kIeee1588SelectedProfile, 1, "ieee1588selectedprofile=1"},
    {&kCcp, Ccp::kSwitchoverKey, "control.switchoverkey=0x0000ffff"},
    {&kCcp, Ccp::kSwitchoverAllowed, "control.switchoverenable=1"},
    {&kCcp, Ccp::kControl, "control.controlaccess=1"},
    {&kCcp, Ccp::kExclusive, "control.exclusiveaccess=1"},
    {&kPrimaryApplicationPort, 15, "primaryapplicationport=15"},
    {&kPrimaryApplicationIp, 0x0A4D0001, "primaryapplicationipaddress=10.77.0.1"},
    {&kMcp, Mcp::kInterface, "mcp.networkinterfaceindex=15"},
    {&kMcp, Mcp::kPort, "mcp.hostport=65535"},
    {&kMcda, 0x0A4D0001, "mcda=10.77.0.1"},
    {&kMctt, 16, "mctt=16"},
    {&kMcrc, 17, "mcrc=17"},
    {&kMcsp, 18, "mcsp=18"},
    {&kMccfg, Mccfg::kMcec, "mcconfig.mcecenabled=1"},
    {&kScp, Scp::kReceiver, "scpx.direction=1"},
    {&kScp, Scp::kInterface, "scpx.networkinterfaceindex=15"},
    {&kScp, Scp::kPort, "scpx.hostport=65535"},
    {&kScps, Scps::kFireTestPacket, "scpsx.firetestpacket=1"},
    {&kScps, Scps::kDoNotFragment, "scpsx.donotfragment=1"},
    {&kScps, Scps::kBigEndianPixels, "scpsx.pixelendianness=1"},
    {&kScps, Scps::kPacketSize, "scpsx.packetsize=65535"},
    {&kScpd, 19, "scpdx=19"},
    {&kScda, 0x0A4D0001, "scdax=10.77.0.1"},
    {&kScsp, 20, "scspx=20"},
    {&kScc, Scc::kPixelEndianness, "sccx.biglittleendiansupported=1"},
    {&kScc, Scc::kIpReassembly, "sccx.ipreassemblysupported=1"},
    {&kScc, Scc::kScmpc, "sccx.scmpcxsupported=1"},
    {&kScc, Scc::kGenDc, "sccx.gendcsupported=1"},
    {&kScc, Scc::kMultiPart, "sccx.multipartsupported=1"},
    {&kScc, Scc::kLargeLeaderTrailer, "sccx.largeleadertrailersupported=1"},
    {&kScc, Scc::kMultiZone, "sccx.multizonesupported=1"},
    {&kScc, Scc::kResendDestination, "sccx.resenddestinationoptionsupported=1"},
    {&kScc, Scc::kAllIn, "sccx.allintransmissionsupported=1"},
    {&kScc, Scc::kUnconditionalStreaming, "sccx.unconditionalstreamingsupported=1"},
    {&kScc, Scc::kExtendedChunkData, "sccx.extendedchunkdatasupported=1"},
    {&kSccfg, Sccfg::kGenDc, "sccfgx.gendcenabled=1"},
    {&kSccfg, Sccfg::kMultiPart, "sccfgx.multipartenabled=1"},
    {&kSccfg, Sccfg::kLargeLeaderTrailer, "sccfgx.largeleadertrailerenabled=1"},
    {&kSccfg, Sccfg::kResendDestination, "sccfgx.resenddestinationoptionenabled=1"},
    {&kSccfg, Sccfg::kAllIn, "sccfgx.allintransmissionenabled=1"},
    {&kSccfg, Sccfg::kUnconditionalStreaming, "sccfgx.unconditionalstreamingenabled=1"},
    {&kSccfg, Sccfg::kExtendedChunkData, "sccfgx.extendedchunkdataenabled=1"},
    {&kScz, 3, "sczx.additionalzones=3"},
    {&kSczd, 0x80000000, "sczdx.zone0direction=1"},
    {&kScmpc, 21, "scmpcx.maxpacketcount=21"},
    {&kScmbsHigh, 22, "maxblocksizehigh=22"},
    {&kScmbsLow, 23, "maxblocksizelow=23"},
    {&kSceba, 0x1234, "extendedbootstrapaddress=0x00001234"},
    {&kActionGroupKey, 24, "actiongroupkey=24"},
    {&kActionGroupMask, 0x12345678, "actiongroupmask=0x12345678"},
};

// Of a series the third one: its stride shows.
uint32_t AddressOf(const Register& reg) {
    return reg.At(reg.series.limit > 2 ? 2 : 0);
}

bool IsSet(const std::string& field) {
    return field.find_first_not_of("0x.", field.find('=') + 1) != std::string::npos;
}

// The fields of registers that are not 0, without the beginning of their names.
std::vector<std::string> SetFields(const Dissection::Fields& fields) {
    const std::string beginning = "gvcp.bootstrap.";
    std::vector<std::string> found;
    for (const std::string& field : fields)
        if (field.rfind(beginning, 0) == 0 && IsSet(field))
            found.push_back(field.substr(beginning.size()));
    return found;
}

}  // namespace

class BootstrapWitnessTest : public testing::Test {
  protected:
    void SetUp() override {
        if (!Dissection::IsPossible()) GTEST_SKIP() << "tshark is not installed (package tshark)";
    }
};

TEST_F(BootstrapWitnessTest, NumbersAndBits) {
    Dissection dissection;
    std::set<uint32_t> seen;
    for (const ShownValue& shown : kShownValues) {
        const Gvcp::RegisterWrite write{AddressOf(*shown.reg), shown.value};
        dissection.AddToDevice(kAnyPort, Gvcp::kPort, Encoded([&](ByteSpan out) {
                                   return Gvcp::EncodeWriteRegCmd(out, {1}, &write, 1);
                               }));
        seen.insert(shown.reg->address);
    }
    // tshark does not know the one, and does not show values of the other.
    seen.insert({kNumberOfActiveLinks.address, kActionDeviceKey.address});
    for (const Register& reg : kBootstrapRegisters)
        EXPECT_TRUE(reg.size != 4 || seen.count(reg.address) == 1) << reg.name;

    const auto packets = dissection.Run("gvcp");
    ASSERT_EQ(std::size(kShownValues), packets.size());
    for (size_t i = 0; i < packets.size(); ++i)
        EXPECT_THAT(SetFields(packets[i]), ElementsAre(kShownValues[i].field))
            << kShownValues[i].reg->name;
}

// A register that tshark does not know has a field of another name.
TEST_F(BootstrapWitnessTest, TextsAndTables) {
    Dissection dissection;
    std::vector<std::string> expected;
    for (const Register& reg : kBootstrapRegisters) {
        if (reg.size == 4) continue;
        dissection.AddToDevice(kAnyPort, Gvcp::kPort, Encoded([&](ByteSpan out) {
                                   return Gvcp::EncodeReadMemCmd(out, {1}, {reg.address, reg.size});
                               }));
        char field[64];
        std::snprintf(field, sizeof field, "gvcp.cmd.readmem.bootstrapregister=0x%08x",
                      reg.address);
        expected.emplace_back(field);
    }
    ASSERT_FALSE(expected.empty());
    const auto packets = dissection.Run("gvcp");
    ASSERT_EQ(expected.size(), packets.size());
    for (size_t i = 0; i < packets.size(); ++i)
        EXPECT_THAT(packets[i], testing::Contains(expected[i]));
}

}  // namespace ZelCti::Gev
