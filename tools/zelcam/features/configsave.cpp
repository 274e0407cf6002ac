#include "tools/zelcam/features/configsave.h"

#include <iostream>
#include <optional>
#include <sstream>

#include <GenApi/GenApi.h>

#include "tools/zelcam/console/failure.h"
#include "tools/zelcam/console/outputfile.h"
#include "tools/zelcam/console/texttable.h"
#include "tools/zelcam/features/configfile.h"
#include "tools/zelcam/features/featuretree.h"
#include "tools/zelcam/features/featurevalue.h"

namespace ZelTool {

namespace {

using Names = std::vector<std::string>;
using ZelGenParam::Param;

// While frames are grabbed, many settings are locked and would be missing.
void RefuseWhileGrabbing(ZelGenParam::Array& features) {
    ZelCamErr code = ZelCamErr_Success;
    const int64_t locked = features.GetIntegerValue("TLParamsLocked", &code);
    if (code == ZelCamErr_Success && locked != 0) {
        throw Failure(
            ExitCode::FeatureFailed,
            "frames are being grabbed, and the camera locks settings meanwhile: save them when "
            "the camera has stopped (TLParamsLocked is then 0)");
    }
}

// The names of the streamable features for which `fits` is true.
template <typename Predicate>
Names StreamableFeatures(ZelGenParam::Array& features, Predicate fits) {
    Names names;
    VisitFeatures(features, {"", ZelGenParam::Visibility::Invisible, false},
                  [&](Param& feature, const Names& /*categories*/) {
                      if (feature.IsStreamable() && fits(feature))
                          names.emplace_back(feature.GetName());
                  });
    return names;
}

std::string WhyNothingIsSaved(ZelGenParam::Array& features) {
    const Names streamable = StreamableFeatures(features, [](Param&) { return true; });
    if (streamable.empty()) {
        return "the camera's description marks no feature as streamable, that is, as a setting; "
               "--all saves every feature that can be read and written";
    }
    return "the camera's " + std::to_string(streamable.size()) +
           " settings cannot be written at the moment, and only writable settings are saved: is "
           "the "
           "camera open read-only, or locked?";
}

Names LockedFeatures(ZelGenParam::Array& features) {
    return StreamableFeatures(
        features, [](Param& feature) { return feature.IsReadable() && !feature.IsWritable(); });
}

void NoteLocked(const Names& locked) {
    if (locked.empty()) return;
    std::cerr << "zelcam: note: not saved because they cannot be written at the moment: "
              << Joined(locked) << '\n';
}

bool IsReadableAndWritable(GenApi::IValue* value) {
    return GenApi::IsReadable(value) && GenApi::IsWritable(value);
}

// Collects every feature of the camera, as CFeatureBag does with streamable features.
class Collection {
  public:
    void Add(GenApi::INode& node) {
        auto* value = dynamic_cast<GenApi::IValue*>(&node);
        if (value == nullptr || !node.IsFeature() || !IsSetting(node)) return;
        GenApi::CSelectorSet selectors(&node);
        if (selectors.IsEmpty()) {
            if (IsReadableAndWritable(value)) bag_.PersistFeature(*value);
        } else {
            AddCombinations(*value, selectors);
        }
    }

    std::string Text() const {
        std::ostringstream text;
        text << bag_;
        return text.str();
    }

  private:
    // Selectors are collected with the features that they select.
    static bool IsSetting(GenApi::INode& node) {
        const GenApi::EInterfaceType type = node.GetPrincipalInterfaceType();
        const auto* selector = dynamic_cast<GenApi::ISelector*>(&node);
        return type != GenApi::intfICommand && type != GenApi::intfICategory &&
               (selector == nullptr || !selector->IsSelector());
    }

    void AddCombinations(GenApi::IValue& value, GenApi::CSelectorSet& selectors) {
        constexpr int kTooMany = 1 << 19;  // the limit of a bag
        for (bool more = selectors.SetFirst(); more; more = selectors.SetNext()) {
            if (++combinations_ > kTooMany) {
                throw RUNTIME_EXCEPTION("the selectors have too many combinations");
            }
            if (!IsReadableAndWritable(&value)) continue;
            AddSelectors(selectors);
            bag_.PersistFeature(value);
        }
        selectors.Restore();
        AddSelectors(selectors);
    }

    void AddSelectors(GenApi::CSelectorSet& selectors) {
        GenApi::FeatureList_t list;
        selectors.GetSelectorList(list);
        for (size_t i = 0; i < list.size(); ++i)
            if (IsReadableAndWritable(list[i])) bag_.PersistFeature(*list[i]);
    }

    GenApi::CFeatureBag bag_;
    int combinations_ = 0;
};

// The text of all features. The names of features that cannot be read go to `unreadable`.
std::string AllFeatures(GenApi::INodeMap& nodeMap, Names& unreadable) {
    GenApi::NodeList_t nodes;
    nodeMap.GetNodes(nodes);
    Collection collection;
    for (size_t i = 0; i < nodes.size(); ++i) {
        try {
            collection.Add(*nodes[i]);
        } catch (const GenICam::GenericException& error) {
            unreadable.push_back(std::string(nodes[i]->GetName().c_str()) + " (" +
                                 error.GetDescription() + ")");
        }
    }
    return collection.Text();
}

}  // namespace

Saved SaveSettings(OpenedCamera& camera, const std::string& file, Settled settled) {
    ZelGenParam::Array& features = camera.Features(Module::Camera);
    RefuseWhileGrabbing(features);
    std::optional<OutputFile> output;
    if (file != kStandardStream) output.emplace(file, Existing::Replace);
    Names missing;
    const std::string text = settled == Settled::All ? AllFeatures(NodeMapOf(camera), missing)
                                                     : SavedText(camera.Device());
    const Configuration configuration = ParseConfiguration(text, kSavedText);
    missing.insert(missing.end(), configuration.leftOut.begin(), configuration.leftOut.end());
    Saved saved;
    saved.settings = SettingsOf(configuration, features).size();
    if (missing.empty() && saved.settings == 0) {
        throw Failure(ExitCode::FeatureFailed, "nothing is saved: " + WhyNothingIsSaved(features));
    }
    if (output) {
        output->Write(text.data(), text.size());
        output->TakePlace();
    } else {
        WriteToStandardOutput(text.data(), text.size());
    }
    if (settled == Settled::Streamable) saved.locked = LockedFeatures(features);
    NoteLocked(saved.locked);
    if (!missing.empty()) {
        throw Failure(ExitCode::FeatureFailed,
                      "saved without these features, which cannot be read or contain line "
                      "breaks: " +
                          Joined(missing));
    }
    return saved;
}

}  // namespace ZelTool
