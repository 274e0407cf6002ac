#include "tools/zelcam/featuresetting.h"

#include <GenApi/GenApi.h>

#include "tools/zelcam/failure.h"
#include "tools/zelcam/featurereading.h"
#include "tools/zelcam/featurevalue.h"
#include "tools/zelcam/numbertext.h"
#include "tools/zelcam/suggestion.h"

namespace {

using ZelGenParam::Param;

[[noreturn]] void Refuse(const std::string& why) {
    throw Failure(ExitCode::FeatureFailed, why);
}

std::string WhyNoUnit(const std::string& written, const std::string& unit) {
    if (unit.empty()) return "the feature has no unit, and \"" + written + "\" is no number";
    return "\"" + written + "\" is neither its unit, which is " + unit + ", nor converts into it";
}

// In the unit of the feature.
Decimal NumberIn(Param& feature, const std::string& text) {
    std::string rest;
    const std::optional<Decimal> number = Decimal::Parse(text, rest);
    if (!number) Refuse("it is no number");
    rest.erase(0, rest.find_first_not_of(' '));
    if (rest.empty()) return *number;
    const std::string unit = UnitOf(feature);
    const std::optional<int> power = PowerBetween(rest, unit);
    if (unit.empty() || !power) Refuse(WhyNoUnit(rest, unit));
    return number->TimesTenTo(*power);
}

std::string IntegerText(Param& feature, const std::string& text) {
    if (const auto integer = ParseInteger(text)) return std::to_string(*integer);
    const Decimal number = NumberIn(feature, text);
    const std::optional<int64_t> whole = number.Whole();
    if (!whole || number.HasExponent()) {
        Refuse("it takes whole numbers of up to 64 bits");
    }
    return std::to_string(*whole);
}

std::string FloatText(Param& feature, const std::string& text) {
    const std::optional<double> number = NumberIn(feature, text).Nearest();
    if (!number) Refuse("the number is too large, or too close to 0");
    return NumberText(*number);
}

// Addresses and the like, of which the node takes nothing but their own form.
bool HasFormOfItsOwn(GenApi::IInteger& integer) {
    const GenApi::ERepresentation form = integer.GetRepresentation();
    return form == GenApi::IPV4Address || form == GenApi::MACAddress || form == GenApi::Boolean;
}

std::string WhyNotWritable(Param& feature) {
    const std::string access = AccessMark(feature);
    if (access == "na") return "it is not available at the moment";
    if (access == "ni") return "this camera does not have it";
    return "it is read-only at the moment";
}

GenApi::IValue& SettableValue(Param& feature) {
    const std::string name = feature.GetName();
    if (feature.ToCommand() != nullptr) Refuse(name + " is a command: zelcam exec starts it");
    auto* value = dynamic_cast<GenApi::IValue*>(feature.GetNode());
    if (value == nullptr || feature.ToCategory() != nullptr) Refuse(name + " has no value");
    if (!feature.IsWritable()) Refuse(name + " cannot be set: " + WhyNotWritable(feature));
    return *value;
}

// Empty where that cannot be told.
std::string WhatItTakes(Param& feature) {
    if (feature.ToBoolean() != nullptr) return "true|false|1|0";
    const std::string range = RangeOf(feature);
    return range.empty() ? "" : WithUnit(feature, range);
}

// Why the value cannot be set; empty when it is.
std::string Set(Param& feature, GenApi::IValue& value, const std::string& text) {
    try {
        value.FromString(SettingText(feature, text).c_str());
    } catch (const GenICam::GenericException& error) {
        std::string reason = error.GetDescription();
        reason.resize(reason.find_last_not_of(". ") + 1);
        return reason + DidYouMean(text, EntriesOf(feature));
    } catch (const Failure& failure) {
        return failure.what();
    }
    return "";
}

// Where the "=" is.
size_t EndOfName(const std::string& assignment) {
    const size_t equals = assignment.find('=');
    if (equals == 0 || equals == std::string::npos) {
        throw Failure(ExitCode::Usage, "\"" + assignment + "\" is not of the form NAME=VALUE");
    }
    return equals;
}

}  // namespace

std::string SettingText(Param& feature, const std::string& text) {
    if (feature.ToFloat() != nullptr) return FloatText(feature, text);
    if (feature.ToInt() == nullptr) return text;
    const GenApi::CIntegerPtr integer(feature.GetNode());
    return HasFormOfItsOwn(*integer) ? text : IntegerText(feature, text);
}

void RequireAssignments(const std::vector<std::string>& assignments) {
    for (const std::string& assignment : assignments)
        EndOfName(assignment);
}

Param& SetFeature(ZelGenParam::Array& features, const std::string& assignment) {
    const size_t equals = EndOfName(assignment);
    const std::string text = assignment.substr(equals + 1);
    Param& feature = FindFeature(features, assignment.substr(0, equals));
    const std::string problem = Set(feature, SettableValue(feature), text);
    if (problem.empty()) return feature;
    const std::string taken = WhatItTakes(feature);
    Refuse(std::string(feature.GetName()) + " cannot be set to \"" + text + "\": " + problem +
           (taken.empty() ? "" : "\nIt can be " + taken));
}

TakenSetting SetAndRead(ZelGenParam::Array& features, const std::string& assignment) {
    Param& feature = SetFeature(features, assignment);
    const std::string name = feature.GetName();
    const std::optional<std::string> value = ReadFeature(feature);
    const std::string given = assignment.substr(EndOfName(assignment) + 1);
    return {name + "=" + (value ? WithUnit(feature, *value) : given),
            {{"name", name}, {"value", ReadFeatureAsJson(feature)}, {"unit", UnitOf(feature)}}};
}
