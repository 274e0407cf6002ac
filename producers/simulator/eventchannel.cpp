#include "producers/simulator/eventchannel.h"

#include <algorithm>
#include <cstring>

#include "producers/simulator/eventmessage.h"
#include "producers/simulator/module.h"

namespace ZelSim {

namespace {

constexpr uint64_t kNotificationAddress = 0x8000;  // one register of 4 bytes for each event
constexpr uint64_t kTestEventAddress = 0x8100;

// By kind; the description names the same numbers.
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

void EventChannel::AddRegisters(RegisterSpace& registers, std::function<uint64_t()> clock) {
    for (uint32_t number = 0; number < kNumEventKinds; ++number) {
        const auto kind = static_cast<EventKind>(number);
        RegisterSpace::Integer notification;
        notification.address = kNotificationAddress + number * sizeof(uint32_t);
        notification.get = [this, kind] { return uint64_t{IsOn(kind)}; };
        notification.set = [this, kind](uint64_t value) { SetOn(kind, value != 0); };
        registers.Add(notification);
    }
    RegisterSpace::Integer test;
    test.address = kTestEventAddress;
    test.access = Access::WriteOnly;
    test.set = [this, clock = std::move(clock)](uint64_t) { Send(EventKind::Test, clock()); };
    registers.Add(test);
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
    const CameraEvent event{kIds[static_cast<uint32_t>(kind)], timestamp, frameId};
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
