// The chunk control of a camera.
#ifndef ZELSIM_CHUNKREGISTERS_H
#define ZELSIM_CHUNKREGISTERS_H

#include "producers/simulator/cameracontrol.h"
#include "producers/simulator/registerspace.h"

namespace ZelSim {

// Adds the registers that choose the chunks of the frames. They refer to the control, which must
// live as long as clients reach the space.
void AddChunkRegisters(RegisterSpace& registers, CameraControl& control);

}  // namespace ZelSim

#endif  // ZELSIM_CHUNKREGISTERS_H
