// The leaders of GVSP: what a block will contain.
//
// Image, image with chunks and multi-part leaders were checked on real bytes; the forms of raw,
// file, JPEG, H.264, multi-zone and GenDC are known from one source.
#pragma once

#include <string_view>
#include <variant>

#include "producers/wire/entries.h"
#include "producers/wire/gvsp.h"

namespace ZelCti::Gvsp {

enum class PayloadType : uint16_t {
    Image = 0x0001,
    Raw = 0x0002,
    File = 0x0003,
    ChunkData = 0x0004,
    ExtendedChunk = 0x0005,
    Jpeg = 0x0006,
    Jpeg2000 = 0x0007,
    H264 = 0x0008,
    MultiZone = 0x0009,
    MultiPart = 0x000A,
    GenDc = 0x000B,
};

// Messages carry a payload type with this flag when chunks follow the payload. Types from 0x8000 on
// are the device's own: nothing is known of their leaders.
constexpr uint16_t kWithChunks = 0x4000;
constexpr PayloadType BaseType(uint16_t payloadType) {
    return static_cast<PayloadType>(payloadType & ~kWithChunks);
}
constexpr bool HasChunks(uint16_t payloadType) {
    return (payloadType & kWithChunks) != 0;
}
constexpr uint16_t WithChunks(PayloadType type) {
    return static_cast<uint16_t>(static_cast<uint16_t>(type) | kWithChunks);
}

// Where a picture lies on the sensor, in pixels, and the bytes after each line and after the
// picture.
struct Geometry {
    uint32_t sizeX = 0;
    uint32_t sizeY = 0;  // the trailer may say fewer lines
    uint32_t offsetX = 0;
    uint32_t offsetY = 0;
    uint16_t paddingX = 0;
    uint16_t paddingY = 0;
};

// A part of a multi-part block. Its type decides what else is known of it.
struct PartJpeg {
    uint8_t genericFlags = 0;
    uint64_t tickFrequency = 0;
    uint32_t dataFormat = 0;
};
struct PartDescription {
    uint16_t dataType = 0;  // as in PartType
    uint64_t length = 0;    // 48 bits, with the padding
    uint32_t pixelFormat = 0;
    uint8_t sourceId = 0;
    uint8_t additionalZones = 0;  // five bits
    uint32_t zoneDirections = 0;
    uint16_t dataPurposeId = 0;
    uint16_t regionId = 0;
    std::variant<std::monostate, Geometry, PartJpeg> details;
};
enum class PartType : uint16_t {
    Image2D = 1,
    Plane2DBiplanar,
    Plane2DTriplanar,
    Plane2DQuadplanar,
    Image3D,
    Plane3DBiplanar,
    Plane3DTriplanar,
    Plane3DQuadplanar,
    ConfidenceMap,
    ChunkData,
    Jpeg,
    Jpeg2000,
};
struct PartDescriptionForm {
    using Entry = PartDescription;
    static constexpr size_t kSize = 48;
    static Entry Read(ByteView bytes);
};
// Writes PartDescriptionForm::kSize bytes.
void EncodePart(ByteSpan out, const PartDescription& part);

// What the leaders of the payload types say beyond their common fields.
struct ImageLeader {  // Image, ExtendedChunk
    uint32_t pixelFormat = 0;
    Geometry geometry;
};
struct RawLeader {
    uint64_t payloadSize = 0;
};
struct FileLeader {
    uint64_t payloadSize = 0;
    std::string_view name;  // within the message
};
struct ChunkDataLeader {};
struct JpegLeader {  // Jpeg, Jpeg2000
    uint64_t payloadSize = 0;
    uint64_t tickFrequency = 0;
    uint32_t dataFormat = 0;
};
struct H264Leader {
    uint64_t payloadSize = 0;
    uint8_t packetizationMode = 0;
    uint16_t packetSize = 0;
    uint8_t profileIdc = 0;
    uint8_t constraintFlags = 0;  // flag 0 is 0x80, flag 3 is 0x10
    uint8_t levelIdc = 0;
    uint16_t interleavingDepth = 0;
    uint16_t maxDonDifference = 0;
    uint32_t deinterleavingBuffer = 0;
    uint32_t initialBufferingTime = 0;
};
struct MultiZoneLeader {  // the header says how many zones
    uint32_t zoneDirections = 0;
    uint32_t pixelFormat = 0;
    Geometry geometry;
};
struct MultiPartLeader {  // the header says how many parts
    Entries<PartDescriptionForm> parts;
};
struct GenDcLeader {
    uint64_t payloadSize = 0;
    uint8_t flags = 0;
    uint32_t descriptorSize = 0;
};
constexpr uint8_t kGenDcPreliminaryDescriptor = 0x80;  // the leader announces one

struct Leader {
    uint16_t payloadType = 0;
    uint8_t fieldId = 0;  // four bits, as the next: interlaced fields
    uint8_t fieldCount = 0;
    uint8_t genericFlags = 0;  // only in extended chunk, JPEG and JPEG 2000
    uint64_t timestamp = 0;    // none in H.264, whose data packets carry one each
    std::variant<ImageLeader, RawLeader, FileLeader, ChunkDataLeader, JpegLeader, H264Leader,
                 MultiZoneLeader, MultiPartLeader, GenDcLeader>
        body;
};

constexpr size_t kLeaderCommonSize = 12;
constexpr size_t kImageLeaderSize = 36;
constexpr size_t kRawLeaderSize = 20;
constexpr size_t kFileLeaderSize = 20;  // without the name and the zero that ends it
constexpr size_t kChunkDataLeaderSize = kLeaderCommonSize;
constexpr size_t kJpegLeaderSize = 32;
constexpr size_t kH264LeaderSize = 32;
constexpr size_t kMultiZoneLeaderSize = 40;
constexpr size_t kGenDcLeaderSize = 28;
constexpr size_t MultiPartLeaderSize(size_t parts) {
    return kLeaderCommonSize + parts * PartDescriptionForm::kSize;
}

// From the content of a leader or an all-in packet; more bytes than the leader needs may follow.
// Header::count of the packet, which only extended headers have, says how many parts there are.
Result<Leader> DecodeLeader(const Packet& packet);

// The bytes of a leader as EncodeLeader makes it. The body decides the form; the payload type goes
// out as it stands.
size_t LeaderSize(const Leader& leader);
size_t EncodeLeader(ByteSpan out, const Leader& leader);

}  // namespace ZelCti::Gvsp
