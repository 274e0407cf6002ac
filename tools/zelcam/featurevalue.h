// One feature: what it is, and what it holds.
#ifndef ZELCAM_TOOLS_ZELCAM_FEATUREVALUE_H
#define ZELCAM_TOOLS_ZELCAM_FEATUREVALUE_H

#include <optional>
#include <string>
#include <vector>

#include <nlohmann/json_fwd.hpp>

#include "ZelGenParam/Array.h"

// The feature of that name. Failure (FeatureFailed) when there is none, with names like it.
ZelGenParam::Param& FindFeature(ZelGenParam::Array& features, const std::string& name);

std::string KindWords(ZelGenParam::Param& feature);  // "integer", "command", ...
std::string VisibilityWords(ZelGenParam::Visibility visibility);

// "rw", "ro" or "wo" as it is at the moment, "na" when it is not available, "ni" when this camera
// does not have it.
std::string AccessMark(ZelGenParam::Param& feature);

// The value as a text that SetFeature takes; nothing when it cannot be read, or when the feature
// has none, like a command. `fresh`: ask the camera even if the value is known.
std::optional<std::string> ReadFeature(ZelGenParam::Param& feature, bool fresh = false);

// The same as a number, a truth value, a text, or null.
nlohmann::ordered_json ReadFeatureAsJson(ZelGenParam::Param& feature);

std::string UnitOf(ZelGenParam::Param& feature);

// What can be set: "16..640 step 16", "Mono8|Mono16"; empty when there are no limits.
std::string RangeOf(ZelGenParam::Param& feature);

// Adds "min", "max", "increment", "entries", "maxLength" to `json`, as far as there are some.
void AddRange(ZelGenParam::Param& feature, nlohmann::ordered_json& json);

// Whether other features show one of several values by this one's.
bool IsSelector(ZelGenParam::Param& feature);

// Names of the features that choose which of several values this one shows.
std::vector<std::string> SelectorsOf(ZelGenParam::Param& feature);

// `assignment` is NAME=VALUE, with the value as ReadFeature gives it. Returns the feature. Failure
// (Usage, FeatureFailed) with what it can be set to.
ZelGenParam::Param& SetFeature(ZelGenParam::Array& features, const std::string& assignment);

#endif  // ZELCAM_TOOLS_ZELCAM_FEATUREVALUE_H
