#include "tools/zelcam/features/eventlistener.h"

#include <algorithm>

#include "tools/zelcam/camera/words.h"
#include "tools/zelcam/console/failure.h"
#include "tools/zelcam/features/featurereading.h"
#include "tools/zelcam/features/featuresetting.h"
#include "tools/zelcam/features/featuretree.h"
#include "tools/zelcam/features/featurevalue.h"

namespace ZelTool {

namespace {

using ZelGenParam::Param;

constexpr const char* kSelectorName = "EventSelector";
constexpr const char* kNotificationName = "EventNotification";

// The members of the category EventNAMEData. Without that category, the features of every event.
std::vector<Param*> DataOf(ZelGenParam::Array& features, const std::string& name) {
    const std::string base = "Event" + name;
    std::vector<Param*> data;
    const FeatureFilter filter = {base + "Data", ZelGenParam::Visibility::Invisible, false};
    VisitFeatures(features, filter,
                  [&data](Param& feature, const auto&) { data.push_back(&feature); });
    if (!data.empty()) return data;
    for (const char* suffix : {"", "Timestamp", "FrameID"}) {
        Param* feature = features.GetParam((base + suffix).c_str(), nullptr);
        if (feature != nullptr) data.push_back(feature);
    }
    return data;
}

// A feature that changes with each event. EventNAME itself comes last: it may be a constant.
Param* TriggerOf(const std::vector<Param*>& data, const std::string& name) {
    for (const char* suffix : {"Timestamp", "FrameID", ""}) {
        const std::string wanted = "Event" + name + suffix;
        const auto found = std::find_if(
            data.begin(), data.end(), [&](Param* feature) { return feature->GetName() == wanted; });
        if (found != data.end()) return *found;
    }
    return nullptr;
}

}  // namespace

void EventQueue::Put(ArrivedEvent event) {
    const std::lock_guard lock(mutex_);
    events_.push_back(std::move(event));
    came_.notify_one();
}

std::optional<ArrivedEvent> EventQueue::Get(uint64_t timeoutMs) {
    std::unique_lock lock(mutex_);
    came_.wait_for(lock, std::chrono::milliseconds(timeoutMs), [this] { return !events_.empty(); });
    if (events_.empty()) return std::nullopt;
    ArrivedEvent event = std::move(events_.front());
    events_.pop_front();
    return event;
}

EventListener::EventListener(ZelGenParam::Array& features, std::string name, EventQueue& queue)
    : name_(std::move(name)), queue_(queue), data_(DataOf(features, name_)) {
    trigger_ = TriggerOf(data_, name_);
    if (trigger_ == nullptr) {
        throw Failure(ExitCode::FeatureFailed,
                      "the camera has no features for the event \"" + name_ + "\"");
    }
    RequireSuccess(trigger_->RegisterEventSink(this),
                   "listening to " + std::string(trigger_->GetName()) + " failed");
}

EventListener::~EventListener() {
    trigger_->UnregisterEventSink(this);
}

void EventListener::OnParamChanged(Param*) {
    ArrivedEvent event{WallClock::now(), name_, {}};
    for (Param* feature : data_) {
        try {
            const std::optional<std::string> text = ReadFeature(*feature);
            if (text)
                event.data.push_back({feature->GetName(), *text, ReadFeatureAsJson(*feature)});
        } catch (const Failure&) {
            // The event has arrived without this value, and no caller handles a failure.
        }
    }
    queue_.Put(std::move(event));
}

EventSwitch::EventSwitch(ZelGenParam::Array& features, const std::string& name)
    : features_(features), name_(name) {
    SetFeature(features_, std::string(kSelectorName) + "=" + name_);
    before_ = ReadFeature(FindFeature(features_, kNotificationName)).value_or("Off");
    SetFeature(features_, std::string(kNotificationName) + "=On");
}

// Ignores failures: the camera may be lost, and a destructor cannot report that.
EventSwitch::~EventSwitch() {
    features_.SetEnumValueStr(kSelectorName, name_.c_str());
    features_.SetEnumValueStr(kNotificationName, before_.c_str());
}

std::vector<std::string> EventNames(ZelGenParam::Array& features) {
    return EntriesOf(FindFeature(features, kSelectorName));
}

}  // namespace ZelTool
