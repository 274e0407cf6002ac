// Headers and contents of stream packets, in few words.
#pragma once

#include <functional>

#include "producers/wire/gvsppayload.h"
#include "tests/wire/bytes.h"

namespace ZelCti::Gvsp {

constexpr uint64_t kTime = 0x0102030405060708;
constexpr uint32_t kMono8 = 0x01080001;

uint16_t Number(PayloadType type);

Header Classic(PacketFormat format, uint64_t blockId, uint32_t packetId);
Header Extended(PacketFormat format, uint64_t blockId, uint32_t packetId, uint8_t count = 0);

template <typename Body>
Leader LeaderOf(uint16_t payloadType, const Body& body, uint64_t timestamp = kTime) {
    Leader leader;
    leader.payloadType = payloadType;
    leader.timestamp = timestamp;
    leader.body = body;
    return leader;
}

template <typename Body>
Leader LeaderOf(PayloadType payloadType, const Body& body, uint64_t timestamp = kTime) {
    return LeaderOf(Number(payloadType), body, timestamp);
}

ImageLeader ImageOf(uint32_t sizeX, uint32_t sizeY);
Trailer TrailerOf(uint16_t payloadType, std::optional<uint32_t> sizeY = {},
                  std::optional<uint32_t> chunkLength = {},
                  std::optional<uint32_t> chunkLayoutId = {});

// Encodes what follows the header of a packet.
using Content = std::function<size_t(ByteSpan)>;

Content Nothing();
Content Of(const Leader& leader);
Content Of(const Trailer& trailer);
Content Of(const PayloadPrefix& prefix, const WireTest::Bytes& data);
// All in one packet.
Content Of(const Leader& leader, const Trailer& trailer, const PayloadPrefix& prefix,
           const WireTest::Bytes& data);
Content Parts(uint16_t payloadType, uint64_t timestamp, const std::vector<PartDescription>& parts);
Content PartTrailers(const Trailer& trailer, const std::vector<PartTrailer>& parts);
// A descriptor with one component of one part.
Content GenDcDescriptor();

PartDescription ImagePart(PartType type, uint64_t length, uint16_t purpose, uint32_t sizeX,
                          uint32_t sizeY);
PartDescription JpegPart();
PartDescription ChunkPart();
// Each field has another value.
PartDescription OddPart();
H264Leader OddH264();

}  // namespace ZelCti::Gvsp
