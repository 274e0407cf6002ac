#include "producers/simulator/gige/control/devicecommands.h"

#include "producers/wire/bootstrap.h"
#include "producers/wire/gvcpanswers.h"

namespace ZelSim {

namespace Gev = ZelCti::Gev;
namespace Gvcp = ZelCti::Gvcp;
using ZelCti::ByteSpan;
using ZelCti::Endpoint;
using ZelCti::IpSettings;

namespace {

constexpr uint32_t kBroadcastAddress = 0xFFFFFFFF;
constexpr uint32_t kFirstMulticast = 0xE0000000;  // and no host is above

bool IsContiguous(uint32_t mask) {
    const uint32_t hosts = ~mask;
    return (hosts & (hosts + 1)) == 0;
}

Endpoint ReturnAddress(const Gvcp::Command& command, const Endpoint& from) {
    const bool mayBroadcast = command.Has(Gvcp::Flag::kBroadcastAck);
    return mayBroadcast ? Endpoint{kBroadcastAddress, from.port} : from;
}

}  // namespace

// Splitmix: cameras with different MAC addresses answer at different times.
std::chrono::milliseconds DeviceCommands::DiscoveryDelay() {
    const uint32_t longest = bootstrap_.Settings().discoveryDelay;
    random_ += 0x9E3779B97F4A7C15U;
    uint64_t mixed = random_ ^ hardware_.Settings()->mac;
    mixed = (mixed ^ mixed >> 30) * 0xBF58476D1CE4E5B9U;
    mixed = (mixed ^ mixed >> 27) * 0x94D049BB133111EBU;
    return std::chrono::milliseconds((mixed >> 32) % (uint64_t{longest} + 1));
}

std::optional<AddressedAnswer> DeviceCommands::Discover(const Command& command,
                                                        const Endpoint& from, bool broadcast) {
    if (command.payload.size != 0) return std::nullopt;
    AddressedAnswer result{from, {}, {}};
    const IpSettings ip = hardware_.Settings()->ip;
    if (broadcast && ((from.address ^ ip.address) & ip.mask) != 0) {
        if (!command.Has(Gvcp::Flag::kBroadcastAck)) return std::nullopt;
        result.to = ReturnAddress(command, from);
    }
    if (broadcast) result.delay = DiscoveryDelay();
    // The payload is the memory of the bootstrap registers, with zeros for those that are missing.
    const ByteSpan space = result.answer.Space();
    const ByteSpan payload = space.From(Gvcp::kHeaderSize);
    port_.Read(0, payload.data, Gvcp::kDiscoverySize);
    for (const Gev::Register* const reg : {&Gev::kSerialNumber, &Gev::kUserDefinedName})
        if (!bootstrap_.Can().IsPresent(*reg)) payload.PutZeros(reg->address, reg->size);
    result.answer.size = Gvcp::PutAckHeader(space, Gev::Status::Success, Gvcp::Code::DiscoveryAck,
                                            command.requestId, Gvcp::kDiscoverySize);
    return result;
}

std::optional<AddressedAnswer> DeviceCommands::ForceIp(const Command& command,
                                                       const Endpoint& from) {
    const auto forceIp = Gvcp::DecodeForceIp(command);
    if (!forceIp || forceIp->mac != hardware_.Settings()->mac) return std::nullopt;
    const bool isValid = forceIp->ip < kFirstMulticast && IsContiguous(forceIp->subnetMask);
    if (isValid) hardware_.ForceIp({forceIp->ip, forceIp->subnetMask, forceIp->defaultGateway});
    if (forceIp->ip == 0 || !command.Has(Gvcp::Flag::kAckRequired)) return std::nullopt;
    AddressedAnswer result{ReturnAddress(command, from), {}, {}};
    const auto status = isValid ? Gev::Status::Success : Gev::Status::InvalidParameter;
    result.answer.size =
        Gvcp::EncodeAck(result.answer.Space(), status, command.code, command.requestId);
    return result;
}

}  // namespace ZelSim
