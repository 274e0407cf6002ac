// Receiving the frames of a stream.
#pragma once

#include <atomic>
#include <cstdint>
#include <memory>
#include <optional>
#include <thread>

#include "producers/gigevision/base/devicelink.h"
#include "producers/gigevision/stream/blockreceiver.h"
#include "producers/gigevision/stream/packetreader.h"
#include "producers/gigevision/stream/streamsocket.h"

namespace ZelGev {

// A thread that receives packets and makes frames of them, while it is started:
//
//   stopped ──Start──> receiving ──number of frames, loss of the camera──> finished
//   receiving, finished ──Stop──> stopped
//
// Start and Stop are thread-bound, the rest is thread-safe.
class Reception final : private PacketSink {
  public:
    // Where packets come from; the socket outlives its use.
    struct Source {
        const StreamSocket* socket = nullptr;
        std::unique_ptr<PacketReader> reader;
        uint16_t port = 0;      // from which the camera sends; 0: not known
        size_t packetSize = 0;  // IP datagrams
    };

    // Both outlive the reception.
    Reception(DeviceLink& link, ZelCti::BufferQueue& buffers);
    ~Reception();

    // Throws GC_ERR_IO when the camera is lost.
    void Start(uint64_t numFrames, const ReceptionSettings& settings, Source source);

    // Waits for a frame that is on its way, unless `kill`.
    void Stop(bool kill);

    // Lets a Stop of another thread wait no longer.
    void Kill() noexcept;

    bool IsGrabbing() const noexcept { return isGrabbing_.load(); }
    bool HasRealTimePriority() const { return hasRealTimePriority_.load(); }

    // As was last seen: how packets come, and how many found no room on this machine.
    ReceiveMethod Method() const { return method_.load(); }
    uint64_t NumDropped() const { return numDropped_; }
    const StreamStatistics& Statistics() const { return receiver_.Statistics(); }

  private:
    enum class Order : uint8_t { Run, Stop, Kill };

    void Wake() const noexcept;
    void Run();
    void ReceiveFrames();
    bool IsOver(bool isMore);
    void LookAround();
    void Report();
    void WaitForWork();
    Duration Nap(Duration passed, size_t numNew) const;
    void Poll();
    bool Receive();
    void LearnSourcePort();
    void Ask(const ZelCti::Gvcp::PacketResend& packets);

    void Predict(Prediction& next, size_t atMost) const override;
    void OnPacket(ZelCti::ByteView header, ZelCti::ByteView data) override;

    DeviceLink& link_;
    const int wake_;  // an eventfd
    std::atomic<Order> order_{Order::Run};
    std::atomic<bool> isGrabbing_{false};
    std::atomic<bool> hasRealTimePriority_{false};
    std::atomic<ReceiveMethod> method_{ReceiveMethod::Singly};
    Counter numDropped_;

    // Belong to the thread while there is one.
    BlockReceiver receiver_;
    Source source_;
    uint16_t requestId_ = 0;
    uint64_t numDroppedHere_ = 0;  // since the start
    size_t mostInNap_ = 0;         // packets
    size_t numNew_ = 0;            // packets since the latest wait
    Time lastWait_{};              // when it was begun
    bool mayWait_ = false;         // the reader
    bool isLate_ = false;          // the time that is known
    Time now_{};
    Time lastPacket_{};
    Time nextOpening_{};  // of the firewall
    Time nextLook_{};
    std::optional<Time> stopTime_;  // when a Stop waits no longer
    uint64_t numEndedAtStop_ = 0;   // frames
    bool isLost_ = false;

    std::thread thread_;
};

}  // namespace ZelGev
