#include "producers/gigevision/control/messagereceiver.h"

#include <array>
#include <utility>

namespace ZelGev {

namespace Gvcp = ZelCti::Gvcp;
using ZelCti::ByteView;
using ZelCti::Endpoint;

namespace {

// Connection tracking forgets a flow of datagrams after 30 seconds.
constexpr std::chrono::seconds kOpeningPeriod{15};

// More at once would keep heartbeats waiting.
constexpr int kMostAtOnce = 64;

}  // namespace

MessageReceiver::MessageReceiver(uint32_t hostAddress, const Endpoint& camera,
                                 EventInbox::Deliver deliver)
    : socket_({hostAddress, 0}, "", false), camera_(camera), inbox_(std::move(deliver)) {}

void MessageReceiver::Receive() {
    std::array<uint8_t, EventInbox::kMaxMessageSize> memory;
    std::array<uint8_t, Gvcp::kHeaderSize> answer;
    for (int i = 0; i < kMostAtOnce; ++i) {
        const auto datagram = socket_.Receive({memory.data(), memory.size()});
        if (!datagram) return;
        // Others could put words into the camera's mouth.
        if (datagram->from.address != camera_.address || datagram->size > memory.size()) continue;
        const size_t size =
            inbox_.OnDatagram({memory.data(), datagram->size}, {answer.data(), answer.size()});
        if (size != 0) socket_.Send(datagram->from, {answer.data(), size});
    }
}

void MessageReceiver::KeepFirewallOpen(Time now) {
    if (now < nextOpening_) return;
    nextOpening_ = now + kOpeningPeriod;
    const uint16_t port = camera_.port != 0 ? camera_.port : Gvcp::kPort;
    socket_.Send({camera_.address, port}, ByteView{});
}

}  // namespace ZelGev
