// Numbers as descriptions write them.
#pragma once

#include <cstdint>
#include <string_view>

#include "genapi/description/elements.h"

namespace GENAPI_NAMESPACE {
namespace Engine {

// Without the white space around it.
std::string_view trimmed(std::string_view text);

// Decimal with or without a sign, or hexadecimal behind 0x; white space may stand before it. False
// when the text is no such number or does not fit.
bool parse(std::string_view text, std::int64_t& value);
// The same for the beginning of a text.
bool parseFront(std::string_view text, std::int64_t& value);
// Decimal with fraction and exponent, INF and NaN; also hexadecimal. White space may stand
// around it.
bool parse(std::string_view text, double& value);

const char* nameOf(Element element);

// The integer that an element or attribute says; PropertyException when it is none.
std::int64_t integerOf(std::string_view text, std::string_view property);
std::int64_t integerOf(std::string_view text, Element element);

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE
