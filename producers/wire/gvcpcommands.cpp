#include "producers/wire/gvcpcommands.h"

namespace ZelCti::Gvcp {

namespace {

constexpr uint32_t kPacketIdMask = 0xFFFFFF;

constexpr size_t kForceIpMac = 2;
constexpr size_t kForceIpAddress = 20;
constexpr size_t kForceIpSubnetMask = 36;
constexpr size_t kForceIpDefaultGateway = 52;

Request With(Request request, uint8_t flag) {
    request.flags |= flag;
    return request;
}

// For payloads that are a list of entries.
template <typename Form>
Result<Entries<Form>> DecodeEntries(ByteView payload) {
    if (payload.size % WordForm::kSize != 0) return Fault::Misaligned;
    if (payload.size == 0 || payload.size > kMaxPayloadSize) return Fault::WrongCount;
    if (payload.size % Form::kSize != 0) return Fault::WrongLength;
    return Entries<Form>(payload);
}

PacketResend ReadPacketResend(ByteView payload) {
    return {false, payload.U16(0), payload.U16(2), payload.U32(4) & kPacketIdMask,
            payload.U32(8) & kPacketIdMask};
}

PacketResend ReadExtendedPacketResend(ByteView payload) {
    return {true, payload.U16(0), payload.U64(12), payload.U32(4), payload.U32(8)};
}

}  // namespace

size_t EncodeDiscoveryCmd(ByteSpan out, Request request) {
    return PutCommandHeader(out, Code::DiscoveryCmd, request, 0);
}

Result<ForceIp> DecodeForceIp(const Command& command) {
    const ByteView payload = command.payload;
    if (payload.size != kForceIpSize) return Fault::WrongLength;
    return ForceIp{payload.U48(kForceIpMac), payload.U32(kForceIpAddress),
                   payload.U32(kForceIpSubnetMask), payload.U32(kForceIpDefaultGateway)};
}

size_t EncodeForceIpCmd(ByteSpan out, Request request, const ForceIp& forceIp) {
    const ByteSpan payload = out.From(kHeaderSize);
    payload.PutZeros(0, kForceIpSize);
    payload.PutU48(kForceIpMac, forceIp.mac);
    payload.PutU32(kForceIpAddress, forceIp.ip);
    payload.PutU32(kForceIpSubnetMask, forceIp.subnetMask);
    payload.PutU32(kForceIpDefaultGateway, forceIp.defaultGateway);
    return PutCommandHeader(out, Code::ForceIpCmd, request, kForceIpSize);
}

Result<PacketResend> DecodePacketResend(const Command& command) {
    const ByteView payload = command.payload;
    const bool extended = command.Has(Flag::kExtendedIds);
    if (payload.size != (extended ? kPacketResendExtendedSize : kPacketResendSize))
        return Fault::WrongLength;
    const PacketResend resend =
        extended ? ReadExtendedPacketResend(payload) : ReadPacketResend(payload);
    if (resend.firstPacket > resend.lastPacket) return Fault::WrongCount;
    return resend;
}

size_t EncodePacketResendCmd(ByteSpan out, Request request, const PacketResend& resend) {
    const ByteSpan payload = out.From(kHeaderSize);
    payload.PutU16(0, resend.streamChannel);
    if (resend.extendedIds) {
        payload.PutU16(2, 0);
        payload.PutU32(4, resend.firstPacket);
        payload.PutU32(8, resend.lastPacket);
        payload.PutU64(12, resend.blockId);
        return PutCommandHeader(out, Code::PacketResendCmd, With(request, Flag::kExtendedIds),
                                kPacketResendExtendedSize);
    }
    payload.PutU16(2, resend.blockId);
    payload.PutU32(4, resend.firstPacket & kPacketIdMask);
    payload.PutU32(8, resend.lastPacket & kPacketIdMask);
    return PutCommandHeader(out, Code::PacketResendCmd, request, kPacketResendSize);
}

Result<Words> DecodeReadReg(const Command& command) {
    return DecodeEntries<WordForm>(command.payload);
}

size_t EncodeReadRegCmd(ByteSpan out, Request request, const uint32_t* addresses, size_t count) {
    assert(count <= kMaxReadRegCount);
    const ByteSpan payload = out.From(kHeaderSize);
    for (size_t i = 0; i < count; ++i)
        payload.PutU32(i * WordForm::kSize, addresses[i]);
    return PutCommandHeader(out, Code::ReadRegCmd, request, count * WordForm::kSize);
}

Result<RegisterWrites> DecodeWriteReg(const Command& command) {
    return DecodeEntries<RegisterWriteForm>(command.payload);
}

size_t EncodeWriteRegCmd(ByteSpan out, Request request, const RegisterWrite* writes, size_t count) {
    assert(count <= kMaxWriteRegCount);
    const ByteSpan payload = out.From(kHeaderSize);
    for (size_t i = 0; i < count; ++i) {
        payload.PutU32(i * RegisterWriteForm::kSize, writes[i].address);
        payload.PutU32(i * RegisterWriteForm::kSize + 4, writes[i].value);
    }
    return PutCommandHeader(out, Code::WriteRegCmd, request, count * RegisterWriteForm::kSize);
}

Result<ReadMem> DecodeReadMem(const Command& command) {
    const ByteView payload = command.payload;
    if (payload.size != kReadMemSize) return Fault::WrongLength;
    const ReadMem readMem{payload.U32(0), payload.U16(6)};
    if (readMem.count % WordForm::kSize != 0) return Fault::Misaligned;
    if (readMem.count == 0 || readMem.count > kMaxMemorySize) return Fault::WrongCount;
    return readMem;
}

size_t EncodeReadMemCmd(ByteSpan out, Request request, const ReadMem& readMem) {
    const ByteSpan payload = out.From(kHeaderSize);
    payload.PutU32(0, readMem.address);
    payload.PutU16(4, 0);
    payload.PutU16(6, readMem.count);
    return PutCommandHeader(out, Code::ReadMemCmd, request, kReadMemSize);
}

Result<Memory> DecodeWriteMem(const Command& command) {
    const ByteView payload = command.payload;
    if (payload.size < sizeof(uint32_t)) return Fault::TooShort;
    const Memory memory{payload.U32(0), payload.From(sizeof(uint32_t))};
    if (memory.data.size % WordForm::kSize != 0) return Fault::Misaligned;
    if (memory.data.size == 0 || memory.data.size > kMaxMemorySize) return Fault::WrongCount;
    return memory;
}

size_t EncodeWriteMemCmd(ByteSpan out, Request request, const Memory& memory) {
    assert(memory.data.size <= kMaxMemorySize);
    const ByteSpan payload = out.From(kHeaderSize);
    payload.PutU32(0, memory.address);
    payload.PutBytes(sizeof(uint32_t), memory.data);
    return PutCommandHeader(out, Code::WriteMemCmd, request, sizeof(uint32_t) + memory.data.size);
}

Result<Action> DecodeAction(const Command& command) {
    const ByteView payload = command.payload;
    const bool scheduled = command.Has(Flag::kScheduled);
    if (payload.size != (scheduled ? kScheduledActionSize : kActionSize)) return Fault::WrongLength;
    Action action{payload.U32(0), payload.U32(4), payload.U32(8), {}};
    if (scheduled) action.time = payload.U64(kActionSize);
    return action;
}

size_t EncodeActionCmd(ByteSpan out, Request request, const Action& action) {
    const ByteSpan payload = out.From(kHeaderSize);
    payload.PutU32(0, action.deviceKey);
    payload.PutU32(4, action.groupKey);
    payload.PutU32(8, action.groupMask);
    if (!action.time) return PutCommandHeader(out, Code::ActionCmd, request, kActionSize);
    payload.PutU64(kActionSize, *action.time);
    return PutCommandHeader(out, Code::ActionCmd, With(request, Flag::kScheduled),
                            kScheduledActionSize);
}

}  // namespace ZelCti::Gvcp
