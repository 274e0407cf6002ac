// The registers behind a port.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <mutex>
#include <string>
#include <unordered_map>
#include <vector>

#include "producers/wire/byteorder.h"

namespace ZelCti {

enum class Access { ReadOnly, WriteOnly, ReadWrite };

// A range of addresses with a meaning. Every function may be empty; those that are there run with
// the space locked (RegisterSpace::Lock), so that what they work on needs no lock of its own. They
// may access the space, and may fire events; they must not wait for another thread.
struct Register {
    uint64_t address = 0;
    size_t size = 0;
    Access access = Access::ReadWrite;

    // Accesses to parts of it, or beyond it, are refused with GC_ERR_INVALID_PARAMETER.
    bool whole = false;

    // Computes the content before it is read. Without it the register keeps what was written.
    std::function<void(uint8_t* bytes)> source;

    // Sees the whole content that a write would leave; throws an Error to refuse it. All checks of
    // a write come before its first change.
    std::function<void(const uint8_t* bytes)> check;

    // Puts the content into effect after it was written.
    std::function<void(const uint8_t* bytes)> action;

    // How long, in ms, a device takes for a write of this content: devices on a network acknowledge
    // it that much later. Without it, no time. Runs without the lock.
    std::function<uint32_t(const uint8_t* bytes)> duration;
};

// The registers behind a port: bytes from address 0 to a last address, some of them registers with
// a meaning, the others plain memory. Pages come into being when they are first written; what was
// never written reads as 0. Thread-safe.
class RegisterSpace {
  public:
    explicit RegisterSpace(uint64_t lastAddress, ByteOrder order = ByteOrder::Little)
        : lastAddress_(lastAddress), order_(order) {}

    ByteOrder Order() const { return order_; }

    // Throws std::logic_error for a register that overlaps with another one. What the functions
    // refer to must live while the space is accessed.
    void Add(Register reg);

    // What a client does. They throw GC_ERR_INVALID_ADDRESS when the range leaves the space,
    // GC_ERR_ACCESS_DENIED when a register in it does not allow the access, and what the functions
    // of the registers throw; Write throws GC_ERR_RESOURCE_EXHAUSTED when it would need too much
    // memory. A range may hold several registers, and cut those that are not `whole`.
    void Read(uint64_t address, void* buffer, size_t size);
    void Write(uint64_t address, const void* buffer, size_t size);

    // The first register that the range touches, or null; it stays as long as the space.
    const Register* Find(uint64_t address, size_t size) const;

    // Puts content into the memory without asking the registers there; throws as Write does for
    // addresses and memory.
    void Load(uint64_t address, const void* content, size_t size);

    // Keeps all others from the registers, and from what their functions work on.
    std::unique_lock<std::recursive_mutex> Lock() const {
        return std::unique_lock<std::recursive_mutex>(mutex_);
    }

  private:
    static constexpr size_t kPageSize = 4096;
    static constexpr size_t kMaxPages = 65536;  // 256 MiB
    using Page = std::array<uint8_t, kPageSize>;

    // Calls visit(register) for each register that a range touches.
    template <typename Visit>
    void ForEachRegister(uint64_t address, size_t size, Visit&& visit) const;

    void CheckRange(uint64_t address, size_t size) const;
    static void CheckWhole(const Register& reg, uint64_t address, size_t size);
    std::vector<uint8_t> Content(const Register& reg);
    void ReadMemory(uint64_t address, uint8_t* out, size_t size) const;
    void WriteMemory(uint64_t address, const uint8_t* in, size_t size);

    const uint64_t lastAddress_;
    const ByteOrder order_;
    mutable std::recursive_mutex mutex_;
    std::unordered_map<uint64_t, Page> pages_;  // guarded by mutex_; by page number
    std::map<uint64_t, Register> registers_;    // guarded by mutex_; by address
};

}  // namespace ZelCti
