// Events of a camera as they arrive.
#pragma once

#include <condition_variable>
#include <cstdint>
#include <deque>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "ZelGenParam/Array.h"
#include "tools/zelcam/console/jsontext.h"
#include "tools/zelcam/console/timetext.h"

namespace ZelTool {

struct ArrivedEvent {
    struct Datum {
        std::string feature;
        std::string text;
        Json value;  // a number if the feature is one
    };

    WallClock::time_point time;
    std::string name;
    std::vector<Datum> data;
};

// Holds events until they are fetched. Thread-safe.
class EventQueue {
  public:
    void Put(ArrivedEvent event);

    // The next event; nothing when no event arrives in time.
    std::optional<ArrivedEvent> Get(uint64_t timeoutMs);

  private:
    std::mutex mutex_;
    std::condition_variable came_;
    std::deque<ArrivedEvent> events_;  // guarded by mutex_
};

// Listens to one event as long as it lives. An event NAME changes features of the camera when it
// arrives: EventNAMETimestamp, EventNAMEFrameID, EventNAME itself and others.
class EventListener final : private ZelGenParam::ParamEventSink {
  public:
    // Throws Failure (FeatureFailed) when the camera has no features for that event. Features and
    // queue must outlive this object.
    EventListener(ZelGenParam::Array& features, std::string name, EventQueue& queue);
    ~EventListener();
    EventListener(const EventListener&) = delete;
    EventListener& operator=(const EventListener&) = delete;

  private:
    void OnParamChanged(ZelGenParam::Param* param) override;

    std::string name_;
    EventQueue& queue_;
    std::vector<ZelGenParam::Param*> data_;
    ZelGenParam::Param* trigger_ = nullptr;  // the feature in data_ that signals the event
};

// Makes the camera send an event as long as this object lives.
class EventSwitch {
  public:
    // Throws Failure (FeatureFailed) when the camera cannot send it.
    EventSwitch(ZelGenParam::Array& features, const std::string& name);
    ~EventSwitch();
    EventSwitch(const EventSwitch&) = delete;
    EventSwitch& operator=(const EventSwitch&) = delete;

  private:
    ZelGenParam::Array& features_;
    std::string name_;
    std::string before_;  // the former notification
};

// The events that the camera can send.
std::vector<std::string> EventNames(ZelGenParam::Array& features);

}  // namespace ZelTool
