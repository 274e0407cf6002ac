// The description of the camera itself.
#ifndef ZELSIM_CAMERADESCRIPTION_H
#define ZELSIM_CAMERADESCRIPTION_H

#include <memory>

#include "producers/simulator/description.h"

namespace ZelSim {

class Camera;

// What the camera can do and how its registers are laid out.
std::unique_ptr<const Description> MakeCameraDescription(const Camera& camera);

}  // namespace ZelSim

#endif  // ZELSIM_CAMERADESCRIPTION_H
