// Descriptions in zip archives, as devices store them.
#pragma once

#include <string>
#include <string_view>

#include <GenApi/GenApiNamespace.h>

namespace GENAPI_NAMESPACE {
namespace Engine {

// The contents of the first entry, whatever its name. Bytes after the archive are ignored.
// RuntimeException "Invalid ZIP string in ParseXmlBuffer" when the bytes are not an archive, or
// when the entry is damaged or too large.
std::string UnzipFirstEntry(std::string_view archive);

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE
