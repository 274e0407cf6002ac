// The registers of what frames are made with.
#ifndef ZELSIM_FRAMEREGISTERS_H
#define ZELSIM_FRAMEREGISTERS_H

#include "producers/simulator/cameracontrol.h"
#include "producers/simulator/registerspace.h"

namespace ZelSim {

// Adds the registers that the fragments cameraimage.xml, cameraacquisition.xml and cameraanalog.xml
// describe, but for the calibration. `control` must live as long as the space is accessed.
void AddFrameRegisters(RegisterSpace& space, CameraControl& control);

}  // namespace ZelSim

#endif  // ZELSIM_FRAMEREGISTERS_H
