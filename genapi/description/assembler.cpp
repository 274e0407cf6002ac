#include "genapi/description/assembler.h"

#include <algorithm>
#include <bitset>

#include "genapi/description/faults.h"
#include "genapi/description/numbers.h"

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

bool computesIntegers(NodeKind kind) {
    return kind == NodeKind::IntConverter || kind == NodeKind::IntSwissKnife;
}

// The kind of the formula nodes that a node brings along.
NodeKind formulaKind(NodeKind owner) {
    return computesIntegers(owner) ? NodeKind::IntSwissKnife : NodeKind::SwissKnife;
}

// Whether the formulas in the address of a register are named after it.
bool namesItsFormulas(ModelId model) {
    return model == modelOf(NodeKind::IntReg) || model == modelOf(NodeKind::MaskedIntReg) ||
           model == modelOf(NodeKind::FloatReg) || model == modelOf(NodeKind::Register);
}

bool isNodeName(std::string_view name) {
    const char first = name.empty() ? '_' : name[0];
    return (first >= 'A' && first <= 'Z') || (first >= 'a' && first <= 'z') ||
           (first >= '0' && first <= '9');
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
    if (node.model == kStructReg) return;
    if (parent && node.model == modelOf(NodeKind::EnumEntry)) {
        node.id = mentionJoined("EnumEntry_", parent->name, "_", node.name);
    } else if (parent && node.model == modelOf(NodeKind::IntSwissKnife) &&
               namesItsFormulas(parent->model)) {
        node.id = mentionJoined("_", parent->name, "_", node.name);
    } else {
        if (!isNodeName(node.name)) throw NodeFault{"Invalid node name '" + node.name + "'"};
        node.id = builder_.mention(node.name);
    }
}

void NodeAssembler::close(OpenNode& node, OpenNode* parent) {
    if (node.model == kStructReg) return expandStruct(node);
    if (node.model == modelOf(NodeKind::StructEntry)) {
        if (builder_.isDefined(node.id)) throw DuplicateNode{node.id};
        entries_.push_back({node.id, node.nameSpace, node.exposeStatic, node.properties});
        return;
    }
    const bool isEntry = node.model == modelOf(NodeKind::EnumEntry);
    if (isEntry) nameEntry(node);
    if (isEntry && !parent) {
        standalone_.push_back({node.id, node.nameSpace, node.exposeStatic, node.properties});
        return;
    }
    define(node.id, node.kind(), node.nameSpace, node.exposeStatic, node.properties);
    if (isEntry)
        parent->properties.push_back({Element::pEnumEntry, node.id, builder_.intern(node.name)});
    else if (parent)
        parent->properties.push_back({Element::pAddress, node.id, 0});
}

// An entry is known by its Symbolic or else by its name, of which the node's is made. Where the
// Symbolic is empty, the name of the node has to do.
void NodeAssembler::nameEntry(OpenNode& entry) {
    for (Property& property : entry.properties)
        if (property.element == Element::Symbolic) {
            if (property.value == 0) property.value = builder_.nameOf(entry.id);
            return;
        }
    const TextRef name = builder_.intern(entry.name);
    entry.properties.push_back({Element::Symbolic, name, name});
}

// Schema 1.0 allows entries outside of enumerations, and they mean nothing: they are nodes only
// where nothing else has their name.
void NodeAssembler::finish() {
    for (Entry& entry : standalone_)
        if (!builder_.isDefined(entry.id))
            define(entry.id, NodeKind::EnumEntry, entry.nameSpace, entry.exposeStatic,
                   entry.properties);
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
        if (computesIntegers(kind)) integerOf(builder_.text(property.text()), Element::Constant);
        std::vector<Property> own = {{Element::Value, property.value, 0}};
        define(id, computesIntegers(kind) ? NodeKind::Integer : NodeKind::Float, Custom, false,
               own);
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
    for (Entry& entry : entries_) {
        const Elements own = elementsOf(entry.properties);
        for (const Property& property : node.properties)
            if (!own[static_cast<std::size_t>(property.element)])
                entry.properties.push_back(property);
        define(entry.id, NodeKind::StructEntry, entry.nameSpace, entry.exposeStatic,
               entry.properties);
    }
    entries_.clear();
}

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE
