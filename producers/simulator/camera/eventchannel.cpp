#include "producers/simulator/camera/eventchannel.h"

#include <algorithm>
#include <cstring>

#include "producers/server/modules/module.h"
#include "producers/wire/eventmessage.h"

namespace ZelSim {

namespace {

// By kind.
constexpr uint16_t kIds[kNumEventKinds] = {0x9011, 0x9012, 0x9021, 0x9022, 0x9001, 0x9FFF};

// The features whose change is told, with what they read as.
struct Followed {
    const char* name;
    double (*value)(const FrameSettings& settings);
};
constexpr Followed kFollowed[] = {
    {"Width", [](const FrameSettings& s) -> double { return s.width; }},
    {"Height", [](const FrameSettings& s) -> double { return s.height; }},
    {"OffsetX", [](const FrameSettings& s) -> double { return s.offsetX; }},
    {"OffsetY", [](const FrameSettings& s) -> double { return s.offsetY; }},
    {"PixelFormat", [](const FrameSettings& s) -> double { return s.pixelFormat->value; }},
    {"PayloadSize", [](const FrameSettings& s) { return static_cast<double>(s.PayloadSize()); }},
    {"ExposureTime", [](const FrameSettings& s) -> double { return s.exposureTime; }},
    {"AcquisitionFrameRate", [](const FrameSettings& s) { return s.frameRate; }},
};

}  // namespace

uint16_t EventIdOf(EventKind kind) {
    return kIds[static_cast<uint32_t>(kind)];
}

Claim EventChannel::Subscribe(Module& module) {
    const auto add = [&] {
        const std::lock_guard lock(mutex_);
        modules_.push_back(&module);
    };
    return MakeClaim(add, [this, gone = &module] {
        const std::lock_guard releaseLock(mutex_);
        modules_.erase(std::remove(modules_.begin(), modules_.end(), gone), modules_.end());
    });
}

void EventChannel::SetOn(EventKind kind, bool on) {
    const uint32_t bit = 1U << static_cast<uint32_t>(kind);
    if (on) {
        enabled_ |= bit;
    } else {
        enabled_ &= ~bit;
    }
}

void EventChannel::Send(EventKind kind, uint64_t timestamp, std::optional<uint64_t> frameId) {
    if (!IsOn(kind)) return;
    const CameraEvent event{EventIdOf(kind), timestamp, frameId};
    const std::lock_guard lock(mutex_);
    if (++lastRequest_ == 0) ++lastRequest_;  // 0 is no number of a request
    const EventMessage message = EncodeEvent(tlType_, event, lastRequest_);
    Fire(GenTL::EVENT_REMOTE_DEVICE, event.id, {message.bytes.data(), message.size});
}

void EventChannel::Follow(CameraControl& control) {
    changes_ = control.AddListener([this](const FrameSettings& before, const FrameSettings& after) {
        ReportChanges(before, after);
    });
}

void EventChannel::ReportChanges(const FrameSettings& before, const FrameSettings& after) {
    const std::lock_guard lock(mutex_);
    for (const Followed& feature : kFollowed) {
        if (feature.value(before) == feature.value(after)) continue;
        const EventData name{feature.name, std::strlen(feature.name) + 1};
        Fire(GenTL::EVENT_FEATURE_INVALIDATE, 0, name);
    }
}

void EventChannel::Fire(GenTL::EVENT_TYPE type, uint64_t id, EventData data) {
    for (Module* const module : modules_)
        module->FireMessage(type, id, data);
}

}  // namespace ZelSim
