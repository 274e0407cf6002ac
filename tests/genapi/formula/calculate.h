// Evaluates formulas over a few names, for tests.
#pragma once

#include <cstdint>
#include <ostream>
#include <string>

#include "genapi/formula/formula.h"

namespace GENAPI_NAMESPACE {
namespace Engine {

// Variables A = 7, B = 2, V.Max = 100.
inline FormulaSymbols SomeSymbols() {
    FormulaSymbols symbols;
    symbols.variables = {"A", "B", "V.Max"};
    symbols.constants = {{"C", "12"}, {"NEGATIVE", " -0x10 "}};
    symbols.expressions = {{"SUM", "A+B"}, {"TWICE", "SUM*2"}, {"ALIAS", "TWICE"}};
    return symbols;
}

template <typename Number>
Number Calculate(const std::string& text, const FormulaSymbols& symbols = SomeSymbols()) {
    const Number variables[] = {7, 2, 100};
    return Formula<Number>(text, symbols).Evaluate(variables);
}

inline const std::string kInvalid = "parse: #Invalid formula";

// The message, marked with the step that failed; empty when there is a value.
template <typename Number>
std::string ErrorOf(const std::string& text, const FormulaSymbols& symbols = SomeSymbols()) {
    std::string step = "parse: ";
    try {
        const Formula<Number> formula(text, symbols);
        step = "evaluate: ";
        const Number variables[] = {7, 2, 100};
        formula.Evaluate(variables);
    } catch (const FormulaError& error) {
        return step + error.what();
    }
    return "";
}

template <typename Number>
struct Case {
    std::string text;
    Number expected;
};

template <typename Number>
std::ostream& operator<<(std::ostream& out, const Case<Number>& shown) {
    return out << shown.text;
}

using IntegerCase = Case<int64_t>;
using FloatCase = Case<double>;

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE
