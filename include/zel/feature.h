// Features of a camera and of what it is connected to.
#ifndef ZEL_FEATURE_H
#define ZEL_FEATURE_H

#include <chrono>
#include <cmath>
#include <cstdint>
#include <functional>
#include <limits>
#include <memory>
#include <optional>
#include <string>
#include <thread>
#include <type_traits>
#include <utility>
#include <vector>

#include "ZelGenParam/Array.h"
#include "zel/error.h"
#include "zel/state.h"

namespace zel {

using ZelGenParam::Visibility;

// The kind of a feature decides what it takes and gives.
enum class Kind { Integer, Float, Text, Enumeration, Boolean, Command, Category, Other };

namespace detail {

inline Kind kindOf(ZelGenParam::Param& param) {
    switch (param.GetType()) {
        case ZelGenParam::ParamType_Int:
            return Kind::Integer;
        case ZelGenParam::ParamType_Float:
            return Kind::Float;
        case ZelGenParam::ParamType_String:
            return Kind::Text;
        case ZelGenParam::ParamType_Enum:
            return Kind::Enumeration;
        case ZelGenParam::ParamType_Boolean:
            return Kind::Boolean;
        case ZelGenParam::ParamType_Command:
            return Kind::Command;
        case ZelGenParam::ParamType_Category:
            return Kind::Category;
        default:
            return Kind::Other;
    }
}

}  // namespace detail

// Keeps a function subscribed, for as long as it lives.
class Subscription {
  public:
    Subscription() = default;

    // Ends it. No call runs any more when it returns, except the one that it is called from.
    void end() {
        if (atEnd_) std::exchange(atEnd_, nullptr)();
        watch_.reset();
    }

    explicit operator bool() const { return watch_ != nullptr; }

    Subscription(Subscription&& other) noexcept
        : watch_(std::move(other.watch_)), atEnd_(std::exchange(other.atEnd_, nullptr)) {}
    Subscription& operator=(Subscription&& other) noexcept {
        std::swap(watch_, other.watch_);
        std::swap(atEnd_, other.atEnd_);
        return *this;
    }
    ~Subscription() {
        try {
            end();
        } catch (const std::exception&) {
            // A camera that is gone cannot be told.
        }
    }

    // For the layer itself.
    explicit Subscription(std::shared_ptr<detail::Watch> watch, std::function<void()> atEnd = {})
        : watch_(std::move(watch)), atEnd_(std::move(atEnd)) {}

  private:
    std::shared_ptr<detail::Watch> watch_;
    std::function<void()> atEnd_;
};

// One feature by its name. It may be kept and copied; copies may be used by several threads at
// once. It follows a camera that comes back, and throws Error once the camera is closed.
//
//     camera["ExposureTime"] = 5000.0;
//     const double gain = camera["Gain"];
//     camera["PixelFormat"] = "Mono8";
class Feature {
  public:
    Feature(const Feature&) = default;
    Feature(Feature&&) = default;
    ~Feature() = default;

    // Assignment sets the value, which must be meant: `a.set(b.text())` copies that of a feature.
    Feature& operator=(const Feature&) = delete;
    Feature& operator=(Feature&&) = delete;

    template <typename T>
    const Feature& operator=(const T& value) const {
        set(value);
        return *this;
    }

    // Reads the value, as as() does.
    template <typename T, typename = std::enable_if_t<std::is_arithmetic_v<T> ||
                                                      std::is_same_v<T, std::string>>>
    operator T() const {
        return as<T>();
    }

    // ---- Values ---------------------------------------------------------------------------------

    // Sets the value: numbers for Integer and Float (an Integer takes a floating-point number
    // without a fraction), bool for Boolean (also 0 and 1), the number or the symbolic name of an
    // entry for Enumeration, and for every kind a text as text() gives it.
    template <typename T>
    void set(const T& value) const {
        const Access access(*this);
        if constexpr (std::is_same_v<T, bool>) {
            setNumber(access, static_cast<int64_t>(value));
        } else if constexpr (std::is_integral_v<T>) {
            setNumber(access, checkedCast<int64_t>(value, "setting"));
        } else if constexpr (std::is_floating_point_v<T>) {
            setFloat(access, static_cast<double>(value));
        } else {
            setText(access, std::string(value));
        }
        keep(access);
    }

    // The value as T: an arithmetic type, or std::string for its text. An Enumeration gives its
    // number or its symbolic name, a Boolean also 0 or 1, an Integer also a floating-point number.
    // ZelCamErr_WrongParamType for a feature without such a value, ZelCamErr_OutOfRange for a value
    // that T cannot hold.
    template <typename T>
    T as() const {
        if constexpr (std::is_integral_v<T> && !std::is_same_v<T, bool>)
            if (const std::optional<int64_t> value = readInteger())
                return checkedCast<T>(*value, "reading");
        const Access access(*this);
        if constexpr (std::is_same_v<T, std::string>) {
            return readText(access);
        } else if constexpr (std::is_floating_point_v<T>) {
            return static_cast<T>(readFloat(access));
        } else if constexpr (std::is_same_v<T, bool>) {
            return readNumber(access) != 0;
        } else {
            return checkedCast<T>(readNumber(access), "reading");
        }
    }

    // The value as a text that set() takes, whatever the kind is.
    std::string text() const { return as<std::string>(); }

    // Executes a Command and waits until it is done. ZelCamErr_GenTL_Timeout if that takes longer.
    void execute(std::chrono::milliseconds timeout = std::chrono::seconds(5)) const {
        const Access access(*this);
        ZelGenParam::Command* const command = access.param->ToCommand();
        if (command == nullptr) fail(access, ZelCamErr_WrongParamType, "executing");
        checked(access, command->Execute(), "executing");
        const auto end = std::chrono::steady_clock::now() + timeout;
        ZelCamErr code = ZelCamErr_Success;
        while (!command->IsDone(&code)) {
            checked(access, code, "executing");
            if (std::chrono::steady_clock::now() > end)
                throw Error(ZelCamErr_GenTL_Timeout, "executing", name_);
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        }
    }

    // ---- Limits ---------------------------------------------------------------------------------

    // The limits as they are at the moment, of an Integer or a Float.
    template <typename T = double>
    T min() const {
        return limit<T>(&ZelGenParam::Int::GetMin, &ZelGenParam::Float::GetMin);
    }
    template <typename T = double>
    T max() const {
        return limit<T>(&ZelGenParam::Int::GetMax, &ZelGenParam::Float::GetMax);
    }

    // The step of an Integer; 0 for any other kind.
    int64_t increment() const {
        const Access access(*this);
        ZelGenParam::Int* const number = access.param->ToInt();
        ZelCamErr code = ZelCamErr_Success;
        const int64_t step = number != nullptr ? number->GetIncrement(&code) : 0;
        checked(access, code, "reading the limits of");
        return step;
    }

    // The physical unit of a Float; empty without one.
    std::string unit() const {
        const Access access(*this);
        ZelGenParam::Float* const number = access.param->ToFloat();
        return number != nullptr ? detail::textOf(number->GetUnit(nullptr)) : "";
    }

    // The symbolic names that an Enumeration can have at the moment; empty for any other kind.
    std::vector<std::string> entries() const {
        const Access access(*this);
        std::vector<std::string> names;
        ZelGenParam::Enum* const choice = access.param->ToEnum();
        if (choice == nullptr) return names;
        const size_t count = choice->GetEnumEntriesCount(nullptr);
        for (size_t i = 0; i < count; ++i) {
            ZelGenParam::EnumEntry* const entry = choice->GetEnumEntryByIndex(i);
            if (entry != nullptr && entry->IsAvailable())
                names.push_back(detail::textOf(entry->GetValueStr(nullptr)));
        }
        return names;
    }

    // ---- What it is -----------------------------------------------------------------------------

    const std::string& name() const { return name_; }

    Kind kind() const { return detail::kindOf(*Access(*this).param); }

    // Texts of the camera's description; empty if it has none.
    std::string displayName() const {
        return Access(*this).textOf(&ZelGenParam::Param::GetDisplayName);
    }
    std::string description() const {
        return Access(*this).textOf(&ZelGenParam::Param::GetDescription);
    }
    std::string toolTip() const { return Access(*this).textOf(&ZelGenParam::Param::GetToolTip); }
    Visibility visibility() const { return Access(*this).param->GetVisibility(); }

    // What can be done with it at the moment.
    bool isAvailable() const { return Access(*this).param->IsAvailable(); }
    bool isReadable() const { return Access(*this).param->IsReadable(); }
    bool isWritable() const { return Access(*this).param->IsWritable(); }

    // Whether saved settings have it.
    bool isStreamable() const { return Access(*this).param->IsStreamable(); }

    // ---- Selectors and changes ------------------------------------------------------------------

    // The feature as it is under a value of its selector, whatever the selector's own value is:
    //
    //     camera["Gain"].at("GainSelector", "Red") = 2.0;
    //
    // Each access sets the selector for its time only.
    Feature at(const std::string& selector, const std::string& value) const {
        Feature selected(*this);
        selected.selectors_.emplace_back(selector, value);
        return selected;
    }

    // Calls `function` with this feature whenever its value or its state may have changed: on the
    // thread that changed it or on one of the library, with the feature's node map locked, so do
    // not wait for other threads that use features there. What it throws is dropped.
    [[nodiscard]] Subscription onChange(std::function<void(const Feature&)> function) const {
        const auto watch = std::make_shared<detail::Watch>(
            module_, name_,
            [self = Weak{state_, module_, name_, selectors_}, call = std::move(function)] {
                if (const auto state = self.state.lock())
                    call(Feature(state, self.module, self.name, self.selectors));
            });
        state_->add(watch);
        return Subscription(watch);
    }

    // For the layer itself: see FeatureMap.
    using Selectors = std::vector<std::pair<std::string, std::string>>;
    Feature(std::shared_ptr<detail::CameraState> state, Module module, std::string name,
            Selectors selectors = {})
        : state_(std::move(state)),
          module_(module),
          name_(std::move(name)),
          selectors_(std::move(selectors)) {}

  private:
    // A subscription does not keep the camera.
    struct Weak {
        std::weak_ptr<detail::CameraState> state;
        Module module;
        std::string name;
        Selectors selectors;
    };

    // Holds the open device during an access, with the selectors set.
    struct Access {
        explicit Access(const Feature& feature) : opened(*feature.state_) {
            if (opened->number() != feature.found_.number) feature.find(*opened);
            param = feature.found_.param;
            array = feature.found_.array;
            if (feature.selectors_.empty()) return;
            array->Lock();
            try {
                for (const auto& [selector, value] : feature.selectors_)
                    select(selector, value);
            } catch (...) {
                restore();
                array->Unlock();
                throw;
            }
            isLocked = true;
        }

        Access(const Access&) = delete;
        Access& operator=(const Access&) = delete;
        ~Access() {
            if (!isLocked) return;
            restore();
            array->Unlock();
        }

        std::string textOf(const char* (ZelGenParam::Param::*get)()) const {
            return detail::textOf((param->*get)());
        }

        void select(const std::string& selector, const std::string& value) {
            ZelCamErr code = ZelCamErr_Success;
            const std::string before = detail::textOf(array->GetValueStr(selector.c_str(), &code));
            detail::check(code, "reading", selector);
            if (before == value) return;
            const char* reason = "";
            code = array->SetValueStr(selector.c_str(), value.c_str(), &reason);
            detail::check(code, "setting", selector, reason);
            changed.emplace_back(selector, before);
        }

        void restore() {
            for (; !changed.empty(); changed.pop_back())
                array->SetValueStr(changed.back().first.c_str(), changed.back().second.c_str(),
                                   nullptr);
        }

        detail::CameraState::Use opened;
        ZelGenParam::Param* param = nullptr;
        ZelGenParam::Array* array = nullptr;
        bool isLocked = false;
        Selectors changed;
    };

    void find(detail::Opened& opened) const {
        ZelGenParam::Array& array = opened.features(module_);
        ZelCamErr code = ZelCamErr_Success;
        ZelGenParam::Param* const param = array.GetParam(name_.c_str(), &code);
        detail::check(code, "finding", name_);
        found_ = {opened.number(), &array, param};
    }

    template <typename T, typename From>
    T checkedCast(From value, const char* operation) const {
        const auto cast = static_cast<T>(value);
        if (static_cast<From>(cast) != value || (cast < T{}) != (value < From{}))
            throw Error(ZelCamErr_OutOfRange, operation, name_, std::to_string(value));
        return cast;
    }

    // Why it cannot be done, beyond what the code says.
    std::string reasonOf(const Access& access, ZelCamErr code) const {
        const auto number = [](double value) {
            char text[32];
            std::snprintf(text, sizeof text, "%g", value);
            return std::string(text);
        };
        if (code == ZelCamErr_OutOfRange) {
            if (ZelGenParam::Float* const real = access.param->ToFloat())
                return "it must be from " + number(real->GetMin(nullptr)) + " to " +
                       number(real->GetMax(nullptr)) + " " + detail::textOf(real->GetUnit(nullptr));
            if (ZelGenParam::Int* const integer = access.param->ToInt())
                return "it must be from " + std::to_string(integer->GetMin(nullptr)) + " to " +
                       std::to_string(integer->GetMax(nullptr)) + " in steps of " +
                       std::to_string(integer->GetIncrement(nullptr));
        }
        if (code == ZelCamErr_AccessDenied) {
            if (!access.param->IsAvailable()) return "it is not available at the moment";
            if (access.array->GetIntegerValue("TLParamsLocked", nullptr) != 0)
                return "frames are being grabbed, which locks some features";
        }
        return "";
    }

    [[noreturn]] void fail(const Access& access, ZelCamErr code, const char* operation) const {
        throw Error(code, operation, name_, reasonOf(access, code));
    }

    void checked(const Access& access, ZelCamErr code, const char* operation) const {
        if (code != ZelCamErr_Success) fail(access, code, operation);
    }

    void setNumber(const Access& access, int64_t value) const {
        if (ZelGenParam::Int* const integer = access.param->ToInt())
            return checked(access, integer->SetValue(value), "setting");
        if (ZelGenParam::Float* const real = access.param->ToFloat())
            return checked(access, real->SetValue(static_cast<double>(value)), "setting");
        if (ZelGenParam::Enum* const choice = access.param->ToEnum())
            return checked(access, choice->SetValue(value), "setting");
        ZelGenParam::Boolean* const boolean = access.param->ToBoolean();
        if (boolean == nullptr) fail(access, ZelCamErr_WrongParamType, "setting");
        if (value != 0 && value != 1) fail(access, ZelCamErr_InvalidValue, "setting");
        checked(access, boolean->SetValue(value != 0), "setting");
    }

    void setFloat(const Access& access, double value) const {
        if (ZelGenParam::Float* const real = access.param->ToFloat())
            return checked(access, real->SetValue(value), "setting");
        constexpr double kLimit = 9223372036854775808.0;  // 2^63
        if (!(value >= -kLimit && value < kLimit) || std::trunc(value) != value)
            fail(access, ZelCamErr_InvalidValue, "setting");
        setNumber(access, static_cast<int64_t>(value));
    }

    void setText(const Access& access, const std::string& value) const {
        const char* reason = "";
        const ZelCamErr code = access.array->SetValueStr(name_.c_str(), value.c_str(), &reason);
        detail::check(code, "setting", name_, reason);
    }

    std::string readText(const Access& access) const {
        ZelCamErr code = ZelCamErr_Success;
        const char* const text = access.array->GetValueStr(name_.c_str(), &code);
        checked(access, code, "reading");
        return detail::textOf(text);
    }

    // An Integer by its name, which takes less time than finding its object first. Nothing if it is
    // none, or cannot be read now: its object tells more.
    std::optional<int64_t> readInteger() const {
        if (!selectors_.empty()) return std::nullopt;
        const detail::CameraState::Use opened(*state_);
        ZelCamErr code = ZelCamErr_Success;
        const int64_t value = opened->features(module_).GetIntegerValue(name_.c_str(), &code);
        // The access itself failed, perhaps after a long wait: the camera is not asked again.
        if (code == ZelCamErr_GenApiError) throw Error(ZelCamErr_Error, "reading", name_);
        if (code != ZelCamErr_Success) return std::nullopt;
        return value;
    }

    int64_t readNumber(const Access& access) const {
        ZelCamErr code = ZelCamErr_WrongParamType;
        int64_t value = 0;
        if (ZelGenParam::Int* const integer = access.param->ToInt()) {
            value = integer->GetValue(&code);
        } else if (ZelGenParam::Boolean* const boolean = access.param->ToBoolean()) {
            value = boolean->GetValue(&code) ? 1 : 0;
        } else if (ZelGenParam::Enum* const choice = access.param->ToEnum()) {
            value = choice->GetValue(&code);
        }
        checked(access, code, "reading");
        return value;
    }

    double readFloat(const Access& access) const {
        ZelGenParam::Float* const real = access.param->ToFloat();
        if (real == nullptr) return static_cast<double>(readNumber(access));
        ZelCamErr code = ZelCamErr_Success;
        const double value = real->GetValue(&code);
        checked(access, code, "reading");
        return value;
    }

    template <typename T>
    T limit(int64_t (ZelGenParam::Int::*ofInt)(ZelCamErr*),
            double (ZelGenParam::Float::*ofFloat)(ZelCamErr*)) const {
        const Access access(*this);
        ZelCamErr code = ZelCamErr_WrongParamType;
        T value{};
        if (ZelGenParam::Int* const integer = access.param->ToInt()) {
            value = static_cast<T>((integer->*ofInt)(&code));
        } else if (ZelGenParam::Float* const real = access.param->ToFloat()) {
            value = static_cast<T>((real->*ofFloat)(&code));
        }
        checked(access, code, "reading the limits of");
        return value;
    }

    // For a camera that is to have the same settings when it comes back.
    void keep(const Access& access) const {
        if (module_ != Module::Camera || !state_->keepsSettings()) return;
        ZelCamErr code = ZelCamErr_Success;
        const char* const text = access.array->GetValueStr(name_.c_str(), &code);
        if (code == ZelCamErr_Success) state_->keep({selectors_, name_, detail::textOf(text)});
    }

    struct Found {
        uint64_t number = 0;  // of the Opened
        ZelGenParam::Array* array = nullptr;
        ZelGenParam::Param* param = nullptr;
    };

    std::shared_ptr<detail::CameraState> state_;
    Module module_;
    std::string name_;
    Selectors selectors_;
    mutable Found found_;
};

// The features of one module.
class FeatureMap {
  public:
    // The feature of that name. Whether the module has it shows when it is used.
    Feature operator[](std::string name) const { return {state_, module_, std::move(name)}; }

    bool has(const std::string& name) const {
        const auto opened = state_->opened();
        return opened->features(module_).GetParam(name.c_str(), nullptr) != nullptr;
    }

    // All features but categories, in the order of the description.
    std::vector<Feature> all() const {
        const auto opened = state_->opened();
        ZelGenParam::Array& array = opened->features(module_);
        std::vector<Feature> features;
        for (uint32_t i = 0; i < array.GetCount(); ++i) {
            ZelGenParam::Param* const param = array.GetParamByIndex(i, nullptr);
            if (param != nullptr && param->GetType() != ZelGenParam::ParamType_Category)
                features.push_back((*this)[detail::textOf(param->GetName())]);
        }
        return features;
    }

    // For the layer itself.
    FeatureMap(std::shared_ptr<detail::CameraState> state, Module module)
        : state_(std::move(state)), module_(module) {}

  private:
    std::shared_ptr<detail::CameraState> state_;
    Module module_;
};

}  // namespace zel

#endif  // ZEL_FEATURE_H
