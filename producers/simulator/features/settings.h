// Features that are settings of a camera.
#pragma once

#include <cstdint>
#include <functional>
#include <type_traits>
#include <utility>

#include "producers/server/base/error.h"
#include "producers/server/registers/feature.h"
#include "producers/simulator/camera/cameracontrol.h"

namespace ZelSim {

[[noreturn]] inline void RefuseValue() {
    throw ZelCti::Error(GenTL::GC_ERR_INVALID_VALUE, "the value is out of its limits");
}

// What the features of settings have in common, for Feature::Apply: their registers read and change
// the settings of a camera, and node maps read them again after a user set was loaded. A free
// setting may change at any time, a fixed one when CameraControl::ChangeFixed allows it. Writing a
// value out of its limits gives GC_ERR_INVALID_VALUE. The control must outlive the registers.
class SettingTraits {
  public:
    using Settings = FrameSettings;
    using Trait = std::function<void(ZelCti::Feature&)>;
    using Getter = std::function<uint64_t(const Settings&)>;
    using Setter = std::function<void(Settings&, uint64_t)>;
    using Highest = std::function<int64_t(const Settings&)>;

    explicit SettingTraits(CameraControl& control) : control_(control) {}

    // A member of the settings, between the constant limits that the feature has.
    template <typename Member>
    Trait Free(Member member) const {
        return [self = *this, member](ZelCti::Feature& feature) {
            const auto [lowest, highest] = feature.Range();
            feature.Apply(self.Free(GetterOf(member), SetterOf(member, lowest, Always(highest))));
        };
    }
    template <typename Member>
    Trait Fixed(Member member) const {
        return [self = *this, member](ZelCti::Feature& feature) {
            const auto [lowest, highest] = feature.Range();
            feature.Apply(self.Fixed(member, lowest, Always(highest)));
        };
    }

    // One whose highest value depends on other settings.
    template <typename Member>
    Trait Fixed(Member member, int64_t lowest, Highest highest) const {
        return Fixed(GetterOf(member), SetterOf(member, lowest, std::move(highest)));
    }

    // Any other.
    Trait Free(Getter get, Setter set) const {
        return [value = Value(std::move(get), std::move(set), &CameraControl::Change)](
                   ZelCti::Feature& feature) {
            feature.InvalidatedBy({"UserSetLoad", "DeviceReset"}).Bind(value);
        };
    }
    Trait Fixed(Getter get, Setter set) const {
        return [value = Value(std::move(get), std::move(set), &CameraControl::ChangeFixed)](
                   ZelCti::Feature& feature) {
            feature.LockedBy("FrameSettingsLocked")
                .InvalidatedBy({"UserSetLoad", "DeviceReset"})
                .Bind(value);
        };
    }

    // One register of several, with limits.
    template <typename Member>
    ZelCti::IntegerValue Element(Member member, int64_t lowest, int64_t highest) const {
        return Value(GetterOf(member), SetterOf(member, lowest, Always(highest)),
                     &CameraControl::Change);
    }

    // For features that only show something of the settings.
    std::function<uint64_t()> Show(Getter get) const {
        return [&control = control_, get = std::move(get)] { return get(*control.Settings()); };
    }

  private:
    using Change = void (CameraControl::*)(const std::function<void(Settings&)>&);

    static Highest Always(int64_t highest) {
        return [highest](const Settings&) { return highest; };
    }

    template <typename Member>
    static Getter GetterOf(Member member) {
        return [member](const Settings& settings) {
            return static_cast<uint64_t>(std::invoke(member, settings));
        };
    }

    template <typename Member>
    static Setter SetterOf(Member member, int64_t lowest, Highest highest) {
        return [member, lowest, highest = std::move(highest)](Settings& settings, uint64_t value) {
            using T = std::remove_reference_t<std::invoke_result_t<Member, Settings&>>;
            const int64_t number = static_cast<int32_t>(value);
            if (number < lowest || number > highest(settings)) RefuseValue();
            std::invoke(member, settings) = static_cast<T>(number);
        };
    }

    ZelCti::IntegerValue Value(Getter get, Setter set, Change change) const {
        ZelCti::IntegerValue value;
        value.get = Show(std::move(get));
        value.set = [&control = control_, set = std::move(set), change](uint64_t written) {
            (control.*change)([&](Settings& settings) { set(settings, written); });
        };
        return value;
    }

    CameraControl& control_;
};

}  // namespace ZelSim
