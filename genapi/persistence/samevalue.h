// Whether a feature has the value that a text tells.
#pragma once

#include <Base/GCString.h>
#include <GenApi/IValue.h>

namespace GENAPI_NAMESPACE {
namespace Engine {

// Compares numbers, truth values and bytes, whatever the form of their text: "0x140" is 320, "1.50"
// is 1.5, "true" is 1. The text counts as a whole, so that "5e3" is no integer. Other kinds have
// one form of each value. Throws what reading the feature throws.
bool HasValue(IValue& feature, const GENICAM_NAMESPACE::gcstring& text);

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE
