// The tokens of a formula.
#pragma once

#include <cstdint>
#include <string_view>

#include <GenApi/GenApiNamespace.h>

namespace GENAPI_NAMESPACE {
namespace Engine {

enum class TokenKind : uint8_t { End, Number, Name, Symbol };

struct Token {
    TokenKind kind = TokenKind::End;
    std::string_view text;
};

// Splits a formula into tokens; FormulaError at a character that no token contains.
class Lexer {
  public:
    // fractions: numbers with fraction and exponent, otherwise integers only.
    Lexer(std::string_view text, bool fractions) : rest_(text), fractions_(fractions) { Next(); }

    const Token& Current() const { return token_; }
    bool Is(std::string_view symbol) const {
        return token_.kind == TokenKind::Symbol && token_.text == symbol;
    }
    void Next();
    // Consumes the symbol if it is the next token.
    bool Take(std::string_view symbol);

  private:
    size_t NumberLength() const;

    std::string_view rest_;
    bool fractions_;
    Token token_;
};

bool IsHexNumber(std::string_view text, bool fractions);

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE
