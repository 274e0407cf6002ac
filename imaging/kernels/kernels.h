// The loops over the components of lines, where the time goes. They are compiled for the processor
// that every machine has, and on x86-64 once more for newer ones (AVX2), which can permute bytes;
// the machine decides which set is used. No function writes outside of `count` components, or reads
// outside of those that `count` needs.
//
// The sources in this folder use no function of the standard library but memcpy: a template that
// was compiled for the newer processors could otherwise be what the linker keeps for all.
#pragma once

#include <cstddef>
#include <cstdint>

namespace ZelImage::Kernels {

// The lines of a mosaic around one line, which starts at `own`.
template <typename Sample>
struct MosaicLines {
    const Sample* above;
    const Sample* own;
    const Sample* below;
};

// The colours of a line whose filters are green and one other colour.
template <typename Sample>
struct MosaicColours {
    Sample* own;  // the other colour of the line
    Sample* green;
    Sample* other;  // the colour that the line lacks
};

// Numbers that YUV is converted with: a component less its zero, times its factors, is what it adds
// to red, green and blue.
struct YuvFactors {
    float black;    // luma of black
    float neutral;  // chroma of gray
    float luma;
    float redOfV;
    float greenOfU;
    float greenOfV;
    float blueOfU;
};

struct Set {
    // Components of `depth` bits that follow each other from the least significant bit: 10, 12, 14.
    void (*unpackLsbFirst)(const uint8_t* in, size_t count, uint32_t depth, uint16_t* out);
    // Two components of 10 or 12 bits in three bytes.
    void (*unpackGigEVision)(const uint8_t* in, size_t count, uint32_t depth, uint16_t* out);
    // Words; those above the depth become full scale.
    void (*unpackWords)(const uint8_t* in, size_t count, uint32_t depth, uint16_t* out);

    // Scales to another full scale, rounded. Of 8 bits or less to 8; of more to 8; to 16.
    void (*stretchTo8)(const uint8_t* in, size_t count, uint32_t depth, uint8_t* out);
    void (*narrowTo8)(const uint16_t* in, size_t count, uint32_t depth, uint8_t* out);
    void (*widenTo16)(const uint8_t* in, size_t count, uint32_t depth, uint16_t* out);
    void (*stretchTo16)(const uint16_t* in, size_t count, uint32_t depth, uint16_t* out);

    // Lines of three or four channels as pixels, and back. In the first two, `d` is null for pixels
    // of three channels. In the others, `step` is the channels of a pixel.
    void (*join8)(const uint8_t* const channels[4], size_t count, uint8_t* out);
    void (*join16)(const uint16_t* const channels[4], size_t count, uint16_t* out);
    void (*split8)(const uint8_t* in, size_t count, size_t step, uint8_t* const channels[4]);
    void (*split16)(const uint16_t* in, size_t count, size_t step, uint16_t* const channels[4]);

    // Bilinear demosaicing of the pixels `from` to `to` of a line, pairs of which the second one is
    // green. Every pixel has a neighbour on each side.
    void (*demosaic8)(const MosaicLines<uint8_t>& lines, size_t from, size_t to,
                      const MosaicColours<uint8_t>& colours);
    void (*demosaic16)(const MosaicLines<uint16_t>& lines, size_t from, size_t to,
                       const MosaicColours<uint16_t>& colours);

    // Luma of BT.601, rounded, of full range.
    void (*luma8)(const uint8_t* const rgb[4], size_t count, uint8_t* out);
    void (*luma16)(const uint16_t* const rgb[4], size_t count, uint16_t* out);

    // A line of luma and of the chroma of each pixel.
    void (*yuv8To8)(const uint8_t* const yuv[3], size_t count, const YuvFactors& factors,
                    uint8_t* const rgb[4]);
    void (*yuv8To16)(const uint8_t* const yuv[3], size_t count, const YuvFactors& factors,
                     uint16_t* const rgb[4]);
    void (*yuv16To8)(const uint16_t* const yuv[3], size_t count, const YuvFactors& factors,
                     uint8_t* const rgb[4]);
    void (*yuv16To16)(const uint16_t* const yuv[3], size_t count, const YuvFactors& factors,
                      uint16_t* const rgb[4]);
};

// The set for this machine.
const Set& Best();

}  // namespace ZelImage::Kernels
