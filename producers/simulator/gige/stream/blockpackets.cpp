#include "producers/simulator/gige/stream/blockpackets.h"

#include <algorithm>
#include <cassert>

#include "producers/wire/chunktrailer.h"

namespace ZelSim {

const std::array<uint8_t, kMaxPacketSize> kZeroBytes{};

namespace Gvsp = ZelCti::Gvsp;

using ZelCti::ByteSpan;
using ZelCti::ByteView;
using ZelCti::FrameInfo;

namespace {

constexpr uint64_t kHighestTimestampBit = uint64_t{1} << 63;
constexpr size_t kChunkAlignment = 4;  // of the data of a chunk, filled up with zeros

Gvsp::Geometry GeometryOf(const FrameInfo& frame) {
    Gvsp::Geometry geometry;
    geometry.sizeX = static_cast<uint32_t>(frame.width);
    geometry.sizeY = static_cast<uint32_t>(frame.height);
    geometry.offsetX = static_cast<uint32_t>(frame.offsetX);
    geometry.offsetY = static_cast<uint32_t>(frame.offsetY);
    geometry.paddingX = static_cast<uint16_t>(frame.xPadding);
    geometry.paddingY = static_cast<uint16_t>(frame.yPadding);
    return geometry;
}

// Of a frame with parts that is not sent as such, only the first part is: an image.
bool HasChunks(const FrameInfo& frame) {
    return frame.chunkOrder && frame.parts.empty();
}

uint16_t PayloadTypeOf(const FrameInfo& frame, BlockForm::Chunks chunks) {
    if (!HasChunks(frame)) return static_cast<uint16_t>(Gvsp::PayloadType::Image);
    switch (chunks) {
        case BlockForm::Chunks::ChunkData:
            return static_cast<uint16_t>(Gvsp::PayloadType::ChunkData);
        case BlockForm::Chunks::Extended:
            return static_cast<uint16_t>(Gvsp::PayloadType::ExtendedChunk);
        default:
            return Gvsp::WithChunks(Gvsp::PayloadType::Image);
    }
}

uint64_t TimestampOf(const FrameInfo& frame, const BlockForm& form) {
    return frame.timestamp | (form.timestampAbove63Bits ? kHighestTimestampBit : 0);
}

// The bytes of so many lines of the image, with the padding of each.
size_t BytesOfLines(const FrameInfo& frame, size_t numLines) {
    Gvsp::Geometry geometry = GeometryOf(frame);
    geometry.sizeY = static_cast<uint32_t>(numLines);
    geometry.paddingY = 0;
    return static_cast<size_t>(
        Gvsp::ImageSize(static_cast<uint32_t>(frame.pixelFormat), geometry).value_or(0));
}

// The image of a frame, without what comes before it and behind it. A frame that was torn has
// fewer lines.
ByteView ImageOf(const FrameInfo& frame, ByteView payload) {
    const size_t offset = std::min(frame.imageOffset, frame.sizeFilled);
    const size_t whole = BytesOfLines(frame, frame.deliveredHeight) +
                         (frame.deliveredHeight == frame.height ? frame.yPadding : 0);
    return payload.Sub(offset, std::min(whole, frame.sizeFilled - offset));
}

// The chunks behind that of the image; empty without any.
ByteView ChunksBehindImage(const FrameInfo& frame, ByteView payload) {
    if (!HasChunks(frame)) return {};
    const size_t image = frame.imageOffset + BytesOfLines(frame, frame.height) + frame.yPadding;
    const size_t filled = (image + kChunkAlignment - 1) / kChunkAlignment * kChunkAlignment;
    const size_t begin = std::min(filled + ZelCti::kChunkTrailerSize, frame.sizeFilled);
    return payload.Sub(begin, frame.sizeFilled - begin);
}

// A part of a block as it is described and sent.
struct SentPart {
    Gvsp::PartDescription description;
    ByteView data;
    uint32_t lines = 0;
};
using SentParts = std::array<SentPart, BlockPackets::kMaxParts>;

// The image is a part, and the other chunks are one, if there are any. Returns how many.
size_t PartsOfImage(const FrameInfo& frame, ByteView payload, SentParts& parts) {
    parts[0].data = ImageOf(frame, payload);
    parts[0].lines = static_cast<uint32_t>(frame.deliveredHeight);
    parts[0].description.dataType = static_cast<uint16_t>(Gvsp::PartType::Image2D);
    parts[0].description.pixelFormat = static_cast<uint32_t>(frame.pixelFormat);
    parts[0].description.dataPurposeId = 1;  // an intensity
    parts[0].description.details = GeometryOf(frame);
    parts[1].data = ChunksBehindImage(frame, payload);
    parts[1].description.dataType = static_cast<uint16_t>(Gvsp::PartType::ChunkData);
    return parts[1].data.size == 0 ? 1 : 2;
}

// GenTL has the same numbers for images; what it has no number for is one of its custom types.
SentPart SentPartOf(const ZelCti::FramePart& part, const FrameInfo& frame, ByteView payload) {
    const bool isImage = part.type < GenTL::PART_DATATYPE_CUSTOM_ID;
    SentPart sent;
    sent.data = payload.Sub(part.offset, part.dataSize);
    sent.description.dataType =
        static_cast<uint16_t>(isImage ? part.type : part.type - GenTL::PART_DATATYPE_CUSTOM_ID);
    sent.description.pixelFormat = static_cast<uint32_t>(part.format);
    sent.description.sourceId = static_cast<uint8_t>(part.sourceId);
    sent.description.regionId = static_cast<uint16_t>(part.regionId);
    sent.description.dataPurposeId = static_cast<uint16_t>(part.purposeId);
    if (!isImage) return sent;
    Gvsp::Geometry geometry = GeometryOf(frame);
    geometry.sizeX = static_cast<uint32_t>(part.width);
    geometry.sizeY = static_cast<uint32_t>(part.height);
    sent.description.details = geometry;
    sent.lines = static_cast<uint32_t>(part.deliveredHeight);
    return sent;
}

size_t PartsOf(const FrameInfo& frame, ByteView payload, SentParts& parts) {
    if (frame.parts.empty()) return PartsOfImage(frame, payload, parts);
    assert(frame.parts.size() <= parts.size());
    std::transform(frame.parts.begin(), frame.parts.end(), parts.begin(),
                   [&](const ZelCti::FramePart& part) { return SentPartOf(part, frame, payload); });
    return frame.parts.size();
}

}  // namespace

BlockPackets::BlockPackets(const FrameInfo& frame, ByteView payload, uint64_t blockId,
                           const BlockForm& form)
    : form_(form), blockId_(blockId) {
    assert(form.packetSize >= kMinPacketSize && form.packetSize <= kMaxPacketSize);
    form_.genDc = form.genDc && form.extendedIds && frame.payloadType == GenTL::PAYLOAD_TYPE_GENDC;
    form_.multiPart = form.multiPart && form.extendedIds && !form_.genDc;
    if (form_.genDc) {
        DescribeGenDc(frame, payload);
    } else if (form_.multiPart) {
        DescribeMultiPart(frame, payload);
    } else {
        DescribeImage(frame, payload);
    }
}

// As one packet if the camera may send that, and it is large enough.
void BlockPackets::DescribeImage(const FrameInfo& frame, ByteView payload) {
    parts_[0].data = HasChunks(frame) ? payload.Sub(0, frame.sizeFilled) : ImageOf(frame, payload);
    EncodeImage(frame);
    const size_t allInSize = Gvsp::kIpUdpHeaderSize + Gvsp::HeaderSize(form_.extendedIds) +
                             leaderSize_ + trailerSize_ + parts_[0].data.size;
    isAllIn_ = form_.allIn && allInSize <= form_.packetSize;
    NumberPackets(Gvsp::PacketFormat::Payload);
}

// Also cuts the image to the lines that are sent.
void BlockPackets::EncodeImage(const FrameInfo& frame) {
    size_t lines = frame.deliveredHeight;
    if (form_.halfHeight && !HasChunks(frame)) {
        lines = std::min(lines, std::max<size_t>(frame.height / 2, 1));
        parts_[0].data.size = std::min(parts_[0].data.size, BytesOfLines(frame, lines));
    }
    Gvsp::Leader leader;
    leader.payloadType = PayloadTypeOf(frame, form_.chunks);
    leader.timestamp = TimestampOf(frame, form_);
    if (Gvsp::BaseType(leader.payloadType) == Gvsp::PayloadType::ChunkData) {
        leader.body = Gvsp::ChunkDataLeader{};
    } else {
        leader.body =
            Gvsp::ImageLeader{static_cast<uint32_t>(frame.pixelFormat), GeometryOf(frame)};
    }
    leaderSize_ = Gvsp::EncodeLeader({leader_.data(), leader_.size()}, leader);

    Gvsp::Trailer trailer;
    trailer.payloadType = leader.payloadType;
    trailer.sizeY = static_cast<uint32_t>(lines);
    trailer.chunkLength = static_cast<uint32_t>(frame.sizeFilled);
    trailer.chunkLayoutId = static_cast<uint32_t>(frame.chunkLayoutId);
    trailerSize_ = Gvsp::EncodeTrailer({trailer_.data(), trailer_.size()}, trailer);
}

void BlockPackets::DescribeMultiPart(const FrameInfo& frame, ByteView payload) {
    constexpr size_t kDescription = Gvsp::PartDescriptionForm::kSize;
    constexpr size_t kEntry = Gvsp::PartTrailerForm::kSize;
    std::array<uint8_t, kMaxParts * kDescription> described{};
    std::array<uint8_t, kMaxParts * kEntry> sent{};
    SentParts parts;
    numParts_ = PartsOf(frame, payload, parts);
    uint64_t offset = 0;
    for (size_t i = 0; i < numParts_; ++i) {
        Gvsp::PartDescription& description = parts[i].description;
        description.length = parts[i].data.size;
        Gvsp::EncodePart({described.data() + i * kDescription, kDescription}, description);
        Gvsp::EncodePart(
            {sent.data() + i * kEntry, kEntry},
            Gvsp::PartTrailer{description.dataType, description.length, parts[i].lines});
        parts_[i].data = parts[i].data;
        parts_[i].offset = form_.partRelativeOffsets ? 0 : offset;
        offset += description.length;
    }

    Gvsp::Leader leader;
    leader.payloadType = static_cast<uint16_t>(Gvsp::PayloadType::MultiPart);
    leader.timestamp = TimestampOf(frame, form_);
    leader.body = Gvsp::MultiPartLeader{ZelCti::Entries<Gvsp::PartDescriptionForm>(
        ByteView{described.data(), numParts_ * kDescription})};
    leaderSize_ = Gvsp::EncodeLeader({leader_.data(), leader_.size()}, leader);

    Gvsp::Trailer trailer;
    trailer.payloadType = leader.payloadType;
    trailer.parts =
        ZelCti::Entries<Gvsp::PartTrailerForm>(ByteView{sent.data(), numParts_ * kEntry});
    trailerSize_ = Gvsp::EncodeTrailer({trailer_.data(), trailer_.size()}, trailer);
    NumberPackets(Gvsp::PacketFormat::PayloadMultiPart);
}

// The descriptor, which is final, has packets of its own, and the data follow.
void BlockPackets::DescribeGenDc(const FrameInfo& frame, ByteView payload) {
    const size_t descriptorSize = frame.parts.front().offset;
    numParts_ = 2;
    parts_[0].data = payload.Sub(0, descriptorSize);
    parts_[1].data = payload.From(descriptorSize);
    parts_[1].offset = descriptorSize;

    Gvsp::GenDcLeader body;
    body.payloadSize = payload.size;
    body.descriptorSize = static_cast<uint32_t>(descriptorSize);
    Gvsp::Leader leader;
    leader.payloadType = static_cast<uint16_t>(Gvsp::PayloadType::GenDc);
    leader.timestamp = TimestampOf(frame, form_);
    leader.body = body;
    leaderSize_ = Gvsp::EncodeLeader({leader_.data(), leader_.size()}, leader);

    Gvsp::Trailer trailer;
    trailer.payloadType = leader.payloadType;
    trailerSize_ = Gvsp::EncodeTrailer({trailer_.data(), trailer_.size()}, trailer);
    NumberPackets(Gvsp::PacketFormat::PayloadGenDc);
}

// The payload of a camera and the least packet size keep the ids far below their limit.
void BlockPackets::NumberPackets(Gvsp::PacketFormat format) {
    format_ = format;
    perPacket_ = Gvsp::DataPerPacket(form_.packetSize, form_.extendedIds, format);
    uint64_t next = 1;
    for (size_t i = 0; i < numParts_; ++i) {
        parts_[i].firstId = static_cast<uint32_t>(next);
        next += Gvsp::PacketsFor(parts_[i].data.size, perPacket_);
    }
    assert(next < Gvsp::MaxPackets(form_.extendedIds));
    trailerId_ = static_cast<uint32_t>(next);
}

Gvsp::Header BlockPackets::HeaderOf(uint32_t packetId) const {
    Gvsp::Header header;
    header.extended = form_.extendedIds;
    header.blockId = blockId_;
    header.packetId = packetId;
    if (isAllIn_) {
        header.format = Gvsp::PacketFormat::AllIn;
    } else if (packetId == 0 || packetId == trailerId_) {
        header.format = packetId == 0 ? Gvsp::PacketFormat::Leader : Gvsp::PacketFormat::Trailer;
        header.count = form_.multiPart ? static_cast<uint8_t>(numParts_) : 0;
    } else {
        header.format = format_;
    }
    return header;
}

const BlockPackets::Part& BlockPackets::PartOf(uint32_t packetId) const {
    size_t i = numParts_ - 1;
    while (i > 0 && packetId < parts_[i].firstId)
        --i;
    return parts_[i];
}

ByteView BlockPackets::DataOf(const Part& part, uint32_t packetId) const {
    const size_t offset = size_t{packetId - part.firstId} * perPacket_;
    return part.data.Sub(offset, std::min(perPacket_, part.data.size - offset));
}

Gvsp::PayloadPrefix BlockPackets::PrefixOf(const Part& part, ByteView data,
                                           uint32_t packetId) const {
    const auto offset = static_cast<size_t>(data.data - part.data.data);
    const bool isLast = offset + data.size == part.data.size;
    if (form_.multiPart) {
        Gvsp::MultiPartPrefix prefix;
        prefix.partId = static_cast<uint8_t>(&part - parts_.data());
        prefix.lastOfPart = isLast;
        prefix.offset = part.offset + offset;
        return prefix;
    }
    if (!form_.genDc) return {};
    Gvsp::GenDcPrefix prefix;
    prefix.dataSize = static_cast<uint32_t>(data.size);
    prefix.offset = part.offset + offset;
    if (&part == parts_.data()) {
        prefix.dataFlags = Gvsp::kGenDcFinalDescriptor;
        if (offset == 0) prefix.dataFlags |= Gvsp::kGenDcDescriptorStarts;
        if (isLast) prefix.dataFlags |= Gvsp::kGenDcDescriptorEnds;
    }
    if (packetId == 1) prefix.flowFlags |= Gvsp::kGenDcFirstOfFlow;
    if (IsLastData(packetId)) prefix.flowFlags |= Gvsp::kGenDcLastOfFlow;
    return prefix;
}

PacketBytes BlockPackets::Packet(uint32_t packetId, const Gvsp::Header& header,
                                 ByteSpan head) const {
    assert(packetId < Count());
    PacketBytes packet;
    size_t size = Gvsp::EncodeHeader(head, header);
    const auto append = [&](const uint8_t* bytes, size_t count) {
        head.PutBytes(size, {bytes, count});
        size += count;
    };
    if (IsError(header.status)) {
        // nothing but the header
    } else if (isAllIn_) {
        append(leader_.data(), leaderSize_);
        append(trailer_.data(), trailerSize_);
        packet.pieces[1] = parts_[0].data;
    } else if (packetId == 0) {
        append(leader_.data(), leaderSize_);
    } else if (packetId == trailerId_) {
        append(trailer_.data(), trailerSize_);
    } else {
        const Part& part = PartOf(packetId);
        const ByteView data = DataOf(part, packetId);
        packet.pieces[1] = data;
        size += Gvsp::EncodePrefix(head.From(size), PrefixOf(part, data, packetId));
        if (form_.paddedLastPacket && IsLastData(packetId))
            packet.pieces[2] = {kZeroBytes.data(), perPacket_ - data.size};
    }
    packet.pieces[0] = {head.data, size};
    return packet;
}

}  // namespace ZelSim
