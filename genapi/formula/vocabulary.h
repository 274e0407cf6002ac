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
    unsigned level;  // a higher one binds more; within one, from left to right
};

constexpr unsigned kHighestLevel = 3;

// Null when no operator between two operands is written like that.
const BinaryOperator* FindOperator(std::string_view symbol);

struct FormulaFunction {
    std::string_view name;
    FormulaOp op;
    bool forIntegers;
};

// Without regard to case; null when there is none. Of the functions for integers only, or all.
const FormulaFunction* FindFunction(std::string_view name, bool fractions);

// PI or E, which only formulas with fractions know, without regard to case; null for others.
const double* FindMathConstant(std::string_view name);

// The locale has no say in what a description means.
std::string UpperCase(std::string_view text);

size_t OperandCount(FormulaOp op);

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE
