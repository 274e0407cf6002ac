// The formula language of descriptions: compiled once into a flat program, evaluated over int64_t
// or double.
//
// The language has no branches: both sides of a logical operator and both arms of "? :" are always
// computed. A formula is therefore a straight line of operations between registers. An expression
// that the formula uses by name is computed at its first use and kept for later uses.
//
//     text --tokens--> parser --program--> Formula --evaluate(values of the variables)--> number
#pragma once

#include <cstddef>
#include <cstdint>
#include <stdexcept>
#include <string_view>
#include <utility>
#include <vector>

#include <GenApi/GenApiNamespace.h>

#include "genapi/formula/program.h"

namespace GENAPI_NAMESPACE {
namespace Engine {

// what() is the reason, in the words that exceptions of nodes quote.
class FormulaError : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;

    // The number of the expression at fault, or kFormulaItself.
    static constexpr uint32_t kFormulaItself = 0xFFFFFFFF;
    uint32_t expression = kFormulaItself;
};

// The names that a formula may use. Evaluate takes the variables in this order. An expression may
// use the expressions before it. If a name occurs in several lists, variables hide constants, and
// constants hide expressions; within a list, the first one counts. In formulas with fractions, PI,
// E and the functions, in upper or lower case, hide all of these.
struct FormulaSymbols {
    std::vector<std::string_view> variables;
    std::vector<std::pair<std::string_view, std::string_view>> constants;    // name, text
    std::vector<std::pair<std::string_view, std::string_view>> expressions;  // name, text
    // Whether to look up the names in a formula in upper case first: "a" in a formula then finds
    // the name "A". Names that are not found so are looked up as written.
    bool upperCase = false;
};

// Immutable. Evaluate is thread-safe and does not allocate. The number is int64_t or double.
template <typename Number>
class Formula {
  public:
    // FormulaError when the text is not a formula over these names. The object keeps no reference
    // to either.
    Formula(std::string_view text, const FormulaSymbols& symbols);

    // FormulaError when a step has no result.
    Number Evaluate(const Number* variables) const;

    // The number of operations of one evaluation.
    size_t OperationCount() const { return program_.operations.size(); }

  private:
    FormulaProgram<Number> program_;
};

extern template class Formula<int64_t>;
extern template class Formula<double>;

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE
