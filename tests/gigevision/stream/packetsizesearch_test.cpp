// The search for the packet size, against cameras and networks with limits.
#include "producers/gigevision/stream/packetsizesearch.h"

#include <algorithm>

#include <gtest/gtest.h>

using ZelGev::PacketSizeSearch;

namespace {

struct Network {
    uint32_t carries = UINT32_MAX;  // larger packets get lost
    uint32_t rounding = 1;          // of the camera
    uint32_t limit = 16384;         // the camera's largest packet
    bool refuses = false;           // instead of rounding
};

struct Outcome {
    std::optional<uint32_t> size;
    uint32_t numTests = 0;
};

Outcome Search(PacketSizeSearch::Aim aim, uint32_t present, uint32_t largest,
               const Network& network) {
    PacketSizeSearch search(aim, present, largest);
    Outcome outcome;
    while (const auto next = search.Next()) {
        EXPECT_LE(*next, largest);
        if (++outcome.numTests > 100) break;
        const uint32_t size = std::min(*next / network.rounding * network.rounding, network.limit);
        if (network.refuses && size != *next) {
            search.OnRefused();
        } else {
            search.OnTested(size, size <= network.carries);
        }
    }
    outcome.size = search.Result();
    return outcome;
}

constexpr auto kKeep = PacketSizeSearch::Aim::Keep;
constexpr auto kLargest = PacketSizeSearch::Aim::Largest;

}  // namespace

TEST(PacketSizeSearch, OneTestIsEnoughWhereItArrives) {
    const Outcome kept = Search(kKeep, 1500, 9000, {});
    EXPECT_EQ(kept.size, 1500U);
    EXPECT_EQ(kept.numTests, 1U);
    const Outcome largest = Search(kLargest, 1500, 9000, {});
    EXPECT_EQ(largest.size, 9000U);
    EXPECT_EQ(largest.numTests, 1U);
    EXPECT_EQ(Search(kLargest, 1500, 65535, {}).size, 16384U) << "the camera's own limit";
    EXPECT_EQ(Search(kLargest, 1500, 9000, {UINT32_MAX, 64}).size, 8960U);
}

TEST(PacketSizeSearch, APresentSizeThatDoesNotArriveIsReplaced) {
    EXPECT_EQ(Search(kKeep, 9000, 9000, {1500}).size, 1500U);
    EXPECT_EQ(Search(kKeep, 9000, 1500, {}).size, 1500U) << "above our own limit";
    EXPECT_EQ(Search(kKeep, 0, 1500, {}).size, 1500U) << "no size at all";
}

TEST(PacketSizeSearch, WhatASwitchCarriesIsFound) {
    for (const uint32_t carries : {600U, 1400U, 4000U, 9198U, 16111U}) {
        for (const uint32_t rounding : {1U, 4U, 16U}) {
            for (const bool refuses : {false, true}) {
                const Network network{carries, rounding, 16384, refuses};
                const Outcome outcome = Search(kLargest, 1500, 16114, network);
                ASSERT_TRUE(outcome.size) << carries;
                EXPECT_LE(*outcome.size, carries);
                EXPECT_GT(*outcome.size + 32, carries);
                EXPECT_LE(outcome.numTests, 24U);
            }
        }
    }
}

TEST(PacketSizeSearch, WithoutTestPacketsNothingIsKnown) {
    const Outcome outcome = Search(kLargest, 8000, 9000, {0});
    EXPECT_EQ(outcome.size, std::nullopt);
    EXPECT_LE(outcome.numTests, 3U);
    EXPECT_EQ(Search(kKeep, 1500, 1500, {0}).size, std::nullopt);
}

TEST(PacketSizeSearch, ItEndsWhateverACameraAnswers) {
    for (uint32_t seed = 0; seed < 1000; ++seed) {
        PacketSizeSearch search(kLargest, 1500, 16114);
        uint32_t random = seed * 2654435761U + 1;
        uint32_t numTests = 0;
        while (search.Next() && numTests < 100) {
            random = random * 1664525U + 1013904223U;
            ++numTests;
            if (random >> 30 == 0) {
                search.OnRefused();
            } else {
                search.OnTested(random >> 8 & 0xFFFF, (random >> 28 & 1) != 0);
            }
        }
        EXPECT_LE(numTests, 24U);
    }
}
