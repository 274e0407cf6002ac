#include "tools/zelcam/featurelisting.h"

#include <ostream>

#include <nlohmann/json.hpp>

#include "tools/zelcam/featurevalue.h"
#include "tools/zelcam/jsontext.h"
#include "tools/zelcam/printable.h"
#include "tools/zelcam/texttable.h"

namespace {

using Json = nlohmann::ordered_json;
using ZelGenParam::Param;
using Categories = std::vector<std::string>;

// Longer values, the contents of registers as a rule, would spoil the table.
std::string Shortened(const std::string& text) {
    constexpr size_t longest = 48;
    if (text.size() <= longest) return text;
    size_t end = longest;
    // Not in the middle of a character.
    while ((static_cast<unsigned char>(text[end]) & 0xC0) == 0x80)
        --end;
    return text.substr(0, end) + "...";
}

// A line for each category that was not above the feature before.
void AddHeadings(TextTable& table, const Categories& before, const Categories& now) {
    size_t same = 0;
    while (same < before.size() && same < now.size() && before[same] == now[same])
        ++same;
    if (same == now.size() && same < before.size()) --same;
    for (size_t depth = same; depth < now.size(); ++depth)
        table.AddHeading(std::string(depth * 2, ' ') + now[depth]);
}

std::string SelectorText(ZelGenParam::Array& features, Param& feature) {
    std::string text;
    for (const std::string& name : SelectorsOf(feature)) {
        Param* selector = features.GetParam(name.c_str(), nullptr);
        const auto value = selector == nullptr ? std::nullopt : ReadFeature(*selector);
        text += (text.empty() ? "[" : ", ") + name + "=" + value.value_or("?");
    }
    return text.empty() ? "" : text + "]";
}

std::string Together(const std::string& first, const std::string& second) {
    return first + (first.empty() || second.empty() ? "" : " ") + second;
}

Json Describe(Param& feature, const Categories& categories) {
    Json json = {{"name", feature.GetName()},
                 {"categories", categories},
                 {"displayName", feature.GetDisplayName()},
                 {"kind", KindWords(feature)},
                 {"visibility", VisibilityWords(feature.GetVisibility())},
                 {"access", AccessMark(feature)},
                 {"value", ReadFeatureAsJson(feature)},
                 {"unit", UnitOf(feature)}};
    AddRange(feature, json);
    json["selectedBy"] = SelectorsOf(feature);
    json["streamable"] = feature.IsStreamable();
    json["toolTip"] = feature.GetToolTip();
    json["description"] = feature.GetDescription();
    return json;
}

}  // namespace

size_t PrintFeatures(std::ostream& out, ZelGenParam::Array& features, const FeatureFilter& filter,
                     const FeatureHiding& hides) {
    TextTable table({"NAME", "ACCESS", "VALUE", "UNIT", "RANGE"});
    Categories before;
    size_t count = 0;
    VisitFeatures(features, filter, [&](Param& feature, const Categories& categories) {
        if (count == 0 || categories != before) AddHeadings(table, before, categories);
        before = categories;
        ++count;
        std::string value = ReadFeature(feature).value_or("");
        if (feature.ToCommand() != nullptr) value = "(command)";
        if (hides && hides(feature.GetName())) value = "***";
        table.AddRow({std::string(categories.size() * 2, ' ') + feature.GetName(),
                      AccessMark(feature), Shortened(Printable(value)), UnitOf(feature),
                      Together(RangeOf(feature), SelectorText(features, feature))});
    });
    if (count != 0 || filter.glob.empty()) table.Print(out);
    return count;
}

size_t PrintFeaturesAsJson(std::ostream& out, ZelGenParam::Array& features,
                           const FeatureFilter& filter, const std::string& camera) {
    Json list = Json::array();
    VisitFeatures(features, filter, [&](Param& feature, const Categories& categories) {
        list.push_back(Describe(feature, categories));
    });
    const size_t count = list.size();
    const Json result = {{"camera", camera}, {"features", std::move(list)}};
    if (count != 0 || filter.glob.empty()) out << JsonText(result) << '\n';
    return count;
}
