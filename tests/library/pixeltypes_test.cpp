// The table of pixel types, checked by the rules behind the codes, and the two lookups.
#include "utils/pixeltypes.h"

#include <map>
#include <optional>
#include <string>

#include <gtest/gtest.h>

namespace {

const std::map<uint32_t, uint32_t> pfncCodes = {
    {0x01080001, 0x01080101}, {0x01100003, 0x01100202}, {0x010A0046, 0x010A2203},
    {0x01100005, 0x01100306}, {0x010C0047, 0x010C2307}, {0x01100025, 0x0110040A},
    {0x01100007, 0x0110050B}, {0x01080008, 0x0308010D}, {0x01080009, 0x0308010E},
    {0x0108000A, 0x0308010F}, {0x0108000B, 0x03080110}, {0x0110000C, 0x03100211},
    {0x0110000D, 0x03100212}, {0x0110000E, 0x03100213}, {0x0110000F, 0x03100214},
    {0x01100010, 0x03100315}, {0x01100011, 0x03100316}, {0x01100012, 0x03100317},
    {0x01100013, 0x03100318}, {0x010A0056, 0x030A2219}, {0x010A0058, 0x030A221B},
    {0x010A0054, 0x030A221D}, {0x010A0052, 0x030A221F}, {0x010C0057, 0x030C2321},
    {0x010C0059, 0x030C2323}, {0x010C0055, 0x030C2325}, {0x010C0053, 0x030C2327},
    {0x0110002E, 0x0310052D}, {0x0110002F, 0x0310052E}, {0x01100030, 0x0310052F},
    {0x01100031, 0x03100530}, {0x02180015, 0x02180172}, {0x02200017, 0x02200174},
    {0x02300019, 0x02300276}, {0x0230001B, 0x02300378}, {0x0230004A, 0x0230047A},
    {0x0230004B, 0x0230057C}, {0x0210003B, 0x05100185}, {0x021E0048, 0},
    {0x02240049, 0},          {0x0240004C, 0},          {0x0228004D, 0},
    {0x0240004E, 0},          {0x0230004F, 0},          {0x02400050, 0},
    {0x02400051, 0}};

const std::map<uint32_t, uint32_t> gevCodes = {{0x010C0004, 0x010C1204}, {0x010C0006, 0x010C1308},
                                               {0x010C0026, 0x030C121A}, {0x010C0027, 0x030C121C},
                                               {0x010C0028, 0x030C121E}, {0x010C0029, 0x030C1220},
                                               {0x010C002A, 0x030C1322}, {0x010C002B, 0x030C1324},
                                               {0x010C002C, 0x030C1326}, {0x010C002D, 0x030C1328}};

// Formats whose code follows no rule of its family.
const std::map<std::string, uint32_t> irregular = {
    {"Mono10_FLExPacked", 0x010C3205},  {"Mono12_FLExPacked", 0x010C3309},
    {"Mono8_FLExPacked", 0x0108310C},   {"RGB_8_FLEX_Packed", 0x0218317D},
    {"RGB_10_FLEX_Packed", 0x0220327E}, {"RGB_12_FLEX_Packed", 0x0224337F},
    {"YUV422_8_UYVY", 0x05100180},      {"YUV422_8", 0x05100181},
    {"YUV422_10", 0x05200282},          {"YUV422_10_PACKED", 0x05143283},
    {"YUV444_8", 0x05200184},           {"YCbCr422_8", 0x05100185}};

const std::map<std::string, std::string> components = {{"Mono", "Y"},
                                                       {"BayerGR", "G R G2 B"},
                                                       {"BayerRG", "R G B G2"},
                                                       {"BayerGB", "G B G2 R"},
                                                       {"BayerBG", "B G R G2"},
                                                       {"RGB", "R G B"},
                                                       {"BGR", "B G R"},
                                                       {"RGBa", "R G B A"},
                                                       {"BGRa", "B G R A"},
                                                       {"RGB_8_FLEX_Packed", "R G B"},
                                                       {"RGB_10_FLEX_Packed", "R G B"},
                                                       {"RGB_12_FLEX_Packed", "R G B"},
                                                       {"YUV422_8_UYVY", "U Y V Y"},
                                                       {"YUV422_8", "Y U Y V"},
                                                       {"YUV422_10", "Y U Y V"},
                                                       {"YUV422_10_PACKED", "Y U Y V"},
                                                       {"YUV444_8", "Y U V A"},
                                                       {"YCbCr422_8", "Y Cb Y Cr"}};

using Helper = int32_t (*)(int16_t);

Helper HelperOf(uint32_t code, const std::string& name) {
    switch (code >> 24) {
        case 2: {
            const bool alpha = name.find('a') == 3;
            if (name[0] == 'B') return alpha ? GetIndexBGRA : GetIndexBGR;
            return alpha ? GetIndexRGBA : GetIndexRGB;
        }
        case 5:
            return GetIndexYUV;
        default:
            return GetIndexMONO;
    }
}

// The name of a format of a regular family, "BayerRG10Packed", taken apart.
struct RegularName {
    std::string family;
    uint32_t depth;
    std::string packing;
};

std::optional<RegularName> Parse(const std::string& name) {
    const size_t digit = name.find_first_of("0123456789");
    const std::string family = name.substr(0, digit);
    if (family == "YUV" || components.count(family) == 0) return std::nullopt;
    const size_t rest = name.find_first_not_of("0123456789", digit);
    const std::string packing = rest == std::string::npos ? "" : name.substr(rest);
    if (!packing.empty() && packing != "p" && packing != "Packed") return std::nullopt;
    return RegularName{family, static_cast<uint32_t>(std::stoul(name.substr(digit))), packing};
}

uint32_t CodeOf(const RegularName& name, uint32_t index) {
    const size_t length = name.family.size();
    const uint32_t family = name.family == "Mono" ? 1 : length == 7 ? 3 : 2;
    const uint32_t channels = family == 2 ? static_cast<uint32_t>(length) : 1;
    const bool packed = name.packing == "Packed";
    const bool p = name.packing == "p";
    const uint32_t stored = packed ? 12 : p || name.depth == 8 ? name.depth : 16;
    const uint32_t kind = packed ? 1 : p ? 2 : 0;
    return family << 24 | stored * channels << 16 | (kind << 4 | (name.depth - 6) / 2) << 8 | index;
}

std::string TrueSenseName(uint32_t index) {
    const char* const patterns[] = {"BGGR_WBBW", "GBRG_WGGW", "GRBG_WGGW", "RGGB_WRRW"};
    const uint32_t n = index - 49;
    return std::string("TrueSense_") + patterns[n / 4 % 4] + '_' + std::to_string(n % 4) + '_' +
           std::to_string(8 + n / 16 * 2);
}

}  // namespace

TEST(PixelTypes, RowsOfRegularFamiliesFollowTheirNames) {
    size_t count = 0;
    for (uint32_t index = 1; index <= 133; ++index) {
        if (index >= 49 && index <= 112) continue;
        const ColorModelDescription& row = s_colorModelDescription.at(index - 1);
        const std::string name = row.name;
        SCOPED_TRACE(name);
        const std::optional<RegularName> regular = Parse(name);
        EXPECT_EQ(row.pixelType, regular ? CodeOf(*regular, index) : irregular.at(name));
        const auto text = components.find(regular ? regular->family : name);
        EXPECT_STREQ(row.components, text != components.end() ? text->second.c_str() : "Y");
        const uint32_t depth = (row.pixelType >> 8 & 0xF) * 2 + 6;
        EXPECT_EQ(row.bitsPerChannel, depth);
        const bool four = name == "RGBa8" || name == "BGRa8" || name == "YUV444_8";
        const bool colour = row.pixelType >> 24 == 2 || row.pixelType >> 24 == 5;
        EXPECT_EQ(row.channels, four ? 4U : colour ? 3U : 1U);
        EXPECT_EQ(row.indexOf, HelperOf(row.pixelType, name));
        EXPECT_EQ(row.variant, 0U);
        EXPECT_EQ(row.pixelType & 0xFF, index);
        ++count;
    }
    EXPECT_EQ(count, 69U);
}

TEST(PixelTypes, TrueSenseRowsFollowTheirIndex) {
    const char* const cells[] = {
        "W B W G B W G W W G W R G W R W", "W G W B G W B W W R W G R W G W",
        "W G W R G W R W W B W G B W G W", "W R W G R W G W W G W B G W B W"};
    for (uint32_t index = 49; index <= 112; ++index) {
        const uint32_t n = index - 49;
        const uint32_t depth = 8 + n / 16 * 2;
        const ColorModelDescription& row = s_colorModelDescription.at(index - 1);
        SCOPED_TRACE(row.name);
        EXPECT_EQ(row.name, TrueSenseName(index));
        EXPECT_STREQ(row.components, cells[n / 4 % 4]);
        EXPECT_EQ(row.channels, 1U);
        EXPECT_EQ(row.bitsPerChannel, depth);
        EXPECT_EQ(row.indexOf, &GetIndexMONO);
        EXPECT_EQ(row.variant, n % 4);
        EXPECT_EQ(row.pixelType,
                  0x04000000U | (depth == 8 ? 8U : 16U) << 16 | (n / 16 + 1) << 8 | index);
    }
    EXPECT_EQ(s_colorModelDescription[48].pixelType, 0x04080131U);
    EXPECT_EQ(s_colorModelDescription[111].pixelType, 0x04100470U);
}

TEST(PixelTypes, PfncLookup) {
    const auto lookUp = [](uint32_t value) -> uint32_t {
        return PFNCToZelPixelType(static_cast<GenICam_3_0::PFNC::PixelFormatStandardValue>(value));
    };
    EXPECT_EQ(pfncCodes.size(), 46U);
    for (const auto& [value, code] : pfncCodes) {
        EXPECT_EQ(lookUp(value), code) << std::hex << value;
        for (const uint32_t other : {value - 1, value + 1, value ^ 0x80000000U}) {
            if (pfncCodes.count(other) == 0) {
                EXPECT_EQ(lookUp(other), 0U) << std::hex << other;
            }
        }
    }
    for (const auto& [value, code] : gevCodes)
        EXPECT_EQ(lookUp(value), 0U) << std::hex << value;
    for (const uint32_t value : {0U, 0x02180014U, 0x02200016U, 0x02300018U, 0x0210001FU, ~0U})
        EXPECT_EQ(lookUp(value), 0U) << std::hex << value;
}

TEST(PixelTypes, GevLookup) {
    EXPECT_EQ(gevCodes.size(), 10U);
    for (const auto& [value, code] : gevCodes) {
        EXPECT_EQ(GevToZelPixelType(value), code) << std::hex << value;
        for (const uint32_t other : {value - 1, value + 1}) {
            if (gevCodes.count(other) == 0) {
                EXPECT_EQ(GevToZelPixelType(other), 0U) << std::hex << other;
            }
        }
    }
    for (const auto& [value, code] : pfncCodes)
        EXPECT_EQ(GevToZelPixelType(value), 0U) << std::hex << value;
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
