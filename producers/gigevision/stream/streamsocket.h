// The socket that a stream comes to.
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <string>

#include "producers/sockets/endpoint.h"
#include "producers/wire/byteview.h"

namespace ZelGev {

constexpr bool IsMulticast(uint32_t address) {
    return address >> 28 == 0xE;
}

// A UDP socket of IPv4, never connected: a camera that refuses a datagram would end the reception.
// Only what comes from the camera gets in. Reentrant; Send is thread-safe.
class StreamSocket {
  public:
    // Where a stream is received.
    struct Place {
        uint32_t address = 0;  // of this machine
        uint32_t camera = 0;   // whose packets get in; 0: those of anybody

        // A multicast group, which is joined at `address`, and its port; others may receive it,
        // too.
        uint32_t group = 0;
        uint16_t port = 0;  // 0: any free one
    };

    // Of a call that receives and does not say that it must not wait.
    static constexpr std::chrono::microseconds kLongestWait{4000};

    static constexpr size_t kDefaultBuffer = 32 << 20;
    static constexpr size_t kMaxBuffer = 1 << 30;

    // Throws GC_ERR_IO, or GC_ERR_RESOURCE_IN_USE for a port that another program uses.
    explicit StreamSocket(const Place& place);
    ~StreamSocket();
    StreamSocket(const StreamSocket&) = delete;
    StreamSocket& operator=(const StreamSocket&) = delete;

    int Descriptor() const { return descriptor_; }
    uint16_t Port() const;

    // How much memory waiting packets may take, with what the kernel needs for itself: twice the
    // data of large packets. The kernel gives less than was asked for where a user has no rights
    // for more.
    void SetBufferSize(size_t wanted);
    size_t BufferSize() const;

    // How many packets found no room since the socket was made, modulo 2^32; those that did not
    // come from the camera count as well.
    uint32_t NumDropped() const;

    // What to do for a buffer as large as was wanted; empty when it is.
    std::string BufferAdvice() const;

    // Whether the kernel may join packets that come one after the other to one datagram.
    void JoinPackets(bool on) const;

    // Throws away all that comes, as somebody else receives it, or lets it in again. The port stays
    // ours either way. False when it cannot.
    bool SetClosed(bool closed) const;

    // False when it could not be sent: datagrams may get lost.
    bool Send(const ZelCti::Endpoint& to, ZelCti::ByteView datagram) const;

    // Lets a firewall that knows only answers let in what comes from there, as if it was the answer
    // to a datagram of ours. Nothing for port 0.
    void OpenFirewall(const ZelCti::Endpoint& camera) const;

    // Throws away what has arrived.
    void Drain() const;

  private:
    void Prepare(const Place& place);
    void Join(const Place& place) const;

    const int descriptor_;
    const uint32_t camera_;
    size_t wantedBuffer_ = 0;
};

}  // namespace ZelGev
