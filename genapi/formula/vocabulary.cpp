#include "genapi/formula/vocabulary.h"

#include <algorithm>

namespace GENAPI_NAMESPACE {
namespace Engine {

namespace {

constexpr BinaryOperator kOperators[] = {
    {"<", FormulaOp::Less, 0},
    {"<=", FormulaOp::LessEqual, 0},
    {">", FormulaOp::Greater, 0},
    {">=", FormulaOp::GreaterEqual, 0},
    {"=", FormulaOp::Equal, 0},
    {"<>", FormulaOp::NotEqual, 0},
    {"&&", FormulaOp::LogicalAnd, 0},
    {"||", FormulaOp::LogicalOr, 0},
    {"+", FormulaOp::Add, 1},
    {"-", FormulaOp::Subtract, 1},
    {"*", FormulaOp::Multiply, 2},
    {"/", FormulaOp::Divide, 2},
    {"%", FormulaOp::Modulo, 2},
    {"**", FormulaOp::Power, kHighestLevel},
    {"<<", FormulaOp::ShiftLeft, kHighestLevel},
    {">>", FormulaOp::ShiftRight, kHighestLevel},
    {"&", FormulaOp::And, kHighestLevel},
    {"^", FormulaOp::Xor, kHighestLevel},
    {"|", FormulaOp::Or, kHighestLevel},
};

constexpr FormulaFunction kFunctions[] = {
    {"SGN", FormulaOp::Sgn, true},      {"NEG", FormulaOp::Negate, true},
    {"ABS", FormulaOp::Abs, false},     {"SQRT", FormulaOp::Sqrt, false},
    {"EXP", FormulaOp::Exp, false},     {"LN", FormulaOp::Ln, false},
    {"LG", FormulaOp::Lg, false},       {"SIN", FormulaOp::Sin, false},
    {"COS", FormulaOp::Cos, false},     {"TAN", FormulaOp::Tan, false},
    {"ASIN", FormulaOp::Asin, false},   {"ACOS", FormulaOp::Acos, false},
    {"ATAN", FormulaOp::Atan, false},   {"TRUNC", FormulaOp::Trunc, false},
    {"FLOOR", FormulaOp::Floor, false}, {"CEIL", FormulaOp::Ceil, false},
    {"ROUND", FormulaOp::Round, false},
};

constexpr double kPi = 3.14159265358979323846;
constexpr double kE = 2.71828182845904523536;

char Upper(char c) {
    return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
}

bool IsSame(std::string_view name, std::string_view known) {
    return std::equal(name.begin(), name.end(), known.begin(), known.end(),
                      [](char a, char b) { return Upper(a) == b; });
}

}  // namespace

const BinaryOperator* FindOperator(std::string_view symbol) {
    const auto* const found =
        std::find_if(std::begin(kOperators), std::end(kOperators),
                     [symbol](const BinaryOperator& known) { return known.symbol == symbol; });
    return found == std::end(kOperators) ? nullptr : found;
}

const FormulaFunction* FindFunction(std::string_view name, bool fractions) {
    const auto* const found = std::find_if(
        std::begin(kFunctions), std::end(kFunctions), [&](const FormulaFunction& known) {
            return (fractions || known.forIntegers) && IsSame(name, known.name);
        });
    return found == std::end(kFunctions) ? nullptr : found;
}

const double* FindMathConstant(std::string_view name) {
    if (IsSame(name, "PI")) return &kPi;
    return IsSame(name, "E") ? &kE : nullptr;
}

std::string UpperCase(std::string_view text) {
    std::string result(text);
    std::transform(result.begin(), result.end(), result.begin(), Upper);
    return result;
}

size_t OperandCount(FormulaOp op) {
    if (op < FormulaOp::Power) return 1;
    return op < FormulaOp::Select ? 2 : 3;
}

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE
