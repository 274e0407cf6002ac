#include "genapi/formula/names.h"

#include <algorithm>
#include <tuple>

namespace GENAPI_NAMESPACE {
namespace Engine {

FormulaNames::FormulaNames(const FormulaSymbols& symbols) {
    symbols_.reserve(symbols.variables.size() + symbols.constants.size() +
                     symbols.expressions.size());
    const auto add = [this](SymbolKind kind, size_t index, std::string_view name) {
        symbols_.push_back({name, kind, static_cast<uint32_t>(index)});
    };
    for (size_t i = 0; i < symbols.variables.size(); ++i)
        add(SymbolKind::Variable, i, symbols.variables[i]);
    for (size_t i = 0; i < symbols.constants.size(); ++i)
        add(SymbolKind::Constant, i, symbols.constants[i].first);
    for (size_t i = 0; i < symbols.expressions.size(); ++i)
        add(SymbolKind::Expression, i, symbols.expressions[i].first);
    std::sort(symbols_.begin(), symbols_.end(), [](const auto& a, const auto& b) {
        return std::tie(a.name, a.kind, a.index) < std::tie(b.name, b.kind, b.index);
    });
}

// Symbols of one name are sorted so that the one that hides the others comes first.
const FormulaSymbol* FormulaNames::Find(std::string_view name, uint32_t expressions) const {
    const auto found = std::lower_bound(
        symbols_.begin(), symbols_.end(), name,
        [](const FormulaSymbol& symbol, std::string_view wanted) { return symbol.name < wanted; });
    if (found == symbols_.end() || found->name != name) return nullptr;
    return found->kind == SymbolKind::Expression && found->index >= expressions ? nullptr : &*found;
}

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE
