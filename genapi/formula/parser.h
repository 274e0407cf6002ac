// Compiles the text of a formula by recursive descent.
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

// Parses one formula. The symbols must outlive the parser.
template <typename Number>
class FormulaParser {
  public:
    explicit FormulaParser(const FormulaSymbols& symbols);

    FormulaProgram<Number> Parse(std::string_view text);

  private:
    // A value at some point of the program. A constant gets its place only when an operation uses
    // it, because most operations on constants alone are computed here.
    struct Value {
        FormulaArea area;
        uint32_t index;
        Number number;
    };

    void Whole(std::string_view text);

    // The rules of the grammar; each leaves one more value.
    void Selection();
    void Binary(unsigned level, bool afterSign = false);
    void Prefixed(bool afterSign);
    void Operand();
    void Literal(std::string_view text, bool negative = false);
    void Name();
    const FormulaSymbol* Find(std::string_view name) const;
    void Constant(std::string_view text);
    void Expression(uint32_t index);
    void Call(std::string_view name);

    // Replaces the operands on top of the values by the result.
    void Emit(FormulaOp op);
    bool Fold(FormulaOp op, const Value* operands, size_t count);
    FormulaOperand Place(const Value& value);
    bool IsWaiting(const Value& value) const;
    // Moves the value of an expression to where later operations do not overwrite it.
    Value Keep(Value value);

    class Nesting;

    static constexpr bool kFractions = std::is_floating_point_v<Number>;

    const FormulaSymbols& symbols_;
    FormulaNames names_;
    Lexer lexer_;
    FormulaProgram<Number> program_;
    std::vector<Value> values_;
    uint32_t waiting_ = 0;                           // values_ in registers of their own
    std::vector<std::optional<Value>> expressions_;  // those used so far
    uint32_t kept_ = 0;
    uint32_t usableExpressions_;  // an expression may use the ones before it
    size_t nesting_ = 0;
};

extern template class FormulaParser<int64_t>;
extern template class FormulaParser<double>;

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE
