// A block on its way into a buffer.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

#include "producers/gigevision/stream/blockdescription.h"
#include "producers/gigevision/stream/missingpackets.h"
#include "producers/gigevision/stream/packetset.h"
#include "producers/gigevision/stream/prediction.h"

namespace ZelGev {

// How large the packets of a stream are. Some cameras send smaller ones than the register for the
// packet size says, so a full packet is what its datagrams show it to be.
struct PacketSize {
    size_t datagram = 0;       // the UDP payload of a full packet; 0: not known yet
    bool isConfirmed = false;  // seen in packets that were not the last of their block
};

// When a packet came, and what follows from that.
struct PacketTimes {
    Time now;
    Time gapDue;     // packets that this one leaps over are asked for
    Time repeatDue;  // those that were asked for together with this one are asked for again
};

// Puts data where they belong, and knows what is there and what is missing. Packets come in any
// order; 0 is the leader, the trailer has the highest id.
class OpenBlock {
  public:
    enum class Arrival { New, Duplicate, Unusable };

    OpenBlock() = default;
    OpenBlock(const OpenBlock&) = delete;
    OpenBlock& operator=(const OpenBlock&) = delete;

    // Memory, so that no block needs any: for gaps, and for the packets of a block.
    void ReserveGaps(size_t count);
    void ReservePackets(size_t blockSize, size_t datagram);

    // Begins another block. What it learns of the size of packets goes into `packetSize`, which
    // outlives it.
    void Begin(const ZelCti::Gvsp::Header& header, uint64_t frameId, ZelCti::FrameBuffer& buffer,
               PacketSize& packetSize, Time now);

    // `header` is not that of an error; `content` is what follows it and the prefix.
    Arrival Take(const ZelCti::Gvsp::Header& header, const ZelCti::Gvsp::PayloadPrefix& prefix,
                 ZelCti::ByteView content, const PacketTimes& times);
    // Takes the packet if it is the full data packet behind the newest one, as nearly all are: the
    // short way through Take. False: it is for Take.
    bool TakeNext(ZelCti::ByteView header, ZelCti::ByteView data, Time now);

    // The gap of the latest packet, if it closed one.
    const std::optional<Gap>& Answered() const { return answered_; }

    void Predict(Prediction& prediction, size_t atMost) const;

    bool Is(uint64_t id, bool extended) const { return id == id_ && extended == isExtended_; }
    uint64_t Id() const { return id_; }
    bool IsExtended() const { return isExtended_; }
    uint64_t FrameId() const { return frameId_; }
    ZelCti::FrameBuffer& Buffer() const { return *buffer_; }
    const BlockDescription& Description() const { return description_; }
    // Of an H.264 block, whose leader has no time.
    uint64_t Timestamp() const;
    Time Begun() const { return begun_; }
    Time LastNews() const { return lastNews_; }
    void Touch(Time now) { lastNews_ = now; }

    bool HasTrailer() const { return trailerId_ != 0; }
    uint32_t Trailer() const { return trailerId_; }
    bool HasData() const { return received_.Count() != 0; }
    bool IsEmpty() const { return !description_.HasLeader() && !HasTrailer() && !HasData(); }

    // With all packets; or with all data that the leader states, and no trailer.
    bool IsWhole() const;
    bool IsWholeBySize() const;

    uint64_t NumReceived() const;                 // packets
    uint64_t NumLost() const;                     // of them, as far as is known
    uint64_t NumBytes() const { return bytes_; }  // in the buffer
    // The size of the block, of whose data the last packets may be missing.
    uint64_t Size() const;
    bool IsTooLarge() const { return highestBeyond_ != 0 || Size() > buffer_->Size(); }

    MissingPackets& Missing() { return missing_; }
    const MissingPackets& Missing() const { return missing_; }
    bool HasTooManyGaps() const { return hasTooManyGaps_; }
    // The id of the trailer by the sizes that the leader states; 0: not known.
    uint32_t StatedTrailer() const;
    // Whether the block has this packet for certain.
    bool IsCertain(uint32_t packetId) const;
    // The highest id that came or is missing; -1 without any.
    int64_t Frontier() const { return frontier_; }
    // As far as there is room in the buffer.
    uint64_t MostPackets() const { return uint64_t{limit_} + 2; }
    uint32_t HighestData() const { return highestData_; }
    // The packets behind the frontier up to this one are missing, too.
    void AddTail(uint64_t last, Time due);
    // This packet and those behind it do not exist.
    void CutTail(uint32_t first);

  private:
    struct Place {
        uint64_t offset = 0;
        size_t size = 0;  // of the data that belong there
    };

    Arrival TakeLeader(const ZelCti::Gvsp::Header& header, ZelCti::ByteView content);
    Arrival TakeTrailer(const ZelCti::Gvsp::Header& header, ZelCti::ByteView content);
    Arrival TakeData(const ZelCti::Gvsp::Header& header, const ZelCti::Gvsp::PayloadPrefix& prefix,
                     ZelCti::ByteView data);
    Arrival TakeAllIn(const ZelCti::Gvsp::Header& header, ZelCti::ByteView content);

    Arrival TakeBeyondBuffer(uint32_t packetId);

    void NoteArrival(uint32_t packetId);
    void FindRow();
    bool IsNext(ZelCti::ByteView header) const;
    void AddGapUpTo(uint64_t last);

    void SetFormat(ZelCti::Gvsp::PacketFormat format);
    void SetDataPerPacket(size_t size);
    void ListFirstIds();
    void LearnPacketSize(uint32_t packetId, const ZelCti::Gvsp::PayloadPrefix& prefix, size_t size);
    void LearnFromPart(uint32_t packetId, const ZelCti::Gvsp::MultiPartPrefix& prefix, size_t size);
    void LearnFromShort(uint32_t packetId, size_t size);
    void ChangePacketSize(size_t size);
    bool IsBeforeLast(uint32_t packetId) const;
    bool LiesInRow() const;  // each packet behind the one before it
    bool EndsStatedSize(uint32_t packetId, size_t size) const;
    std::optional<uint64_t> StatedPackets() const;

    std::optional<Place> PlaceOf(uint32_t packetId, const ZelCti::Gvsp::PayloadPrefix& prefix,
                                 size_t size) const;
    std::optional<Place> PlaceInPart(uint32_t packetId, const ZelCti::Gvsp::MultiPartPrefix& prefix,
                                     size_t size) const;
    std::optional<uint64_t> OffsetOfFullPacket(uint32_t packetId) const;
    void Store(const Place& place, const uint8_t* data);

    uint64_t id_ = 0;
    uint64_t frameId_ = 0;
    ZelCti::FrameBuffer* buffer_ = nullptr;
    PacketSize* packetSize_ = nullptr;
    Time begun_;
    Time lastNews_;
    PacketTimes times_;  // of the latest packet
    std::optional<Gap> answered_;

    BlockDescription description_;
    uint64_t dataTimestamp_ = 0;
    uint32_t trailerId_ = 0;
    bool isExtended_ = false;
    bool isAllIn_ = false;

    std::optional<ZelCti::Gvsp::PacketFormat> format_;  // of data packets
    bool hasFullPacket_ = false;
    bool hasChangedSize_ = false;  // with data behind the first packet, which were lost
    bool isBroken_ = false;        // a short packet is not the last
    bool hasTooManyGaps_ = false;
    uint32_t shortPacket_ = 0;  // one that is not full, and so should be the last; 0: none
    size_t shortSize_ = 0;
    size_t firstSize_ = 0;  // of the first packet
    size_t perPacket_ = 0;  // data bytes of a full one
    uint32_t limit_ = 0;    // the id of the last one that can have room in the buffer
    uint32_t highestData_ = 0;
    uint32_t highestBeyond_ = 0;  // that has no room
    // Up to this packet, TakeNext may take the one behind the newest; 0: none.
    uint32_t rowEnd_ = 0;
    PacketSet received_;  // data packets

    MissingPackets missing_;
    int64_t frontier_ = -1;

    uint64_t bytes_ = 0;
    uint64_t dataEnd_ = 0;  // as the packets were sent, with padding

    std::vector<uint64_t> firstIds_;  // of the packets of each part
};

}  // namespace ZelGev
