// Descriptions in zip archives, as devices store them.
#pragma once

#include <string>
#include <string_view>

#include <GenApi/GenApiNamespace.h>

namespace GENAPI_NAMESPACE {
namespace Engine {

// The contents of the first entry, whatever its name. Bytes behind the archive do not matter.
// RuntimeException "Invalid ZIP string in ParseXmlBuffer" for bytes that are no archive, and for
// an entry that is damaged or too large.
std::string UnzipFirstEntry(std::string_view archive);

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE
