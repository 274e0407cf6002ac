// Numbers and bytes as texts: the forms that ToString writes and FromString reads. Persistence
// relies on them.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include <GenApi/Types.h>

#include "genapi/description/nodedata.h"

namespace GENAPI_NAMESPACE {
namespace Engine {

std::string FormatInteger(int64_t value, ERepresentation representation);
// False when the text does not begin with a number of that form. Text after a decimal or
// hexadecimal number is ignored; numbers beyond 64 bits are saturated.
bool ParseInteger(std::string_view text, ERepresentation representation, int64_t& value);

std::string FormatFloat(double value, EDisplayNotation notation, int precision);
bool ParseFloat(std::string_view text, double& value);

// FormatBytes writes "0x" and two lower-case digits per byte; ParseBytes accepts digits with or
// without "0x".
std::string FormatBytes(const uint8_t* bytes, size_t count);
bool ParseBytes(std::string_view text, std::vector<uint8_t>& bytes);

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE
