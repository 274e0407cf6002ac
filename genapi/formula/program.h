// The compiled form of a formula.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include <GenApi/GenApiNamespace.h>

namespace GENAPI_NAMESPACE {
namespace Engine {

// Bounds on the stack and time of a hostile formula; a formula beyond them is invalid.

// Nested brackets, signs and expressions: each costs some stack frames of the parser.
constexpr size_t kMaxFormulaNesting = 200;

// Values that wait for their operator. A chain of "? :" needs two for each link, and descriptions
// use such chains to choose among dozens of values. The registers take 8 KB of the stack of
// Evaluate, but it touches only those in use.
constexpr uint32_t kMaxWaitingValues = 960;

// Expressions whose values are kept. Expressions that are only a name or a number need no place.
constexpr uint32_t kMaxKeptValues = 64;

// Bounds the time of one evaluation: less than a millisecond, except for functions like SIN.
constexpr size_t kMaxFormulaOperations = 1 << 16;

constexpr uint32_t kFormulaRegisters = kMaxKeptValues + kMaxWaitingValues;

enum class FormulaOp : uint8_t {
    // one operand
    Negate,
    Complement,
    Sgn,
    Abs,
    Sqrt,
    Exp,
    Ln,
    Lg,
    Sin,
    Cos,
    Tan,
    Asin,
    Acos,
    Atan,
    Trunc,
    Floor,
    Ceil,
    Round,
    // two operands
    Power,
    ShiftLeft,
    ShiftRight,
    And,
    Xor,
    Or,
    Multiply,
    Divide,
    Modulo,
    Add,
    Subtract,
    Less,
    LessEqual,
    Greater,
    GreaterEqual,
    Equal,
    NotEqual,
    LogicalAnd,
    LogicalOr,
    RoundDigits,
    // three operands
    Select,
};

enum class FormulaArea : uint8_t { Constant, Variable, Register };
constexpr size_t kFormulaAreas = 3;

// The place of an operand: an index into one of the areas.
class FormulaOperand {
  public:
    constexpr FormulaOperand() = default;
    constexpr FormulaOperand(FormulaArea area, uint32_t index)
        : code_(index << 2 | static_cast<uint32_t>(area)) {}

    constexpr uint32_t Index() const { return code_ >> 2; }
    constexpr FormulaArea Area() const { return static_cast<FormulaArea>(code_ & 3); }

    template <typename Number>
    Number In(const Number* const (&areas)[kFormulaAreas]) const {
        return areas[code_ & 3][Index()];
    }

  private:
    uint32_t code_ = 0;
};

// Unused operands repeat the first one, so that reading them is safe.
struct FormulaOperation {
    FormulaOp op;
    uint16_t target;  // the register of the result
    FormulaOperand operands[3];
};

template <typename Number>
struct FormulaProgram {
    std::vector<FormulaOperation> operations;
    std::vector<Number> constants;
    FormulaOperand result;
    const char* failure = nullptr;  // why evaluation always fails
};

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE
