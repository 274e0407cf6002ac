// Features as a table, and as JSON.
#ifndef ZELCAM_TOOLS_ZELCAM_FEATURELISTING_H
#define ZELCAM_TOOLS_ZELCAM_FEATURELISTING_H

#include <cstddef>
#include <functional>
#include <iosfwd>
#include <string>
#include <vector>

#include <nlohmann/json_fwd.hpp>

#include "tools/zelcam/featuretree.h"
#include "tools/zelcam/texttable.h"

// Whether the value of a feature is hidden, and its range, which can tell the value or its length.
using FeatureHiding = std::function<bool(const std::string& name, const std::string& value)>;

// What came of listing features. The listing ends where the camera is lost.
struct FeatureListing {
    size_t count = 0;
    std::vector<std::string> failures;  // why features stand there without their values

    // "3 features cannot be read: ..."; empty when all could.
    std::string Problem() const;
};

struct TableStyle {
    size_t width = 0;           // where lines wrap; 0: nowhere
    bool descriptions = false;  // below each feature
    FeatureHiding hides = nullptr;
    TextFilter filter = nullptr;  // of the cells
};

// Nothing is printed when no feature fits the glob.
FeatureListing PrintFeatures(std::ostream& out, ZelGenParam::Array& features,
                             const FeatureFilter& filter, const TableStyle& style);

// Adds an object for each feature to `list`, an array.
FeatureListing ListFeatures(nlohmann::ordered_json& list, ZelGenParam::Array& features,
                            const FeatureFilter& filter, const FeatureHiding& hides = nullptr);

#endif  // ZELCAM_TOOLS_ZELCAM_FEATURELISTING_H
