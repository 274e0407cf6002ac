#include "tools/zelcam/configsave.h"

#include <algorithm>
#include <iostream>
#include <optional>
#include <sstream>
#include <vector>

#include <GenApi/GenApi.h>

#include "tools/zelcam/configfile.h"
#include "tools/zelcam/failure.h"
#include "tools/zelcam/featuretree.h"
#include "tools/zelcam/featurevalue.h"
#include "tools/zelcam/outputfile.h"

namespace {

using Names = std::vector<std::string>;
using ZelGenParam::Param;

std::string Listed(const Names& names) {
    std::string text;
    for (const std::string& name : names)
        text += (text.empty() ? "" : ", ") + name;
    return text;
}

// Many settings are locked then, and would be missing.
void RefuseWhileGrabbing(ZelGenParam::Array& features) {
    ZelCamErr code = ZelCamErr_Success;
    const int64_t locked = features.GetIntegerValue("TLParamsLocked", &code);
    if (code == ZelCamErr_Success && locked != 0) {
        throw Failure(
            ExitCode::FeatureFailed,
            "frames are being grabbed, and the camera locks settings meanwhile: save them "
            "when it is stopped (TLParamsLocked is 0 then)");
    }
}

// The streamable features, as far as they can be read, that fit.
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
        return "the camera's description calls no feature streamable, that is, a setting; --all "
               "saves every feature that can be read and written";
    }
    return "none of the camera's " + std::to_string(streamable.size()) +
           " settings can be written at the moment, and only such are saved: is the camera open "
           "read-only, or something locked?";
}

Names LockedFeatures(ZelGenParam::Array& features) {
    return StreamableFeatures(
        features, [](Param& feature) { return feature.IsReadable() && !feature.IsWritable(); });
}

void NoteLocked(const Names& locked) {
    if (locked.empty()) return;
    std::cerr << "zelcam: note: not saved, since they cannot be written at the moment: "
              << Listed(locked) << '\n';
}

bool IsReadableAndWritable(GenApi::IValue* value) {
    return GenApi::IsReadable(value) && GenApi::IsWritable(value);
}

// Takes down every feature of the camera, as CFeatureBag does with those that are streamable.
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
    // Selectors come with what they select.
    static bool IsSetting(GenApi::INode& node) {
        const GenApi::EInterfaceType type = node.GetPrincipalInterfaceType();
        const auto* selector = dynamic_cast<GenApi::ISelector*>(&node);
        return type != GenApi::intfICommand && type != GenApi::intfICategory &&
               (selector == nullptr || !selector->IsSelector());
    }

    void AddCombinations(GenApi::IValue& value, GenApi::CSelectorSet& selectors) {
        // as many as a bag holds
        constexpr int tooMany = 1 << 19;
        for (bool more = selectors.SetFirst(); more; more = selectors.SetNext()) {
            if (++combinations_ > tooMany) {
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

// Notes features that cannot be read, and goes on.
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
    if (file != standardStream) output.emplace(file, Existing::Replace);
    Names missing;
    const std::string text = settled == Settled::All ? AllFeatures(NodeMapOf(camera), missing)
                                                     : SavedText(camera.Device());
    const Configuration configuration = ParseConfiguration(text, savedText);
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
                      "saved, but without what cannot be read or has line "
                      "breaks in it: " +
                          Listed(missing));
    }
    return saved;
}
