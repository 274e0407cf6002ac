// The registers behind the features of AcquisitionControl.
#ifndef ZELSIM_ACQUISITIONREGISTERS_H
#define ZELSIM_ACQUISITIONREGISTERS_H

namespace ZelSim {

class Camera;

// Those that descriptions/cameraacquisition.xml describes. The camera owns the space they are in.
void AddAcquisitionRegisters(Camera& camera);

}  // namespace ZelSim

#endif  // ZELSIM_ACQUISITIONREGISTERS_H
