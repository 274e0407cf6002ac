// What a camera reports by itself.
#pragma once

#include <atomic>
#include <cstdint>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "producers/server/base/claim.h"
#include "producers/simulator/camera/cameracontrol.h"
#include "producers/transport.h"
#include "producers/wire/eventmessage.h"

namespace ZelSim {

// The events of a camera, in the order of its selector.
enum class EventKind : uint32_t {
    AcquisitionStart,
    AcquisitionEnd,
    FrameStart,
    FrameEnd,
    ExposureEnd,
    Test,
    // Of cameras on a network, which send them at power-on as well.
    PrimaryApplicationSwitch,
    ActionLate
};
constexpr uint32_t kNumEventKinds = 8;
constexpr uint32_t kNumCommonEventKinds = 6;  // that cameras on no network have, too

// In sets of events.
constexpr uint32_t EventBit(EventKind kind) {
    return 1U << static_cast<uint32_t>(kind);
}

// GigE cameras send commands of their own; all others send the commands of USB3 cameras.
const ZelCti::EventForm& EventFormOf(const std::string& tlType);

// The number by which messages and descriptions refer to the events of a kind.
uint16_t EventIdOf(EventKind kind);

// Carries the events of a camera to all clients that have it open. Features choose the events that
// the camera sends; at power-on it sends none of frames and acquisitions. Thread-safe: actions
// of registers and threads that make frames may send events.
class EventChannel {
  public:
    explicit EventChannel(std::string tlType) : tlType_(std::move(tlType)) {}
    EventChannel(const EventChannel&) = delete;
    EventChannel& operator=(const EventChannel&) = delete;

    // Reports changes of the features that show settings. The control must live longer.
    void Follow(CameraControl& control);

    // The sink gets the events, and hears of the loss of the camera, until the claim is given back.
    ZelCti::Claim Subscribe(ZelCti::CameraSink& sink);

    // The camera is gone; called once.
    void ReportLoss();

    bool IsOn(EventKind kind) const {
        return (enabled_.load(std::memory_order_relaxed) & EventBit(kind)) != 0;
    }

    void SetOn(EventKind kind, bool on);

    // Sends an event if the camera is to do so.
    void Send(EventKind kind, uint64_t timestamp, std::optional<uint64_t> frameId = {});

  private:
    static constexpr uint32_t kEnabledAtPowerOn = EventBit(EventKind::Test) |
                                                  EventBit(EventKind::PrimaryApplicationSwitch) |
                                                  EventBit(EventKind::ActionLate);

    void ReportChanges(const FrameSettings& before, const FrameSettings& after);
    void Fire(GenTL::EVENT_TYPE type, uint64_t id, ZelCti::EventData data);

    const std::string tlType_;
    ZelCti::Claim changes_;
    std::atomic<uint32_t> enabled_{kEnabledAtPowerOn};
    std::mutex mutex_;
    std::vector<ZelCti::CameraSink*> sinks_;  // guarded by mutex_
    uint16_t lastRequest_ = 0;                // guarded by mutex_
};

}  // namespace ZelSim
