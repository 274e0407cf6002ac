// What cameras on a network have for it: features over bootstrap registers.
#include "producers/simulator/camera/camera.h"
#include "producers/simulator/features/bootstraprows.h"
#include "producers/simulator/features/categories.h"

namespace ZelSim {

using ZelCti::Entry;
using ZelCti::Feature;
using ZelCti::FeatureTable;
namespace Gev = ZelCti::Gev;

namespace {

// What streams take; the registers round what is written.
constexpr int64_t kSmallestPacket = 576;
constexpr int64_t kLargestPacket = 16384;
constexpr int64_t kPacketStep = 4;

// GevSupportedOptionSelector has the number of a bit, of one capability register after the other.
constexpr int64_t kBitsOfRegister = 32;

struct Option {
    const char* name;
    int64_t reg;  // in the order of the variables of GevSupportedOption
    uint32_t mask;
    const char* what;
};
constexpr Option kOptions[] = {
    {"UserDefinedName", 0, Gev::GvcpCapability::kUserDefinedName, "A name that the user gives."},
    {"SerialNumber", 0, Gev::GvcpCapability::kSerialNumber, "A serial number."},
    {"HeartbeatDisable", 0, Gev::GvcpCapability::kHeartbeatDisable, "No heartbeat on demand."},
    {"LinkSpeed", 0, Gev::GvcpCapability::kLinkSpeed, "The speed of the link."},
    {"CCPApplicationSocket", 0, Gev::GvcpCapability::kPrimaryApplication,
     "Address and port of the application in control."},
    {"ManifestTable", 0, Gev::GvcpCapability::kManifestTable, "A table of descriptions."},
    {"TestData", 0, Gev::GvcpCapability::kTestData, "Test data in test packets."},
    {"DiscoveryAckDelay", 0, Gev::GvcpCapability::kDiscoveryAckDelay,
     "A delay before the answer to a discovery."},
    {"DiscoveryAckDelayWritable", 0, Gev::GvcpCapability::kDiscoveryAckDelayWritable,
     "... that can be set."},
    {"ExtendedStatusCodes", 0, Gev::GvcpCapability::kStatusCodes11, "Status codes of 1.1."},
    {"PrimaryApplicationSwitchover", 0, Gev::GvcpCapability::kSwitchover,
     "Handing over the control with a key."},
    {"UnconditionalAction", 0, Gev::GvcpCapability::kUnconditionalAction,
     "Actions while nobody has control."},
    {"Ptp", 0, Gev::GvcpCapability::kIeee1588, "IEEE 1588."},
    {"ExtendedStatusCodesVersion2_0", 0, Gev::GvcpCapability::kStatusCodes20,
     "Status codes of 2.0."},
    {"ScheduledAction", 0, Gev::GvcpCapability::kScheduledAction, "Actions at a time."},
    {"Action", 0, Gev::GvcpCapability::kAction, "Actions."},
    {"PendingAck", 0, Gev::GvcpCapability::kPendingAck, "Word that a command takes longer."},
    {"EventData", 0, Gev::GvcpCapability::kEventData, "Events with data."},
    {"Event", 0, Gev::GvcpCapability::kEvent, "Events."},
    {"PacketResend", 0, Gev::GvcpCapability::kPacketResend, "Packets once more."},
    {"WriteMem", 0, Gev::GvcpCapability::kWriteMem, "Writing of memory."},
    {"CommandsConcatenation", 0, Gev::GvcpCapability::kConcatenation,
     "Several registers in one command."},
    {"StreamChannelSourceSocket", 1, Gev::GvspCapability::kScsp, "Source ports of streams."},
    {"MessageChannelSourceSocket", 2, Gev::MessageChannelCapability::kMcsp,
     "The source port of events."},
    {"IPConfigurationLLA", 3, Gev::IpConfiguration::kLla, "A link-local address."},
    {"IPConfigurationDHCP", 3, Gev::IpConfiguration::kDhcp, "An address from a server."},
    {"IPConfigurationPersistentIP", 3, Gev::IpConfiguration::kPersistentIp, "A fixed address."},
};

std::vector<Entry> OptionEntries() {
    std::vector<Entry> entries;
    for (const Option& option : kOptions) {
        int64_t bit = 0;
        while ((option.mask >> bit & 1U) == 0)
            ++bit;
        entries.push_back({option.name, option.reg * kBitsOfRegister + bit, option.what});
    }
    return entries;
}

void AddOptions(FeatureTable& features, BootstrapRows& rows) {
    features.Enumeration("GevSupportedOptionSelector", "The option that the next feature is about.")
        .Expert()
        .Entries(OptionEntries())
        .Local(0);
    features.Boolean("GevSupportedOption", "Whether the camera has the selected option.")
        .Expert()
        .SelectedBy("GevSupportedOptionSelector")
        .Over("GevSupportedOptionBit");
    features.IntSwissKnife("GevSupportedOptionBit")
        .Variables({{"OPTION", "GevSupportedOptionSelectorValue"},
                    {"CONTROL", "GevOptionsOfControl"},
                    {"STREAMS", "GevOptionsOfStreams"},
                    {"MESSAGES", "GevOptionsOfMessages"},
                    {"ADDRESS", "GevOptionsOfAddress"}})
        .Formula(
            "((OPTION < 32 ? CONTROL : (OPTION < 64 ? STREAMS : (OPTION < 96 ? MESSAGES : "
            "ADDRESS))) >> (OPTION % 32)) & 1");
    rows.Capability("GevOptionsOfControl", Gev::kGvcpCapability);
    rows.Capability("GevOptionsOfStreams", Gev::kGvspCapability);
    rows.Capability("GevOptionsOfMessages", Gev::kMessageChannelCapability);
    rows.Capability("GevOptionsOfAddress", Gev::kSupportedIpConfiguration);
}

void AddDevice(BootstrapRows& rows) {
    rows.Integer("GevVersionMajor", "Version of the protocol, before the point.", Gev::kVersion,
                 0xFFFF0000)
        .Expert();
    rows.Integer("GevVersionMinor", "Version of the protocol, behind the point.", Gev::kVersion,
                 0x0000FFFF)
        .Expert();
    rows.Boolean("GevDeviceModeIsBigEndian", "Whether the camera's own registers are big endian.",
                 Gev::kDeviceMode, Gev::DeviceMode::kBigEndian)
        .Guru();
    rows.Enumeration("GevDeviceModeCharacterSet", "How texts are written.", Gev::kDeviceMode,
                     Gev::DeviceMode::kCharacterSet)
        .Guru()
        .Entries({{"UTF8", Gev::DeviceMode::kUtf8, "UTF-8."},
                  {"ASCII", Gev::DeviceMode::kAscii, "ASCII."}});
    rows.Text("GevFirstURL", "Where the description is.", Gev::kFirstUrl).Guru();
    rows.Text("GevSecondURL", "Where it is otherwise.", Gev::kSecondUrl).Guru();
    rows.Integer("GevNumberOfInterfaces", "Interfaces of the camera to networks.",
                 Gev::kNumberOfInterfaces)
        .Expert();
    rows.Integer("GevMessageChannelCount", "Channels for events.", Gev::kNumberOfMessageChannels)
        .Expert();
    rows.Integer("GevStreamChannelCount", "Channels for frames.", Gev::kNumberOfStreamChannels)
        .Expert();
}

void AddInterface(FeatureTable& features, BootstrapRows& rows) {
    using Gev::IpConfiguration::kDhcp;
    using Gev::IpConfiguration::kLla;
    using Gev::IpConfiguration::kPersistentIp;
    constexpr const char* kSelector = "GevInterfaceSelector";
    const auto addIp = [&](const char* name, const char* toolTip, const Gev::Register& reg) {
        rows.Integer(name, toolTip, reg).SelectedBy(kSelector).Representation("IPV4Address");
    };
    const auto addWay = [&](const char* name, const char* toolTip, uint32_t bit) {
        rows.Boolean(name, toolTip, Gev::kCurrentIpConfiguration, bit).SelectedBy(kSelector);
    };
    features.Integer(kSelector, "The interface that the next features are about.")
        .Value(0)
        .Limits(0, 0);
    rows.Wide("GevMACAddress", "MAC address of the camera.", Gev::kMacHigh)
        .SelectedBy(kSelector)
        .Representation("MACAddress");
    rows.Integer("GevLinkSpeed", "Speed of the link.", Gev::kLinkSpeed)
        .Expert()
        .SelectedBy(kSelector)
        .Unit("Mbps");
    addWay("GevCurrentIPConfigurationLLA", "Whether a link-local address is taken.", kLla);
    addWay("GevCurrentIPConfigurationDHCP", "Whether a server is asked for an address.", kDhcp);
    addWay("GevCurrentIPConfigurationPersistentIP", "Whether the fixed address is taken.",
           kPersistentIp);
    addIp("GevCurrentIPAddress", "Address of the camera.", Gev::kCurrentIp);
    addIp("GevCurrentSubnetMask", "Mask of its subnet.", Gev::kCurrentSubnetMask);
    addIp("GevCurrentDefaultGateway", "Its gateway; 0.0.0.0 is none.", Gev::kCurrentDefaultGateway);
    addIp("GevPersistentIPAddress", "Fixed address of the camera.", Gev::kPersistentIp);
    addIp("GevPersistentSubnetMask", "Fixed mask.", Gev::kPersistentSubnetMask);
    addIp("GevPersistentDefaultGateway", "Fixed gateway.", Gev::kPersistentDefaultGateway);
}

void AddControlChannel(FeatureTable& features, BootstrapRows& rows) {
    rows.Enumeration("GevCCP", "Who controls the camera.", Gev::kCcp,
                     Gev::Ccp::kSwitchoverAllowed | Gev::Ccp::kControl | Gev::Ccp::kExclusive)
        .Guru()
        .Entries(
            {{"OpenAccess", 0, "Nobody."},
             {"ExclusiveAccess", Gev::Ccp::kExclusive, "An application, alone."},
             {"ControlAccess", Gev::Ccp::kControl, "An application; others may read."},
             {"ControlAccessSwitchoverActive", Gev::Ccp::kControl | Gev::Ccp::kSwitchoverAllowed,
              "An application, from which others may take it with the key."}});
    rows.Integer("GevPrimaryApplicationSocket", "Port of the application in control.",
                 Gev::kPrimaryApplicationPort)
        .Guru();
    rows.Integer("GevPrimaryApplicationIPAddress", "Address of the application in control.",
                 Gev::kPrimaryApplicationIp)
        .Guru()
        .Representation("IPV4Address");
    rows.Integer("GevPrimaryApplicationSwitchoverKey", "With which others take the control.",
                 Gev::kSwitchoverKey)
        .Guru()
        .Limits(0, 0xFFFF);
    rows.Integer("GevHeartbeatTimeout",
                 "After this time without a sign of life the camera is free for others.",
                 Gev::kHeartbeatTimeout)
        .Guru()
        .Unit("ms")
        .Representation("Linear");
    features
        .Converter("DeviceLinkHeartbeatTimeout",
                   "After this time without a sign of life the camera is free for others.")
        .Guru()
        .Formulas("FROM / 1000", "TO * 1000")
        .Over("GevHeartbeatTimeoutReg")
        .With("Slope", "Increasing")
        .Unit("us");
    const auto addSwitch = [&](const char* name, const char* toolTip, uint32_t bit,
                               uint32_t capability) {
        Feature& feature = rows.Boolean(name, toolTip, Gev::kGvcpConfiguration, bit).Guru();
        rows.ImplementedIf(feature, Gev::kGvcpCapability, capability);
    };
    addSwitch("GevGVCPHeartbeatDisable", "Whether no sign of life is needed.",
              Gev::GvcpConfiguration::kHeartbeatDisable, Gev::GvcpCapability::kHeartbeatDisable);
    addSwitch("GevGVCPPendingAck", "Whether the camera says that a command takes longer.",
              Gev::GvcpConfiguration::kPendingAck, Gev::GvcpCapability::kPendingAck);
    addSwitch("GevGVCPExtendedStatusCodes", "Whether status codes of 1.1 are sent.",
              Gev::GvcpConfiguration::kStatusCodes11, Gev::GvcpCapability::kStatusCodes11);
    rows.Integer("GevGVCPPendingTimeout", "The longest time that a command takes.",
                 Gev::kPendingTimeout)
        .Guru()
        .Unit("ms");
    rows.Integer("GevDiscoveryAckDelay", "The longest time until a discovery is answered.",
                 Gev::kDiscoveryAckDelay)
        .Guru()
        .Unit("ms");
}

void AddGevClock(BootstrapRows& rows) {
    using Gev::TimestampControl::kLatch;
    using Gev::TimestampControl::kReset;
    rows.Wide("GevTimestampTickFrequency", "Ticks of the camera a second.",
              Gev::kTimestampTickFrequencyHigh)
        .Expert()
        .Unit("Hz")
        .Representation("Linear");
    rows.Command("GevTimestampControlLatch", "Takes the present time for GevTimestampValue.",
                 Gev::kTimestampControl, BootstrapRows::kWhole, kLatch)
        .Expert();
    rows.Command("GevTimestampControlReset", "Sets the clock of the camera to 0.",
                 Gev::kTimestampControl, BootstrapRows::kWhole, kReset)
        .Expert();
    rows.Command("GevTimestampControlLatchReset", "Takes the time, and sets the clock to 0.",
                 Gev::kTimestampControl, BootstrapRows::kWhole, kLatch | kReset)
        .Expert();
    rows.Wide("GevTimestampValue", "The time that was taken, in ticks of the camera.",
              Gev::kLatchedTimestampHigh)
        .Expert()
        .Representation("Linear");
}

void AddMessageChannel(BootstrapRows& rows) {
    rows.Integer("GevMCPHostPort", "Port to which events go; 0 closes the channel.", Gev::kMcp,
                 Gev::Mcp::kPort)
        .Guru();
    rows.Integer("GevMCDA", "Address to which events go.", Gev::kMcda)
        .Guru()
        .Representation("IPV4Address");
    rows.Integer("GevMCTT", "Time to wait for the answer to an event; 0 asks for none.", Gev::kMctt)
        .Guru()
        .Unit("ms");
    rows.Integer("GevMCRC", "How often an event is repeated.", Gev::kMcrc).Guru();
    rows.Integer("GevMCSP", "Port from which events come.", Gev::kMcsp).Guru();
}

// What SCPS holds.
void AddPackets(BootstrapRows& rows) {
    using Gev::kScps;
    rows.Command("GevSCPSFireTestPacket", "Sends a test packet.", kScps, Gev::Scps::kFireTestPacket,
                 1)
        .Expert();
    rows.Boolean("GevSCPSDoNotFragment", "Whether routers must not cut packets.", kScps,
                 Gev::Scps::kDoNotFragment)
        .Guru();
    rows.Boolean("GevSCPSBigEndian", "Whether pixels of several bytes are sent big endian.", kScps,
                 Gev::Scps::kBigEndianPixels)
        .Guru();
    rows.Integer("GevSCPSPacketSize", "Size of the packets of the stream, with their headers.",
                 kScps, Gev::Scps::kPacketSize)
        .Expert()
        .LockedBy("FrameSettingsLocked")
        .Limits(kSmallestPacket, kLargestPacket, kPacketStep)
        .Unit("B")
        .Representation("Linear")
        .Streamable();
    rows.Integer("GevSCPD", "Delay between packets, in ticks of the camera.", Gev::kScpd)
        .Expert()
        .Representation("Linear")
        .Streamable();
}

void AddStreamOptions(BootstrapRows& rows) {
    const auto addOption = [&](const char* name, const char* toolTip, uint32_t bit) {
        Feature& feature = rows.Boolean(name, toolTip, Gev::kSccfg, bit).Guru();
        rows.ImplementedIf(feature, Gev::kScc, bit);
    };
    addOption("GevSCCFGUnconditionalStreaming",
              "Whether frames go on when the application in control is gone.",
              Gev::Sccfg::kUnconditionalStreaming);
    addOption("GevSCCFGExtendedChunkData", "Whether chunks come as extended chunk data.",
              Gev::Sccfg::kExtendedChunkData);
    addOption("GevSCCFGPacketResendDestination",
              "Whether packets are sent again to the one that asks, or to where all go.",
              Gev::Sccfg::kResendDestination);
    addOption("GevSCCFGAllInTransmission", "Whether a small frame is sent as one packet.",
              Gev::Sccfg::kAllIn);
    addOption("GevSCCFGLargeLeaderTrailer", "Whether leaders and trailers may be large.",
              Gev::Sccfg::kLargeLeaderTrailer);
    addOption("GevSCCFGMultiPart", "Whether frames are sent in parts.", Gev::Sccfg::kMultiPart);
    addOption("GevSCCFGGenDC", "Whether frames are sent as GenDC containers.", Gev::Sccfg::kGenDc);
}

void AddStreamChannels(FeatureTable& features, BootstrapRows& rows, uint32_t numStreams) {
    features.Integer("GevStreamChannelSelector", "The channel that the next features are about.")
        .Expert()
        .Limits(0, numStreams - 1)
        .Streamable()
        .Local(0);
    AddStreamOptions(rows);
    rows.Enumeration("GevSCPDirection", "What the channel does.", Gev::kScp, Gev::Scp::kReceiver)
        .Guru()
        .With("ImposedAccessMode", "RO")
        .Entries({{"Transmitter", 0, "It sends."}, {"Receiver", 1, "It receives."}});
    rows.Integer("GevSCPInterfaceIndex", "Interface of the channel.", Gev::kScp,
                 Gev::Scp::kInterface)
        .Guru();
    rows.Integer("GevSCPHostPort", "Port to which frames go; 0 closes the channel.", Gev::kScp,
                 Gev::Scp::kPort)
        .Guru();
    AddPackets(rows);
    rows.Integer("GevSCDA", "Address to which frames go.", Gev::kScda)
        .Guru()
        .Representation("IPV4Address");
    rows.Integer("GevSCSP", "Port from which frames come.", Gev::kScsp).Guru();
}

}  // namespace

void AddGigEVision(FeatureTable& features, BootstrapRows& rows, Camera& camera) {
    features.Category("GigEVision", "What GigE Vision cameras have for the network.")
        .Expert()
        .In("TransportLayerControl");
    AddDevice(rows);
    AddOptions(features, rows);
    AddInterface(features, rows);
    AddControlChannel(features, rows);
    AddGevClock(rows);
    AddMessageChannel(rows);
    rows.Enumeration("GevGVSPExtendedIDMode", "How frames are numbered in packets.",
                     Gev::kGvspConfiguration, Gev::GvspConfiguration::kBlockIds64)
        .Expert()
        .Entries({{"Off", 0, "With 16 bits."}, {"On", 1, "With 64 bits."}});
    if (camera.Config().streams != 0) AddStreamChannels(features, rows, camera.Config().streams);
}

void AddActionControl(FeatureTable& features, BootstrapRows& rows) {
    features.Category("ActionControl", "What the camera does when an action is sent to many.")
        .Expert();
    Feature& unconditional =
        rows.Enumeration("ActionUnconditionalMode",
                         "Whether actions work while nobody has control.", Gev::kGvcpConfiguration,
                         Gev::GvcpConfiguration::kUnconditionalAction)
            .Guru()
            .Entries({{"Off", 0, "They do not."}, {"On", 1, "They do."}});
    rows.ImplementedIf(unconditional, Gev::kGvcpCapability,
                       Gev::GvcpCapability::kUnconditionalAction);
    rows.Integer("ActionDeviceKey", "The key that actions for this camera have.",
                 Gev::kActionDeviceKey)
        .Guru()
        .Representation("HexNumber");
    rows.Integer("ActionQueueSize", "How many actions can wait for their time.",
                 Gev::kScheduledActionQueueSize)
        .Guru();
    features.Integer("ActionSelector", "The signal that the next features are about.")
        .Guru()
        .Limits(0, Camera::kNumActionSignals - 1)
        .Local(0);
    rows.Integer("ActionGroupKey", "The key that actions for the signal have.",
                 Gev::kActionGroupKey)
        .Guru()
        .Representation("HexNumber");
    rows.Integer("ActionGroupMask", "Actions for the signal have at least one of these bits.",
                 Gev::kActionGroupMask)
        .Guru()
        .Representation("HexNumber");
}

}  // namespace ZelSim
