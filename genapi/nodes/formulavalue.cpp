#include "genapi/nodes/formulavalue.h"

#include <array>
#include <cmath>
#include <type_traits>

#include "genapi/description/formulas.h"
#include "genapi/nodes/enumerationnode.h"
#include "genapi/nodes/nodemap.h"
#include "genapi/values/rounding.h"

namespace GENAPI_NAMESPACE {
namespace Engine {

namespace {

// Reads a node for a variable of either evaluator.
template <typename Number>
struct Operand;

template <>
struct Operand<int64_t> {
    static int64_t Value(Node& node, ReadOptions options) { return node.GetInt(options); }
    static int64_t Min(Node& node) { return node.MinInt(); }
    static int64_t Max(Node& node) { return node.MaxInt(); }
    // The node's own increment, rounded for floats. IncInt would be 1 for any float.
    static int64_t Inc(Node& node) {
        return node.HasIncFloat() ? RoundToInt(node.IncFloat()) : node.IncInt();
    }
    static const Formula<int64_t>& Program(const CompiledFormula& compiled) {
        return *compiled.integer;
    }
};

template <>
struct Operand<double> {
    static double Value(Node& node, ReadOptions options) { return node.GetFloat(options); }
    static double Min(Node& node) { return node.MinFloat(); }
    static double Max(Node& node) { return node.MaxFloat(); }
    static double Inc(Node& node) { return node.IncFloat(); }
    static const Formula<double>& Program(const CompiledFormula& compiled) {
        return *compiled.floating;
    }
};

int64_t EntryValue(Node& owner, const FormulaVariable& variable) {
    const std::string_view symbolic = owner.CameraDescription().Text(variable.suffix);
    Node& node = owner.NodeAt(variable.node);
    const char* const name = owner.CameraDescription().Text(variable.name).data();
    if (node.Record().kind != NodeKind::Enumeration)
        throw NODE_ERROR(RuntimeException, owner)("Variable '%s' does not point to enumeration",
                                                  name);
    const auto& enumeration = static_cast<EnumerationNode&>(node);
    enumeration.SpendSearch();
    const EnumEntryNode* entry = enumeration.EntryOf(symbolic);
    if (!entry)
        throw NODE_ERROR(RuntimeException, owner)("Variable '%s' does not point to EnumEntry '%s'",
                                                  name, symbolic.data());
    return entry->Data().value;
}

// The integer or the numeric value of the current entry. An enumeration without a current entry has
// none.
template <typename Number>
Number EntryNumber(Node& owner, EnumerationNode& node, ReadOptions options) {
    const int64_t value = node.GetInt(options);
    node.SpendSearch();
    const EnumEntryNode* const entry = node.EntryOf(value);
    if (!entry) throw NODE_ERROR(LogicalErrorException, owner)("NULL pointer dereferenced");
    if constexpr (std::is_integral_v<Number>)
        return value;
    else
        return entry->Data().numeric;
}

template <typename Number>
Number OperandOf(Node& owner, const FormulaVariable& variable, ReadOptions options) {
    Node& node = owner.NodeAt(variable.node);
    switch (variable.form) {
        case VariableForm::Value:
            if (node.Record().kind == NodeKind::Enumeration)
                return EntryNumber<Number>(owner, static_cast<EnumerationNode&>(node), options);
            return Operand<Number>::Value(node, options);
        case VariableForm::Min:
            return Operand<Number>::Min(node);
        case VariableForm::Max:
            return Operand<Number>::Max(node);
        case VariableForm::Inc:
            return Operand<Number>::Inc(node);
        case VariableForm::AccessMode:
            return static_cast<Number>(node.AccessMode());
        case VariableForm::Visibility:
            return static_cast<Number>(node.GetVisibility());
        case VariableForm::CachingMode:
            return static_cast<Number>(node.GetCachingMode());
        case VariableForm::Entry:
            return static_cast<Number>(EntryValue(owner, variable));
        case VariableForm::Unknown:
            break;
    }
    throw NODE_ERROR(RuntimeException, owner)(
        "Invalid Extension %s", owner.CameraDescription().Text(variable.suffix).data());
}

const CompiledFormula& CompiledOrThrow(Node& owner, uint32_t formula) {
    const CompiledFormula& compiled = ProgramOf(owner.CameraDescription(), formula);
    if (compiled.error.empty()) return compiled;
    const Description& description = owner.CameraDescription();
    const FormulaData& data = description.Tables().formulas[formula];
    const bool itself = compiled.faulty == data.node;
    throw NODE_ERROR(LogicalErrorException, owner)(
        "%s : Failed to parse formula '%s' : error message is '%s'",
        description.Name(itself ? owner.Id() : compiled.faulty).data(),
        (itself ? description.Text(data.text) : description.Text(compiled.faulty, Element::Formula))
            .data(),
        compiled.error.c_str());
}

}  // namespace

template <typename Number>
Number Evaluate(Node& owner, uint32_t formula, ReadOptions options, Number input) {
    const NodeTables& tables = owner.CameraDescription().Tables();
    const FormulaData& data = tables.formulas[formula];
    const auto variables = NodeTables::SliceOf(tables.variables, data.variables);
    // Most formulas have few variables, which fit on the stack.
    std::array<Number, 16> few;
    std::vector<Number> many;
    Number* values = few.data();
    if (variables.size() + 1 > few.size()) {
        many.resize(variables.size() + 1);
        values = many.data();
    }
    for (size_t i = 0; i < variables.size(); ++i)
        values[i] = OperandOf<Number>(owner, variables[i], options);
    values[variables.size()] = input;
    const Formula<Number>& program = Operand<Number>::Program(CompiledOrThrow(owner, formula));
    owner.Map().Spend(program.OperationCount() / kFormulaOperationsPerWork, owner);
    try {
        return program.Evaluate(values);
    } catch (const FormulaError& error) {
        throw NODE_ERROR(LogicalErrorException, owner)(
            "%s : Failed to evaluate formula '%s' : error message is '%s'", owner.Name().data(),
            owner.CameraDescription().Text(data.text).data(), error.what());
    }
}

template int64_t Evaluate(Node&, uint32_t, ReadOptions, int64_t);
template double Evaluate(Node&, uint32_t, ReadOptions, double);

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE
