// Frames on their way from the sensor into a buffer.
#pragma once

#include <chrono>
#include <cstdint>
#include <memory>

#include "producers/simulator/frame/framesettings.h"

namespace ZelSim {

class Buffer;
class Camera;

// A frame that a sensor takes.
struct Frame {
    using Clock = std::chrono::steady_clock;

    uint64_t id = 0;
    std::shared_ptr<const FrameSettings> settings;
    Clock::time_point start;  // of its exposure

    Clock::time_point ExposureEnd() const { return start + settings->Exposure(); }
    Clock::time_point ReadoutEnd() const { return ExposureEnd() + settings->Readout(); }
};

// Puts a frame with its picture, its chunks and what is wrong with it into a buffer.
void WriteFrame(Camera& camera, const Frame& frame, Buffer& buffer);

// Whether the configuration wants this frame to be lost on its way.
bool IsLost(const Camera& camera, const Frame& frame);

}  // namespace ZelSim
