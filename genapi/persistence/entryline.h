// What fits in one line of a feature bag's text.
#pragma once

#include <Base/GCString.h>
#include <GenApi/GenApiNamespace.h>

namespace GENAPI_NAMESPACE {
namespace Engine {

// Whether an entry can be read back from a line. A line break would end the line, and the rest
// would be read as another entry. XML turns a carriage return into a line break, and a NUL ends a
// text. A value that begins with a brace and contains a tab looks like selectors.
bool IsLine(const GENICAM_NAMESPACE::gcstring& name, const GENICAM_NAMESPACE::gcstring& value);

// The text with blanks in place of the characters that would end its line.
GENICAM_NAMESPACE::gcstring InOneLine(const GENICAM_NAMESPACE::gcstring& text);

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE
