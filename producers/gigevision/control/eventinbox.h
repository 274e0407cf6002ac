// Messages of a camera to its application.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>

#include "producers/wire/gvcpevents.h"

namespace ZelGev {

// Takes EVENT and EVENTDATA commands apart, acknowledges them, and delivers what a camera repeats
// once only. Has no socket. Thread-bound.
class EventInbox {
  public:
    // Larger ones fit into no frame of Ethernet.
    static constexpr size_t kMaxMessageSize = 1500;

    // Gets each event as a command of its own, valid during the call, and the number of the event.
    using Deliver = std::function<void(uint16_t id, ZelCti::ByteView message)>;

    explicit EventInbox(Deliver deliver) : deliver_(std::move(deliver)) {}

    // Returns the size of the acknowledge that was written to `answer`, which holds
    // Gvcp::kHeaderSize; 0 when none is wanted, as for a datagram that is no event.
    size_t OnDatagram(ZelCti::ByteView datagram, ZelCti::ByteSpan answer);

  private:
    // Enough to know a repetition, which has the number and the bytes of the first one.
    struct Seen {
        uint16_t requestId = 0;
        uint64_t hash = 0;
    };

    bool IsRepetition(const ZelCti::Gvcp::Command& command);
    void DeliverEvents(const ZelCti::Gvcp::Command& command, const ZelCti::Gvcp::Events& events);

    const Deliver deliver_;
    std::array<Seen, 32> seen_{};
    size_t nextSeen_ = 0;
};

}  // namespace ZelGev
