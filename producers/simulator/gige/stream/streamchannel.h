// A stream channel of a camera on a network.
#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <mutex>
#include <thread>

#include "producers/server/base/waitpoint.h"
#include "producers/simulator/gige/stream/streamsender.h"

namespace ZelSim {

// Sends the frames of the camera to an application, as its registers say:
//
//   closed ──SetPort(port)──> open ──SetPort(0)──> closed
//
// An open channel is a receiver of the camera's acquisition, and has a thread that sends. Changes
// of other settings take effect with the next block. Thread-safe. No operation needs the registers
// of the camera, so all may be called with these locked; no callback comes from here.
class StreamChannel {
  public:
    using NetworkSource = StreamSender::NetworkSource;

    // Sends from this address of the machine and a port of its own. The camera outlives the
    // channel. Throws as UdpSocket.
    StreamChannel(Camera& camera, uint32_t address, NetworkSource network);
    ~StreamChannel();
    StreamChannel(const StreamChannel&) = delete;
    StreamChannel& operator=(const StreamChannel&) = delete;

    uint16_t SourcePort() const { return sender_.Port(); }

    // SCDA; 0: nothing is sent. A multicast address goes to the camera's own network only.
    void SetDestination(uint32_t address);

    // The port in SCP. Not 0 opens the channel, or sends what follows there; throws GC_ERR_IO for a
    // camera that is unplugged. 0 closes it: no packet leaves after this returns, and the camera's
    // acquisition ends if nobody else receives its frames.
    void SetPort(uint16_t port);
    bool IsOpen() const;

    // SCPS, whose fire bit is ignored. Returns what the register reads then: a size within the
    // limits of the camera, or the one before if the camera refuses this one.
    uint32_t SetPacketSize(uint32_t scps);

    // A test packet of the size in SCPS, if the channel is open and has a destination.
    void FireTestPacket();

    void SetDelay(uint32_t ticks);                  // SCPD
    void SetConfiguration(uint32_t configuration);  // SCCFG, of which the device checks the bits
    void SetExtendedIds(bool extendedIds);
    void SetStatusCodes(bool statusCodes);  // those of 1.1, in answers to resend requests

    // Sends packets again soon. Requests to a closed channel, and too many at a time, get lost.
    void Resend(const ZelCti::Gvcp::PacketResend& packets, const ZelCti::Endpoint& from);

    StreamStatistics Statistics() const;

  private:
    static constexpr size_t kMaxRequests = 256;     // that wait
    static constexpr size_t kMaxTestPackets = 256;  // the same

    void Open();
    void Close();
    void Run();
    void Wake();
    void OnAcquisitionBegin();
    template <typename Change>
    void ChangeSettings(const Change& change);

    Camera& camera_;
    const NetworkSource network_;
    std::mutex portMutex_;  // held while the channel is opened or closed; taken before all others
    std::unique_ptr<BlockRing> ring_;     // guarded by portMutex_; there while the channel is open
    std::unique_ptr<Receiver> receiver_;  // guarded by portMutex_
    std::thread thread_;                  // guarded by portMutex_
    StreamSender sender_;                 // the thread's while there is one

    mutable std::mutex mutex_;  // guards what follows; no other is taken under it
    ZelCti::WaitPoint wake_{mutex_};
    uint64_t numWakes_ = 0;
    bool isOpen_ = false;
    StreamSettings settings_;
    StreamStatistics statistics_;
    std::vector<TestPacket> testPackets_;  // to be fired
    bool isBeginning_ = false;             // the acquisition
    std::array<ResendRequest, kMaxRequests> requests_;
    size_t firstRequest_ = 0;
    size_t numRequests_ = 0;
};

}  // namespace ZelSim
