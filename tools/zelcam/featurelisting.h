// Features as a table, and as JSON.
#ifndef ZELCAM_TOOLS_ZELCAM_FEATURELISTING_H
#define ZELCAM_TOOLS_ZELCAM_FEATURELISTING_H

#include <cstddef>
#include <functional>
#include <iosfwd>
#include <string>

#include "tools/zelcam/featuretree.h"

// Whether the value of the feature of that name is hidden.
using FeatureHiding = std::function<bool(const std::string& name)>;

// Both return how many features were printed; nothing is printed when none fits the glob.
size_t PrintFeatures(std::ostream& out, ZelGenParam::Array& features, const FeatureFilter& filter,
                     const FeatureHiding& hides = nullptr);
size_t PrintFeaturesAsJson(std::ostream& out, ZelGenParam::Array& features,
                           const FeatureFilter& filter, const std::string& camera);

#endif  // ZELCAM_TOOLS_ZELCAM_FEATURELISTING_H
