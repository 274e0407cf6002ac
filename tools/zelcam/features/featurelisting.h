// Lists features as a table or as JSON.
#pragma once

#include <cstddef>
#include <functional>
#include <iosfwd>
#include <string>
#include <vector>

#include "tools/zelcam/console/jsontext.h"
#include "tools/zelcam/console/texttable.h"
#include "tools/zelcam/features/featuretree.h"

namespace ZelTool {

// Whether to hide the value of a feature, and its range, which may reveal the value or its length.
using FeatureHiding = std::function<bool(const std::string& name, const std::string& value)>;

// The result of listing features. The listing ends when the camera is lost.
struct FeatureListing {
    size_t count = 0;
    std::vector<std::string> failures;  // why features are listed without values

    // "3 features cannot be read: ..."; empty without failures.
    std::string Problem() const;
};

struct TableStyle {
    size_t width = 0;           // lines wrap there; 0: nowhere
    bool descriptions = false;  // print one below each feature
    FeatureHiding hides = nullptr;
    TextFilter filter = nullptr;  // for the cells
};

// Prints nothing when no feature matches the glob.
FeatureListing PrintFeatures(std::ostream& out, ZelGenParam::Array& features,
                             const FeatureFilter& filter, const TableStyle& style);

// Adds an object for each feature to `list`, an array.
FeatureListing ListFeatures(Json& list, ZelGenParam::Array& features, const FeatureFilter& filter,
                            const FeatureHiding& hides = nullptr);

}  // namespace ZelTool
