// Receiving by the method that fits.
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <memory>

#include "producers/gigevision/stream/packetreader.h"
#include "producers/gigevision/stream/packetring.h"
#include "producers/gigevision/stream/socketreader.h"
#include "producers/gigevision/stream/streamsocket.h"

namespace ZelGev {

// Receives from the socket, or from a packet ring if that is wanted or pays: then the socket throws
// its packets away, but keeps the port. Where no ring can be had, or it does not fit, the socket is
// read; packets may come twice when the source changes, but none gets lost. Thread-bound.
class StreamReader final : public PacketReader {
  public:
    // The socket outlives the reader.
    StreamReader(const StreamSocket& socket, ReceiveMethod method, const PacketRing::Flow& flow);
    ~StreamReader() override;
    StreamReader(const StreamReader&) = delete;
    StreamReader& operator=(const StreamReader&) = delete;

    bool Read(PacketSink& sink, bool mayWait) override;
    int Descriptor() const override { return Present().Descriptor(); }
    ReceiveMethod Method() const override { return Present().Method(); }
    size_t BufferSize() const override { return Present().BufferSize(); }
    uint64_t NumDropped() const override { return droppedBefore_ + Present().NumDropped(); }

  private:
    const PacketReader& Present() const;
    bool Pays();
    void OpenRing();
    void LeaveSocket(PacketSink& sink);
    void CloseRing(PacketSink& sink);
    void ReadSocket();

    const StreamSocket& socket_;
    const PacketRing::Flow flow_;
    const ReceiveMethod method_;
    std::chrono::steady_clock::time_point lookedAt_ = std::chrono::steady_clock::now();
    uint64_t packetsThen_ = 0;
    bool mayUseRing_;
    uint64_t droppedBefore_ = 0;  // by sources that were given up
    std::unique_ptr<SocketReader> direct_;
    std::unique_ptr<PacketRing> ring_;
};

}  // namespace ZelGev
