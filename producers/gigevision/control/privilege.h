// What a controller does with a camera before it uses it.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "producers/gigevision/control/registerport.h"
#include "producers/sockets/endpoint.h"

namespace ZelGev {

// What a camera says of itself in its bootstrap registers.
struct CameraFacts {
    uint32_t gvcpCapabilities = 0;
    uint32_t messageCapabilities = 0;
    uint32_t numMessageChannels = 0;
    uint32_t numStreams = 0;
    uint64_t tickFrequency = 0;  // 0: unknown

    bool Has(uint32_t gvcpCapability) const { return (gvcpCapabilities & gvcpCapability) != 0; }
};

// Throws GC_ERR_ACCESS_DENIED when somebody has the camera exclusively, and what RegisterPort
// throws.
CameraFacts ReadFacts(RegisterPort& port);

// Writes CCP. Returns false when somebody else has control.
bool TakeControl(RegisterPort& port, uint32_t ccp);

// Who has control; none when nobody has it, or when the camera does not say it.
std::optional<ZelCti::Endpoint> ReadHolder(RegisterPort& port);

// Return false or none when the camera refuses it. Throw when it does not answer.
bool TryWrite(RegisterPort& port, uint32_t address, uint32_t value);
std::optional<uint32_t> TryRead(RegisterPort& port, uint32_t address);

// Makes the camera say that commands take longer, and more of why it refuses others; and ends
// streams and messages that were left by a controller that is gone.
void Prepare(RegisterPort& port, const CameraFacts& facts);

// Sets the heartbeat time-out. Returns that which the camera has then.
Milliseconds SetHeartbeatTimeout(RegisterPort& port, Milliseconds timeout);

}  // namespace ZelGev
