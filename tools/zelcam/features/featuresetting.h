// Sets features to values that the user writes.
#pragma once

#include <string>
#include <vector>

#include "ZelGenParam/Array.h"
#include "tools/zelcam/console/jsontext.h"

namespace ZelTool {

// Converts a value from the user to a text for Array::SetValueStr. A number may have the feature's
// unit, or one that converts into it exactly; the engine would ignore a unit and take "5ms" for 5.
// Throws Failure (FeatureFailed) with the reason. Whether the camera accepts the value is known
// only when it is set.
std::string SettingText(ZelGenParam::Param& feature, const std::string& text);

// Sets a feature by a text of the engine. Returns the reason of a failure; empty on success.
std::string SetText(ZelGenParam::Array& features, const std::string& name, const std::string& text);

// Throws Failure (Usage) unless all have the form NAME=VALUE. Call it before setting the first one.
void RequireAssignments(const std::vector<std::string>& assignments);

// Sets a feature by NAME=VALUE; SettingText converts the value. Returns the feature. Throws Failure
// (Usage, FeatureFailed), which says what values are possible.
ZelGenParam::Param& SetFeature(ZelGenParam::Array& features, const std::string& assignment);

// The value that the camera has accepted. It may have rounded the given one.
struct TakenSetting {
    std::string words;  // NAME=VALUE, with the unit
    Json json;          // "name", "value", "unit"
};

// Sets a feature like SetFeature and reads it back. If it cannot be read, the words have the given
// value, and the JSON has null.
TakenSetting SetAndRead(ZelGenParam::Array& features, const std::string& assignment);

}  // namespace ZelTool
