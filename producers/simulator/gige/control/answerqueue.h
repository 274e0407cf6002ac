// Acknowledges on their way to applications.
#pragma once

#include <array>
#include <chrono>
#include <cstdint>
#include <functional>
#include <optional>

#include "producers/simulator/config/networkswitches.h"
#include "producers/simulator/gige/control/answerstore.h"

namespace ZelSim {

// Sends answers at their times, and some of them not as they should be, as the switches say.
// Answers that find no place to wait are lost, as datagrams are. Thread-bound.
class AnswerQueue {
  public:
    using Clock = std::chrono::steady_clock;
    using Send = std::function<void(const ZelCti::Endpoint& to, ZelCti::ByteView datagram)>;

    explicit AnswerQueue(Send send) : send_(std::move(send)) {}

    // Sends it at once if it is time.
    void Post(const ZelCti::Endpoint& to, const Answer& answer, Clock::time_point due,
              Clock::time_point now);

    // The same with the faults of acknowledges. Returns when the answer goes.
    Clock::time_point PostAck(const ZelCti::Endpoint& to, Answer answer, Clock::time_point due,
                              Clock::time_point now, const NetworkSettings& settings);

    std::optional<Clock::time_point> NextDeadline() const;
    void SendDue(Clock::time_point now);

  private:
    struct Waiting {
        ZelCti::Endpoint to;
        Answer answer;  // of size 0: an empty place
        Clock::time_point due;
        uint64_t number = 0;
    };

    Waiting* FirstDue(Clock::time_point now);

    const Send send_;
    std::array<Waiting, 64> waiting_;
    uint64_t numPosted_ = 0;
    uint64_t numAcks_ = 0;
};

}  // namespace ZelSim
