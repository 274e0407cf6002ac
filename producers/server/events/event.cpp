#include "producers/server/events/event.h"

#include <algorithm>

#include "producers/server/base/error.h"

namespace ZelCti {

void Event::GetData(Answer answer, uint64_t timeoutMs) {
    std::unique_lock lock(waiting_.Mutex());
    WaitForEvent(lock, timeoutMs);
    const EventData front = Front();
    answer.Bytes(GenTL::INFO_DATATYPE_BUFFER, front.bytes, front.size);
    if (!answer.OnlyAsksSize()) Pop();
}

void Event::WaitForEvent(std::unique_lock<std::mutex>& lock, uint64_t timeoutMs) {
    if (Count() == 0 && !MustReturn() && timeoutMs != 0) Sleep(lock, timeoutMs);
    if (endsWhenEmpty_ && Count() != 0) return;
    if (end_ != GenTL::GC_ERR_SUCCESS) throw Error(end_, "the event is no longer served");
    if (numKills_ != 0) {
        --numKills_;
        throw Error(GenTL::GC_ERR_ABORT, "the event was killed");
    }
    if (Count() == 0) throw Error(GenTL::GC_ERR_TIMEOUT, "no event in time");
}

void Event::Sleep(std::unique_lock<std::mutex>& lock, uint64_t timeoutMs) {
    const WaitPoint::Clock::time_point end = WaitPoint::After(timeoutMs);
    ++numWaiting_;
    waiting_.SleepUntil(lock, end, [this] { return Count() != 0 || MustReturn(); });
    --numWaiting_;
}

void Event::GetInfo(Answer answer) {
    const std::lock_guard lock(waiting_.Mutex());
    switch (answer.Command()) {
        case GenTL::EVENT_EVENT_TYPE:
            return answer.Int32(type_);
        case GenTL::EVENT_NUM_IN_QUEUE:
            return answer.Size(Count());
        case GenTL::EVENT_NUM_FIRED:
            return answer.Uint64(NumFired());
        case GenTL::EVENT_SIZE_MAX:
            return answer.Size(SizeMax());
        case GenTL::EVENT_INFO_DATA_SIZE_MAX:
            return answer.Size(InfoSizeMax());
        default:
            throw Error(GenTL::GC_ERR_NOT_IMPLEMENTED, "unknown event info command");
    }
}

void Event::Flush() {
    const std::lock_guard lock(waiting_.Mutex());
    Clear();
}

void Event::Kill() {
    const std::lock_guard lock(waiting_.Mutex());
    numKills_ = std::min(numKills_ + 1, std::max<size_t>(numWaiting_, 1));
    waiting_.WakeAll();
}

void Event::End(GenTL::GC_ERROR code, bool whenEmpty) {
    const std::lock_guard lock(waiting_.Mutex());
    end_ = code;
    endsWhenEmpty_ = whenEmpty;
    waiting_.WakeAll();
}

void Event::OnClose() noexcept {
    Fail(GenTL::GC_ERR_ABORT);
}

}  // namespace ZelCti
