// Receiving from memory that the kernel fills with packets.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>

#include "producers/gigevision/stream/packetreader.h"

namespace ZelGev {

// A packet socket with a ring of blocks of packets, which are read without system calls, and are
// copied to where they belong. It sees datagrams before IP does: in fragments, and joined or not
// yet cut by the kernel. Where such come, the reader hands over what it can, and says that it does
// not fit. Packets wait for up to a millisecond until the kernel passes their block on.
// Thread-bound.
class PacketRing final : public PacketReader {
  public:
    // What is received.
    struct Flow {
        uint32_t camera = 0;       // who sends
        uint32_t destination = 0;  // address and port to which it sends
        uint16_t port = 0;
        size_t packetSize = 0;  // IP datagrams
    };

    static constexpr size_t kBlockSize = 1 << 18;

    // Null where rights, memory or the kernel do not allow it.
    static std::unique_ptr<PacketRing> Open(const Flow& flow, size_t size);
    ~PacketRing() override;
    PacketRing(const PacketRing&) = delete;
    PacketRing& operator=(const PacketRing&) = delete;

    bool Read(PacketSink& sink, bool mayWait) override;
    int Descriptor() const override { return descriptor_; }
    ReceiveMethod Method() const override { return ReceiveMethod::Ring; }
    size_t BufferSize() const override { return numBlocks_ * kBlockSize; }
    uint64_t NumDropped() const override;

    // Reads what has come by now, in blocks that are not passed on yet, too: it takes a few
    // milliseconds.
    void ReadRest(PacketSink& sink);

    // Whether all that came so far were whole packets, each by itself.
    bool Fits() const { return fits_; }

  private:
    PacketRing(int descriptor, size_t packetSize)
        : descriptor_(descriptor), packetSize_(packetSize) {}

    bool Prepare(const Flow& flow, size_t size);
    void OnDatagram(PacketSink& sink, ZelCti::ByteView datagram);

    const int descriptor_;
    const size_t packetSize_;
    uint8_t* memory_ = nullptr;
    size_t numBlocks_ = 0;
    size_t next_ = 0;  // block
    bool fits_ = true;
    mutable uint64_t numDropped_ = 0;
};

}  // namespace ZelGev
