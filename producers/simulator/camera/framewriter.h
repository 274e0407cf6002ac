// Frames on their way from the sensor into a buffer.
#pragma once

#include "producers/simulator/frame/frame.h"
#include "producers/transport.h"

namespace ZelSim {

class Camera;

// What a frame will be like, before it is written: complete, and with its chunks.
ZelCti::FrameInfo Announce(const Camera& camera, const Frame& frame);

// Writes a frame with its picture, its chunks and what is wrong with it to a buffer.
ZelCti::FrameInfo WriteFrame(Camera& camera, const Frame& frame, const ZelCti::FrameBuffer& buffer);

// Whether the configuration wants this frame to be lost on its way.
bool IsLost(const Camera& camera, const Frame& frame);

}  // namespace ZelSim
