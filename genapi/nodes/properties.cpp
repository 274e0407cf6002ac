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

// In the order of NodeKind.
constexpr const char* kKindNames[] = {
#define GENAPI_NODE_KIND(name) #name,
    GENAPI_NODE_KINDS(GENAPI_NODE_KIND)
#undef GENAPI_NODE_KIND
};

std::string Joined(const Description& description, const std::vector<NodeId>& ids) {
    std::string text;
    for (const NodeId id : ids) {
        if (!text.empty()) text += '\t';
        text += description.Name(id);
    }
    return text;
}

// Properties of every node, whether or not the description has them.
struct General {
    const char* name;
    std::string (*value)(const Node& node);
};

constexpr const char* YesNo(bool yes) {
    return yes ? "Yes" : "No";
}

const General kGeneral[] = {
    {"Name", [](const Node& n) { return std::string(n.Name()); }},
    {"NameSpace",
     [](const Node& n) {
         return std::string(n.Record().nameSpace == Standard ? "Standard" : "Custom");
     }},
    {"NodeType",
     [](const Node& n) { return std::string(kKindNames[static_cast<size_t>(n.Record().kind)]); }},
    {"DeviceName", [](const Node& n) { return std::string(n.Node::GetDeviceName().c_str()); }},
    {"IsFeature", [](const Node& n) { return std::string(YesNo(n.Record().feature)); }},
    {"ExposeStatic", [](const Node& n) { return std::string(YesNo(n.Record().exposeStatic)); }},
};

// The name tells the formula of one half of a converter from that of the other.
const char* ShownName(NodeKind kind, Element element) {
    const bool isHalf = kind == NodeKind::SwissKnife || kind == NodeKind::IntSwissKnife;
    const bool isFormula = element == Element::FormulaTo || element == Element::FormulaFrom;
    return NameOf(isHalf && isFormula ? Element::Formula : element);
}

// Numbers are formatted anew, whatever their notation in the description.
std::string ShownValue(const Node& node, const Property& property) {
    const Description& description = node.CameraDescription();
    if (IsLink(property.element)) return std::string(description.Name(property.Target()));
    const std::string_view text = description.Text(property.Text());
    const TextType type = ModelFor(ModelOf(node.Record().kind)).texts[KeyOf(property.element)];
    int64_t integer = 0;
    if (type == TextType::Integer && Parse(text, integer)) return std::to_string(integer);
    double number = 0;
    if (type != TextType::Float || !Parse(text, number)) return std::string(text);
    std::array<char, 32> shown{};
    std::snprintf(shown.data(), shown.size(), "%g", number);
    return shown.data();
}

// Computed links; a node has such a property only if the list is not empty.
struct Computed {
    const char* name;
    ELinkType link;
};
constexpr Computed kComputed[] = {{"pDependent", ctDependingNodes}, {"pTerminal", ctTerminalNodes}};

}  // namespace

void PropertyNames(const Node& node, GENICAM_NAMESPACE::gcstring_vector& names) {
    for (const General& general : kGeneral)
        names.push_back(general.name);
    std::vector<Element> seen;
    for (const Property& property : node.CameraDescription().Properties(node.Id()))
        if (std::find(seen.begin(), seen.end(), property.element) == seen.end()) {
            seen.push_back(property.element);
            names.push_back(ShownName(node.Record().kind, property.element));
        }
    for (const Computed& computed : kComputed)
        if (!Children(node.CameraDescription(), node.Id(), computed.link).empty())
            names.push_back(computed.name);
}

bool PropertyOf(const Node& node, std::string_view name, gcstring& value, gcstring& attribute) {
    for (const General& general : kGeneral)
        if (name == general.name) {
            value = general.value(node).c_str();
            attribute = "";
            return true;
        }
    const Description& description = node.CameraDescription();
    for (const Computed& computed : kComputed)
        if (name == computed.name) {
            const std::string text =
                Joined(description, Children(description, node.Id(), computed.link));
            value = text.c_str();
            attribute = "";
            return !text.empty();
        }
    std::string values, attributes;
    bool found = false;
    for (const Property& property : description.Properties(node.Id())) {
        if (name != ShownName(node.Record().kind, property.element)) continue;
        if (found) {
            values += '\t';
            attributes += '\t';
        }
        found = true;
        values += ShownValue(node, property);
        attributes += description.Text(property.attribute);
    }
    if (!found) return false;
    value = gcstring(values.data(), values.size());
    attribute = gcstring(attributes.data(), attributes.size());
    return true;
}

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE
