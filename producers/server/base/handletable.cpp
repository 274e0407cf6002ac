#include "producers/server/base/handletable.h"

#include "gentl/GenTL.h"
#include "producers/server/base/error.h"

namespace ZelCti {

namespace {

constexpr uint64_t kMark = 0x5A;
constexpr unsigned kMarkShift = 56;
constexpr unsigned kGenerationShift = 24;
constexpr uint32_t kIndexMask = 0xFFFFFF;

Handle Encode(uint32_t index, uint32_t generation) {
    const uint64_t bits =
        kMark << kMarkShift | uint64_t{generation} << kGenerationShift | uint64_t{index};
    return reinterpret_cast<Handle>(bits);
}

uint64_t Bits(Handle handle) {
    return reinterpret_cast<uint64_t>(handle);
}

uint32_t GenerationOf(Handle handle) {
    return static_cast<uint32_t>(Bits(handle) >> kGenerationShift);
}

uint32_t IndexOf(Handle handle) {
    return static_cast<uint32_t>(Bits(handle)) & kIndexMask;
}

}  // namespace

HandleTable::~HandleTable() {
    for (const std::atomic<Block*>& block : blocks_)
        delete block.load();
}

void HandleTable::ThrowInvalid() {
    throw Error(GenTL::GC_ERR_INVALID_HANDLE, "no open module of the kind asked for");
}

HandleTable::Slot* HandleTable::SlotOf(Handle handle) const {
    if (Bits(handle) >> kMarkShift != kMark) return nullptr;
    const uint32_t index = IndexOf(handle);
    if (index >= kSlotsOfBlock * kNumBlocks) return nullptr;
    Block* const block = blocks_[index / kSlotsOfBlock].load(std::memory_order_acquire);
    return block == nullptr ? nullptr : &(*block)[index % kSlotsOfBlock];
}

std::shared_ptr<Object> HandleTable::Lookup(Handle handle) const {
    Slot* const slot = SlotOf(handle);
    if (slot == nullptr) return nullptr;
    const std::lock_guard lock(slot->mutex);
    return slot->generation == GenerationOf(handle) ? slot->object : nullptr;
}

uint32_t HandleTable::TakeSlot() {
    const std::lock_guard lock(slotsMutex_);
    if (!freeSlots_.empty()) {
        const uint32_t index = freeSlots_.back();
        freeSlots_.pop_back();
        return index;
    }
    if (numSlots_ == kSlotsOfBlock * kNumBlocks) {
        throw Error(GenTL::GC_ERR_RESOURCE_EXHAUSTED, "no handle left");
    }
    std::atomic<Block*>& block = blocks_[numSlots_ / kSlotsOfBlock];
    if (block.load(std::memory_order_relaxed) == nullptr) {
        freeSlots_.reserve(numSlots_ + kSlotsOfBlock);  // closing must not fail
        block.store(std::make_unique<Block>().release(), std::memory_order_release);
    }
    return numSlots_++;
}

Handle HandleTable::Open(const std::shared_ptr<Object>& object,
                         const std::shared_ptr<Object>& parent) {
    const uint32_t index = TakeSlot();
    Slot& slot =
        (*blocks_[index / kSlotsOfBlock].load(std::memory_order_acquire))[index % kSlotsOfBlock];
    Handle handle = nullptr;
    {
        const std::lock_guard lock(slot.mutex);
        handle = Encode(index, slot.generation);
        object->handle_ = handle;
        object->parent_ = parent;
        slot.object = object;
        count_.fetch_add(1, std::memory_order_relaxed);
    }
    try {
        if (parent != nullptr && !parent->Adopt(handle)) ThrowInvalid();
    } catch (...) {
        Close(handle);
        throw;
    }
    return handle;
}

std::shared_ptr<Object> HandleTable::Remove(Handle handle) {
    Slot* const slot = SlotOf(handle);
    if (slot == nullptr) return nullptr;
    std::shared_ptr<Object> object;
    {
        const std::lock_guard lock(slot->mutex);
        if (slot->generation != GenerationOf(handle) || slot->object == nullptr) return nullptr;
        object = std::move(slot->object);
        slot->object = nullptr;
        ++slot->generation;
        count_.fetch_sub(1, std::memory_order_relaxed);
    }
    const std::lock_guard lock(slotsMutex_);
    freeSlots_.push_back(IndexOf(handle));
    return object;
}

bool HandleTable::Close(Handle handle) {
    const std::shared_ptr<Object> object = Remove(handle);
    if (object == nullptr) return false;
    if (const std::shared_ptr<Object> parent = object->parent_.lock()) parent->Disown(handle);
    object->OnClosing();
    for (Handle child : object->CloseForChildren())
        Close(child);
    object->OnClose();
    return true;
}

void HandleTable::ForEach(const std::function<void(Object&)>& visit) const {
    for (const std::atomic<Block*>& entry : blocks_) {
        Block* const block = entry.load(std::memory_order_acquire);
        if (block == nullptr) return;
        for (Slot& slot : *block) {
            std::shared_ptr<Object> object;
            {
                const std::lock_guard lock(slot.mutex);
                object = slot.object;
            }
            if (object != nullptr) visit(*object);
        }
    }
}

}  // namespace ZelCti
