// Subscriptions to GenTL events and the threads that serve them.
#pragma once

#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <list>
#include <map>
#include <memory>
#include <mutex>
#include <thread>
#include <vector>

#include "ZelCam/Interface.h"
#include "ZelCameraApi/base/gentllib.h"

namespace ZelCameraApi::Internal {

// The event callbacks of one object (an interface, a device or a stream). For each pair of module
// handle and event type that has subscribers, one dispatch thread registers the event at the
// producer, waits for events and calls the subscribers in the order of their registration.
//
// States of an entry, one per pair:
//
//                 RegisterEvent          event registered
//     (absent) ───────────────> Starting ────────────────> Dispatching
//         ^                      ^    │ start failed            │ no subscriber left, EventKill
//         │ KillThread, clear    │    v                         v or a failing EventGetData
//         └───────────────────── └─ Ended <─────────────────────┘
//                        RegisterEvent
//
// The dispatch thread calls a copy of the subscribers without holding a lock. Callbacks may
// register and unregister; exceptions that they throw are dropped. A callback must not destroy the
// object that owns the registry, because the dispatch thread would wait for its own end.
//
// Lock order: the registry's lock, then one of an entry's two locks. A dispatch thread takes the
// two locks of its entry, one at a time, but never the registry's lock, so RegisterEvent may wait
// for it.
class EventHandlers {
  public:
    // Names an entry.
    struct EventID_t {
        void* module;
        int eventType;

        bool operator<(const EventID_t& other) const {
            if (module != other.module) return std::less<>()(module, other.module);
            return eventType < other.eventType;
        }
    };

    explicit EventHandlers(const std::shared_ptr<GenTLLib>& lib);
    ~EventHandlers();

    EventHandlers(const EventHandlers&) = delete;
    EventHandlers& operator=(const EventHandlers&) = delete;

    // Subscribe a callback. They return 0 once the event is being dispatched. If the dispatch
    // cannot start, they return the code of the failure and do not subscribe the callback. A
    // callback may be subscribed several times.
    int RegisterEvent(void* module, int eventType, ZelCam::EventCallback cb, void* priv);
    int RegisterEvent2(void* module, int eventType, ZelCam::EventCallback2 cb, void* priv);

    // Remove the first subscription of the same callback and private pointer;
    // GC_ERR_NOT_INITIALIZED if there is none. A thread without subscribers ends at its next event.
    int UnRegisterEvent(void* module, int eventType, ZelCam::EventCallback cb, void* priv);
    int UnRegisterEvent2(void* module, int eventType, ZelCam::EventCallback2 cb, void* priv);

    // Ends the wait of an entry's thread, waits for the thread's end and removes the entry. Called
    // from a callback of the same entry, it only ends the wait. Throws std::out_of_range if there
    // is no such entry. Only one thread may call it for an entry.
    void KillThread(const EventID_t& id);

    // KillThread for all entries.
    void clear();

    // How often events of an entry were dropped because there was no memory. Throws
    // std::out_of_range if there is no such entry.
    uint64_t GetNumDropped(const EventID_t& id);

  private:
    // One of the two forms is set.
    struct CallbackInfo_t {
        ZelCam::EventCallback callback;
        ZelCam::EventCallback2 callback2;
        void* priv;

        bool operator==(const CallbackInfo_t& other) const {
            return callback == other.callback && callback2 == other.callback2 && priv == other.priv;
        }
    };

    struct EventInfo_t {
        EventInfo_t(void* handle, int type) : module(handle), eventType(type) {}

        void* const module;
        const int eventType;

        std::thread thread;   // guarded by the registry's mutex
        bool killed = false;  // guarded by the registry's mutex: KillThread is removing the entry

        std::mutex subscribersMutex;
        std::list<CallbackInfo_t> subscribers;  // guarded by subscribersMutex
        bool dispatching = false;  // guarded by subscribersMutex: a thread serves new subscribers
        uint64_t dropped = 0;      // guarded by subscribersMutex

        std::mutex stateMutex;
        std::condition_variable stateChanged;
        GenTL::EVENT_HANDLE eventHandle = nullptr;  // guarded by stateMutex; set while registered
        bool started = false;                       // guarded by stateMutex
        bool ending = false;                        // guarded by stateMutex: do not wait again
        bool ended = true;   // guarded by stateMutex: there is no thread, or it is done
        int resultCode = 0;  // guarded by stateMutex
    };

    int Subscribe(void* module, int eventType, const CallbackInfo_t& info);
    int Unsubscribe(void* module, int eventType, const CallbackInfo_t& info);
    int StartThread(EventInfo_t& entry);

    // The dispatch thread.
    void EventThread(EventInfo_t& entry);
    int QueryMaxSize(GenTL::EVENT_HANDLE event, size_t* maxSize) const;
    int Serve(EventInfo_t& entry, GenTL::EVENT_HANDLE event, size_t maxSize);
    int Dispatch(EventInfo_t& entry, GenTL::EVENT_HANDLE event,
                 std::vector<std::byte>& buffer) const;
    int GetData(EventInfo_t& entry, GenTL::EVENT_HANDLE event, std::vector<std::byte>& buffer,
                size_t* size) const;
    int Drop(EventInfo_t& entry, GenTL::EVENT_HANDLE event) const;
    static bool IsEnding(EventInfo_t& entry);
    static bool HasSubscribers(EventInfo_t& entry);
    static void RefuseSubscribers(EventInfo_t& entry);
    static void Deliver(EventInfo_t& entry, const std::vector<std::byte>& data);
    static void Call(const CallbackInfo_t& info, int eventType, const std::vector<std::byte>& data);
    static void CountDropped(EventInfo_t& entry);
    void Unregister(EventInfo_t& entry) const;
    static void SetEnded(EventInfo_t& entry, int resultCode);

    bool EndWait(EventInfo_t& entry) const;
    void AwaitEnd(EventInfo_t& entry) const;

    std::shared_ptr<GenTLLib> lib_;
    std::map<EventID_t, EventInfo_t> entries_;  // guarded by mutex_
    std::mutex mutex_;
};

}  // namespace ZelCameraApi::Internal
