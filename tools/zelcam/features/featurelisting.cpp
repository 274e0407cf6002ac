#include "tools/zelcam/features/featurelisting.h"

#include <cctype>
#include <ostream>

#include "tools/zelcam/console/printable.h"
#include "tools/zelcam/features/featurereading.h"
#include "tools/zelcam/features/featurevalue.h"

namespace ZelTool {

namespace {

using ZelGenParam::Param;
using Categories = std::vector<std::string>;

constexpr size_t kLongestCell = 48;
constexpr const char* kHiddenValue = "***";

// Shortens long values, mostly contents of registers, which would make the table too wide.
std::string Shortened(const std::string& text) {
    if (text.size() <= kLongestCell) return text;
    size_t end = kLongestCell;
    // Do not cut a UTF-8 character.
    while ((static_cast<unsigned char>(text[end]) & 0xC0) == 0x80)
        --end;
    return text.substr(0, end) + "...";
}

// Adds a line for each category that the previous feature was not in.
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
        const std::string value = selector == nullptr ? "" : ReadOrEmpty(*selector);
        text += (text.empty() ? "[" : ", ") + name + "=" + (value.empty() ? "?" : value);
    }
    return text.empty() ? "" : text + "]";
}

std::string Together(const std::string& first, const std::string& second) {
    return first + (first.empty() || second.empty() ? "" : " ") + second;
}

// Joins the lines of a description, which has the line breaks and indentation of its XML file.
std::string InOneLine(const std::string& text) {
    std::string line;
    for (const char c : text) {
        const bool blank = std::isspace(static_cast<unsigned char>(c)) != 0;
        if (!blank) line += c;
        if (blank && !line.empty() && line.back() != ' ') line += ' ';
    }
    return line;
}

std::string DescriptionOf(Param& feature) {
    const std::string description = InOneLine(feature.GetDescription());
    return description.empty() ? InOneLine(feature.GetToolTip()) : description;
}

// The result of `read`. If that fails, notes the failure and returns `instead`.
template <typename Value, typename Read>
Value ReadOrNote(FeatureListing& listing, const Value& instead, Read read) {
    try {
        return read();
    } catch (const CameraLost&) {
        throw;
    } catch (const Failure& failure) {
        listing.failures.emplace_back(failure.what());
        return instead;
    }
}

void VisitUntilLost(FeatureListing& listing, ZelGenParam::Array& features,
                    const FeatureFilter& filter, const FeatureVisitor& visit) {
    try {
        VisitFeatures(features, filter, [&](Param& feature, const Categories& categories) {
            visit(feature, categories);
            ++listing.count;
        });
    } catch (const CameraLost& lost) {
        listing.failures.emplace_back(lost.what());
    }
}

class FeatureTable {
  public:
    FeatureTable(ZelGenParam::Array& features, const TableStyle& style)
        : features_(features), style_(style) {}

    void Add(Param& feature, const Categories& categories, const std::string& read) {
        const bool hidden = style_.hides && style_.hides(feature.GetName(), Printable(read));
        const std::string value = hidden ? kHiddenValue : read;
        if (categories != before_ || !begun_) AddHeadings(table_, before_, categories);
        begun_ = true;
        before_ = categories;
        const size_t indent = categories.size() * 2;
        const std::string range = hidden ? "" : RangeOf(feature);
        // A long range would wrap into many lines beside the other columns.
        const bool apart = style_.width != 0 && range.size() > kLongestCell;
        table_.AddRow({std::string(indent, ' ') + feature.GetName(), AccessMark(feature),
                       Shortened(Printable(value)), UnitOf(feature),
                       Together(apart ? "(below)" : range, SelectorText(features_, feature))});
        if (apart) table_.AddNote(indent + 4, range);
        const std::string description = style_.descriptions ? DescriptionOf(feature) : "";
        if (!description.empty()) table_.AddNote(indent + 4, description);
    }

    void Print(std::ostream& out) const { table_.Print(out, style_.width); }

  private:
    ZelGenParam::Array& features_;
    const TableStyle& style_;
    TextTable table_{{"NAME", "ACCESS", "VALUE", "UNIT", "RANGE"}, style_.filter};
    Categories before_;
    bool begun_ = false;
};

std::string ValueText(const Json& value) {
    return value.is_string() ? Printable(value.get<std::string>()) : value.dump();
}

Json Describe(Param& feature, const Categories& categories, const Json& value, bool hidden) {
    Json json = {{"name", feature.GetName()},
                 {"categories", categories},
                 {"displayName", feature.GetDisplayName()},
                 {"kind", KindWords(feature)},
                 {"visibility", VisibilityWords(feature.GetVisibility())},
                 {"access", AccessMark(feature)},
                 {"value", hidden && !value.is_null() ? kHiddenValue : value},
                 {"unit", UnitOf(feature)}};
    if (!hidden) AddRange(feature, json);
    json["selectedBy"] = SelectorsOf(feature);
    json["streamable"] = feature.IsStreamable();
    json["toolTip"] = feature.GetToolTip();
    json["description"] = feature.GetDescription();
    return json;
}

}  // namespace

std::string FeatureListing::Problem() const {
    if (failures.empty()) return "";
    constexpr size_t kShown = 5;
    std::string text =
        std::to_string(failures.size()) +
        (failures.size() == 1 ? " feature cannot be read:" : " features cannot be read:");
    for (size_t i = 0; i < failures.size() && i < kShown; ++i)
        text += "\n  " + failures[i];
    // The last failure shows whether the camera is lost.
    if (failures.size() > kShown) text += "\n  ...\n  " + failures.back();
    return text;
}

FeatureListing PrintFeatures(std::ostream& out, ZelGenParam::Array& features,
                             const FeatureFilter& filter, const TableStyle& style) {
    FeatureListing listing;
    FeatureTable table(features, style);
    VisitUntilLost(listing, features, filter, [&](Param& feature, const Categories& categories) {
        std::string value = ReadOrNote<std::string>(
            listing, "!!", [&] { return ReadFeature(feature).value_or(""); });
        if (feature.ToCommand() != nullptr) value = "(command)";
        table.Add(feature, categories, value);
    });
    if (listing.count != 0 || filter.glob.empty()) table.Print(out);
    return listing;
}

FeatureListing ListFeatures(Json& list, ZelGenParam::Array& features, const FeatureFilter& filter,
                            const FeatureHiding& hides) {
    FeatureListing listing;
    VisitUntilLost(listing, features, filter, [&](Param& feature, const Categories& categories) {
        const Json value =
            ReadOrNote<Json>(listing, nullptr, [&] { return ReadFeatureAsJson(feature); });
        const bool hidden = hides && hides(feature.GetName(), ValueText(value));
        list.push_back(Describe(feature, categories, value, hidden));
    });
    return listing;
}

}  // namespace ZelTool
