#include "producers/wire/gvcpanswers.h"

#include "producers/wire/bootstrap.h"
#include "producers/wire/byteorder.h"

namespace ZelCti::Gvcp {

namespace {

using Gev::Register;
using Gev::Status;

// A reserved half and a number.
constexpr size_t kIndexSize = 4;

// The two bytes of the MAC address that the register of its high half has are its last ones.
constexpr size_t kDiscoveryMac = Gev::kMacHigh.address + 2;

static_assert(Gev::kUserDefinedName.address + Gev::kUserDefinedName.size == kDiscoverySize,
              "a discovery acknowledge is the memory of the bootstrap registers");

bool IsBareError(const Acknowledge& ack) {
    return IsError(ack.status) && ack.payload.size == 0;
}

std::string_view TextOf(ByteView payload, const Register& reg) {
    return LoadString(payload.Sub(reg.address, reg.size).data, reg.size);
}

void PutText(ByteSpan payload, const Register& reg, std::string_view text) {
    StoreString(payload.From(reg.address).data, reg.size, text);
}

Result<uint16_t> DecodeIndex(const Acknowledge& ack) {
    if (IsBareError(ack)) return uint16_t{0};
    if (ack.payload.size != kIndexSize) return Fault::WrongLength;
    return ack.payload.U16(2);
}

size_t EncodeIndex(ByteSpan out, Status status, Code code, uint16_t ackId, uint16_t index) {
    out.PutU32(kHeaderSize, index);
    return PutAckHeader(out, status, code, ackId, kIndexSize);
}

}  // namespace

size_t EncodeAck(ByteSpan out, Status status, Code command, uint16_t ackId) {
    return PutAckHeader(out, status, AckOf(command), ackId, 0);
}

Result<Discovery> DecodeDiscoveryAck(const Acknowledge& ack) {
    if (IsBareError(ack)) return Discovery{};
    const ByteView payload = ack.payload;
    if (payload.size != kDiscoverySize) return Fault::WrongLength;
    Discovery discovery;
    discovery.versionMajor = payload.U16(Gev::kVersion.address);
    discovery.versionMinor = payload.U16(Gev::kVersion.address + 2);
    discovery.deviceMode = payload.U32(Gev::kDeviceMode.address);
    discovery.mac = payload.U48(kDiscoveryMac);
    discovery.supportedIpConfiguration = payload.U32(Gev::kSupportedIpConfiguration.address);
    discovery.currentIpConfiguration = payload.U32(Gev::kCurrentIpConfiguration.address);
    discovery.currentIp = payload.U32(Gev::kCurrentIp.address);
    discovery.currentSubnetMask = payload.U32(Gev::kCurrentSubnetMask.address);
    discovery.currentDefaultGateway = payload.U32(Gev::kCurrentDefaultGateway.address);
    discovery.manufacturerName = TextOf(payload, Gev::kManufacturerName);
    discovery.modelName = TextOf(payload, Gev::kModelName);
    discovery.deviceVersion = TextOf(payload, Gev::kDeviceVersion);
    discovery.manufacturerInformation = TextOf(payload, Gev::kManufacturerInformation);
    discovery.serialNumber = TextOf(payload, Gev::kSerialNumber);
    discovery.userDefinedName = TextOf(payload, Gev::kUserDefinedName);
    return discovery;
}

size_t EncodeDiscoveryAck(ByteSpan out, uint16_t ackId, const Discovery& discovery) {
    const ByteSpan payload = out.From(kHeaderSize);
    payload.PutZeros(0, kDiscoverySize);
    payload.PutU16(Gev::kVersion.address, discovery.versionMajor);
    payload.PutU16(Gev::kVersion.address + 2, discovery.versionMinor);
    payload.PutU32(Gev::kDeviceMode.address, discovery.deviceMode);
    payload.PutU48(kDiscoveryMac, discovery.mac);
    payload.PutU32(Gev::kSupportedIpConfiguration.address, discovery.supportedIpConfiguration);
    payload.PutU32(Gev::kCurrentIpConfiguration.address, discovery.currentIpConfiguration);
    payload.PutU32(Gev::kCurrentIp.address, discovery.currentIp);
    payload.PutU32(Gev::kCurrentSubnetMask.address, discovery.currentSubnetMask);
    payload.PutU32(Gev::kCurrentDefaultGateway.address, discovery.currentDefaultGateway);
    PutText(payload, Gev::kManufacturerName, discovery.manufacturerName);
    PutText(payload, Gev::kModelName, discovery.modelName);
    PutText(payload, Gev::kDeviceVersion, discovery.deviceVersion);
    PutText(payload, Gev::kManufacturerInformation, discovery.manufacturerInformation);
    PutText(payload, Gev::kSerialNumber, discovery.serialNumber);
    PutText(payload, Gev::kUserDefinedName, discovery.userDefinedName);
    return PutAckHeader(out, Status::Success, Code::DiscoveryAck, ackId, kDiscoverySize);
}

Result<Words> DecodeReadRegAck(const Acknowledge& ack) {
    if (ack.payload.size % WordForm::kSize != 0) return Fault::WrongLength;
    if (ack.payload.size == 0 && !IsError(ack.status)) return Fault::TooShort;
    return Words(ack.payload);
}

size_t EncodeReadRegAck(ByteSpan out, Status status, uint16_t ackId, const uint32_t* values,
                        size_t count) {
    assert(count <= kMaxReadRegCount);
    const ByteSpan payload = out.From(kHeaderSize);
    for (size_t i = 0; i < count; ++i)
        payload.PutU32(i * WordForm::kSize, values[i]);
    return PutAckHeader(out, status, Code::ReadRegAck, ackId, count * WordForm::kSize);
}

Result<uint16_t> DecodeWriteRegAck(const Acknowledge& ack) {
    return DecodeIndex(ack);
}

size_t EncodeWriteRegAck(ByteSpan out, Status status, uint16_t ackId, uint16_t index) {
    return EncodeIndex(out, status, Code::WriteRegAck, ackId, index);
}

Result<Memory> DecodeReadMemAck(const Acknowledge& ack) {
    if (IsBareError(ack)) return Memory{};
    if (ack.payload.size < sizeof(uint32_t)) return Fault::TooShort;
    return Memory{ack.payload.U32(0), ack.payload.From(sizeof(uint32_t))};
}

size_t EncodeReadMemAck(ByteSpan out, uint16_t ackId, const Memory& memory) {
    assert(memory.data.size <= kMaxMemorySize);
    const ByteSpan payload = out.From(kHeaderSize);
    payload.PutU32(0, memory.address);
    payload.PutBytes(sizeof(uint32_t), memory.data);
    return PutAckHeader(out, Status::Success, Code::ReadMemAck, ackId,
                        sizeof(uint32_t) + memory.data.size);
}

Result<uint16_t> DecodeWriteMemAck(const Acknowledge& ack) {
    return DecodeIndex(ack);
}

size_t EncodeWriteMemAck(ByteSpan out, Status status, uint16_t ackId, uint16_t index) {
    return EncodeIndex(out, status, Code::WriteMemAck, ackId, index);
}

Result<uint16_t> DecodePendingAck(const Acknowledge& ack) {
    return DecodeIndex(ack);
}

size_t EncodePendingAck(ByteSpan out, uint16_t ackId, uint16_t milliseconds) {
    return EncodeIndex(out, Status::Success, Code::PendingAck, ackId, milliseconds);
}

}  // namespace ZelCti::Gvcp
