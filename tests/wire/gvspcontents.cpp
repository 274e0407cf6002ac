#include "tests/wire/gvspcontents.h"

#include "producers/wire/gendc.h"

namespace ZelCti::Gvsp {

using namespace WireTest;

uint16_t Number(PayloadType type) {
    return static_cast<uint16_t>(type);
}

Header Classic(PacketFormat format, uint64_t blockId, uint32_t packetId) {
    Header header;
    header.format = format;
    header.blockId = blockId;
    header.packetId = packetId;
    return header;
}

Header Extended(PacketFormat format, uint64_t blockId, uint32_t packetId, uint8_t count) {
    Header header = Classic(format, blockId, packetId);
    header.extended = true;
    header.count = count;
    return header;
}

ImageLeader ImageOf(uint32_t sizeX, uint32_t sizeY) {
    return {kMono8, {sizeX, sizeY, 0, 0, 0, 0}};
}

Trailer TrailerOf(uint16_t payloadType, std::optional<uint32_t> sizeY,
                  std::optional<uint32_t> chunkLength, std::optional<uint32_t> chunkLayoutId) {
    Trailer trailer;
    trailer.payloadType = payloadType;
    trailer.sizeY = sizeY;
    trailer.chunkLength = chunkLength;
    trailer.chunkLayoutId = chunkLayoutId;
    return trailer;
}

Content Nothing() {
    return [](ByteSpan) { return size_t{0}; };
}

Content Of(const Leader& leader) {
    return [=](ByteSpan out) { return EncodeLeader(out, leader); };
}

Content Of(const Trailer& trailer) {
    return [=](ByteSpan out) { return EncodeTrailer(out, trailer); };
}

Content Of(const PayloadPrefix& prefix, const Bytes& data) {
    return [=](ByteSpan out) {
        const size_t size = EncodePrefix(out, prefix);
        out.PutBytes(size, ViewOf(data));
        return size + data.size();
    };
}

Content Parts(uint16_t payloadType, uint64_t timestamp, const std::vector<PartDescription>& parts) {
    return [=](ByteSpan out) {
        constexpr size_t kSize = PartDescriptionForm::kSize;
        Bytes bytes(parts.size() * kSize, 0xEE);
        for (size_t i = 0; i < parts.size(); ++i)
            EncodePart(ByteSpan{bytes.data(), bytes.size()}.From(i * kSize), parts[i]);
        const MultiPartLeader body{Entries<PartDescriptionForm>(ViewOf(bytes))};
        return EncodeLeader(out, LeaderOf(payloadType, body, timestamp));
    };
}

Content PartTrailers(const Trailer& trailer, const std::vector<PartTrailer>& parts) {
    return [=](ByteSpan out) {
        constexpr size_t kSize = PartTrailerForm::kSize;
        Bytes bytes(parts.size() * kSize, 0xEE);
        for (size_t i = 0; i < parts.size(); ++i)
            EncodePart(ByteSpan{bytes.data(), bytes.size()}.From(i * kSize), parts[i]);
        Trailer whole = trailer;
        whole.parts = Entries<PartTrailerForm>(ViewOf(bytes));
        return EncodeTrailer(out, whole);
    };
}

Content Of(const Leader& leader, const Trailer& trailer, const PayloadPrefix& prefix,
           const Bytes& data) {
    return [=](ByteSpan out) {
        return EncodeAllIn(out, {leader, trailer, {prefix, ViewOf(data)}});
    };
}

PartDescription ImagePart(PartType type, uint64_t length, uint16_t purpose, uint32_t sizeX,
                          uint32_t sizeY) {
    PartDescription part;
    part.dataType = static_cast<uint16_t>(type);
    part.length = length;
    part.pixelFormat = kMono8;
    part.dataPurposeId = purpose;
    part.details = Geometry{sizeX, sizeY, 0, 0, 0, 0};
    return part;
}

PartDescription OddPart() {
    PartDescription part;
    part.dataType = static_cast<uint16_t>(PartType::Image3D);
    part.length = 0x010203040506;
    part.pixelFormat = 0x0260003D;
    part.sourceId = 7;
    part.additionalZones = 9;
    part.zoneDirections = 0x80000001;
    part.dataPurposeId = 0x1112;
    part.regionId = 0x1314;
    part.details = Geometry{0x101, 0x202, 0x303, 0x404, 0x55, 0x66};
    return part;
}

PartDescription JpegPart() {
    PartDescription part;
    part.dataType = static_cast<uint16_t>(PartType::Jpeg);
    part.length = 1000;
    part.pixelFormat = 7;
    part.details = PartJpeg{0x80, 1000000000, 0x21222324};
    return part;
}

PartDescription ChunkPart() {
    PartDescription part;
    part.dataType = static_cast<uint16_t>(PartType::ChunkData);
    part.length = 48;
    return part;
}

H264Leader OddH264() {
    H264Leader h264;
    h264.payloadSize = 0x1122;
    h264.packetizationMode = 2;
    h264.packetSize = 1400;
    h264.profileIdc = 66;
    h264.constraintFlags = 0xA0;
    h264.levelIdc = 31;
    h264.interleavingDepth = 3;
    h264.maxDonDifference = 4;
    h264.deinterleavingBuffer = 5;
    h264.initialBufferingTime = 6;
    return h264;
}

Content GenDcDescriptor() {
    constexpr uint64_t kPictureSize = 307200;  // 640 * 480
    return [](ByteSpan out) {
        GenDcPrefix prefix;
        prefix.dataSize = 0x150;
        prefix.dataFlags =
            kGenDcPreliminaryDescriptorData | kGenDcDescriptorStarts | kGenDcDescriptorEnds;
        prefix.flowFlags = kGenDcFirstOfFlow | kGenDcLastOfFlow;
        size_t size = EncodePrefix(out, prefix);

        GenDc::Container container;
        container.version = {1, 0, 0};
        container.flags = GenDc::kPtpTime;
        container.headerSize = static_cast<uint32_t>(GenDc::ContainerHeaderSize(1));
        container.id = 5;
        container.variableFields = GenDc::kVariesDataSize | GenDc::kVariesTimestamp;
        container.dataSize = kPictureSize;
        container.dataOffset = 0x150;
        container.descriptorSize = 0x150;
        container.componentCount = 1;
        const uint64_t componentOffset = container.headerSize;
        size += EncodeContainer(out.From(size), container, &componentOffset);

        GenDc::Component component;
        component.headerSize = static_cast<uint32_t>(GenDc::ComponentHeaderSize(1));
        component.groupId = 1;
        component.sourceId = 2;
        component.regionId = 3;
        component.regionOffsetX = 4;
        component.regionOffsetY = 5;
        component.timestamp = kTime;
        component.typeId = static_cast<uint64_t>(GenDc::ComponentId::Intensity);
        component.format = kMono8;
        component.partCount = 1;
        const uint64_t partOffset = componentOffset + component.headerSize;
        size += EncodeComponent(out.From(size), component, &partOffset);

        GenDc::Part part;
        part.type = static_cast<uint16_t>(GenDc::PartType::Data2D);
        part.headerSize = 64;
        part.format = kMono8;
        part.flowId = 1;
        part.dataSize = kPictureSize;
        part.dataOffset = 0x150;
        part.size = GenDc::Size2D{640, 480, 0, 0};
        return size + EncodePart(out.From(size), part);
    };
}

}  // namespace ZelCti::Gvsp
