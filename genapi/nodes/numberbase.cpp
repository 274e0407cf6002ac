#include "genapi/nodes/numberbase.h"

#include <algorithm>

#include "genapi/description/links.h"
#include "genapi/nodes/nodemap.h"

namespace GENAPI_NAMESPACE {
namespace Engine {

using GENICAM_NAMESPACE::gcstring;

namespace {
constexpr int kDefaultPrecision = 6;
}  // namespace

template <typename Number>
NumberBase<Number>::~NumberBase() = default;

template <typename Number>
Number NumberBase<Number>::ReadNumber(ReadOptions options) {
    RequireReadable();
    return Readable(options);
}

template <typename Number>
Number NumberBase<Number>::Readable(ReadOptions options) {
    if (!IsValueKnown(options, RestsOnNodes())) {
        const Nesting nesting(*this);
        if (RefreshesCache()) options.refresh = options.ignoreCache;
        value_ = ReadValue(options);
        NoteRead(options);
    }
    const Number value = value_;
    if (options.verify && !IsVerified()) {
        CheckRange(value);
        CheckErrorNodes();
        NoteVerified();
    }
    return value;
}

template <typename Number>
void NumberBase<Number>::WriteNumber(Number value, bool verify) {
    RequireWritable(verify);
    if (verify) CheckRange(value);
    {
        const Nesting nesting(*this);
        WriteValue(value, verify);
    }
    value_ = value;
    NoteWritten();
    if (verify) CheckErrorNodes();
}

// Limits are finite, even if a description or a formula gives infinity.
template <typename Number>
Number NumberBase<Number>::Lowest() {
    const Number own = std::clamp(OwnMin(), Numbers::kLowest, Numbers::kHighest);
    return imposed_ ? std::max(own, imposed_->min) : own;
}

template <typename Number>
Number NumberBase<Number>::Highest() {
    const Number own = std::clamp(OwnMax(), Numbers::kLowest, Numbers::kHighest);
    return imposed_ ? std::min(own, imposed_->max) : own;
}

template <typename Number>
gcstring NumberBase<Number>::ToString(bool verify, bool ignoreCache) {
    return RunRead("ToString", [&] { return ToText(Format(Readable({verify, ignoreCache}))); });
}

template <typename Number>
void NumberBase<Number>::FromString(const gcstring& text, bool verify) {
    RunChange("FromString", ChangedByWriteTo(CameraDescription(), Id()), [&] {
        Number value = 0;
        if (!Parse({text.c_str(), text.length()}, value)) {
            RequireWritable(verify);  // its failure precedes this one
            throw NODE_ERROR(InvalidArgumentException, *this)(
                "Node '%s' : cannot convert string '%s' to %s.", Name().data(), text.c_str(),
                Numbers::kName);
        }
        WriteNumber(value, verify);
    });
}

template <typename Number>
bool NumberBase<Number>::IsValueCacheValid() const {
    const Entry entry(*this, "IsValueCacheValid");
    return IsValueCached();
}

template <typename Number>
void NumberBase<Number>::SetValue(Number value, bool verify) {
    RunChange("SetValue", ChangedByWriteTo(CameraDescription(), Id()),
              [&] { WriteNumber(value, verify); });
}

template <typename Number>
typename NumberBase<Number>::Interface& NumberBase<Number>::operator=(Number value) {
    SetValue(value);
    return *this;
}

template <typename Number>
Number NumberBase<Number>::GetValue(bool verify, bool ignoreCache) {
    return RunRead("GetValue", [&] { return Readable({verify, ignoreCache}); });
}

template <typename Number>
Number NumberBase<Number>::GetMin() {
    const Entry entry(*this, "GetMin");
    RequireAvailable();
    return Lowest();
}

template <typename Number>
Number NumberBase<Number>::GetMax() {
    const Entry entry(*this, "GetMax");
    RequireAvailable();
    return Highest();
}

template <typename Number>
Number NumberBase<Number>::GetInc() {
    const Entry entry(*this, "GetInc");
    if (HasOwnInc()) RequireAvailable();
    return Numbers::Inc(*this);
}

template <typename Number>
Presentation NumberBase<Number>::Shown() const {
    Presentation result = EffectivePresentation(*this);
    if (result.representation == _UndefinedRepresentation) result.representation = PureNumber;
    if (result.notation == _UndefinedEDisplayNotation) result.notation = fnAutomatic;
    if (result.precision < 0) result.precision = kDefaultPrecision;
    return result;
}

template <typename Number>
ERepresentation NumberBase<Number>::GetRepresentation() {
    const Entry entry(*this, "GetRepresentation");
    return static_cast<ERepresentation>(Shown().representation);
}

template <typename Number>
gcstring NumberBase<Number>::Unit() const {
    const Entry entry(*this, "GetUnit");
    return gcstring(CameraDescription().Text(Shown().unit).data());
}

template <typename Number>
typename NumberBase<Number>::Limits& NumberBase<Number>::MakeImposed() {
    if (!imposed_) imposed_ = std::make_unique<Limits>();
    return *imposed_;
}

template <typename Number>
void NumberBase<Number>::ImposeMin(Number value) {
    const Entry entry(*this, "ImposeMin");
    MakeImposed().min = value;
}

template <typename Number>
void NumberBase<Number>::ImposeMax(Number value) {
    const Entry entry(*this, "ImposeMax");
    MakeImposed().max = value;
}

template class NumberBase<int64_t>;
template class NumberBase<double>;

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE
