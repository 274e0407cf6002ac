// The packets of a block: leader, data and trailer, or all in one.
#pragma once

#include <array>
#include <cstdint>

#include "producers/transport.h"
#include "producers/wire/gvsppackets.h"

namespace ZelSim {

// What a stream channel is set to when a block begins; it holds for the whole block.
struct BlockForm {
    enum class Chunks : uint8_t { WithImage, ChunkData, Extended };

    bool extendedIds = false;
    size_t packetSize = 1500;  // IP datagrams
    bool allIn = false;        // blocks that fit one packet are one
    bool multiPart = false;    // with extended ids only
    bool genDc = false;        // of frames that are containers, likewise; before multiPart
    Chunks chunks = Chunks::WithImage;
    bool halfHeight = false;  // of a block without chunks
    bool paddedLastPacket = false;
    bool partRelativeOffsets = false;
    bool timestampAbove63Bits = false;
};

constexpr size_t kMinPacketSize = 256;  // each leader and each trailer fits
constexpr size_t kMaxPacketSize = 16384;

// As many bytes as a packet may have.
extern const std::array<uint8_t, kMaxPacketSize> kZeroBytes;

// A packet as pieces of memory that lie behind each other on the wire.
struct PacketBytes {
    static constexpr size_t kPieces = 3;
    std::array<ZelCti::ByteView, kPieces> pieces;  // header, data, padding

    size_t Size() const { return pieces[0].size + pieces[1].size + pieces[2].size; }
};

// The block of a frame. What is encoded once is kept here; data stay where the frame lies, which
// the caller keeps. Allocates nothing.
class BlockPackets {
  public:
    // The components of a 3D camera, and chunks.
    static constexpr size_t kMaxParts = 4;

    // The most bytes before the data of a packet: the leader of a multi-part block.
    static constexpr size_t kMaxHead =
        ZelCti::Gvsp::kExtendedHeaderSize + ZelCti::Gvsp::MultiPartLeaderSize(kMaxParts);

    BlockPackets() = default;
    BlockPackets(const ZelCti::FrameInfo& frame, ZelCti::ByteView payload, uint64_t blockId,
                 const BlockForm& form);

    uint64_t BlockId() const { return blockId_; }
    bool HasExtendedIds() const { return form_.extendedIds; }
    bool IsGenDc() const { return form_.genDc; }

    // Packet ids count from 0, the leader, to the trailer.
    uint32_t Count() const { return isAllIn_ ? 1 : trailerId_ + 1; }

    // The header as it is sent first. Only the status, the flags and the ids may be changed.
    ZelCti::Gvsp::Header HeaderOf(uint32_t packetId) const;

    // The packet with this header in front, which is written into `head` of kMaxHead bytes. With an
    // error as its status, it has nothing but the header.
    PacketBytes Packet(uint32_t packetId, const ZelCti::Gvsp::Header& header,
                       ZelCti::ByteSpan head) const;

  private:
    struct Part {
        ZelCti::ByteView data;
        uint64_t offset = 0;   // as its packets count
        uint32_t firstId = 0;  // of its data packets
    };

    void DescribeImage(const ZelCti::FrameInfo& frame, ZelCti::ByteView payload);
    void EncodeImage(const ZelCti::FrameInfo& frame);
    void DescribeMultiPart(const ZelCti::FrameInfo& frame, ZelCti::ByteView payload);
    void DescribeGenDc(const ZelCti::FrameInfo& frame, ZelCti::ByteView payload);
    void NumberPackets(ZelCti::Gvsp::PacketFormat format);
    const Part& PartOf(uint32_t packetId) const;
    ZelCti::ByteView DataOf(const Part& part, uint32_t packetId) const;
    ZelCti::Gvsp::PayloadPrefix PrefixOf(const Part& part, ZelCti::ByteView data,
                                         uint32_t packetId) const;
    bool IsLastData(uint32_t packetId) const { return packetId + 1 == trailerId_; }

    BlockForm form_;
    uint64_t blockId_ = 0;
    bool isAllIn_ = false;
    ZelCti::Gvsp::PacketFormat format_ = ZelCti::Gvsp::PacketFormat::Payload;
    size_t perPacket_ = 0;
    uint32_t trailerId_ = 0;
    size_t numParts_ = 1;
    std::array<Part, kMaxParts> parts_;
    std::array<uint8_t, ZelCti::Gvsp::MultiPartLeaderSize(kMaxParts)> leader_{};
    size_t leaderSize_ = 0;
    std::array<uint8_t,
               ZelCti::Gvsp::TrailerSize(
                   ZelCti::Gvsp::WithChunks(ZelCti::Gvsp::PayloadType::MultiPart), kMaxParts)>
        trailer_{};
    size_t trailerSize_ = 0;
};

}  // namespace ZelSim
