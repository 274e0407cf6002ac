// The compiled formulas of a description, made on first use.
#pragma once

#include <memory>
#include <string>

#include "genapi/description/description.h"
#include "genapi/formula/formula.h"

namespace GENAPI_NAMESPACE {
namespace Engine {

// One of the two programs, or the error that prevents it.
struct CompiledFormula {
    std::unique_ptr<const Formula<int64_t>> integer;
    std::unique_ptr<const Formula<double>> floating;
    std::string error;
    // The node whose formula is at fault: the formula's own, or an expression that it uses.
    NodeId faulty = kNoNode;
};

// The index is one into NodeTables::formulas. Thread-safe; the result lives as long as the
// description.
const CompiledFormula& ProgramOf(const Description& description, uint32_t formula);

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE
