#include "genapi/nodes/integerbase.h"

#include <cinttypes>
#include <vector>

#include "genapi/nodes/nodemap.h"
#include "genapi/values/textform.h"

namespace GENAPI_NAMESPACE {
namespace Engine {

void IntegerBase::CheckRange(int64_t value) {
    const int64_t min = Lowest();
    if (value < min)
        throw NODE_ERROR(OutOfRangeException, *this)(
            "Value = %" PRId64 " must be equal or greater than Min = %" PRId64 ".", value, min);
    const int64_t max = Highest();
    if (value > max)
        throw NODE_ERROR(OutOfRangeException, *this)(
            "Value = %" PRId64 " must be equal or smaller than Max = %" PRId64 ".", value, max);
    const int64_t inc = OwnInc();
    if (inc <= 0)
        throw NODE_ERROR(LogicalErrorException, *this)("Increment must be larger than 0.");
    if (inc == 1) return;
    const uint64_t distance = static_cast<uint64_t>(value) - static_cast<uint64_t>(min);
    if (distance % static_cast<uint64_t>(inc) != 0)
        throw NODE_ERROR(OutOfRangeException, *this)(
            "The difference between Value = %" PRId64 " and Min = %" PRId64
            " must be dividable without rest by Inc = %" PRId64 ".",
            value, min, inc);
}

double IntegerBase::GetFloat(ReadOptions options) {
    return static_cast<double>(ReadNumber(options));
}

void IntegerBase::SetFloat(double value, bool verify) {
    int64_t rounded = RoundToInt(value);
    const int64_t inc = OwnInc();
    if (inc > 1) rounded = RoundToGrid(rounded, Lowest(), inc);
    WriteNumber(rounded, verify);
}

double IntegerBase::MinFloat() {
    return static_cast<double>(Lowest());
}

double IntegerBase::MaxFloat() {
    return static_cast<double>(Highest());
}

double IntegerBase::IncFloat() {
    return static_cast<double>(OwnInc());
}

std::string IntegerBase::Format(int64_t value) {
    return FormatInteger(value, static_cast<ERepresentation>(Shown().representation));
}

bool IntegerBase::Parse(std::string_view text, int64_t& value) {
    return ParseInteger(text, static_cast<ERepresentation>(Shown().representation), value);
}

EIncMode IntegerBase::GetIncMode() {
    const Entry entry(*this, "GetIncMode");
    return ValidValues().empty() ? fixedIncrement : listIncrement;
}

int64_autovector_t IntegerBase::GetListOfValidValues(bool bounded) {
    const Entry entry(*this, "GetListOfValidValues");
    int64_t min = kInt64Min, max = kInt64Max;
    if (bounded) {
        max = Highest();
        min = Lowest();
    }
    std::vector<int64_t> found;
    for (const int64_t value : ValidValues())
        if (value >= min && value <= max) found.push_back(value);
    int64_autovector_t list(found.size());
    for (size_t i = 0; i < found.size(); ++i)
        list[i] = found[i];
    return list;
}

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE
