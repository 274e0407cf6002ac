// Frames from the packets of a stream.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>

#include "producers/gigevision/stream/openblock.h"
#include "producers/gigevision/stream/prediction.h"
#include "producers/gigevision/stream/receptionsettings.h"
#include "producers/gigevision/stream/resendpolicy.h"
#include "producers/gigevision/stream/streamstatistics.h"
#include "producers/transport.h"
#include "producers/wire/gvcpcommands.h"
#include "producers/wire/gvsp.h"

namespace ZelGev {

// Puts the packets of one stream into buffers, and has the camera send again what was lost. It is
// given packets and the time, and has no socket, thread or clock. Frames are delivered in the order
// of their ids; a frame that lacks packets holds back its successors until it is complete or given
// up. The id of a frame is that of its block; 16-bit ids go on counting beyond 65,535.
//
// Nothing that a camera sends makes it write outside a buffer, work without bound, or need more
// memory than the buffers do. Memory for the packets of a block is allocated when a larger block
// than any before begins.
//
// Thread-bound, except for Statistics.
class BlockReceiver {
  public:
    using AskForPackets = std::function<void(const ZelCti::Gvcp::PacketResend&)>;

    // `queue` outlives the receiver. `ask` sends a request to the camera, which may be lost; it is
    // called within OnPacket and OnTimer.
    BlockReceiver(ZelCti::BufferQueue& queue, const ReceptionSettings& settings, AskForPackets ask);
    BlockReceiver(const BlockReceiver&) = delete;
    BlockReceiver& operator=(const BlockReceiver&) = delete;

    // Before Start. The packet size register; packets may be smaller or larger all the same.
    void SetPacketSize(size_t ipSize);
    // Ticks a second of the timestamps; 0: not known, and frames get the time of the host.
    void SetTickFrequency(uint64_t frequency) { tickFrequency_ = frequency; }
    void SetSettings(const ReceptionSettings& settings);

    // So many frames shall be delivered. Whatever block comes first is the first one.
    void Start(uint64_t numFrames);

    // Valid until the next other operation.
    void Predict(Prediction& prediction, size_t atMost) const;

    // `header` is that of the packet with the prefix of its format, `data` is what follows. Data
    // that lie at the place of their packet are not copied; they never lie at that of another.
    void OnPacket(ZelCti::ByteView header, ZelCti::ByteView data, Time now);

    // When OnTimer is due; Time::max(): nothing is awaited.
    Time NextDeadline() const { return deadline_; }
    void OnTimer(Time now);

    // How many packets of the newest frame are still to come, by its leader; 0: not known.
    size_t NumAhead() const;
    // Between the packets of the last frame of which none had to be asked for; 0 before one.
    Duration PacketInterval() const { return packetInterval_; }
    // Whether a frame is on its way into a buffer.
    bool HasOpenFrames() const { return numOpen_ != 0; }
    // Whether the frames of Start are delivered.
    bool IsFinished() const { return numLeft_ == 0; }

    // Ends all frames as they are; incomplete ones are delivered only if `kill` is false and the
    // settings say so. All buffers are back in the queue. To be called before the destruction.
    void Stop(bool kill);

    const StreamStatistics& Statistics() const { return statistics_; }

  private:
    static constexpr size_t kMostOpen = 32;

    // A block on its way, and how its packets are asked for.
    struct Slot {
        OpenBlock block;
        // When the next block began. Until then, the rest may just take its time.
        Time supersededAt = Time::max();
        bool isRefused = false;  // a packet is lost for good: the others need not be asked for
        bool hasEnd = false;     // the camera has nothing behind the frontier
        uint64_t probe = 1;      // packets to be asked for after the next silence
        uint64_t numAsked = 0;
        unsigned numReprieves = 0;  // more time that it got

        bool IsSuperseded() const { return supersededAt != Time::max(); }
    };

    // The newest block that began, with or without a buffer.
    struct Newest {
        uint64_t id = 0;
        bool isExtended = false;
        uint64_t frameId = 0;
        uint64_t timestamp = 0;  // of its leader, if that came; or else 0
    };

    void TakeOther(ZelCti::ByteView header, ZelCti::ByteView data, Time now);
    void TakeContent(const ZelCti::Gvsp::Packet& packet, const ZelCti::Gvsp::PayloadPrefix& prefix,
                     Time now);
    void TakePacket(Slot& slot, const ZelCti::Gvsp::Packet& packet,
                    const ZelCti::Gvsp::PayloadPrefix& prefix, Time now);
    void TakeRefusal(const ZelCti::Gvsp::Header& header, Time now);

    Slot* Find(const ZelCti::Gvsp::Header& header);
    bool IsRestart(const ZelCti::Gvsp::Header& header, uint64_t timestamp, bool isOpen) const;
    bool IsStray(const ZelCti::Gvsp::Header& header) const;
    Slot* Begin(const ZelCti::Gvsp::Header& header, uint64_t timestamp, Time now);
    void OpenSkipped(const ZelCti::Gvsp::Header& next, uint64_t numSkipped, Time now);
    Slot& Open(const ZelCti::Gvsp::Header& header, uint64_t frameId, size_t place,
               ZelCti::FrameBuffer& buffer, Time now);

    void ReserveFor(size_t size);
    bool MayAsk(const Slot& slot) const;
    bool IsOver(const Slot& slot, Time now) const;
    Time OverDue(const Slot& slot) const;
    Time TailDue(const Slot& slot) const;
    static bool WasSent(const Slot& slot, uint32_t packetId);
    uint64_t ExpectedEnd(const Slot& slot) const;
    void LookForTail(Slot& slot, Time now);
    void LookForMissing(Slot& slot, Time now);
    bool Ask(Slot& slot, size_t gap, Time now);
    void GiveUp(Slot& slot, size_t gap);
    uint64_t CountAwaited(Time now) const;
    bool Reprieve(Slot& slot, Time now);
    bool ReprieveAll(Time now);

    static bool HasEnded(const Slot& slot);
    void CloseWhatHasEnded();
    void CloseWhatIsOver(Time now);
    void CloseOldest(bool isKilled);
    void Deliver(Slot& slot, bool isWhole);
    void Drop(Slot& slot, bool isKilled);
    void PutAllBack();
    void FindDeadline();
    void HaveTimerBy(Time time) { deadline_ = std::min(deadline_, time); }

    ZelCti::BufferQueue& queue_;
    ReceptionSettings settings_;
    const AskForPackets ask_;
    ResendPolicy policy_;
    Duration orderDelay_{};  // as was found to be enough
    PacketSize packetSize_;
    size_t reservedSize_ = 0;  // of buffers for which slots have memory
    uint64_t tickFrequency_ = 0;
    uint64_t numLeft_ = 0;  // frames to be delivered

    std::array<Slot, kMostOpen> slots_;
    std::array<Slot*, kMostOpen> open_{};  // the first numOpen_, in the order of their ids
    size_t numOpen_ = 0;

    std::optional<Newest> newest_;
    Duration packetInterval_{};
    uint32_t lastTrailer_ = 0;  // of the latest whole block: others may have as many packets
    Time lastPacket_{};
    Time deadline_ = Time::max();  // or somewhat before it

    ZelCti::FrameInfo frame_;  // keeps memory for parts
    StreamStatistics statistics_;
};

}  // namespace ZelGev
