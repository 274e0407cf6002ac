// What a feature holds, asked of a camera that may not answer.
#ifndef ZELCAM_TOOLS_ZELCAM_FEATUREREADING_H
#define ZELCAM_TOOLS_ZELCAM_FEATUREREADING_H

#include <optional>
#include <string>

#include <nlohmann/json_fwd.hpp>

#include "ZelGenParam/Array.h"
#include "tools/zelcam/failure.h"

// A feature cannot be read, and nothing else of its module either: it makes no sense to go on.
class CameraLost : public Failure {
  public:
    using Failure::Failure;
};

// "rw", "ro" or "wo" as it is at the moment, "na" when it is not available, "ni" when this camera
// does not have it, "??" when the camera does not answer.
std::string AccessMark(ZelGenParam::Param& feature);

// The value as a text that SetFeature takes; nothing when it is not readable at the moment, or when
// the feature has none, like a command. Failure (FeatureFailed) or CameraLost when it is readable,
// and yet the camera does not answer. `fresh`: ask the camera even if the value is known.
std::optional<std::string> ReadFeature(ZelGenParam::Param& feature, bool fresh = false);

// The same as a number, a truth value, a text, or null.
nlohmann::ordered_json ReadFeatureAsJson(ZelGenParam::Param& feature, bool fresh = false);

// ReadFeature where no failure counts: empty for whatever cannot be read.
std::string ReadOrEmpty(ZelGenParam::Param& feature, bool fresh = false);

// CameraLost when registers are read, and none answers.
void RequireAnswer(ZelGenParam::Array& features);

#endif  // ZELCAM_TOOLS_ZELCAM_FEATUREREADING_H
