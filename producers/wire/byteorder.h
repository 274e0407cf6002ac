// Numbers and texts as the bytes of registers.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace ZelCti {

enum class ByteOrder { Little, Big };

// An integer in 1 to 8 bytes; what does not fit is cut off.
void StoreInteger(uint8_t* bytes, size_t size, uint64_t value, ByteOrder order);
uint64_t LoadInteger(const uint8_t* bytes, size_t size, ByteOrder order);

// IEEE 754 in 4 or 8 bytes.
void StoreFloat(uint8_t* bytes, size_t size, double value, ByteOrder order);
double LoadFloat(const uint8_t* bytes, size_t size, ByteOrder order);

// A text with zeros behind it; one that fills all bytes has none.
void StoreString(uint8_t* bytes, size_t size, std::string_view text);
std::string_view LoadString(const uint8_t* bytes, size_t size);  // lies in the bytes

}  // namespace ZelCti
