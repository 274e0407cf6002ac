#include "producers/server/registers/descriptionnode.h"

#include <algorithm>
#include <map>
#include <optional>
#include <stdexcept>
#include <unordered_map>

namespace ZelCti {

namespace {

constexpr size_t kUsualElements = 8;

// By kind of node, the place of each element in nodes of this kind.
using Places = std::unordered_map<std::string_view, size_t>;
using Grammar = std::unordered_map<std::string_view, Places>;

// The elements of each kind of node in the order of GenApi 1.1.
std::map<std::string_view, std::string> Elements() {
    const std::string common =
        "ToolTip Description DisplayName Visibility DocuURL IsDeprecated EventID pIsImplemented "
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

Grammar MakeGrammar() {
    static const std::map<std::string_view, std::string> kElements = Elements();
    Grammar grammar;
    for (const auto& [kind, elements] : kElements) {
        std::string_view rest = elements;
        Places& places = grammar[kind];
        for (size_t end = rest.find(' '); end != std::string_view::npos; end = rest.find(' ')) {
            places.emplace(rest.substr(0, end), places.size());
            rest.remove_prefix(end + 1);
        }
    }
    return grammar;
}

// The place of an element in nodes of a kind; none when they have no such element.
std::optional<size_t> SchemaPlace(std::string_view kind, std::string_view element) {
    static const Grammar kGrammar = MakeGrammar();
    const auto places = kGrammar.find(kind);
    if (places == kGrammar.end()) return {};
    const auto found = places->second.find(element);
    if (found == places->second.end()) return {};
    return found->second;
}

// What XML has in place of a character that it reserves; null for others.
const char* EscapeOf(char c) {
    switch (c) {
        case '&':
            return "&amp;";
        case '<':
            return "&lt;";
        case '>':
            return "&gt;";
        case '"':
            return "&quot;";
        default:
            return nullptr;
    }
}

}  // namespace

void DescriptionNode::Add(DescriptionNode element) {
    const std::optional<size_t> found = SchemaPlace(kind, element.kind);
    if (!found) {
        throw std::logic_error(attribute.second + ": no " + std::string(element.kind) +
                               " in a node of the kind " + std::string(kind));
    }
    element.place = *found;
    if (elements.empty()) elements.reserve(kUsualElements);
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
    out.append(2 * depth, ' ').append("<").append(node.kind);
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
        out.append(2 * depth, ' ');
    }
    out.append("</").append(node.kind).append(">\n");
}

void AppendXml(std::string_view text, std::string& out) {
    size_t done = 0;
    for (size_t i = 0; i < text.size(); ++i) {
        const char* const escaped = EscapeOf(text[i]);
        if (escaped == nullptr) continue;
        out.append(text.substr(done, i - done)).append(escaped);
        done = i + 1;
    }
    out.append(text.substr(done));
}

}  // namespace ZelCti
