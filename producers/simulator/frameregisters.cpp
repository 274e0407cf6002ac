#include "producers/simulator/frameregisters.h"

#include <string_view>

#include "producers/simulator/error.h"
#include "producers/simulator/settingregisters.h"

namespace ZelSim {

namespace {

using Settings = FrameSettings;

constexpr uint64_t kImage = 0x2100;
constexpr uint64_t kAnalog = 0x2300;

constexpr int64_t kMaxBinning = 4;
constexpr int64_t kMaxGain = 240;  // 24 dB
constexpr int64_t kMaxBlackLevel = 64;
constexpr double kMinGamma = 0.25;
constexpr double kMaxGamma = 4;

// Index of the arrangement of colours, as the feature PixelColorFilter counts them.
uint64_t ColorFilterOf(const PixelFormat& format) {
    constexpr std::string_view cells[] = {"RGGB", "GBRG", "GRBG", "BGGR"};
    if (format.sampling != Sampling::Mosaic) return 0;
    uint64_t index = 1;
    for (const std::string_view cell : cells) {
        if (cell == format.components) break;
        ++index;
    }
    return index;
}

void SetFormat(Settings& settings, uint64_t value) {
    settings.pixelFormat = FindPixelFormat(static_cast<uint32_t>(value));
    if (settings.pixelFormat == nullptr) RefuseValue();
}

// The region shows the same part of the sensor as before.
void SetBinning(Settings& settings, uint32_t Settings::*binning, uint32_t Settings::*extent,
                uint32_t Settings::*offset, uint64_t value) {
    if (value != 1 && value != 2 && value != kMaxBinning) RefuseValue();
    const auto next = static_cast<uint32_t>(value);
    settings.*extent = settings.*extent * settings.*binning / next;
    settings.*offset = settings.*offset * settings.*binning / next;
    settings.*binning = next;
}

void AddRegion(SettingRegisters& registers) {
    registers.ReadOnly(kImage + 0x00, [](const Settings& s) { return s.sensorWidth; });
    registers.ReadOnly(kImage + 0x04, [](const Settings& s) { return s.sensorHeight; });
    registers.ReadOnly(kImage + 0x34, [](const Settings& s) { return s.WidthIncrement(); });
    registers.Fixed(
        kImage + 0x10, [](Settings& s) -> uint32_t& { return s.width; }, 1,
        [](const Settings& s) { return s.WidthMax() - s.offsetX; });
    registers.Fixed(
        kImage + 0x14, [](Settings& s) -> uint32_t& { return s.height; }, 1,
        [](const Settings& s) { return s.HeightMax() - s.offsetY; });
    registers.Fixed(
        kImage + 0x18, [](Settings& s) -> uint32_t& { return s.offsetX; }, 0,
        [](const Settings& s) { return s.WidthMax() - s.width; });
    registers.Fixed(
        kImage + 0x1C, [](Settings& s) -> uint32_t& { return s.offsetY; }, 0,
        [](const Settings& s) { return s.HeightMax() - s.height; });
}

void AddBinning(RegisterSpace& space, CameraControl& control) {
    space.Add(RegisterSpace::Integer{
        kImage + 0x20, 4, Access::ReadWrite,
        [&control] { return control.Settings()->binningHorizontal; }, nullptr,
        [&control](uint64_t value) {
            control.ChangeFixed([=](Settings& s) {
                SetBinning(s, &Settings::binningHorizontal, &Settings::width, &Settings::offsetX,
                           value);
            });
        }});
    space.Add(
        RegisterSpace::Integer{kImage + 0x24, 4, Access::ReadWrite,
                               [&control] { return control.Settings()->binningVertical; }, nullptr,
                               [&control](uint64_t value) {
                                   control.ChangeFixed([=](Settings& s) {
                                       SetBinning(s, &Settings::binningVertical, &Settings::height,
                                                  &Settings::offsetY, value);
                                   });
                               }});
}

void AddPixels(RegisterSpace& space, CameraControl& control, SettingRegisters& registers) {
    space.Add(RegisterSpace::Integer{
        kImage + 0x2C, 4, Access::ReadWrite,
        [&control] { return control.Settings()->pixelFormat->value; }, nullptr,
        [&control](uint64_t value) {
            control.ChangeFixed([=](Settings& s) { SetFormat(s, value); });
        }});
    registers.ReadOnly(kImage + 0x38, [](const Settings& s) { return s.pixelFormat->bits; });
    registers.ReadOnly(kImage + 0x3C,
                       [](const Settings& s) { return ColorFilterOf(*s.pixelFormat); });
    registers.Setting(
        kImage + 0x28, [](Settings& s) -> bool& { return s.reverseX; }, 0, 1);
    registers.Setting(
        kImage + 0x30, [](Settings& s) -> Pattern& { return s.pattern; }, 0,
        static_cast<int64_t>(Pattern::White));
}

void AddLevels(SettingRegisters& registers) {
    for (size_t i = 0; i < kNumChannels; ++i) {
        registers.Setting(
            kAnalog + 4 * i, [i](Settings& s) -> uint32_t& { return s.gain[i]; }, 0, kMaxGain);
        registers.Setting(
            kAnalog + 0x10 + 4 * i, [i](Settings& s) -> int32_t& { return s.blackLevel[i]; },
            -kMaxBlackLevel, kMaxBlackLevel);
    }
}

void AddGamma(RegisterSpace& space, CameraControl& control) {
    space.Add(RegisterSpace::Float{kAnalog + 0x20, 8, Access::ReadWrite,
                                   [&control] { return control.Settings()->gamma; }, nullptr,
                                   [&control](double gamma) {
                                       if (!(gamma >= kMinGamma && gamma <= kMaxGamma))
                                           RefuseValue();
                                       control.Change([=](Settings& s) { s.gamma = gamma; });
                                   }});
}

}  // namespace

void AddFrameRegisters(RegisterSpace& space, CameraControl& control) {
    SettingRegisters registers(space, control);
    AddRegion(registers);
    AddBinning(space, control);
    AddPixels(space, control, registers);
    AddLevels(registers);
    AddGamma(space, control);
}

}  // namespace ZelSim
