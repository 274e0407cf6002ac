// Frames on their way from the sensor into a buffer.
#pragma once

#include <chrono>
#include <cstdint>
#include <memory>

#include "producers/simulator/frame/framesettings.h"

namespace ZelSim {

// A frame that a sensor takes.
struct Frame {
    using Clock = std::chrono::steady_clock;

    uint64_t id = 0;
    std::shared_ptr<const FrameSettings> settings;
    Clock::time_point start;  // of its exposure

    Clock::time_point ExposureEnd() const { return start + settings->Exposure(); }
    Clock::time_point ReadoutEnd() const { return ExposureEnd() + settings->Readout(); }
};

}  // namespace ZelSim
