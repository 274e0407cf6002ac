// Visits the features of a module in the tree of categories that its description defines.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "ZelGenParam/Array.h"

namespace ZelTool {

// The names of the visibilities in options and in JSON; `name` must be one of them.
ZelGenParam::Visibility VisibilityOf(const std::string& name);
std::string VisibilityWords(ZelGenParam::Visibility visibility);

struct FeatureFilter {
    std::string glob;  // matches the name of a feature or of a category above it; empty: all
    ZelGenParam::Visibility visibility = ZelGenParam::Visibility::Guru;
    bool missing = false;  // include features that this camera does not have
};

// Gets a feature and the names of the categories above it, without the root.
using FeatureVisitor =
    std::function<void(ZelGenParam::Param& feature, const std::vector<std::string>& categories)>;

// Visits the features, but not the categories, in the order of the description. It visits a feature
// in several categories once in each.
void VisitFeatures(ZelGenParam::Array& features, const FeatureFilter& filter,
                   const FeatureVisitor& visit);

// Whether the camera's description has a feature or a category with that name.
bool HasMatch(ZelGenParam::Array& features, const std::string& glob);

}  // namespace ZelTool
