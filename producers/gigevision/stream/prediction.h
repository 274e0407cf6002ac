// Where data may be received at once.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "producers/wire/gvsp.h"

namespace ZelGev {

// The data packets that probably come next: those of one block with ids in a row. Data received at
// their place need not be copied.
struct Prediction {
    static constexpr size_t kMostPlaces = 64;

    bool extended = false;
    ZelCti::Gvsp::PacketFormat format = ZelCti::Gvsp::PacketFormat::Payload;
    uint64_t blockId = 0;
    uint32_t firstPacket = 0;
    size_t headerSize = 0;  // with the prefix of the format
    size_t dataSize = 0;    // of each packet: the room at each place
    size_t count = 0;       // of places; 0: nothing is known
    std::array<uint8_t*, kMostPlaces> places;
};

}  // namespace ZelGev
