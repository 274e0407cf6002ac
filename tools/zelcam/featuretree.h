// The features of a module as the tree of categories that its description makes of them.
#ifndef ZELCAM_TOOLS_ZELCAM_FEATURETREE_H
#define ZELCAM_TOOLS_ZELCAM_FEATURETREE_H

#include <functional>
#include <string>
#include <vector>

#include "ZelGenParam/Array.h"

// By the name that options have for it; `name` must be one of those.
ZelGenParam::Visibility VisibilityOf(const std::string& name);

struct FeatureFilter {
    std::string glob;  // of the name of a feature, or of a category above it; empty: everything
    ZelGenParam::Visibility visibility = ZelGenParam::Visibility::Guru;
    bool missing = false;  // also those that this camera does not have
};

// A feature, and the names of the categories above it without the root.
using FeatureVisitor =
    std::function<void(ZelGenParam::Param& feature, const std::vector<std::string>& categories)>;

// Visits the features, not the categories, in the order of the description. One that is in several
// categories is visited in each.
void VisitFeatures(ZelGenParam::Array& features, const FeatureFilter& filter,
                   const FeatureVisitor& visit);

#endif  // ZELCAM_TOOLS_ZELCAM_FEATURETREE_H
