#include "genapi/formula/lexer.h"

#include "genapi/formula/formula.h"

namespace GENAPI_NAMESPACE {
namespace Engine {

namespace {

bool IsDigit(char c) {
    return c >= '0' && c <= '9';
}

bool IsHexDigit(char c) {
    return IsDigit(c) || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F');
}

bool IsNameStart(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_';
}

bool IsBlank(char c) {
    return c == ' ' || c == '\t' || c == '\n' || c == '\r' || c == '\f' || c == '\v';
}

template <typename Predicate>
size_t Span(std::string_view text, size_t from, Predicate predicate) {
    while (from < text.size() && predicate(text[from]))
        ++from;
    return from;
}

size_t SymbolLength(std::string_view text) {
    for (const std::string_view two : {"**", "<<", ">>", "<=", ">=", "<>", "&&", "||"})
        if (text.substr(0, 2) == two) return 2;
    return std::string_view("+-~*/%&^|<>=?:(),").find(text[0]) == std::string_view::npos ? 0 : 1;
}

}  // namespace

bool IsHexNumber(std::string_view text, bool fractions) {
    return text.size() > 2 && text[0] == '0' && (text[1] == 'x' || (fractions && text[1] == 'X')) &&
           IsHexDigit(text[2]);
}

size_t Lexer::NumberLength() const {
    if (IsHexNumber(rest_, fractions_)) return Span(rest_, 2, IsHexDigit);
    size_t end = Span(rest_, 0, IsDigit);
    if (!fractions_) return end;
    if (end < rest_.size() && rest_[end] == '.') end = Span(rest_, end + 1, IsDigit);
    if (end < rest_.size() && (rest_[end] == 'e' || rest_[end] == 'E')) {
        size_t exponent = end + 1;
        if (exponent < rest_.size() && (rest_[exponent] == '+' || rest_[exponent] == '-'))
            ++exponent;
        if (exponent < rest_.size() && IsDigit(rest_[exponent]))
            end = Span(rest_, exponent, IsDigit);
    }
    return end;
}

void Lexer::Next() {
    rest_.remove_prefix(Span(rest_, 0, IsBlank));
    token_ = {};
    if (rest_.empty()) return;
    size_t length = 0;
    if (IsDigit(rest_[0])) {
        token_.kind = TokenKind::Number;
        length = NumberLength();
    } else if (IsNameStart(rest_[0])) {
        token_.kind = TokenKind::Name;
        length = Span(rest_, 0, [](char c) { return IsNameStart(c) || IsDigit(c) || c == '.'; });
    } else {
        token_.kind = TokenKind::Symbol;
        length = SymbolLength(rest_);
        if (length == 0) throw FormulaError("#Syntax error!");
    }
    token_.text = rest_.substr(0, length);
    rest_.remove_prefix(length);
}

bool Lexer::Take(std::string_view symbol) {
    if (!Is(symbol)) return false;
    Next();
    return true;
}

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE
