#include "genapi/description/formulas.h"

#include "genapi/description/nodedata.h"

namespace GENAPI_NAMESPACE {
namespace Engine {

namespace {

FormulaSymbols SymbolsOf(const Description& description, const FormulaData& data) {
    FormulaSymbols symbols;
    symbols.upperCase = description.Info().schemaVersion.Minor == 0;
    for (const FormulaVariable& variable :
         NodeTables::SliceOf(description.Tables().variables, data.variables))
        symbols.variables.push_back(description.Text(variable.name));
    if (data.input) symbols.variables.push_back(data.input);
    for (const Property& property : description.Properties(data.node)) {
        if (property.element == Element::Constant)
            symbols.constants.emplace_back(description.Text(property.attribute),
                                           description.Text(property.Text()));
        else if (property.element == Element::pExpression)
            symbols.expressions.emplace_back(description.Text(property.attribute),
                                             description.Text(property.Target(), Element::Formula));
    }
    return symbols;
}

// The node of one of the expressions that SymbolsOf lists.
NodeId ExpressionNode(const Description& description, NodeId owner, uint32_t index) {
    for (const Property& property : description.Properties(owner))
        if (property.element == Element::pExpression && index-- == 0) return property.Target();
    return owner;
}

std::unique_ptr<const CompiledFormula> Compile(const Description& description,
                                               const FormulaData& data) {
    auto compiled = std::make_unique<CompiledFormula>();
    const FormulaSymbols symbols = SymbolsOf(description, data);
    const std::string_view text = description.Text(data.text);
    try {
        if (data.isInteger)
            compiled->integer = std::make_unique<const Formula<int64_t>>(text, symbols);
        else
            compiled->floating = std::make_unique<const Formula<double>>(text, symbols);
    } catch (const FormulaError& error) {
        compiled->error = error.what();
        compiled->faulty = ExpressionNode(description, data.node, error.expression);
    }
    return compiled;
}

}  // namespace

NodeTables::NodeTables() = default;

NodeTables::~NodeTables() {
    for (size_t i = 0; programs && i < formulas.size(); ++i)
        delete programs[i].load(std::memory_order_relaxed);
}

const CompiledFormula& ProgramOf(const Description& description, uint32_t formula) {
    const NodeTables& tables = description.Tables();
    std::atomic<const CompiledFormula*>& slot = tables.programs[formula];
    if (const CompiledFormula* known = slot.load(std::memory_order_acquire)) return *known;
    auto made = Compile(description, tables.formulas[formula]);
    const CompiledFormula* expected = nullptr;
    // Two maps may compile at once; both use the first result.
    if (slot.compare_exchange_strong(expected, made.get(), std::memory_order_acq_rel))
        return *made.release();
    return *expected;
}

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE
