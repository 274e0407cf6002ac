// A camera, a bad network and a receiver in virtual time.
#pragma once

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <map>
#include <memory>
#include <queue>
#include <random>
#include <vector>

#include "producers/gigevision/stream/blockreceiver.h"
#include "producers/simulator/gige/stream/blockpackets.h"
#include "tests/wire/bytes.h"

namespace GevTest {

using std::chrono::microseconds;
using std::chrono::milliseconds;
using WireTest::Bytes;
using WireTest::ViewOf;
using ZelGev::Duration;
using ZelGev::Time;

// Also for fuzzers, which have no test framework.
inline void Require(bool condition, const char* what) {
    if (condition) return;
    std::fprintf(stderr, "%s\n", what);
    std::abort();
}

struct DeliveredFrame {
    ZelCti::FrameInfo info;
    Bytes data;  // of the whole buffer
};

// Buffers of a client. Whoever gives one back that is not taken is found out.
class Buffers final : public ZelCti::BufferQueue {
  public:
    Buffers(size_t count, size_t size) {
        for (size_t i = 0; i < count; ++i)
            all_.push_back(std::make_unique<Memory>(size));
        input_.reserve(count);
        kept_.reserve(count);
        for (const auto& buffer : all_)
            input_.push_back(buffer.get());
    }

    bool HasInput() const override { return !input_.empty(); }
    ZelCti::FrameBuffer* Take(bool mustBeOne) override {
        if (input_.empty()) {
            numUnderruns += mustBeOne ? 1U : 0U;
            return nullptr;
        }
        Memory* const buffer = input_.front();
        input_.erase(input_.begin());
        buffer->isTaken = true;
        return buffer;
    }
    void PutBack(ZelCti::FrameBuffer& buffer) override {
        input_.insert(input_.begin(), Release(buffer));
    }
    void Lose(ZelCti::FrameBuffer& buffer) override {
        ++numLost;
        PutBack(buffer);
    }
    void Deliver(ZelCti::FrameBuffer& buffer, const ZelCti::FrameInfo& frame) override {
        Memory* const memory = Release(buffer);
        Require(frame.sizeFilled <= memory->Size(), "a frame is larger than its buffer");
        for (const auto& part : frame.parts)
            Require(part.offset + part.dataSize <= memory->Size(), "a part leaves the buffer");
        ++numDelivered;
        if (onFrame) onFrame(frame, memory->bytes);
        (keepsFrames ? kept_ : input_).push_back(memory);
    }

    // The client queues what it kept.
    void QueueKept() {
        input_.insert(input_.end(), kept_.begin(), kept_.end());
        kept_.clear();
    }
    size_t NumTaken() const { return all_.size() - input_.size() - kept_.size(); }
    bool AreAllBack() const { return input_.size() + kept_.size() == all_.size(); }

    std::function<void(const ZelCti::FrameInfo&, const Bytes&)> onFrame;
    bool keepsFrames = false;
    size_t numDelivered = 0;
    size_t numLost = 0;
    size_t numUnderruns = 0;

  private:
    struct Memory final : ZelCti::FrameBuffer {
        explicit Memory(size_t size) : bytes(size, 0xEE) {}
        uint8_t* Base() const override { return bytes.data(); }
        size_t Size() const override { return bytes.size(); }
        mutable Bytes bytes;
        bool isTaken = false;
    };

    static Memory* Release(ZelCti::FrameBuffer& buffer) {
        auto* const memory = static_cast<Memory*>(&buffer);
        Require(memory->isTaken, "a buffer is given back that was not taken");
        memory->isTaken = false;
        return memory;
    }

    std::vector<std::unique_ptr<Memory>> all_;
    std::vector<Memory*> input_;
    std::vector<Memory*> kept_;
};

// Hands packets to a receiver as a reader of sockets does: it has the kernel write data where the
// next packets are predicted, and moves away what does not belong there.
class Reader {
  public:
    void Read(ZelGev::BlockReceiver& receiver, std::vector<Bytes> packets, Time now) {
        receiver.Predict(prediction_, packets.size());
        std::vector<uint8_t*> places(packets.size(), nullptr);
        for (size_t i = 0; i < packets.size(); ++i) {
            const size_t header = HeaderSize(packets[i]);
            uint8_t* const place = i < prediction_.count ? prediction_.places[i] : nullptr;
            if (place == nullptr || header >= packets[i].size()) continue;
            const size_t data = packets[i].size() - header;
            memcpy(place, &packets[i][header], std::min(data, prediction_.dataSize));
            if (data <= prediction_.dataSize && IsPredicted(packets[i], i)) places[i] = place;
        }
        for (size_t i = 0; i < packets.size(); ++i) {
            const ZelCti::ByteView packet = ViewOf(packets[i]);
            const size_t header = HeaderSize(packets[i]);
            ZelCti::ByteView data = packet.From(header);
            if (places[i] != nullptr) data.data = places[i];
            receiver.OnPacket(packet.Sub(0, header), data, now);
            if (places[i] != nullptr) ++numInPlace;
        }
    }

    size_t numInPlace = 0;

  private:
    static size_t HeaderSize(const Bytes& packet) {
        if (packet.size() < 5) return packet.size();
        const auto format = static_cast<ZelCti::Gvsp::PacketFormat>(packet[4] & 0x0F);
        return std::min(packet.size(), ZelCti::Gvsp::HeaderSize((packet[4] & 0x80) != 0) +
                                           ZelCti::Gvsp::PrefixSize(format));
    }
    bool IsPredicted(const Bytes& bytes, size_t index) const {
        const auto packet = ZelCti::Gvsp::DecodePacket(ViewOf(bytes));
        return packet && packet->header.extended == prediction_.extended &&
               packet->header.format == prediction_.format &&
               packet->header.blockId == prediction_.blockId &&
               packet->header.packetId == prediction_.firstPacket + index;
    }

    ZelGev::Prediction prediction_;
};

// What a network does to packets; chances are of 1.
struct BadNetwork {
    double loss = 0;
    double resentLoss = 0;
    double duplicates = 0;
    double bursts = 0;  // of losses
    size_t burstLength = 50;
    size_t reorder = 0;      // places by which packets may be late
    size_t socketSize = 90;  // packets that wait while the receiver does not run
    Duration stall{};        // the receiver stands still so long
    Duration stallPeriod = milliseconds(50);
};

// A camera that sends the packets of blocks with a fixed distance, and remembers the latest blocks.
class VirtualStream {
  public:
    VirtualStream(Buffers& buffers, const ZelGev::ReceptionSettings& settings,
                  const BadNetwork& network, uint32_t seed = 1)
        : receiver_(buffers, settings, [this](const auto& request) { Answer(request); }),
          network_(network),
          random_(seed) {}
    ~VirtualStream() { receiver_.Stop(true); }

    ZelGev::BlockReceiver& Receiver() { return receiver_; }
    Time Now() const { return now_; }
    const ZelGev::StreamStatistics& Statistics() const { return receiver_.Statistics(); }
    size_t NumInPlace() const { return reader_.numInPlace; }

    // What the camera sends next, and remembers.
    void Send(uint64_t blockId, std::vector<Bytes> packets) {
        for (const Bytes& packet : packets) {
            sendTime_ += packetTime;
            Carry(packet, network_.loss, sendTime_ + delay);
        }
        memory_[blockId] = std::move(packets);
        if (memory_.size() > numRemembered) memory_.erase(memory_.begin());
    }
    // The camera remembers, but does not send.
    void Swallow(uint64_t blockId, std::vector<Bytes> packets) {
        memory_[blockId] = std::move(packets);
    }
    void Pause(Duration time) { sendTime_ += time; }

    // Lets the time pass until what was sent so far has arrived, or for longer.
    void Run(Duration longer = {}) {
        const Time end = sendTime_ + longer;
        while (Step(end)) {
        }
        now_ = std::max(now_, end);
        sendTime_ = std::max(sendTime_, now_);
    }

    size_t numRemembered = 4;
    Duration packetTime = microseconds(12);
    Duration delay = microseconds(100);
    bool isMute = false;  // does not answer
    size_t numRequests = 0;
    std::vector<ZelCti::Gvcp::PacketResend> requests;
    std::function<bool(const ZelCti::Gvcp::PacketResend&, uint32_t)> refuses;
    ZelCti::Gev::Status reason = ZelCti::Gev::Status::PacketUnavailable;

  private:
    struct Arrival {
        Time time;
        uint64_t order;
        Bytes packet;
        bool operator<(const Arrival& other) const {
            return std::pair(other.time, other.order) < std::pair(time, order);
        }
    };

    bool Happens(double chance) {
        return chance > 0 && std::uniform_real_distribution<double>(0, 1)(random_) < chance;
    }

    void Carry(const Bytes& packet, double loss, Time time) {
        if (burstLeft_ == 0 && Happens(network_.bursts)) burstLeft_ = network_.burstLength;
        if (burstLeft_ != 0) {
            --burstLeft_;
            return;
        }
        if (Happens(loss)) return;
        if (network_.reorder != 0 && Happens(0.05))
            time += packetTime * static_cast<int>(1 + random_() % network_.reorder);
        arrivals_.push({time, numCarried_++, packet});
        if (Happens(network_.duplicates))
            arrivals_.push({time + packetTime * 3, numCarried_++, packet});
    }

    void Answer(const ZelCti::Gvcp::PacketResend& request) {
        ++numRequests;
        requests.push_back(request);
        if (isMute || Happens(network_.resentLoss)) return;
        const auto block = memory_.find(request.blockId);
        Time time = now_ + delay;
        for (uint64_t id = request.firstPacket; id <= request.lastPacket; ++id) {
            time += packetTime / 2;
            const bool isThere = block != memory_.end() && id < block->second.size();
            if (isThere && !(refuses && refuses(request, static_cast<uint32_t>(id)))) {
                Bytes packet = block->second[id];
                packet[0] = 0x01;
                Carry(packet, network_.resentLoss, time);
                continue;
            }
            ZelCti::Gvsp::Header asked;
            asked.extended = request.extendedIds;
            asked.blockId = request.blockId;
            asked.packetId = static_cast<uint32_t>(id);
            Bytes packet(ZelCti::Gvsp::kExtendedHeaderSize);
            packet.resize(ZelCti::Gvsp::EncodeHeader({packet.data(), packet.size()},
                                                     ZelCti::Gvsp::RefusedHeader(asked, reason)));
            Carry(packet, network_.resentLoss, time);
            if (!isThere) return;
        }
    }

    // Whether the receiver runs, and when it will.
    Time NextRun(Time time) const {
        if (network_.stall == Duration{}) return time;
        const Duration phase = time.time_since_epoch() % network_.stallPeriod;
        return phase < network_.stall ? time + (network_.stall - phase) : time;
    }

    bool Step(Time end) {
        const Time arrival = arrivals_.empty() ? Time::max() : arrivals_.top().time;
        const Time deadline = receiver_.NextDeadline();
        const Time next = std::min(arrival, deadline);
        if (next > end) return false;
        now_ = NextRun(std::max(now_, next));
        std::vector<Bytes> waiting;
        while (!arrivals_.empty() && arrivals_.top().time <= now_) {
            if (waiting.size() < network_.socketSize) waiting.push_back(arrivals_.top().packet);
            arrivals_.pop();
        }
        const bool isDue = receiver_.NextDeadline() <= now_;
        if (isDue) receiver_.OnTimer(now_);
        Require(!isDue || receiver_.NextDeadline() > now_ || ++numIdle_ < 1000, "it never rests");
        if (receiver_.NextDeadline() > now_) numIdle_ = 0;
        constexpr size_t kMostAtOnce = 16;
        for (size_t i = 0; i < waiting.size(); i += kMostAtOnce) {
            const auto begin = waiting.begin() + static_cast<ptrdiff_t>(i);
            const size_t count = std::min(kMostAtOnce, waiting.size() - i);
            reader_.Read(receiver_, {begin, begin + static_cast<ptrdiff_t>(count)}, now_);
        }
        return true;
    }

    ZelGev::BlockReceiver receiver_;
    BadNetwork network_;
    std::mt19937 random_;
    Reader reader_;
    std::priority_queue<Arrival> arrivals_;
    std::map<uint64_t, std::vector<Bytes>> memory_;
    Time now_{};
    Time sendTime_{};
    uint64_t numCarried_ = 0;
    size_t burstLeft_ = 0;
    int numIdle_ = 0;
};

// A Mono8 image with content of its own.
inline ZelCti::FrameInfo ImageFrame(size_t width, size_t height, uint64_t timestamp) {
    ZelCti::FrameInfo frame;
    frame.timestamp = timestamp;
    frame.pixelFormat = 0x01080001;
    frame.width = width;
    frame.height = frame.deliveredHeight = height;
    frame.sizeFilled = width * height;
    return frame;
}
inline Bytes Content(size_t size, uint64_t seed) {
    static const Bytes kRandom = [] {
        Bytes bytes(size_t{1} << 23);
        uint64_t state = 1;
        for (uint8_t& byte : bytes) {
            state = state * 6364136223846793005U + 1442695040888963407U;
            byte = static_cast<uint8_t>(state >> 56);
        }
        return bytes;
    }();
    const size_t begin = seed * 7919 % (kRandom.size() - size);
    return {&kRandom[begin], &kRandom[begin] + size};
}

// The packets of a frame, as the simulated camera cuts it.
inline std::vector<Bytes> PacketsOf(const ZelCti::FrameInfo& frame, const Bytes& content,
                                    uint64_t blockId, const ZelSim::BlockForm& form) {
    const ZelSim::BlockPackets block(frame, ViewOf(content), blockId, form);
    std::vector<Bytes> packets;
    for (uint32_t id = 0; id < block.Count(); ++id) {
        std::array<uint8_t, ZelSim::BlockPackets::kMaxHead> head;
        const auto packet = block.Packet(id, block.HeaderOf(id), {head.data(), head.size()});
        Bytes bytes;
        for (const ZelCti::ByteView piece : packet.pieces)
            bytes.insert(bytes.end(), piece.data, piece.data + piece.size);
        packets.push_back(std::move(bytes));
    }
    return packets;
}

}  // namespace GevTest
