// One feature: what it is, and what it can hold.
#ifndef ZELCAM_TOOLS_ZELCAM_FEATUREVALUE_H
#define ZELCAM_TOOLS_ZELCAM_FEATUREVALUE_H

#include <string>
#include <vector>

#include <nlohmann/json_fwd.hpp>

#include "ZelGenParam/Array.h"

// The names of all features.
std::vector<std::string> NamesOf(ZelGenParam::Array& features);

// The feature of that name. Failure (FeatureFailed) when there is none, with names like it.
ZelGenParam::Param& FindFeature(ZelGenParam::Array& features, const std::string& name);

// Shortest text that reads back as the same number.
std::string NumberText(double number);

std::string KindWords(ZelGenParam::Param& feature);  // "integer", "command", ...
std::string VisibilityWords(ZelGenParam::Visibility visibility);

std::string UnitOf(ZelGenParam::Param& feature);

// "5000 us"; the text alone where there is no unit.
std::string WithUnit(ZelGenParam::Param& feature, const std::string& text);

// The names that an enumeration can have at the moment; none for other features.
std::vector<std::string> EntriesOf(ZelGenParam::Param& feature);

// What can be set: "16..640 step 16", "Mono8|Mono16"; empty when there are no limits.
std::string RangeOf(ZelGenParam::Param& feature);

// Adds "min", "max", "increment", "entries", "maxLength" to `json`, as far as there are some.
void AddRange(ZelGenParam::Param& feature, nlohmann::ordered_json& json);

// Whether other features show one of several values by this one's.
bool IsSelector(ZelGenParam::Param& feature);

// Names of the features that choose which of several values this one shows.
std::vector<std::string> SelectorsOf(ZelGenParam::Param& feature);

#endif  // ZELCAM_TOOLS_ZELCAM_FEATUREVALUE_H
