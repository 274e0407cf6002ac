#include "genapi/formula/parser.h"

#include <charconv>
#include <limits>
#include <string>
#include <utility>

#include "genapi/formula/arithmetic.h"
#include "genapi/formula/vocabulary.h"

namespace GENAPI_NAMESPACE {
namespace Engine {

namespace {

[[noreturn]] void throwSyntax() {
    throw FormulaError("#Syntax error!");
}

[[noreturn]] void throwInvalidFormula() {
    throw FormulaError("#Invalid formula");
}

[[noreturn]] void throwUnknown(const std::string& name) {
    throw FormulaError("# " + name + " - Unknown function/variable!");
}

void checkBrackets(std::string_view text) {
    std::ptrdiff_t open = 0;
    for (const char c : text) {
        open += c == '(' ? 1 : c == ')' ? -1 : 0;
        if (open < 0) break;
    }
    if (open != 0) throw FormulaError("#Brackets do not match!");
}

// Too large numbers become the largest.
void readNumber(std::string_view digits, bool hex, bool negative, std::int64_t& number) {
    constexpr std::uint64_t kMax = std::numeric_limits<std::int64_t>::max();
    std::uint64_t magnitude = 0;
    const auto result =
        std::from_chars(digits.data(), digits.data() + digits.size(), magnitude, hex ? 16 : 10);
    if (result.ec != std::errc() || magnitude > kMax) magnitude = kMax + negative;
    number = static_cast<std::int64_t>(negative ? 0 - magnitude : magnitude);
}

void readNumber(std::string_view digits, bool hex, bool negative, double& number) {
    const auto result = std::from_chars(digits.data(), digits.data() + digits.size(), number,
                                        hex ? std::chars_format::hex : std::chars_format::general);
    if (result.ec != std::errc()) throwInvalidFormula();
    if (negative) number = -number;
}

}  // namespace

// Held while the parser is inside something.
template <typename Number>
class FormulaParser<Number>::Nesting {
  public:
    explicit Nesting(std::size_t& depth) : depth_(depth) {
        if (++depth_ > kMaxFormulaNesting) throwInvalidFormula();
    }
    ~Nesting() { --depth_; }
    Nesting(const Nesting&) = delete;
    Nesting& operator=(const Nesting&) = delete;

  private:
    std::size_t& depth_;
};

template <typename Number>
FormulaParser<Number>::FormulaParser(const FormulaSymbols& symbols)
    : symbols_(symbols),
      names_(symbols),
      lexer_({}, kFractions),
      expressions_(symbols.expressions.size()),
      usableExpressions_(static_cast<std::uint32_t>(symbols.expressions.size())) {}

template <typename Number>
FormulaProgram<Number> FormulaParser<Number>::parse(std::string_view text) {
    whole(text);
    program_.result = place(values_.back());
    return std::move(program_);
}

// A text that is one formula, from its beginning to its end.
template <typename Number>
void FormulaParser<Number>::whole(std::string_view text) {
    checkBrackets(text);
    const Lexer outer = std::exchange(lexer_, Lexer(text, kFractions));
    if (lexer_.token().kind == TokenKind::End) throwInvalidFormula();
    selection();
    if (lexer_.token().kind != TokenKind::End) throwSyntax();
    lexer_ = outer;
}

// A chain "a ? b : c ? d : e" is a loop: its length must not be limited by the nesting.
template <typename Number>
void FormulaParser<Number>::selection() {
    std::size_t links = 0;
    binary(0);
    while (lexer_.take("?")) {
        binary(0);
        if (!lexer_.take(":")) throwSyntax();
        binary(0);
        ++links;
    }
    while (links-- > 0)
        emit(FormulaOp::Select);
}

template <typename Number>
void FormulaParser<Number>::binary(unsigned level, bool afterSign) {
    prefixed(afterSign);
    while (const BinaryOperator* found = findOperator(lexer_.token().text)) {
        if (found->level < level) return;
        lexer_.next();
        const bool isSign = found->op == FormulaOp::Add || found->op == FormulaOp::Subtract;
        binary(found->level + 1, isSign);
        emit(found->op);
    }
}

// One sign must not follow another, be it between operands or in front of one.
template <typename Number>
void FormulaParser<Number>::prefixed(bool afterSign) {
    const bool minus = lexer_.is("-");
    const bool sign = minus || lexer_.is("+");
    if (!sign && !lexer_.is("~")) return operand();
    if (sign && afterSign) throwSyntax();
    const Nesting nesting(nesting_);
    lexer_.next();
    prefixed(sign);
    if (minus) emit(FormulaOp::Negate);
    if (!sign) emit(FormulaOp::Complement);
}

template <typename Number>
void FormulaParser<Number>::operand() {
    const Token token = lexer_.token();
    if (token.kind == TokenKind::Name) return name();
    if (token.kind == TokenKind::End) {
        // An operator without an operand: known to be wrong only when it is computed.
        program_.failure = "#Extra operation!";
        return values_.push_back({FormulaArea::Constant, 0, {}});
    }
    if (token.kind == TokenKind::Number) {
        lexer_.next();
        return number(token.text);
    }
    if (!lexer_.take("(")) throwSyntax();
    const Nesting nesting(nesting_);
    selection();
    if (!lexer_.take(")")) throwSyntax();
}

template <typename Number>
void FormulaParser<Number>::number(std::string_view text, bool negative) {
    const bool hex = isHexNumber(text, kFractions);
    if (hex) text.remove_prefix(2);
    Number value{};
    readNumber(text, hex, negative, value);
    values_.push_back({FormulaArea::Constant, 0, value});
}

template <typename Number>
void FormulaParser<Number>::name() {
    const std::string_view text = lexer_.token().text;
    lexer_.next();
    // The name of a function without brackets is none of it.
    const bool isFunction = lexer_.is("(") && findFunction(text, kFractions);
    const bool isKnown = kFractions && findMathConstant(text);
    const FormulaSymbol* const symbol = isFunction || isKnown ? nullptr : find(text);
    if (symbol) {
        switch (symbol->kind) {
            case SymbolKind::Variable:
                return values_.push_back({FormulaArea::Variable, symbol->index, {}});
            case SymbolKind::Constant:
                return constant(symbols_.constants[symbol->index].second);
            case SymbolKind::Expression:
                return expression(symbol->index);
        }
    }
    call(text);
}

template <typename Number>
const FormulaSymbol* FormulaParser<Number>::find(std::string_view name) const {
    const FormulaSymbol* found = nullptr;
    if (symbols_.upperCase) found = names_.find(upperCase(name), usableExpressions_);
    return found ? found : names_.find(name, usableExpressions_);
}

// A number with its sign, and nothing else.
template <typename Number>
void FormulaParser<Number>::constant(std::string_view text) {
    Lexer lexer(text, kFractions);
    const bool negative = lexer.take("-");
    if (!negative) lexer.take("+");
    const Token token = lexer.token();
    if (token.kind != TokenKind::Number) throwSyntax();
    lexer.next();
    if (lexer.token().kind != TokenKind::End) throwSyntax();
    number(token.text, negative);
}

template <typename Number>
void FormulaParser<Number>::expression(std::uint32_t index) {
    if (!expressions_[index]) {
        const Nesting nesting(nesting_);
        const std::uint32_t usable = std::exchange(usableExpressions_, index);
        try {
            whole(symbols_.expressions[index].second);
        } catch (FormulaError& error) {
            if (error.expression == FormulaError::kFormulaItself) error.expression = index;
            throw;
        }
        usableExpressions_ = usable;
        expressions_[index] = keep(values_.back());
        values_.pop_back();
    }
    values_.push_back(*expressions_[index]);
}

// A function, or a constant that may be written like one.
template <typename Number>
void FormulaParser<Number>::call(std::string_view name) {
    const bool brackets = lexer_.take("(");
    if constexpr (kFractions) {
        if (const double* known = findMathConstant(name)) {
            if (brackets && !lexer_.take(")")) throwSyntax();
            return values_.push_back({FormulaArea::Constant, 0, *known});
        }
    }
    const FormulaFunction* const function = findFunction(name, kFractions);
    if (!brackets || !function)
        return throwUnknown(symbols_.upperCase ? upperCase(name) : std::string(name));
    const Nesting nesting(nesting_);
    selection();
    const bool digits = function->op == FormulaOp::Round && lexer_.take(",");
    if (digits) selection();
    if (!lexer_.take(")")) throwSyntax();
    emit(digits ? FormulaOp::RoundDigits : function->op);
}

template <typename Number>
void FormulaParser<Number>::emit(FormulaOp op) {
    const std::size_t count = operandCount(op);
    const Value* const operands = values_.data() + values_.size() - count;
    if (fold(op, operands, count)) return;
    FormulaOperation operation{op, 0, {}};
    for (std::size_t i = 0; i < 3; ++i) {
        operation.operands[i] = i < count ? place(operands[i]) : operation.operands[0];
        if (i < count && isWaiting(operands[i])) --waiting_;
    }
    if (waiting_ >= kMaxWaitingValues || program_.operations.size() >= kMaxFormulaOperations)
        throwInvalidFormula();
    const std::uint32_t target = kMaxKeptValues + waiting_++;
    operation.target = static_cast<std::uint16_t>(target);
    program_.operations.push_back(operation);
    values_.resize(values_.size() - count);
    values_.push_back({FormulaArea::Register, target, {}});
}

// Computes now what depends on no variable. What has no result must say so when evaluated.
template <typename Number>
bool FormulaParser<Number>::fold(FormulaOp op, const Value* operands, std::size_t count) {
    for (std::size_t i = 0; i < count; ++i)
        if (operands[i].area != FormulaArea::Constant) return false;
    Value result = operands[0];
    if (op == FormulaOp::Select) {
        result = operands[result.number != 0 ? 1 : 2];
    } else {
        try {
            result.number = apply(op, operands[0].number, operands[count - 1].number);
        } catch (const FormulaError&) {
            return false;
        }
    }
    values_.resize(values_.size() - count);
    values_.push_back(result);
    return true;
}

template <typename Number>
FormulaOperand FormulaParser<Number>::place(const Value& value) {
    if (value.area != FormulaArea::Constant) return {value.area, value.index};
    program_.constants.push_back(value.number);
    return {FormulaArea::Constant, static_cast<std::uint32_t>(program_.constants.size() - 1)};
}

template <typename Number>
bool FormulaParser<Number>::isWaiting(const Value& value) const {
    return value.area == FormulaArea::Register && value.index >= kMaxKeptValues;
}

// The last operation is the one that computes a waiting value on top of the others.
template <typename Number>
typename FormulaParser<Number>::Value FormulaParser<Number>::keep(Value value) {
    if (!isWaiting(value)) return value;
    if (kept_ >= kMaxKeptValues) throwInvalidFormula();
    value.index = kept_++;
    program_.operations.back().target = static_cast<std::uint16_t>(value.index);
    --waiting_;
    return value;
}

template class FormulaParser<std::int64_t>;
template class FormulaParser<double>;

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE
