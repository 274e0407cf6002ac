// SHA-256, as FIPS 180-4 defines it.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace ZelGev {

class Sha256 {
  public:
    using Digest = std::array<uint8_t, 32>;

    void Add(const void* bytes, size_t size);

    // The length, too, so that texts that follow each other cannot be confused with others.
    void AddText(std::string_view text);

    // Of all that was added. Nothing may be added afterwards.
    Digest Finish();

  private:
    static constexpr size_t kBlockSize = 64;

    void Compress();

    std::array<uint32_t, 8> state_{0x6A09E667, 0xBB67AE85, 0x3C6EF372, 0xA54FF53A,
                                   0x510E527F, 0x9B05688C, 0x1F83D9AB, 0x5BE0CD19};
    std::array<uint8_t, kBlockSize> block_{};
    uint64_t size_ = 0;  // of all that was added
};

}  // namespace ZelGev
