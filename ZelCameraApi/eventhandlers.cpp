#include "ZelCameraApi/eventhandlers.h"

#include <algorithm>
#include <chrono>
#include <new>

namespace ZelCameraApi::Internal {

namespace {

// Size of the event buffer if the producer does not report it.
constexpr size_t kDefaultDataSize = 1024;

// Events of the standards are far smaller. A producer that asks for more is broken and would
// exhaust the memory.
constexpr size_t kMaxDataSize = size_t{64} << 20;

// False if the size is impossible or there is no memory.
bool Resize(std::vector<std::byte>& buffer, size_t size) {
    if (size > kMaxDataSize) return false;
    try {
        // At least one byte: a null buffer would turn EventGetData into a query for the size.
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

// Called with the registry locked and when the entry has no thread or one that has ended, so the
// entry can be prepared without its own locks. Returns the result of the start.
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

// Serves a registered event until it is unregistered. The caller of StartThread still gets the code
// if the size is impossible.
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

// EVENT_INFO_DATA_SIZE_MAX is the maximum size for EventGetDataInfo. In practice the data of an
// event is not larger; if it is, EventGetData fails and the buffer grows.
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

// Returns the code that ended the loop, or 0 after the last subscriber left.
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

// An event that cannot be fetched stays at the front of the producer's queue, so the queue is
// flushed.
int EventHandlers::Drop(EventInfo_t& entry, GenTL::EVENT_HANDLE event) const {
    if (IsEnding(entry)) return GenTL::GC_ERR_ABORT;
    CountDropped(entry);
    return lib_->EventFlush(event);
}

// If it returns true, the event may be unregistered already.
bool EventHandlers::IsEnding(EventInfo_t& entry) {
    const std::lock_guard<std::mutex> state(entry.stateMutex);
    return entry.ending;
}

// The answer "no" is final: a later subscriber starts a new thread.
bool EventHandlers::HasSubscribers(EventInfo_t& entry) {
    const std::lock_guard<std::mutex> lock(entry.subscribersMutex);
    entry.dispatching = !entry.subscribers.empty();
    return entry.dispatching;
}

// Called before the event is unregistered: otherwise a subscriber could be accepted meanwhile and
// never be called.
void EventHandlers::RefuseSubscribers(EventInfo_t& entry) {
    const std::lock_guard<std::mutex> lock(entry.subscribersMutex);
    entry.dispatching = false;
}

// Subscribers get the whole buffer, so they see the same length with every event.
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

// Called once, with the state locked, so that no thread kills the wait of an unregistered event.
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
    // Without the registry's lock, because a running callback may register or unregister.
    entry.killed = true;
    registry.unlock();
    AwaitEnd(entry);
    registry.lock();
    if (entry.thread.joinable()) entry.thread.join();
    entries_.erase(id);
}

// Called with the state locked. False if the producer cannot kill the wait.
bool EventHandlers::EndWait(EventInfo_t& entry) const {
    entry.ending = true;
    return entry.eventHandle == nullptr ||
           lib_->EventKill(entry.eventHandle) == GenTL::GC_ERR_SUCCESS;
}

// A producer may forget a kill that comes while no thread waits, for instance while a callback
// runs, so the kill is repeated until the thread has ended. If a producer cannot kill the wait, the
// event is unregistered instead, but not at once: the thread may have been about to wait.
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
