// When frames are taken, and for how long the sensor is exposed.
#include <string>
#include <vector>

#include "producers/simulator/camera/camera.h"
#include "producers/simulator/features/categories.h"
#include "producers/simulator/features/settings.h"

namespace ZelSim {

using ZelCti::Entry;
using ZelCti::Error;
using ZelCti::FeatureTable;
using ZelCti::IntegerValue;

namespace {

using Settings = FrameSettings;
using Status = Acquisition::Status;

constexpr int64_t kMaxFrameCount = 1000000;
constexpr double kMinFrameRate = 0.001;

void AddStartAndStop(FeatureTable& features, const SettingTraits& settings,
                     Acquisition& acquisition) {
    const auto isStopping = [&acquisition] { return acquisition.IsStopping(); };
    features.Enumeration("AcquisitionMode", "How many frames a start gives.")
        .At(0x2200)
        .Entries({{"Continuous", 0, "Frames until the stop."},
                  {"SingleFrame", 1, "One frame."},
                  {"MultiFrame", 2, "As many as AcquisitionFrameCount says."}})
        .Streamable()
        .Apply(settings.Fixed(&Settings::acquisitionMode));
    features
        .Command("AcquisitionStart",
                 "Starts the acquisition, while TLParamsLocked is 1 and a stream is started.")
        .LockedBy("AcquisitionStartLocked")
        .At(0x2204)
        .Does([&acquisition] { acquisition.Start(); })
        .DoneAtOnce();
    features.IntReg("AcquisitionStartLocked").At(0x2248).Volatile().Get([&acquisition] {
        return acquisition.NeedsLock() ? 1 : 0;
    });
    features.Command("AcquisitionStop", "Stops the acquisition after the frame under way.")
        .At(0x2208)
        .Does([&acquisition] { acquisition.Stop(); })
        .BusyWhile(isStopping);
    features.Command("AcquisitionAbort", "Stops the acquisition without the frame under way.")
        .Expert()
        .At(0x2244)
        .Does([&acquisition] { acquisition.Abort(); })
        .BusyWhile(isStopping);
}

void AddStatus(FeatureTable& features, Acquisition& acquisition) {
    features.Enumeration("AcquisitionStatusSelector", "What AcquisitionStatus says.")
        .Expert()
        .Entries({{"FrameTriggerWait", 0, "Whether a trigger would start a frame."},
                  {"AcquisitionActive", 1, "Whether the camera acquires."},
                  {"FrameActive", 2, "Whether a frame is exposed or read out."}})
        .Local(static_cast<int64_t>(Status::AcquisitionActive));
    features.Boolean("AcquisitionStatus", "State of what is selected.")
        .Expert()
        .SelectedBy("AcquisitionStatusSelector")
        .At(0x2250)
        .Volatile()
        .Indexed("AcquisitionStatusSelectorValue", Acquisition::kNumStatuses,
                 [&acquisition](size_t i) {
                     IntegerValue value;
                     value.get = [&acquisition, status = static_cast<Status>(i)] {
                         return acquisition.Is(status) ? 1 : 0;
                     };
                     return value;
                 });
}

auto ShownRate(CameraControl& control, double (Settings::*rate)() const) {
    return [&control, rate] { return (*control.Settings().*rate)(); };
}

void AddFrameRate(FeatureTable& features, const SettingTraits& settings, CameraControl& control) {
    features.Integer("AcquisitionFrameCount", "Frames that MultiFrame gives.")
        .Expert()
        .At(0x220C)
        .Limits(1, kMaxFrameCount)
        .Representation("Linear")
        .Streamable()
        .Apply(settings.Fixed(&Settings::acquisitionFrameCount));
    features
        .Boolean("AcquisitionFrameRateEnable",
                 "Whether frames come at AcquisitionFrameRate, or as fast as exposure and read-out "
                 "allow.")
        .Expert()
        .At(0x2210)
        .Streamable()
        .Apply(settings.Free(&Settings::frameRateEnable));
    features.Float("AcquisitionFrameRate", "Frames a second; limited by exposure and read-out.")
        .AvailableIf("AcquisitionFrameRateEnable")
        .At(0x2218)
        .Volatile()
        .Limits(kMinFrameRate, "AcquisitionFrameRateLimit")
        .Unit("Hz")
        .Representation("Linear")
        .Streamable()
        .Get([&control] { return control.Settings()->frameRate; })
        .Set([&control](double rate) {
            control.Change([=](Settings& s) {
                // The negated form also refuses what is no number.
                if (!(rate > 0 && rate <= s.MaxFrameRate())) RefuseValue();
                s.frameRate = rate;
            });
        });
    features.FloatReg("AcquisitionFrameRateLimit")
        .At(0x2260)
        .Volatile()
        .Get(ShownRate(control, &Settings::MaxFrameRate));
    features.FloatReg("ResultingFrameRate", "Frames a second that come without triggers.")
        .Expert()
        .AvailableIf("FramesAreTimed")
        .At(0x2268)
        .Volatile()
        .Unit("Hz")
        .Representation("Linear")
        .Get(ShownRate(control, &Settings::ResultingFrameRate));
    features.IntReg("FramesAreTimed")
        .At(0x2214)
        .Volatile()
        .Get(settings.Show([](const Settings& s) { return s.IsTimed() ? 1 : 0; }));
}

void SetExposureTime(Settings& settings, uint64_t value) {
    if (settings.exposureAuto != ExposureAuto::Off) {
        throw Error(GenTL::GC_ERR_ACCESS_DENIED, "the camera sets the exposure time");
    }
    if (value < kMinExposureTime || value > kMaxExposureTime) RefuseValue();
    settings.exposureTime = static_cast<uint32_t>(value);
}

// The scene never changes, so the camera always finds the same exposure time.
void SetExposureAuto(Settings& settings, uint64_t value) {
    if (value > static_cast<uint64_t>(ExposureAuto::Continuous)) RefuseValue();
    const auto mode = static_cast<ExposureAuto>(value);
    if (mode != ExposureAuto::Off) settings.exposureTime = settings.nominalExposureTime;
    settings.exposureAuto = mode == ExposureAuto::Once ? ExposureAuto::Off : mode;
}

void AddExposure(FeatureTable& features, const SettingTraits& settings) {
    features.Enumeration("ExposureMode", "How the exposure is controlled.")
        .Entries({{"Timed", 0, "By ExposureTime."}})
        .Constant(0);
    features.Converter("ExposureTime", "How long the sensor takes light.")
        .LockedBy("ExposureIsAuto")
        .Formulas("FROM * 10", "TO / 10.0")
        .Over("ExposureTimeRaw")
        .With("Slope", "Increasing")
        .Unit("us")
        .Representation("Logarithmic")
        .Streamable();
    features.Integer("ExposureTimeRaw")
        .At(0x222C)
        .InRegister("ExposureTimeReg")
        .Limits(kMinExposureTime, kMaxExposureTime)
        .InvalidatedBy({"ExposureAuto"})
        .Apply(settings.Free([](const Settings& s) { return s.exposureTime; }, SetExposureTime));
    features.IntSwissKnife("ExposureIsAuto")
        .Variables({{"AUTO", "ExposureAutoReg"}})
        .Formula("AUTO <> 0");
    features.Enumeration("ExposureAuto", "Whether the camera sets the exposure time.")
        .At(0x2230)
        .Cachable("WriteAround")
        .Entries({{"Off", 0, "It does not."},
                  {"Once", 1, "It does so now.", true},
                  {"Continuous", 2, "It always does."}})
        .Streamable()
        .Apply(
            settings.Free([](const Settings& s) { return static_cast<uint64_t>(s.exposureAuto); },
                          SetExposureAuto));
}

std::vector<Entry> TriggerSourceEntries(bool hasActions) {
    std::vector<Entry> entries{{"Software", 0, "From the command TriggerSoftware."},
                               {"Line0", 1, "From a line, on which there are none."}};
    for (uint32_t i = 0; hasActions && i < Camera::kNumActionSignals; ++i) {
        const std::string number = std::to_string(i);
        entries.push_back({"Action" + number, static_cast<int64_t>(TriggerSource::Action0) + i,
                           "From action signal " + number + "."});
    }
    return entries;
}

void AddTrigger(FeatureTable& features, const SettingTraits& settings, Camera& camera) {
    features.Enumeration("TriggerSelector", "The trigger that the other features set.")
        .Entries({{"FrameStart", 0, "Each trigger starts a frame."}})
        .Value(0)
        .Streamable();
    features.Enumeration("TriggerMode", "Whether frames wait for triggers.")
        .SelectedBy("TriggerSelector")
        .At(0x2234)
        .Entries({{"Off", 0, "They do not."}, {"On", 1, "They do."}})
        .Streamable()
        .Apply(settings.Free(&Settings::triggerMode));
    features.Command("TriggerSoftware", "Triggers a frame.")
        .SelectedBy("TriggerSelector")
        .AvailableIf("TriggerIsSoftware")
        .At(0x2240)
        .Does([&camera] { camera.Trigger(TriggerSource::Software); });
    features.IntSwissKnife("TriggerIsSoftware")
        .Variables({{"MODE", "TriggerModeReg"}, {"SOURCE", "TriggerSourceReg"}})
        .Formula("(MODE = 1) && (SOURCE = 0)");
    features.Enumeration("TriggerSource", "Where triggers come from.")
        .SelectedBy("TriggerSelector")
        .At(0x2238)
        .Entries(TriggerSourceEntries(camera.Config().network.has_value()))
        .Streamable()
        .Apply(settings.Free(&Settings::triggerSource));
    features.Enumeration("TriggerActivation", "Which edge of a line triggers.")
        .Expert()
        .SelectedBy("TriggerSelector")
        .At(0x223C)
        .Entries({{"RisingEdge", 0, "The rising one."}, {"FallingEdge", 1, "The falling one."}})
        .Streamable()
        .Apply(settings.Free(&Settings::triggerActivation));
}

}  // namespace

void AddAcquisitionControl(FeatureTable& features, Camera& camera) {
    const SettingTraits settings(camera.Control());
    features.Category("AcquisitionControl", "When frames are taken.");
    AddStartAndStop(features, settings, camera.GetAcquisition());
    AddStatus(features, camera.GetAcquisition());
    AddFrameRate(features, settings, camera.Control());
    AddExposure(features, settings);
    AddTrigger(features, settings, camera);
}

}  // namespace ZelSim
