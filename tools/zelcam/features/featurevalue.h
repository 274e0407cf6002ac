// Properties of a feature: kind, unit, range, selectors.
#pragma once

#include <string>
#include <vector>

#include "ZelGenParam/Array.h"
#include "tools/zelcam/console/jsontext.h"

namespace ZelTool {

// The names of all features.
std::vector<std::string> NamesOf(ZelGenParam::Array& features);

// The feature with that name. Throws Failure (FeatureFailed) with similar names if there is none.
ZelGenParam::Param& FindFeature(ZelGenParam::Array& features, const std::string& name);

// The shortest text that reads back as the same number.
std::string NumberText(double number);

std::string KindWords(ZelGenParam::Param& feature);  // "integer", "command", ...

std::string UnitOf(ZelGenParam::Param& feature);

// "5000 us", or just the text if the feature has no unit.
std::string WithUnit(ZelGenParam::Param& feature, const std::string& text);

// The entries that an enumeration can have at the moment; empty for other features.
std::vector<std::string> EntriesOf(ZelGenParam::Param& feature);

// The possible values: "16..640 step 16", "Mono8|Mono16"; empty without limits.
std::string RangeOf(ZelGenParam::Param& feature);

// Adds those of "min", "max", "increment", "entries" and "maxLength" that the feature has.
void AddRange(ZelGenParam::Param& feature, Json& json);

// Whether this feature chooses among several values of other features.
bool IsSelector(ZelGenParam::Param& feature);

// The names of the features that choose among the values of this one.
std::vector<std::string> SelectorsOf(ZelGenParam::Param& feature);

}  // namespace ZelTool
