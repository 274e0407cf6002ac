#include "producers/gigevision/description/sha256.h"

#include <algorithm>
#include <string>

#include <gtest/gtest.h>

using ZelGev::Sha256;

namespace {

std::string HashOf(const std::string& text, size_t step) {
    Sha256 hash;
    for (size_t at = 0; at < text.size(); at += step)
        hash.Add(text.data() + at, std::min(step, text.size() - at));
    std::string digits;
    for (const uint8_t byte : hash.Finish()) {
        digits += "0123456789abcdef"[byte >> 4];
        digits += "0123456789abcdef"[byte & 15];
    }
    return digits;
}

}  // namespace

// The first three are those that the standard's authors publish; the others were made by sha256sum.
TEST(Sha256Test, IsWhatOthersCalculate) {
    EXPECT_EQ(HashOf("", 1), "e3b0c44298fc1c149afbf4c8996fb92427ae41e4649b934ca495991b7852b855");
    EXPECT_EQ(HashOf("abc", 3), "ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad");
    EXPECT_EQ(HashOf("abcdbcdecdefdefgefghfghighijhijkijkljklmklmnlmnomnopnopq", 7),
              "248d6a61d20638b8e5c026930c3e6039a33ce45964ff2167f6ecedd419db06c1");
    EXPECT_EQ(HashOf(std::string(55, 'z'), 10),
              "5a383411d906da80612f366cb9b90ae54bcf6e7743b4117ace0884d98cd159ca");
    EXPECT_EQ(HashOf(std::string(64, 'z'), 64),
              "72996563049cc84daa2c3f31fd5c3d10770e69d6ebbb8da5b6d76db303dbae43");
    EXPECT_EQ(HashOf(std::string(119, 'z'), 60),
              "de05957e72aca438f9b0c770cb2ee7fa0e58e08eb54536478db136d54c097abb");
    EXPECT_EQ(HashOf(std::string(1000, 'z'), 333),
              "950f88b09cf1d5e2cdbc5660c77dce3962265c548797950095629a0ea2daea46");
}
