#include "tools/zelcam/features/featurevalue.h"

#include <array>
#include <charconv>
#include <limits>

#include <GenApi/GenApi.h>

#include "tools/zelcam/console/failure.h"
#include "tools/zelcam/console/suggestion.h"
#include "tools/zelcam/console/texttable.h"
#include "tools/zelcam/console/wordtable.h"

namespace ZelTool {

namespace {

using ZelGenParam::Param;

constexpr Word<ZelGenParam::ParamType> kKinds[] = {
    {ZelGenParam::ParamType_Int, "integer"},       {ZelGenParam::ParamType_Float, "float"},
    {ZelGenParam::ParamType_String, "string"},     {ZelGenParam::ParamType_Enum, "enumeration"},
    {ZelGenParam::ParamType_Boolean, "boolean"},   {ZelGenParam::ParamType_Command, "command"},
    {ZelGenParam::ParamType_Category, "category"},
};

// Excludes the limits of the number type itself, which carry no information.
bool IsLimit(int64_t number) {
    return number != std::numeric_limits<int64_t>::min() &&
           number != std::numeric_limits<int64_t>::max();
}

bool IsLimit(double number) {
    return number > -std::numeric_limits<double>::max() &&
           number < std::numeric_limits<double>::max();
}

// Adds the limit that `getter` returns.
template <typename Feature, typename Getter>
void AddLimit(Json& json, const char* name, Feature& feature, Getter getter) {
    ZelCamErr code = ZelCamErr_Success;
    const auto number = (feature.*getter)(&code);
    if (code == ZelCamErr_Success && IsLimit(number)) json[name] = number;
}

template <typename Feature>
void AddMinAndMax(Json& json, Feature& feature) {
    AddLimit(json, "min", feature, &Feature::GetMin);
    AddLimit(json, "max", feature, &Feature::GetMax);
}

std::string LimitText(const Json& range, const char* name) {
    if (!range.contains(name)) return "";
    const Json& limit = range.at(name);
    return limit.is_number_float() ? NumberText(limit.get<double>())
                                   : std::to_string(limit.get<int64_t>());
}

}  // namespace

std::vector<std::string> NamesOf(ZelGenParam::Array& features) {
    std::vector<std::string> names;
    for (uint32_t i = 0; i < features.GetCount(); ++i) {
        Param* feature = features.GetParamByIndex(i, nullptr);
        if (feature != nullptr) names.emplace_back(feature->GetName());
    }
    return names;
}

Param& FindFeature(ZelGenParam::Array& features, const std::string& name) {
    Param* feature = features.GetParam(name.c_str(), nullptr);
    if (feature == nullptr) {
        throw Failure(ExitCode::FeatureFailed,
                      "there is no feature \"" + name + "\"" + DidYouMean(name, NamesOf(features)));
    }
    return *feature;
}

std::string NumberText(double number) {
    std::array<char, 32> text{};
    const auto end = std::to_chars(text.begin(), text.end(), number);
    return {text.data(), end.ptr};
}

std::string KindWords(Param& feature) {
    return WordsFor(feature.GetType(), kKinds, "register");
}

std::string UnitOf(Param& feature) {
    const GenApi::CIntegerPtr integer(feature.GetNode());
    const GenApi::CFloatPtr floating(feature.GetNode());
    if (integer) return integer->GetUnit().c_str();
    return floating ? floating->GetUnit().c_str() : "";
}

std::string WithUnit(Param& feature, const std::string& text) {
    const std::string unit = UnitOf(feature);
    return unit.empty() ? text : text + " " + unit;
}

std::vector<std::string> EntriesOf(Param& feature) {
    std::vector<std::string> names;
    const GenApi::CEnumerationPtr enumeration(feature.GetNode());
    if (!enumeration) return names;
    GenICam::gcstring_vector symbolics;
    enumeration->GetSymbolics(symbolics);
    for (size_t i = 0; i < symbolics.size(); ++i)
        names.emplace_back(symbolics[i].c_str());
    return names;
}

void AddRange(Param& feature, Json& json) {
    if (!feature.IsAvailable()) return;
    if (auto* integer = feature.ToInt()) {
        AddMinAndMax(json, *integer);
        AddLimit(json, "increment", *integer, &ZelGenParam::Int::GetIncrement);
    }
    if (auto* floating = feature.ToFloat()) AddMinAndMax(json, *floating);
    if (feature.ToEnum() != nullptr) json["entries"] = EntriesOf(feature);
    if (auto* text = feature.ToString())
        AddLimit(json, "maxLength", *text, &ZelGenParam::String::GetMaxLength);
}

std::string RangeOf(Param& feature) {
    Json range;
    AddRange(feature, range);
    if (range.contains("entries")) {
        return Joined(range.at("entries").get<std::vector<std::string>>(), "|");
    }
    if (range.contains("maxLength")) return "up to " + LimitText(range, "maxLength") + " bytes";
    if (!range.contains("min") && !range.contains("max")) return "";
    std::string text = LimitText(range, "min") + ".." + LimitText(range, "max");
    const std::string step = LimitText(range, "increment");
    if (!step.empty() && step != "1") text += " step " + step;
    return text;
}

bool IsSelector(Param& feature) {
    const auto* selector = dynamic_cast<GenApi::ISelector*>(feature.GetNode());
    return selector != nullptr && selector->IsSelector();
}

std::vector<std::string> SelectorsOf(Param& feature) {
    std::vector<std::string> names;
    const auto* selector = dynamic_cast<GenApi::ISelector*>(feature.GetNode());
    if (selector == nullptr) return names;
    GenApi::FeatureList_t selecting;
    selector->GetSelectingFeatures(selecting);
    for (size_t i = 0; i < selecting.size(); ++i)
        names.emplace_back(selecting[i]->GetNode()->GetName().c_str());
    return names;
}

}  // namespace ZelTool
