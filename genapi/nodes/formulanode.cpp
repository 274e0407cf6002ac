#include "genapi/nodes/formulanode.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <type_traits>

#include "genapi/nodes/nodemap.h"
#include "genapi/nodes/numberof.h"

namespace GENAPI_NAMESPACE {
namespace Engine {

template <typename Number>
SwissKnifeNode<Number>::SwissKnifeNode(NodeMap& map, NodeId id)
    : Family<Number>(map, id),
      data_(this->CameraDescription().Tables().swissKnives[this->Record().data]) {}

template <typename Number>
Number SwissKnifeNode<Number>::ReadValue(ReadOptions options) {
    return Evaluate<Number>(*this, data_.formula, options);
}

template <typename Number>
void SwissKnifeNode<Number>::WriteValue(Number, bool) {
    throw NODE_ERROR(AccessException, *this)("Node is not writable.");
}

template <typename Number>
Number SwissKnifeNode<Number>::OwnMin() {
    return NumberOf<Number>::kLowest;
}

template <typename Number>
Number SwissKnifeNode<Number>::OwnMax() {
    return NumberOf<Number>::kHighest;
}

template <typename Number>
EAccessMode SwissKnifeNode<Number>::SourceAccessMode(bool) {
    return RO;
}

template <typename Number>
ConverterNode<Number>::ConverterNode(NodeMap& map, NodeId id)
    : Family<Number>(map, id),
      data_(this->CameraDescription().Tables().converters[this->Record().data]) {}

template <typename Number>
Number ConverterNode<Number>::ReadValue(ReadOptions options) {
    const Number raw = NumberOf<Number>::Read(this->NodeAt(data_.value), options);
    return Evaluate<Number>(*this, data_.formulaFrom, {}, raw);
}

template <typename Number>
void ConverterNode<Number>::WriteValue(Number value, bool verify) {
    const Number raw = Evaluate<Number>(*this, data_.formulaTo, {}, value);
    NumberOf<Number>::Write(this->NodeAt(data_.value), raw, verify);
}

template <typename Number>
typename ConverterNode<Number>::Bounds ConverterNode<Number>::FindBounds() {
    if (data_.slope == Varying) return {NumberOf<Number>::kLowest, NumberOf<Number>::kHighest};
    const Number first = AtMin(), second = AtMax();
    return {std::min(first, second), std::max(first, second)};
}

// The limits of the node below, converted by the formula.
template <typename Number>
Number ConverterNode<Number>::AtMin() {
    const Nesting nesting(*this);
    const Number raw = NumberOf<Number>::Min(this->NodeAt(data_.value));
    return Evaluate<Number>(*this, data_.formulaFrom, {}, raw);
}

template <typename Number>
Number ConverterNode<Number>::AtMax() {
    const Nesting nesting(*this);
    const Number raw = NumberOf<Number>::Max(this->NodeAt(data_.value));
    return Evaluate<Number>(*this, data_.formulaFrom, {}, raw);
}

template <typename Number>
bool ConverterNode<Number>::HasOwnInc() {
    if (std::is_integral_v<Number>) return Family<Number>::HasOwnInc();
    const Nesting nesting(*this);
    return data_.isLinear && this->NodeAt(data_.value).HasIncFloat();
}

template <typename Number>
Number ConverterNode<Number>::OwnInc() {
    if (std::is_integral_v<Number>) return Family<Number>::OwnInc();
    const Nesting nesting(*this);
    const Number step = static_cast<Number>(this->NodeAt(data_.value).IncFloat());
    return std::abs(Evaluate<Number>(*this, data_.formulaFrom, {}, step) -
                    Evaluate<Number>(*this, data_.formulaFrom, {}, Number{}));
}

template <typename Number>
Number ConverterNode<Number>::OwnMin() {
    if (data_.slope == Increasing) return AtMin();
    if (data_.slope == Decreasing) return AtMax();
    return FindBounds().min;
}

template <typename Number>
Number ConverterNode<Number>::OwnMax() {
    if (data_.slope == Increasing) return AtMax();
    if (data_.slope == Decreasing) return AtMin();
    return FindBounds().max;
}

template <typename Number>
EAccessMode ConverterNode<Number>::SourceAccessMode(bool relaxed) {
    return this->NodeAt(data_.value).AccessMode(relaxed);
}

template class SwissKnifeNode<int64_t>;
template class SwissKnifeNode<double>;
template class ConverterNode<int64_t>;
template class ConverterNode<double>;

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE
