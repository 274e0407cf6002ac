// The digits of CSelectorSet: one for each selector.
#pragma once

#include <memory>

#include <GenApi/ISelectorDigit.h>
#include <GenApi/IValue.h>

namespace GENAPI_NAMESPACE {
namespace Engine {

// The digit for a selector of any kind; it remembers the selector's present value. If the selector
// cannot run through values, the digit has one state and leaves it alone.
std::unique_ptr<ISelectorDigit> MakeSelectorDigit(IValue& selector);

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE
