// Event registrations.
#pragma once

#include <cstddef>
#include <cstdint>
#include <mutex>
#include <vector>

#include "gentl/GenTL.h"
#include "producers/server/base/answer.h"
#include "producers/server/base/object.h"
#include "producers/server/base/waitpoint.h"
#include "producers/server/events/eventdata.h"

namespace ZelCti {

// One registration of an event type on a module: fetches events from a queue that a subclass
// supplies.
//
//   registered --Kill--> the waiting call, or else the next one, ends with GC_ERR_ABORT
//   registered --Fail--> all calls end with the code from then on
//   registered --FailWhenEmpty--> the same, once the events that are queued are fetched
//   registered --unregistered or module closed--> waiting calls end with GC_ERR_ABORT
//
// Thread-safe.
class Event : public Object {
  public:
    static bool IsKind(Kind kind) { return kind == Kind::Event; }

    GenTL::EVENT_TYPE Type() const { return type_; }

    // Waits for an event and takes it. An event that does not fit, or whose size only was asked
    // for, stays. Throws GC_ERR_TIMEOUT and GC_ERR_ABORT.
    void GetData(Answer answer, uint64_t timeoutMs);

    // Answers about the event that `data` was fetched from.
    virtual void GetDataInfo(EventData data, Answer answer) = 0;

    void GetInfo(Answer answer);
    void Flush();
    void Kill();
    void Fail(GenTL::GC_ERROR code) { End(code, false); }
    void FailWhenEmpty(GenTL::GC_ERROR code) { End(code, true); }

  protected:
    // Both referred to by the subclass's queue as well; they outlive the event.
    Event(GenTL::EVENT_TYPE type, WaitPoint& waiting)
        : Object(Kind::Event), type_(type), waiting_(waiting) {}

    void OnClose() noexcept override;

    // The queue; called with the mutex of the wait point held.
    virtual size_t Count() const = 0;
    virtual EventData Front() = 0;  // only when Count() is not 0
    virtual void Pop() = 0;
    virtual void Clear() = 0;
    virtual uint64_t NumFired() const = 0;
    virtual size_t SizeMax() const = 0;
    virtual size_t InfoSizeMax() const = 0;

  private:
    void WaitForEvent(std::unique_lock<std::mutex>& lock, uint64_t timeoutMs);
    void Sleep(std::unique_lock<std::mutex>& lock, uint64_t timeoutMs);
    void End(GenTL::GC_ERROR code, bool whenEmpty);
    bool MustReturn() const { return numKills_ != 0 || end_ != GenTL::GC_ERR_SUCCESS; }

    const GenTL::EVENT_TYPE type_;
    WaitPoint& waiting_;
    size_t numWaiting_ = 0;                        // guarded by the mutex of waiting_
    size_t numKills_ = 0;                          // guarded by the mutex of waiting_
    GenTL::GC_ERROR end_ = GenTL::GC_ERR_SUCCESS;  // guarded; what every call ends with
    bool endsWhenEmpty_ = false;                   // guarded; events that are queued come first
};

}  // namespace ZelCti
