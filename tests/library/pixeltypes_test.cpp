// The table of pixel types and the two lookups: what their codes tell, and that they never change.
#include "utils/pixeltypes.h"

#include <set>
#include <string>

#include <gtest/gtest.h>

namespace {

using Helper = int32_t (*)(int16_t);

uint32_t FromPfnc(uint32_t value) {
    return PFNCToZelPixelType(static_cast<GenICam_3_0::PFNC::PixelFormatStandardValue>(value));
}

uint32_t FromGev(uint32_t value) {
    return GevToZelPixelType(value);
}

// The codes of all formats that there may be; none may stand for two of them.
std::set<uint32_t> CodesOf(uint32_t (*lookUp)(uint32_t)) {
    std::set<uint32_t> codes;
    for (const uint32_t components : {0x01U, 0x02U, 0x81U}) {
        for (uint32_t bits = 8; bits <= 64; ++bits) {
            for (uint32_t id = 0; id < 0x400; ++id) {
                const uint32_t code = lookUp(components << 24 | bits << 16 | id);
                if (code == 0) continue;
                EXPECT_EQ(code >> 16 & 0xFF, bits) << std::hex << code;
                EXPECT_EQ(code, s_colorModelDescription.at((code & 0xFF) - 1).pixelType);
                EXPECT_TRUE(codes.insert(code).second) << std::hex << code;
            }
        }
    }
    return codes;
}

const ColorModelDescription& Row(uint32_t number) {
    return s_colorModelDescription.at(number - 1);
}

}  // namespace

TEST(PixelTypes, RowsAgreeWithTheirCodes) {
    uint32_t index = 0;
    for (const ColorModelDescription& row : s_colorModelDescription) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(row.pixelType & 0xFF, ++index);
        const uint32_t family = row.pixelType >> 24;
        EXPECT_EQ(row.indexOf == GetIndexYUV, family == 5);
        EXPECT_EQ(row.indexOf == GetIndexMONO, family != 2 && family != 5);
        if (family == 2) {
            const std::string name(row.name);
            const bool blueFirst = name[0] == 'B';
            const bool alpha = name.find('a') == 3;
            const Helper threeOf = blueFirst ? GetIndexBGR : GetIndexRGB;
            const Helper fourOf = blueFirst ? GetIndexBGRA : GetIndexRGBA;
            EXPECT_EQ(row.channels, alpha ? 4U : 3U);
            EXPECT_EQ(row.indexOf, alpha ? fourOf : threeOf);
        }
    }
    EXPECT_EQ(index, 133U);
}

TEST(PixelTypes, SignificantBitsStandInThePacking) {
    const uint32_t bitsOf[] = {0, 8, 10, 12, 14, 16};
    for (const ColorModelDescription& row : s_colorModelDescription) {
        EXPECT_EQ(row.bitsPerChannel, bitsOf[row.pixelType >> 8 & 0x0F]) << row.name;
    }
}

TEST(PixelTypes, TrueSenseRowsCountThroughBitsPatternsAndPhases) {
    EXPECT_STREQ(Row(49).name, "TrueSense_BGGR_WBBW_0_8");
    EXPECT_EQ(Row(49).pixelType, 0x04080131U);
    EXPECT_STREQ(Row(55).name, "TrueSense_GBRG_WGGW_2_8");
    EXPECT_STREQ(Row(55).components, "W G W B G W B W W R W G R W G W");
    EXPECT_EQ(Row(55).variant, 2U);
    EXPECT_STREQ(Row(76).name, "TrueSense_GRBG_WGGW_3_10");
    EXPECT_EQ(Row(76).bitsPerChannel, 10U);
    EXPECT_STREQ(Row(112).name, "TrueSense_RGGB_WRRW_3_14");
    EXPECT_EQ(Row(112).pixelType, 0x04100470U);
}

TEST(PixelTypes, LookUps) {
    EXPECT_EQ(FromPfnc(0x01080001), 0x01080101U);  // Mono8
    EXPECT_EQ(FromPfnc(0x02180015), 0x02180172U);  // BGR8
    EXPECT_EQ(FromPfnc(0x02180014), 0U);           // RGB8 has no code
    EXPECT_EQ(FromPfnc(0x010C0004), 0U);           // is not of this list
    EXPECT_EQ(FromGev(0x010C0004), 0x010C1204U);   // Mono10Packed
    EXPECT_EQ(FromGev(0x01080001), 0U);
    EXPECT_EQ(CodesOf(FromPfnc).size(), 38U);
    EXPECT_EQ(CodesOf(FromGev).size(), 10U);
}

TEST(PixelTypes, ComponentIndexes) {
    const std::pair<Helper, std::string> helpers[] = {
        {GetIndexMONO, "Y"},    {GetIndexRGB, "RGB"},   {GetIndexBGR, "BGR"},
        {GetIndexRGBA, "RGBA"}, {GetIndexBGRA, "BGRA"}, {GetIndexYUV, "YUV"}};
    for (const auto& [helper, letters] : helpers) {
        for (int letter = INT16_MIN; letter <= INT16_MAX; ++letter) {
            const size_t position = letter > 0 && letter < 128
                                        ? letters.find(static_cast<char>(letter))
                                        : std::string::npos;
            const int32_t expected =
                position == std::string::npos ? -1 : static_cast<int32_t>(position);
            ASSERT_EQ(helper(static_cast<int16_t>(letter)), expected) << letters << ' ' << letter;
        }
    }
}
