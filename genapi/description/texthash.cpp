#include "genapi/description/texthash.h"

#include <cstring>
#include <random>

namespace GENAPI_NAMESPACE {
namespace Engine {

namespace {

// Odd, with as many ones as zeros in no regular order.
constexpr uint64_t kSpread = 0x9E3779B97F4A7C15;

struct Keys {
    uint64_t first, second;
};

Keys RandomKeys() {
    std::random_device random;
    const auto word = [&] { return (uint64_t{random()} << 32) ^ random(); };
    return {word(), word()};
}

// Both halves of the product, folded into one.
uint64_t Mix(uint64_t a, uint64_t b) {
#ifdef __SIZEOF_INT128__
    __extension__ using Wide = unsigned __int128;
    const Wide product = static_cast<Wide>(a) * b;
    return static_cast<uint64_t>(product) ^ static_cast<uint64_t>(product >> 64);
#else
    const uint64_t aLow = a & 0xFFFFFFFF, aHigh = a >> 32;
    const uint64_t bLow = b & 0xFFFFFFFF, bHigh = b >> 32;
    const uint64_t middle = aHigh * bLow + ((aLow * bLow) >> 32);
    const uint64_t carried = aLow * bHigh + (middle & 0xFFFFFFFF);
    return (a * b) ^ (aHigh * bHigh + (middle >> 32) + (carried >> 32));
#endif
}

template <typename Word>
uint64_t Load(const char* from) {
    Word word;
    std::memcpy(&word, from, sizeof word);
    return word;
}

}  // namespace

uint64_t HashOf(std::string_view text, uint64_t seed) {
    static const Keys kKeys = RandomKeys();
    const char* at = text.data();
    size_t left = text.size();
    uint64_t hash = kKeys.first ^ (seed * kSpread) ^ left;
    for (; left > 16; at += 16, left -= 16)
        hash = Mix(Load<uint64_t>(at) ^ kKeys.second, Load<uint64_t>(at + 8) ^ hash);
    uint64_t low = 0, high = 0;
    if (left >= 8) {  // the two words overlap unless there are 16 bytes
        low = Load<uint64_t>(at);
        high = Load<uint64_t>(at + left - 8);
    } else if (left >= 4) {
        low = Load<uint32_t>(at);
        high = Load<uint32_t>(at + left - 4);
    } else if (left > 0) {
        low = Load<uint8_t>(at) | Load<uint8_t>(at + left / 2) << 8 |
              Load<uint8_t>(at + left - 1) << 16;
    }
    hash = Mix(low ^ kKeys.second, high ^ hash);
    return Mix(hash ^ kSpread, kKeys.first | 1);
}

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE
