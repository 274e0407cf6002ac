// Registers that are settings of a camera.
#ifndef ZELSIM_SETTINGREGISTERS_H
#define ZELSIM_SETTINGREGISTERS_H

#include <cstdint>
#include <functional>
#include <type_traits>

#include "producers/simulator/cameracontrol.h"
#include "producers/simulator/error.h"
#include "producers/simulator/localregisters.h"
#include "producers/simulator/registerspace.h"

namespace ZelSim {

[[noreturn]] inline void RefuseValue() {
    throw Error(GenTL::GC_ERR_INVALID_VALUE, "the value is out of its limits");
}

// Adds registers of 4 bytes to the space of a camera, whose control must live as long as the space
// is accessed. Writing a value outside of its limits gives GC_ERR_INVALID_VALUE.
class SettingRegisters {
  public:
    using Settings = FrameSettings;

    SettingRegisters(RegisterSpace& space, CameraControl& control)
        : space_(space), control_(control) {}

    // A member, or an element of one: `value(settings)` refers to it.
    template <typename Value>
    void Setting(uint64_t address, Value value, int64_t lowest, int64_t highest) {
        Add(address, value, lowest, highest, &CameraControl::Change);
    }

    // The same for settings that CameraControl::ChangeFixed guards. `highest` is asked at each
    // write.
    template <typename Value>
    void Fixed(uint64_t address, Value value, int64_t lowest,
               std::function<int64_t(const Settings&)> highest) {
        Add(address, value, lowest, std::move(highest), &CameraControl::ChangeFixed);
    }

    void ReadOnly(uint64_t address, std::function<uint64_t(const Settings&)> value,
                  size_t size = 4) {
        AddNumber(space_, address, size, [&control = control_, value = std::move(value)] {
            return value(*control.Settings());
        });
    }

    // Written with anything but 0, it acts; it cannot be read.
    void Command(uint64_t address, std::function<void()> action) {
        space_.Add(RegisterSpace::Integer{address, 4, Access::WriteOnly, nullptr, nullptr,
                                          [action = std::move(action)](uint64_t value) {
                                              if (value != 0) action();
                                          }});
    }

  private:
    using Change = void (CameraControl::*)(const std::function<void(Settings&)>&);

    static int64_t Limit(int64_t limit, const Settings&) { return limit; }
    static int64_t Limit(const std::function<int64_t(const Settings&)>& limit, const Settings& s) {
        return limit(s);
    }

    template <typename Value, typename Highest>
    void Add(uint64_t address, Value value, int64_t lowest, Highest highest, Change change) {
        using T = std::remove_reference_t<decltype(value(std::declval<Settings&>()))>;
        const auto get = [&control = control_, value] {
            FrameSettings settings = *control.Settings();
            return static_cast<uint64_t>(value(settings));
        };
        const auto set = [=, &control = control_](uint64_t written) {
            const int64_t number = static_cast<int32_t>(written);
            (control.*change)([&](Settings& settings) {
                if (number < lowest || number > Limit(highest, settings)) RefuseValue();
                value(settings) = static_cast<T>(number);
            });
        };
        space_.Add(RegisterSpace::Integer{address, 4, Access::ReadWrite, get, nullptr, set});
    }

    RegisterSpace& space_;
    CameraControl& control_;
};

}  // namespace ZelSim

#endif  // ZELSIM_SETTINGREGISTERS_H
