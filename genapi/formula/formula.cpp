#include "genapi/formula/formula.h"

#include "genapi/formula/arithmetic.h"
#include "genapi/formula/parser.h"

namespace GENAPI_NAMESPACE {
namespace Engine {

template <typename Number>
Formula<Number>::Formula(std::string_view text, const FormulaSymbols& symbols)
    : program_(FormulaParser<Number>(symbols).Parse(text)) {
    program_.operations.shrink_to_fit();
    program_.constants.shrink_to_fit();
}

template <typename Number>
Number Formula<Number>::Evaluate(const Number* variables) const {
    if (program_.failure) throw FormulaError(program_.failure);
    // Uninitialised, because a program reads only registers that it has written.
    Number registers[kFormulaRegisters];
    const Number* const areas[kFormulaAreas] = {program_.constants.data(), variables, registers};
    for (const FormulaOperation& operation : program_.operations) {
        const Number a = operation.operands[0].In(areas);
        const Number b = operation.operands[1].In(areas);
        registers[operation.target] = operation.op == FormulaOp::Select
                                          ? (a != 0 ? b : operation.operands[2].In(areas))
                                          : Apply(operation.op, a, b);
    }
    return program_.result.In(areas);
}

template class Formula<int64_t>;
template class Formula<double>;

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE
