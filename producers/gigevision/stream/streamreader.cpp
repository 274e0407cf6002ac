#include "producers/gigevision/stream/streamreader.h"

#include <memory>
#include <utility>

namespace ZelGev {

namespace {

// Of the packets that wait in a ring.
constexpr size_t kRingSize = 16 << 20;

// What the ring saves for each packet is more than its copy costs, in packets up to this size that
// come singly, and so fast that many of them fill a block before the kernel passes it on: else
// the end of each frame would wait for that without need.
constexpr size_t kMostForRing = 2048;
constexpr uint64_t kManyPackets = 4000;
constexpr std::chrono::milliseconds kShortTime{24};

}  // namespace

StreamReader::StreamReader(const StreamSocket& socket, ReceiveMethod method,
                           const PacketRing::Flow& flow)
    : socket_(socket),
      flow_(flow),
      method_(method),
      mayUseRing_(method == ReceiveMethod::Automatic) {
    ReadSocket();
    if (method == ReceiveMethod::Ring) OpenRing();
}

StreamReader::~StreamReader() {
    if (ring_ != nullptr) socket_.SetClosed(false);
}

const PacketReader& StreamReader::Present() const {
    if (ring_ != nullptr) return *ring_;
    return *direct_;
}

void StreamReader::ReadSocket() {
    const bool wantsRing = method_ == ReceiveMethod::Ring;
    direct_ =
        std::make_unique<SocketReader>(socket_, wantsRing ? ReceiveMethod::Automatic : method_);
}

bool StreamReader::Read(PacketSink& sink, bool mayWait) {
    if (mayUseRing_ && Pays()) OpenRing();
    if (ring_ == nullptr) return direct_->Read(sink, mayWait);
    if (direct_ != nullptr) LeaveSocket(sink);
    const bool isMore = ring_->Read(sink, mayWait);
    if (ring_->Fits()) return isMore;
    CloseRing(sink);
    return true;
}

bool StreamReader::Pays() {
    const uint64_t numPackets = direct_->Counts().packets;
    if (flow_.packetSize > kMostForRing || numPackets - packetsThen_ < kManyPackets) return false;
    packetsThen_ = numPackets;
    const auto now = std::chrono::steady_clock::now();
    const auto passed = now - std::exchange(lookedAt_, now);
    return direct_->Method() == ReceiveMethod::Singly && passed <= kShortTime;
}

void StreamReader::OpenRing() {
    mayUseRing_ = false;
    auto ring = PacketRing::Open(flow_, kRingSize);
    if (ring == nullptr) return;
    const uint64_t numDropped = direct_->NumDropped();
    if (!socket_.SetClosed(true)) return;
    droppedBefore_ += numDropped;
    ring_ = std::move(ring);
}

// Reads what came before the ring was there.
void StreamReader::LeaveSocket(PacketSink& sink) {
    while (direct_->Read(sink, false)) {
    }
    socket_.JoinPackets(false);  // nothing joined is left: the socket would not tell it any more
    direct_.reset();
}

void StreamReader::CloseRing(PacketSink& sink) {
    socket_.SetClosed(false);
    ring_->ReadRest(sink);
    droppedBefore_ += ring_->NumDropped();
    ring_.reset();
    ReadSocket();
}

}  // namespace ZelGev
