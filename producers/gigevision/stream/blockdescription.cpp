#include "producers/gigevision/stream/blockdescription.h"

#include <algorithm>

namespace ZelGev {

using namespace ZelCti::Gvsp;

using ZelCti::ByteView;
using ZelCti::FrameInfo;
using ZelCti::FramePart;

namespace {

constexpr uint16_t kFirstDeviceSpecificType = 0x8000;

template <size_t kSize>
ByteView CopyInto(std::array<uint8_t, kSize>& memory, ByteView bytes) {
    const size_t size = std::min(bytes.size, kSize);
    std::copy_n(bytes.data, size, memory.data());
    return {memory.data(), size};
}

// Of a payload type that is not known, only what all leaders begin with is read.
std::optional<Leader> ReadLeader(const Packet& packet) {
    const auto leader = DecodeLeader(packet);
    if (leader) return *leader;
    if (leader.GetFault() != ZelCti::Fault::UnknownPayloadType) return std::nullopt;
    Leader unknown;
    unknown.payloadType = packet.content.U16(2);
    unknown.timestamp = packet.content.U64(4);
    unknown.body = ChunkDataLeader{};
    return unknown;
}

struct SizeOfBody {
    std::optional<uint64_t> operator()(const ImageLeader& image) const {
        return ImageSize(image.pixelFormat, image.geometry);
    }
    std::optional<uint64_t> operator()(const MultiPartLeader& body) const {
        uint64_t size = 0;
        for (const auto& part : body.parts)
            size += part.length;
        return size;
    }
    std::optional<uint64_t> operator()(const ChunkDataLeader&) const { return std::nullopt; }
    std::optional<uint64_t> operator()(const MultiZoneLeader&) const { return std::nullopt; }
    template <typename Body>
    std::optional<uint64_t> operator()(const Body& body) const {
        return body.payloadSize;
    }
};

GenTL::PAYLOADTYPE_INFO_ID PayloadTypeOf(uint16_t type) {
    if (type >= kFirstDeviceSpecificType) return GenTL::PAYLOAD_TYPE_DEVICE_SPECIFIC;
    switch (BaseType(type)) {
        case PayloadType::Image:
        case PayloadType::MultiZone:
        case PayloadType::ExtendedChunk:
            return GenTL::PAYLOAD_TYPE_IMAGE;
        case PayloadType::Raw:
            return GenTL::PAYLOAD_TYPE_RAW_DATA;
        case PayloadType::File:
            return GenTL::PAYLOAD_TYPE_FILE;
        case PayloadType::ChunkData:
            return GenTL::PAYLOAD_TYPE_CHUNK_DATA;
        case PayloadType::Jpeg:
            return GenTL::PAYLOAD_TYPE_JPEG;
        case PayloadType::Jpeg2000:
            return GenTL::PAYLOAD_TYPE_JPEG2000;
        case PayloadType::H264:
            return GenTL::PAYLOAD_TYPE_H264;
        case PayloadType::MultiPart:
            return GenTL::PAYLOAD_TYPE_MULTI_PART;
        case PayloadType::GenDc:
            return GenTL::PAYLOAD_TYPE_GENDC;
    }
    return GenTL::PAYLOAD_TYPE_UNKNOWN;
}

// GenTL has the same numbers but for JPEG, and none for chunk data.
GenTL::PARTDATATYPE_ID PartTypeOf(uint16_t type) {
    switch (static_cast<PartType>(type)) {
        case PartType::Jpeg:
            return GenTL::PART_DATATYPE_JPEG;
        case PartType::Jpeg2000:
            return GenTL::PART_DATATYPE_JPEG2000;
        default:
            return type <= static_cast<uint16_t>(PartType::ConfidenceMap)
                       ? static_cast<GenTL::PARTDATATYPE_ID>(type)
                       : static_cast<GenTL::PARTDATATYPE_ID>(GenTL::PART_DATATYPE_CUSTOM_ID + type);
    }
}

bool EndsWithChunks(uint16_t type) {
    return type < kFirstDeviceSpecificType &&
           (HasChunks(type) || BaseType(type) == PayloadType::ChunkData ||
            BaseType(type) == PayloadType::ExtendedChunk);
}

// The lines of an image of which so many bytes are there.
size_t LinesIn(uint64_t bytes, uint32_t pixelFormat, Geometry geometry) {
    const uint32_t lines = geometry.sizeY;
    geometry.sizeY = 1;
    geometry.paddingY = 0;
    const uint64_t line = ImageSize(pixelFormat, geometry).value_or(0);
    return line == 0 ? lines : static_cast<size_t>(std::min<uint64_t>(lines, bytes / line));
}

}  // namespace

BlockDescription::BlockDescription() {
    parts_.reserve(UINT8_MAX);
}

void BlockDescription::Clear() {
    leader_.reset();
    trailer_.reset();
    parts_.clear();
}

bool BlockDescription::SetLeader(const Header& header, ByteView content) {
    leader_ = ReadLeader({header, CopyInto(leaderBytes_, content)});
    ListParts();
    return HasLeader();
}

void BlockDescription::SetTrailer(const Header& header, ByteView content) {
    const auto trailer = DecodeTrailer({header, CopyInto(trailerBytes_, content)});
    if (trailer) trailer_ = *trailer;
}

void BlockDescription::ListParts() {
    parts_.clear();
    const auto* body = leader_ ? std::get_if<MultiPartLeader>(&leader_->body) : nullptr;
    if (body == nullptr) return;
    uint64_t offset = 0;
    for (const auto& part : body->parts) {
        parts_.push_back({offset, part.length});
        offset += part.length;
    }
}

PacketFormat BlockDescription::DataFormat() const {
    if (Type() >= kFirstDeviceSpecificType) return PacketFormat::Payload;
    switch (BaseType(Type())) {
        case PayloadType::H264:
            return PacketFormat::PayloadH264;
        case PayloadType::MultiZone:
            return PacketFormat::PayloadMultiZone;
        case PayloadType::MultiPart:
            return PacketFormat::PayloadMultiPart;
        case PayloadType::GenDc:
            return PacketFormat::PayloadGenDc;
        default:
            return PacketFormat::Payload;
    }
}

std::optional<uint64_t> BlockDescription::StatedSize() const {
    const bool isKnown = leader_ && (!EndsWithChunks(Type()) || !parts_.empty());
    return isKnown ? std::visit(SizeOfBody(), leader_->body) : std::nullopt;
}

// An image, or the first part of a block if that is one.
const Geometry* BlockDescription::ImageGeometry() const {
    if (!leader_) return nullptr;
    if (const auto* image = std::get_if<ImageLeader>(&leader_->body)) return &image->geometry;
    if (const auto* zones = std::get_if<MultiZoneLeader>(&leader_->body)) return &zones->geometry;
    return nullptr;
}

uint32_t BlockDescription::ImageFormat() const {
    if (const auto* image = std::get_if<ImageLeader>(&leader_->body)) return image->pixelFormat;
    if (const auto* zones = std::get_if<MultiZoneLeader>(&leader_->body)) return zones->pixelFormat;
    return 0;
}

// Images of variable height: the trailer says how many lines were sent.
std::optional<uint64_t> BlockDescription::ImageSizeByTrailer() const {
    const Geometry* const image = ImageGeometry();
    if (image == nullptr || EndsWithChunks(Type()) || !trailer_ || !trailer_->sizeY)
        return std::nullopt;
    Geometry sent = *image;
    sent.sizeY = *trailer_->sizeY;
    return ImageSize(ImageFormat(), sent);
}

uint64_t BlockDescription::SizeOf(uint64_t dataEnd, uint64_t slack, uint64_t bufferSize) const {
    const std::optional<uint64_t> hints[] = {
        StatedSize(), ImageSizeByTrailer(),
        trailer_ && trailer_->chunkLength ? std::optional<uint64_t>(*trailer_->chunkLength)
                                          : std::nullopt,
        EndsWithChunks(Type()) ? std::optional<uint64_t>(bufferSize) : std::nullopt};
    for (const auto& size : hints)
        if (size && *size <= dataEnd && dataEnd - *size < slack) return *size;
    return dataEnd;
}

void BlockDescription::Describe(FrameInfo& frame, uint64_t size) const {
    frame.payloadType = leader_ ? PayloadTypeOf(Type()) : GenTL::PAYLOAD_TYPE_UNKNOWN;
    frame.timestamp = Timestamp();
    frame.hasImage = false;
    frame.parts.clear();
    frame.chunkOrder.reset();
    frame.chunkBegin = 0;
    if (!leader_) return;
    if (EndsWithChunks(Type())) frame.chunkOrder = ZelCti::ByteOrder::Big;
    if (trailer_) frame.chunkLayoutId = trailer_->chunkLayoutId.value_or(0);
    DescribeImage(frame, size);
    DescribeParts(frame, size);
}

void BlockDescription::DescribeImage(FrameInfo& frame, uint64_t size) const {
    const Geometry* const image = ImageGeometry();
    if (image == nullptr) return;
    frame.hasImage = true;
    frame.pixelFormat = ImageFormat();
    frame.width = image->sizeX;
    frame.height = image->sizeY;
    frame.offsetX = image->offsetX;
    frame.offsetY = image->offsetY;
    frame.xPadding = image->paddingX;
    frame.yPadding = image->paddingY;
    // Some cameras write 0 into the trailer.
    frame.deliveredHeight = LinesIn(size, ImageFormat(), *image);
    if (trailer_ && trailer_->sizeY.value_or(0) != 0)
        frame.deliveredHeight = std::min<size_t>(frame.deliveredHeight, *trailer_->sizeY);
}

void BlockDescription::DescribeParts(FrameInfo& frame, uint64_t size) const {
    const auto* const body = std::get_if<MultiPartLeader>(&leader_->body);
    const size_t count = std::min(parts_.size(), kMaxParts);
    for (size_t i = 0; i < count; ++i) {
        const PartDescription described = body->parts[i];
        FramePart part;
        part.type = PartTypeOf(described.dataType);
        part.offset = static_cast<size_t>(std::min(parts_[i].offset, size));
        part.dataSize = static_cast<size_t>(std::min(parts_[i].length, size - part.offset));
        part.format = described.pixelFormat;
        part.sourceId = described.sourceId;
        part.regionId = described.regionId;
        part.purposeId = described.dataPurposeId;
        if (const auto* geometry = std::get_if<Geometry>(&described.details)) {
            part.width = geometry->sizeX;
            part.height = geometry->sizeY;
            part.offsetX = geometry->offsetX;
            part.offsetY = geometry->offsetY;
            part.xPadding = geometry->paddingX;
            part.deliveredHeight = LinesIn(part.dataSize, described.pixelFormat, *geometry);
        }
        frame.parts.push_back(part);
    }
    // Chunks are found from the end of the block.
    const bool endsWithChunks =
        count != 0 && count == parts_.size() &&
        body->parts[count - 1].dataType == static_cast<uint16_t>(PartType::ChunkData);
    if (!endsWithChunks) return;
    frame.chunkOrder = ZelCti::ByteOrder::Big;
    frame.chunkBegin = frame.parts.back().offset;
}

}  // namespace ZelGev
