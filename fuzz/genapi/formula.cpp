// Any text as a formula with expressions: "iA text;expression X0;expression X1...". The first byte
// chooses the evaluator (even is double), the second the values of the variables.
#include "genapi/formula/formula.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

using namespace GENAPI_NAMESPACE::Engine;

namespace {

constexpr size_t kVariables = 4;

// Near the edges of operators. One more than those of A to FROM is for C.
template <typename Number>
std::vector<Number> VariableValues(unsigned choice) {
    using Limits = std::numeric_limits<Number>;
    constexpr Number kValues[] = {0,
                                  1,
                                  -1,
                                  2,
                                  Limits::max(),
                                  Limits::lowest(),
                                  63,
                                  64,
                                  7,
                                  -3,
                                  Limits::is_integer ? 1 << 30 : Limits::quiet_NaN(),
                                  Limits::is_integer ? 5 : Number(0.5)};
    const Number* const first = kValues + choice % (std::size(kValues) - kVariables + 1);
    std::vector<Number> values(first, first + kVariables);
    values.push_back(12);
    return values;
}

std::vector<std::string_view> Split(std::string_view text) {
    std::vector<std::string_view> parts;
    for (size_t end; (end = text.find(';')) != text.npos; text.remove_prefix(end + 1))
        parts.push_back(text.substr(0, end));
    parts.push_back(text);
    return parts;
}

template <typename Number>
std::optional<Number> Evaluate(const Formula<Number>& formula, const Number* variables) {
    try {
        return formula.Evaluate(variables);
    } catch (const FormulaError&) {
        return std::nullopt;
    }
}

bool IsSame(int64_t a, int64_t b) {
    return a == b;
}
bool IsSame(double a, double b) {
    return a == b || (a != a && b != b);
}

template <typename Number>
std::optional<Formula<Number>> Compile(std::string_view text, const FormulaSymbols& symbols) {
    try {
        return Formula<Number>(text, symbols);
    } catch (const FormulaError& error) {
        if (*error.what() != '#') std::abort();
        return std::nullopt;
    }
}

template <typename Number>
void ExpectSame(const Formula<Number>& a, const Formula<Number>& b, const Number* variables) {
    const auto left = Evaluate(a, variables);
    const auto right = Evaluate(b, variables);
    if (left.has_value() != right.has_value()) std::abort();
    if (left && !IsSame(*left, *right)) std::abort();
}

template <typename Number>
void Check(std::string_view text, FormulaSymbols symbols, unsigned choice) {
    const std::vector<Number> values = VariableValues<Number>(choice);
    const auto plain = Compile<Number>(text, symbols);
    if (!plain) return;

    // Below another operation, whose value must survive in its register.
    const std::string below = "(A+B)*0+(" + std::string(text) + ")";
    const auto inner = Compile<Number>(below, symbols);
    if (inner && std::numeric_limits<Number>::is_integer) ExpectSame(*plain, *inner, values.data());

    // C as a variable, which rules out computing with it when the formula is compiled.
    symbols.constants.erase(symbols.constants.begin());
    symbols.variables.push_back("C");
    const auto late = Compile<Number>(text, symbols);
    if (late) ExpectSame(*plain, *late, values.data());
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    constexpr size_t kMaxSize = 1 << 14;
    if (size < 2 || size > kMaxSize) return 0;
    const std::string_view input(reinterpret_cast<const char*>(data), size);
    const auto parts = Split(input.substr(2));
    FormulaSymbols symbols;
    symbols.variables = {"A", "B", "V.Max", "FROM"};
    symbols.constants = {{"C", "12"}, {"BAD", "1+1"}};
    std::vector<std::string> names;
    for (size_t i = 1; i < parts.size(); ++i)
        names.push_back("X" + std::to_string(i - 1));
    for (size_t i = 1; i < parts.size(); ++i)
        symbols.expressions.emplace_back(names[i - 1], parts[i]);
    if (data[0] % 2 == 0)
        Check<double>(parts[0], symbols, data[1]);
    else
        Check<int64_t>(parts[0], symbols, data[1]);
    return 0;
}
