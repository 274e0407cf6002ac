// The table of bootstrap registers as a whole; tshark is asked for addresses and bits one by one.

#include "producers/wire/bootstrap.h"

#include <map>
#include <string>

#include <gtest/gtest.h>

namespace ZelCti::Gev {

namespace {

void ExpectPlace(uint32_t address, const Register& reg, uint32_t index, uint32_t offset) {
    const auto place = FindRegister(address);
    ASSERT_TRUE(place) << std::hex << address;
    EXPECT_STREQ(reg.name, place->reg->name) << std::hex << address;
    EXPECT_EQ(index, place->index) << std::hex << address;
    EXPECT_EQ(offset, place->offset) << std::hex << address;
}

}  // namespace

TEST(BootstrapTest, RegistersShareNoByte) {
    std::map<uint32_t, std::string> owners;
    for (const Register& reg : kBootstrapRegisters)
        for (uint32_t index = 0; index < reg.series.limit; ++index)
            for (uint32_t offset = 0; offset < reg.size; ++offset) {
                const uint32_t address = reg.At(index) + offset;
                ASSERT_LT(address, kBootstrapEnd) << reg.name;
                const auto [owner, isNew] = owners.emplace(address, reg.name);
                ASSERT_TRUE(isNew) << reg.name << " and " << owner->second << " at " << address;
            }
    // Found by each of their bytes, and by no other.
    for (uint32_t address = 0; address < kBootstrapEnd + 0x100; ++address) {
        const auto place = FindRegister(address);
        ASSERT_EQ(owners.count(address) == 1, place.has_value()) << std::hex << address;
        if (!place) continue;
        ASSERT_EQ(address, place->reg->At(place->index) + place->offset);
    }
    EXPECT_FALSE(FindRegister(UINT32_MAX));
}

TEST(BootstrapTest, SeriesHaveTheirStrides) {
    ExpectPlace(0x064C, kPersistentIp, 0, 0);
    ExpectPlace(0x07CC, kPersistentIp, 3, 0);
    ExpectPlace(0x0680, kFurtherMacHigh, 0, 0);
    ExpectPlace(0x0787, kFurtherMacLow, 2, 3);
    ExpectPlace(0x0770, kLinkSpeed, 2, 0);
    ExpectPlace(0x0D00, kScp, 0, 0);
    ExpectPlace(0x0D44, kScps, 1, 0);
    ExpectPlace(0x0D00 + 0x40 * 511 + 0x24, kSccfg, 511, 0);
    ExpectPlace(0x9804, kActionGroupMask, 0, 0);
    ExpectPlace(0x9FF0, kActionGroupKey, 127, 0);
    ExpectPlace(0x03FF, kFirstUrl, 0, 511);
    EXPECT_FALSE(FindRegister(0x0D00 + 0x40 * 512));
    EXPECT_FALSE(FindRegister(0x0D0C));
    EXPECT_FALSE(FindRegister(0x00F8));
}

// A bit that says whether a register exists is in a register that is always there, or exists itself
// when its own bit is set.
TEST(BootstrapTest, PresenceIsInARegister) {
    for (const Register& reg : kBootstrapRegisters) {
        if (reg.presence.mask == 0) continue;
        EXPECT_TRUE(reg.presence.optional) << reg.name;
        const auto place = FindRegister(reg.presence.address);
        ASSERT_TRUE(place) << reg.name;
        EXPECT_EQ(0U, place->offset) << reg.name;
        EXPECT_EQ(Access::Read, place->reg->access) << reg.name;
    }
    EXPECT_EQ(0x20000000U, kScmbsHigh.presence.mask);
    EXPECT_FALSE(kCcp.presence.optional);
    EXPECT_TRUE(kScc.presence.optional);
}

}  // namespace ZelCti::Gev
