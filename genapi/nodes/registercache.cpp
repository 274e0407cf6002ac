#include "genapi/nodes/registercache.h"

#include <algorithm>

namespace GENAPI_NAMESPACE {
namespace Engine {

size_t RegisterCache::Hash::operator()(const Key& key) const {
    uint64_t hash = static_cast<uint64_t>(key.address) * 0x9E3779B97F4A7C15u;
    hash ^= (static_cast<uint64_t>(key.port) << 32) + key.length;
    hash *= 0xBF58476D1CE4E5B9u;
    return static_cast<size_t>(hash ^ (hash >> 29));
}

RegisterCache::Slot RegisterCache::SlotOf(NodeId port, int64_t address, int64_t length) {
    if (length < 0 || length > kMaxLength) return kNoSlot;
    const Key key{port, static_cast<uint32_t>(length), address};
    const auto known = slots_.find(key);
    if (known != slots_.end()) return known->second;
    if (contents_.size() >= kMaxSlots) return kNoSlot;
    const Slot slot = static_cast<Slot>(contents_.size());
    contents_.emplace_back();
    contents_.back().length = key.length;
    slots_.emplace(key, slot);
    return slot;
}

const uint8_t* RegisterCache::Find(Slot slot) const {
    if (slot == kNoSlot || contents_[slot].epoch != epoch_) return nullptr;
    return contents_[slot].bytes.get();
}

void RegisterCache::Store(Slot slot, const uint8_t* bytes, size_t length) {
    if (slot == kNoSlot) return;
    Content& content = contents_[slot];
    const bool known = content.epoch == epoch_;
    if (length > content.length || (length < content.length && !known)) return;
    if (!content.bytes) content.bytes = std::make_unique<uint8_t[]>(content.length + size_t{1});
    std::copy_n(bytes, length, content.bytes.get());
    content.epoch = epoch_;
}

void RegisterCache::Drop(Slot slot) {
    if (slot != kNoSlot) contents_[slot].epoch = 0;
}

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE
