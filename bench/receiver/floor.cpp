#include <algorithm>
#include <array>
#include <cstdio>
#include <stdexcept>
#include <sys/socket.h>
#include <sys/uio.h>
#include <unistd.h>

#include "bench/network.h"
#include "bench/receiver/receiver.h"
#include "producers/wire/gvsp.h"

namespace BenchReceiver {

namespace {

namespace Gvsp = ZelCti::Gvsp;

using Clock = std::chrono::steady_clock;

constexpr uint32_t kPacketOverhead = 28 + Gvsp::kHeaderSize;  // IP and UDP
constexpr size_t kFrame = size_t{8} << 20;                    // more than any frame here
constexpr size_t kFrames = 8;  // as many buffers as the application of the library has
constexpr uint32_t kAcquisitionStart = 0x12204;
constexpr uint32_t kAcquisitionStop = 0x12208;

class BareReceiver {
  public:
    explicit BareReceiver(const Options& options)
        : socket_(socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0)),
          dataSize_(options.packetSize - kPacketOverhead),
          memory_(kFrame * kFrames) {
        const int half = options.socketBuffer / 2;  // the kernel doubles it
        if (half != 0) setsockopt(socket_, SOL_SOCKET, SO_RCVBUF, &half, sizeof half);
        const timeval patience{0, 100000};
        setsockopt(socket_, SOL_SOCKET, SO_RCVTIMEO, &patience, sizeof patience);
        sockaddr_in address = Bench::NativeAddress({options.host, 0});
        socklen_t size = sizeof address;
        if (bind(socket_, reinterpret_cast<const sockaddr*>(&address), size) != 0 ||
            getsockname(socket_, reinterpret_cast<sockaddr*>(&address), &size) != 0)
            throw std::runtime_error("the socket cannot be bound");
        port_ = ntohs(address.sin_port);
    }
    ~BareReceiver() { close(socket_); }
    BareReceiver(const BareReceiver&) = delete;
    BareReceiver& operator=(const BareReceiver&) = delete;

    uint16_t Port() const { return port_; }
    const std::vector<Arrival>& Arrivals() const { return arrivals_; }
    uint64_t Packets() const { return packets_; }

    // One packet, to the place after the one before; and whether there was one.
    bool Receive() {
        std::array<uint8_t, Gvsp::kHeaderSize> head{};
        iovec pieces[] = {{head.data(), head.size()}, {Place(), dataSize_}};
        msghdr message{};
        message.msg_iov = pieces;
        message.msg_iovlen = 2;
        if (recvmsg(socket_, &message, 0) < 0) return false;
        ++packets_;
        const auto packet = Gvsp::DecodePacket({head.data(), head.size()});
        if (!packet) return true;
        if (packet->header.format == Gvsp::PacketFormat::Payload) {
            next_ = packet->header.packetId;
        } else if (packet->header.format == Gvsp::PacketFormat::Trailer) {
            arrivals_.push_back({packet->header.blockId, RealTime()});
            frame_ = (frame_ + 1) % kFrames;
            next_ = 0;
        }
        return true;
    }

  private:
    uint8_t* Place() {
        const size_t offset = std::min(next_ * dataSize_, kFrame - dataSize_);
        return memory_.data() + frame_ * kFrame + offset;
    }

    const int socket_;
    const size_t dataSize_;
    std::vector<uint8_t> memory_;
    uint16_t port_ = 0;
    size_t frame_ = 0;
    size_t next_ = 0;  // packet, as far as nothing is lost
    uint64_t packets_ = 0;
    std::vector<Arrival> arrivals_;
};

}  // namespace

void ReceiveBare(const Options& options) {
    constexpr std::chrono::milliseconds kHeartbeat(500);
    BareReceiver receiver(options);
    Bench::CameraControl control(options.camera);
    control.Take();
    control.OpenStream({options.host, receiver.Port()}, options.packetSize);
    control.Write(kAcquisitionStart, 1);

    const auto end = Clock::now() + std::chrono::duration<double>(options.seconds);
    auto heartbeat = Clock::now() + kHeartbeat;
    while (Clock::now() < end) {
        constexpr int kPackets = 64;  // without looking at the time
        for (int i = 0; i < kPackets && receiver.Receive(); ++i) {
        }
        if (Clock::now() < heartbeat) continue;
        heartbeat += kHeartbeat;
        control.SendHeartbeat();
    }
    control.Write(kAcquisitionStop, 1);
    while (receiver.Receive()) {
    }
    control.Release();
    WriteArrivals(options.arrivals, receiver.Arrivals());
    std::printf("frames=%zu\npackets=%llu\n", receiver.Arrivals().size(),
                static_cast<unsigned long long>(receiver.Packets()));
}

}  // namespace BenchReceiver
