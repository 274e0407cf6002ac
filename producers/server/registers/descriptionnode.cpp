#include "producers/server/registers/descriptionnode.h"

#include <algorithm>
#include <map>
#include <optional>
#include <stdexcept>

namespace ZelCti {

namespace {

using Grammar = std::map<std::string_view, std::string>;

// The elements of each kind of node in the order of GenApi 1.1, with blanks around each.
Grammar MakeGrammar() {
    const std::string common =
        " ToolTip Description DisplayName Visibility DocuURL IsDeprecated EventID pIsImplemented "
        "pIsAvailable pIsLocked pBlockPolling ImposedAccessMode pError pAlias pCastAlias ";
    const std::string node = common + "pInvalidator ";
    const std::string reg = common +
                            "Streamable Address IntSwissKnife pAddress pIndex Length pLength "
                            "AccessMode pPort Cachable PollingTime pInvalidator ";
    const std::string limits = "Min pMin Max pMax Inc pInc Unit Representation ";
    const std::string floatDisplay = "DisplayNotation DisplayPrecision ";
    const std::string bits = "Bit LSB MSB Sign ";
    const std::string names = "Streamable pVariable Constant Expression ";
    return {
        {"Category", node + "pFeature "},
        {"Port", node + "ChunkID pChunkID SwapEndianess CacheChunkData "},
        {"Integer", node + "Streamable Value pValue " + limits + "ValidValueSet pSelected "},
        {"Float", node + "Streamable Value pValue " + limits + floatDisplay},
        {"Boolean", node + "Streamable Value pValue OnValue OffValue pSelected "},
        {"String", node + "Streamable Value pValue "},
        {"Command", node + "Value pValue CommandValue pCommandValue PollingTime "},
        {"Enumeration", node + "Streamable EnumEntry Value pValue pSelected PollingTime "},
        {"EnumEntry", node + "Value NumericValue Symbolic IsSelfClearing "},
        {"Register", reg},
        {"StringReg", reg},
        {"IntReg", reg + "Sign Endianess Unit Representation pSelected "},
        {"MaskedIntReg", reg + bits + "Endianess Unit Representation pSelected "},
        {"FloatReg", reg + "Endianess Unit Representation " + floatDisplay},
        {"StructReg", reg + "Endianess StructEntry "},
        {"StructEntry", node + "AccessMode Cachable PollingTime Streamable " + bits +
                            "Unit Representation pSelected "},
        {"Converter", node + names + "FormulaTo FormulaFrom pValue Unit Representation " +
                          floatDisplay + "Slope IsLinear "},
        {"IntConverter", node + names + "FormulaTo FormulaFrom pValue Unit Representation Slope "},
        {"SwissKnife", node + names + "Formula Unit Representation " + floatDisplay},
        {"IntSwissKnife", node + names + "Formula Unit Representation "},
    };
}

// The place of an element in nodes of a kind; none when they have no such element.
std::optional<size_t> SchemaPlace(std::string_view kind, std::string_view element) {
    static const Grammar kGrammar = MakeGrammar();
    const auto found = kGrammar.find(kind);
    if (found == kGrammar.end()) return {};
    const std::string& order = found->second;
    size_t place = order.find(element);
    while (place != std::string::npos &&
           (order[place - 1] != ' ' || order[place + element.size()] != ' '))
        place = order.find(element, place + 1);
    if (place == std::string::npos) return {};
    return place;
}

}  // namespace

void DescriptionNode::Add(DescriptionNode element) {
    const std::optional<size_t> found = SchemaPlace(kind, element.kind);
    if (!found) {
        throw std::logic_error(attribute.second + ": no " + std::string(element.kind) +
                               " in a node of the kind " + std::string(kind));
    }
    element.place = *found;
    const auto behind = std::upper_bound(
        elements.begin(), elements.end(), element.place,
        [](size_t wanted, const DescriptionNode& other) { return wanted < other.place; });
    elements.insert(behind, std::move(element));
}

bool DescriptionNode::Has(std::string_view element) const {
    return std::any_of(elements.begin(), elements.end(),
                       [&](const DescriptionNode& child) { return child.kind == element; });
}

bool IsRegisterKind(std::string_view kind) {
    constexpr std::string_view kSuffix = "Reg";
    return kind == "Register" ||
           (kind.size() > kSuffix.size() && kind.substr(kind.size() - kSuffix.size()) == kSuffix);
}

void AppendXml(const DescriptionNode& node, size_t depth, std::string& out) {
    const std::string indent(2 * depth, ' ');
    out.append(indent).append("<").append(node.kind);
    if (const auto& [name, value] = node.attribute; !name.empty()) {
        out.append(" ").append(name).append("=\"");
        AppendXml(value, out);
        out += '"';
    }
    out += '>';
    AppendXml(node.text, out);
    if (!node.elements.empty()) {
        out += '\n';
        for (const DescriptionNode& element : node.elements)
            AppendXml(element, depth + 1, out);
        out += indent;
    }
    out.append("</").append(node.kind).append(">\n");
}

void AppendXml(std::string_view text, std::string& out) {
    for (const char c : text) {
        switch (c) {
            case '&':
                out += "&amp;";
                break;
            case '<':
                out += "&lt;";
                break;
            case '>':
                out += "&gt;";
                break;
            case '"':
                out += "&quot;";
                break;
            default:
                out += c;
        }
    }
}

}  // namespace ZelCti
