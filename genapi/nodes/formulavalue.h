// Evaluates a formula of a description with the values that its variables have in a map.
#pragma once

#include "genapi/nodes/node.h"

namespace GENAPI_NAMESPACE {
namespace Engine {

// input is the value of FROM or TO in the formulas of a converter. LogicalErrorException if the
// formula does not parse or cannot be evaluated.
template <typename Number>
Number Evaluate(Node& owner, uint32_t formula, ReadOptions options, Number input = {});

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE
