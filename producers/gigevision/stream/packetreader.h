// How packets get from a network to who makes frames of them.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>

#include "producers/gigevision/stream/prediction.h"
#include "producers/wire/byteview.h"
#include "producers/wire/gvsppackets.h"

namespace ZelGev {

// Who gets packets.
class PacketSink {
  public:
    virtual void Predict(Prediction& next, size_t atMost) const = 0;

    // `header` is the packet's header with its prefix, `data` the rest; a packet that is too short
    // for its header has no data. Data that lie at the place that was predicted for this packet are
    // where they belong; others are not in the place of another packet. Both views end with the
    // call.
    virtual void OnPacket(ZelCti::ByteView header, ZelCti::ByteView data) = 0;

  protected:
    ~PacketSink() = default;  // whoever has it
};

// What a packet's header says of what follows it. The packet has at least kLeastPacket bytes.
struct PacketKind {
    bool extended;
    ZelCti::Gvsp::PacketFormat format;
};
constexpr size_t kLeastPacket = 5;
inline PacketKind KindOf(ZelCti::ByteView packet) {
    constexpr uint8_t kExtended = 0x80;
    constexpr uint8_t kFormat = 0x0F;
    const uint8_t byte = packet.U8(kLeastPacket - 1);
    return {(byte & kExtended) != 0, static_cast<ZelCti::Gvsp::PacketFormat>(byte & kFormat)};
}

// Hands over a packet that lies in one piece.
inline void HandOver(PacketSink& sink, ZelCti::ByteView packet) {
    size_t header = packet.size;
    if (packet.size >= kLeastPacket) {
        const PacketKind kind = KindOf(packet);
        header = std::min(packet.size, ZelCti::Gvsp::HeaderSize(kind.extended) +
                                           ZelCti::Gvsp::PrefixSize(kind.format));
    }
    sink.OnPacket(packet.Sub(0, header), packet.From(header));
}

enum class ReceiveMethod {
    Automatic,  // the one that fits
    Singly,     // from the socket, many packets with one call, each by itself
    Joined,     // from the socket, packets that the kernel has joined
    Ring,       // from memory that the kernel fills; it needs rights
};

// A way of receiving. Thread-bound.
class PacketReader {
  public:
    virtual ~PacketReader() = default;

    // Hands over packets that have arrived; whether it waits for the first one, for some
    // milliseconds at most, is up to the reader if it `mayWait`. Returns whether there may be more.
    virtual bool Read(PacketSink& sink, bool mayWait = false) = 0;

    virtual int Descriptor() const = 0;  // which poll() waits for

    virtual ReceiveMethod Method() const = 0;  // in use now

    // Bytes of the kernel's memory for packets that wait.
    virtual size_t BufferSize() const = 0;

    // How many packets found no room on this machine, since the reader was made.
    virtual uint64_t NumDropped() const = 0;
};

}  // namespace ZelGev
