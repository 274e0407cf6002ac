#include "ZelCameraApi/eventhandlers.h"

#include <algorithm>
#include <chrono>
#include <new>

namespace ZelCameraApi::Internal {

namespace {

// Size of the event buffer when the producer does not tell.
constexpr size_t kDefaultDataSize = 1024;

// No event of the standards comes near this. A producer that asks for more is broken, and following
// it would exhaust the memory.
constexpr size_t kMaxDataSize = size_t{64} << 20;

// False when there is no memory for that.
bool Resize(std::vector<std::byte>& buffer, size_t size) {
    if (size > kMaxDataSize) return false;
    try {
        // A null buffer would turn EventGetData into a query, also for an event without data.
        buffer.reserve(std::max<size_t>(size, 1));
        buffer.resize(size);
        return true;
    } catch (const std::bad_alloc&) {
        return false;
    }
}

}  // namespace

EventHandlers::EventHandlers(const std::shared_ptr<GenTLLib>& lib) : lib_(lib) {}

EventHandlers::~EventHandlers() {
    clear();
}

int EventHandlers::RegisterEvent(void* module, int eventType, ZelCam::EventCallback cb,
                                 void* priv) {
    return Subscribe(module, eventType, CallbackInfo_t{cb, nullptr, priv});
}

int EventHandlers::RegisterEvent2(void* module, int eventType, ZelCam::EventCallback2 cb,
                                  void* priv) {
    return Subscribe(module, eventType, CallbackInfo_t{nullptr, cb, priv});
}

int EventHandlers::UnRegisterEvent(void* module, int eventType, ZelCam::EventCallback cb,
                                   void* priv) {
    return Unsubscribe(module, eventType, CallbackInfo_t{cb, nullptr, priv});
}

int EventHandlers::UnRegisterEvent2(void* module, int eventType, ZelCam::EventCallback2 cb,
                                    void* priv) {
    return Unsubscribe(module, eventType, CallbackInfo_t{nullptr, cb, priv});
}

int EventHandlers::Subscribe(void* module, int eventType, const CallbackInfo_t& info) {
    const std::lock_guard<std::mutex> registry(mutex_);
    EventInfo_t& entry =
        entries_.try_emplace(EventID_t{module, eventType}, module, eventType).first->second;
    if (entry.killed) return GenTL::GC_ERR_ABORT;
    {
        const std::lock_guard<std::mutex> lock(entry.subscribersMutex);
        entry.subscribers.push_back(info);
        if (entry.dispatching) return GenTL::GC_ERR_SUCCESS;
    }
    const int result = StartThread(entry);
    if (result != GenTL::GC_ERR_SUCCESS) {
        const std::lock_guard<std::mutex> lock(entry.subscribersMutex);
        entry.subscribers.pop_back();
    }
    return result;
}

// Called with the registry locked and no thread alive but one that has ended, so that the entry may
// be prepared without its own locks. The caller learns how the start went.
int EventHandlers::StartThread(EventInfo_t& entry) {
    if (entry.thread.joinable()) entry.thread.join();
    entry.started = false;
    entry.ending = false;
    entry.ended = false;
    entry.resultCode = GenTL::GC_ERR_SUCCESS;
    entry.dispatching = true;
    try {
        entry.thread = std::thread(&EventHandlers::EventThread, this, std::ref(entry));
    } catch (const std::exception&) {
        SetEnded(entry, ZelCamErr_Error);
    }
    std::unique_lock<std::mutex> state(entry.stateMutex);
    entry.stateChanged.wait(state, [&entry] { return entry.started || entry.ended; });
    return entry.started ? GenTL::GC_ERR_SUCCESS : entry.resultCode;
}

void EventHandlers::EventThread(EventInfo_t& entry) {
    GenTL::EVENT_HANDLE event = nullptr;
    int result = lib_->GCRegisterEvent(entry.module, entry.eventType, &event);
    size_t maxSize = 0;
    if (result == GenTL::GC_ERR_SUCCESS) result = QueryMaxSize(event, &maxSize);
    if (result == GenTL::GC_ERR_SUCCESS) result = Serve(entry, event, maxSize);
    SetEnded(entry, result);
}

// From the registered event to the unregistered one. The caller of StartThread still hears of a
// size that cannot be.
int EventHandlers::Serve(EventInfo_t& entry, GenTL::EVENT_HANDLE event, size_t maxSize) {
    std::vector<std::byte> buffer;
    const bool hasBuffer = Resize(buffer, maxSize);
    {
        const std::lock_guard<std::mutex> state(entry.stateMutex);
        entry.eventHandle = event;
        entry.started = hasBuffer;
        entry.stateChanged.notify_all();
    }
    const int result = hasBuffer ? Dispatch(entry, event, buffer) : GenTL::GC_ERR_OUT_OF_MEMORY;
    RefuseSubscribers(entry);
    const std::lock_guard<std::mutex> state(entry.stateMutex);
    Unregister(entry);
    return result;
}

// EVENT_INFO_DATA_SIZE_MAX is the size of what EventGetDataInfo gives, which no event's own data
// exceeds in practice; when it does, EventGetData says so and the buffer grows.
int EventHandlers::QueryMaxSize(GenTL::EVENT_HANDLE event, size_t* maxSize) const {
    int type = GenTL::INFO_DATATYPE_UNKNOWN;
    size_t size = sizeof *maxSize;
    *maxSize = kDefaultDataSize;
    const int result =
        lib_->EventGetInfo(event, GenTL::EVENT_INFO_DATA_SIZE_MAX, &type, maxSize, &size);
    if (result != GenTL::GC_ERR_NOT_AVAILABLE && result != GenTL::GC_ERR_INVALID_HANDLE)
        return result;
    *maxSize = kDefaultDataSize;
    return GenTL::GC_ERR_SUCCESS;
}

// Returns the code that ended the loop, 0 when the last subscriber left.
int EventHandlers::Dispatch(EventInfo_t& entry, GenTL::EVENT_HANDLE event,
                            std::vector<std::byte>& buffer) const {
    int result = GenTL::GC_ERR_SUCCESS;
    while (result == GenTL::GC_ERR_SUCCESS && HasSubscribers(entry)) {
        size_t size = buffer.size();
        result = GetData(entry, event, buffer, &size);
        if (result == GenTL::GC_ERR_BUFFER_TOO_SMALL) {
            if (!Resize(buffer, size)) {
                result = Drop(entry, event);
                continue;
            }
            result = GetData(entry, event, buffer, &size);
        }
        if (result == GenTL::GC_ERR_SUCCESS) Deliver(entry, buffer);
    }
    return result;
}

int EventHandlers::GetData(EventInfo_t& entry, GenTL::EVENT_HANDLE event,
                           std::vector<std::byte>& buffer, size_t* size) const {
    if (IsEnding(entry)) return GenTL::GC_ERR_ABORT;
    return lib_->EventGetData(event, buffer.data(), size, GENTL_INFINITE);
}

// An event that cannot be fetched stays at the front of the producer's queue, which is emptied.
int EventHandlers::Drop(EventInfo_t& entry, GenTL::EVENT_HANDLE event) const {
    if (IsEnding(entry)) return GenTL::GC_ERR_ABORT;
    CountDropped(entry);
    return lib_->EventFlush(event);
}

// The event may be unregistered already then.
bool EventHandlers::IsEnding(EventInfo_t& entry) {
    const std::lock_guard<std::mutex> state(entry.stateMutex);
    return entry.ending;
}

// The answer "no" is final: a subscriber that comes after it starts a new thread.
bool EventHandlers::HasSubscribers(EventInfo_t& entry) {
    const std::lock_guard<std::mutex> lock(entry.subscribersMutex);
    entry.dispatching = !entry.subscribers.empty();
    return entry.dispatching;
}

// Before the event is unregistered: a subscriber that came meanwhile would be accepted and never
// called.
void EventHandlers::RefuseSubscribers(EventInfo_t& entry) {
    const std::lock_guard<std::mutex> lock(entry.subscribersMutex);
    entry.dispatching = false;
}

// Subscribers are given the whole buffer, so that they see the same length with every event.
void EventHandlers::Deliver(EventInfo_t& entry, const std::vector<std::byte>& data) {
    std::vector<CallbackInfo_t> subscribers;
    try {
        const std::lock_guard<std::mutex> lock(entry.subscribersMutex);
        subscribers.assign(entry.subscribers.begin(), entry.subscribers.end());
    } catch (const std::bad_alloc&) {
        CountDropped(entry);
        return;
    }
    for (const CallbackInfo_t& info : subscribers)
        Call(info, entry.eventType, data);
}

void EventHandlers::Call(const CallbackInfo_t& info, int eventType,
                         const std::vector<std::byte>& data) {
    try {
        if (info.callback2 != nullptr) {
            info.callback2(static_cast<uint32_t>(eventType), data.data(), data.size(), info.priv);
        } else if (info.callback != nullptr) {
            info.callback(data.data(), data.size(), info.priv);
        }
    } catch (...) {
        // it would end the process, and no caller could handle it
    }
}

void EventHandlers::CountDropped(EventInfo_t& entry) {
    const std::lock_guard<std::mutex> lock(entry.subscribersMutex);
    ++entry.dropped;
}

// Called with the state locked, so that nobody kills the wait of an event that is gone. Once.
void EventHandlers::Unregister(EventInfo_t& entry) const {
    if (entry.eventHandle == nullptr) return;
    entry.eventHandle = nullptr;
    lib_->GCUnregisterEvent(entry.module, entry.eventType);
}

void EventHandlers::SetEnded(EventInfo_t& entry, int resultCode) {
    RefuseSubscribers(entry);
    const std::lock_guard<std::mutex> state(entry.stateMutex);
    entry.resultCode = resultCode;
    entry.ended = true;
    entry.stateChanged.notify_all();
}

int EventHandlers::Unsubscribe(void* module, int eventType, const CallbackInfo_t& info) {
    const std::lock_guard<std::mutex> registry(mutex_);
    const auto position = entries_.find(EventID_t{module, eventType});
    if (position == entries_.end()) return GenTL::GC_ERR_NOT_INITIALIZED;
    EventInfo_t& entry = position->second;
    const std::lock_guard<std::mutex> lock(entry.subscribersMutex);
    const auto found = std::find(entry.subscribers.begin(), entry.subscribers.end(), info);
    if (found == entry.subscribers.end()) return GenTL::GC_ERR_NOT_INITIALIZED;
    entry.subscribers.erase(found);
    return GenTL::GC_ERR_SUCCESS;
}

void EventHandlers::KillThread(const EventID_t& id) {
    std::unique_lock<std::mutex> registry(mutex_);
    EventInfo_t& entry = entries_.at(id);
    if (entry.thread.get_id() == std::this_thread::get_id()) {
        const std::lock_guard<std::mutex> state(entry.stateMutex);
        EndWait(entry);
        return;
    }
    // Without the registry's lock: a callback under way may want to register or unregister.
    entry.killed = true;
    registry.unlock();
    AwaitEnd(entry);
    registry.lock();
    if (entry.thread.joinable()) entry.thread.join();
    entries_.erase(id);
}

// Called with the state locked. False when the producer cannot kill the wait.
bool EventHandlers::EndWait(EventInfo_t& entry) const {
    entry.ending = true;
    return entry.eventHandle == nullptr ||
           lib_->EventKill(entry.eventHandle) == GenTL::GC_ERR_SUCCESS;
}

// A producer may forget a kill that comes while nobody waits, when a callback is under way for
// instance; so it is repeated until the thread has ended. Where a producer cannot kill the wait,
// the event is taken away from its thread. Not at once: the thread may have been about to wait.
void EventHandlers::AwaitEnd(EventInfo_t& entry) const {
    constexpr std::chrono::milliseconds kRepeat(100);
    std::unique_lock<std::mutex> state(entry.stateMutex);
    while (!entry.ended) {
        const bool killed = EndWait(entry);
        entry.stateChanged.wait_for(state, kRepeat, [&entry] { return entry.ended; });
        if (!killed) Unregister(entry);
    }
}

uint64_t EventHandlers::GetNumDropped(const EventID_t& id) {
    const std::lock_guard<std::mutex> registry(mutex_);
    EventInfo_t& entry = entries_.at(id);
    const std::lock_guard<std::mutex> lock(entry.subscribersMutex);
    return entry.dropped;
}

void EventHandlers::clear() {
    for (;;) {
        std::unique_lock<std::mutex> registry(mutex_);
        if (entries_.empty()) return;
        const EventID_t first = entries_.begin()->first;
        registry.unlock();
        KillThread(first);
    }
}

}  // namespace ZelCameraApi::Internal
