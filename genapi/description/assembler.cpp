#include "genapi/description/assembler.h"

#include <algorithm>
#include <bitset>

namespace GENAPI_NAMESPACE {
namespace Engine {

namespace {

bool has(const std::vector<Property>& properties, Element element) {
    return std::any_of(properties.begin(), properties.end(),
                       [&](const Property& property) { return property.element == element; });
}

using Elements = std::bitset<256>;

Elements elementsOf(const std::vector<Property>& properties) {
    Elements elements;
    for (const Property& property : properties)
        elements.set(static_cast<std::size_t>(property.element));
    return elements;
}

bool isInteger(NodeKind kind) {
    return kind == NodeKind::IntConverter || kind == NodeKind::IntSwissKnife;
}

// The kind of the formula nodes that a node brings along.
NodeKind formulaKind(NodeKind owner) {
    return isInteger(owner) ? NodeKind::IntSwissKnife : NodeKind::SwissKnife;
}

bool isName(Element element) {
    return element == Element::pVariable || element == Element::pExpression;
}

// The elements of a node that has the names and one formula.
std::vector<Property> formulaOf(std::vector<Property> names, Property formula) {
    names.push_back(formula);
    return names;
}

// The names that formulas of a node may use.
std::vector<Property> namesOf(const std::vector<Property>& properties) {
    std::vector<Property> names;
    for (const Property& property : properties)
        if (isName(property.element)) names.push_back(property);
    return names;
}

}  // namespace

NodeId NodeAssembler::mentionJoined(std::string_view prefix, std::string_view owner,
                                    std::string_view glue, std::string_view name) {
    joined_.assign(prefix).append(owner).append(glue).append(name);
    return builder_.mention(joined_);
}

void NodeAssembler::open(OpenNode& node, const OpenNode* parent) {
    const bool isFormula = node.model == modelOf(NodeKind::IntSwissKnife);
    if (node.model == kStructReg || (isFormula && parent && parent->model == kStructReg))
        node.id = kNoNode;
    else if (parent && node.model == modelOf(NodeKind::EnumEntry))
        node.id = mentionJoined("EnumEntry_", parent->name, "_", node.name);
    else if (parent && isFormula)
        node.id = mentionJoined("_", parent->name, "_", node.name);
    else
        node.id = builder_.mention(node.name);
}

void NodeAssembler::close(OpenNode& node, OpenNode* parent) {
    if (node.model == kStructReg) {
        expandStruct(node);
    } else if (node.model == modelOf(NodeKind::StructEntry)) {
        entries_.push_back({node.id, node.nameSpace, node.exposeStatic, node.properties});
    } else if (node.id == kNoNode) {
        parent->properties.push_back(
            {Element::IntSwissKnife, static_cast<std::uint32_t>(formulas_.size()), 0});
        formulas_.push_back({node.name, node.properties});
    } else {
        const bool isEntry = node.model == modelOf(NodeKind::EnumEntry);
        // An entry is known by its Symbolic or else by its name, of which the node's is made.
        const TextRef name = isEntry ? builder_.intern(node.name) : 0;
        if (isEntry && !has(node.properties, Element::Symbolic))
            node.properties.push_back({Element::Symbolic, name, name});
        define(node.id, node.kind(), node.nameSpace, node.exposeStatic, node.properties);
        if (parent)
            parent->properties.push_back(
                {isEntry ? Element::pEnumEntry : Element::IntSwissKnife, node.id, name});
    }
}

void NodeAssembler::addKey(OpenNode& confRom, Element element, std::string_view name, TextRef key) {
    const NodeId id = builder_.mention(name);
    std::vector<Property> properties = {{Element::p1212Parser, confRom.id, 0},
                                        {Element::Key, key, 0}};
    define(id, element == Element::TextDesc ? NodeKind::TextDesc : NodeKind::IntKey, Custom, false,
           properties);
    confRom.properties.push_back({element, id, 0});
}

void NodeAssembler::define(NodeId id, NodeKind kind, ENameSpace nameSpace, bool exposeStatic,
                           std::vector<Property>& properties) {
    if (builder_.isDefined(id)) throw DuplicateNode{id};
    expandNames(id, kind, properties);
    if (kind == NodeKind::Converter || kind == NodeKind::IntConverter)
        expandConverter(id, kind, properties);
    builder_.define(id, kind, nameSpace, exposeStatic, {properties.data(), properties.size()});
}

// A constant is a variable of the formula, over a node of its own. Each expression may use the
// expressions before it, and no others.
void NodeAssembler::expandNames(NodeId owner, NodeKind kind, std::vector<Property>& properties) {
    if (!has(properties, Element::Constant) && !has(properties, Element::Expression)) return;
    const std::string ownerName(builder_.name(owner));
    std::vector<Property> names;
    for (Property& property : properties) {
        if (property.element == Element::Constant || property.element == Element::Expression)
            expandName(ownerName, kind, names, property);
        if (isName(property.element)) names.push_back(property);
    }
}

void NodeAssembler::expandName(const std::string& owner, NodeKind kind,
                               const std::vector<Property>& names, Property& property) {
    const std::string name(builder_.text(property.attribute));
    const NodeId id = mentionJoined("_", owner, "_", name);
    if (property.element == Element::Constant) {
        std::vector<Property> own = {{Element::Value, property.value, 0}};
        define(id, isInteger(kind) ? NodeKind::Integer : NodeKind::Float, Custom, false, own);
        property.element = Element::pVariable;
    } else {
        std::vector<Property> own = formulaOf(names, {Element::Formula, property.value, 0});
        define(id, formulaKind(kind), Custom, false, own);
        property.element = Element::pExpression;
    }
    property.value = id;
}

void NodeAssembler::expandConverter(NodeId owner, NodeKind kind,
                                    std::vector<Property>& properties) {
    struct Half {
        Element formula, link;
        const char* suffix;
    };
    static constexpr Half kHalves[] = {
        {Element::FormulaTo, Element::pConvertTo, "_ConvertTo"},
        {Element::FormulaFrom, Element::pConvertFrom, "_ConvertFrom"},
    };
    const std::string ownerName(builder_.name(owner));
    const std::vector<Property> names = namesOf(properties);
    for (const Half& half : kHalves) {
        const auto formula = std::find_if(
            properties.begin(), properties.end(),
            [&](const Property& property) { return property.element == half.formula; });
        const NodeId id = mentionJoined("", ownerName, "", half.suffix);
        std::vector<Property> own = formulaOf(names, *formula);
        define(id, formulaKind(kind), Custom, false, own);
        properties.push_back({half.link, id, 0});
    }
}

void NodeAssembler::expandStruct(const OpenNode& node) {
    std::vector<Property> properties;
    for (Entry& entry : entries_) {
        properties.clear();
        const Elements own = elementsOf(entry.properties);
        for (const Property& property : node.properties)
            if (!own[static_cast<std::size_t>(property.element)])
                inherit(property, entry, properties);
        properties.insert(properties.end(), entry.properties.begin(), entry.properties.end());
        define(entry.id, NodeKind::StructEntry, entry.nameSpace, entry.exposeStatic, properties);
    }
    entries_.clear();
    formulas_.clear();
}

void NodeAssembler::inherit(const Property& property, const Entry& entry,
                            std::vector<Property>& into) {
    into.push_back(property);
    if (property.element != Element::IntSwissKnife) return;
    const AddressFormula& formula = formulas_[property.value];
    const NodeId id = mentionJoined("_", std::string(builder_.name(entry.id)), "_", formula.name);
    std::vector<Property> own = formula.properties;
    define(id, NodeKind::IntSwissKnife, Custom, false, own);
    into.back().value = id;
}

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE
