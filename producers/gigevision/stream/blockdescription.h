// What the leader and the trailer of a block say.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

#include "producers/transport.h"
#include "producers/wire/gvsppackets.h"

namespace ZelGev {

// Where a part of a multi-part block lies in the block.
struct PartPlace {
    uint64_t offset = 0;
    uint64_t length = 0;
};

// Keeps copies of leader and trailer; all memory is allocated at once.
class BlockDescription {
  public:
    // Parts of a frame that are described to the client.
    static constexpr size_t kMaxParts = 64;

    BlockDescription();
    BlockDescription(const BlockDescription&) = delete;
    BlockDescription& operator=(const BlockDescription&) = delete;

    void Clear();

    // False if nothing can be made of it. A trailer may have no valid content: its packet id says
    // enough.
    bool SetLeader(const ZelCti::Gvsp::Header& header, ZelCti::ByteView content);
    void SetTrailer(const ZelCti::Gvsp::Header& header, ZelCti::ByteView content);

    bool HasLeader() const { return leader_.has_value(); }
    // How the data packets look, if there is a leader.
    ZelCti::Gvsp::PacketFormat DataFormat() const;
    // None without a leader that lists parts.
    const std::vector<PartPlace>& Parts() const { return parts_; }

    // The bytes of the block as its leader states them; none for payloads whose leader does not.
    std::optional<uint64_t> StatedSize() const;

    // The size of a block whose data end here, the last `slack` bytes of which may be padding: a
    // size that leader or trailer suggest, or that of the buffer, if one lies there.
    uint64_t SizeOf(uint64_t dataEnd, uint64_t slack, uint64_t bufferSize) const;

    // Fills in what follows from leader and trailer, for a block of which so many bytes are in the
    // buffer.
    void Describe(ZelCti::FrameInfo& frame, uint64_t size) const;
    uint64_t Timestamp() const { return leader_ ? leader_->timestamp : 0; }

  private:
    uint16_t Type() const { return leader_ ? leader_->payloadType : 0; }
    const ZelCti::Gvsp::Geometry* ImageGeometry() const;
    uint32_t ImageFormat() const;
    bool IsPlainImage() const;
    std::optional<uint64_t> ImageSizeByTrailer() const;
    void ListParts();
    void DescribeImage(ZelCti::FrameInfo& frame, uint64_t size) const;
    void DescribeParts(ZelCti::FrameInfo& frame, uint64_t size) const;

    std::array<uint8_t, ZelCti::Gvsp::MultiPartLeaderSize(UINT8_MAX)> leaderBytes_{};
    std::array<uint8_t,
               ZelCti::Gvsp::TrailerSize(
                   ZelCti::Gvsp::WithChunks(ZelCti::Gvsp::PayloadType::MultiPart), UINT8_MAX)>
        trailerBytes_{};
    std::optional<ZelCti::Gvsp::Leader> leader_;  // its views lie in leaderBytes_
    std::optional<ZelCti::Gvsp::Trailer> trailer_;
    std::vector<PartPlace> parts_;
};

}  // namespace ZelGev
