// Register memory.
#ifndef ZELSIM_REGISTERSPACE_H
#define ZELSIM_REGISTERSPACE_H

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <mutex>
#include <unordered_map>

namespace ZelSim {

// The registers behind a port: bytes from address 0 to a last address. Pages come into being when
// they are first written; what was never written reads as 0. Thread-safe.
class RegisterSpace {
  public:
    explicit RegisterSpace(uint64_t lastAddress) : lastAddress_(lastAddress) {}

    // Throw GC_ERR_INVALID_ADDRESS when the range leaves the space; Write throws
    // GC_ERR_RESOURCE_EXHAUSTED when it would need too much memory.
    void Read(uint64_t address, void* buffer, size_t size) const;
    void Write(uint64_t address, const void* buffer, size_t size);

  private:
    static constexpr size_t kPageSize = 4096;
    static constexpr size_t kMaxPages = 65536;  // 256 MiB
    using Page = std::array<uint8_t, kPageSize>;

    void Check(uint64_t address, size_t size) const;

    const uint64_t lastAddress_;
    mutable std::mutex mutex_;
    std::unordered_map<uint64_t, Page> pages_;  // guarded by mutex_; by page number
};

}  // namespace ZelSim

#endif  // ZELSIM_REGISTERSPACE_H
