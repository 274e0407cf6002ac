#include "tools/zelcam/featurevalue.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstring>
#include <limits>

#include <GenApi/GenApi.h>
#include <nlohmann/json.hpp>

#include "tools/zelcam/failure.h"

namespace {

using Json = nlohmann::ordered_json;
using ZelGenParam::Param;

GenApi::IValue* ValueOf(Param& feature) {
    return dynamic_cast<GenApi::IValue*>(feature.GetNode());
}

// Shortest text that reads back as the same number.
std::string NumberText(double number) {
    std::array<char, 32> text{};
    const auto end = std::to_chars(text.begin(), text.end(), number);
    return {text.data(), end.ptr};
}

std::string Join(const std::vector<std::string>& words, const char* between) {
    std::string text;
    for (const std::string& word : words)
        text += (text.empty() ? "" : between) + word;
    return text;
}

std::vector<std::string> Entries(Param& feature) {
    std::vector<std::string> names;
    const GenApi::CEnumerationPtr enumeration(feature.GetNode());
    if (!enumeration) return names;
    GenICam::gcstring_vector symbolics;
    enumeration->GetSymbolics(symbolics);
    for (size_t i = 0; i < symbolics.size(); ++i)
        names.emplace_back(symbolics[i].c_str());
    return names;
}

// Limits of the number type itself say nothing.
bool IsLimit(int64_t number) {
    return number != std::numeric_limits<int64_t>::min() &&
           number != std::numeric_limits<int64_t>::max();
}

bool IsLimit(double number) {
    return number > -std::numeric_limits<double>::max() &&
           number < std::numeric_limits<double>::max();
}

template <typename Number>
void AddLimit(Json& json, const char* name, Number number, ZelCamErr code) {
    if (code == ZelCamErr_Success && IsLimit(number)) json[name] = number;
}

void AddIntegerRange(ZelGenParam::Int& integer, Json& json) {
    ZelCamErr code = ZelCamErr_Success;
    int64_t number = integer.GetMin(&code);
    AddLimit(json, "min", number, code);
    number = integer.GetMax(&code);
    AddLimit(json, "max", number, code);
    number = integer.GetIncrement(&code);
    AddLimit(json, "increment", number, code);
}

void AddFloatRange(ZelGenParam::Float& floating, Json& json) {
    ZelCamErr code = ZelCamErr_Success;
    double number = floating.GetMin(&code);
    AddLimit(json, "min", number, code);
    number = floating.GetMax(&code);
    AddLimit(json, "max", number, code);
}

std::string LimitText(const Json& range, const char* name) {
    if (!range.contains(name)) return "";
    const Json& limit = range.at(name);
    return limit.is_number_float() ? NumberText(limit.get<double>())
                                   : std::to_string(limit.get<int64_t>());
}

// Names that hold `name` or are held by it, whatever their case.
std::string Resembling(ZelGenParam::Array& features, const std::string& name) {
    constexpr size_t enough = 5;
    std::vector<std::string> names;
    for (uint32_t i = 0; i < features.GetCount() && names.size() < enough; ++i) {
        Param* feature = features.GetParamByIndex(i, nullptr);
        if (feature == nullptr || name.empty()) continue;
        const char* candidate = feature->GetName();
        if (strcasestr(candidate, name.c_str()) != nullptr) names.emplace_back(candidate);
    }
    return names.empty() ? "" : "; there is " + Join(names, ", ");
}

std::string WhyNotWritable(Param& feature) {
    const std::string access = AccessMark(feature);
    if (access == "na") return "it is not available at the moment";
    if (access == "ni") return "this camera does not have it";
    return "it is read-only at the moment";
}

}  // namespace

Param& FindFeature(ZelGenParam::Array& features, const std::string& name) {
    Param* feature = features.GetParam(name.c_str(), nullptr);
    if (feature == nullptr) {
        throw Failure(ExitCode::FeatureFailed,
                      "there is no feature \"" + name + "\"" + Resembling(features, name));
    }
    return *feature;
}

std::string KindWords(Param& feature) {
    switch (feature.GetType()) {
        case ZelGenParam::ParamType_Int:
            return "integer";
        case ZelGenParam::ParamType_Float:
            return "float";
        case ZelGenParam::ParamType_String:
            return "string";
        case ZelGenParam::ParamType_Enum:
            return "enumeration";
        case ZelGenParam::ParamType_Boolean:
            return "boolean";
        case ZelGenParam::ParamType_Command:
            return "command";
        case ZelGenParam::ParamType_Category:
            return "category";
        default:
            return "register";
    }
}

std::string VisibilityWords(ZelGenParam::Visibility visibility) {
    switch (visibility) {
        case ZelGenParam::Visibility::Beginner:
            return "beginner";
        case ZelGenParam::Visibility::Expert:
            return "expert";
        case ZelGenParam::Visibility::Guru:
            return "guru";
        default:
            return "invisible";
    }
}

std::string AccessMark(Param& feature) {
    if (feature.IsReadable()) return feature.IsWritable() ? "rw" : "ro";
    if (feature.IsWritable()) return "wo";
    return GenApi::IsImplemented(feature.GetNode()) ? "na" : "ni";
}

std::optional<std::string> ReadFeature(Param& feature, bool fresh) {
    GenApi::IValue* value = ValueOf(feature);
    const auto kind = feature.GetType();
    if (value == nullptr || kind == ZelGenParam::ParamType_Command ||
        kind == ZelGenParam::ParamType_Category || !feature.IsReadable()) {
        return std::nullopt;
    }
    try {
        return value->ToString(false, fresh).c_str();
    } catch (const GenICam::GenericException&) {
        // Readable, and yet the camera does not answer.
        return std::nullopt;
    }
}

Json ReadFeatureAsJson(Param& feature) {
    const std::optional<std::string> text = ReadFeature(feature);
    if (!text) return nullptr;
    ZelCamErr code = ZelCamErr_Success;
    Json value = *text;
    if (auto* integer = feature.ToInt()) {
        const int64_t number = integer->GetValue(&code);
        if (code == ZelCamErr_Success) value = number;
    } else if (auto* floating = feature.ToFloat()) {
        const double number = floating->GetValue(&code);
        if (code == ZelCamErr_Success) value = number;
    } else if (auto* boolean = feature.ToBoolean()) {
        const bool truth = boolean->GetValue(&code);
        if (code == ZelCamErr_Success) value = truth;
    }
    return value;
}

std::string UnitOf(Param& feature) {
    const GenApi::CIntegerPtr integer(feature.GetNode());
    const GenApi::CFloatPtr floating(feature.GetNode());
    if (integer) return integer->GetUnit().c_str();
    return floating ? floating->GetUnit().c_str() : "";
}

void AddRange(Param& feature, Json& json) {
    if (!feature.IsAvailable()) return;
    if (auto* integer = feature.ToInt()) AddIntegerRange(*integer, json);
    if (auto* floating = feature.ToFloat()) AddFloatRange(*floating, json);
    if (feature.ToEnum() != nullptr) json["entries"] = Entries(feature);
    if (auto* text = feature.ToString()) {
        ZelCamErr code = ZelCamErr_Success;
        const int64_t length = text->GetMaxLength(&code);
        AddLimit(json, "maxLength", length, code);
    }
}

std::string RangeOf(Param& feature) {
    Json range;
    AddRange(feature, range);
    if (range.contains("entries")) {
        return Join(range.at("entries").get<std::vector<std::string>>(), "|");
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

Param& SetFeature(ZelGenParam::Array& features, const std::string& assignment) {
    const size_t equals = assignment.find('=');
    if (equals == 0 || equals == std::string::npos) {
        throw Failure(ExitCode::Usage, "\"" + assignment + "\" is not of the form NAME=VALUE");
    }
    const std::string name = assignment.substr(0, equals);
    const std::string text = assignment.substr(equals + 1);
    Param& feature = FindFeature(features, name);
    if (feature.ToCommand() != nullptr) {
        throw Failure(ExitCode::FeatureFailed, name + " is a command: zelcam exec starts it");
    }
    GenApi::IValue* value = ValueOf(feature);
    if (value == nullptr || feature.ToCategory() != nullptr) {
        throw Failure(ExitCode::FeatureFailed, name + " has no value");
    }
    if (!feature.IsWritable()) {
        throw Failure(ExitCode::FeatureFailed, name + " cannot be set: " + WhyNotWritable(feature));
    }
    try {
        value->FromString(text.c_str());
    } catch (const GenICam::GenericException& error) {
        const std::string range = RangeOf(feature);
        throw Failure(ExitCode::FeatureFailed, name + " cannot be set to \"" + text +
                                                   "\": " + error.GetDescription() +
                                                   (range.empty() ? "" : "\nIt can be " + range));
    }
    return feature;
}
