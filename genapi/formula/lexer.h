// The tokens of a formula.
#pragma once

#include <cstdint>
#include <string_view>

#include <GenApi/GenApiNamespace.h>

namespace GENAPI_NAMESPACE {
namespace Engine {

enum class TokenKind : std::uint8_t { End, Number, Name, Symbol };

struct Token {
    TokenKind kind = TokenKind::End;
    std::string_view text;
};

// Splits a formula; FormulaError at a character that belongs to no token.
class Lexer {
  public:
    // Numbers with fraction and exponent, or integers only.
    Lexer(std::string_view text, bool fractions) : rest_(text), fractions_(fractions) { next(); }

    const Token& token() const { return token_; }
    bool is(std::string_view symbol) const {
        return token_.kind == TokenKind::Symbol && token_.text == symbol;
    }
    void next();
    // Takes the symbol if it is the next token.
    bool take(std::string_view symbol);

  private:
    std::size_t numberLength() const;

    std::string_view rest_;
    bool fractions_;
    Token token_;
};

bool isHexNumber(std::string_view text, bool fractions);

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE
