// The loops for newer processors give what those for every processor give, which the other tests
// cannot see: they run one set, that of the machine.

#include "imaging/kernels/kernels.h"

#include <utility>
#include <vector>

#include <gmock/gmock.h>

namespace ZelImage::Kernels {

namespace Baseline {
extern const Set kSet;
}
namespace Newer {
extern const Set kSet;
}

}  // namespace ZelImage::Kernels

namespace {

using namespace ZelImage::Kernels;

constexpr size_t kCount = 83;  // some vectors, and a rest

template <typename Sample>
std::vector<Sample> Noise(size_t count, uint32_t white) {
    std::vector<Sample> noise(count);
    uint32_t state = 12345;
    for (Sample& sample : noise) {
        state = state * 1664525 + 1013904223;
        sample = static_cast<Sample>(state >> 15 & white);
    }
    return noise;
}

// What all loops over samples of both kinds write, one after the other.
template <typename Sample>
std::vector<Sample> RunAll(const Set& set, uint32_t depth) {
    const auto noise = Noise<uint8_t>(kCount * 8, 0xFF);
    const auto narrow = Noise<uint8_t>(kCount * 4, 0xFF);
    const auto wide = Noise<uint16_t>(kCount * 4, (1U << depth) - 1);
    std::vector<Sample> out(kCount * 40);
    Sample* to = out.data();
    const auto room = [&](size_t count) { return std::exchange(to, to + count); };
    Sample* const rgb[4] = {room(kCount), room(kCount), room(kCount), room(kCount)};
    const uint8_t* const narrowLines[4] = {&narrow[0], &narrow[kCount], &narrow[2 * kCount],
                                           &narrow[3 * kCount]};
    const uint16_t* const wideLines[4] = {&wide[0], &wide[kCount], &wide[2 * kCount],
                                          &wide[3 * kCount]};
    const YuvFactors factors{16, 128, 1.164F, 1.596F, -0.392F, -0.813F, 2.017F};
    if constexpr (sizeof(Sample) == 1) {
        set.narrowTo8(wide.data(), kCount, depth, room(kCount));
        set.join8(narrowLines, kCount, room(4 * kCount));
        const uint8_t* const three[4] = {narrowLines[0], narrowLines[1], narrowLines[2], nullptr};
        set.join8(three, kCount, room(3 * kCount));
        set.luma8(narrowLines, kCount, room(kCount));
        set.split8(noise.data(), kCount, 3, rgb);
        set.demosaic8({narrowLines[0] + 1, narrowLines[1] + 1, narrowLines[2] + 1}, 1, kCount - 2,
                      {room(kCount), room(kCount), room(kCount)});
        Sample* const yuv[4] = {room(kCount), room(kCount), room(kCount), nullptr};
        set.yuv8To8(narrowLines, kCount, factors, yuv);
        Sample* const deep[4] = {room(kCount), room(kCount), room(kCount), nullptr};
        set.yuv16To8(wideLines, kCount, factors, deep);
    } else {
        if (depth < 16) {
            set.unpackLsbFirst(noise.data(), kCount, depth, room(kCount));
            set.stretchTo16(wide.data(), kCount, depth, room(kCount));
        }
        if (depth < 14) set.unpackGigEVision(noise.data(), kCount, depth, room(kCount));
        set.unpackWords(noise.data(), kCount, depth, room(kCount));
        set.widenTo16(narrow.data(), kCount, 8, room(kCount));
        set.join16(wideLines, kCount, room(4 * kCount));
        set.luma16(wideLines, kCount, room(kCount));
        set.split16(wide.data(), kCount, 4, rgb);
        set.demosaic16({wideLines[0] + 1, wideLines[1] + 1, wideLines[2] + 1}, 1, kCount - 2,
                       {room(kCount), room(kCount), room(kCount)});
        Sample* const yuv[4] = {room(kCount), room(kCount), room(kCount), nullptr};
        set.yuv8To16(narrowLines, kCount, factors, yuv);
        Sample* const deep[4] = {room(kCount), room(kCount), room(kCount), nullptr};
        set.yuv16To16(wideLines, kCount, factors, deep);
    }
    return out;
}

TEST(Kernels, BothSetsAgree) {
    if (!__builtin_cpu_supports("avx2")) GTEST_SKIP() << "the processor has no AVX2";
    for (const uint32_t depth : {10U, 12U, 14U, 16U}) {
        EXPECT_EQ(RunAll<uint8_t>(Newer::kSet, depth), RunAll<uint8_t>(Baseline::kSet, depth));
        EXPECT_EQ(RunAll<uint16_t>(Newer::kSet, depth), RunAll<uint16_t>(Baseline::kSet, depth));
    }
}

}  // namespace
