// The registers of a stream channel.
#pragma once

#include <cstdint>

#include "producers/gigevision/base/devicelink.h"
#include "producers/gigevision/stream/packetsizesearch.h"
#include "producers/gigevision/stream/streamsocket.h"
#include "producers/wire/bootstrap.h"
#include "producers/wire/byteorder.h"

namespace ZelGev {

// Lets the camera send a stream to a socket:
//
//   closed ──Open──> open ──Close──> closed
//
// A connection that does not control the camera writes nothing: Open and the packet size fail
// there. Operations wait for the camera, and throw as DeviceLink. Thread-bound.
class StreamChannel {
  public:
    StreamChannel(DeviceLink& link, uint32_t index) : link_(link), index_(index) {}

    // What a predecessor left is closed first, as some cameras send nothing otherwise. On failure
    // the channel is closed.
    void Open(const ZelCti::Endpoint& destination);

    // Throws away what has come, for a new start. Closes the channel before and opens it again,
    // which some cameras need before they send once more; not if the camera's settings are locked.
    void Renew(const StreamSocket& socket);

    // Also of a camera that does not answer any more.
    void Close() noexcept;

    // Where the camera is told to send to.
    ZelCti::Endpoint Destination() const;

    // The port from which the stream comes; 0: the camera does not say.
    uint16_t SourcePort() const;

    // As the camera has it.
    uint32_t PacketSize() const;
    ZelCti::ByteOrder PixelOrder() const;

    // Looks by test packets to the socket, whose port is the open channel's, which packet size
    // reaches it, and sets it. Returns whether a test packet arrived; without any, the size stays.
    bool FindPacketSize(PacketSizeSearch::Aim aim, const StreamSocket& socket);

  private:
    struct Test {
        bool isRefused = false;
        uint32_t size = 0;  // that the camera made of the one asked for
        bool arrived = false;
    };

    uint32_t Read(const ZelCti::Gev::Register& reg) const;
    void Write(const ZelCti::Gev::Register& reg, uint32_t value);
    bool IsLocked();
    Test TestSize(uint32_t size, uint32_t flags, const StreamSocket& socket, bool isPatient);

    DeviceLink& link_;
    const uint32_t index_;
    ZelCti::Endpoint destination_;  // port 0 while the channel is closed
};

}  // namespace ZelGev
