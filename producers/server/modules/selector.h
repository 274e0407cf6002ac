// Selectors over lists.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "gentl/GenTL.h"
#include "producers/server/base/error.h"
#include "producers/server/modules/snapshot.h"
#include "producers/server/registers/featuretable.h"
#include "producers/server/registers/selectorrows.h"

namespace ZelCti {

// The item of a list that the registers of a module show: chosen by its index, the first one again
// when the list has become too short. Used by registers only, with their space locked.
template <typename T>
class Selector {
  public:
    // The list must outlive the object.
    explicit Selector(const Snapshot<T>& list) : list_(list) {}

    // Throws GC_ERR_INVALID_INDEX when the list is empty.
    std::shared_ptr<T> Item() const { return list_.At(Index()); }

    // The feature "<item>Selector", and the register "<item>Count" behind it. The object must
    // outlive the registers.
    void AddTo(FeatureTable& features, const std::string& item, const std::string& toolTip,
               uint64_t address);

  private:
    uint32_t Index() const { return index_ < list_.Count() ? index_ : 0; }

    void Check(uint64_t index) const {
        if (index >= list_.Count()) {
            throw Error(GenTL::GC_ERR_INVALID_VALUE, "the list is shorter");
        }
    }

    const Snapshot<T>& list_;
    uint32_t index_ = 0;
};

template <typename T>
void Selector<T>::AddTo(FeatureTable& features, const std::string& item, const std::string& toolTip,
                        uint64_t address) {
    IntegerValue index;
    index.get = [this] { return Index(); };
    index.check = [this](uint64_t value) { Check(value); };
    index.set = [this](uint64_t value) { index_ = static_cast<uint32_t>(value); };
    AddSelector(features, item, toolTip, address, std::move(index),
                [this] { return uint64_t{list_.Count()}; });
}

}  // namespace ZelCti
