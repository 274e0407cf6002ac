// Lists that change only when they are updated.
#pragma once

#include <cstdint>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "gentl/GenTL.h"
#include "producers/server/base/error.h"

namespace ZelCti {

constexpr uint64_t kUpdateMs = 1000;  // the time for an update that a feature asks for

// The interfaces or cameras that a module lists: what was there at its last update. A module just
// opened lists what is there already, or what a first search shows, for consumers that do not
// update; its first update still reports a change when there is anything, for those that list only
// upon a change. T has an Id(),
// which no other item has, and which never changes. Thread-safe.
template <typename T>
class Snapshot {
  public:
    using Items = std::vector<std::shared_ptr<T>>;

    explicit Snapshot(std::shared_ptr<const Items> items) : items_(std::move(items)) {}

    // Returns whether the items have changed since the last update.
    bool Update(std::shared_ptr<const Items> items) {
        const std::lock_guard lock(mutex_);
        const bool changed = items != reported_ && *items != *reported_;
        Set(std::move(items));
        reported_ = items_;
        return changed;
    }

    // The items of a search that is no update.
    void Show(std::shared_ptr<const Items> items) {
        const std::lock_guard lock(mutex_);
        Set(std::move(items));
    }

    uint32_t Count() const {
        const std::lock_guard lock(mutex_);
        return static_cast<uint32_t>(items_->size());
    }

    std::shared_ptr<T> At(uint32_t index) const {
        const std::lock_guard lock(mutex_);
        if (index < items_->size()) return (*items_)[index];
        throw Error(GenTL::GC_ERR_INVALID_INDEX, "the list is shorter");
    }

    std::shared_ptr<T> Find(const char* id) const {
        if (id == nullptr) throw Error(GenTL::GC_ERR_INVALID_PARAMETER, "null identifier");
        const std::lock_guard lock(mutex_);
        if (byId_.empty()) IndexById();
        const auto item = byId_.find(id);
        if (item != byId_.end()) return (*items_)[item->second];
        throw Error(GenTL::GC_ERR_INVALID_ID, std::string(id) + " is not listed");
    }

  private:
    void Set(std::shared_ptr<const Items> items) {
        if (items != items_) byId_.clear();
        items_ = std::move(items);
    }

    void IndexById() const {
        for (size_t i = 0; i < items_->size(); ++i)
            byId_.emplace((*items_)[i]->Id(), i);
    }

    mutable std::mutex mutex_;  // guards all that follows
    std::shared_ptr<const Items> items_;
    std::shared_ptr<const Items> reported_ = std::make_shared<const Items>();

    // The indices of the items, made when one is first asked for.
    mutable std::unordered_map<std::string_view, size_t> byId_;
};

}  // namespace ZelCti
