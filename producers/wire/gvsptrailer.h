// The trailers of GVSP: what a block contained.
#pragma once

#include <optional>

#include "producers/wire/gvspleader.h"

namespace ZelCti::Gvsp {

// What the trailer of a multi-part block says of a part.
struct PartTrailer {
    uint16_t dataType = 0;
    uint64_t length = 0;  // 48 bits
    uint32_t sizeY = 0;   // lines sent, of image types
};
struct PartTrailerForm {
    using Entry = PartTrailer;
    static constexpr size_t kSize = 16;
    static Entry Read(ByteView bytes);
};
// Writes PartTrailerForm::kSize bytes.
void EncodePart(ByteSpan out, const PartTrailer& part);

struct Trailer {
    uint16_t payloadType = 0;
    Entries<PartTrailerForm> parts;  // multi-part

    // The others are there in the payload types that have them, when the trailer is long enough.
    std::optional<uint32_t> sizeY;        // lines sent
    std::optional<uint32_t> chunkLength;  // whether it counts the image chunk is not known
    // Chunks lie where they lay in the block before as long as this number stays.
    std::optional<uint32_t> chunkLayoutId;
};

constexpr size_t kTrailerCommonSize = 4;
constexpr size_t kImageTrailerSize = 8;
constexpr size_t kChunkDataTrailerSize = 8;
constexpr size_t kExtendedChunkTrailerSize = 16;
constexpr size_t kChunkFieldsSize = 8;  // behind the trailer of each type with chunks

// The bytes of a trailer as the standard form has it.
constexpr size_t TrailerSize(uint16_t payloadType, size_t parts = 0) {
    const size_t chunkFields = HasChunks(payloadType) ? kChunkFieldsSize : 0;
    switch (BaseType(payloadType)) {
        case PayloadType::Image:
        case PayloadType::MultiZone:
            return kImageTrailerSize + chunkFields;
        case PayloadType::ChunkData:
            return kChunkDataTrailerSize + chunkFields;
        case PayloadType::ExtendedChunk:
            return kExtendedChunkTrailerSize + chunkFields;
        case PayloadType::MultiPart:
            return kTrailerCommonSize + parts * PartTrailerForm::kSize + chunkFields;
        default:
            return kTrailerCommonSize + chunkFields;
    }
}

// Cameras send trailers that are longer or shorter: missing fields and parts are left out, and
// bytes beyond the last field are ignored. The header should say how many parts there are; a device
// was seen that says 0, and then they are as many as fit. A trailer without a payload type is too
// short, which harms no block: its header says all that is needed.
Result<Trailer> DecodeTrailer(const Packet& packet);

// All fields of the payload type; what the trailer leaves out is 0.
size_t EncodeTrailer(ByteSpan out, const Trailer& trailer);

}  // namespace ZelCti::Gvsp
