#include "tools/zelcam/frames/camerachecks.h"

#include <cmath>
#include <optional>
#include <sstream>

#include "tools/zelcam/console/jsontext.h"
#include "tools/zelcam/features/featurereading.h"
#include "tools/zelcam/features/featurevalue.h"

namespace ZelTool {

namespace {

using ZelGenParam::Param;

constexpr const char* kModeName = "AcquisitionMode";
constexpr const char* kCountName = "AcquisitionFrameCount";
constexpr const char* kTriggerSelectorName = "TriggerSelector";

// The feature if it can be read now, else null.
Param* FindReadable(ZelGenParam::Array& features, const char* name) {
    Param* const feature = features.GetParam(name, nullptr);
    return feature != nullptr && feature->IsReadable() ? feature : nullptr;
}

std::string TextOf(ZelGenParam::Array& features, const char* name) {
    Param* const feature = FindReadable(features, name);
    return feature != nullptr ? ReadOrEmpty(*feature, true) : "";
}

std::optional<double> NumberOf(Param& feature) {
    try {
        const Json value = ReadFeatureAsJson(feature);
        if (value.is_number()) return value.get<double>();
    } catch (const Failure&) {
        // Nothing is known then. The checks of the stream follow and do not need the number.
    }
    return std::nullopt;
}

// "AcquisitionMode is MultiFrame, AcquisitionFrameCount is 3".
std::string ModeWords(ZelGenParam::Array& features, const std::string& mode) {
    std::string words = std::string(kModeName) + " is " + mode;
    if (mode == "MultiFrame") {
        words += std::string(", ") + kCountName + " is " + TextOf(features, kCountName);
    }
    return words;
}

// Selects triggers, and restores the selector at the end.
class TriggerSelection {
  public:
    explicit TriggerSelection(ZelGenParam::Array& features)
        : selector_(features.GetEnum(kTriggerSelectorName, nullptr)) {
        ZelCamErr code = ZelCamErr_Success;
        if (selector_ != nullptr) before_ = selector_->GetValue(&code);
        if (code != ZelCamErr_Success) selector_ = nullptr;
    }
    ~TriggerSelection() {
        if (moved_) selector_->SetValue(before_);
    }
    TriggerSelection(const TriggerSelection&) = delete;
    TriggerSelection& operator=(const TriggerSelection&) = delete;

    // The triggers that can be selected; for a camera without a selector one without a name.
    std::vector<std::string> Names() const {
        if (selector_ == nullptr) return {""};
        std::vector<std::string> names;
        if (selector_->IsWritable()) names = EntriesOf(*selector_);
        if (names.empty()) names.push_back(Current());
        return names;
    }

    // False when the trigger cannot be selected.
    bool Select(const std::string& name) {
        if (selector_ == nullptr || name == Current()) return true;
        moved_ = true;
        return selector_->SetValueStr(name.c_str()) == ZelCamErr_Success;
    }

    std::string Current() const { return selector_ != nullptr ? ReadOrEmpty(*selector_) : ""; }

  private:
    ZelGenParam::Enum* selector_;
    int64_t before_ = 0;
    bool moved_ = false;
};

// Collects the checks of one camera.
class CameraChecks {
  public:
    CameraChecks(ZelGenParam::Array& features, const std::string& cameraId, uint64_t timeoutMs,
                 uint64_t triggersSent)
        : features_(features),
          cameraId_(cameraId),
          timeoutMs_(timeoutMs),
          triggersSent_(triggersSent) {}

    // Stops at the first feature that the camera does not answer: each may take a time-out.
    std::vector<Check> Run() {
        if (Mode() && Lock()) {
            Triggers();
            for (const char* name : {"ExposureTime", "ExposureTimeAbs"})
                Exposure(name);
            for (const char* name : {"AcquisitionFrameRate", "AcquisitionFrameRateAbs"})
                Rate(name);
        }
        return std::move(checks_);
    }

  private:
    void Add(bool good, const std::string& finding, const std::string& advice = "") {
        checks_.push_back({good, finding, advice});
    }

    // Reads the value from the camera. False when it is readable but reading fails.
    bool Ask(const char* name, std::string& value) {
        Param* const feature = FindReadable(features_, name);
        if (feature == nullptr) return true;
        value = ReadOrEmpty(*feature, true);
        if (!value.empty()) return true;
        Add(false, std::string("the camera does not answer: ") + name + " cannot be read",
            "check that the camera is still connected and has power");
        return false;
    }

    bool Mode() {
        std::string mode;
        if (!Ask(kModeName, mode)) return false;
        if (!mode.empty()) Add(true, ModeWords(features_, mode));
        return true;
    }

    bool Lock() {
        std::string locked;
        if (!Ask("TLParamsLocked", locked)) return false;
        if (!locked.empty()) {
            Add(locked != "0", "TLParamsLocked is " + locked,
                "open the camera with control: --access control");
        }
        return true;
    }

    void Triggers() {
        if (features_.GetParam("TriggerMode", nullptr) == nullptr) return;
        TriggerSelection selection(features_);
        const std::string selected = selection.Current();
        std::string off;
        for (const std::string& name : selection.Names()) {
            const std::string mode = selection.Select(name) ? TextOf(features_, "TriggerMode") : "";
            if (mode == "On") AddActiveTrigger(name, name == selected);
            if (mode == "Off") off += (off.empty() ? "TriggerMode is Off" : ",") + For(name);
        }
        if (!off.empty()) Add(true, off);
    }

    // " for FrameStart"; empty for a camera with one trigger.
    static std::string For(const std::string& name) { return name.empty() ? "" : " for " + name; }

    void AddActiveTrigger(const std::string& name, bool isSelected) {
        const std::string source = TextOf(features_, "TriggerSource");
        const bool sent = isSelected && source == "Software" && triggersSent_ > 0;
        Add(sent,
            "TriggerMode is On" + For(name) +
                (source.empty() ? "" : ", TriggerSource is " + source) +
                (sent ? ", triggers sent: " + std::to_string(triggersSent_) : ""),
            "send the camera a trigger" + (source.empty() ? "" : " (" + source + ")") +
                ", or switch it off: zelcam set " + cameraId_ +
                (name.empty() ? "" : std::string(" ") + kTriggerSelectorName + "=" + name) +
                " TriggerMode=Off");
    }

    // Checks a number that makes the camera take `ms` for a frame.
    void AddDuration(Param& feature, double number, double ms, const std::string& remark = "") {
        constexpr double kLongestMs = 1e12;
        const std::string unit = UnitOf(feature);
        std::ostringstream finding;
        finding << feature.GetName() << " is " << number << (unit.empty() ? "" : " ") << unit
                << remark;
        Add(ms < static_cast<double>(timeoutMs_), finding.str(),
            "wait longer: zelcam grab " + cameraId_ + " --timeout " +
                std::to_string(std::llround(std::fmin(2 * ms, kLongestMs))));
    }

    // In microseconds.
    void Exposure(const char* name) {
        Param* const feature = FindReadable(features_, name);
        const auto number = feature != nullptr ? NumberOf(*feature) : std::nullopt;
        if (number) AddDuration(*feature, *number, *number / 1000);
    }

    // In hertz. A disabled rate does not slow the camera down.
    void Rate(const char* name) {
        Param* const feature = FindReadable(features_, name);
        const auto number = feature != nullptr ? NumberOf(*feature) : std::nullopt;
        if (!number) return;
        const std::string enabled = TextOf(features_, "AcquisitionFrameRateEnable");
        const bool on = enabled.empty() || enabled == "1" || enabled == "true";
        AddDuration(*feature, *number, on && *number > 0 ? 1000 / *number : 0,
                    on ? "" : ", AcquisitionFrameRateEnable is " + enabled);
    }

    ZelGenParam::Array& features_;
    const std::string& cameraId_;
    uint64_t timeoutMs_;
    uint64_t triggersSent_;
    std::vector<Check> checks_;
};

Check CheckStarted(CameraSide::Started started) {
    switch (started) {
        case CameraSide::Started::Yes:
            return {true, "the camera accepted AcquisitionStart", ""};
        case CameraSide::Started::Missing:
            return {true, "the camera has no AcquisitionStart", ""};
        default:
            return {false, "AcquisitionStart was not executed: it is not writable",
                    "open the camera with control: --access control"};
    }
}

}  // namespace

std::vector<Check> CheckCamera(const CameraSide& camera, const std::string& cameraId,
                               uint64_t timeoutMs, uint64_t triggersSent) {
    if (camera.Features() == nullptr) {
        return {{false, "the camera has no features, so it was not started",
                 "zelcam features " + cameraId + " shows the reason"}};
    }
    std::vector<Check> checks = {CheckStarted(camera.HasStarted())};
    for (Check& check : CameraChecks(*camera.Features(), cameraId, timeoutMs, triggersSent).Run())
        checks.push_back(std::move(check));
    return checks;
}

std::string WhyAllWereSent(const CameraSide& camera, uint64_t frames) {
    if (camera.Features() == nullptr) return "";
    ZelGenParam::Array& features = *camera.Features();
    const std::string mode = TextOf(features, kModeName);
    uint64_t sent = 0;
    if (mode == "SingleFrame") sent = 1;
    if (mode == "MultiFrame") {
        sent = static_cast<uint64_t>(features.GetIntegerValue(kCountName, nullptr));
    }
    return sent > 0 && frames >= sent ? ModeWords(features, mode) : "";
}

}  // namespace ZelTool
