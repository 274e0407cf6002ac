#include "genapi/formula/lexer.h"

#include "genapi/formula/formula.h"

namespace GENAPI_NAMESPACE {
namespace Engine {

namespace {

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

bool isHexDigit(char c) {
    return isDigit(c) || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F');
}

bool isNameStart(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_';
}

bool isBlank(char c) {
    return c == ' ' || c == '\t' || c == '\n' || c == '\r' || c == '\f' || c == '\v';
}

template <typename Predicate>
std::size_t span(std::string_view text, std::size_t from, Predicate predicate) {
    while (from < text.size() && predicate(text[from]))
        ++from;
    return from;
}

std::size_t symbolLength(std::string_view text) {
    for (const std::string_view two : {"**", "<<", ">>", "<=", ">=", "<>", "&&", "||"})
        if (text.substr(0, 2) == two) return 2;
    return std::string_view("+-~*/%&^|<>=?:(),").find(text[0]) == std::string_view::npos ? 0 : 1;
}

}  // namespace

bool isHexNumber(std::string_view text, bool fractions) {
    return text.size() > 2 && text[0] == '0' && (text[1] == 'x' || (fractions && text[1] == 'X')) &&
           isHexDigit(text[2]);
}

std::size_t Lexer::numberLength() const {
    if (isHexNumber(rest_, fractions_)) return span(rest_, 2, isHexDigit);
    std::size_t end = span(rest_, 0, isDigit);
    if (!fractions_) return end;
    if (end < rest_.size() && rest_[end] == '.') end = span(rest_, end + 1, isDigit);
    if (end < rest_.size() && (rest_[end] == 'e' || rest_[end] == 'E')) {
        std::size_t exponent = end + 1;
        if (exponent < rest_.size() && (rest_[exponent] == '+' || rest_[exponent] == '-'))
            ++exponent;
        if (exponent < rest_.size() && isDigit(rest_[exponent]))
            end = span(rest_, exponent, isDigit);
    }
    return end;
}

void Lexer::next() {
    rest_.remove_prefix(span(rest_, 0, isBlank));
    token_ = {};
    if (rest_.empty()) return;
    std::size_t length = 0;
    if (isDigit(rest_[0])) {
        token_.kind = TokenKind::Number;
        length = numberLength();
    } else if (isNameStart(rest_[0])) {
        token_.kind = TokenKind::Name;
        length = span(rest_, 0, [](char c) { return isNameStart(c) || isDigit(c) || c == '.'; });
    } else {
        token_.kind = TokenKind::Symbol;
        length = symbolLength(rest_);
        if (length == 0) throw FormulaError("#Syntax error!");
    }
    token_.text = rest_.substr(0, length);
    rest_.remove_prefix(length);
}

bool Lexer::take(std::string_view symbol) {
    if (!is(symbol)) return false;
    next();
    return true;
}

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE
