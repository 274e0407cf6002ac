#include "genapi/nodes/numbersource.h"

#include <algorithm>

#include "genapi/nodes/numberof.h"

namespace GENAPI_NAMESPACE {
namespace Engine {

namespace {

Slice<IndexedCase<std::int64_t>> casesOf(const NodeTables& tables,
                                         const NumberData<std::int64_t>& data) {
    return NodeTables::slice(tables.integerCases, data.cases);
}

Slice<IndexedCase<double>> casesOf(const NodeTables& tables, const NumberData<double>& data) {
    return NodeTables::slice(tables.floatCases, data.cases);
}

}  // namespace

template <typename T>
Slice<NodeId> NumberSource<T>::copies() const {
    return NodeTables::slice(owner_.description().tables().nodes, data_.copies);
}

template <typename T>
Node* NumberSource<T>::valueNode() const {
    return data_.value.isNode() ? &owner_.node(data_.value.node) : nullptr;
}

template <typename T>
typename NumberSource<T>::Picked NumberSource<T>::pick() {
    if (data_.index == kNoNode) return {&data_.value, 0};
    const std::int64_t index = owner_.node(data_.index).getInt({});
    const auto cases = casesOf(owner_.description().tables(), data_);
    const auto* found =
        std::lower_bound(cases.begin(), cases.end(), index,
                         [](const IndexedCase<T>& c, std::int64_t i) { return c.index < i; });
    if (found != cases.end() && found->index == index)
        return {&found->value, static_cast<std::size_t>(found - cases.begin()) + 1};
    return {&data_.otherwise, 0};
}

template <typename T>
Node* NumberSource<T>::pickedNode() {
    const Picked picked = pick();
    return picked.setting->isNode() ? &owner_.node(picked.setting->node) : nullptr;
}

template <typename T>
T& NumberSource<T>::constant(const Picked& picked) {
    if (!constants_) {
        const auto cases = casesOf(owner_.description().tables(), data_);
        auto constants = std::make_unique<std::vector<T>>();
        constants->push_back(data_.index == kNoNode ? data_.value.constant
                                                    : data_.otherwise.constant);
        for (const IndexedCase<T>& one : cases)
            constants->push_back(one.value.constant);
        constants_ = std::move(constants);
    }
    return (*constants_)[picked.slot];
}

template <typename T>
T NumberSource<T>::read(ReadOptions options) {
    const Picked picked = pick();
    if (picked.setting->isNode())
        return NumberOf<T>::read(owner_.node(picked.setting->node), options);
    return constants_ ? constant(picked) : picked.setting->constant;
}

template <typename T>
void NumberSource<T>::write(T value, bool verify) {
    const Picked picked = pick();
    if (picked.setting->isNode()) {
        NumberOf<T>::write(owner_.node(picked.setting->node), value, verify);
    } else {
        owner_.map().beginWrite(owner_.id());
        constant(picked) = value;
    }
    for (const NodeId copy : copies())
        NumberOf<T>::write(owner_.node(copy), value, verify);
}

template <typename T>
T NumberSource<T>::limit(const Setting<T>& setting) {
    return setting.isNode() ? NumberOf<T>::read(owner_.node(setting.node), {}) : setting.constant;
}

template <typename T>
T NumberSource<T>::min() {
    const Nesting nesting(owner_);
    if (data_.min.given()) return limit(data_.min);
    Node* node = pickedNode();
    T result = node ? NumberOf<T>::min(*node) : NumberOf<T>::kLowest;
    for (const NodeId copy : copies())
        result = std::max(result, NumberOf<T>::min(owner_.node(copy)));
    return result;
}

template <typename T>
T NumberSource<T>::max() {
    const Nesting nesting(owner_);
    if (data_.max.given()) return limit(data_.max);
    Node* node = pickedNode();
    T result = node ? NumberOf<T>::max(*node) : NumberOf<T>::kHighest;
    for (const NodeId copy : copies())
        result = std::min(result, NumberOf<T>::max(owner_.node(copy)));
    return result;
}

template <typename T>
bool NumberSource<T>::hasInc() {
    const Nesting nesting(owner_);
    if (data_.inc.given()) return true;
    Node* node = pickedNode();
    return node && node->hasInc();
}

template <typename T>
T NumberSource<T>::inc() {
    const Nesting nesting(owner_);
    if (data_.inc.given()) return limit(data_.inc);
    Node* node = pickedNode();
    return node ? NumberOf<T>::inc(*node) : T{1};
}

template <typename T>
EAccessMode NumberSource<T>::accessMode(bool relaxed) {
    if (data_.index != kNoNode) {
        const EAccessMode index = restriction(owner_.node(data_.index).accessMode(), true);
        if (!IsAvailable(index)) return index;
    }
    Node* const picked = pickedNode();
    EAccessMode mode = picked ? picked->accessMode(relaxed) : RW;
    for (const NodeId copy : copies()) {
        // A value that cannot be written to all of its places is only read.
        const EAccessMode found = owner_.node(copy).accessMode(relaxed);
        if (!IsAvailable(found) || !IsWritable(found))
            mode = Combine(mode, IsAvailable(found) ? RO : found);
    }
    return mode;
}

template class NumberSource<std::int64_t>;
template class NumberSource<double>;

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE
