#include "genapi/nodes/formulanodes.h"

#include <algorithm>
#include <cmath>
#include <type_traits>

#include "genapi/nodes/nodemap.h"
#include "genapi/nodes/numberof.h"

namespace GENAPI_NAMESPACE {
namespace Engine {

template <typename Number>
SwissKnifeNode<Number>::SwissKnifeNode(NodeMap& map, NodeId id)
    : Family<Number>(map, id),
      data_(this->description().tables().swissKnives[this->record().data]) {}

template <typename Number>
Number SwissKnifeNode<Number>::readValue(ReadOptions options) {
    return evaluate<Number>(*this, data_.formula, options);
}

template <typename Number>
void SwissKnifeNode<Number>::writeValue(Number, bool) {
    throw NODE_ERROR(AccessException, *this)("Node is not writable.");
}

template <typename Number>
Number SwissKnifeNode<Number>::ownMin() {
    return NumberOf<Number>::kLowest;
}

template <typename Number>
Number SwissKnifeNode<Number>::ownMax() {
    return NumberOf<Number>::kHighest;
}

template <typename Number>
EAccessMode SwissKnifeNode<Number>::sourceAccessMode(bool) {
    return RO;
}

template <typename Number>
ConverterNode<Number>::ConverterNode(NodeMap& map, NodeId id)
    : Family<Number>(map, id),
      data_(this->description().tables().converters[this->record().data]) {}

template <typename Number>
Number ConverterNode<Number>::readValue(ReadOptions options) {
    const Number raw = NumberOf<Number>::read(this->node(data_.value), options);
    return evaluate<Number>(*this, data_.formulaFrom, {}, raw);
}

template <typename Number>
void ConverterNode<Number>::writeValue(Number value, bool verify) {
    const Number raw = evaluate<Number>(*this, data_.formulaTo, {}, value);
    NumberOf<Number>::write(this->node(data_.value), raw, verify);
}

template <typename Number>
typename ConverterNode<Number>::Bounds ConverterNode<Number>::bounds() {
    if (data_.slope == Varying) return {NumberOf<Number>::kLowest, NumberOf<Number>::kHighest};
    const Number first = atMin(), second = atMax();
    return {std::min(first, second), std::max(first, second)};
}

// The limits of the node below through the formula.
template <typename Number>
Number ConverterNode<Number>::atMin() {
    const Nesting nesting(*this);
    const Number raw = NumberOf<Number>::min(this->node(data_.value));
    return evaluate<Number>(*this, data_.formulaFrom, {}, raw);
}

template <typename Number>
Number ConverterNode<Number>::atMax() {
    const Nesting nesting(*this);
    const Number raw = NumberOf<Number>::max(this->node(data_.value));
    return evaluate<Number>(*this, data_.formulaFrom, {}, raw);
}

template <typename Number>
bool ConverterNode<Number>::hasInc() {
    if (std::is_integral_v<Number>) return Family<Number>::hasInc();
    const Nesting nesting(*this);
    return data_.isLinear && this->node(data_.value).hasInc();
}

template <typename Number>
double ConverterNode<Number>::incFloat() {
    if (std::is_integral_v<Number> || !hasInc()) return Family<Number>::incFloat();
    const Nesting nesting(*this);
    const Number step = static_cast<Number>(this->node(data_.value).incFloat());
    return std::fabs(static_cast<double>(evaluate<Number>(*this, data_.formulaFrom, {}, step) -
                                         evaluate<Number>(*this, data_.formulaFrom, {}, Number{})));
}

template <typename Number>
Number ConverterNode<Number>::ownMin() {
    if (data_.slope == Increasing) return atMin();
    if (data_.slope == Decreasing) return atMax();
    return bounds().min;
}

template <typename Number>
Number ConverterNode<Number>::ownMax() {
    if (data_.slope == Increasing) return atMax();
    if (data_.slope == Decreasing) return atMin();
    return bounds().max;
}

template <typename Number>
EAccessMode ConverterNode<Number>::sourceAccessMode(bool relaxed) {
    return this->node(data_.value).accessMode(relaxed);
}

template class SwissKnifeNode<std::int64_t>;
template class SwissKnifeNode<double>;
template class ConverterNode<std::int64_t>;
template class ConverterNode<double>;

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE
