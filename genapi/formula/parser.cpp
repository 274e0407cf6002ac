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

[[noreturn]] void ThrowSyntax() {
    throw FormulaError("#Syntax error!");
}

[[noreturn]] void ThrowInvalidFormula() {
    throw FormulaError("#Invalid formula");
}

[[noreturn]] void ThrowUnknown(const std::string& name) {
    throw FormulaError("# " + name + " - Unknown function/variable!");
}

void CheckBrackets(std::string_view text) {
    ptrdiff_t open = 0;
    for (const char c : text) {
        open += c == '(' ? 1 : c == ')' ? -1 : 0;
        if (open < 0) break;
    }
    if (open != 0) throw FormulaError("#Brackets do not match!");
}

// Numbers that are too large become the largest one.
void ReadNumber(std::string_view digits, bool hex, bool negative, int64_t& number) {
    constexpr uint64_t kMax = std::numeric_limits<int64_t>::max();
    uint64_t magnitude = 0;
    const auto result =
        std::from_chars(digits.data(), digits.data() + digits.size(), magnitude, hex ? 16 : 10);
    if (result.ec != std::errc() || magnitude > kMax) magnitude = kMax + negative;
    number = static_cast<int64_t>(negative ? 0 - magnitude : magnitude);
}

void ReadNumber(std::string_view digits, bool hex, bool negative, double& number) {
    const auto result = std::from_chars(digits.data(), digits.data() + digits.size(), number,
                                        hex ? std::chars_format::hex : std::chars_format::general);
    if (result.ec != std::errc()) ThrowInvalidFormula();
    if (negative) number = -number;
}

}  // namespace

// Counts a level of nesting for its scope.
template <typename Number>
class FormulaParser<Number>::Nesting {
  public:
    explicit Nesting(size_t& depth) : depth_(depth) {
        if (++depth_ > kMaxFormulaNesting) ThrowInvalidFormula();
    }
    ~Nesting() { --depth_; }
    Nesting(const Nesting&) = delete;
    Nesting& operator=(const Nesting&) = delete;

  private:
    size_t& depth_;
};

template <typename Number>
FormulaParser<Number>::FormulaParser(const FormulaSymbols& symbols)
    : symbols_(symbols),
      names_(symbols),
      lexer_({}, kFractions),
      expressions_(symbols.expressions.size()),
      usableExpressions_(static_cast<uint32_t>(symbols.expressions.size())) {}

template <typename Number>
FormulaProgram<Number> FormulaParser<Number>::Parse(std::string_view text) {
    Whole(text);
    program_.result = Place(values_.back());
    return std::move(program_);
}

// The whole text must be one formula.
template <typename Number>
void FormulaParser<Number>::Whole(std::string_view text) {
    CheckBrackets(text);
    const Lexer outer = std::exchange(lexer_, Lexer(text, kFractions));
    if (lexer_.Current().kind == TokenKind::End) ThrowInvalidFormula();
    Selection();
    if (lexer_.Current().kind != TokenKind::End) ThrowSyntax();
    lexer_ = outer;
}

// "a ? b : c ? d : e" is parsed in a loop, so that nesting does not limit the length of such
// chains.
template <typename Number>
void FormulaParser<Number>::Selection() {
    size_t links = 0;
    Binary(0);
    while (lexer_.Take("?")) {
        Binary(0);
        if (!lexer_.Take(":")) ThrowSyntax();
        Binary(0);
        ++links;
    }
    while (links-- > 0)
        Emit(FormulaOp::Select);
}

template <typename Number>
void FormulaParser<Number>::Binary(unsigned level, bool afterSign) {
    Prefixed(afterSign);
    while (const BinaryOperator* found = FindOperator(lexer_.Current().text)) {
        if (found->level < level) return;
        lexer_.Next();
        const bool isSign = found->op == FormulaOp::Add || found->op == FormulaOp::Subtract;
        Binary(found->level + 1, isSign);
        Emit(found->op);
    }
}

// A sign must not follow another sign, neither between operands nor before one.
template <typename Number>
void FormulaParser<Number>::Prefixed(bool afterSign) {
    const bool minus = lexer_.Is("-");
    const bool sign = minus || lexer_.Is("+");
    if (!sign && !lexer_.Is("~")) return Operand();
    if (sign && afterSign) ThrowSyntax();
    const Nesting nesting(nesting_);
    lexer_.Next();
    Prefixed(sign);
    if (minus) Emit(FormulaOp::Negate);
    if (!sign) Emit(FormulaOp::Complement);
}

template <typename Number>
void FormulaParser<Number>::Operand() {
    const Token token = lexer_.Current();
    if (token.kind == TokenKind::Name) return Name();
    if (token.kind == TokenKind::End) {
        // An operator without an operand is an error of the evaluation, not of the formula.
        program_.failure = "#Extra operation!";
        return values_.push_back({FormulaArea::Constant, 0, {}});
    }
    if (token.kind == TokenKind::Number) {
        lexer_.Next();
        return Literal(token.text);
    }
    if (!lexer_.Take("(")) ThrowSyntax();
    const Nesting nesting(nesting_);
    Selection();
    if (!lexer_.Take(")")) ThrowSyntax();
}

template <typename Number>
void FormulaParser<Number>::Literal(std::string_view text, bool negative) {
    const bool hex = IsHexNumber(text, kFractions);
    if (hex) text.remove_prefix(2);
    Number value{};
    ReadNumber(text, hex, negative, value);
    values_.push_back({FormulaArea::Constant, 0, value});
}

template <typename Number>
void FormulaParser<Number>::Name() {
    const std::string_view text = lexer_.Current().text;
    lexer_.Next();
    // Without brackets, the name of a function is an ordinary name.
    const bool isFunction = lexer_.Is("(") && FindFunction(text, kFractions);
    const bool isKnown = kFractions && FindMathConstant(text);
    const FormulaSymbol* const symbol = isFunction || isKnown ? nullptr : Find(text);
    if (symbol) {
        switch (symbol->kind) {
            case SymbolKind::Variable:
                return values_.push_back({FormulaArea::Variable, symbol->index, {}});
            case SymbolKind::Constant:
                return Constant(symbols_.constants[symbol->index].second);
            case SymbolKind::Expression:
                return Expression(symbol->index);
        }
    }
    Call(text);
}

template <typename Number>
const FormulaSymbol* FormulaParser<Number>::Find(std::string_view name) const {
    const FormulaSymbol* found = nullptr;
    if (symbols_.upperCase) found = names_.Find(UpperCase(name), usableExpressions_);
    return found ? found : names_.Find(name, usableExpressions_);
}

// A number with its sign, and nothing else.
template <typename Number>
void FormulaParser<Number>::Constant(std::string_view text) {
    Lexer lexer(text, kFractions);
    const bool negative = lexer.Take("-");
    if (!negative) lexer.Take("+");
    const Token token = lexer.Current();
    if (token.kind != TokenKind::Number) ThrowSyntax();
    lexer.Next();
    if (lexer.Current().kind != TokenKind::End) ThrowSyntax();
    Literal(token.text, negative);
}

template <typename Number>
void FormulaParser<Number>::Expression(uint32_t index) {
    if (!expressions_[index]) {
        const Nesting nesting(nesting_);
        const uint32_t usable = std::exchange(usableExpressions_, index);
        try {
            Whole(symbols_.expressions[index].second);
        } catch (FormulaError& error) {
            if (error.expression == FormulaError::kFormulaItself) error.expression = index;
            throw;
        }
        usableExpressions_ = usable;
        expressions_[index] = Keep(values_.back());
        values_.pop_back();
    }
    values_.push_back(*expressions_[index]);
}

// A function, or a constant in the notation of one.
template <typename Number>
void FormulaParser<Number>::Call(std::string_view name) {
    const bool brackets = lexer_.Take("(");
    if constexpr (kFractions) {
        if (const double* known = FindMathConstant(name)) {
            if (brackets && !lexer_.Take(")")) ThrowSyntax();
            return values_.push_back({FormulaArea::Constant, 0, *known});
        }
    }
    const FormulaFunction* const function = FindFunction(name, kFractions);
    if (!brackets || !function)
        return ThrowUnknown(symbols_.upperCase ? UpperCase(name) : std::string(name));
    const Nesting nesting(nesting_);
    Selection();
    const bool digits = function->op == FormulaOp::Round && lexer_.Take(",");
    if (digits) Selection();
    if (!lexer_.Take(")")) ThrowSyntax();
    Emit(digits ? FormulaOp::RoundDigits : function->op);
}

template <typename Number>
void FormulaParser<Number>::Emit(FormulaOp op) {
    const size_t count = OperandCount(op);
    const Value* const operands = values_.data() + values_.size() - count;
    if (Fold(op, operands, count)) return;
    FormulaOperation operation{op, 0, {}};
    for (size_t i = 0; i < 3; ++i) {
        operation.operands[i] = i < count ? Place(operands[i]) : operation.operands[0];
        if (i < count && IsWaiting(operands[i])) --waiting_;
    }
    if (waiting_ >= kMaxWaitingValues || program_.operations.size() >= kMaxFormulaOperations)
        ThrowInvalidFormula();
    const uint32_t target = kMaxKeptValues + waiting_++;
    operation.target = static_cast<uint16_t>(target);
    program_.operations.push_back(operation);
    values_.resize(values_.size() - count);
    values_.push_back({FormulaArea::Register, target, {}});
}

// Computes operations on constants now. An operation without a result stays, because it must fail
// at evaluation.
template <typename Number>
bool FormulaParser<Number>::Fold(FormulaOp op, const Value* operands, size_t count) {
    for (size_t i = 0; i < count; ++i)
        if (operands[i].area != FormulaArea::Constant) return false;
    Value result = operands[0];
    if (op == FormulaOp::Select) {
        result = operands[result.number != 0 ? 1 : 2];
    } else {
        try {
            result.number = Apply(op, operands[0].number, operands[count - 1].number);
        } catch (const FormulaError&) {
            return false;
        }
    }
    values_.resize(values_.size() - count);
    values_.push_back(result);
    return true;
}

template <typename Number>
FormulaOperand FormulaParser<Number>::Place(const Value& value) {
    if (value.area != FormulaArea::Constant) return {value.area, value.index};
    program_.constants.push_back(value.number);
    return {FormulaArea::Constant, static_cast<uint32_t>(program_.constants.size() - 1)};
}

template <typename Number>
bool FormulaParser<Number>::IsWaiting(const Value& value) const {
    return value.area == FormulaArea::Register && value.index >= kMaxKeptValues;
}

// The last operation is the one that computes a waiting value above all others.
template <typename Number>
typename FormulaParser<Number>::Value FormulaParser<Number>::Keep(Value value) {
    if (!IsWaiting(value)) return value;
    if (kept_ >= kMaxKeptValues) ThrowInvalidFormula();
    value.index = kept_++;
    program_.operations.back().target = static_cast<uint16_t>(value.index);
    --waiting_;
    return value;
}

template class FormulaParser<int64_t>;
template class FormulaParser<double>;

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE
