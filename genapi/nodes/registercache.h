// The last known contents of registers. Nodes over the same port, address and length share a slot,
// so that no node undoes what another one writes into the register.
#pragma once

#include <cstdint>
#include <memory>
#include <unordered_map>
#include <vector>

#include "genapi/description/description.h"

namespace GENAPI_NAMESPACE {
namespace Engine {

class RegisterCache {
  public:
    using Slot = uint32_t;
    static constexpr Slot kNoSlot = 0xFFFFFFFF;

    // The slot of a register. kNoSlot for one that is too long to cache, and after a register with
    // a moving address has filled the cache.
    Slot SlotOf(NodeId port, int64_t address, int64_t length);

    // The content, or null if it is unknown.
    const uint8_t* Find(Slot slot) const;
    // Remembers the first bytes of the register. They may be fewer than the register's only if its
    // content is known.
    void Store(Slot slot, const uint8_t* bytes, size_t length);
    void Drop(Slot slot);
    void DropAll() { ++epoch_; }

  private:
    static constexpr int64_t kMaxLength = 1 << 20;  // longer registers are not cached
    static constexpr size_t kMaxSlots = 1 << 16;    // a moving address must not fill memory

    struct Key {
        NodeId port;
        uint32_t length;
        int64_t address;
        bool operator==(const Key& other) const {
            return port == other.port && length == other.length && address == other.address;
        }
    };
    struct Hash {
        size_t operator()(const Key& key) const;
    };
    struct Content {
        std::unique_ptr<uint8_t[]> bytes;
        uint32_t length = 0;
        uint32_t epoch = 0;  // the content is known while this equals the cache's epoch
    };

    std::unordered_map<Key, Slot, Hash> slots_;
    std::vector<Content> contents_;
    uint32_t epoch_ = 1;
};

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE
