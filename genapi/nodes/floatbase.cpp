#include "genapi/nodes/floatbase.h"

#include <algorithm>
#include <cmath>

#include "genapi/nodes/nodemap.h"
#include "genapi/values/textform.h"

namespace GENAPI_NAMESPACE {
namespace Engine {

namespace {

// Digits after the decimal point.
size_t DecimalsOf(const std::string& text) {
    const size_t point = text.find('.');
    if (point == std::string::npos) return 0;
    const size_t end = text.find_first_not_of("0123456789", point + 1);
    return std::min(end, text.size()) - point - 1;
}

}  // namespace

void FloatBase::CheckRange(double value) {
    const double min = Lowest();
    if (value < min)
        throw NODE_ERROR(OutOfRangeException, *this)("Value %f must be greater than or equal %f.",
                                                     value, min);
    const double max = Highest();
    if (value > max)
        throw NODE_ERROR(OutOfRangeException, *this)("Value %f must be smaller than or equal %f.",
                                                     value, max);
}

double FloatBase::IncFloat() {
    if (!HasOwnInc()) throw NODE_ERROR(RuntimeException, *this)("node does not have an increment.");
    return OwnInc();
}

int64_t FloatBase::GetInt(ReadOptions options) {
    return RoundToInt(ReadNumber(options));
}

void FloatBase::SetInt(int64_t value, bool verify) {
    WriteNumber(static_cast<double>(value), verify);
}

int64_t FloatBase::MinInt() {
    return RoundToInt(Lowest());
}

int64_t FloatBase::MaxInt() {
    return RoundToInt(Highest());
}

// Rounding for display must not carry a value over a limit, or its text could not be written back.
// Such a value is moved by half a unit of the last displayed digit.
std::string FloatBase::Format(double value) {
    const Presentation shownAs = Shown();
    const auto shownText = [&](double number) {
        return FormatFloat(number, static_cast<EDisplayNotation>(shownAs.notation),
                           shownAs.precision);
    };
    std::string text = shownText(value);
    double rounded = 0;
    if (!ParseFloat(text, rounded)) return text;
    const double half = 0.5 * std::pow(10.0, -static_cast<double>(DecimalsOf(text)));
    if (rounded > Highest()) return shownText(value - half);
    if (rounded < Lowest()) return shownText(value + half);
    return text;
}

bool FloatBase::Parse(std::string_view text, double& value) {
    return ParseFloat(text, value);
}

bool FloatBase::HasInc() {
    const Entry entry(*this, "HasInc");
    return HasOwnInc();
}

EIncMode FloatBase::GetIncMode() {
    const Entry entry(*this, "GetIncMode");
    return HasOwnInc() ? fixedIncrement : noIncrement;
}

double_autovector_t FloatBase::GetListOfValidValues(bool bounded) {
    const Entry entry(*this, "GetListOfValidValues");
    if (bounded) {
        Highest();
        Lowest();
    }
    return double_autovector_t();
}

EDisplayNotation FloatBase::GetDisplayNotation() const {
    const Entry entry(*this, "GetDisplayNotation");
    return static_cast<EDisplayNotation>(Shown().notation);
}

int64_t FloatBase::GetDisplayPrecision() const {
    const Entry entry(*this, "GetDisplayPrecision");
    return Shown().precision;
}

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE
