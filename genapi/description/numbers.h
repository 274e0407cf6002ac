// Numbers as descriptions write them.
#pragma once

#include <cstdint>
#include <string_view>

#include "genapi/description/elements.h"

namespace GENAPI_NAMESPACE {
namespace Engine {

// Without the white space around it.
std::string_view trimmed(std::string_view text);

// Decimal with a sign, or hexadecimal behind 0x: 64 bits, read as two's complement. White space
// around it is ignored. False when the text is no such number, or too large.
bool parse(std::string_view text, std::int64_t& value);
// Decimal with fraction and exponent, INF and NaN; also hexadecimal integers.
bool parse(std::string_view text, double& value);

const char* nameOf(Element element);
const char* typeName(const std::int64_t*);
const char* typeName(const double*);
[[noreturn]] void throwNoNumber(Element element, std::string_view text, const char* type);

// The number that an element says; PropertyException when it is none.
template <typename T>
T parseNumber(std::string_view text, Element element) {
    T value{};
    if (!parse(text, value)) throwNoNumber(element, text, typeName(static_cast<const T*>(nullptr)));
    return value;
}

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE
