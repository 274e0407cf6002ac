// The handles of the producer.
#pragma once

#include <array>
#include <atomic>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <vector>

#include "producers/server/base/object.h"

namespace ZelCti {

// Gives out handles and finds the object of a handle in constant time, without a common lock.
//
// A handle is a mark in the top byte, the generation of its slot and the number of the slot. No
// address of user space has the mark, and a slot takes a new generation when its object is closed,
// so that foreign and stale handles are recognised without being followed. Thread-safe.
class HandleTable {
  public:
    HandleTable() = default;
    ~HandleTable();
    HandleTable(const HandleTable&) = delete;
    HandleTable& operator=(const HandleTable&) = delete;

    // Makes the object reachable and hangs it below its parent (null for a root). Throws
    // GC_ERR_INVALID_HANDLE when the parent is closed already.
    Handle Open(const std::shared_ptr<Object>& object, const std::shared_ptr<Object>& parent);

    // The object, whose class names its kinds with `static bool IsKind(Kind)`; throws
    // GC_ERR_INVALID_HANDLE when the handle is null, foreign, stale or of another kind.
    template <typename T>
    std::shared_ptr<T> Find(Handle handle) const {
        std::shared_ptr<Object> object = Lookup(handle);
        if (object == nullptr || !T::IsKind(object->GetKind())) ThrowInvalid();
        return std::static_pointer_cast<T>(std::move(object));
    }

    // Closes the children, then the object. False when another thread was faster.
    bool Close(Handle handle);

    size_t Count() const { return count_.load(std::memory_order_relaxed); }

    // Calls `visit` for each open object, which may be closed meanwhile.
    void ForEach(const std::function<void(Object&)>& visit) const;

  private:
    struct Slot {
        std::mutex mutex;
        uint32_t generation = 0;
        std::shared_ptr<Object> object;
    };
    static constexpr size_t kSlotsOfBlock = 256;
    static constexpr size_t kNumBlocks = 4096;
    using Block = std::array<Slot, kSlotsOfBlock>;

    [[noreturn]] static void ThrowInvalid();

    Slot* SlotOf(Handle handle) const;
    std::shared_ptr<Object> Lookup(Handle handle) const;
    std::shared_ptr<Object> Remove(Handle handle);
    uint32_t TakeSlot();

    // Blocks are added under slotsMutex_ and stay where they are, so that a lookup needs no lock.
    std::array<std::atomic<Block*>, kNumBlocks> blocks_{};
    std::atomic<size_t> count_{0};
    std::mutex slotsMutex_;
    std::vector<uint32_t> freeSlots_;  // guarded by slotsMutex_
    uint32_t numSlots_ = 0;            // guarded by slotsMutex_
};

}  // namespace ZelCti
