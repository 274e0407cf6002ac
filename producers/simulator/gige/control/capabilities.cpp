#include "producers/simulator/gige/control/capabilities.h"

namespace ZelSim {

namespace Gev = ZelCti::Gev;

namespace {

constexpr uint32_t kVersion20 = 0x00020000;
constexpr uint32_t kVersion21 = 0x00020001;
constexpr uint32_t kVersion22 = 0x00020002;

constexpr uint32_t kGvcp1 =
    Gev::GvcpCapability::kUserDefinedName | Gev::GvcpCapability::kSerialNumber |
    Gev::GvcpCapability::kHeartbeatDisable | Gev::GvcpCapability::kLinkSpeed |
    Gev::GvcpCapability::kPrimaryApplication | Gev::GvcpCapability::kManifestTable |
    Gev::GvcpCapability::kDiscoveryAckDelay | Gev::GvcpCapability::kDiscoveryAckDelayWritable |
    Gev::GvcpCapability::kStatusCodes11 | Gev::GvcpCapability::kSwitchover |
    Gev::GvcpCapability::kUnconditionalAction | Gev::GvcpCapability::kAction |
    Gev::GvcpCapability::kPendingAck | Gev::GvcpCapability::kEventData |
    Gev::GvcpCapability::kEvent | Gev::GvcpCapability::kPacketResend |
    Gev::GvcpCapability::kWriteMem | Gev::GvcpCapability::kConcatenation;
constexpr uint32_t kGvcp2 = Gev::GvcpCapability::kIeee1588 | Gev::GvcpCapability::kStatusCodes20 |
                            Gev::GvcpCapability::kScheduledAction;

constexpr uint32_t kStream20 = Gev::Scc::kAllIn;
constexpr uint32_t kStream21 = Gev::Scc::kMultiPart | Gev::Scc::kLargeLeaderTrailer;
constexpr uint32_t kStream22 = Gev::Scc::kGenDc;

}  // namespace

Capabilities CapabilitiesOf(const NetworkSettings& settings, uint32_t streamCapability) {
    Capabilities all;
    all.gvcp = kGvcp1 | (settings.version >= kVersion20 ? kGvcp2 : 0);
    all.gvsp = Gev::GvspCapability::kScsp | Gev::GvspCapability::kBlockIds16;
    all.messages = Gev::MessageChannelCapability::kMcsp;
    all.stream = streamCapability;
    if (settings.version < kVersion20) all.stream &= ~kStream20;
    if (settings.version < kVersion21) all.stream &= ~kStream21;
    if (settings.version < kVersion22) all.stream &= ~kStream22;
    all.supportedIp = Gev::IpConfiguration::kLla | Gev::IpConfiguration::kDhcp |
                      Gev::IpConfiguration::kPersistentIp;
    all.gvcp &= ~settings.gvcpCapabilitiesOff;
    all.gvsp &= ~settings.gvspCapabilitiesOff;
    all.messages &= ~settings.messageCapabilitiesOff;
    all.stream &= ~settings.streamCapabilitiesOff;
    return all;
}

bool Capabilities::IsPresent(const Gev::Register& reg) const {
    const Gev::Presence& presence = reg.presence;
    if (!presence.optional || presence.mask == 0) return true;
    switch (presence.address) {
        case Gev::kSupportedIpConfiguration.address:
            return (supportedIp & presence.mask) != 0;
        case Gev::kGvspCapability.address:
            return (gvsp & presence.mask) != 0;
        case Gev::kMessageChannelCapability.address:
            return (messages & presence.mask) != 0;
        case Gev::kGvcpCapability.address:
            return (gvcp & presence.mask) != 0;
        case Gev::kScc.address:
            return (stream & presence.mask) != 0;
        default:
            return false;
    }
}

}  // namespace ZelSim
