// The components of a frame that has parts: what a 3D camera sends.
#pragma once

#include <bitset>
#include <cstddef>
#include <cstdint>

#include "gentl/GenTL.h"
#include "gentl/PFNC.h"
#include "producers/wire/gendc.h"

namespace ZelSim {

// In the order of the selector, and in that of the parts of a frame.
enum class Component : uint32_t { Intensity, Range, Confidence };
constexpr uint32_t kNumComponents = 3;
using ComponentSet = std::bitset<kNumComponents>;

constexpr uint32_t kRangeFormat = GenICam_3_0::PFNC::Coord3D_C16;

struct ComponentTraits {
    Component component;
    const char* name;
    const char* toolTip;
    uint32_t format;  // PFNC value; 0: that of the camera
    GenTL::PARTDATATYPE_ID partType;
    uint16_t id;  // purpose of the data, and type of a GenDC component
};
constexpr ComponentTraits kComponents[kNumComponents] = {
    {Component::Intensity, "Intensity", "The picture, in the camera's pixel format.", 0,
     GenTL::PART_DATATYPE_2D_IMAGE, 1},
    {Component::Range, "Range", "The distance of each pixel.", kRangeFormat,
     GenTL::PART_DATATYPE_3D_IMAGE, 4},
    {Component::Confidence, "Confidence", "How sure the distance of each pixel is.",
     GenICam_3_0::PFNC::Confidence8, GenTL::PART_DATATYPE_CONFIDENCE_MAP, 6},
};

// Of all parts.
constexpr uint8_t kSourceId = 1;
constexpr uint16_t kRegionId = 2;

// The bytes that describe components of one part each. Headers are whole words of 64 bits.
constexpr size_t kGenDcPartHeaderSize = 56;
constexpr size_t GenDcDescriptorSize(size_t numComponents) {
    return ZelCti::GenDc::ContainerHeaderSize(numComponents) +
           numComponents * (ZelCti::GenDc::ComponentHeaderSize(1) + kGenDcPartHeaderSize);
}

// What a pixel shows, from its place in the image and the number of the frame.
constexpr uint16_t RangeAt(uint64_t frame, size_t x, size_t y) {
    return static_cast<uint16_t>(2 * x + 3 * y + 16 * frame);
}
constexpr uint8_t ConfidenceAt(uint64_t frame, size_t x, size_t y) {
    return static_cast<uint8_t>(x + 5 * y + 7 * frame);
}

// Draw the first lines of a frame, `pitch` bytes each, with zeros as padding. Values of range are
// little endian.
void DrawRange(uint64_t frame, size_t width, uint8_t* image, size_t pitch, size_t numLines);
void DrawConfidence(uint64_t frame, size_t width, uint8_t* image, size_t pitch, size_t numLines);

}  // namespace ZelSim
