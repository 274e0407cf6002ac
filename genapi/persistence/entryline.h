// What one line of the text of a feature bag can hold.
#pragma once

#include <Base/GCString.h>
#include <GenApi/GenApiNamespace.h>

namespace GENAPI_NAMESPACE {
namespace Engine {

// Whether an entry can be read back from a line. A line break in it would end the line, and what
// follows would be read as an entry of its own; so would a carriage return, which XML makes a line
// break, and a null ends a text. A brace at the beginning and a tab look like selectors.
bool IsLine(const GENICAM_NAMESPACE::gcstring& name, const GENICAM_NAMESPACE::gcstring& value);

// A text with blanks in place of what would end its line.
GENICAM_NAMESPACE::gcstring InOneLine(const GENICAM_NAMESPACE::gcstring& text);

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE
