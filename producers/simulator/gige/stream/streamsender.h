// What a stream channel sends, packet by packet.
#pragma once

#include <array>
#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <optional>

#include "producers/simulator/camera/camera.h"
#include "producers/simulator/gige/stream/blockring.h"
#include "producers/simulator/gige/stream/pacer.h"
#include "producers/simulator/gige/stream/packetfaults.h"
#include "producers/simulator/gige/stream/resendanswers.h"
#include "producers/simulator/gige/stream/streamsocket.h"

namespace ZelSim {

// What the registers of a stream channel say, as numbers of the machine.
struct StreamSettings {
    ZelCti::Endpoint destination;  // SCDA and the port in SCP; nothing is sent without an address
    size_t packetSize = 1500;
    bool dontFragment = false;
    bool bigEndianPixels = false;
    uint32_t delay = 0;          // SCPD, in ticks
    uint32_t configuration = 0;  // SCCFG
    bool extendedIds = false;
    bool statusCodes = false;  // those of 1.1, in answers to resend requests
};

// Counts since the channel was made.
struct StreamStatistics {
    uint64_t blocks = 0;
    uint64_t lostBlocks = 0;  // frames that found no free memory, or that the camera lost
    uint64_t packets = 0;     // all that left
    uint64_t resent = 0;      // packets that were asked for, and left
    uint64_t refused = 0;     // packets that were asked for, and are not there
    uint64_t testPackets = 0;
};

// A packet that shows what the network carries, as the registers were when it was fired.
struct TestPacket {
    ZelCti::Endpoint destination;
    size_t ipSize = 0;  // of the whole IP datagram
    bool dontFragment = false;
};

struct ResendRequest {
    ZelCti::Gvcp::PacketResend packets;
    ZelCti::Endpoint from;
};

// Sends the blocks of a ring, packets again that were asked for, and test packets. Thread-bound;
// the time is told to it, so that it sleeps nowhere but where the socket has no room. Allocates
// nothing for a block.
class StreamSender {
  public:
    using Clock = Pacer::Clock;
    using NetworkSource = std::function<std::shared_ptr<const NetworkSettings>()>;

    // `network` is asked for the quirks and faults at the begin of each block and of each request.
    StreamSender(Camera& camera, uint32_t address, NetworkSource network);

    uint16_t Port() const { return socket_.Port(); }

    // The channel is opened over an empty ring, which outlives its use. Block ids begin anew.
    void Open(BlockRing& ring);

    // Takes a request; only when there is none under way.
    bool IsResending() const { return request_.has_value(); }
    void Resend(const ResendRequest& request);

    // The camera begins to acquire: some send the leader of the first block now.
    void BeginAcquisition() { isBeginning_ = true; }

    // The packet leaves with one of the next steps.
    void FireTestPacket(const TestPacket& packet, Clock::time_point now);

    // Sends what is due, some packets at most. Returns when there is more to send: now or earlier
    // for at once.
    Clock::time_point Step(const StreamSettings& settings, Clock::time_point now);

    const StreamStatistics& Statistics() const { return statistics_; }

  private:
    struct WaitingTest {
        Clock::time_point due;
        TestPacket packet;
    };
    struct PacketPlace {
        uint64_t blockId;
        uint32_t packetId;
    };

    void SendTestPackets(Clock::time_point now);
    void SendResent(const StreamSettings& settings, Clock::time_point now);
    void Answer(const Block* block, uint32_t packetId);
    void AddResent(const Block& block, uint32_t packetId);
    void AddRefused(const Block* block, uint32_t packetId, ZelCti::Gev::Status reason);
    bool IsWithinResendLimit(Clock::time_point now);

    void AnnounceBlock(const StreamSettings& settings);
    uint64_t NextId(const StreamSettings& settings, uint64_t numLost) const;
    void BeginBlock(const StreamSettings& settings);
    void SendBlock(const StreamSettings& settings, Clock::time_point now);
    void AddNextPacket();
    void AddLatePacket();
    void FinishBlock(const StreamSettings& settings);

    PacketBytes& Add(const Block& block, uint32_t packetId, const ZelCti::Gvsp::Header& header);
    void SetSocket(bool dontFragment, const NetworkSettings& network);
    void Flush(const ZelCti::Endpoint& to);
    bool HasRoom() const { return numPackets_ + 2 <= StreamSocket::kMaxPackets; }

    Camera& camera_;
    const NetworkSource networkSource_;
    StreamSocket socket_;
    Pacer pacer_;
    PacketFaults faults_;
    StreamStatistics statistics_;

    // The packets that are sent next.
    size_t numPackets_ = 0;
    std::array<PacketBytes, StreamSocket::kMaxPackets> packets_;
    std::array<std::array<uint8_t, BlockPackets::kMaxHead>, StreamSocket::kMaxPackets> heads_{};

    BlockRing* ring_ = nullptr;
    std::shared_ptr<const NetworkSettings> network_;  // of the block that is being sent
    Block* block_ = nullptr;                          // that is being sent
    ZelCti::FrameInfo sent_;                          // its frame; keeps memory for parts
    std::optional<uint64_t> blockId_;
    std::optional<uint64_t> frameId_;
    std::optional<uint64_t> announcedTime_;  // of the next block, whose leader is gone
    std::optional<PacketPlace> late_;
    std::optional<PacketPlace> nextLate_;

    std::shared_ptr<const NetworkSettings> requestNetwork_;
    Clock::time_point resendSecond_;  // begin of the second that is counted
    std::optional<ResendRequest> request_;

    std::deque<WaitingTest> testPackets_;
    std::array<uint8_t, kMaxPacketSize> testPacket_{};
    uint32_t numTestPackets_ = 0;  // since the channel was opened

    uint32_t numResentInSecond_ = 0;
    uint16_t flags_ = 0;             // of the headers of the block
    bool isBeginning_ = false;       // the acquisition
    bool isRefusing_ = false;        // blocks until the channel is closed
    bool sendsStatusCodes_ = false;  // in answers
    bool wasIdle_ = true;
};

}  // namespace ZelSim
