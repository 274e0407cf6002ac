#include "genapi/nodes/floatbase.h"

#include <algorithm>
#include <cmath>

#include "genapi/description/links.h"
#include "genapi/nodes/nodemap.h"
#include "genapi/nodes/textform.h"

namespace GENAPI_NAMESPACE {
namespace Engine {

using GENICAM_NAMESPACE::gcstring;

namespace {
constexpr int kDefaultPrecision = 6;

// Limits are numbers, also where a description or a formula says infinity.
double finite(double limit) {
    return std::clamp(limit, -kDoubleMax, kDoubleMax);
}

// Digits behind the decimal point.
std::size_t decimalsOf(const std::string& text) {
    const std::size_t point = text.find('.');
    if (point == std::string::npos) return 0;
    const std::size_t end = text.find_first_not_of("0123456789", point + 1);
    return std::min(end, text.size()) - point - 1;
}
}  // namespace

FloatBase::~FloatBase() = default;

double FloatBase::getFloat(ReadOptions options) {
    requireReadable();
    return readableFloat(options);
}

double FloatBase::readableFloat(ReadOptions options) {
    if (!isValueKnown(options, restsOnNodes())) {
        const Nesting nesting(*this);
        if (refreshesCache()) options.refresh = options.ignoreCache;
        value_ = readValue(options);
        valueWasRead(options);
    }
    const double value = value_;
    if (options.verify && !isVerified()) {
        checkRange(value);
        checkErrorNodes();
        valueWasVerified();
    }
    return value;
}

void FloatBase::setFloat(double value, bool verify) {
    requireWritable(verify);
    if (verify) checkRange(value);
    {
        const Nesting nesting(*this);
        writeValue(value, verify);
    }
    value_ = value;
    valueWasWritten();
    if (verify) checkErrorNodes();
}

void FloatBase::checkRange(double value) {
    const double min = minFloat();
    if (value < min)
        throw NODE_ERROR(OutOfRangeException, *this)("Value %f must be greater than or equal %f.",
                                                     value, min);
    const double max = maxFloat();
    if (value > max)
        throw NODE_ERROR(OutOfRangeException, *this)("Value %f must be smaller than or equal %f.",
                                                     value, max);
}

double FloatBase::minFloat() {
    const double own = finite(ownMin());
    return imposed_ ? std::max(own, imposed_->min) : own;
}

double FloatBase::maxFloat() {
    const double own = finite(ownMax());
    return imposed_ ? std::min(own, imposed_->max) : own;
}

double FloatBase::incFloat() {
    throw NODE_ERROR(RuntimeException, *this)("node does not have an increment.");
}

std::int64_t FloatBase::getInt(ReadOptions options) {
    return roundToInt(getFloat(options));
}

void FloatBase::setInt(std::int64_t value, bool verify) {
    setFloat(static_cast<double>(value), verify);
}

std::int64_t FloatBase::minInt() {
    return roundToInt(minFloat());
}

std::int64_t FloatBase::maxInt() {
    return roundToInt(maxFloat());
}

gcstring FloatBase::ToString(bool verify, bool ignoreCache) {
    return read("ToString", [&] {
        const std::string text = textInRange(readableFloat({verify, ignoreCache}));
        return gcstring(text.data(), text.size());
    });
}

// Rounding for display must not carry a value over a limit, or its text could not be written back:
// such a value is moved by half a unit of the last digit shown.
std::string FloatBase::textInRange(double value) {
    const Presentation shownAs = shown();
    const auto format = [&](double number) {
        return formatFloat(number, static_cast<EDisplayNotation>(shownAs.notation),
                           shownAs.precision);
    };
    std::string text = format(value);
    double rounded = 0;
    if (!parseFloat(text, rounded)) return text;
    const double half = 0.5 * std::pow(10.0, -static_cast<double>(decimalsOf(text)));
    if (rounded > maxFloat()) return format(value - half);
    if (rounded < minFloat()) return format(value + half);
    return text;
}

void FloatBase::FromString(const gcstring& text, bool verify) {
    modify("FromString", changedByWriteTo(description(), id()), [&] {
        double value = 0;
        if (!parseFloat({text.c_str(), text.length()}, value)) {
            requireWritable(verify);  // comes first, but is not asked twice
            throw NODE_ERROR(InvalidArgumentException, *this)(
                "Node '%s' : cannot convert string '%s' to double.", name().data(), text.c_str());
        }
        setFloat(value, verify);
    });
}

bool FloatBase::IsValueCacheValid() const {
    const Entry entry(*this, "IsValueCacheValid");
    return isValueCached();
}

void FloatBase::SetValue(double value, bool verify) {
    modify("SetValue", changedByWriteTo(description(), id()), [&] { setFloat(value, verify); });
}

IFloat& FloatBase::operator=(double value) {
    SetValue(value);
    return *this;
}

double FloatBase::GetValue(bool verify, bool ignoreCache) {
    return read("GetValue", [&] { return readableFloat({verify, ignoreCache}); });
}

double FloatBase::GetMin() {
    const Entry entry(*this, "GetMin");
    requireAvailable();
    return minFloat();
}

double FloatBase::GetMax() {
    const Entry entry(*this, "GetMax");
    requireAvailable();
    return maxFloat();
}

bool FloatBase::HasInc() {
    const Entry entry(*this, "HasInc");
    return hasInc();
}

EIncMode FloatBase::GetIncMode() {
    const Entry entry(*this, "GetIncMode");
    return hasInc() ? fixedIncrement : noIncrement;
}

double FloatBase::GetInc() {
    const Entry entry(*this, "GetInc");
    if (hasInc()) requireAvailable();
    return incFloat();
}

double_autovector_t FloatBase::GetListOfValidValues(bool bounded) {
    const Entry entry(*this, "GetListOfValidValues");
    if (bounded) {
        maxFloat();
        minFloat();
    }
    return double_autovector_t();
}

Presentation FloatBase::shown() const {
    Presentation result = effectivePresentation(*const_cast<FloatBase*>(this));
    if (result.representation == _UndefinedRepresentation) result.representation = PureNumber;
    if (result.notation == _UndefinedEDisplayNotation) result.notation = fnAutomatic;
    if (result.precision < 0) result.precision = kDefaultPrecision;
    return result;
}

ERepresentation FloatBase::GetRepresentation() {
    const Entry entry(*this, "GetRepresentation");
    return static_cast<ERepresentation>(shown().representation);
}

gcstring FloatBase::GetUnit() const {
    const Entry entry(*this, "GetUnit");
    return gcstring(description().text(shown().unit).data());
}

EDisplayNotation FloatBase::GetDisplayNotation() const {
    const Entry entry(*this, "GetDisplayNotation");
    return static_cast<EDisplayNotation>(shown().notation);
}

int64_t FloatBase::GetDisplayPrecision() const {
    const Entry entry(*this, "GetDisplayPrecision");
    return shown().precision;
}

FloatBase::Limits& FloatBase::imposed() {
    if (!imposed_) imposed_ = std::make_unique<Limits>();
    return *imposed_;
}

void FloatBase::ImposeMin(double value) {
    const Entry entry(*this, "ImposeMin");
    imposed().min = value;
}

void FloatBase::ImposeMax(double value) {
    const Entry entry(*this, "ImposeMax");
    imposed().max = value;
}

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE
