// How bright the image is.
#include <memory>

#include "producers/simulator/camera/camera.h"
#include "producers/simulator/features/categories.h"
#include "producers/simulator/features/settings.h"

namespace ZelSim {

using ZelCti::Entry;
using ZelCti::Error;
using ZelCti::FeatureTable;

namespace {

constexpr int64_t kMaxGain = 240;  // 24 dB
constexpr int64_t kMaxBlackLevel = 64;
constexpr double kMinGamma = 0.25;
constexpr double kMaxGamma = 4;
constexpr uint64_t kCalibrationNs = 30000000;

std::vector<Entry> ChannelEntries() {
    return {{"All", 0, "All colours."},
            {"Red", 1, "Red, on top of all."},
            {"Green", 2, "Green, on top of all."},
            {"Blue", 3, "Blue, on top of all."}};
}

void AddGain(FeatureTable& features, const SettingTraits& settings) {
    features.Enumeration("GainSelector", "What Gain amplifies.")
        .Entries(ChannelEntries())
        .Streamable()
        .Local(0);
    features.Converter("Gain", "Amplification.")
        .SelectedBy("GainSelector")
        .Formulas("FROM * 10", "TO / 10.0")
        .Over("GainRaw")
        .With("Slope", "Increasing")
        .Unit("dB")
        .Representation("Linear")
        .Streamable();
    features.Integer("GainRaw")
        .At(0x2300)
        .InRegister("GainReg")
        .Limits(0, kMaxGain)
        .InvalidatedBy({"UserSetLoad", "DeviceReset"})
        .Indexed("GainSelectorValue", kNumChannels, [settings](size_t i) {
            return settings.Element(
                [i](auto& s) -> auto& { return s.gain[i]; }, 0, kMaxGain);
        });
}

void AddBlackLevel(FeatureTable& features, const SettingTraits& settings) {
    features.Enumeration("BlackLevelSelector", "What BlackLevel brightens.")
        .Expert()
        .Entries(ChannelEntries())
        .Streamable()
        .Local(0);
    features.Float("BlackLevel", "Brightness that is added to each pixel, of 255.")
        .Expert()
        .SelectedBy("BlackLevelSelector")
        .At(0x2310)
        .Signed()
        .Limits(-kMaxBlackLevel, kMaxBlackLevel)
        .Representation("Linear")
        .Streamable()
        .InvalidatedBy({"UserSetLoad", "DeviceReset"})
        .Indexed("BlackLevelSelectorValue", kNumChannels, [settings](size_t i) {
            return settings.Element(
                [i](auto& s) -> auto& { return s.blackLevel[i]; }, -kMaxBlackLevel, kMaxBlackLevel);
        });
}

void AddGamma(FeatureTable& features, CameraControl& control) {
    features.Float("Gamma", "Exponent of the brightness.")
        .At(0x2320)
        .Limits(kMinGamma, kMaxGamma)
        .Representation("Logarithmic")
        .Streamable()
        .InvalidatedBy({"UserSetLoad", "DeviceReset"})
        .Get([&control] { return control.Settings()->gamma; })
        .Set([&control](double value) {
            // The negated form also refuses what is no number.
            if (!(value >= kMinGamma && value <= kMaxGamma)) RefuseValue();
            control.Change([=](FrameSettings& s) { s.gamma = value; });
        });
}

struct Calibration {
    uint64_t endNs = 0;
    uint64_t count = 0;
};

// A command that takes its time.
void AddCalibration(FeatureTable& features, Camera& camera) {
    const auto calibration = std::make_shared<Calibration>();
    const auto isBusy = [=, &camera] { return camera.Uptime() < calibration->endNs; };
    features.Command("BlackLevelCalibrate", "Calibrates the sensor, which takes a moment.")
        .Guru()
        .At(0x2328)
        .Does([=, &camera] {
            if (isBusy()) throw Error(GenTL::GC_ERR_BUSY, "the calibration runs already");
            calibration->endNs = camera.Uptime() + kCalibrationNs;
            ++calibration->count;
        })
        .BusyWhile(isBusy);
    features
        .IntReg("BlackLevelCalibrationCount",
                "Calibrations so far; only while the factory is unlocked.")
        .Guru()
        .AvailableIf("FactoryUnlocked")
        .At(0x232C)
        .InvalidatedBy({"BlackLevelCalibrate"})
        .Representation("Linear")
        .Get([=] { return calibration->count; });
}

}  // namespace

void AddAnalogControl(FeatureTable& features, Camera& camera) {
    const SettingTraits settings(camera.Control());
    features.Category("AnalogControl", "Brightness of the image.");
    AddGain(features, settings);
    AddBlackLevel(features, settings);
    AddGamma(features, camera.Control());
    AddCalibration(features, camera);
}

}  // namespace ZelSim
