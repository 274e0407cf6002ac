// Sends software triggers.
#pragma once

#include <chrono>
#include <cstdint>

#include "ZelGenParam/Array.h"

namespace ZelTool {

// Executes TriggerSoftware of a camera at a rate, or after each frame. The camera loses a trigger
// that comes too early: without a rate, another trigger follows when no frame has arrived for a
// second. The features must outlive this object.
class SoftwareTrigger {
  public:
    // `perSecond` 0: after each frame. Throws Failure (FeatureFailed) with advice when the camera
    // does not wait for software triggers.
    SoftwareTrigger(ZelGenParam::Array& features, double perSecond);

    // The first trigger is due at Start, the next after FrameCame or at the given rate.
    void Start();
    void FrameCame();

    // Sends a trigger if one is due. Throws Failure (FeatureFailed) when the camera rejects it.
    void FireWhenDue();

    uint64_t MsUntilDue() const;
    uint64_t Sent() const { return sent_; }

  private:
    using Clock = std::chrono::steady_clock;

    ZelGenParam::Param& command_;
    Clock::duration interval_;
    bool hasRate_;
    Clock::time_point due_;
    uint64_t sent_ = 0;
};

}  // namespace ZelTool
