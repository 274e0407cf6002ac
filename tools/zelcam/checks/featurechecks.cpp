#include "tools/zelcam/checks/featurechecks.h"

#include <cmath>
#include <filesystem>
#include <optional>
#include <set>
#include <vector>

#include <GenApi/GenApi.h>

#include "tools/zelcam/camera/words.h"
#include "tools/zelcam/checks/checklist.h"
#include "tools/zelcam/console/failure.h"
#include "tools/zelcam/console/textfile.h"
#include "tools/zelcam/features/configfile.h"
#include "tools/zelcam/features/featurereading.h"
#include "tools/zelcam/features/featuresetting.h"
#include "tools/zelcam/features/featuretree.h"
#include "tools/zelcam/features/featurevalue.h"

namespace ZelTool {

namespace {

using ZelGenParam::Param;

// The findings of a pass over all features.
class Findings {
  public:
    void Seen() { ++seen_; }
    void Bad(const std::string& finding) { bad_.push_back(finding); }

    // A failure of `action` is a finding. If the camera is lost, the failure ends the pass.
    template <typename Action>
    void Try(Action action) {
        try {
            action();
        } catch (const CameraLost&) {
            throw;
        } catch (const Failure& failure) {
            Bad(failure.what());
        }
    }

    // "312 features". Throws Failure with the first few findings if there are any.
    std::string Summary() const {
        constexpr size_t kShown = 5;
        if (bad_.empty()) return std::to_string(seen_) + " features";
        std::string text = std::to_string(bad_.size()) + " of " + std::to_string(seen_) + ": ";
        for (size_t i = 0; i < bad_.size() && i < kShown; ++i)
            text += (i == 0 ? "" : "; ") + bad_[i];
        if (bad_.size() > kShown) text += "; ...";
        throw Failure(ExitCode::CheckFailed, text);
    }

    size_t Count() const { return seen_; }

  private:
    size_t seen_ = 0;
    std::vector<std::string> bad_;
};

// Calls `check` once with each feature, even if it is in several categories.
template <typename Check>
void ForEach(ZelGenParam::Array& features, Check check) {
    std::set<std::string> names;
    VisitFeatures(features, {"", ZelGenParam::Visibility::Invisible, false},
                  [&](Param& feature, const auto&) {
                      if (names.insert(feature.GetName()).second) check(feature);
                  });
}

// The summary of `check` with each feature.
template <typename Check>
std::string CheckEach(ZelGenParam::Array& features, Check check) {
    Findings findings;
    ForEach(features, [&](Param& feature) { findings.Try([&] { check(feature, findings); }); });
    return findings.Summary();
}

// The result of `getter`; `failure` gets the code if it fails.
template <typename Feature, typename Getter>
auto Ask(Feature& feature, Getter getter, ZelCamErr& failure) {
    ZelCamErr code = ZelCamErr_Success;
    const auto number = (feature.*getter)(&code);
    if (code != ZelCamErr_Success) failure = code;
    return number;
}

std::string UnreadLimits(ZelCamErr code) {
    return "cannot be read with its limits: " + ErrorWords(code);
}

// Why the value violates its limits; empty when it does not.
std::string LimitProblem(ZelGenParam::Int& feature) {
    ZelCamErr failure = ZelCamErr_Success;
    const int64_t value = Ask(feature, &ZelGenParam::Int::GetValue, failure);
    const int64_t minimum = Ask(feature, &ZelGenParam::Int::GetMin, failure);
    const int64_t maximum = Ask(feature, &ZelGenParam::Int::GetMax, failure);
    const int64_t increment = Ask(feature, &ZelGenParam::Int::GetIncrement, failure);
    if (failure != ZelCamErr_Success) return UnreadLimits(failure);
    if (value < minimum || value > maximum) {
        return "is " + std::to_string(value) + ", outside " + RangeOf(feature);
    }
    if (increment < 1) return "has the increment " + std::to_string(increment);
    // Unsigned, since the distance of two integers may need 64 bits.
    const uint64_t distance = static_cast<uint64_t>(value) - static_cast<uint64_t>(minimum);
    if (distance % static_cast<uint64_t>(increment) != 0) {
        return "is " + std::to_string(value) + ", between the steps of " + RangeOf(feature);
    }
    return "";
}

std::string LimitProblem(ZelGenParam::Float& feature) {
    ZelCamErr failure = ZelCamErr_Success;
    const double value = Ask(feature, &ZelGenParam::Float::GetValue, failure);
    const double minimum = Ask(feature, &ZelGenParam::Float::GetMin, failure);
    const double maximum = Ask(feature, &ZelGenParam::Float::GetMax, failure);
    if (failure != ZelCamErr_Success) return UnreadLimits(failure);
    const bool within = value >= minimum && value <= maximum;
    return within ? "" : "is " + std::to_string(value) + ", outside " + RangeOf(feature);
}

std::string LimitProblem(ZelGenParam::Enum& feature) {
    ZelCamErr code = ZelCamErr_Success;
    const char* const text = feature.GetValueStr(&code);
    if (text == nullptr) return "has a value without an entry: " + ErrorWords(code);
    const std::string name = text;
    ZelGenParam::EnumEntry* const entry = feature.GetEnumEntryByName(name.c_str());
    return entry != nullptr && entry->IsAvailable() ? ""
                                                    : "is " + name + ", which is not available";
}

std::string LimitProblem(Param& feature) {
    if (auto* integer = feature.ToInt()) return LimitProblem(*integer);
    if (auto* floating = feature.ToFloat()) return LimitProblem(*floating);
    if (auto* enumeration = feature.ToEnum()) return LimitProblem(*enumeration);
    return "";
}

// Another possible value, as a text.
std::optional<std::string> OtherValue(Param& feature) {
    if (auto* integer = feature.ToInt()) {
        const int64_t value = integer->GetValue(nullptr);
        const int64_t minimum = integer->GetMin(nullptr);
        const int64_t maximum = integer->GetMax(nullptr);
        if (minimum == maximum) return std::nullopt;
        const int64_t other = value == minimum ? minimum + integer->GetIncrement(nullptr) : minimum;
        if (other > maximum) return std::nullopt;
        return std::to_string(other);
    }
    if (auto* floating = feature.ToFloat()) {
        const double value = floating->GetValue(nullptr);
        const double minimum = floating->GetMin(nullptr);
        const double maximum = floating->GetMax(nullptr);
        const double other = value > minimum ? (value + minimum) / 2 : (value + maximum) / 2;
        if (!std::isfinite(other) || other == value) return std::nullopt;
        return NumberText(other);
    }
    if (auto* boolean = feature.ToBoolean()) return boolean->GetValue(nullptr) ? "0" : "1";
    const std::string value = ReadOrEmpty(feature);
    for (const std::string& entry : EntriesOf(feature)) {
        // An automatic function that runs once may have ended before it is read back.
        if (entry != value && entry != "Once") return entry;
    }
    return std::nullopt;
}

// Whether the feature has the wanted value. Cameras may round floating-point values.
bool Took(Param& feature, const std::string& wanted) {
    return feature.ToFloat() != nullptr || ReadFeature(feature, true) == wanted;
}

bool MayBeWritten(Param& feature) {
    return feature.IsStreamable() && !IsSelector(feature) && ReadFeature(feature) &&
           feature.IsWritable();
}

void WriteAndRestore(ZelGenParam::Array& features, Param& feature, Findings& findings) {
    const std::string name = feature.GetName();
    const std::optional<std::string> old = ReadFeature(feature, true);
    const std::optional<std::string> other = OtherValue(feature);
    if (!old || !other) return;
    findings.Seen();
    for (const std::string& value : {*other, *old}) {
        SetFeature(features, name + "=" + value);
        if (!Took(feature, value)) {
            findings.Bad(name + " was set to " + value + " but is " +
                         ReadFeature(feature).value_or("unreadable"));
        }
    }
}

// The settings of a camera in a configuration file.
class SavedSettings {
  public:
    explicit SavedSettings(OpenedCamera& camera)
        : device_(camera.Device()),
          file_((std::filesystem::temp_directory_path() / "zelcam-check").string()) {
        SaveConfiguration(device_, file_.Name());
    }

    void Restore() const {
        RequireSuccess(device_.LoadConfiguration(file_.Name().c_str()),
                       "the configuration cannot be loaded again", ExitCode::CheckFailed);
    }

  private:
    ZelCam::Device& device_;
    TemporaryFile file_;
};

}  // namespace

std::string CheckReading(ZelGenParam::Array& features) {
    return CheckEach(features, [](Param& feature, Findings& findings) {
        if (ReadFeature(feature, true)) findings.Seen();
    });
}

std::string CheckLimits(ZelGenParam::Array& features) {
    return CheckEach(features, [](Param& feature, Findings& findings) {
        if (!ReadFeature(feature)) return;
        findings.Seen();
        const std::string problem = LimitProblem(feature);
        if (!problem.empty()) findings.Bad(std::string(feature.GetName()) + " " + problem);
    });
}

std::string CheckWriting(OpenedCamera& camera) {
    ZelGenParam::Array& features = camera.Features(Module::Camera);
    Findings findings;
    std::vector<std::string> names;
    ForEach(features, [&](Param& feature) {
        findings.Try([&] {
            if (MayBeWritten(feature)) names.emplace_back(feature.GetName());
        });
    });
    if (names.empty()) throw Skip("no feature can be written");

    const SavedSettings saved(camera);
    for (const std::string& name : names) {
        Param& feature = FindFeature(features, name);
        // Writing another feature may have locked this one.
        findings.Try([&] {
            if (MayBeWritten(feature)) WriteAndRestore(features, feature, findings);
        });
    }
    saved.Restore();  // settings that the camera changed along with others
    return findings.Summary();
}

std::string CheckConfiguration(OpenedCamera& camera) {
    const Settings before = SettingsOf(camera);
    if (before.empty()) throw Skip("the camera has no settings");
    SavedSettings(camera).Restore();
    const std::vector<Difference> differences = Compare(SettingsOf(camera), before);
    if (!differences.empty()) {
        const Difference& first = differences.front();
        throw Failure(ExitCode::CheckFailed, std::to_string(differences.size()) +
                                                 " settings changed: " + first.feature + " from " +
                                                 first.file + " to " + first.camera);
    }
    return std::to_string(before.size()) + " settings";
}

}  // namespace ZelTool
