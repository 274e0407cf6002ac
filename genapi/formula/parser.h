// From the text of a formula to its program, by recursive descent.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>
#include <type_traits>
#include <vector>

#include "genapi/formula/formula.h"
#include "genapi/formula/lexer.h"
#include "genapi/formula/names.h"

namespace GENAPI_NAMESPACE {
namespace Engine {

// For one formula. The symbols must outlive the parser.
template <typename Number>
class FormulaParser {
  public:
    explicit FormulaParser(const FormulaSymbols& symbols);

    FormulaProgram<Number> parse(std::string_view text);

  private:
    // A value that the program has at hand when it comes to some point. Constants get their place
    // only when an operation uses them, since most operations on constants alone vanish.
    struct Value {
        FormulaArea area;
        std::uint32_t index;
        Number number;
    };

    void whole(std::string_view text);

    // What a formula consists of, each of these leaves one more value.
    void selection();
    void binary(unsigned level, bool afterSign = false);
    void prefixed(bool afterSign);
    void operand();
    void number(std::string_view text, bool negative = false);
    void name();
    const FormulaSymbol* find(std::string_view name) const;
    void constant(std::string_view text);
    void expression(std::uint32_t index);
    void call(std::string_view name);

    // Replaces the operands among the values by the result.
    void emit(FormulaOp op);
    bool fold(FormulaOp op, const Value* operands, std::size_t count);
    FormulaOperand place(const Value& value);
    bool isWaiting(const Value& value) const;
    // The value of an expression, moved to where later operations do not overwrite it.
    Value keep(Value value);

    class Nesting;

    static constexpr bool kFractions = std::is_floating_point_v<Number>;

    const FormulaSymbols& symbols_;
    FormulaNames names_;
    Lexer lexer_;
    FormulaProgram<Number> program_;
    std::vector<Value> values_;
    std::uint32_t waiting_ = 0;                      // those of values_ in registers of their own
    std::vector<std::optional<Value>> expressions_;  // those that were used
    std::uint32_t kept_ = 0;
    std::uint32_t usableExpressions_;  // an expression may use those before it
    std::size_t nesting_ = 0;
};

extern template class FormulaParser<std::int64_t>;
extern template class FormulaParser<double>;

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE
