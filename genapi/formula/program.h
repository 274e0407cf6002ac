// What a formula is compiled to.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include <GenApi/GenApiNamespace.h>

namespace GENAPI_NAMESPACE {
namespace Engine {

// Bounds, so that a hostile formula costs neither stack nor time without end; one that exceeds them
// is invalid.

// Brackets, signs and expressions inside each other: each costs some frames of the parser.
constexpr size_t kMaxFormulaNesting = 200;

// Values that wait for their operator. A chain of "? :" needs two for each link, and descriptions
// choose among dozens of values in that way. Registers live on the stack of evaluate: 8 KB of it,
// of which only those in use are touched.
constexpr uint32_t kMaxWaitingValues = 960;

// Expressions whose values are kept; those that are no more than a name or number need no place.
constexpr uint32_t kMaxKeptValues = 64;

// The time of one evaluation: below a millisecond, unless in functions like SIN.
constexpr size_t kMaxFormulaOperations = 1 << 16;

constexpr uint32_t kFormulaRegisters = kMaxKeptValues + kMaxWaitingValues;

enum class FormulaOp : uint8_t {
    // of one operand
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
    // of two
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
    // of three
    Select,
};

enum class FormulaArea : uint8_t { Constant, Variable, Register };
constexpr size_t kFormulaAreas = 3;

// Where an operand is found: a place in one of the areas.
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

// Operands that an operation does not have repeat its first one, so that reading them is safe.
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
    const char* failure = nullptr;  // why it has no result, whatever the variables
};

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE
