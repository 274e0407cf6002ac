// Events of a camera as they arrive.
#ifndef ZELCAM_TOOLS_ZELCAM_EVENTLISTENER_H
#define ZELCAM_TOOLS_ZELCAM_EVENTLISTENER_H

#include <condition_variable>
#include <cstdint>
#include <deque>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include <nlohmann/json.hpp>

#include "ZelGenParam/Array.h"
#include "tools/zelcam/pause.h"

struct ArrivedEvent {
    struct Datum {
        std::string feature;
        std::string text;
        nlohmann::ordered_json value;  // a number where the text is one
    };

    WallClock::time_point time;
    std::string name;
    std::vector<Datum> data;
};

// Holds what arrived until it is fetched. Thread-safe.
class EventQueue {
  public:
    void Put(ArrivedEvent event);

    // The next event; nothing when none came in time.
    std::optional<ArrivedEvent> Get(uint64_t timeoutMs);

  private:
    std::mutex mutex_;
    std::condition_variable came_;
    std::deque<ArrivedEvent> events_;  // guarded by mutex_
};

// Listens to one event from construction to destruction. A camera shows an event NAME as features
// that change when it comes: EventNAMETimestamp, EventNAMEFrameID, EventNAME itself and others.
class EventListener final : private ZelGenParam::ParamEventSink {
  public:
    // Failure (FeatureFailed) when the camera has no features for that event. Features and queue
    // must outlive this object.
    EventListener(ZelGenParam::Array& features, std::string name, EventQueue& queue);
    ~EventListener();
    EventListener(const EventListener&) = delete;
    EventListener& operator=(const EventListener&) = delete;

  private:
    void OnParamChanged(ZelGenParam::Param* param) override;

    std::string name_;
    EventQueue& queue_;
    std::vector<ZelGenParam::Param*> data_;
    ZelGenParam::Param* trigger_ = nullptr;  // the one of data_ that is listened to
};

// Makes the camera send an event from construction to destruction.
class EventSwitch {
  public:
    // Failure (FeatureFailed) when the camera cannot.
    EventSwitch(ZelGenParam::Array& features, const std::string& name);
    ~EventSwitch();
    EventSwitch(const EventSwitch&) = delete;
    EventSwitch& operator=(const EventSwitch&) = delete;

  private:
    ZelGenParam::Array& features_;
    std::string name_;
    std::string before_;  // how the notification stood
};

// The events that the camera can tell of.
std::vector<std::string> EventNames(ZelGenParam::Array& features);

#endif  // ZELCAM_TOOLS_ZELCAM_EVENTLISTENER_H
