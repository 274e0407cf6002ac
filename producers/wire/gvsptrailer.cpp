#include "producers/wire/gvsptrailer.h"

#include <algorithm>

namespace ZelCti::Gvsp {

namespace {

enum class Field { SizeY, ChunkLength, ChunkLayoutId };

// Calls visit for each 32-bit field of the payload type, in their order; those of chunks come last,
// behind the parts. They are all that the types differ in.
template <typename Visit>
void ForEachField(uint16_t payloadType, Visit visit) {
    switch (BaseType(payloadType)) {
        case PayloadType::Image:
        case PayloadType::MultiZone:
            visit(Field::SizeY);
            break;
        case PayloadType::ChunkData:
            visit(Field::ChunkLength);
            break;
        case PayloadType::ExtendedChunk:
            visit(Field::ChunkLength);
            visit(Field::SizeY);
            visit(Field::ChunkLayoutId);
            break;
        default:
            break;
    }
    if (!HasChunks(payloadType)) return;
    visit(Field::ChunkLength);
    visit(Field::ChunkLayoutId);
}

// The member for a field, of a trailer or a constant one.
template <typename T>
auto& Member(T& trailer, Field field) {
    switch (field) {
        case Field::SizeY:
            return trailer.sizeY;
        case Field::ChunkLength:
            return trailer.chunkLength;
        default:
            return trailer.chunkLayoutId;
    }
}

bool IsMultiPart(uint16_t payloadType) {
    return BaseType(payloadType) == PayloadType::MultiPart;
}

}  // namespace

PartTrailer PartTrailerForm::Read(ByteView bytes) {
    return {bytes.U16(0), bytes.U48(2), bytes.U32(8)};
}

void EncodePart(ByteSpan out, const PartTrailer& part) {
    out.PutU16(0, part.dataType);
    out.PutU48(2, part.length);
    out.PutU32(8, part.sizeY);
    out.PutU32(12, 0);
}

Result<Trailer> DecodeTrailer(const Packet& packet) {
    if (packet.content.size < kTrailerCommonSize) return Fault::TooShort;
    Trailer trailer;
    trailer.payloadType = packet.content.U16(2);
    ByteView rest = packet.content.From(kTrailerCommonSize);
    if (IsMultiPart(trailer.payloadType)) {
        const size_t fitting = rest.size / PartTrailerForm::kSize;
        const size_t stated = packet.header.count == 0 ? fitting : packet.header.count;
        const size_t parts = std::min(stated, fitting);
        trailer.parts = Entries<PartTrailerForm>(rest.Sub(0, parts * PartTrailerForm::kSize));
        if (parts < stated) return trailer;
        rest = rest.From(parts * PartTrailerForm::kSize);
    }
    ForEachField(trailer.payloadType, [&](Field field) {
        if (rest.size < sizeof(uint32_t)) return;
        Member(trailer, field) = rest.U32(0);
        rest = rest.From(sizeof(uint32_t));
    });
    return trailer;
}

size_t EncodeTrailer(ByteSpan out, const Trailer& trailer) {
    out.PutU16(0, 0);
    out.PutU16(2, trailer.payloadType);
    size_t size = kTrailerCommonSize;
    if (IsMultiPart(trailer.payloadType)) {
        for (const PartTrailer& part : trailer.parts) {
            EncodePart(out.From(size), part);
            size += PartTrailerForm::kSize;
        }
    }
    ForEachField(trailer.payloadType, [&](Field field) {
        out.PutU32(size, Member(trailer, field).value_or(0));
        size += sizeof(uint32_t);
    });
    return size;
}

}  // namespace ZelCti::Gvsp
