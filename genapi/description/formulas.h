// The programs of a description's formulas, made when they are first needed.
#pragma once

#include <memory>
#include <string>

#include "genapi/description/description.h"
#include "genapi/formula/formula.h"

namespace GENAPI_NAMESPACE {
namespace Engine {

// One of the two programs, or the reason why there is none.
struct CompiledFormula {
    std::unique_ptr<const Formula<int64_t>> integer;
    std::unique_ptr<const Formula<double>> floating;
    std::string error;
    // The node whose formula has the fault: the formula's own, or an expression that it uses.
    NodeId faulty = kNoNode;
};

// By index in NodeTables::formulas. Thread-safe; the result lives as long as the description.
const CompiledFormula& ProgramOf(const Description& description, uint32_t formula);

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE
