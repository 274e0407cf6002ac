#include "producers/wire/gvspleader.h"

#include <algorithm>

namespace ZelCti::Gvsp {

namespace {

constexpr uint8_t kZonesMask = 0x1F;
constexpr uint8_t kConstraintMask = 0xF0;

Geometry DecodeGeometry(ByteView bytes) {
    return {bytes.U32(0), bytes.U32(4), bytes.U32(8), bytes.U32(12), bytes.U16(16), bytes.U16(18)};
}

void EncodeGeometry(ByteSpan out, const Geometry& geometry) {
    out.PutU32(0, geometry.sizeX);
    out.PutU32(4, geometry.sizeY);
    out.PutU32(8, geometry.offsetX);
    out.PutU32(12, geometry.offsetY);
    out.PutU16(16, geometry.paddingX);
    out.PutU16(18, geometry.paddingY);
}

// One of these for each form of leader: the bytes that it needs, how it is read and written.
// Reading starts when there are that many bytes.

size_t BodySize(const ImageLeader&) {
    return kImageLeaderSize;
}
size_t BodySize(const RawLeader&) {
    return kRawLeaderSize;
}
size_t BodySize(const FileLeader& file) {
    return kFileLeaderSize + file.name.size() + 1;
}
size_t BodySize(const ChunkDataLeader&) {
    return kChunkDataLeaderSize;
}
size_t BodySize(const JpegLeader&) {
    return kJpegLeaderSize;
}
size_t BodySize(const H264Leader&) {
    return kH264LeaderSize;
}
size_t BodySize(const MultiZoneLeader&) {
    return kMultiZoneLeaderSize;
}
size_t BodySize(const MultiPartLeader& body) {
    return MultiPartLeaderSize(body.parts.size());
}
size_t BodySize(const GenDcLeader&) {
    return kGenDcLeaderSize;
}

void EncodeBody(ByteSpan out, const ImageLeader& image) {
    out.PutU32(12, image.pixelFormat);
    EncodeGeometry(out.From(16), image.geometry);
}

void EncodeBody(ByteSpan out, const RawLeader& raw) {
    out.PutU64(12, raw.payloadSize);
}

void EncodeBody(ByteSpan out, const FileLeader& file) {
    out.PutU64(12, file.payloadSize);
    for (size_t i = 0; i < file.name.size(); ++i)
        out.PutU8(kFileLeaderSize + i, static_cast<uint8_t>(file.name[i]));
}

void EncodeBody(ByteSpan, const ChunkDataLeader&) {}

void EncodeBody(ByteSpan out, const JpegLeader& jpeg) {
    out.PutU64(12, jpeg.payloadSize);
    out.PutU64(20, jpeg.tickFrequency);
    out.PutU32(28, jpeg.dataFormat);
}

void EncodeBody(ByteSpan out, const H264Leader& h264) {
    out.PutU64(4, h264.payloadSize);
    out.PutU8(13, h264.packetizationMode);
    out.PutU16(14, h264.packetSize);
    out.PutU8(17, h264.profileIdc);
    out.PutU8(18, h264.constraintFlags & kConstraintMask);
    out.PutU8(19, h264.levelIdc);
    out.PutU16(20, h264.interleavingDepth);
    out.PutU16(22, h264.maxDonDifference);
    out.PutU32(24, h264.deinterleavingBuffer);
    out.PutU32(28, h264.initialBufferingTime);
}

void EncodeBody(ByteSpan out, const MultiZoneLeader& zones) {
    out.PutU32(12, zones.zoneDirections);
    out.PutU32(16, zones.pixelFormat);
    EncodeGeometry(out.From(20), zones.geometry);
}

void EncodeBody(ByteSpan out, const MultiPartLeader& body) {
    size_t size = kLeaderCommonSize;
    for (const PartDescription& part : body.parts) {
        EncodePart(out.From(size), part);
        size += PartDescriptionForm::kSize;
    }
}

void EncodeBody(ByteSpan out, const GenDcLeader& genDc) {
    out.PutU64(12, genDc.payloadSize);
    out.PutU8(20, genDc.flags);
    out.PutU32(24, genDc.descriptorSize);
}

void DecodeBody(ByteView bytes, ImageLeader& image) {
    image.pixelFormat = bytes.U32(12);
    image.geometry = DecodeGeometry(bytes.From(16));
}

void DecodeBody(ByteView bytes, RawLeader& raw) {
    raw.payloadSize = bytes.U64(12);
}

void DecodeBody(ByteView bytes, FileLeader& file) {
    file.payloadSize = bytes.U64(12);
    const ByteView rest = bytes.From(kFileLeaderSize);
    const uint8_t* end = std::find(rest.data, rest.data + rest.size, uint8_t{0});
    file.name = {reinterpret_cast<const char*>(rest.data), static_cast<size_t>(end - rest.data)};
}

void DecodeBody(ByteView, ChunkDataLeader&) {}

void DecodeBody(ByteView bytes, JpegLeader& jpeg) {
    jpeg.payloadSize = bytes.U64(12);
    jpeg.tickFrequency = bytes.U64(20);
    jpeg.dataFormat = bytes.U32(28);
}

void DecodeBody(ByteView bytes, H264Leader& h264) {
    h264.payloadSize = bytes.U64(4);
    h264.packetizationMode = bytes.U8(13);
    h264.packetSize = bytes.U16(14);
    h264.profileIdc = bytes.U8(17);
    h264.constraintFlags = bytes.U8(18) & kConstraintMask;
    h264.levelIdc = bytes.U8(19);
    h264.interleavingDepth = bytes.U16(20);
    h264.maxDonDifference = bytes.U16(22);
    h264.deinterleavingBuffer = bytes.U32(24);
    h264.initialBufferingTime = bytes.U32(28);
}

void DecodeBody(ByteView bytes, MultiZoneLeader& zones) {
    zones.zoneDirections = bytes.U32(12);
    zones.pixelFormat = bytes.U32(16);
    zones.geometry = DecodeGeometry(bytes.From(20));
}

void DecodeBody(ByteView bytes, GenDcLeader& genDc) {
    genDc.payloadSize = bytes.U64(12);
    genDc.flags = bytes.U8(20);
    genDc.descriptorSize = bytes.U32(24);
}

Leader DecodeCommon(ByteView bytes) {
    Leader leader;
    leader.fieldId = bytes.U8(0) >> 4;
    leader.fieldCount = bytes.U8(0) & 0x0F;
    leader.genericFlags = bytes.U8(1);
    leader.payloadType = bytes.U16(2);
    leader.timestamp = bytes.U64(4);
    return leader;
}

template <typename Body>
Result<Leader> DecodeAs(Leader leader, ByteView bytes, size_t size) {
    if (bytes.size < size) return Fault::TooShort;
    Body body;
    DecodeBody(bytes, body);
    leader.body = body;
    return leader;
}

Result<Leader> DecodeMultiPart(Leader leader, const Packet& packet) {
    // The other header has the packet id where the number of parts stands.
    if (!packet.header.extended) return Fault::UnknownPayloadType;
    const size_t size = MultiPartLeaderSize(packet.header.count);
    if (packet.content.size < size) return Fault::TooShort;
    const ByteView parts = packet.content.Sub(kLeaderCommonSize, size - kLeaderCommonSize);
    leader.body = MultiPartLeader{Entries<PartDescriptionForm>(parts)};
    return leader;
}

bool HasGeometry(uint16_t dataType) {
    return dataType >= static_cast<uint16_t>(PartType::Image2D) &&
           dataType <= static_cast<uint16_t>(PartType::ConfidenceMap);
}

bool IsJpeg(uint16_t dataType) {
    return dataType == static_cast<uint16_t>(PartType::Jpeg) ||
           dataType == static_cast<uint16_t>(PartType::Jpeg2000);
}

void EncodeDetails(ByteSpan, std::monostate) {}
void EncodeDetails(ByteSpan out, const Geometry& geometry) {
    EncodeGeometry(out.From(24), geometry);
}
void EncodeDetails(ByteSpan out, const PartJpeg& jpeg) {
    out.PutU8(24, jpeg.genericFlags);
    out.PutU64(28, jpeg.tickFrequency);
    out.PutU32(36, jpeg.dataFormat);
}

}  // namespace

PartDescription PartDescriptionForm::Read(ByteView bytes) {
    PartDescription part;
    part.dataType = bytes.U16(0);
    part.length = bytes.U48(2);
    part.pixelFormat = bytes.U32(8);
    part.sourceId = bytes.U8(14);
    part.additionalZones = bytes.U8(15) & kZonesMask;
    part.zoneDirections = bytes.U32(16);
    part.dataPurposeId = bytes.U16(20);
    part.regionId = bytes.U16(22);
    if (HasGeometry(part.dataType))
        part.details = DecodeGeometry(bytes.From(24));
    else if (IsJpeg(part.dataType))
        part.details = PartJpeg{bytes.U8(24), bytes.U64(28), bytes.U32(36)};
    return part;
}

void EncodePart(ByteSpan out, const PartDescription& part) {
    out.PutZeros(0, PartDescriptionForm::kSize);
    out.PutU16(0, part.dataType);
    out.PutU48(2, part.length);
    out.PutU32(8, part.pixelFormat);
    out.PutU8(14, part.sourceId);
    out.PutU8(15, part.additionalZones & kZonesMask);
    out.PutU32(16, part.zoneDirections);
    out.PutU16(20, part.dataPurposeId);
    out.PutU16(22, part.regionId);
    std::visit([&](const auto& details) { EncodeDetails(out, details); }, part.details);
}

Result<Leader> DecodeLeader(const Packet& packet) {
    const ByteView bytes = packet.content;
    if (bytes.size < kLeaderCommonSize) return Fault::TooShort;
    const Leader leader = DecodeCommon(bytes);
    switch (BaseType(leader.payloadType)) {
        case PayloadType::Image:
        case PayloadType::ExtendedChunk:
            return DecodeAs<ImageLeader>(leader, bytes, kImageLeaderSize);
        case PayloadType::Raw:
            return DecodeAs<RawLeader>(leader, bytes, kRawLeaderSize);
        case PayloadType::File:
            return DecodeAs<FileLeader>(leader, bytes, kFileLeaderSize);
        case PayloadType::ChunkData:
            return DecodeAs<ChunkDataLeader>(leader, bytes, kChunkDataLeaderSize);
        case PayloadType::Jpeg:
        case PayloadType::Jpeg2000:
            return DecodeAs<JpegLeader>(leader, bytes, kJpegLeaderSize);
        case PayloadType::H264: {
            Leader h264 = leader;
            h264.timestamp = 0;
            return DecodeAs<H264Leader>(h264, bytes, kH264LeaderSize);
        }
        case PayloadType::MultiZone:
            return DecodeAs<MultiZoneLeader>(leader, bytes, kMultiZoneLeaderSize);
        case PayloadType::MultiPart:
            return DecodeMultiPart(leader, packet);
        case PayloadType::GenDc:
            return DecodeAs<GenDcLeader>(leader, bytes, kGenDcLeaderSize);
    }
    return Fault::UnknownPayloadType;
}

size_t LeaderSize(const Leader& leader) {
    return std::visit([](const auto& body) { return BodySize(body); }, leader.body);
}

size_t EncodeLeader(ByteSpan out, const Leader& leader) {
    const size_t size = LeaderSize(leader);
    out.PutZeros(0, size);
    out.PutU8(0, static_cast<unsigned>(leader.fieldId) << 4 | (leader.fieldCount & 0x0FU));
    out.PutU8(1, leader.genericFlags);
    out.PutU16(2, leader.payloadType);
    out.PutU64(4, leader.timestamp);
    std::visit([&](const auto& body) { EncodeBody(out, body); }, leader.body);
    return size;
}

}  // namespace ZelCti::Gvsp
