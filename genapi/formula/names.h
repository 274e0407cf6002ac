// Looks up the names in a formula.
#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "genapi/formula/formula.h"

namespace GENAPI_NAMESPACE {
namespace Engine {

enum class SymbolKind : uint8_t { Variable, Constant, Expression };

struct FormulaSymbol {
    std::string_view name;
    SymbolKind kind;
    uint32_t index;  // in its list
};

// Sorted, so that a long formula with many names does not cost their product. Refers to the texts
// of the symbols.
class FormulaNames {
  public:
    explicit FormulaNames(const FormulaSymbols& symbols);

    // Null when there is no such name. Ignores the given expression and those after it.
    const FormulaSymbol* Find(std::string_view name, uint32_t expressions) const;

  private:
    std::vector<FormulaSymbol> symbols_;
};

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE
