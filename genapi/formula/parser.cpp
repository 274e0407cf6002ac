#include "genapi/formula/parser.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <charconv>
#include <limits>
#include <type_traits>

namespace GENAPI_NAMESPACE {
namespace Engine {

namespace {

struct BinaryOperator {
    std::string_view symbol;
    FormulaOp op;
};

// Operators of one level are taken from left to right; a later level binds more.
const std::vector<BinaryOperator> kLevels[] = {
    {{"<", FormulaOp::Less},
     {"<=", FormulaOp::LessEqual},
     {">", FormulaOp::Greater},
     {">=", FormulaOp::GreaterEqual},
     {"=", FormulaOp::Equal},
     {"<>", FormulaOp::NotEqual},
     {"&&", FormulaOp::LogicalAnd},
     {"||", FormulaOp::LogicalOr}},
    {{"+", FormulaOp::Add}, {"-", FormulaOp::Subtract}},
    {{"*", FormulaOp::Multiply}, {"/", FormulaOp::Divide}, {"%", FormulaOp::Modulo}},
    {{"**", FormulaOp::Power},
     {"<<", FormulaOp::ShiftLeft},
     {">>", FormulaOp::ShiftRight},
     {"&", FormulaOp::And},
     {"^", FormulaOp::Xor},
     {"|", FormulaOp::Or}},
};
constexpr std::size_t kSignLevel = 4;

struct Function {
    std::string_view name;
    FormulaOp op;
    bool forIntegers;
};

constexpr std::array<Function, 17> kFunctions = {{{"SGN", FormulaOp::Sgn, true},
                                                  {"NEG", FormulaOp::Negate, true},
                                                  {"ABS", FormulaOp::Abs, false},
                                                  {"SQRT", FormulaOp::Sqrt, false},
                                                  {"EXP", FormulaOp::Exp, false},
                                                  {"LN", FormulaOp::Ln, false},
                                                  {"LG", FormulaOp::Lg, false},
                                                  {"SIN", FormulaOp::Sin, false},
                                                  {"COS", FormulaOp::Cos, false},
                                                  {"TAN", FormulaOp::Tan, false},
                                                  {"ASIN", FormulaOp::Asin, false},
                                                  {"ACOS", FormulaOp::Acos, false},
                                                  {"ATAN", FormulaOp::Atan, false},
                                                  {"TRUNC", FormulaOp::Trunc, false},
                                                  {"FLOOR", FormulaOp::Floor, false},
                                                  {"CEIL", FormulaOp::Ceil, false},
                                                  {"ROUND", FormulaOp::Round, false}}};

std::string upper(std::string_view name)
{
    std::string result(name);
    for (char& c : result)
        c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
    return result;
}

[[noreturn]] void throwSyntax()
{
    throw FormulaError("#Syntax error!");
}

[[noreturn]] void throwUnknown(std::string_view name)
{
    throw FormulaError("# " + std::string(name) + " - Unknown function/variable!");
}

void checkBrackets(std::string_view text)
{
    std::ptrdiff_t open = 0;
    for (const char c : text) {
        open += c == '(' ? 1 : c == ')' ? -1 : 0;
        if (open < 0)
            break;
    }
    if (open != 0)
        throw FormulaError("#Brackets do not match!");
}

int operandCount(FormulaOp op)
{
    if (op < FormulaOp::Keep)
        return 0;
    if (op < FormulaOp::Power)
        return 1;
    return op == FormulaOp::Select ? 3 : 2;
}

}  // namespace

template <typename Number>
FormulaParser<Number>::FormulaParser(const FormulaSymbols& symbols)
    : symbols_(symbols), lexer_({}, false), kept_(symbols.expressions.size(), kUnused),
      usableExpressions_(symbols.expressions.size())
{
}

template <typename Number>
std::vector<typename FormulaParser<Number>::Operation> FormulaParser<Number>::parse(
    std::string_view text)
{
    whole(text);
    return std::move(program_);
}

// A text that is one formula, from its beginning to its end.
template <typename Number>
void FormulaParser<Number>::whole(std::string_view text)
{
    checkBrackets(text);
    const Lexer outer = lexer_;
    lexer_ = Lexer(text, std::is_floating_point_v<Number>);
    if (lexer_.token().kind == TokenKind::End)
        throw FormulaError("#Invalid formula");
    selection();
    if (lexer_.token().kind != TokenKind::End)
        throwSyntax();
    lexer_ = outer;
}

template <typename Number>
void FormulaParser<Number>::nest()
{
    if (++nesting_ > kMaxFormulaNesting)
        throw FormulaError("#Invalid formula");
}

template <typename Number>
void FormulaParser<Number>::emit(FormulaOp op, std::uint32_t index, Number value)
{
    depth_ = depth_ + 1 - static_cast<std::size_t>(operandCount(op));
    if (depth_ > kMaxFormulaStack || program_.size() >= kMaxFormulaOperations)
        throw FormulaError("#Invalid formula");
    program_.push_back({op, index, value});
}

template <typename Number>
void FormulaParser<Number>::selection()
{
    nest();
    binary(0);
    if (lexer_.take("?")) {
        binary(0);
        if (!lexer_.take(":"))
            throwSyntax();
        selection();
        emit(FormulaOp::Select);
    }
    --nesting_;
}

template <typename Number>
void FormulaParser<Number>::binary(std::size_t level)
{
    if (level == kSignLevel)
        return sign();
    binary(level + 1);
    for (;;) {
        const BinaryOperator* found = nullptr;
        for (const BinaryOperator& candidate : kLevels[level])
            if (lexer_.is(candidate.symbol))
                found = &candidate;
        if (!found)
            return;
        lexer_.next();
        binary(level + 1);
        emit(found->op);
    }
}

template <typename Number>
void FormulaParser<Number>::sign()
{
    if (lexer_.take("-")) {
        operand();
        emit(FormulaOp::Negate);
    } else if (lexer_.take("~")) {
        operand();
        emit(FormulaOp::Complement);
    } else {
        lexer_.take("+");
        operand();
    }
}

template <typename Number>
void FormulaParser<Number>::operand()
{
    const Token token = lexer_.token();
    if (token.kind == TokenKind::Number) {
        lexer_.next();
        number(token.text);
    } else if (token.kind == TokenKind::Name) {
        name();
    } else if (lexer_.take("(")) {
        selection();
        if (!lexer_.take(")"))
            throwSyntax();
    } else {
        throwSyntax();
    }
}

template <typename Number>
void FormulaParser<Number>::number(std::string_view text)
{
    const bool hex = isHexNumber(text, std::is_floating_point_v<Number>);
    Number value{};
    if (hex || std::is_integral_v<Number>) {
        if (hex)
            text.remove_prefix(2);
        std::int64_t integer = 0;
        const auto result =
            std::from_chars(text.data(), text.data() + text.size(), integer, hex ? 16 : 10);
        if (result.ec == std::errc::result_out_of_range)
            integer = std::numeric_limits<std::int64_t>::max();
        value = static_cast<Number>(integer);
    } else {
        double parsed = 0;
        const auto result = std::from_chars(text.data(), text.data() + text.size(), parsed);
        if (result.ec == std::errc::result_out_of_range)
            throw FormulaError("#Invalid formula");
        value = static_cast<Number>(parsed);
    }
    emit(FormulaOp::Constant, 0, value);
}

template <typename Number>
void FormulaParser<Number>::name()
{
    const std::string_view found = lexer_.token().text;
    lexer_.next();
    if (variable(found) || constant(found) || expression(found))
        return;
    if (lexer_.is("("))
        return call(found);
    if (!mathConstant(found))
        throwUnknown(found);
}

template <typename Number>
bool FormulaParser<Number>::variable(std::string_view name)
{
    const auto& names = symbols_.variables;
    const auto found = std::find(names.begin(), names.end(), name);
    if (found == names.end())
        return false;
    emit(FormulaOp::Variable, static_cast<std::uint32_t>(found - names.begin()));
    return true;
}

template <typename Number>
bool FormulaParser<Number>::constant(std::string_view name)
{
    for (const auto& [known, text] : symbols_.constants) {
        if (known != name)
            continue;
        // A number with its sign, and nothing else.
        Lexer digits(text, std::is_floating_point_v<Number>);
        const bool negative = digits.take("-");
        if (!negative)
            digits.take("+");
        if (digits.token().kind != TokenKind::Number)
            throwSyntax();
        number(digits.token().text);
        digits.next();
        if (digits.token().kind != TokenKind::End)
            throwSyntax();
        if (negative)
            emit(FormulaOp::Negate);
        return true;
    }
    return false;
}

template <typename Number>
bool FormulaParser<Number>::expression(std::string_view name)
{
    for (std::size_t i = 0; i < usableExpressions_; ++i) {
        if (symbols_.expressions[i].first != name)
            continue;
        if (kept_[i] != kUnused) {
            emit(FormulaOp::Kept, kept_[i]);
            return true;
        }
        nest();
        const std::size_t usable = std::exchange(usableExpressions_, i);
        whole(symbols_.expressions[i].second);
        usableExpressions_ = usable;
        --nesting_;
        if (keptCount_ >= kMaxKeptExpressions)
            throw FormulaError("#Invalid formula");
        kept_[i] = keptCount_++;
        emit(FormulaOp::Keep, kept_[i]);
        return true;
    }
    return false;
}

template <typename Number>
bool FormulaParser<Number>::mathConstant(std::string_view name)
{
    if constexpr (std::is_floating_point_v<Number>) {
        const std::string known = upper(name);
        if (known == "PI" || known == "E") {
            emit(FormulaOp::Constant, 0,
                 known == "PI" ? 3.14159265358979323846 : 2.71828182845904523536);
            return true;
        }
    } else {
        static_cast<void>(name);
    }
    return false;
}

template <typename Number>
void FormulaParser<Number>::call(std::string_view name)
{
    lexer_.take("(");
    if (lexer_.take(")")) {
        if (!mathConstant(name))
            throwUnknown(name);
        return;
    }
    const std::string known = upper(name);
    const auto found =
        std::find_if(kFunctions.begin(), kFunctions.end(), [&](const Function& function) {
            return function.name == known &&
                   (function.forIntegers || std::is_floating_point_v<Number>);
        });
    if (found == kFunctions.end())
        throwUnknown(name);
    selection();
    FormulaOp op = found->op;
    if (op == FormulaOp::Round && lexer_.take(",")) {
        selection();
        op = FormulaOp::RoundDigits;
    }
    if (!lexer_.take(")"))
        throwSyntax();
    emit(op);
}

template class FormulaParser<std::int64_t>;
template class FormulaParser<double>;

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE
