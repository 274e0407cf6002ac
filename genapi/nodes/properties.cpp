#include "genapi/nodes/properties.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <string>
#include <vector>

#include "genapi/description/links.h"
#include "genapi/description/numbers.h"
#include "genapi/description/schema.h"
#include "genapi/nodes/nodemap.h"

namespace GENAPI_NAMESPACE {
namespace Engine {

using GENICAM_NAMESPACE::gcstring;

namespace {

const char* kindName(NodeKind kind) {
    static constexpr std::array<const char*, 25> kNames = {
        "Node",        "Category",      "Integer",   "IntReg",         "MaskedIntReg",
        "StructEntry", "Boolean",       "Command",   "Float",          "FloatReg",
        "Enumeration", "EnumEntry",     "String",    "StringReg",      "Register",
        "SwissKnife",  "IntSwissKnife", "Converter", "IntConverter",   "Port",
        "ConfRom",     "TextDesc",      "IntKey",    "AdvFeatureLock", "SmartFeature"};
    return kNames[static_cast<std::size_t>(kind)];
}

std::string joined(const Description& description, const std::vector<NodeId>& ids) {
    std::string text;
    for (const NodeId id : ids) {
        if (!text.empty()) text += '\t';
        text += description.name(id);
    }
    return text;
}

// Properties that every node has, whether its description says so or not.
struct General {
    const char* name;
    std::string (*value)(const Node& node);
};

constexpr const char* yesNo(bool yes) {
    return yes ? "Yes" : "No";
}

const General kGeneral[] = {
    {"Name", [](const Node& n) { return std::string(n.name()); }},
    {"NameSpace",
     [](const Node& n) {
         return std::string(n.record().nameSpace == Standard ? "Standard" : "Custom");
     }},
    {"NodeType", [](const Node& n) { return std::string(kindName(n.record().kind)); }},
    {"DeviceName", [](const Node& n) { return std::string(n.Node::GetDeviceName().c_str()); }},
    {"IsFeature", [](const Node& n) { return std::string(yesNo(n.record().feature)); }},
    {"ExposeStatic", [](const Node& n) { return std::string(yesNo(n.record().exposeStatic)); }},
};

// The halves of a converter keep apart which of its formulas they have.
const char* shownName(NodeKind kind, Element element) {
    const bool isHalf = kind == NodeKind::SwissKnife || kind == NodeKind::IntSwissKnife;
    const bool isFormula = element == Element::FormulaTo || element == Element::FormulaFrom;
    return nameOf(isHalf && isFormula ? Element::Formula : element);
}

// Numbers are shown as such, not as they were written.
std::string shownValue(const Node& node, const Property& property) {
    const Description& description = node.description();
    if (isLink(property.element)) return std::string(description.name(property.node()));
    const std::string_view text = description.text(property.text());
    const TextType type = nodeModel(modelOf(node.record().kind)).texts[keyOf(property.element)];
    std::int64_t integer = 0;
    if (type == TextType::Integer && parse(text, integer)) return std::to_string(integer);
    double number = 0;
    if (type != TextType::Float || !parse(text, number)) return std::string(text);
    std::array<char, 32> shown{};
    std::snprintf(shown.data(), shown.size(), "%g", number);
    return shown.data();
}

// Links that are computed; a node has them only when there is something to tell.
struct Computed {
    const char* name;
    ELinkType link;
};
constexpr Computed kComputed[] = {{"pDependent", ctDependingNodes}, {"pTerminal", ctTerminalNodes}};

}  // namespace

void propertyNames(const Node& node, GENICAM_NAMESPACE::gcstring_vector& names) {
    for (const General& general : kGeneral)
        names.push_back(general.name);
    std::vector<Element> seen;
    for (const Property& property : node.description().properties(node.id()))
        if (std::find(seen.begin(), seen.end(), property.element) == seen.end()) {
            seen.push_back(property.element);
            names.push_back(shownName(node.record().kind, property.element));
        }
    for (const Computed& computed : kComputed)
        if (!children(node.description(), node.id(), computed.link).empty())
            names.push_back(computed.name);
}

bool propertyOf(const Node& node, std::string_view name, gcstring& value, gcstring& attribute) {
    for (const General& general : kGeneral)
        if (name == general.name) {
            value = general.value(node).c_str();
            attribute = "";
            return true;
        }
    const Description& description = node.description();
    for (const Computed& computed : kComputed)
        if (name == computed.name) {
            const std::string text =
                joined(description, children(description, node.id(), computed.link));
            value = text.c_str();
            attribute = "";
            return !text.empty();
        }
    std::string values, attributes;
    bool found = false;
    for (const Property& property : description.properties(node.id())) {
        if (name != shownName(node.record().kind, property.element)) continue;
        if (found) {
            values += '\t';
            attributes += '\t';
        }
        found = true;
        values += shownValue(node, property);
        attributes += description.text(property.attribute);
    }
    if (!found) return false;
    value = gcstring(values.data(), values.size());
    attribute = gcstring(attributes.data(), attributes.size());
    return true;
}

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE
