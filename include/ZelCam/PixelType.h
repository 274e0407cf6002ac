// Pixel types: the library's codes for the layout of images.
#ifndef ZELCAM_PIXELTYPE_H
#define ZELCAM_PIXELTYPE_H

#include <cstdint>

// A pixel type, as ZelImageInfo::pixelType holds it:
//   bits 24 to 31  family: 1 monochrome, 2 RGB and its like, 3 Bayer, 4 TrueSense, 5 YUV and YCbCr
//   bits 16 to 23  bits that one pixel occupies
//   bits 8 to 15   packing; the high nibble is 0 unpacked, 1 GigE Vision "Packed" (two pixels in
//                  three bytes), 2 PFNC "p" (bits packed, least significant first), 3 FLEX packed;
//                  the low nibble is the significant bits, 1 = 8, 2 = 10, 3 = 12, 4 = 14, 5 = 16
//   bits 0 to 7    number of the format, 1 to 133
enum II_PIXEL_TYPE_DEFINES : uint32_t {
    ZelPixelType_None = 0,
    ZelPixelType_Mono8 = 0x01080101,
    ZelPixelType_Mono10 = 0x01100202,
    ZelPixelType_Mono10p = 0x010A2203,
    ZelPixelType_Mono10Packed = 0x010C1204,
    ZelPixelType_Mono10_FLExPacked = 0x010C3205,
    ZelPixelType_Mono12 = 0x01100306,
    ZelPixelType_Mono12p = 0x010C2307,
    ZelPixelType_Mono12Packed = 0x010C1308,
    ZelPixelType_Mono12_FLExPacked = 0x010C3309,
    ZelPixelType_Mono14 = 0x0110040A,
    ZelPixelType_Mono16 = 0x0110050B,
    ZelPixelType_Mono8_FLExPacked = 0x0108310C,
    ZelPixelType_BayerGR8 = 0x0308010D,
    ZelPixelType_BayerRG8 = 0x0308010E,
    ZelPixelType_BayerGB8 = 0x0308010F,
    ZelPixelType_BayerBG8 = 0x03080110,
    ZelPixelType_BayerGR10 = 0x03100211,
    ZelPixelType_BayerRG10 = 0x03100212,
    ZelPixelType_BayerGB10 = 0x03100213,
    ZelPixelType_BayerBG10 = 0x03100214,
    ZelPixelType_BayerGR12 = 0x03100315,
    ZelPixelType_BayerRG12 = 0x03100316,
    ZelPixelType_BayerGB12 = 0x03100317,
    ZelPixelType_BayerBG12 = 0x03100318,
    ZelPixelType_BayerGR10p = 0x030A2219,
    ZelPixelType_BayerGR10Packed = 0x030C121A,
    ZelPixelType_BayerRG10p = 0x030A221B,
    ZelPixelType_BayerRG10Packed = 0x030C121C,
    ZelPixelType_BayerGB10p = 0x030A221D,
    ZelPixelType_BayerGB10Packed = 0x030C121E,
    ZelPixelType_BayerBG10p = 0x030A221F,
    ZelPixelType_BayerBG10Packed = 0x030C1220,
    ZelPixelType_BayerGR12p = 0x030C2321,
    ZelPixelType_BayerGR12Packed = 0x030C1322,
    ZelPixelType_BayerRG12p = 0x030C2323,
    ZelPixelType_BayerRG12Packed = 0x030C1324,
    ZelPixelType_BayerGB12p = 0x030C2325,
    ZelPixelType_BayerGB12Packed = 0x030C1326,
    ZelPixelType_BayerBG12p = 0x030C2327,
    ZelPixelType_BayerBG12Packed = 0x030C1328,
    ZelPixelType_BayerGR14 = 0x03100429,
    ZelPixelType_BayerRG14 = 0x0310042A,
    ZelPixelType_BayerGB14 = 0x0310042B,
    ZelPixelType_BayerBG14 = 0x0310042C,
    ZelPixelType_BayerGR16 = 0x0310052D,
    ZelPixelType_BayerRG16 = 0x0310052E,
    ZelPixelType_BayerGB16 = 0x0310052F,
    ZelPixelType_BayerBG16 = 0x03100530,

    // The formats 49 to 112 are the TrueSense mosaics: see ZelTrueSensePixelType.

    ZelPixelType_RGB8 = 0x02180171,
    ZelPixelType_BGR8 = 0x02180172,
    ZelPixelType_RGBa8 = 0x02200173,
    ZelPixelType_BGRa8 = 0x02200174,
    ZelPixelType_RGB10 = 0x02300275,
    ZelPixelType_BGR10 = 0x02300276,
    ZelPixelType_RGB12 = 0x02300377,
    ZelPixelType_BGR12 = 0x02300378,
    ZelPixelType_RGB14 = 0x02300479,
    ZelPixelType_BGR14 = 0x0230047A,
    ZelPixelType_RGB16 = 0x0230057B,
    ZelPixelType_BGR16 = 0x0230057C,
    ZelPixelType_RGB_8_FLEX_Packed = 0x0218317D,
    ZelPixelType_RGB_10_FLEX_Packed = 0x0220327E,
    ZelPixelType_RGB_12_FLEX_Packed = 0x0224337F,
    ZelPixelType_YUV422_8_UYVY = 0x05100180,
    ZelPixelType_YUV422_8 = 0x05100181,
    ZelPixelType_YUV422_10 = 0x05200282,
    ZelPixelType_YUV422_10_PACKED = 0x05143283,
    ZelPixelType_YUV444_8 = 0x05200184,
    ZelPixelType_YCbCr422_8 = 0x05100185,
};

// The pattern of a TrueSense mosaic, a cell of four by four pixels.
enum class ZelTrueSensePattern : uint32_t {
    BGGR_WBBW = 0,
    GBRG_WGGW = 1,
    GRBG_WGGW = 2,
    RGGB_WRRW = 3
};

// The code of a TrueSense format: pattern, phase (0 to 3) and significant bits (8, 10, 12 or 14).
constexpr II_PIXEL_TYPE_DEFINES ZelTrueSensePixelType(ZelTrueSensePattern pattern, uint32_t phase,
                                                      uint32_t bits) {
    const uint32_t depth = (bits - 8) / 2;
    const uint32_t number = 49 + 16 * depth + 4 * static_cast<uint32_t>(pattern) + phase;
    const uint32_t occupied = bits == 8 ? 8 : 16;
    return static_cast<II_PIXEL_TYPE_DEFINES>(0x04000000U | occupied << 16 | (depth + 1) << 8 |
                                              number);
}

#endif  // ZELCAM_PIXELTYPE_H
