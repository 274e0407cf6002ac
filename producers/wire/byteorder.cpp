#include "producers/wire/byteorder.h"

#include <algorithm>
#include <cstring>

namespace ZelCti {

namespace {

// Where the byte of this significance stands, 0 the least.
size_t PlaceOf(size_t significance, size_t size, ByteOrder order) {
    return order == ByteOrder::Little ? significance : size - 1 - significance;
}

}  // namespace

void StoreInteger(uint8_t* bytes, size_t size, uint64_t value, ByteOrder order) {
    for (size_t i = 0; i < size; ++i, value >>= 8)
        bytes[PlaceOf(i, size, order)] = static_cast<uint8_t>(value & 0xFFU);
}

uint64_t LoadInteger(const uint8_t* bytes, size_t size, ByteOrder order) {
    uint64_t value = 0;
    for (size_t i = size; i-- > 0;)
        value = value << 8 | bytes[PlaceOf(i, size, order)];
    return value;
}

void StoreFloat(uint8_t* bytes, size_t size, double value, ByteOrder order) {
    if (size == sizeof(double)) {
        uint64_t bits = 0;
        std::memcpy(&bits, &value, sizeof(bits));
        return StoreInteger(bytes, size, bits, order);
    }
    const auto single = static_cast<float>(value);
    uint32_t bits = 0;
    std::memcpy(&bits, &single, sizeof(bits));
    StoreInteger(bytes, size, bits, order);
}

double LoadFloat(const uint8_t* bytes, size_t size, ByteOrder order) {
    const uint64_t bits = LoadInteger(bytes, size, order);
    if (size == sizeof(double)) {
        double value = 0;
        std::memcpy(&value, &bits, sizeof(value));
        return value;
    }
    const auto singleBits = static_cast<uint32_t>(bits);
    float single = 0;
    std::memcpy(&single, &singleBits, sizeof(single));
    return static_cast<double>(single);
}

void StoreString(uint8_t* bytes, size_t size, std::string_view text) {
    const size_t length = std::min(size, text.size());
    std::copy_n(text.begin(), length, bytes);
    std::fill_n(bytes + length, size - length, uint8_t{0});
}

std::string_view LoadString(const uint8_t* bytes, size_t size) {
    const auto length = static_cast<size_t>(std::find(bytes, bytes + size, uint8_t{0}) - bytes);
    return {reinterpret_cast<const char*>(bytes), length};
}

}  // namespace ZelCti
