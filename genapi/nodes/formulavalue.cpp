#include "genapi/nodes/formulavalue.h"

#include <array>
#include <cmath>
#include <type_traits>

#include "genapi/description/formulas.h"
#include "genapi/nodes/enumerationnode.h"
#include "genapi/nodes/nodemap.h"
#include "genapi/nodes/rounding.h"

namespace GENAPI_NAMESPACE {
namespace Engine {

namespace {

// How variables of the two evaluators read a node.
template <typename Number>
struct Operand;

template <>
struct Operand<std::int64_t> {
    static std::int64_t value(Node& node, ReadOptions options) { return node.getInt(options); }
    static std::int64_t min(Node& node) { return node.minInt(); }
    static std::int64_t max(Node& node) { return node.maxInt(); }
    // A float's own increment, rounded; integers never see a float's as 1 here.
    static std::int64_t inc(Node& node) {
        return node.hasInc() ? roundToInt(node.incFloat()) : node.incInt();
    }
    static const Formula<std::int64_t>& program(const CompiledFormula& compiled) {
        return *compiled.integer;
    }
};

template <>
struct Operand<double> {
    static double value(Node& node, ReadOptions options) { return node.getFloat(options); }
    static double min(Node& node) { return node.minFloat(); }
    static double max(Node& node) { return node.maxFloat(); }
    static double inc(Node& node) { return node.incFloat(); }
    static const Formula<double>& program(const CompiledFormula& compiled) {
        return *compiled.floating;
    }
};

std::int64_t entryValue(Node& owner, const FormulaVariable& variable) {
    const std::string_view symbolic = owner.description().text(variable.suffix);
    Node& node = owner.node(variable.node);
    const auto* enumeration = dynamic_cast<EnumerationNode*>(&node);
    if (enumeration) enumeration->spendSearch();
    const EnumEntryNode* entry = enumeration ? enumeration->entryOf(symbolic) : nullptr;
    const char* const name = owner.description().text(variable.name).data();
    if (!enumeration)
        throw NODE_ERROR(RuntimeException, owner)("Variable '%s' does not point to enumeration",
                                                  name);
    if (!entry)
        throw NODE_ERROR(RuntimeException, owner)("Variable '%s' does not point to EnumEntry '%s'",
                                                  name, symbolic.data());
    return entry->data().value;
}

// The integer or the numeric value of the current entry, without which there is no value.
template <typename Number>
Number entryNumber(Node& owner, EnumerationNode& node, ReadOptions options) {
    const std::int64_t value = node.getInt(options);
    node.spendSearch();
    const EnumEntryNode* const entry = node.entryOf(value);
    if (!entry) throw NODE_ERROR(LogicalErrorException, owner)("NULL pointer dereferenced");
    if constexpr (std::is_integral_v<Number>)
        return value;
    else
        return entry->data().numeric;
}

template <typename Number>
Number operand(Node& owner, const FormulaVariable& variable, ReadOptions options) {
    Node& node = owner.node(variable.node);
    switch (variable.form) {
        case VariableForm::Value:
            if (node.record().kind == NodeKind::Enumeration)
                return entryNumber<Number>(owner, static_cast<EnumerationNode&>(node), options);
            return Operand<Number>::value(node, options);
        case VariableForm::Min:
            return Operand<Number>::min(node);
        case VariableForm::Max:
            return Operand<Number>::max(node);
        case VariableForm::Inc:
            return Operand<Number>::inc(node);
        case VariableForm::AccessMode:
            return static_cast<Number>(node.accessMode());
        case VariableForm::Visibility:
            return static_cast<Number>(node.GetVisibility());
        case VariableForm::CachingMode:
            return static_cast<Number>(node.GetCachingMode());
        case VariableForm::Entry:
            return static_cast<Number>(entryValue(owner, variable));
        case VariableForm::Unknown:
            break;
    }
    throw NODE_ERROR(RuntimeException, owner)("Invalid Extension %s",
                                              owner.description().text(variable.suffix).data());
}

const CompiledFormula& compiledOrThrow(Node& owner, std::uint32_t formula) {
    const CompiledFormula& compiled = compiledFormula(owner.description(), formula);
    if (compiled.error.empty()) return compiled;
    const Description& description = owner.description();
    const FormulaData& data = description.tables().formulas[formula];
    const bool itself = compiled.faulty == data.node;
    throw NODE_ERROR(LogicalErrorException, owner)(
        "%s : Failed to parse formula '%s' : error message is '%s'",
        description.name(itself ? owner.id() : compiled.faulty).data(),
        (itself ? description.text(data.text) : description.text(compiled.faulty, Element::Formula))
            .data(),
        compiled.error.c_str());
}

}  // namespace

template <typename Number>
Number evaluate(Node& owner, std::uint32_t formula, ReadOptions options, Number input) {
    const NodeTables& tables = owner.description().tables();
    const FormulaData& data = tables.formulas[formula];
    const auto variables = NodeTables::slice(tables.variables, data.variables);
    // Most formulas have few variables; those live on the stack.
    std::array<Number, 16> few;
    std::vector<Number> many;
    Number* values = few.data();
    if (variables.size() + 1 > few.size()) {
        many.resize(variables.size() + 1);
        values = many.data();
    }
    for (std::size_t i = 0; i < variables.size(); ++i)
        values[i] = operand<Number>(owner, variables[i], options);
    values[variables.size()] = input;
    const Formula<Number>& program = Operand<Number>::program(compiledOrThrow(owner, formula));
    owner.map().spend(program.operationCount() / kFormulaOperationsPerWork, owner);
    try {
        return program.evaluate(values);
    } catch (const FormulaError& error) {
        throw NODE_ERROR(LogicalErrorException, owner)(
            "%s : Failed to evaluate formula '%s' : error message is '%s'", owner.name().data(),
            owner.description().text(data.text).data(), error.what());
    }
}

template std::int64_t evaluate(Node&, std::uint32_t, ReadOptions, std::int64_t);
template double evaluate(Node&, std::uint32_t, ReadOptions, double);

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE
