// From the text of a formula to its operations, by recursive descent.
#pragma once

#include <vector>

#include "genapi/formula/formula.h"
#include "genapi/formula/lexer.h"

namespace GENAPI_NAMESPACE {
namespace Engine {

template <typename Number>
class FormulaParser {
public:
    using Operation = typename Formula<Number>::Operation;

    explicit FormulaParser(const FormulaSymbols& symbols);

    std::vector<Operation> parse(std::string_view text);

private:
    // The levels of the language, from "? :" that binds least to signs that bind most.
    void selection();
    void binary(std::size_t level);
    void sign();
    void operand();
    void name();
    void call(std::string_view name);
    void number(std::string_view text);

    // Names: true when the name was one of that sort.
    bool variable(std::string_view name);
    bool constant(std::string_view name);
    bool expression(std::string_view name);
    bool mathConstant(std::string_view name);

    void whole(std::string_view text);
    void emit(FormulaOp op, std::uint32_t index = 0, Number value = {});
    void nest();

    static constexpr std::uint32_t kUnused = 0xFFFFFFFF;

    const FormulaSymbols& symbols_;
    Lexer lexer_;
    std::vector<Operation> program_;
    std::vector<std::uint32_t> kept_;  // by expression: where its value is kept
    std::uint32_t keptCount_ = 0;
    std::size_t usableExpressions_;    // an expression may use those before it
    std::size_t depth_ = 0;            // operands on the stack
    std::size_t nesting_ = 0;
};

extern template class FormulaParser<std::int64_t>;
extern template class FormulaParser<double>;

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE
