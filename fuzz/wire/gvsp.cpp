// A datagram at a port of GVSP: every decoder reads it, whatever its format says. What they return
// lies in the datagram, and stays the same when it is made again and read again.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <vector>

#include "producers/wire/gendc.h"
#include "producers/wire/gvsppackets.h"

namespace {

using namespace ZelCti;
using namespace ZelCti::Gvsp;

void Require(bool condition) {
    if (!condition) std::abort();
}

// Reads all of it, so that a sanitizer sees bytes that are not the message's.
void Touch(ByteView message, ByteView part) {
    if (part.size == 0) return;
    Require(part.data >= message.data && part.data + part.size <= message.data + message.size);
    volatile uint8_t sum = 0;
    for (size_t i = 0; i < part.size; ++i)
        sum = static_cast<uint8_t>(sum + part.data[i]);
}

// Memory that holds whatever is made of a message: an encoder makes at most the bytes that were
// read and the fields that were missing.
std::vector<uint8_t> RoomFor(ByteView message) {
    return std::vector<uint8_t>(message.size + 64);
}

template <typename Encode>
std::vector<uint8_t> Made(ByteView message, const Encode& encode) {
    std::vector<uint8_t> bytes = RoomFor(message);
    bytes.resize(encode(ByteSpan{bytes.data(), bytes.size()}));
    return bytes;
}

// `make` decodes the content of a packet and encodes the result.
template <typename Make>
void RequireStable(const Packet& packet, const Make& make) {
    const std::vector<uint8_t> once = make(packet);
    Require(once == make({packet.header, {once.data(), once.size()}}));
}

void ReadImage(const Header& header, const ImageLeader& image) {
    const auto size = ImageSize(image.pixelFormat, image.geometry);
    if (!size) return;
    const size_t perPacket = DataPerPacket(image.geometry.paddingX, header.extended, header.format);
    const auto layout = PacketLayout::Of(*size, perPacket, header.extended);
    if (!layout) return;
    const uint32_t last = layout->DataPackets();
    Require(layout->TrailerId() == last + 1);
    Require(last == 0 ? *size == 0 : layout->OffsetOf(last) + layout->SizeOf(last) == *size);
    if (layout->IsData(header.packetId)) Require(layout->SizeOf(header.packetId) <= perPacket);
}

void ReadLeader(const Packet& packet) {
    const auto leader = DecodeLeader(packet);
    if (!leader) return;
    if (const auto* file = std::get_if<FileLeader>(&leader->body))
        Touch(packet.content,
              {reinterpret_cast<const uint8_t*>(file->name.data()), file->name.size()});
    if (const auto* image = std::get_if<ImageLeader>(&leader->body))
        ReadImage(packet.header, *image);
    if (const auto* body = std::get_if<MultiPartLeader>(&leader->body))
        Require(body->parts.size() == packet.header.count &&
                PacketsForParts(body->parts, 1) <= uint64_t{255} << 48);
    RequireStable(packet, [](const Packet& read) {
        return Made(read.content,
                    [&](ByteSpan out) { return EncodeLeader(out, *DecodeLeader(read)); });
    });
}

void ReadTrailer(const Packet& packet) {
    const auto trailer = DecodeTrailer(packet);
    if (!trailer) return;
    Require(trailer->parts.size() <= packet.content.size / PartTrailerForm::kSize);
    // One with parts left out has other fields in their place when it is made again.
    if (trailer->parts.size() < packet.header.count) return;
    RequireStable(packet, [](const Packet& read) {
        return Made(read.content,
                    [&](ByteSpan out) { return EncodeTrailer(out, *DecodeTrailer(read)); });
    });
}

void ReadContainer(ByteView bytes) {
    constexpr uint32_t kMost = 16;
    const auto container = GenDc::DecodeContainer(bytes);
    if (!container) return;
    for (uint32_t i = 0; i < std::min(container->componentCount, kMost); ++i) {
        const auto component = GenDc::DecodeComponent(*container, i);
        if (!component) continue;
        Touch(bytes, component->bytes);
        for (uint32_t j = 0; j < std::min<uint32_t>(component->partCount, kMost); ++j) {
            const auto part = GenDc::DecodePart(*container, *component, j);
            if (!part) continue;
            if (const auto data = DataOf(*container, *part)) Touch(bytes, *data);
        }
    }
}

void ReadPayload(const Packet& packet) {
    const auto payload = DecodePayload(packet);
    if (!payload) return;
    Touch(packet.content, payload->data);
    ReadContainer(payload->data);
}

void ReadAllIn(const Packet& packet) {
    const auto block = DecodeAllIn(packet);
    if (!block) return;
    Touch(packet.content, block->payload.data);
    RequireStable(packet, [](const Packet& read) {
        return Made(read.content,
                    [&](ByteSpan out) { return EncodeAllIn(out, *DecodeAllIn(read)); });
    });
}

void ReadIds(const Header& header) {
    const uint64_t next = NextBlockId(header.blockId, header.extended);
    Require(next != 0);
    if (header.blockId != 0) Require(BlockIdDifference(header.blockId, next, header.extended) >= 1);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const auto packet = DecodePacket({data, size});
    if (!packet) return 0;
    Require(packet->content.size + HeaderSize(packet->header.extended) == size);
    ReadIds(packet->header);
    ReadLeader(*packet);
    ReadTrailer(*packet);
    ReadPayload(*packet);
    ReadAllIn(*packet);
    static_cast<void>(DeliveryOf(packet->header.status));
    return 0;
}
