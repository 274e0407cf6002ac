// The formula language of descriptions: compiled once to a flat program, evaluated over int64 or
// double.
//
// The language has no branches: both sides of a logical operator and both arms of "? :" are always
// computed. So a formula is a straight line of operations between registers, and an expression that
// it uses by name is computed where it is first used and kept for later uses.
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

// what() is the reason as exceptions of nodes quote it.
class FormulaError : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;

    // The expression that the fault lies in, by its number; none where it is the formula itself.
    static constexpr uint32_t kFormulaItself = 0xFFFFFFFF;
    uint32_t expression = kFormulaItself;
};

// The names that a formula may use. Variables are given to evaluate in this order; an expression
// may use the expressions before it. Of two with one name, a variable hides a constant, and that an
// expression; within one list the first counts. In formulas with fractions PI, E and functions, in
// any case, hide all of these.
struct FormulaSymbols {
    std::vector<std::string_view> variables;
    std::vector<std::pair<std::string_view, std::string_view>> constants;    // name, text
    std::vector<std::pair<std::string_view, std::string_view>> expressions;  // name, text
    // Whether formulas, but not the names above, are turned to upper case: a formula finds the name
    // "A" as "a". What it does not find so it finds as it stands.
    bool upperCase = false;
};

// Immutable; evaluate is thread-safe and allocates nothing. The number is int64_t or double.
template <typename Number>
class Formula {
  public:
    // FormulaError when the text is no formula over these names. Neither is referred to later.
    Formula(std::string_view text, const FormulaSymbols& symbols);

    // FormulaError when a step has no result.
    Number Evaluate(const Number* variables) const;

    // What evaluate has to do.
    size_t OperationCount() const { return program_.operations.size(); }

  private:
    FormulaProgram<Number> program_;
};

extern template class Formula<int64_t>;
extern template class Formula<double>;

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE
