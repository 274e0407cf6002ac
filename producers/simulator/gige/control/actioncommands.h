// ACTION: what several cameras do at the same time.
#pragma once

#include <chrono>
#include <optional>

#include "producers/simulator/camera/camera.h"
#include "producers/simulator/gige/control/actionqueue.h"
#include "producers/simulator/gige/control/bootstrapregisters.h"
#include "producers/wire/gvcpcommands.h"

namespace ZelSim {

// Compares the keys of actions with those in the registers and gives the signals to the camera, at
// once or when their time comes. Thread-bound.
class ActionCommands {
  public:
    using Clock = std::chrono::steady_clock;
    using Status = ZelCti::Gev::Status;

    ActionCommands(Camera& camera, const BootstrapRegisters& bootstrap, NetworkHardware& hardware)
        : camera_(camera), bootstrap_(bootstrap), hardware_(hardware) {}

    // The status of the acknowledge; none when the action does not mean this camera.
    std::optional<Status> Run(const ZelCti::Gvcp::Command& command, bool isControlled,
                              Clock::time_point now);

    std::optional<Clock::time_point> NextDeadline(Clock::time_point now) const;
    void ActDue(Clock::time_point now);
    void Clear() { queue_.Clear(); }

  private:
    uint32_t SignalsOf(const ZelCti::Gvcp::Action& action) const;
    Status Schedule(uint64_t time, uint32_t signals, Clock::time_point now);
    Status StatusOf20(Status status) const;
    void Act(uint32_t signals);
    uint64_t TicksAt(Clock::time_point time) const {
        return camera_.Ticks(camera_.NanosecondsAt(time));
    }

    Camera& camera_;
    const BootstrapRegisters& bootstrap_;
    NetworkHardware& hardware_;
    ActionQueue<BootstrapRegisters::kScheduledActions> queue_;
};

}  // namespace ZelSim
