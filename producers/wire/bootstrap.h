// The bootstrap registers: what a device and its controller agree on before there is a description.
#pragma once

#include <cstdint>
#include <optional>

#include "producers/wire/bootstrapbits.h"

namespace ZelCti::Gev {

enum class Access : uint8_t { Read, Write, ReadWrite };

// Registers of one kind, one for each interface, channel or signal.
struct Series {
    uint16_t limit;   // no device has more
    uint16_t stride;  // bytes from one to the next
};
constexpr Series kOnce{1, 0};
constexpr Series kInterfaces{4, 0x80};
constexpr Series kFurtherInterfaces{3, 0x80};  // 1 to 3; those of interface 0 lie elsewhere
constexpr Series kStreamChannels{512, 0x40};
constexpr Series kActionSignals{128, 0x10};

// When a device has a register: always, or when the bit is set, or, with mask 0, maybe. Within a
// series, a bit of the same series counts for the register with the same index.
struct Presence {
    bool optional;
    uint32_t address;
    uint32_t mask;
};
constexpr Presence kAlways{false, 0, 0};
constexpr Presence kMaybe{true, 0, 0};

constexpr Presence IfSupportedIp(uint32_t mask) {
    return {true, 0x0010, mask};
}
constexpr Presence IfGvsp(uint32_t mask) {
    return {true, 0x092C, mask};
}
constexpr Presence IfMessageChannel(uint32_t mask) {
    return {true, 0x0930, mask};
}
constexpr Presence IfGvcp(uint32_t mask) {
    return {true, 0x0934, mask};
}
constexpr Presence IfIeee1588Extended(uint32_t mask) {
    return {true, 0x0974, mask};
}
constexpr Presence IfScc(uint32_t mask) {
    return {true, 0x0D20, mask};
}

struct Register {
    uint32_t address;  // of the first one of a series
    uint16_t size;     // 4 for a number, which is big endian; or the bytes of a text or a table
    Access access;
    Series series;
    Presence presence;
    const char* name;

    // `index` is below the limit of the series.
    constexpr uint32_t At(uint32_t index) const { return address + index * series.stride; }
};

// clang-format off
// X(identifier, address, size, access, series, presence, name), by rising address. Of a number in two
// registers the high one is read or written first. Known from one source: the registers of further
// interfaces, those from 0x0964 to 0x097C, the zones, and those of 2.2. From memory: the manifest table.
// Which bit stands for a register was concluded from their names.
#define ZELCTI_BOOTSTRAP_REGISTERS(X) \
    X(Version, 0x0000, 4, Read, kOnce, kAlways, "version") \
    X(DeviceMode, 0x0004, 4, Read, kOnce, kAlways, "device mode") \
    X(MacHigh, 0x0008, 4, Read, kOnce, kAlways, "MAC high") \
    X(MacLow, 0x000C, 4, Read, kOnce, kAlways, "MAC low") \
    X(SupportedIpConfiguration, 0x0010, 4, Read, kOnce, kAlways, "supported IP configuration") \
    X(CurrentIpConfiguration, 0x0014, 4, ReadWrite, kOnce, kAlways, "current IP configuration") \
    X(CurrentIp, 0x0024, 4, Read, kOnce, kAlways, "current IP") \
    X(CurrentSubnetMask, 0x0034, 4, Read, kOnce, kAlways, "current subnet mask") \
    X(CurrentDefaultGateway, 0x0044, 4, Read, kOnce, kAlways, "current default gateway") \
    X(ManufacturerName, 0x0048, 32, Read, kOnce, kAlways, "manufacturer name") \
    X(ModelName, 0x0068, 32, Read, kOnce, kAlways, "model name") \
    X(DeviceVersion, 0x0088, 32, Read, kOnce, kAlways, "device version") \
    X(ManufacturerInformation, 0x00A8, 48, Read, kOnce, kAlways, "manufacturer information") \
    X(SerialNumber, 0x00D8, 16, Read, kOnce, IfGvcp(GvcpCapability::kSerialNumber), "serial number") \
    X(UserDefinedName, 0x00E8, 16, ReadWrite, kOnce, IfGvcp(GvcpCapability::kUserDefinedName), "user-defined name") \
    X(FirstUrl, 0x0200, 512, Read, kOnce, kAlways, "first URL") \
    X(SecondUrl, 0x0400, 512, Read, kOnce, kAlways, "second URL") \
    X(NumberOfInterfaces, 0x0600, 4, Read, kOnce, kAlways, "number of network interfaces") \
    X(PersistentIp, 0x064C, 4, ReadWrite, kInterfaces, IfSupportedIp(IpConfiguration::kPersistentIp), "persistent IP") \
    X(PersistentSubnetMask, 0x065C, 4, ReadWrite, kInterfaces, IfSupportedIp(IpConfiguration::kPersistentIp), "persistent subnet mask") \
    X(PersistentDefaultGateway, 0x066C, 4, ReadWrite, kInterfaces, IfSupportedIp(IpConfiguration::kPersistentIp), "persistent default gateway") \
    X(LinkSpeed, 0x0670, 4, Read, kInterfaces, IfGvcp(GvcpCapability::kLinkSpeed), "link speed") \
    X(FurtherMacHigh, 0x0680, 4, Read, kFurtherInterfaces, kAlways, "MAC high of a further interface") \
    X(FurtherMacLow, 0x0684, 4, Read, kFurtherInterfaces, kAlways, "MAC low of a further interface") \
    X(FurtherSupportedIpConfiguration, 0x0688, 4, Read, kFurtherInterfaces, kAlways, "supported IP configuration of a further interface") \
    X(FurtherCurrentIpConfiguration, 0x068C, 4, ReadWrite, kFurtherInterfaces, kAlways, "current IP configuration of a further interface") \
    X(FurtherCurrentIp, 0x069C, 4, Read, kFurtherInterfaces, kAlways, "current IP of a further interface") \
    X(FurtherCurrentSubnetMask, 0x06AC, 4, Read, kFurtherInterfaces, kAlways, "current subnet mask of a further interface") \
    X(FurtherCurrentDefaultGateway, 0x06BC, 4, Read, kFurtherInterfaces, kAlways, "current default gateway of a further interface") \
    X(NumberOfMessageChannels, 0x0900, 4, Read, kOnce, kAlways, "number of message channels") \
    X(NumberOfStreamChannels, 0x0904, 4, Read, kOnce, kAlways, "number of stream channels") \
    X(NumberOfActionSignals, 0x0908, 4, Read, kOnce, IfGvcp(GvcpCapability::kAction), "number of action signals") \
    X(ActionDeviceKey, 0x090C, 4, Write, kOnce, IfGvcp(GvcpCapability::kAction), "action device key") \
    X(NumberOfActiveLinks, 0x0910, 4, Read, kOnce, kAlways, "number of active links") \
    X(GvspCapability, 0x092C, 4, Read, kOnce, kAlways, "GVSP capability") \
    X(MessageChannelCapability, 0x0930, 4, Read, kOnce, kAlways, "message channel capability") \
    X(GvcpCapability, 0x0934, 4, Read, kOnce, kAlways, "GVCP capability") \
    X(HeartbeatTimeout, 0x0938, 4, ReadWrite, kOnce, kAlways, "heartbeat time-out") \
    X(TimestampTickFrequencyHigh, 0x093C, 4, Read, kOnce, kAlways, "timestamp tick frequency high") \
    X(TimestampTickFrequencyLow, 0x0940, 4, Read, kOnce, kAlways, "timestamp tick frequency low") \
    X(TimestampControl, 0x0944, 4, Write, kOnce, kAlways, "timestamp control") \
    X(LatchedTimestampHigh, 0x0948, 4, Read, kOnce, kAlways, "latched timestamp high") \
    X(LatchedTimestampLow, 0x094C, 4, Read, kOnce, kAlways, "latched timestamp low") \
    /* Writable with GvcpCapability::kDiscoveryAckDelayWritable only. */ \
    X(DiscoveryAckDelay, 0x0950, 4, ReadWrite, kOnce, IfGvcp(GvcpCapability::kDiscoveryAckDelay), "discovery ack delay") \
    X(GvcpConfiguration, 0x0954, 4, ReadWrite, kOnce, kAlways, "GVCP configuration") \
    X(PendingTimeout, 0x0958, 4, Read, kOnce, IfGvcp(GvcpCapability::kPendingAck), "pending time-out") \
    X(SwitchoverKey, 0x095C, 4, Write, kOnce, IfGvcp(GvcpCapability::kSwitchover), "control switchover key") \
    X(GvspConfiguration, 0x0960, 4, ReadWrite, kOnce, kAlways, "GVSP configuration") \
    X(PhysicalLinkCapability, 0x0964, 4, Read, kOnce, kAlways, "physical link capability") \
    X(PhysicalLinkConfiguration, 0x0968, 4, ReadWrite, kOnce, kAlways, "physical link configuration") \
    X(Ieee1588Status, 0x096C, 4, Read, kOnce, IfGvcp(GvcpCapability::kIeee1588), "IEEE 1588 status") \
    X(ScheduledActionQueueSize, 0x0970, 4, Read, kOnce, IfGvcp(GvcpCapability::kScheduledAction), "scheduled action queue size") \
    X(Ieee1588ExtendedCapabilities, 0x0974, 4, Read, kOnce, IfGvcp(GvcpCapability::kIeee1588Extended), "IEEE 1588 extended capabilities") \
    X(Ieee1588SupportedProfiles, 0x0978, 4, Read, kOnce, IfIeee1588Extended(Ieee1588Extended::kProfiles), "IEEE 1588 supported profiles") \
    X(Ieee1588SelectedProfile, 0x097C, 4, ReadWrite, kOnce, IfIeee1588Extended(Ieee1588Extended::kProfiles), "IEEE 1588 selected profile") \
    X(Ccp, 0x0A00, 4, ReadWrite, kOnce, kAlways, "CCP, control channel privilege") \
    X(PrimaryApplicationPort, 0x0A04, 4, Read, kOnce, IfGvcp(GvcpCapability::kPrimaryApplication), "primary application port") \
    X(PrimaryApplicationIp, 0x0A14, 4, Read, kOnce, IfGvcp(GvcpCapability::kPrimaryApplication), "primary application IP") \
    X(Mcp, 0x0B00, 4, ReadWrite, kOnce, kAlways, "MCP, message channel port") \
    X(Mcda, 0x0B10, 4, ReadWrite, kOnce, kAlways, "MCDA, message channel destination") \
    X(Mctt, 0x0B14, 4, ReadWrite, kOnce, kAlways, "MCTT, message channel transmission time-out") \
    X(Mcrc, 0x0B18, 4, ReadWrite, kOnce, kAlways, "MCRC, message channel retry count") \
    X(Mcsp, 0x0B1C, 4, Read, kOnce, IfMessageChannel(MessageChannelCapability::kMcsp), "MCSP, message channel source port") \
    X(Mccfg, 0x0B20, 4, ReadWrite, kOnce, IfMessageChannel(MessageChannelCapability::kMccfg), "MCCFG, message channel configuration") \
    X(Scp, 0x0D00, 4, ReadWrite, kStreamChannels, kAlways, "SCP, stream channel port") \
    X(Scps, 0x0D04, 4, ReadWrite, kStreamChannels, kAlways, "SCPS, stream channel packet size") \
    X(Scpd, 0x0D08, 4, ReadWrite, kStreamChannels, kAlways, "SCPD, stream channel packet delay") \
    X(Scda, 0x0D18, 4, ReadWrite, kStreamChannels, kAlways, "SCDA, stream channel destination") \
    X(Scsp, 0x0D1C, 4, Read, kStreamChannels, IfGvsp(GvspCapability::kScsp), "SCSP, stream channel source port") \
    X(Scc, 0x0D20, 4, Read, kStreamChannels, kMaybe, "SCC, stream channel capability") \
    X(Sccfg, 0x0D24, 4, ReadWrite, kStreamChannels, kMaybe, "SCCFG, stream channel configuration") \
    X(Scz, 0x0D28, 4, Read, kStreamChannels, kMaybe, "SCZ, stream channel zones") \
    X(Sczd, 0x0D2C, 4, Read, kStreamChannels, kMaybe, "SCZD, stream channel zone directions") \
    X(Scmpc, 0x0D30, 4, ReadWrite, kStreamChannels, IfScc(Scc::kScmpc), "SCMPC, stream channel maximum packet count") \
    X(ScmbsHigh, 0x0D34, 4, Read, kStreamChannels, IfGvsp(GvspCapability::kMaximumBlockSize), "SCMBS, stream channel maximum block size high") \
    X(ScmbsLow, 0x0D38, 4, Read, kStreamChannels, IfGvsp(GvspCapability::kMaximumBlockSize), "SCMBS, stream channel maximum block size low") \
    X(Sceba, 0x0D3C, 4, Read, kStreamChannels, IfGvsp(GvspCapability::kExtendedBootstrapAddress), "SCEBA, stream channel extended bootstrap address") \
    X(ManifestTable, 0x9000, 512, Read, kOnce, IfGvcp(GvcpCapability::kManifestTable), "manifest table") \
    X(ActionGroupKey, 0x9800, 4, ReadWrite, kActionSignals, IfGvcp(GvcpCapability::kAction), "action group key") \
    X(ActionGroupMask, 0x9804, 4, ReadWrite, kActionSignals, IfGvcp(GvcpCapability::kAction), "action group mask")
// clang-format on

// kVersion, kDeviceMode and so on.
#define ZELCTI_REGISTER(identifier, address, size, access, series, presence, name) \
    constexpr Register k##identifier{address, size, Access::access, series, presence, name};
ZELCTI_BOOTSTRAP_REGISTERS(ZELCTI_REGISTER)
#undef ZELCTI_REGISTER

// All of them; no two share a byte.
#define ZELCTI_REGISTER(identifier, address, size, access, series, presence, name) k##identifier,
inline constexpr Register kBootstrapRegisters[] = {ZELCTI_BOOTSTRAP_REGISTERS(ZELCTI_REGISTER)};
#undef ZELCTI_REGISTER

// Devices have their own registers from here on, and some also below.
constexpr uint32_t kBootstrapEnd = 0xA000;

// A byte of a bootstrap register.
struct RegisterPlace {
    const Register* reg;
    uint32_t index;   // within the series
    uint32_t offset;  // within the register
};

// The register to which the byte at the address belongs, as far as bootstrap registers are known.
std::optional<RegisterPlace> FindRegister(uint32_t address);

}  // namespace ZelCti::Gev
