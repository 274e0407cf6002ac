// The digits of CSelectorSet: one selector each.
#pragma once

#include <memory>

#include <GenApi/ISelectorDigit.h>
#include <GenApi/IValue.h>

namespace GENAPI_NAMESPACE {
namespace Engine {

// The digit for a selector of any kind; remembers the value that the selector has now. One that
// cannot run through values leaves its selector alone, and has one state.
std::unique_ptr<ISelectorDigit> MakeSelectorDigit(IValue& selector);

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE
