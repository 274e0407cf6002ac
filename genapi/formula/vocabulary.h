// The operators, functions and constants of the formula language.
#pragma once

#include <string>
#include <string_view>

#include "genapi/formula/program.h"

namespace GENAPI_NAMESPACE {
namespace Engine {

struct BinaryOperator {
    std::string_view symbol;
    FormulaOp op;
    unsigned level;  // higher levels bind tighter; within a level, from left to right
};

constexpr unsigned kHighestLevel = 3;

// Null when the symbol is not a binary operator.
const BinaryOperator* FindOperator(std::string_view symbol);

struct FormulaFunction {
    std::string_view name;
    FormulaOp op;
    bool forIntegers;
};

// Ignores case; null when there is no such function. Without fractions, only functions for
// integers.
const FormulaFunction* FindFunction(std::string_view name, bool fractions);

// PI or E in upper or lower case, which only formulas with fractions have; null for other names.
const double* FindMathConstant(std::string_view name);

// Independent of the locale, which must not change the meaning of a description.
std::string UpperCase(std::string_view text);

size_t OperandCount(FormulaOp op);

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE
