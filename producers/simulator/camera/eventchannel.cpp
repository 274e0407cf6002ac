#include "producers/simulator/camera/eventchannel.h"

#include <algorithm>
#include <cstring>

#include "producers/wire/gvcpevents.h"

namespace ZelSim {

using ZelCti::CameraEvent;
using ZelCti::CameraSink;
using ZelCti::Claim;
using ZelCti::EncodeGevEvent;
using ZelCti::EncodeU3vEvent;
using ZelCti::EventData;
using ZelCti::EventMessage;
using ZelCti::MakeClaim;

namespace {

// By kind.
namespace EventId = ZelCti::Gvcp::EventId;
constexpr uint16_t kIds[kNumEventKinds] = {0x9011,
                                           0x9012,
                                           0x9021,
                                           0x9022,
                                           0x9001,
                                           0x9FFF,
                                           EventId::kPrimaryApplicationSwitch,
                                           EventId::kActionLate};

// The features whose changes are reported, with their values.
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

bool IsGev(const std::string& tlType) {
    return tlType == TLTypeGEVName;
}

}  // namespace

const ZelCti::EventForm& EventFormOf(const std::string& tlType) {
    return IsGev(tlType) ? ZelCti::kGevEventForm : ZelCti::kU3vEventForm;
}

uint16_t EventIdOf(EventKind kind) {
    return kIds[static_cast<uint32_t>(kind)];
}

Claim EventChannel::Subscribe(CameraSink& sink) {
    const auto add = [&] {
        const std::lock_guard lock(mutex_);
        sinks_.push_back(&sink);
    };
    return MakeClaim(add, [this, gone = &sink] {
        const std::lock_guard releaseLock(mutex_);
        sinks_.erase(std::remove(sinks_.begin(), sinks_.end(), gone), sinks_.end());
    });
}

void EventChannel::ReportLoss() {
    const std::lock_guard lock(mutex_);
    for (CameraSink* const sink : sinks_)
        sink->OnLost("is unplugged");
}

void EventChannel::SetOn(EventKind kind, bool on) {
    const uint32_t bit = EventBit(kind);
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
    lastRequest_ = ZelCti::Gvcp::NextRequestId(lastRequest_);
    const EventMessage message = IsGev(tlType_) ? EncodeGevEvent(event, {lastRequest_}, false)
                                                : EncodeU3vEvent(event, lastRequest_);
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
    for (CameraSink* const sink : sinks_)
        sink->OnEvent(type, id, data);
}

}  // namespace ZelSim
