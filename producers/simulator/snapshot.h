// Lists that change only when they are updated.
#ifndef ZELSIM_SNAPSHOT_H
#define ZELSIM_SNAPSHOT_H

#include <cstdint>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "gentl/GenTL.h"
#include "producers/simulator/error.h"

namespace ZelSim {

// The interfaces or cameras that a module lists: what was there at its last update. A module just
// opened lists what is there already, for consumers that do not update; its first update still
// reports a change when there is anything, for those that list only upon a change. T has an Id().
// Thread-safe.
template <typename T>
class Snapshot {
  public:
    using Items = std::vector<std::shared_ptr<T>>;

    explicit Snapshot(Items items) : items_(std::move(items)) {}

    // Whether the items differ from those of the update before.
    bool Update(Items items) {
        const std::lock_guard lock(mutex_);
        items_ = std::move(items);
        const bool changed = items_ != reported_;
        reported_ = items_;
        return changed;
    }

    uint32_t Count() const {
        const std::lock_guard lock(mutex_);
        return static_cast<uint32_t>(items_.size());
    }

    std::shared_ptr<T> At(uint32_t index) const {
        const std::lock_guard lock(mutex_);
        if (index < items_.size()) return items_[index];
        throw Error(GenTL::GC_ERR_INVALID_INDEX, "the list is shorter");
    }

    std::shared_ptr<T> Find(const char* id) const {
        if (id == nullptr) throw Error(GenTL::GC_ERR_INVALID_PARAMETER, "null identifier");
        const std::lock_guard lock(mutex_);
        for (const std::shared_ptr<T>& item : items_) {
            if (item->Id() == id) return item;
        }
        throw Error(GenTL::GC_ERR_INVALID_ID, std::string(id) + " is not listed");
    }

  private:
    mutable std::mutex mutex_;
    Items items_;     // guarded by mutex_
    Items reported_;  // guarded by mutex_
};

}  // namespace ZelSim

#endif  // ZELSIM_SNAPSHOT_H
