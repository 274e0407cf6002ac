// Selectors over lists.
#ifndef ZELSIM_SELECTOR_H
#define ZELSIM_SELECTOR_H

#include <cstdint>
#include <memory>

#include "gentl/GenTL.h"
#include "producers/simulator/error.h"
#include "producers/simulator/registerspace.h"
#include "producers/simulator/snapshot.h"

namespace ZelSim {

// The item of a list that the registers of a module tell about: chosen by its index, the first one
// again when the list has become too short. Used by registers only, with their space locked.
template <typename T>
class Selector {
  public:
    // The list must outlive the object.
    explicit Selector(const Snapshot<T>& list) : list_(list) {}

    // Throws GC_ERR_INVALID_INDEX when the list is empty.
    std::shared_ptr<T> Item() const { return list_.At(Index()); }

    // The registers of the index, and of the length of the list; the object must outlive them.
    void AddTo(RegisterSpace& registers, uint64_t indexAddress, uint64_t countAddress) {
        registers.Add(RegisterSpace::Integer{
            indexAddress, 4, Access::ReadWrite, [this] { return Index(); },
            [this](uint64_t index) { Check(index); },
            [this](uint64_t index) { index_ = static_cast<uint32_t>(index); }});
        registers.Add(RegisterSpace::Integer{countAddress, 4, Access::ReadOnly,
                                             [this] { return uint64_t{list_.Count()}; }, nullptr,
                                             nullptr});
    }

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

}  // namespace ZelSim

#endif  // ZELSIM_SELECTOR_H
