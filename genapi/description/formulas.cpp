#include "genapi/description/formulas.h"

#include "genapi/description/nodedata.h"

namespace GENAPI_NAMESPACE {
namespace Engine {

namespace {

FormulaSymbols symbolsOf(const Description& description, const FormulaData& data) {
    FormulaSymbols symbols;
    symbols.upperCase = description.info().schemaVersion.Minor == 0;
    for (const FormulaVariable& variable :
         NodeTables::slice(description.tables().variables, data.variables))
        symbols.variables.push_back(description.text(variable.name));
    if (data.input) symbols.variables.push_back(data.input);
    for (const Property& property : description.properties(data.node)) {
        if (property.element == Element::Constant)
            symbols.constants.emplace_back(description.text(property.attribute),
                                           description.text(property.text()));
        else if (property.element == Element::pExpression)
            symbols.expressions.emplace_back(description.text(property.attribute),
                                             description.text(property.node(), Element::Formula));
    }
    return symbols;
}

// The node of one of the expressions that symbolsOf lists.
NodeId expressionNode(const Description& description, NodeId owner, std::uint32_t index) {
    for (const Property& property : description.properties(owner))
        if (property.element == Element::pExpression && index-- == 0) return property.node();
    return owner;
}

std::unique_ptr<const CompiledFormula> compile(const Description& description,
                                               const FormulaData& data) {
    auto compiled = std::make_unique<CompiledFormula>();
    const FormulaSymbols symbols = symbolsOf(description, data);
    const std::string_view text = description.text(data.text);
    try {
        if (data.isInteger)
            compiled->integer = std::make_unique<const Formula<std::int64_t>>(text, symbols);
        else
            compiled->floating = std::make_unique<const Formula<double>>(text, symbols);
    } catch (const FormulaError& error) {
        compiled->error = error.what();
        compiled->faulty = expressionNode(description, data.node, error.expression);
    }
    return compiled;
}

}  // namespace

NodeTables::NodeTables() = default;

NodeTables::~NodeTables() {
    for (std::size_t i = 0; programs && i < formulas.size(); ++i)
        delete programs[i].load(std::memory_order_relaxed);
}

const CompiledFormula& compiledFormula(const Description& description, std::uint32_t formula) {
    const NodeTables& tables = description.tables();
    std::atomic<const CompiledFormula*>& slot = tables.programs[formula];
    if (const CompiledFormula* known = slot.load(std::memory_order_acquire)) return *known;
    auto made = compile(description, tables.formulas[formula]);
    const CompiledFormula* expected = nullptr;
    // Two maps may compile at once; the first result stays.
    if (slot.compare_exchange_strong(expected, made.get(), std::memory_order_acq_rel))
        return *made.release();
    return *expected;
}

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE
