// Compares the value of a feature with a text.
#pragma once

#include <Base/GCString.h>
#include <GenApi/IValue.h>

namespace GENAPI_NAMESPACE {
namespace Engine {

// Compares numbers, booleans and bytes in any notation: "0x140" is 320, "1.50" is 1.5, "true" is 1.
// The whole text must be a value, so "5e3" is not an integer. Values of other kinds have a single
// notation. Passes exceptions of reading the feature on.
bool HasValue(IValue& feature, const GENICAM_NAMESPACE::gcstring& text);

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE
