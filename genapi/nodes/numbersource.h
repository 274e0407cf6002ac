// Where the value and limits of an Integer or Float come from: Value, pValue with copies, or pIndex
// with a constant or node for each index.
#pragma once

#include <memory>
#include <vector>

#include "genapi/nodes/nodemap.h"

namespace GENAPI_NAMESPACE {
namespace Engine {

template <typename T>
class NumberSource {
  public:
    NumberSource(Node& owner, const NumberData<T>& data) : owner_(owner), data_(data) {}

    const NumberData<T>& Data() const { return data_; }
    // Whether another node provides the value, so that there is something to cache.
    bool IsNode() const { return data_.value.IsNode() || data_.index != kNoNode; }

    T Read(ReadOptions options);
    void Write(T value, bool verify);
    T Min();
    T Max();
    T Inc();
    bool HasInc();
    EAccessMode AccessMode(bool relaxed);

  private:
    // The constant or node in effect; slot is the index of a constant in constants_.
    struct Picked {
        const Setting<T>* setting;
        size_t slot;
    };
    Picked Pick();
    Slice<NodeId> Copies() const;
    Slice<IndexedCase<T>> Cases() const;
    void MakeConstants();
    T Limit(const Setting<T>& setting);

    Node& owner_;
    const NumberData<T>& data_;
    // Written constants, by slot; allocated at the first write.
    std::unique_ptr<std::vector<T>> constants_;
};

extern template class NumberSource<int64_t>;
extern template class NumberSource<double>;

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE
