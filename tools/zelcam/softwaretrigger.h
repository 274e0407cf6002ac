// Triggers that a program sends.
#ifndef ZELCAM_TOOLS_ZELCAM_SOFTWARETRIGGER_H
#define ZELCAM_TOOLS_ZELCAM_SOFTWARETRIGGER_H

#include <chrono>
#include <cstdint>

#include "ZelGenParam/Array.h"

// Executes TriggerSoftware of a camera: at a rate, or each time that a frame came. A trigger that
// comes too early is lost in the camera: without a rate, another one follows when no frame came for
// a second. The features must outlive this object.
class SoftwareTrigger {
  public:
    // `perSecond` 0: each time that a frame came. Failure (FeatureFailed), which says what to set,
    // for a camera that does not wait for software triggers.
    SoftwareTrigger(ZelGenParam::Array& features, double perSecond);

    // From here on triggers are due.
    void Start();
    void FrameCame();

    // Sends one when it is due. Failure (FeatureFailed) when the camera refuses it.
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

#endif  // ZELCAM_TOOLS_ZELCAM_SOFTWARETRIGGER_H
