// Messages as literal bytes.
#pragma once

#include <optional>
#include <string_view>
#include <vector>

#include "producers/wire/byteview.h"
#include "producers/wire/result.h"

namespace WireTest {

using Bytes = std::vector<uint8_t>;

inline int ValueOf(char digit) {
    return digit <= '9' ? digit - '0' : digit - 'a' + 10;
}

// Pairs of hexadecimal digits in lower case, with blanks anywhere between them.
inline Bytes Hex(std::string_view digits) {
    Bytes bytes;
    for (size_t i = 0; i < digits.size(); ++i) {
        if (digits[i] == ' ') continue;
        bytes.push_back(static_cast<uint8_t>(ValueOf(digits[i]) << 4 | ValueOf(digits[i + 1])));
        ++i;
    }
    return bytes;
}

// The bytes must outlive the view.
inline ZelCti::ByteView ViewOf(const Bytes& bytes) {
    return {bytes.data(), bytes.size()};
}
ZelCti::ByteView ViewOf(Bytes&&) = delete;

// What `encode(ByteSpan)` writes. The memory is not zeros before: a reserved byte that nobody
// writes shows.
template <typename Encode>
Bytes Encoded(const Encode& encode) {
    Bytes bytes(9000, 0xEE);
    bytes.resize(encode(ZelCti::ByteSpan{bytes.data(), bytes.size()}));
    return bytes;
}

// None if there is a value.
template <typename T>
std::optional<ZelCti::Fault> FaultOf(const ZelCti::Result<T>& result) {
    if (result) return std::nullopt;
    return result.GetFault();
}

}  // namespace WireTest
