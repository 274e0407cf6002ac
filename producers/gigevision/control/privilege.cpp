#include "producers/gigevision/control/privilege.h"

#include <algorithm>

#include "producers/server/base/error.h"
#include "producers/wire/bootstrap.h"

namespace ZelGev {

namespace Gev = ZelCti::Gev;
namespace Capability = ZelCti::Gev::GvcpCapability;
using ZelCti::Endpoint;
using ZelCti::Error;

namespace {

bool IsSilence(const Error& error) {
    return error.Code() == GenTL::GC_ERR_IO || error.Code() == GenTL::GC_ERR_TIMEOUT;
}

// A register that older cameras do not have.
uint32_t ReadOptional(RegisterPort& port, const Gev::Register& reg) {
    try {
        return port.ReadRegister(reg.address);
    } catch (const Error& error) {
        if (error.Code() != GenTL::GC_ERR_INVALID_ADDRESS &&
            error.Code() != GenTL::GC_ERR_NOT_IMPLEMENTED)
            throw;
        return 0;
    }
}

// Cameras were seen that have the number in the high word.
uint64_t ReadTickFrequency(RegisterPort& port) {
    const uint64_t high = ReadOptional(port, Gev::kTimestampTickFrequencyHigh);
    const uint64_t low = ReadOptional(port, Gev::kTimestampTickFrequencyLow);
    return low == 0 ? high : high << 32U | low;
}

}  // namespace

CameraFacts ReadFacts(RegisterPort& port) {
    CameraFacts facts;
    facts.gvcpCapabilities = ReadOptional(port, Gev::kGvcpCapability);
    facts.messageCapabilities = ReadOptional(port, Gev::kMessageChannelCapability);
    facts.numMessageChannels = ReadOptional(port, Gev::kNumberOfMessageChannels);
    facts.numStreams = std::min<uint32_t>(ReadOptional(port, Gev::kNumberOfStreamChannels),
                                          Gev::kStreamChannels.limit);
    facts.tickFrequency = ReadTickFrequency(port);
    return facts;
}

bool TakeControl(RegisterPort& port, uint32_t ccp) {
    try {
        port.WriteRegister(Gev::kCcp.address, ccp);
        return true;
    } catch (const Error& error) {
        if (error.Code() != GenTL::GC_ERR_ACCESS_DENIED) throw;
        return false;
    }
}

bool TryWrite(RegisterPort& port, uint32_t address, uint32_t value) {
    try {
        port.WriteRegister(address, value);
        return true;
    } catch (const Error& error) {
        if (IsSilence(error)) throw;
        return false;
    }
}

std::optional<uint32_t> TryRead(RegisterPort& port, uint32_t address) {
    try {
        return port.ReadRegister(address);
    } catch (const Error& error) {
        if (IsSilence(error)) throw;
        return std::nullopt;
    }
}

std::optional<Endpoint> ReadHolder(RegisterPort& port) {
    try {
        const uint32_t capabilities = port.ReadRegister(Gev::kGvcpCapability.address);
        if ((capabilities & Capability::kPrimaryApplication) == 0) return std::nullopt;
        const Endpoint holder{
            port.ReadRegister(Gev::kPrimaryApplicationIp.address),
            static_cast<uint16_t>(port.ReadRegister(Gev::kPrimaryApplicationPort.address))};
        if (holder.port != 0) return holder;
    } catch (const Error& error) {
        if (error.Code() == GenTL::GC_ERR_IO || error.Code() == GenTL::GC_ERR_TIMEOUT) throw;
    }
    return std::nullopt;
}

void Prepare(RegisterPort& port, const CameraFacts& facts) {
    namespace Configuration = Gev::GvcpConfiguration;
    uint32_t wanted = 0;
    if (facts.Has(Capability::kPendingAck)) wanted |= Configuration::kPendingAck;
    if (facts.Has(Capability::kStatusCodes11)) wanted |= Configuration::kStatusCodes11;
    if (facts.Has(Capability::kStatusCodes20)) wanted |= Configuration::kStatusCodes20;
    const uint32_t present = ReadOptional(port, Gev::kGvcpConfiguration);
    // A predecessor may have switched the heartbeat off, so that the camera would never be free.
    const uint32_t configuration = (present | wanted) & ~Configuration::kHeartbeatDisable;
    if (configuration != present) TryWrite(port, Gev::kGvcpConfiguration.address, configuration);
    for (uint32_t i = 0; i < facts.numStreams; ++i)
        TryWrite(port, Gev::kScp.At(i), 0);
    if (facts.numMessageChannels != 0) TryWrite(port, Gev::kMcp.address, 0);
}

Milliseconds SetHeartbeatTimeout(RegisterPort& port, Milliseconds timeout) {
    TryWrite(port, Gev::kHeartbeatTimeout.address, static_cast<uint32_t>(timeout.count()));
    const Milliseconds actual{port.ReadRegister(Gev::kHeartbeatTimeout.address)};
    return actual.count() != 0 ? actual : timeout;
}

}  // namespace ZelGev
