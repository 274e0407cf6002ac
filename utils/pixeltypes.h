// The library's pixel-type codes: the table that describes each code, and the lookups that find the
// code of a producer's pixel format.
#pragma once

#include <array>
#include <cstdint>

#include "ZelCam/PixelType.h"
#include "gentl/PFNC.h"

// Position of a component, named by its letter, within a pixel; -1 if the pixel does not have it.
int32_t GetIndexMONO(int16_t letter);
int32_t GetIndexRGB(int16_t letter);
int32_t GetIndexBGR(int16_t letter);
int32_t GetIndexRGBA(int16_t letter);
int32_t GetIndexBGRA(int16_t letter);
int32_t GetIndexYUV(int16_t letter);

struct ColorModelDescription {
    const char* name;
    const char*
        components;  // of a pixel, or of the mosaic's cell: letters with blanks between them
    uint32_t channels;
    uint32_t bitsPerChannel;
    int32_t (*indexOf)(int16_t letter);
    uint32_t variant;  // phase of a TrueSense pattern, else 0
    uint32_t pixelType;
};

// One row for each code; the row number is (code & 0xFF) - 1.
extern const std::array<ColorModelDescription, 133> s_colorModelDescription;

// The code of a PFNC pixel format, and of a GigE Vision "Packed" format; 0 for formats without a
// code. Formats in BGR order have a PFNC mapping, but formats in RGB order do not: applications
// rely on this.
II_PIXEL_TYPE_DEFINES PFNCToZelPixelType(GenICam_3_0::PFNC::PixelFormatStandardValue value);
II_PIXEL_TYPE_DEFINES GevToZelPixelType(uint32_t value);
