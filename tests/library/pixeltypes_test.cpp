// The table of pixel types and the two lookups: what their codes tell, and that they never change.
#include "utils/pixeltypes.h"

#include <string>

#include <gtest/gtest.h>

namespace {

using Helper = int32_t (*)(int16_t);

// A number for a long row of values, which any change of one of them changes.
class Fingerprint {
  public:
    void Add(uint32_t value) {
        for (int shift = 0; shift < 32; shift += 8)
            AddByte(static_cast<uint8_t>(value >> shift));
    }
    void Add(const char* text) {
        for (const char* c = text; *c != 0; ++c)
            AddByte(static_cast<uint8_t>(*c));
        AddByte(0);
    }
    uint64_t Get() const { return hash_; }

  private:
    void AddByte(uint8_t byte) { hash_ = (hash_ ^ byte) * 0x100000001B3U; }

    uint64_t hash_ = 0xCBF29CE484222325U;
};

uint32_t FromPfnc(uint32_t value) {
    return PFNCToZelPixelType(static_cast<GenICam_3_0::PFNC::PixelFormatStandardValue>(value));
}

uint32_t FromGev(uint32_t value) {
    return GevToZelPixelType(value);
}

// What a lookup gives for all formats that there may be.
uint64_t FingerprintOf(uint32_t (*lookUp)(uint32_t)) {
    Fingerprint codes;
    for (const uint32_t color : {0x01U, 0x02U, 0x81U}) {
        for (uint32_t bits = 8; bits <= 64; ++bits) {
            for (uint32_t id = 0; id < 0x100; ++id)
                codes.Add(lookUp(color << 24 | bits << 16 | id));
        }
    }
    return codes.Get();
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

// They are part of the interface.
TEST(PixelTypes, RowsNeverChange) {
    Fingerprint rows;
    for (const ColorModelDescription& row : s_colorModelDescription) {
        rows.Add(row.name);
        rows.Add(row.components);
        for (const auto number : {row.pixelType, uint32_t{row.channels},
                                  uint32_t{row.bitsPerChannel}, uint32_t{row.variant}})
            rows.Add(number);
    }
    EXPECT_EQ(rows.Get(), 10235838030584112706U);
}

TEST(PixelTypes, LookUps) {
    EXPECT_EQ(FromPfnc(0x01080001), 0x01080101U);  // Mono8
    EXPECT_EQ(FromPfnc(0x02180015), 0x02180172U);  // BGR8
    EXPECT_EQ(FromPfnc(0x02180014), 0U);           // RGB8 has no code
    EXPECT_EQ(FromPfnc(0x010C0004), 0U);           // is not of this list
    EXPECT_EQ(FromGev(0x010C0004), 0x010C1204U);   // Mono10Packed
    EXPECT_EQ(FromGev(0x01080001), 0U);
    EXPECT_EQ(FingerprintOf(FromPfnc), 11051543525959580395U);
    EXPECT_EQ(FingerprintOf(FromGev), 4012352040492588902U);
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
