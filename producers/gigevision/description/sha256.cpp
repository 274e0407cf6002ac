#include "producers/gigevision/description/sha256.h"

#include <algorithm>

#include "producers/wire/byteview.h"

namespace ZelGev {

using ZelCti::ByteSpan;
using ZelCti::ByteView;

namespace {

constexpr std::array<uint32_t, 64> kRounds{
    0x428A2F98, 0x71374491, 0xB5C0FBCF, 0xE9B5DBA5, 0x3956C25B, 0x59F111F1, 0x923F82A4, 0xAB1C5ED5,
    0xD807AA98, 0x12835B01, 0x243185BE, 0x550C7DC3, 0x72BE5D74, 0x80DEB1FE, 0x9BDC06A7, 0xC19BF174,
    0xE49B69C1, 0xEFBE4786, 0x0FC19DC6, 0x240CA1CC, 0x2DE92C6F, 0x4A7484AA, 0x5CB0A9DC, 0x76F988DA,
    0x983E5152, 0xA831C66D, 0xB00327C8, 0xBF597FC7, 0xC6E00BF3, 0xD5A79147, 0x06CA6351, 0x14292967,
    0x27B70A85, 0x2E1B2138, 0x4D2C6DFC, 0x53380D13, 0x650A7354, 0x766A0ABB, 0x81C2C92E, 0x92722C85,
    0xA2BFE8A1, 0xA81A664B, 0xC24B8B70, 0xC76C51A3, 0xD192E819, 0xD6990624, 0xF40E3585, 0x106AA070,
    0x19A4C116, 0x1E376C08, 0x2748774C, 0x34B0BCB5, 0x391C0CB3, 0x4ED8AA4A, 0x5B9CCA4F, 0x682E6FF3,
    0x748F82EE, 0x78A5636F, 0x84C87814, 0x8CC70208, 0x90BEFFFA, 0xA4506CEB, 0xBEF9A3F7, 0xC67178F2};

uint32_t Rotate(uint32_t word, unsigned bits) {
    return word >> bits | word << (32 - bits);
}

}  // namespace

void Sha256::Add(const void* bytes, size_t size) {
    const auto* next = static_cast<const uint8_t*>(bytes);
    while (size != 0) {
        const size_t filled = size_ % kBlockSize;
        const size_t count = std::min(size, kBlockSize - filled);
        std::copy_n(next, count, block_.begin() + filled);
        next += count;
        size -= count;
        size_ += count;
        if (size_ % kBlockSize == 0) Compress();
    }
}

void Sha256::AddText(std::string_view text) {
    std::array<uint8_t, sizeof(uint64_t)> length{};
    ByteSpan{length.data(), length.size()}.PutU64(0, text.size());
    Add(length.data(), length.size());
    Add(text.data(), text.size());
}

Sha256::Digest Sha256::Finish() {
    std::array<uint8_t, sizeof(uint64_t)> bits{};
    ByteSpan{bits.data(), bits.size()}.PutU64(0, size_ * 8);
    const uint8_t end = 0x80;
    const uint8_t zero = 0;
    Add(&end, 1);
    while (size_ % kBlockSize != kBlockSize - bits.size())
        Add(&zero, 1);
    Add(bits.data(), bits.size());
    Digest digest{};
    const ByteSpan out{digest.data(), digest.size()};
    for (size_t i = 0; i < state_.size(); ++i)
        out.PutU32(i * 4, state_[i]);
    return digest;
}

void Sha256::Compress() {
    std::array<uint32_t, 64> words{};
    const ByteView block{block_.data(), block_.size()};
    for (size_t i = 0; i < 16; ++i)
        words[i] = block.U32(i * 4);
    for (size_t i = 16; i < words.size(); ++i) {
        const uint32_t early = words[i - 15];
        const uint32_t late = words[i - 2];
        words[i] = words[i - 16] + (Rotate(early, 7) ^ Rotate(early, 18) ^ early >> 3) +
                   words[i - 7] + (Rotate(late, 17) ^ Rotate(late, 19) ^ late >> 10);
    }
    auto [a, b, c, d, e, f, g, h] = state_;
    for (size_t i = 0; i < words.size(); ++i) {
        const uint32_t one = h + (Rotate(e, 6) ^ Rotate(e, 11) ^ Rotate(e, 25)) +
                             ((e & f) ^ (~e & g)) + kRounds[i] + words[i];
        const uint32_t two =
            (Rotate(a, 2) ^ Rotate(a, 13) ^ Rotate(a, 22)) + ((a & b) ^ (a & c) ^ (b & c));
        h = g;
        g = f;
        f = e;
        e = d + one;
        d = c;
        c = b;
        b = a;
        a = one + two;
    }
    const std::array<uint32_t, 8> sums{a, b, c, d, e, f, g, h};
    for (size_t i = 0; i < state_.size(); ++i)
        state_[i] += sums[i];
}

}  // namespace ZelGev
