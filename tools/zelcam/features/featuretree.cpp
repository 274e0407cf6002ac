#include "tools/zelcam/features/featuretree.h"

#include <algorithm>
#include <fnmatch.h>

#include "tools/zelcam/camera/words.h"
#include "tools/zelcam/console/interrupt.h"
#include "tools/zelcam/console/wordtable.h"
#include "tools/zelcam/features/featurereading.h"

namespace ZelTool {

namespace {

constexpr Word<ZelGenParam::Visibility> kVisibilities[] = {
    {ZelGenParam::Visibility::Beginner, "beginner"},
    {ZelGenParam::Visibility::Expert, "expert"},
    {ZelGenParam::Visibility::Guru, "guru"},
    {ZelGenParam::Visibility::Invisible, "invisible"},
};

class Walk {
  public:
    Walk(const FeatureFilter& filter, const FeatureVisitor& visit)
        : filter_(filter), visit_(visit) {}

    // `wanted`: a category above matches, and so everything below it does.
    void Category(ZelGenParam::Category& category, bool wanted) {
        for (uint32_t i = 0; i < category.GetCount(); ++i) {
            ZelGenParam::Param* feature = category.GetParamByIndex(i, nullptr);
            if (feature != nullptr) Member(*feature, wanted);
        }
    }

  private:
    // Checks for Ctrl-C, since each feature of a lost camera may take a time-out.
    void Member(ZelGenParam::Param& feature, bool wanted) {
        EndIfInterrupted();
        const std::string name = feature.GetName();
        const bool fits = wanted || Fits(name);
        if (ZelGenParam::Category* category = feature.ToCategory()) {
            // A description may put a category into itself.
            if (std::count(path_.begin(), path_.end(), name) != 0) return;
            path_.push_back(name);
            Category(*category, fits);
            path_.pop_back();
        } else if (fits && feature.IsVisible(filter_.visibility) &&
                   (filter_.missing || AccessMark(feature) != "ni")) {
            visit_(feature, path_);
        }
    }

    bool Fits(const std::string& name) const {
        return filter_.glob.empty() ||
               fnmatch(filter_.glob.c_str(), name.c_str(), FNM_CASEFOLD) == 0;
    }

    const FeatureFilter& filter_;
    const FeatureVisitor& visit_;
    std::vector<std::string> path_;
};

}  // namespace

ZelGenParam::Visibility VisibilityOf(const std::string& name) {
    return CodeOf(name, kVisibilities);
}

std::string VisibilityWords(ZelGenParam::Visibility visibility) {
    return WordsFor(visibility, kVisibilities, "invisible");
}

void VisitFeatures(ZelGenParam::Array& features, const FeatureFilter& filter,
                   const FeatureVisitor& visit) {
    ZelCamErr code = ZelCamErr_Success;
    ZelGenParam::Category* root = features.GetRootCategory(&code);
    RequireSuccess(code, "the tree of features has no root");
    Walk(filter, visit).Category(*root, false);
}

bool HasMatch(ZelGenParam::Array& features, const std::string& glob) {
    bool hasMatch = false;
    VisitFeatures(features, {glob, ZelGenParam::Visibility::Invisible, true},
                  [&](ZelGenParam::Param&, const auto&) { hasMatch = true; });
    return hasMatch;
}

}  // namespace ZelTool
