// The operations of formulas on numbers, for both evaluators.
#pragma once

#include <cmath>
#include <cstdint>
#include <limits>
#include <type_traits>

#include "genapi/formula/formula.h"

namespace GENAPI_NAMESPACE {
namespace Engine {

[[noreturn]] inline void ThrowInfinity() {
    throw FormulaError("#Infinity somewhere!");
}

inline uint64_t Bits(int64_t value) {
    return static_cast<uint64_t>(value);
}

// Integers wrap around.
class IntegerArithmetic {
  public:
    using Number = int64_t;

    static Number Negate(Number a) { return static_cast<Number>(0 - Bits(a)); }
    static Number Add(Number a, Number b) { return static_cast<Number>(Bits(a) + Bits(b)); }
    static Number Subtract(Number a, Number b) { return static_cast<Number>(Bits(a) - Bits(b)); }
    static Number Multiply(Number a, Number b) { return static_cast<Number>(Bits(a) * Bits(b)); }

    // The smallest number divided by -1 does not fit, and x86 processors would trap.
    static Number Divide(Number a, Number b) {
        if (b == 0) ThrowInfinity();
        return b == -1 ? Negate(a) : a / b;
    }
    static Number Modulo(Number a, Number b) {
        if (b == 0) ThrowInfinity();
        return b == -1 ? 0 : a % b;
    }
    // Exact; the smallest number if the result does not fit, and for 0 ** -1.
    static Number Power(Number base, Number exponent) {
        if (exponent < 0) return InversePower(base, exponent);
        Number result = 1;
        while (exponent > 0) {
            if (exponent & 1 && __builtin_mul_overflow(result, base, &result)) return kNoPower;
            exponent >>= 1;
            if (exponent > 0 && __builtin_mul_overflow(base, base, &base)) return kNoPower;
        }
        return result;
    }
    static Number Shift(FormulaOp op, Number a, Number b) {
        const uint64_t count = Bits(b) & 63;
        return op == FormulaOp::ShiftLeft ? static_cast<Number>(Bits(a) << count) : a >> count;
    }
    static int64_t ToInteger(Number a) { return a; }

  private:
    static constexpr Number kNoPower = std::numeric_limits<Number>::min();

    // Only 1 and -1 have an inverse that does not round to 0.
    static Number InversePower(Number base, Number exponent) {
        if (base == 0) return kNoPower;
        if (base != 1 && base != -1) return 0;
        return exponent % 2 == 0 ? 1 : base;
    }
};

class FloatArithmetic {
  public:
    using Number = double;

    static Number Negate(Number a) { return -a; }
    static Number Add(Number a, Number b) { return a + b; }
    static Number Subtract(Number a, Number b) { return a - b; }
    static Number Multiply(Number a, Number b) { return a * b; }
    static Number Divide(Number a, Number b) {
        if (b == 0) ThrowInfinity();
        return a / b;
    }
    static Number Modulo(Number a, Number b) {
        if (b == 0) ThrowInfinity();
        return std::fmod(a, b);
    }
    static Number Power(Number base, Number exponent) { return std::pow(base, exponent); }

    // Bit operators drop the fraction of a number.
    static int64_t ToInteger(Number a) { return Truncated<int64_t>(a); }

    // Shifts work on 32 bits, whatever the machine: cameras extend the sign of 16-bit numbers by (V
    // << 16) >> 16.
    static Number Shift(FormulaOp op, Number a, Number b) {
        const int32_t value = Truncated<int32_t>(a);
        const uint32_t count = static_cast<uint32_t>(Truncated<int32_t>(b)) & 31;
        return op == FormulaOp::ShiftLeft
                   ? static_cast<int32_t>(static_cast<uint32_t>(value) << count)
                   : value >> count;
    }

    static Number Function(FormulaOp op, Number a) {
        switch (op) {
            case FormulaOp::Abs:
                return std::fabs(a);
            case FormulaOp::Sqrt:
                return std::sqrt(a);
            case FormulaOp::Exp:
                return std::exp(a);
            case FormulaOp::Ln:
                return std::log(a);
            case FormulaOp::Lg:
                return std::log10(a);
            case FormulaOp::Sin:
                return std::sin(a);
            case FormulaOp::Cos:
                return std::cos(a);
            case FormulaOp::Tan:
                return std::tan(a);
            case FormulaOp::Asin:
                return std::asin(a);
            case FormulaOp::Acos:
                return std::acos(a);
            case FormulaOp::Atan:
                return std::atan(a);
            case FormulaOp::Trunc:
                return std::trunc(a);
            case FormulaOp::Floor:
                return std::floor(a);
            case FormulaOp::Ceil:
                return std::ceil(a);
            default:
                return std::round(a);
        }
    }

    // Rounds half away from zero. Negative digits divide by a power of ten, because the power is
    // exact and its inverse is not.
    static Number RoundDigits(Number a, Number digits) {
        const double scale = std::pow(10.0, std::fabs(std::trunc(digits)));
        if (digits < 0) {
            const double rounded = std::round(a / scale);
            return rounded == 0 ? rounded : rounded * scale;
        }
        const double rounded = std::round(a * scale) / scale;
        return std::isfinite(rounded) ? rounded : a;
    }

  private:
    template <typename Integer>
    static Integer Truncated(Number a) {
        constexpr Number kLimit = -static_cast<Number>(std::numeric_limits<Integer>::min());
        const Number whole = std::trunc(a);
        if (!(whole >= -kLimit && whole < kLimit))
            throw FormulaError("#Value too big for operation!");
        return static_cast<Integer>(whole);
    }
};

template <typename Number>
struct ArithmeticOf;
template <>
struct ArithmeticOf<int64_t> {
    using Type = IntegerArithmetic;
};
template <>
struct ArithmeticOf<double> {
    using Type = FloatArithmetic;
};

// The bit operators except shifts.
inline int64_t ApplyToBits(FormulaOp op, int64_t a, int64_t b) {
    switch (op) {
        case FormulaOp::Complement:
            return ~a;
        case FormulaOp::And:
            return a & b;
        case FormulaOp::Xor:
            return a ^ b;
        default:
            return a | b;
    }
}

// Any operation except Select. FormulaError if it has no result.
template <typename Number>
inline Number Apply(FormulaOp op, Number a, Number b) {
    using Arithmetic = typename ArithmeticOf<Number>::Type;
    switch (op) {
        case FormulaOp::Negate:
            return Arithmetic::Negate(a);
        case FormulaOp::Add:
            return Arithmetic::Add(a, b);
        case FormulaOp::Subtract:
            return Arithmetic::Subtract(a, b);
        case FormulaOp::Multiply:
            return Arithmetic::Multiply(a, b);
        case FormulaOp::Divide:
            return Arithmetic::Divide(a, b);
        case FormulaOp::Modulo:
            return Arithmetic::Modulo(a, b);
        case FormulaOp::Power:
            return Arithmetic::Power(a, b);
        case FormulaOp::Complement:
            return static_cast<Number>(ApplyToBits(op, Arithmetic::ToInteger(a), 0));
        case FormulaOp::And:
        case FormulaOp::Xor:
        case FormulaOp::Or:
            return static_cast<Number>(
                ApplyToBits(op, Arithmetic::ToInteger(a), Arithmetic::ToInteger(b)));
        case FormulaOp::ShiftLeft:
        case FormulaOp::ShiftRight:
            return Arithmetic::Shift(op, a, b);
        case FormulaOp::Less:
            return a < b;
        case FormulaOp::LessEqual:
            return a <= b;
        case FormulaOp::Greater:
            return a > b;
        case FormulaOp::GreaterEqual:
            return a >= b;
        case FormulaOp::Equal:
            return a == b;
        case FormulaOp::NotEqual:
            return a != b;
        case FormulaOp::LogicalAnd:
            return a != 0 && b != 0;
        case FormulaOp::LogicalOr:
            return a != 0 || b != 0;
        case FormulaOp::Sgn:
            return static_cast<Number>((a > 0) - (a < 0));
        default:
            break;
    }
    if constexpr (std::is_floating_point_v<Number>)
        return op == FormulaOp::RoundDigits ? FloatArithmetic::RoundDigits(a, b)
                                            : FloatArithmetic::Function(op, a);
    else
        throw FormulaError("#Internal error!");
}

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE
