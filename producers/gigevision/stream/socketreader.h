// Receiving from a socket straight into the memory of frames.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <sys/socket.h>
#include <sys/uio.h>

#include "producers/gigevision/stream/packetreader.h"
#include "producers/gigevision/stream/streamsocket.h"

namespace ZelGev {

struct ReaderCounts {
    uint64_t datagrams = 0;  // as the kernel gives them: each may be several packets
    uint64_t packets = 0;
    uint64_t moved = 0;  // packets that came to a place that is not theirs
};

// Receives with scatter lists: headers aside, data at the place that was predicted. It does so in
// one of two ways:
//
//   singly  many datagrams with one call, for each of which one packet is expected
//   joined  one datagram that the kernel made of many packets of the same length (UDP_GRO), with a
//           list for all of them
//
// The kernel cannot join packets of every camera and of every network adapter, and a long list
// costs time for nothing then. Both ways get whatever comes, so the reader looks how many packets
// datagrams have, and changes to the way that fits. Thread-bound.
class SocketReader final : public PacketReader {
  public:
    // The socket outlives the reader. The method is none that needs more than a socket.
    SocketReader(const StreamSocket& socket, ReceiveMethod method);

    bool Read(PacketSink& sink, bool mayWait) override;
    int Descriptor() const override { return socket_.Descriptor(); }
    ReceiveMethod Method() const override {
        return isJoined_ ? ReceiveMethod::Joined : ReceiveMethod::Singly;
    }
    const ReaderCounts& Counts() const { return counts_; }
    size_t BufferSize() const override { return socket_.BufferSize(); }
    uint64_t NumDropped() const override { return socket_.NumDropped() - droppedBefore_; }

  private:
    static constexpr size_t kMaxDatagram = 65536;
    static constexpr size_t kMaxMessages = 32;

    // The memory for one datagram, as if it lay in one piece, but for the data whose places were
    // predicted. All of it has room for them, too.
    class Slot {
      public:
        // The packets from `first` on are expected.
        void Expect(uint8_t* memory, const Prediction& prediction, size_t first, size_t count);

        // Where the kernel shall put the datagram.
        iovec* Pieces() { return pieces_.data(); }
        size_t NumPieces() const { return numPieces_; }

        // What came: a datagram of so many bytes, made of packets of `segment` bytes; the last one
        // may be shorter. Moves data that are not where they belong.
        void Receive(size_t size, size_t segment, const Prediction& prediction);
        size_t NumPackets() const { return numPackets_; }
        size_t NumMoved() const { return numMoved_; }
        void HandOver(PacketSink& sink, const Prediction& prediction) const;

      private:
        void Add(uint8_t* data, size_t size);
        bool IsAsExpected(const Prediction& prediction) const;
        bool IsPlaced(size_t index, const Prediction& prediction) const;
        ZelCti::ByteView Packet(size_t index) const;
        void Gather();

        uint8_t* memory_ = nullptr;
        size_t first_ = 0;        // of the packets that are predicted
        size_t numExpected_ = 0;  // of them
        size_t numPieces_ = 0;
        size_t size_ = 0;
        size_t segment_ = 0;
        size_t numPackets_ = 0;
        size_t numMoved_ = 0;
        std::array<iovec, 2 * Prediction::kMostPlaces + 1> pieces_;
    };

    struct Control {
        alignas(cmsghdr) std::array<uint8_t, CMSG_SPACE(sizeof(int))> bytes;
    };

    bool ReadSingly(PacketSink& sink, bool mayWait);
    bool ReadJoined(PacketSink& sink, bool mayWait);
    void Prepare(size_t index);
    void Accept(size_t index, size_t size);
    void Watch();

    const StreamSocket& socket_;
    const bool isAutomatic_;
    const uint32_t droppedBefore_;
    bool isJoined_;
    size_t numMessages_ = kMaxMessages;  // of the next call
    uint64_t watchedDatagrams_ = 0;      // counts at the begin of the present look
    uint64_t watchedPackets_ = 0;
    ReaderCounts counts_;
    Prediction prediction_;
    const std::unique_ptr<uint8_t[]> memory_;
    const std::unique_ptr<Slot[]> slots_;
    std::array<mmsghdr, kMaxMessages> messages_{};
    std::array<Control, kMaxMessages> controls_;
};

}  // namespace ZelGev
