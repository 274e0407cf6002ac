#include "genapi/nodes/numbersource.h"

#include <algorithm>

#include "genapi/nodes/numberof.h"

namespace GENAPI_NAMESPACE {
namespace Engine {

template <typename T>
Slice<NodeId> NumberSource<T>::Copies() const {
    return NodeTables::SliceOf(owner_.CameraDescription().Tables().nodes, data_.copies);
}

template <typename T>
Slice<IndexedCase<T>> NumberSource<T>::Cases() const {
    return NodeTables::SliceOf(CasesOf<T>(owner_.CameraDescription().Tables()), data_.cases);
}

template <typename T>
typename NumberSource<T>::Picked NumberSource<T>::Pick() {
    if (data_.index == kNoNode) return {&data_.value, 0};
    const int64_t index = owner_.NodeAt(data_.index).GetInt({});
    const auto cases = Cases();
    const auto* found =
        std::lower_bound(cases.begin(), cases.end(), index,
                         [](const IndexedCase<T>& c, int64_t i) { return c.index < i; });
    if (found != cases.end() && found->index == index)
        return {&found->value, static_cast<size_t>(found - cases.begin()) + 1};
    return {&data_.otherwise, 0};
}

template <typename T>
void NumberSource<T>::MakeConstants() {
    auto constants = std::make_unique<std::vector<T>>();
    constants->push_back(data_.index == kNoNode ? data_.value.constant : data_.otherwise.constant);
    for (const IndexedCase<T>& one : Cases())
        constants->push_back(one.value.constant);
    constants_ = std::move(constants);
}

template <typename T>
T NumberSource<T>::Read(ReadOptions options) {
    const Picked picked = Pick();
    if (picked.setting->IsNode())
        return NumberOf<T>::Read(owner_.NodeAt(picked.setting->node), options);
    return constants_ ? (*constants_)[picked.slot] : picked.setting->constant;
}

template <typename T>
void NumberSource<T>::Write(T value, bool verify) {
    const Picked picked = Pick();
    if (picked.setting->IsNode()) {
        NumberOf<T>::Write(owner_.NodeAt(picked.setting->node), value, verify);
    } else {
        owner_.Map().BeginWrite(owner_.Id());
        if (!constants_) MakeConstants();
        (*constants_)[picked.slot] = value;
    }
    for (const NodeId copy : Copies())
        NumberOf<T>::Write(owner_.NodeAt(copy), value, verify);
}

template <typename T>
T NumberSource<T>::Limit(const Setting<T>& setting) {
    return setting.IsNode() ? NumberOf<T>::Read(owner_.NodeAt(setting.node), {}) : setting.constant;
}

template <typename T>
T NumberSource<T>::Min() {
    const Nesting nesting(owner_);
    if (data_.min.Given()) return Limit(data_.min);
    const Setting<T>& picked = *Pick().setting;
    T result =
        picked.IsNode() ? NumberOf<T>::Min(owner_.NodeAt(picked.node)) : NumberOf<T>::kLowest;
    for (const NodeId copy : Copies())
        result = std::max(result, NumberOf<T>::Min(owner_.NodeAt(copy)));
    return result;
}

template <typename T>
T NumberSource<T>::Max() {
    const Nesting nesting(owner_);
    if (data_.max.Given()) return Limit(data_.max);
    const Setting<T>& picked = *Pick().setting;
    T result =
        picked.IsNode() ? NumberOf<T>::Max(owner_.NodeAt(picked.node)) : NumberOf<T>::kHighest;
    for (const NodeId copy : Copies())
        result = std::min(result, NumberOf<T>::Max(owner_.NodeAt(copy)));
    return result;
}

template <typename T>
bool NumberSource<T>::HasInc() {
    const Nesting nesting(owner_);
    if (data_.inc.Given()) return true;
    const Setting<T>& picked = *Pick().setting;
    return picked.IsNode() && owner_.NodeAt(picked.node).HasIncFloat();
}

template <typename T>
T NumberSource<T>::Inc() {
    const Nesting nesting(owner_);
    if (data_.inc.Given()) return Limit(data_.inc);
    const Setting<T>& picked = *Pick().setting;
    return picked.IsNode() ? NumberOf<T>::Inc(owner_.NodeAt(picked.node)) : T{1};
}

template <typename T>
EAccessMode NumberSource<T>::AccessMode(bool relaxed) {
    if (data_.index != kNoNode) {
        const EAccessMode index = Restriction(owner_.NodeAt(data_.index).AccessMode(), true);
        if (!IsAvailable(index)) return index;
    }
    const Setting<T>& picked = *Pick().setting;
    EAccessMode mode = picked.IsNode() ? owner_.NodeAt(picked.node).AccessMode(relaxed) : RW;
    for (const NodeId copy : Copies()) {
        // A value is read-only if one of its places cannot be written.
        const EAccessMode found = owner_.NodeAt(copy).AccessMode(relaxed);
        if (!IsAvailable(found) || !IsWritable(found))
            mode = Combine(mode, IsAvailable(found) ? RO : found);
    }
    return mode;
}

template class NumberSource<int64_t>;
template class NumberSource<double>;

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE
