// The description of the camera itself.
#pragma once

#include <memory>

#include "producers/server/registers/description.h"

namespace ZelSim {

class Camera;
class CameraFeatures;

// What the camera can do and how its registers are laid out.
std::unique_ptr<const ZelCti::Description> MakeCameraDescription(const Camera& camera,
                                                                 const CameraFeatures& features);

}  // namespace ZelSim
