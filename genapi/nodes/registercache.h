// Contents of registers as they were last seen. Nodes over the same port, address and length share
// one slot, so that what one of them writes into the register the others do not undo.
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

    // The slot of a register. kNoSlot for one that is not worth caching, and when a register with a
    // moving address has filled the cache.
    Slot SlotOf(NodeId port, int64_t address, int64_t length);

    // The content, or null where it is not known.
    const uint8_t* Find(Slot slot) const;
    // Remembers bytes that are the beginning of the register; all of it when length is the
    // register's. A part is taken over only into a known content.
    void Store(Slot slot, const uint8_t* bytes, size_t length);
    void Drop(Slot slot);
    void DropAll() { ++epoch_; }

  private:
    static constexpr int64_t kMaxLength = 1 << 20;  // larger ones are read where they are
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
        uint32_t epoch = 0;  // known while it is the cache's
    };

    std::unordered_map<Key, Slot, Hash> slots_;
    std::vector<Content> contents_;
    uint32_t epoch_ = 1;
};

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE
