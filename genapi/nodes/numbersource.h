// Where the value and limits of an Integer or Float come from: Value, pValue with copies, or pIndex
// with one constant or node for each index.
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

    const NumberData<T>& data() const { return data_; }
    // The node behind pValue, or null.
    Node* valueNode() const;
    // Whether the value comes from another node, so that there is something to cache.
    bool isNode() const { return data_.value.isNode() || data_.index != kNoNode; }

    T read(ReadOptions options);
    void write(T value, bool verify);
    T min();
    T max();
    T inc();
    bool hasInc();
    EAccessMode accessMode(bool relaxed);

  private:
    // The constant or node that counts now; slot is the place of a constant in constants_.
    struct Picked {
        const Setting<T>* setting;
        std::size_t slot;
    };
    Picked pick();
    Slice<NodeId> copies() const;
    Node* pickedNode();
    T& constant(const Picked& picked);
    T limit(const Setting<T>& setting);

    Node& owner_;
    const NumberData<T>& data_;
    // Constants that were written, by slot; made with the first write.
    std::unique_ptr<std::vector<T>> constants_;
};

extern template class NumberSource<std::int64_t>;
extern template class NumberSource<double>;

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE
