#include "genapi/formula/formula.h"

#include <cmath>
#include <limits>

#include "genapi/formula/parser.h"

namespace GENAPI_NAMESPACE {
namespace Engine {

namespace {

constexpr std::int64_t kMin = std::numeric_limits<std::int64_t>::min();

std::uint64_t bits(std::int64_t value)
{
    return static_cast<std::uint64_t>(value);
}

[[noreturn]] void throwInfinity()
{
    throw FormulaError("#Infinity somewhere!");
}

// Shifts count modulo 64; a right shift keeps the sign.
std::int64_t shiftLeft(std::int64_t value, std::int64_t count)
{
    return static_cast<std::int64_t>(bits(value) << (bits(count) & 63));
}

std::int64_t shiftRight(std::int64_t value, std::int64_t count)
{
    return value >> (bits(count) & 63);
}

// Arithmetic on integers wraps around.
struct Integers {
    using Number = std::int64_t;

    static Number negate(Number a) { return static_cast<Number>(0 - bits(a)); }
    static Number add(Number a, Number b) { return static_cast<Number>(bits(a) + bits(b)); }
    static Number subtract(Number a, Number b) { return static_cast<Number>(bits(a) - bits(b)); }
    static Number multiply(Number a, Number b) { return static_cast<Number>(bits(a) * bits(b)); }
    static Number divide(Number a, Number b)
    {
        if (b == 0)
            throwInfinity();
        return b == -1 ? negate(a) : a / b;
    }
    static Number modulo(Number a, Number b)
    {
        if (b == 0)
            throwInfinity();
        return b == -1 ? 0 : a % b;
    }
    static Number power(Number base, Number exponent)
    {
        if (exponent < 0) {
            if (base == 0)
                throwInfinity();
            // Only 1 and -1 have an inverse that is not rounded to 0.
            return base == 1 ? 1 : base == -1 ? (exponent % 2 ? -1 : 1) : 0;
        }
        Number result = 1;
        for (; exponent > 0; exponent >>= 1, base = multiply(base, base))
            if (exponent & 1)
                result = multiply(result, base);
        return result;
    }
    static std::int64_t integer(Number a) { return a; }
    static Number function(FormulaOp, Number a) { return a; }
    static Number roundDigits(Number a, Number) { return a; }
};

struct Floats {
    using Number = double;

    static Number negate(Number a) { return -a; }
    static Number add(Number a, Number b) { return a + b; }
    static Number subtract(Number a, Number b) { return a - b; }
    static Number multiply(Number a, Number b) { return a * b; }
    static Number divide(Number a, Number b)
    {
        if (b == 0)
            throwInfinity();
        return a / b;
    }
    static Number modulo(Number a, Number b)
    {
        if (b == 0)
            throwInfinity();
        return std::fmod(a, b);
    }
    static Number power(Number base, Number exponent) { return std::pow(base, exponent); }
    // Bits are those of the number without its fraction.
    static std::int64_t integer(Number a)
    {
        if (!(a >= -9223372036854775808.0 && a < 9223372036854775808.0))
            throw FormulaError("#Value too big for operation!");
        return static_cast<std::int64_t>(a);
    }
    static Number function(FormulaOp op, Number a)
    {
        switch (op) {
        case FormulaOp::Abs: return std::fabs(a);
        case FormulaOp::Sqrt: return std::sqrt(a);
        case FormulaOp::Exp: return std::exp(a);
        case FormulaOp::Ln: return std::log(a);
        case FormulaOp::Lg: return std::log10(a);
        case FormulaOp::Sin: return std::sin(a);
        case FormulaOp::Cos: return std::cos(a);
        case FormulaOp::Tan: return std::tan(a);
        case FormulaOp::Asin: return std::asin(a);
        case FormulaOp::Acos: return std::acos(a);
        case FormulaOp::Atan: return std::atan(a);
        case FormulaOp::Trunc: return std::trunc(a);
        case FormulaOp::Floor: return std::floor(a);
        case FormulaOp::Ceil: return std::ceil(a);
        default: return std::round(a);
        }
    }
    static Number roundDigits(Number a, Number digits)
    {
        const double scale = std::pow(10.0, std::trunc(digits));
        const double scaled = std::round(a * scale) / scale;
        return std::isfinite(scaled) ? scaled : a;
    }
};

template <typename Number>
struct ArithmeticOf;
template <>
struct ArithmeticOf<std::int64_t> {
    using Type = Integers;
};
template <>
struct ArithmeticOf<double> {
    using Type = Floats;
};

template <typename Number>
Number unary(FormulaOp op, Number a)
{
    using A = typename ArithmeticOf<Number>::Type;
    switch (op) {
    case FormulaOp::Negate: return A::negate(a);
    case FormulaOp::Complement: return static_cast<Number>(~A::integer(a));
    case FormulaOp::Sgn: return static_cast<Number>((a > 0) - (a < 0));
    default: return A::function(op, a);
    }
}

template <typename Number>
Number binary(FormulaOp op, Number a, Number b)
{
    using A = typename ArithmeticOf<Number>::Type;
    switch (op) {
    case FormulaOp::Add: return A::add(a, b);
    case FormulaOp::Subtract: return A::subtract(a, b);
    case FormulaOp::Multiply: return A::multiply(a, b);
    case FormulaOp::Divide: return A::divide(a, b);
    case FormulaOp::Modulo: return A::modulo(a, b);
    case FormulaOp::Power: return A::power(a, b);
    case FormulaOp::ShiftLeft:
        return static_cast<Number>(shiftLeft(A::integer(a), A::integer(b)));
    case FormulaOp::ShiftRight:
        return static_cast<Number>(shiftRight(A::integer(a), A::integer(b)));
    case FormulaOp::And: return static_cast<Number>(A::integer(a) & A::integer(b));
    case FormulaOp::Xor: return static_cast<Number>(A::integer(a) ^ A::integer(b));
    case FormulaOp::Or: return static_cast<Number>(A::integer(a) | A::integer(b));
    case FormulaOp::Less: return a < b;
    case FormulaOp::LessEqual: return a <= b;
    case FormulaOp::Greater: return a > b;
    case FormulaOp::GreaterEqual: return a >= b;
    case FormulaOp::Equal: return a == b;
    case FormulaOp::NotEqual: return a != b;
    case FormulaOp::LogicalAnd: return a != 0 && b != 0;
    case FormulaOp::LogicalOr: return a != 0 || b != 0;
    default: return A::roundDigits(a, b);
    }
}

}  // namespace

template <typename Number>
Formula<Number>::Formula(std::string_view text, const FormulaSymbols& symbols)
    : program_(FormulaParser<Number>(symbols).parse(text))
{
    program_.shrink_to_fit();
}

template <typename Number>
Number Formula<Number>::evaluate(const Number* variables) const
{
    // Left uninitialised: the parser has seen to it that only what was written is read.
    Number stack[kMaxFormulaStack + 1];
    Number kept[kMaxKeptExpressions];
    Number* top = stack;  // behind the last operand
    for (const Operation& operation : program_) {
        switch (operation.op) {
        case FormulaOp::Constant: *top++ = operation.constant; break;
        case FormulaOp::Variable: *top++ = variables[operation.index]; break;
        case FormulaOp::Kept: *top++ = kept[operation.index]; break;
        case FormulaOp::Keep: kept[operation.index] = top[-1]; break;
        case FormulaOp::Select:
            top -= 2;
            top[-1] = top[-1] != 0 ? top[0] : top[1];
            break;
        default:
            if (operation.op < FormulaOp::Power) {
                top[-1] = unary(operation.op, top[-1]);
            } else {
                --top;
                top[-1] = binary(operation.op, top[-1], top[0]);
            }
        }
    }
    return top[-1];
}

template class Formula<std::int64_t>;
template class Formula<double>;

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE
