#include "utils/pixeltypes.h"

#include <iterator>
#include <map>
#include <string_view>

namespace PFNC = GenICam_3_0::PFNC;

int32_t GetIndexMONO(int16_t letter) {
    return letter == 'Y' ? 0 : -1;
}

int32_t GetIndexRGB(int16_t letter) {
    switch (letter) {
        case 'R':
            return 0;
        case 'G':
            return 1;
        case 'B':
            return 2;
        default:
            return -1;
    }
}

int32_t GetIndexBGR(int16_t letter) {
    switch (letter) {
        case 'B':
            return 0;
        case 'G':
            return 1;
        case 'R':
            return 2;
        default:
            return -1;
    }
}

int32_t GetIndexRGBA(int16_t letter) {
    return letter == 'A' ? 3 : GetIndexRGB(letter);
}

int32_t GetIndexBGRA(int16_t letter) {
    return letter == 'A' ? 3 : GetIndexBGR(letter);
}

int32_t GetIndexYUV(int16_t letter) {
    switch (letter) {
        case 'Y':
            return 0;
        case 'U':
            return 1;
        case 'V':
            return 2;
        default:
            return -1;
    }
}

namespace {

constexpr ColorModelDescription kRowsBeforeTrueSense[] = {
    {"Mono8", "Y", 1, 8, GetIndexMONO, 0, ZelPixelType_Mono8},
    {"Mono10", "Y", 1, 10, GetIndexMONO, 0, ZelPixelType_Mono10},
    {"Mono10p", "Y", 1, 10, GetIndexMONO, 0, ZelPixelType_Mono10p},
    {"Mono10Packed", "Y", 1, 10, GetIndexMONO, 0, ZelPixelType_Mono10Packed},
    {"Mono10_FLExPacked", "Y", 1, 10, GetIndexMONO, 0, ZelPixelType_Mono10_FLExPacked},
    {"Mono12", "Y", 1, 12, GetIndexMONO, 0, ZelPixelType_Mono12},
    {"Mono12p", "Y", 1, 12, GetIndexMONO, 0, ZelPixelType_Mono12p},
    {"Mono12Packed", "Y", 1, 12, GetIndexMONO, 0, ZelPixelType_Mono12Packed},
    {"Mono12_FLExPacked", "Y", 1, 12, GetIndexMONO, 0, ZelPixelType_Mono12_FLExPacked},
    {"Mono14", "Y", 1, 14, GetIndexMONO, 0, ZelPixelType_Mono14},
    {"Mono16", "Y", 1, 16, GetIndexMONO, 0, ZelPixelType_Mono16},
    {"Mono8_FLExPacked", "Y", 1, 8, GetIndexMONO, 0, ZelPixelType_Mono8_FLExPacked},
    {"BayerGR8", "G R G2 B", 1, 8, GetIndexMONO, 0, ZelPixelType_BayerGR8},
    {"BayerRG8", "R G B G2", 1, 8, GetIndexMONO, 0, ZelPixelType_BayerRG8},
    {"BayerGB8", "G B G2 R", 1, 8, GetIndexMONO, 0, ZelPixelType_BayerGB8},
    {"BayerBG8", "B G R G2", 1, 8, GetIndexMONO, 0, ZelPixelType_BayerBG8},
    {"BayerGR10", "G R G2 B", 1, 10, GetIndexMONO, 0, ZelPixelType_BayerGR10},
    {"BayerRG10", "R G B G2", 1, 10, GetIndexMONO, 0, ZelPixelType_BayerRG10},
    {"BayerGB10", "G B G2 R", 1, 10, GetIndexMONO, 0, ZelPixelType_BayerGB10},
    {"BayerBG10", "B G R G2", 1, 10, GetIndexMONO, 0, ZelPixelType_BayerBG10},
    {"BayerGR12", "G R G2 B", 1, 12, GetIndexMONO, 0, ZelPixelType_BayerGR12},
    {"BayerRG12", "R G B G2", 1, 12, GetIndexMONO, 0, ZelPixelType_BayerRG12},
    {"BayerGB12", "G B G2 R", 1, 12, GetIndexMONO, 0, ZelPixelType_BayerGB12},
    {"BayerBG12", "B G R G2", 1, 12, GetIndexMONO, 0, ZelPixelType_BayerBG12},
    {"BayerGR10p", "G R G2 B", 1, 10, GetIndexMONO, 0, ZelPixelType_BayerGR10p},
    {"BayerGR10Packed", "G R G2 B", 1, 10, GetIndexMONO, 0, ZelPixelType_BayerGR10Packed},
    {"BayerRG10p", "R G B G2", 1, 10, GetIndexMONO, 0, ZelPixelType_BayerRG10p},
    {"BayerRG10Packed", "R G B G2", 1, 10, GetIndexMONO, 0, ZelPixelType_BayerRG10Packed},
    {"BayerGB10p", "G B G2 R", 1, 10, GetIndexMONO, 0, ZelPixelType_BayerGB10p},
    {"BayerGB10Packed", "G B G2 R", 1, 10, GetIndexMONO, 0, ZelPixelType_BayerGB10Packed},
    {"BayerBG10p", "B G R G2", 1, 10, GetIndexMONO, 0, ZelPixelType_BayerBG10p},
    {"BayerBG10Packed", "B G R G2", 1, 10, GetIndexMONO, 0, ZelPixelType_BayerBG10Packed},
    {"BayerGR12p", "G R G2 B", 1, 12, GetIndexMONO, 0, ZelPixelType_BayerGR12p},
    {"BayerGR12Packed", "G R G2 B", 1, 12, GetIndexMONO, 0, ZelPixelType_BayerGR12Packed},
    {"BayerRG12p", "R G B G2", 1, 12, GetIndexMONO, 0, ZelPixelType_BayerRG12p},
    {"BayerRG12Packed", "R G B G2", 1, 12, GetIndexMONO, 0, ZelPixelType_BayerRG12Packed},
    {"BayerGB12p", "G B G2 R", 1, 12, GetIndexMONO, 0, ZelPixelType_BayerGB12p},
    {"BayerGB12Packed", "G B G2 R", 1, 12, GetIndexMONO, 0, ZelPixelType_BayerGB12Packed},
    {"BayerBG12p", "B G R G2", 1, 12, GetIndexMONO, 0, ZelPixelType_BayerBG12p},
    {"BayerBG12Packed", "B G R G2", 1, 12, GetIndexMONO, 0, ZelPixelType_BayerBG12Packed},
    {"BayerGR14", "G R G2 B", 1, 14, GetIndexMONO, 0, ZelPixelType_BayerGR14},
    {"BayerRG14", "R G B G2", 1, 14, GetIndexMONO, 0, ZelPixelType_BayerRG14},
    {"BayerGB14", "G B G2 R", 1, 14, GetIndexMONO, 0, ZelPixelType_BayerGB14},
    {"BayerBG14", "B G R G2", 1, 14, GetIndexMONO, 0, ZelPixelType_BayerBG14},
    {"BayerGR16", "G R G2 B", 1, 16, GetIndexMONO, 0, ZelPixelType_BayerGR16},
    {"BayerRG16", "R G B G2", 1, 16, GetIndexMONO, 0, ZelPixelType_BayerRG16},
    {"BayerGB16", "G B G2 R", 1, 16, GetIndexMONO, 0, ZelPixelType_BayerGB16},
    {"BayerBG16", "B G R G2", 1, 16, GetIndexMONO, 0, ZelPixelType_BayerBG16},
};

constexpr ColorModelDescription kRowsAfterTrueSense[] = {
    {"RGB8", "R G B", 3, 8, GetIndexRGB, 0, ZelPixelType_RGB8},
    {"BGR8", "B G R", 3, 8, GetIndexBGR, 0, ZelPixelType_BGR8},
    {"RGBa8", "R G B A", 4, 8, GetIndexRGBA, 0, ZelPixelType_RGBa8},
    {"BGRa8", "B G R A", 4, 8, GetIndexBGRA, 0, ZelPixelType_BGRa8},
    {"RGB10", "R G B", 3, 10, GetIndexRGB, 0, ZelPixelType_RGB10},
    {"BGR10", "B G R", 3, 10, GetIndexBGR, 0, ZelPixelType_BGR10},
    {"RGB12", "R G B", 3, 12, GetIndexRGB, 0, ZelPixelType_RGB12},
    {"BGR12", "B G R", 3, 12, GetIndexBGR, 0, ZelPixelType_BGR12},
    {"RGB14", "R G B", 3, 14, GetIndexRGB, 0, ZelPixelType_RGB14},
    {"BGR14", "B G R", 3, 14, GetIndexBGR, 0, ZelPixelType_BGR14},
    {"RGB16", "R G B", 3, 16, GetIndexRGB, 0, ZelPixelType_RGB16},
    {"BGR16", "B G R", 3, 16, GetIndexBGR, 0, ZelPixelType_BGR16},
    {"RGB_8_FLEX_Packed", "R G B", 3, 8, GetIndexRGB, 0, ZelPixelType_RGB_8_FLEX_Packed},
    {"RGB_10_FLEX_Packed", "R G B", 3, 10, GetIndexRGB, 0, ZelPixelType_RGB_10_FLEX_Packed},
    {"RGB_12_FLEX_Packed", "R G B", 3, 12, GetIndexRGB, 0, ZelPixelType_RGB_12_FLEX_Packed},
    {"YUV422_8_UYVY", "U Y V Y", 3, 8, GetIndexYUV, 0, ZelPixelType_YUV422_8_UYVY},
    {"YUV422_8", "Y U Y V", 3, 8, GetIndexYUV, 0, ZelPixelType_YUV422_8},
    {"YUV422_10", "Y U Y V", 3, 10, GetIndexYUV, 0, ZelPixelType_YUV422_10},
    {"YUV422_10_PACKED", "Y U Y V", 3, 10, GetIndexYUV, 0, ZelPixelType_YUV422_10_PACKED},
    {"YUV444_8", "Y U V A", 4, 8, GetIndexYUV, 0, ZelPixelType_YUV444_8},
    {"YCbCr422_8", "Y Cb Y Cr", 3, 8, GetIndexYUV, 0, ZelPixelType_YCbCr422_8},
};

struct TrueSensePattern {
    std::string_view name;
    const char* components;  // a cell of four by four pixels, row by row
};

constexpr TrueSensePattern kTrueSensePatterns[] = {
    {"BGGR_WBBW", "W B W G B W G W W G W R G W R W"},
    {"GBRG_WGGW", "W G W B G W B W W R W G R W G W"},
    {"GRBG_WGGW", "W G W R G W R W W B W G B W G W"},
    {"RGGB_WRRW", "W R W G R W G W W G W B G W B W"},
};

constexpr size_t kTrueSensePhases = 4;
constexpr uint32_t kTrueSenseBits[] = {8, 10, 12, 14};
constexpr size_t kTrueSenseRows =
    std::size(kTrueSenseBits) * std::size(kTrueSensePatterns) * kTrueSensePhases;

// The TrueSense rows are ordered by bits, then patterns, then phases.
struct TrueSenseFormat {
    constexpr explicit TrueSenseFormat(size_t row)
        : bits(kTrueSenseBits[row / (std::size(kTrueSensePatterns) * kTrueSensePhases)]),
          pattern(row / kTrueSensePhases % std::size(kTrueSensePatterns)),
          phase(static_cast<uint32_t>(row % kTrueSensePhases)) {}

    uint32_t bits;
    size_t pattern;
    uint32_t phase;
};

// "TrueSense_<pattern>_<phase>_<bits>" with its terminating zero.
using TrueSenseName = std::array<char, 32>;

constexpr TrueSenseName MakeTrueSenseName(const TrueSenseFormat& format) {
    TrueSenseName name{};
    size_t length = 0;
    const auto append = [&](std::string_view text) {
        for (const char c : text)
            name[length++] = c;
    };
    const auto appendDigit = [&](uint32_t digit) {
        name[length++] = static_cast<char>('0' + digit);
    };
    append("TrueSense_");
    append(kTrueSensePatterns[format.pattern].name);
    append("_");
    appendDigit(format.phase);
    append("_");
    if (format.bits >= 10) appendDigit(format.bits / 10);
    appendDigit(format.bits % 10);
    return name;
}

constexpr std::array<TrueSenseName, kTrueSenseRows> MakeTrueSenseNames() {
    std::array<TrueSenseName, kTrueSenseRows> names{};
    for (size_t row = 0; row < names.size(); ++row)
        names[row] = MakeTrueSenseName(TrueSenseFormat(row));
    return names;
}

constexpr auto kTrueSenseNames = MakeTrueSenseNames();

constexpr ColorModelDescription MakeTrueSenseRow(size_t row) {
    const TrueSenseFormat format(row);
    return {kTrueSenseNames[row].data(),
            kTrueSensePatterns[format.pattern].components,
            1,
            format.bits,
            GetIndexMONO,
            format.phase,
            ZelTrueSensePixelType(static_cast<ZelTrueSensePattern>(format.pattern), format.phase,
                                  format.bits)};
}

using ColorModelTable = std::array<ColorModelDescription, 133>;

constexpr ColorModelTable MakeColorModelTable() {
    ColorModelTable table{};
    size_t index = 0;
    for (const auto& row : kRowsBeforeTrueSense)
        table[index++] = row;
    for (size_t row = 0; row < kTrueSenseRows; ++row)
        table[index++] = MakeTrueSenseRow(row);
    for (const auto& row : kRowsAfterTrueSense)
        table[index++] = row;
    return table;
}

constexpr bool RowsFollowTheirNumbers(const ColorModelTable& table) {
    for (size_t index = 0; index < table.size(); ++index) {
        if ((table[index].pixelType & 0xFF) != index + 1) return false;
    }
    return true;
}

static_assert(RowsFollowTheirNumbers(MakeColorModelTable()));

using PfncTable = std::map<PFNC::PixelFormatStandardValue, II_PIXEL_TYPE_DEFINES>;
using GevTable = std::map<uint32_t, II_PIXEL_TYPE_DEFINES>;

const PfncTable& GetTablePFNC() {
    static const PfncTable kTable = {
        {PFNC::Mono8, ZelPixelType_Mono8},           {PFNC::Mono10, ZelPixelType_Mono10},
        {PFNC::Mono10p, ZelPixelType_Mono10p},       {PFNC::Mono12, ZelPixelType_Mono12},
        {PFNC::Mono12p, ZelPixelType_Mono12p},       {PFNC::Mono14, ZelPixelType_Mono14},
        {PFNC::Mono16, ZelPixelType_Mono16},         {PFNC::BayerGR8, ZelPixelType_BayerGR8},
        {PFNC::BayerRG8, ZelPixelType_BayerRG8},     {PFNC::BayerGB8, ZelPixelType_BayerGB8},
        {PFNC::BayerBG8, ZelPixelType_BayerBG8},     {PFNC::BayerGR10, ZelPixelType_BayerGR10},
        {PFNC::BayerRG10, ZelPixelType_BayerRG10},   {PFNC::BayerGB10, ZelPixelType_BayerGB10},
        {PFNC::BayerBG10, ZelPixelType_BayerBG10},   {PFNC::BayerGR12, ZelPixelType_BayerGR12},
        {PFNC::BayerRG12, ZelPixelType_BayerRG12},   {PFNC::BayerGB12, ZelPixelType_BayerGB12},
        {PFNC::BayerBG12, ZelPixelType_BayerBG12},   {PFNC::BayerGR10p, ZelPixelType_BayerGR10p},
        {PFNC::BayerRG10p, ZelPixelType_BayerRG10p}, {PFNC::BayerGB10p, ZelPixelType_BayerGB10p},
        {PFNC::BayerBG10p, ZelPixelType_BayerBG10p}, {PFNC::BayerGR12p, ZelPixelType_BayerGR12p},
        {PFNC::BayerRG12p, ZelPixelType_BayerRG12p}, {PFNC::BayerGB12p, ZelPixelType_BayerGB12p},
        {PFNC::BayerBG12p, ZelPixelType_BayerBG12p}, {PFNC::BayerGR16, ZelPixelType_BayerGR16},
        {PFNC::BayerRG16, ZelPixelType_BayerRG16},   {PFNC::BayerGB16, ZelPixelType_BayerGB16},
        {PFNC::BayerBG16, ZelPixelType_BayerBG16},   {PFNC::BGR8, ZelPixelType_BGR8},
        {PFNC::BGRa8, ZelPixelType_BGRa8},           {PFNC::BGR10, ZelPixelType_BGR10},
        {PFNC::BGR12, ZelPixelType_BGR12},           {PFNC::BGR14, ZelPixelType_BGR14},
        {PFNC::BGR16, ZelPixelType_BGR16},           {PFNC::YCbCr422_8, ZelPixelType_YCbCr422_8},
        {PFNC::BGR10p, ZelPixelType_None},           {PFNC::BGR12p, ZelPixelType_None},
        {PFNC::BGRa10, ZelPixelType_None},           {PFNC::BGRa10p, ZelPixelType_None},
        {PFNC::BGRa12, ZelPixelType_None},           {PFNC::BGRa12p, ZelPixelType_None},
        {PFNC::BGRa14, ZelPixelType_None},           {PFNC::BGRa16, ZelPixelType_None},
    };
    return kTable;
}

// GigE Vision 1.x formats that PFNC has no packing for.
const GevTable& GetTableGEV() {
    static const GevTable kTable = {
        {PFNC::Mono10Packed, ZelPixelType_Mono10Packed},
        {PFNC::Mono12Packed, ZelPixelType_Mono12Packed},
        {PFNC::BayerGR10Packed, ZelPixelType_BayerGR10Packed},
        {PFNC::BayerRG10Packed, ZelPixelType_BayerRG10Packed},
        {PFNC::BayerGB10Packed, ZelPixelType_BayerGB10Packed},
        {PFNC::BayerBG10Packed, ZelPixelType_BayerBG10Packed},
        {PFNC::BayerGR12Packed, ZelPixelType_BayerGR12Packed},
        {PFNC::BayerRG12Packed, ZelPixelType_BayerRG12Packed},
        {PFNC::BayerGB12Packed, ZelPixelType_BayerGB12Packed},
        {PFNC::BayerBG12Packed, ZelPixelType_BayerBG12Packed},
    };
    return kTable;
}

template <typename Table>
II_PIXEL_TYPE_DEFINES Find(const Table& table, typename Table::key_type key) {
    const auto found = table.find(key);
    return found != table.end() ? found->second : ZelPixelType_None;
}

}  // namespace

const ColorModelTable s_colorModelDescription = MakeColorModelTable();

II_PIXEL_TYPE_DEFINES PFNCToZelPixelType(PFNC::PixelFormatStandardValue value) {
    return Find(GetTablePFNC(), value);
}

II_PIXEL_TYPE_DEFINES GevToZelPixelType(uint32_t value) {
    return Find(GetTableGEV(), value);
}
