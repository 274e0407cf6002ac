// Numbers as descriptions write them.
#pragma once

#include <cstdint>
#include <string_view>

#include "genapi/description/elements.h"

namespace GENAPI_NAMESPACE {
namespace Engine {

// Without the white space around it.
std::string_view Trimmed(std::string_view text);

// Decimal with or without a sign, or hexadecimal behind 0x; white space may stand before it. False
// when the text is no such number or does not fit.
bool Parse(std::string_view text, int64_t& value);
// The same for the beginning of a text.
bool ParseFront(std::string_view text, int64_t& value);
// Decimal with fraction and exponent, INF and NaN; also hexadecimal. White space may stand
// around it.
bool Parse(std::string_view text, double& value);

const char* NameOf(Element element);

// The integer that an element or attribute says; PropertyException when it is none.
int64_t IntegerOf(std::string_view text, std::string_view property);
int64_t IntegerOf(std::string_view text, Element element);

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE
