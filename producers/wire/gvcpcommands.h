// Commands that an application sends to a device.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>

#include "producers/wire/entries.h"
#include "producers/wire/gvcp.h"

namespace ZelCti::Gvcp {

// DISCOVERY has no payload.
size_t EncodeDiscoveryCmd(ByteSpan out, Request request);

// Sets the address of the device that has this MAC address. Address 0 restarts the device's IP
// configuration, and gets no acknowledge.
struct ForceIp {
    uint64_t mac = 0;  // 48 bits
    uint32_t ip = 0;
    uint32_t subnetMask = 0;
    uint32_t defaultGateway = 0;
};
constexpr size_t kForceIpSize = 56;
Result<ForceIp> DecodeForceIp(const Command& command);
size_t EncodeForceIpCmd(ByteSpan out, Request request, const ForceIp& forceIp);

// Asks for packets of a block to be sent again. Normally sent without Flag::kAckRequired.
struct PacketResend {
    bool extendedIds = false;
    uint16_t streamChannel = 0;
    uint64_t blockId = 0;      // 16 bits without extended ids
    uint32_t firstPacket = 0;  // 24 bits without extended ids
    uint32_t lastPacket = 0;   // inclusive; all ones: to the end of the block (from memory)
};
constexpr size_t kPacketResendSize = 12;
constexpr size_t kPacketResendExtendedSize = 20;
// A range that is empty, because its last packet comes before the first, is WrongCount.
Result<PacketResend> DecodePacketResend(const Command& command);
size_t EncodePacketResendCmd(ByteSpan out, Request request, const PacketResend& resend);

// Addresses of registers, or their values.
struct WordForm {
    using Entry = uint32_t;
    static constexpr size_t kSize = 4;
    static uint32_t Read(ByteView bytes) { return bytes.U32(0); }
};
using Words = Entries<WordForm>;

// Several registers only if the device has GvcpCapability::kConcatenation.
constexpr size_t kMaxReadRegCount = kMaxPayloadSize / WordForm::kSize;
Result<Words> DecodeReadReg(const Command& command);
size_t EncodeReadRegCmd(ByteSpan out, Request request, const uint32_t* addresses, size_t count);

struct RegisterWrite {
    uint32_t address;
    uint32_t value;
};
struct RegisterWriteForm {
    using Entry = RegisterWrite;
    static constexpr size_t kSize = 8;
    static RegisterWrite Read(ByteView bytes) { return {bytes.U32(0), bytes.U32(4)}; }
};
using RegisterWrites = Entries<RegisterWriteForm>;

constexpr size_t kMaxWriteRegCount = kMaxPayloadSize / RegisterWriteForm::kSize;
Result<RegisterWrites> DecodeWriteReg(const Command& command);
size_t EncodeWriteRegCmd(ByteSpan out, Request request, const RegisterWrite* writes, size_t count);

// Bytes of memory go with their address, which takes 4 bytes of the payload.
constexpr size_t kMaxMemorySize = kMaxPayloadSize - 4;

struct ReadMem {
    uint32_t address = 0;
    uint16_t count = 0;  // of bytes: a multiple of 4, at most kMaxMemorySize
};
constexpr size_t kReadMemSize = 8;
Result<ReadMem> DecodeReadMem(const Command& command);
size_t EncodeReadMemCmd(ByteSpan out, Request request, const ReadMem& readMem);

// An address and the bytes there: what WRITEMEM writes, and what READMEM has read.
struct Memory {
    uint32_t address = 0;
    ByteView data;
};
Result<Memory> DecodeWriteMem(const Command& command);
size_t EncodeWriteMemCmd(ByteSpan out, Request request, const Memory& memory);

// Lets all devices that know the keys do something at the same time.
struct Action {
    uint32_t deviceKey = 0;
    uint32_t groupKey = 0;
    uint32_t groupMask = 0;
    std::optional<uint64_t> time;  // of a scheduled action, in ticks of the device's clock
};
constexpr size_t kActionSize = 12;
constexpr size_t kScheduledActionSize = 20;
Result<Action> DecodeAction(const Command& command);
size_t EncodeActionCmd(ByteSpan out, Request request, const Action& action);

}  // namespace ZelCti::Gvcp
