// The formula language of descriptions: compiled once to a flat program, evaluated over int64 or
// double.
//
// The language has no branches: both sides of a logical operator and both arms of "? :" are always
// computed. So a formula is a straight line of operations over a small stack, and an expression that
// it uses by name is computed where it is first used and kept for later uses.
//
//     text --tokens--> parser --operations--> Formula --evaluate(values of the variables)--> number
#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <GenApi/GenApiNamespace.h>

namespace GENAPI_NAMESPACE {
namespace Engine {

// what() is the reason as exceptions of nodes quote it.
class FormulaError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

// The names that a formula may use. Variables are given to evaluate in this order; an expression
// may use the expressions before it.
struct FormulaSymbols {
    std::vector<std::string_view> variables;
    std::vector<std::pair<std::string_view, std::string_view>> constants;    // name, text
    std::vector<std::pair<std::string_view, std::string_view>> expressions;  // name, text
};

enum class FormulaOp : std::uint8_t {
    // operands
    Constant, Variable, Kept, Keep,
    // one operand
    Negate, Complement, Sgn, Abs, Sqrt, Exp, Ln, Lg, Sin, Cos, Tan, Asin, Acos, Atan, Trunc, Floor,
    Ceil, Round,
    // two operands
    Power, ShiftLeft, ShiftRight, And, Xor, Or, Multiply, Divide, Modulo, Add, Subtract, Less,
    LessEqual, Greater, GreaterEqual, Equal, NotEqual, LogicalAnd, LogicalOr, RoundDigits,
    // three operands
    Select,
};

// Immutable; evaluate is thread-safe and allocates nothing.
template <typename Number>
class Formula {
public:
    // FormulaError when the text is no formula over these names.
    Formula(std::string_view text, const FormulaSymbols& symbols);

    // FormulaError when a step has no result.
    Number evaluate(const Number* variables) const;

    struct Operation {
        FormulaOp op;
        std::uint32_t index;  // of a variable or kept expression
        Number constant;
    };

private:
    std::vector<Operation> program_;
};

extern template class Formula<std::int64_t>;
extern template class Formula<double>;

// Bounds, so that a hostile formula costs neither stack nor time without end.
constexpr std::size_t kMaxFormulaStack = 64;        // operands waiting at once
constexpr std::size_t kMaxKeptExpressions = 64;     // expressions that a formula uses
constexpr std::size_t kMaxFormulaNesting = 200;     // brackets, signs and nested arms
constexpr std::size_t kMaxFormulaOperations = 1 << 16;

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE
