// Frames as GenDC containers.
#pragma once

#include "producers/simulator/frame/framesettings.h"
#include "producers/transport.h"
#include "producers/wire/byteview.h"

namespace ZelSim {

// Writes the descriptor of a frame whose parts, one of each component, lie behind it.
void WriteGenDcDescriptor(const FrameSettings& settings, const ZelCti::FrameInfo& frame,
                          ZelCti::ByteSpan out);

}  // namespace ZelSim
