#include "genapi/description/assembler.h"

#include <algorithm>
#include <bitset>

#include "genapi/description/faults.h"
#include "genapi/description/numbers.h"

namespace GENAPI_NAMESPACE {
namespace Engine {

namespace {

bool Has(const std::vector<Property>& properties, Element element) {
    return std::any_of(properties.begin(), properties.end(),
                       [&](const Property& property) { return property.element == element; });
}

using Elements = std::bitset<256>;

Elements ElementsOf(const std::vector<Property>& properties) {
    Elements elements;
    for (const Property& property : properties)
        elements.set(static_cast<size_t>(property.element));
    return elements;
}

bool ComputesIntegers(NodeKind kind) {
    return kind == NodeKind::IntConverter || kind == NodeKind::IntSwissKnife;
}

// The kind of the nodes that stand for the formulas of a node.
NodeKind FormulaKind(NodeKind owner) {
    return ComputesIntegers(owner) ? NodeKind::IntSwissKnife : NodeKind::SwissKnife;
}

// Whether the formulas in the address of a register are named after it.
bool NamesItsFormulas(ModelId model) {
    return model == ModelOf(NodeKind::IntReg) || model == ModelOf(NodeKind::MaskedIntReg) ||
           model == ModelOf(NodeKind::FloatReg) || model == ModelOf(NodeKind::Register);
}

bool IsNodeName(std::string_view name) {
    const char first = name.empty() ? '_' : name[0];
    return (first >= 'A' && first <= 'Z') || (first >= 'a' && first <= 'z') ||
           (first >= '0' && first <= '9');
}

bool IsName(Element element) {
    return element == Element::pVariable || element == Element::pExpression;
}

// The elements of a generated node: the names that it may use, and one formula.
std::vector<Property> FormulaOf(std::vector<Property> names, Property formula) {
    names.push_back(formula);
    return names;
}

// The names that formulas of a node may use.
std::vector<Property> NamesOf(const std::vector<Property>& properties) {
    std::vector<Property> names;
    for (const Property& property : properties)
        if (IsName(property.element)) names.push_back(property);
    return names;
}

}  // namespace

NodeId NodeAssembler::MentionJoined(std::string_view prefix, std::string_view owner,
                                    std::string_view glue, std::string_view name) {
    joined_.assign(prefix).append(owner).append(glue).append(name);
    return builder_.Mention(joined_);
}

void NodeAssembler::Open(OpenNode& node, const OpenNode* parent) {
    if (node.model == kStructReg) return;
    if (parent && node.model == ModelOf(NodeKind::EnumEntry)) {
        node.id = MentionJoined("EnumEntry_", parent->name, "_", node.name);
    } else if (parent && node.model == ModelOf(NodeKind::IntSwissKnife) &&
               NamesItsFormulas(parent->model)) {
        node.id = MentionJoined("_", parent->name, "_", node.name);
    } else {
        if (!IsNodeName(node.name)) throw NodeFault{"Invalid node name '" + node.name + "'"};
        node.id = builder_.Mention(node.name);
    }
}

void NodeAssembler::Close(OpenNode& node, OpenNode* parent) {
    if (node.model == kStructReg) return ExpandStruct(node);
    if (node.model == ModelOf(NodeKind::StructEntry)) {
        if (builder_.IsDefined(node.id)) throw DuplicateNode{node.id};
        entries_.push_back({node.id, node.nameSpace, node.exposeStatic, node.properties});
        return;
    }
    const bool isEntry = node.model == ModelOf(NodeKind::EnumEntry);
    if (isEntry) NameEntry(node);
    if (isEntry && !parent) {
        standalone_.push_back({node.id, node.nameSpace, node.exposeStatic, node.properties});
        return;
    }
    Define(node.id, node.Kind(), node.nameSpace, node.exposeStatic, node.properties);
    if (isEntry)
        parent->properties.push_back({Element::pEnumEntry, node.id, builder_.Intern(node.name)});
    else if (parent)
        parent->properties.push_back({Element::pAddress, node.id, 0});
}

// The node of an entry is named after its Symbolic; without one, after its name. An empty Symbolic
// counts as absent.
void NodeAssembler::NameEntry(OpenNode& entry) {
    for (Property& property : entry.properties)
        if (property.element == Element::Symbolic) {
            if (property.value == 0) property.value = builder_.NameOf(entry.id);
            return;
        }
    const TextRef name = builder_.Intern(entry.name);
    entry.properties.push_back({Element::Symbolic, name, name});
}

// Schema 1.0 allows entries outside enumerations. They have no meaning, so they become nodes only
// if their names are still free.
void NodeAssembler::Finish() {
    for (Entry& entry : standalone_)
        if (!builder_.IsDefined(entry.id))
            Define(entry.id, NodeKind::EnumEntry, entry.nameSpace, entry.exposeStatic,
                   entry.properties);
}

void NodeAssembler::AddKey(OpenNode& confRom, Element element, std::string_view name, TextRef key) {
    const NodeId id = builder_.Mention(name);
    std::vector<Property> properties = {{Element::p1212Parser, confRom.id, 0},
                                        {Element::Key, key, 0}};
    Define(id, element == Element::TextDesc ? NodeKind::TextDesc : NodeKind::IntKey, Custom, false,
           properties);
    confRom.properties.push_back({element, id, 0});
}

void NodeAssembler::Define(NodeId id, NodeKind kind, ENameSpace nameSpace, bool exposeStatic,
                           std::vector<Property>& properties) {
    if (builder_.IsDefined(id)) throw DuplicateNode{id};
    ExpandNames(id, kind, properties);
    if (kind == NodeKind::Converter || kind == NodeKind::IntConverter)
        ExpandConverter(id, kind, properties);
    builder_.Define(id, kind, nameSpace, exposeStatic, {properties.data(), properties.size()});
}

// A constant becomes a node of its own, which the formula reads as a variable. An expression may
// use the expressions before it, and no others.
void NodeAssembler::ExpandNames(NodeId owner, NodeKind kind, std::vector<Property>& properties) {
    if (!Has(properties, Element::Constant) && !Has(properties, Element::Expression)) return;
    const std::string ownerName(builder_.Name(owner));
    std::vector<Property> names;
    for (Property& property : properties) {
        if (property.element == Element::Constant || property.element == Element::Expression)
            ExpandName(ownerName, kind, names, property);
        if (IsName(property.element)) names.push_back(property);
    }
}

void NodeAssembler::ExpandName(const std::string& owner, NodeKind kind,
                               const std::vector<Property>& names, Property& property) {
    const std::string name(builder_.Text(property.attribute));
    const NodeId id = MentionJoined("_", owner, "_", name);
    if (property.element == Element::Constant) {
        if (ComputesIntegers(kind)) IntegerOf(builder_.Text(property.Text()), Element::Constant);
        std::vector<Property> own = {{Element::Value, property.value, 0}};
        Define(id, ComputesIntegers(kind) ? NodeKind::Integer : NodeKind::Float, Custom, false,
               own);
        property.element = Element::pVariable;
    } else {
        std::vector<Property> own = FormulaOf(names, {Element::Formula, property.value, 0});
        Define(id, FormulaKind(kind), Custom, false, own);
        property.element = Element::pExpression;
    }
    property.value = id;
}

void NodeAssembler::ExpandConverter(NodeId owner, NodeKind kind,
                                    std::vector<Property>& properties) {
    struct Half {
        Element formula, link;
        const char* suffix;
    };
    static constexpr Half kHalves[] = {
        {Element::FormulaTo, Element::pConvertTo, "_ConvertTo"},
        {Element::FormulaFrom, Element::pConvertFrom, "_ConvertFrom"},
    };
    const std::string ownerName(builder_.Name(owner));
    const std::vector<Property> names = NamesOf(properties);
    for (const Half& half : kHalves) {
        const auto formula = std::find_if(
            properties.begin(), properties.end(),
            [&](const Property& property) { return property.element == half.formula; });
        const NodeId id = MentionJoined("", ownerName, "", half.suffix);
        std::vector<Property> own = FormulaOf(names, *formula);
        Define(id, FormulaKind(kind), Custom, false, own);
        properties.push_back({half.link, id, 0});
    }
}

void NodeAssembler::ExpandStruct(const OpenNode& node) {
    for (Entry& entry : entries_) {
        const Elements own = ElementsOf(entry.properties);
        for (const Property& property : node.properties)
            if (!own[static_cast<size_t>(property.element)]) entry.properties.push_back(property);
        Define(entry.id, NodeKind::StructEntry, entry.nameSpace, entry.exposeStatic,
               entry.properties);
    }
    entries_.clear();
}

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE
