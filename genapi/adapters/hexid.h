// Ids of events and chunks. Descriptions write them with any number of hexadecimal digits; they are
// compared as numbers.
#pragma once

#include <cstdint>
#include <string>

#include <Base/GCString.h>
#include <GenApi/GenApiNamespace.h>

namespace GENAPI_NAMESPACE {
namespace Engine {

// The id in capital digits without leading zeros; empty for 0. False if the text is not a number.
bool ParseHexId(const GENICAM_NAMESPACE::gcstring& text, std::string& id);
std::string HexId(uint64_t number);

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE
