// Reads features from a camera that may not answer.
#pragma once

#include <optional>
#include <string>

#include "ZelGenParam/Array.h"
#include "tools/zelcam/console/failure.h"
#include "tools/zelcam/console/jsontext.h"

namespace ZelTool {

// Neither the feature nor anything else in its module can be read, so the command should end.
class CameraLost : public Failure {
  public:
    using Failure::Failure;
};

// The access at the moment: "rw", "ro" or "wo"; "na" when the feature is not available, "ni" when
// this camera does not have it, "??" when the camera does not answer.
std::string AccessMark(ZelGenParam::Param& feature);

// The value as a text that SetFeature accepts. Nothing when the feature is not readable at the
// moment or has no value, like a command. Throws Failure (FeatureFailed) or CameraLost when the
// feature is readable but reading fails. `fresh`: asks the camera even if the value is cached.
std::optional<std::string> ReadFeature(ZelGenParam::Param& feature, bool fresh = false);

// The same value as a JSON number, boolean or string, or null.
Json ReadFeatureAsJson(ZelGenParam::Param& feature, bool fresh = false);

// The same value; empty if it cannot be read for any reason.
std::string ReadOrEmpty(ZelGenParam::Param& feature, bool fresh = false);

// Throws CameraLost when the module has readable registers and none of them answers.
void RequireAnswer(ZelGenParam::Array& features);

}  // namespace ZelTool
