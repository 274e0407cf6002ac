// Commands that came before, and how they were answered.
#pragma once

#include <array>
#include <chrono>
#include <cstdint>

#include "producers/sockets/endpoint.h"
#include "producers/wire/gvcp.h"

namespace ZelSim {

// An acknowledge on its way.
struct Answer {
    std::array<uint8_t, ZelCti::Gvcp::kMaxMessageSize> bytes{};
    size_t size = 0;

    ZelCti::ByteSpan Space() { return {bytes.data(), bytes.size()}; }
    ZelCti::ByteView View() const { return {bytes.data(), size}; }
};

// The last command of each application that asked lately: a command that comes again is not done
// again but gets the same answer. It is the same only if the whole datagram is, so that an
// application that starts again with the same numbers is a new one. Thread-bound.
class AnswerStore {
  public:
    using Clock = std::chrono::steady_clock;

    struct Entry {
        ZelCti::Endpoint from;
        Answer command;
        Answer answer;          // of size 0 if there is none
        Clock::time_point due;  // when the answer goes
        uint64_t used = 0;      // 0: an empty entry
    };

    // Null for a command that is new.
    const Entry* Find(const ZelCti::Endpoint& from, ZelCti::ByteView command);

    // Takes the place of the application's command before, or of that which was used least lately.
    void Keep(const ZelCti::Endpoint& from, ZelCti::ByteView command, const Answer& answer,
              Clock::time_point due);

    // The application has ended.
    void Forget(const ZelCti::Endpoint& from);

  private:
    Entry* EntryOf(const ZelCti::Endpoint& from);

    std::array<Entry, 16> entries_;
    uint64_t uses_ = 0;
};

}  // namespace ZelSim
