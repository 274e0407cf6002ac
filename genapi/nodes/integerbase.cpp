#include "genapi/nodes/integerbase.h"

#include <algorithm>
#include <cinttypes>

#include "genapi/description/links.h"
#include "genapi/nodes/nodemap.h"
#include "genapi/nodes/textform.h"

namespace GENAPI_NAMESPACE {
namespace Engine {

using GENICAM_NAMESPACE::gcstring;

IntegerBase::~IntegerBase() = default;

std::int64_t IntegerBase::getInt(ReadOptions options) {
    requireReadable();
    return readableInt(options);
}

std::int64_t IntegerBase::readableInt(ReadOptions options) {
    if (!isValueKnown(options, restsOnNodes())) {
        const Nesting nesting(*this);
        if (refreshesCache()) options.refresh = options.ignoreCache;
        value_ = readValue(options);
        valueWasRead(options);
    }
    const std::int64_t value = value_;
    if (options.verify && !isVerified()) {
        checkRange(value);
        checkErrorNodes();
        valueWasVerified();
    }
    return value;
}

void IntegerBase::setInt(std::int64_t value, bool verify) {
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

void IntegerBase::checkRange(std::int64_t value) {
    const std::int64_t min = minInt();
    if (value < min)
        throw NODE_ERROR(OutOfRangeException, *this)(
            "Value = %" PRId64 " must be equal or greater than Min = %" PRId64 ".", value, min);
    const std::int64_t max = maxInt();
    if (value > max)
        throw NODE_ERROR(OutOfRangeException, *this)(
            "Value = %" PRId64 " must be equal or smaller than Max = %" PRId64 ".", value, max);
    const std::int64_t inc = incInt();
    if (inc <= 0)
        throw NODE_ERROR(LogicalErrorException, *this)("Increment must be larger than 0.");
    if (inc == 1) return;
    const std::uint64_t distance =
        static_cast<std::uint64_t>(value) - static_cast<std::uint64_t>(min);
    if (distance % static_cast<std::uint64_t>(inc) != 0)
        throw NODE_ERROR(OutOfRangeException, *this)(
            "The difference between Value = %" PRId64 " and Min = %" PRId64
            " must be dividable without rest by Inc = %" PRId64 ".",
            value, min, inc);
}

std::int64_t IntegerBase::minInt() {
    const std::int64_t own = ownMin();
    return imposed_ ? std::max(own, imposed_->min) : own;
}

std::int64_t IntegerBase::maxInt() {
    const std::int64_t own = ownMax();
    return imposed_ ? std::min(own, imposed_->max) : own;
}

double IntegerBase::getFloat(ReadOptions options) {
    return static_cast<double>(getInt(options));
}

void IntegerBase::setFloat(double value, bool verify) {
    std::int64_t rounded = roundToInt(value);
    const std::int64_t inc = incInt();
    if (inc > 1) rounded = roundToGrid(rounded, minInt(), inc);
    setInt(rounded, verify);
}

double IntegerBase::minFloat() {
    return static_cast<double>(minInt());
}

double IntegerBase::maxFloat() {
    return static_cast<double>(maxInt());
}

double IntegerBase::incFloat() {
    return static_cast<double>(incInt());
}

gcstring IntegerBase::ToString(bool verify, bool ignoreCache) {
    return read("ToString", [&] {
        const std::int64_t value = readableInt({verify, ignoreCache});
        const auto representation = effectivePresentation(*this).representation;
        const std::string text = formatInteger(value, static_cast<ERepresentation>(representation));
        return gcstring(text.data(), text.size());
    });
}

void IntegerBase::FromString(const gcstring& text, bool verify) {
    modify("FromString", changedByWriteTo(description(), id()), [&] {
        const auto representation = effectivePresentation(*this).representation;
        std::int64_t value = 0;
        if (!parseInteger({text.c_str(), text.length()},
                          static_cast<ERepresentation>(representation), value)) {
            requireWritable(verify);  // comes first, but is not asked twice
            throw NODE_ERROR(InvalidArgumentException, *this)(
                "Node '%s' : cannot convert string '%s' to int.", name().data(), text.c_str());
        }
        setInt(value, verify);
    });
}

bool IntegerBase::IsValueCacheValid() const {
    const Entry entry(*this, "IsValueCacheValid");
    return isValueCached();
}

void IntegerBase::SetValue(int64_t value, bool verify) {
    modify("SetValue", changedByWriteTo(description(), id()), [&] { setInt(value, verify); });
}

IInteger& IntegerBase::operator=(int64_t value) {
    SetValue(value);
    return *this;
}

int64_t IntegerBase::GetValue(bool verify, bool ignoreCache) {
    return read("GetValue", [&] { return readableInt({verify, ignoreCache}); });
}

int64_t IntegerBase::GetMin() {
    const Entry entry(*this, "GetMin");
    requireAvailable();
    return minInt();
}

int64_t IntegerBase::GetMax() {
    const Entry entry(*this, "GetMax");
    requireAvailable();
    return maxInt();
}

EIncMode IntegerBase::GetIncMode() {
    const Entry entry(*this, "GetIncMode");
    return validValues().empty() ? fixedIncrement : listIncrement;
}

int64_t IntegerBase::GetInc() {
    const Entry entry(*this, "GetInc");
    requireAvailable();
    return incInt();
}

int64_autovector_t IntegerBase::GetListOfValidValues(bool bounded) {
    const Entry entry(*this, "GetListOfValidValues");
    std::int64_t min = kInt64Min, max = kInt64Max;
    if (bounded) {
        max = maxInt();
        min = minInt();
    }
    std::vector<std::int64_t> found;
    for (const std::int64_t value : validValues())
        if (value >= min && value <= max) found.push_back(value);
    int64_autovector_t list(found.size());
    for (std::size_t i = 0; i < found.size(); ++i)
        list[i] = found[i];
    return list;
}

ERepresentation IntegerBase::GetRepresentation() {
    const Entry entry(*this, "GetRepresentation");
    const auto representation = effectivePresentation(*this).representation;
    return representation == _UndefinedRepresentation
               ? PureNumber
               : static_cast<ERepresentation>(representation);
}

gcstring IntegerBase::GetUnit() {
    const Entry entry(*this, "GetUnit");
    return gcstring(description().text(effectivePresentation(*this).unit).data());
}

IntegerBase::Limits& IntegerBase::imposed() {
    if (!imposed_) imposed_ = std::make_unique<Limits>();
    return *imposed_;
}

void IntegerBase::ImposeMin(int64_t value) {
    const Entry entry(*this, "ImposeMin");
    imposed().min = value;
}

void IntegerBase::ImposeMax(int64_t value) {
    const Entry entry(*this, "ImposeMax");
    imposed().max = value;
}

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE
