// Giving features values that users write.
#ifndef ZELCAM_TOOLS_ZELCAM_FEATURESETTING_H
#define ZELCAM_TOOLS_ZELCAM_FEATURESETTING_H

#include <string>
#include <vector>

#include <nlohmann/json.hpp>

#include "ZelGenParam/Array.h"

// The text for the feature's node of a value as a user writes it: numbers are whole, and may be
// followed by the unit of the feature or by one that converts into it exactly. The node itself
// would take "5ms" for 5. Failure (FeatureFailed) with what is wrong; whether the feature takes the
// value settles when it is set.
std::string SettingText(ZelGenParam::Param& feature, const std::string& text);

// Failure (Usage) unless all are of the form NAME=VALUE: to be called before the first one is set.
void RequireAssignments(const std::vector<std::string>& assignments);

// `assignment` is NAME=VALUE, with the value as SettingText takes it. Returns the feature. Failure
// (Usage, FeatureFailed) with what it can be set to.
ZelGenParam::Param& SetFeature(ZelGenParam::Array& features, const std::string& assignment);

// A feature as the camera took it, which may have rounded the value.
struct TakenSetting {
    std::string words;            // NAME=VALUE, with the unit
    nlohmann::ordered_json json;  // "name", "value", "unit"
};

// Sets a feature like SetFeature and reads it back. What cannot be read is as it was given, in JSON
// null.
TakenSetting SetAndRead(ZelGenParam::Array& features, const std::string& assignment);

#endif  // ZELCAM_TOOLS_ZELCAM_FEATURESETTING_H
