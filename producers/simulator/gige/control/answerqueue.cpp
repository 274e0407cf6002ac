#include "producers/simulator/gige/control/answerqueue.h"

#include <tuple>

namespace ZelSim {

using ZelCti::Endpoint;

namespace {

constexpr size_t kIdOffset = 6;  // of the header of an acknowledge

bool IsTheirTurn(uint64_t number, uint32_t every) {
    return every != 0 && number % every == 0;
}

// None that a command of the next time has: a late answer would be taken for that command's.
uint16_t AnotherId(uint16_t id) {
    return ZelCti::Gvcp::NextRequestId(static_cast<uint16_t>(id ^ 0x8000U));
}

}  // namespace

void AnswerQueue::Post(const Endpoint& to, const Answer& answer, Clock::time_point due,
                       Clock::time_point now) {
    if (due <= now) return send_(to, answer.View());
    for (Waiting& place : waiting_) {
        if (place.answer.size != 0) continue;
        place = {to, answer, due, ++numPosted_};
        return;
    }
}

AnswerQueue::Clock::time_point AnswerQueue::PostAck(const Endpoint& to, Answer answer,
                                                    Clock::time_point due, Clock::time_point now,
                                                    const NetworkSettings& settings) {
    due += std::chrono::milliseconds(settings.delayAckMs);
    ++numAcks_;
    if (IsTheirTurn(numAcks_, settings.dropAckEvery)) return due;
    if (IsTheirTurn(numAcks_, settings.wrongAckIdEvery)) {
        answer.Space().PutU16(kIdOffset, AnotherId(answer.View().U16(kIdOffset)));
    }
    Post(to, answer, due, now);
    if (IsTheirTurn(numAcks_, settings.doubleAckEvery)) Post(to, answer, due, now);
    return due;
}

// Those of the same time go in the order in which they were posted.
AnswerQueue::Waiting* AnswerQueue::FirstDue(Clock::time_point now) {
    Waiting* first = nullptr;
    for (Waiting& place : waiting_) {
        if (place.answer.size == 0 || place.due > now) continue;
        if (first == nullptr ||
            std::tie(place.due, place.number) < std::tie(first->due, first->number))
            first = &place;
    }
    return first;
}

std::optional<AnswerQueue::Clock::time_point> AnswerQueue::NextDeadline() const {
    std::optional<Clock::time_point> next;
    for (const Waiting& place : waiting_) {
        if (place.answer.size != 0 && (!next || place.due < *next)) next = place.due;
    }
    return next;
}

void AnswerQueue::SendDue(Clock::time_point now) {
    while (Waiting* const first = FirstDue(now)) {
        send_(first->to, first->answer.View());
        first->answer.size = 0;
    }
}

}  // namespace ZelSim
