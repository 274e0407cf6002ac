// The functions of a set, in a namespace for each set: ZELIMAGE_LEVEL names it.
#pragma once

#include <cstddef>
#include <cstdint>

#include "imaging/kernels/kernels.h"

namespace ZelImage::Kernels::ZELIMAGE_LEVEL {

// unpack.cpp
void UnpackLsbFirst(const uint8_t* in, size_t count, uint32_t depth, uint16_t* out);
void UnpackGigEVision(const uint8_t* in, size_t count, uint32_t depth, uint16_t* out);
void UnpackWords(const uint8_t* in, size_t count, uint32_t depth, uint16_t* out);

// stretch.cpp
void StretchTo8(const uint8_t* in, size_t count, uint32_t depth, uint8_t* out);
void NarrowTo8(const uint16_t* in, size_t count, uint32_t depth, uint8_t* out);
void WidenTo16(const uint8_t* in, size_t count, uint32_t depth, uint16_t* out);
void StretchTo16(const uint16_t* in, size_t count, uint32_t depth, uint16_t* out);

// channels.cpp
void Join8(const uint8_t* const channels[4], size_t count, uint8_t* out);
void Join16(const uint16_t* const channels[4], size_t count, uint16_t* out);
void Split8(const uint8_t* in, size_t count, size_t step, uint8_t* const channels[4]);
void Split16(const uint16_t* in, size_t count, size_t step, uint16_t* const channels[4]);

// mosaic.cpp
void Demosaic8(const MosaicLines<uint8_t>& lines, size_t from, size_t to,
               const MosaicColours<uint8_t>& colours);
void Demosaic16(const MosaicLines<uint16_t>& lines, size_t from, size_t to,
                const MosaicColours<uint16_t>& colours);

// luma.cpp
void Luma8(const uint8_t* const rgb[4], size_t count, uint8_t* out);
void Luma16(const uint16_t* const rgb[4], size_t count, uint16_t* out);
void Yuv8To8(const uint8_t* const yuv[3], size_t count, const YuvFactors& factors,
             uint8_t* const rgb[4]);
void Yuv8To16(const uint8_t* const yuv[3], size_t count, const YuvFactors& factors,
              uint16_t* const rgb[4]);
void Yuv16To8(const uint16_t* const yuv[3], size_t count, const YuvFactors& factors,
              uint8_t* const rgb[4]);
void Yuv16To16(const uint16_t* const yuv[3], size_t count, const YuvFactors& factors,
               uint16_t* const rgb[4]);

extern const Set kSet;  // set.cpp

}  // namespace ZelImage::Kernels::ZELIMAGE_LEVEL
