#include "producers/simulator/acquisitionregisters.h"

#include "producers/simulator/camera.h"
#include "producers/simulator/error.h"
#include "producers/simulator/localregisters.h"
#include "producers/simulator/settingregisters.h"

namespace ZelSim {

namespace {

using Settings = FrameSettings;
using Status = Acquisition::Status;

constexpr uint64_t kAcquisition = 0x2200;
constexpr int64_t kMaxFrameCount = 1000000;

// Written with 1 it acts; it reads as 1 until that is done.
RegisterSpace::Integer CommandRegister(uint64_t address, std::function<void()> action,
                                       std::function<bool()> isBusy) {
    return {address,
            4,
            Access::ReadWrite,
            [isBusy = std::move(isBusy)] { return isBusy() ? 1 : 0; },
            nullptr,
            [action = std::move(action)](uint64_t value) {
                if (value != 0) action();
            }};
}

void AddCommands(RegisterSpace& space, Camera& camera) {
    Acquisition& acquisition = camera.GetAcquisition();
    const auto isStopping = [&] { return acquisition.IsStopping(); };
    space.Add(CommandRegister(
        kAcquisition + 0x04, [&] { acquisition.Start(); }, [] { return false; }));
    space.Add(CommandRegister(
        kAcquisition + 0x08, [&] { acquisition.Stop(); }, isStopping));
    space.Add(CommandRegister(
        kAcquisition + 0x44, [&] { acquisition.Abort(); }, isStopping));
    AddNumber(space, kAcquisition + 0x48, 4, [&] { return acquisition.NeedsLock() ? 1 : 0; });
    for (uint32_t i = 0; i < Acquisition::kNumStatuses; ++i) {
        AddNumber(space, kAcquisition + 0x50 + i * sizeof(uint32_t), 4,
                  [&, status = static_cast<Status>(i)] { return acquisition.Is(status) ? 1 : 0; });
    }
}

void AddModes(SettingRegisters& registers) {
    registers.Fixed(
        kAcquisition + 0x00, [](Settings& s) -> AcquisitionMode& { return s.acquisitionMode; }, 0,
        [](const Settings&) { return static_cast<int64_t>(AcquisitionMode::MultiFrame); });
    registers.Fixed(
        kAcquisition + 0x0C, [](Settings& s) -> uint32_t& { return s.acquisitionFrameCount; }, 1,
        [](const Settings&) { return kMaxFrameCount; });
    registers.Setting(
        kAcquisition + 0x10, [](Settings& s) -> bool& { return s.frameRateEnable; }, 0, 1);
    registers.ReadOnly(kAcquisition + 0x14, [](const Settings& s) { return s.IsTimed() ? 1 : 0; });
}

void AddFrameRate(RegisterSpace& space, CameraControl& control) {
    space.Add(RegisterSpace::Float{kAcquisition + 0x18, 8, Access::ReadWrite,
                                   [&control] { return control.Settings()->frameRate; }, nullptr,
                                   [&control](double rate) {
                                       control.Change([=](Settings& s) {
                                           // The negated form also refuses what is no number.
                                           if (!(rate > 0 && rate <= s.MaxFrameRate())) {
                                               RefuseValue();
                                           }
                                           s.frameRate = rate;
                                       });
                                   }});
    for (const auto& [offset, rate] :
         {std::pair(0x60, &Settings::MaxFrameRate), {0x68, &Settings::ResultingFrameRate}}) {
        space.Add(RegisterSpace::Float{
            kAcquisition + static_cast<uint64_t>(offset), 8, Access::ReadOnly,
            [&control, rate = rate] { return (*control.Settings().*rate)(); }, nullptr, nullptr});
    }
}

void SetExposureTime(Settings& settings, uint64_t value) {
    if (settings.exposureAuto != ExposureAuto::Off) {
        throw Error(GenTL::GC_ERR_ACCESS_DENIED, "the camera sets the exposure time");
    }
    if (value < kMinExposureTime || value > kMaxExposureTime) RefuseValue();
    settings.exposureTime = static_cast<uint32_t>(value);
}

// The scene being what it is, the camera finds the exposure time that shows it as it is.
void SetExposureAuto(Settings& settings, uint64_t value) {
    if (value > static_cast<uint64_t>(ExposureAuto::Continuous)) RefuseValue();
    const auto mode = static_cast<ExposureAuto>(value);
    if (mode != ExposureAuto::Off) settings.exposureTime = settings.nominalExposureTime;
    settings.exposureAuto = mode == ExposureAuto::Once ? ExposureAuto::Off : mode;
}

void AddExposure(RegisterSpace& space, CameraControl& control) {
    space.Add(
        RegisterSpace::Integer{kAcquisition + 0x2C, 4, Access::ReadWrite,
                               [&control] { return control.Settings()->exposureTime; }, nullptr,
                               [&control](uint64_t value) {
                                   control.Change([=](Settings& s) { SetExposureTime(s, value); });
                               }});
    space.Add(RegisterSpace::Integer{
        kAcquisition + 0x30, 4, Access::ReadWrite,
        [&control] { return static_cast<uint64_t>(control.Settings()->exposureAuto); }, nullptr,
        [&control](uint64_t value) {
            control.Change([=](Settings& s) { SetExposureAuto(s, value); });
        }});
}

void AddTrigger(Camera& camera, SettingRegisters& registers) {
    registers.Setting(
        kAcquisition + 0x34, [](Settings& s) -> bool& { return s.triggerMode; }, 0, 1);
    registers.Setting(
        kAcquisition + 0x38, [](Settings& s) -> TriggerSource& { return s.triggerSource; }, 0,
        static_cast<int64_t>(TriggerSource::Line0));
    registers.Setting(
        kAcquisition + 0x3C, [](Settings& s) -> uint32_t& { return s.triggerActivation; }, 0, 1);
    registers.Command(kAcquisition + 0x40, [&camera] {
        if (camera.Settings()->triggerSource == TriggerSource::Software) {
            camera.GetAcquisition().Trigger();
        }
    });
}

}  // namespace

void AddAcquisitionRegisters(Camera& camera) {
    RegisterSpace& space = *camera.Registers();
    SettingRegisters registers(space, camera.Control());
    AddCommands(space, camera);
    AddModes(registers);
    AddFrameRate(space, camera.Control());
    AddExposure(space, camera.Control());
    AddTrigger(camera, registers);
}

}  // namespace ZelSim
