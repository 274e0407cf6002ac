// The table of pixel types and the two lookups. What the table must say follows from the names of
// the formats, which stand here as literals, as the values of the standards do.
#include "utils/pixeltypes.h"

#include <algorithm>
#include <iterator>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace {

using Helper = int32_t (*)(int16_t);

// The rows in order; the TrueSense rows lie between these.
constexpr const char* kFirstNames =
    "Mono8 Mono10 Mono10p Mono10Packed Mono10_FLExPacked Mono12 Mono12p Mono12Packed "
    "Mono12_FLExPacked Mono14 Mono16 Mono8_FLExPacked BayerGR8 BayerRG8 BayerGB8 "
    "BayerBG8 BayerGR10 BayerRG10 BayerGB10 BayerBG10 BayerGR12 BayerRG12 BayerGB12 "
    "BayerBG12 BayerGR10p BayerGR10Packed BayerRG10p BayerRG10Packed BayerGB10p "
    "BayerGB10Packed BayerBG10p BayerBG10Packed BayerGR12p BayerGR12Packed BayerRG12p "
    "BayerRG12Packed BayerGB12p BayerGB12Packed BayerBG12p BayerBG12Packed BayerGR14 "
    "BayerRG14 BayerGB14 BayerBG14 BayerGR16 BayerRG16 BayerGB16 BayerBG16 ";
constexpr const char* kLastNames =
    "RGB8 BGR8 RGBa8 BGRa8 RGB10 BGR10 RGB12 BGR12 RGB14 BGR14 RGB16 BGR16 "
    "RGB_8_FLEX_Packed RGB_10_FLEX_Packed RGB_12_FLEX_Packed YUV422_8_UYVY YUV422_8 "
    "YUV422_10 YUV422_10_PACKED YUV444_8 YCbCr422_8 ";

struct Format {
    uint32_t value;
    const char* name;  // of the row that it leads to
};
constexpr Format kPfncFormats[] = {
    {0x01080001, "Mono8"},      {0x01100003, "Mono10"},     {0x010A0046, "Mono10p"},
    {0x01100005, "Mono12"},     {0x010C0047, "Mono12p"},    {0x01100025, "Mono14"},
    {0x01100007, "Mono16"},     {0x01080008, "BayerGR8"},   {0x01080009, "BayerRG8"},
    {0x0108000A, "BayerGB8"},   {0x0108000B, "BayerBG8"},   {0x0110000C, "BayerGR10"},
    {0x0110000D, "BayerRG10"},  {0x0110000E, "BayerGB10"},  {0x0110000F, "BayerBG10"},
    {0x01100010, "BayerGR12"},  {0x01100011, "BayerRG12"},  {0x01100012, "BayerGB12"},
    {0x01100013, "BayerBG12"},  {0x010A0056, "BayerGR10p"}, {0x010A0058, "BayerRG10p"},
    {0x010A0054, "BayerGB10p"}, {0x010A0052, "BayerBG10p"}, {0x010C0057, "BayerGR12p"},
    {0x010C0059, "BayerRG12p"}, {0x010C0055, "BayerGB12p"}, {0x010C0053, "BayerBG12p"},
    {0x0110002E, "BayerGR16"},  {0x0110002F, "BayerRG16"},  {0x01100030, "BayerGB16"},
    {0x01100031, "BayerBG16"},  {0x02180015, "BGR8"},       {0x02200017, "BGRa8"},
    {0x02300019, "BGR10"},      {0x0230001B, "BGR12"},      {0x0230004A, "BGR14"},
    {0x0230004B, "BGR16"},      {0x0210003B, "YCbCr422_8"},
};
constexpr Format kGevFormats[] = {
    {0x010C0004, "Mono10Packed"},    {0x010C0006, "Mono12Packed"},
    {0x010C0026, "BayerGR10Packed"}, {0x010C0027, "BayerRG10Packed"},
    {0x010C0028, "BayerGB10Packed"}, {0x010C0029, "BayerBG10Packed"},
    {0x010C002A, "BayerGR12Packed"}, {0x010C002B, "BayerRG12Packed"},
    {0x010C002C, "BayerGB12Packed"}, {0x010C002D, "BayerBG12Packed"},
};

std::vector<std::string> Split(const std::string& words) {
    std::istringstream in(words);
    return {std::istream_iterator<std::string>(in), {}};
}

std::string Join(const std::string& letters) {
    std::string words;
    for (const char letter : letters)
        words += (words.empty() ? "" : " ") + std::string(1, letter);
    return words;
}

bool Begins(const std::string& name, const char* with) {
    return name.rfind(with, 0) == 0;
}
bool Has(const std::string& name, const char* part) {
    return name.find(part) != std::string::npos;
}

std::vector<std::string> AllNames() {
    std::vector<std::string> names = Split(kFirstNames);
    for (const char* const bits : {"8", "10", "12", "14"})
        for (const char* const pattern : {"BGGR_WBBW", "GBRG_WGGW", "GRBG_WGGW", "RGGB_WRRW"})
            for (const char* const phase : {"0", "1", "2", "3"})
                names.push_back(std::string("TrueSense_") + pattern + '_' + phase + '_' + bits);
    const std::vector<std::string> last = Split(kLastNames);
    names.insert(names.end(), last.begin(), last.end());
    return names;
}

uint32_t FamilyOf(const std::string& name) {
    const char* const begins[] = {"Mono", "", "Bayer", "TrueSense", "Y"};
    for (uint32_t i = 0; i < 5; ++i)
        if (i != 1 && Begins(name, begins[i])) return i + 1;
    return 2;
}

// Behind what other numbers a name may begin with.
uint32_t BitsOf(const std::string& name) {
    const size_t begin = Begins(name, "TrueSense") ? 21 : FamilyOf(name) == 5 ? name.find('_') : 0;
    return static_cast<uint32_t>(std::stoul(name.substr(name.find_first_of("0123456789", begin))));
}

uint32_t PackingOf(const std::string& name) {
    if (Has(name, "FLE") || Has(name, "PACKED")) return 3;
    return Has(name, "Packed") ? 1 : name.back() == 'p' ? 2 : 0;
}

// A green line's second colour is that of the other line.
std::string BayerComponents(const std::string& pattern) {
    const std::string other = Has(pattern, "R") ? "B" : "R";
    return Join(pattern) + (pattern[0] == 'G' ? " G2 " + other : " " + other + " G2");
}

// White alternates with the colours, each of which fills a quarter of the cell.
std::string TrueSenseComponents(const std::string& pattern) {
    std::string cell;
    for (size_t row = 0; row < 4; ++row)
        for (size_t column = 0; column < 4; ++column)
            cell += (row + column) % 2 == 0 ? 'W' : pattern[row / 2 * 2 + column / 2];
    return Join(cell);
}

std::string ComponentsOf(const std::string& name) {
    switch (FamilyOf(name)) {
        case 1:
            return "Y";
        case 2: {
            std::string letters = name.substr(0, name.find_first_not_of("RGBa"));
            std::replace(letters.begin(), letters.end(), 'a', 'A');
            return Join(letters);
        }
        case 3:
            return BayerComponents(name.substr(5, 2));
        case 4:
            return TrueSenseComponents(name.substr(10, 4));
        default:
            if (Begins(name, "YCbCr")) return "Y Cb Y Cr";
            if (Begins(name, "YUV444")) return "Y U V A";
            return Has(name, "UYVY") ? "U Y V Y" : "Y U Y V";
    }
}

// A mosaic has one channel, and of the formats in two halves each pixel has all three.
uint32_t ChannelsOf(const std::string& name) {
    const uint32_t family = FamilyOf(name);
    if (family == 1 || family == 3 || family == 4) return 1;
    return Has(name, "422") ? 3 : static_cast<uint32_t>(Split(ComponentsOf(name)).size());
}

Helper HelperOf(const std::string& name) {
    if (ChannelsOf(name) == 1) return GetIndexMONO;
    if (FamilyOf(name) == 5) return GetIndexYUV;
    const bool alpha = ChannelsOf(name) == 4;
    if (Begins(name, "B")) return alpha ? GetIndexBGRA : GetIndexBGR;
    return alpha ? GetIndexRGBA : GetIndexRGB;
}

uint32_t FromPfnc(uint32_t value) {
    return PFNCToZelPixelType(static_cast<GenICam_3_0::PFNC::PixelFormatStandardValue>(value));
}

uint32_t FromGev(uint32_t value) {
    return GevToZelPixelType(value);
}

const ColorModelDescription& RowOf(uint32_t code) {
    return s_colorModelDescription.at((code & 0xFF) - 1);
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
                EXPECT_EQ(code, RowOf(code).pixelType);
                EXPECT_TRUE(codes.insert(code).second) << std::hex << code;
            }
        }
    }
    return codes;
}

}  // namespace

TEST(PixelTypes, RowsSayWhatTheirNamesSay) {
    const std::vector<std::string> names = AllNames();
    ASSERT_EQ(names.size(), s_colorModelDescription.size());
    for (size_t i = 0; i < names.size(); ++i) {
        const ColorModelDescription& row = s_colorModelDescription.at(i);
        const std::string& name = names[i];
        SCOPED_TRACE(name);
        EXPECT_EQ(row.name, name);
        EXPECT_EQ(row.components, ComponentsOf(name));
        EXPECT_EQ(row.channels, ChannelsOf(name));
        EXPECT_EQ(row.bitsPerChannel, BitsOf(name));
        EXPECT_EQ(row.indexOf, HelperOf(name));
        EXPECT_EQ(row.variant, Begins(name, "TrueSense") ? i % 4 : 0);
        EXPECT_EQ(row.pixelType & 0xFF, i + 1);
        EXPECT_EQ(row.pixelType >> 8 & 0xFF, PackingOf(name) << 4 | (BitsOf(name) - 6) / 2);
        EXPECT_EQ(row.pixelType >> 24, FamilyOf(name));
        if (PackingOf(name) == 0 && FamilyOf(name) != 5) {
            const uint32_t storage = BitsOf(name) == 8 ? 8 : 16;
            EXPECT_EQ(row.pixelType >> 16 & 0xFF, ChannelsOf(name) * storage);
        }
    }
}

TEST(PixelTypes, FormatsLeadToTheirRows) {
    for (const Format& format : kPfncFormats)
        EXPECT_STREQ(RowOf(FromPfnc(format.value)).name, format.name);
    for (const Format& format : kGevFormats)
        EXPECT_STREQ(RowOf(FromGev(format.value)).name, format.name);
    EXPECT_EQ(CodesOf(FromPfnc).size(), std::size(kPfncFormats));
    EXPECT_EQ(CodesOf(FromGev).size(), std::size(kGevFormats));
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
