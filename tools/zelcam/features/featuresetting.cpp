#include "tools/zelcam/features/featuresetting.h"

#include <GenApi/GenApi.h>

#include "tools/zelcam/camera/words.h"
#include "tools/zelcam/console/failure.h"
#include "tools/zelcam/console/numbertext.h"
#include "tools/zelcam/console/suggestion.h"
#include "tools/zelcam/features/featurereading.h"
#include "tools/zelcam/features/featurevalue.h"

namespace ZelTool {

namespace {

using ZelGenParam::Param;

[[noreturn]] void Refuse(const std::string& why) {
    throw Failure(ExitCode::FeatureFailed, why);
}

std::string WhyNoUnit(const std::string& written, const std::string& unit) {
    if (unit.empty()) return "the feature has no unit, and \"" + written + "\" is not a number";
    return "\"" + written + "\" does not convert into its unit, which is " + unit;
}

// The number in the unit of the feature.
Decimal NumberIn(Param& feature, const std::string& text) {
    std::string rest;
    const std::optional<Decimal> number = Decimal::Parse(text, rest);
    if (!number) Refuse("it is not a number");
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
        Refuse("it accepts whole numbers of up to 64 bits");
    }
    return std::to_string(*whole);
}

std::string FloatText(Param& feature, const std::string& text) {
    const std::optional<double> number = NumberIn(feature, text).Nearest();
    if (!number) Refuse("the number is too large, or too close to 0");
    return NumberText(*number);
}

// Whether the engine accepts only a special form, such as that of an address.
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

void RequireSettable(Param& feature) {
    const std::string name = feature.GetName();
    if (feature.ToCommand() != nullptr) Refuse(name + " is a command: zelcam exec starts it");
    if (feature.ToCategory() != nullptr) Refuse(name + " has no value");
    if (!feature.IsWritable()) Refuse(name + " cannot be set: " + WhyNotWritable(feature));
}

// The possible values; empty if they are unknown.
std::string WhatItTakes(Param& feature) {
    if (feature.ToBoolean() != nullptr) return "true|false|1|0";
    const std::string range = RangeOf(feature);
    return range.empty() ? "" : WithUnit(feature, range);
}

// Why the value cannot be set; empty on success.
std::string Set(ZelGenParam::Array& features, Param& feature, const std::string& text) {
    try {
        const std::string reason = SetText(features, feature.GetName(), SettingText(feature, text));
        return reason.empty() ? "" : reason + DidYouMean(text, EntriesOf(feature));
    } catch (const Failure& failure) {
        return failure.what();
    }
}

// The position of the "=".
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

std::string SetText(ZelGenParam::Array& features, const std::string& name,
                    const std::string& text) {
    const char* why = "";
    const ZelCamErr code = features.SetValueStr(name.c_str(), text.c_str(), &why);
    if (code == ZelCamErr_Success) return "";
    std::string reason = why;
    reason.resize(reason.find_last_not_of(". ") + 1);
    return reason.empty() ? ErrorWords(code) : reason;
}

void RequireAssignments(const std::vector<std::string>& assignments) {
    for (const std::string& assignment : assignments)
        EndOfName(assignment);
}

Param& SetFeature(ZelGenParam::Array& features, const std::string& assignment) {
    const size_t equals = EndOfName(assignment);
    const std::string text = assignment.substr(equals + 1);
    Param& feature = FindFeature(features, assignment.substr(0, equals));
    RequireSettable(feature);
    const std::string problem = Set(features, feature, text);
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

}  // namespace ZelTool
