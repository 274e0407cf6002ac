// The streams of GigE Vision cameras.
#pragma once

#include <cstdint>
#include <memory>
#include <mutex>
#include <optional>
#include <string>

#include "producers/gigevision/stream/linkshare.h"
#include "producers/gigevision/stream/reception.h"
#include "producers/gigevision/stream/streamchannel.h"
#include "producers/transport.h"

namespace ZelGev {

// A stream channel of an open camera. The channel is open as long as this object lives, as cameras
// may lock its registers before a start. A connection that only reads the camera receives what the
// camera sends to a multicast group, and nothing else.
class GevStream final : public ZelCti::StreamEngine {
  public:
    // Opens the channel, and looks whether packets of the camera's size arrive. Throws what the
    // link throws. The link and the buffers outlive the stream.
    GevStream(DeviceLink& link, uint32_t channel, ZelCti::BufferQueue& buffers);
    ~GevStream() override;

    const ZelCti::StreamInfo& Info() const override { return info_; }
    size_t PayloadSize() const override;
    void Start(uint64_t numFrames) override;
    void Stop(bool kill) override;
    void Kill() noexcept override { reception_.Kill(); }
    bool IsGrabbing() const noexcept override { return reception_.IsGrabbing(); }
    void OnInput() noexcept override {}
    void AddFeatures(ZelCti::FeatureTable& features) override;

  private:
    using Lock = std::lock_guard<std::mutex>;

    void Connect(uint32_t group);
    void Listen();
    uint64_t Bandwidth() const;

    // What features do.
    void SetMulticastGroup(uint32_t group);
    void Negotiate(bool on);
    void SetBufferSize(size_t size);
    void CheckStopped() const;
    void AddDestination(ZelCti::FeatureTable& features);
    void AddSocket(ZelCti::FeatureTable& features);
    void AddPolicy(ZelCti::FeatureTable& features);
    void AddStatistics(ZelCti::FeatureTable& features);

    DeviceLink& link_;
    const ZelCti::StreamInfo info_;
    mutable std::mutex mutex_;  // guards what follows, but for the reception
    StreamChannel channel_;
    std::unique_ptr<StreamSocket> socket_;  // null until a stream is listened to
    uint32_t group_ = 0;                    // 0: frames come to this machine only
    uint16_t sourcePort_ = 0;
    ReceptionSettings settings_;
    ReceiveMethod method_ = ReceiveMethod::Automatic;
    size_t bufferSize_ = StreamSocket::kDefaultBuffer;
    bool negotiates_ = false;
    uint32_t foundPacketSize_ = 0;  // by the last negotiation
    bool sharesFairly_ = false;
    std::optional<LinkShare> share_;  // while it runs
    bool isRunning_ = false;          // between Start and Stop
    uint64_t bytesAtStart_ = 0;
    Time startTime_{};
    Reception reception_;
};

}  // namespace ZelGev
