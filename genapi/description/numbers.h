// Numbers in the notation of descriptions.
#pragma once

#include <cstdint>
#include <string_view>

#include "genapi/description/elements.h"

namespace GENAPI_NAMESPACE {
namespace Engine {

// Without the white space around it.
std::string_view Trimmed(std::string_view text);

// Decimal with or without a sign, or hexadecimal with 0x; white space may precede it. False when
// the text is not such a number or does not fit.
bool Parse(std::string_view text, int64_t& value);
// The same for a number at the beginning of a text.
bool ParseFront(std::string_view text, int64_t& value);
// Decimal with fraction and exponent, INF and NaN; also hexadecimal. White space may surround it.
bool Parse(std::string_view text, double& value);

const char* NameOf(Element element);

// The integer in an element or attribute; PropertyException when the text is not one.
int64_t IntegerOf(std::string_view text, std::string_view property);
int64_t IntegerOf(std::string_view text, Element element);

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE
