// The lines of an image as those of a picture.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>

#include "imaging/shape.h"

namespace ZelImage::Internal {

// Where a line goes: gray to the first channel; red, green, blue, and alpha if the format has it.
// Each has room for a line.
template <typename Sample>
using Channels = std::array<Sample*, 4>;

// `Sample` holds the depth of the picture: uint8_t up to 8 bits, else uint16_t. An object is used
// for one image, which must outlive it.
template <typename Sample>
class PictureSource {
  public:
    PictureSource() = default;
    virtual ~PictureSource() = default;
    PictureSource(const PictureSource&) = delete;
    PictureSource& operator=(const PictureSource&) = delete;

    // Lines are read in their order, each once.
    virtual void Read(size_t y, const Channels<Sample>& channels) = 0;
};

template <typename Sample>
using PictureSourcePtr = std::unique_ptr<PictureSource<Sample>>;

// One for each family of formats. All but that of YUV give samples of the image's depth; that one
// of `toDepth` bits, and luma alone if `isGray`.
template <typename Sample>
PictureSourcePtr<Sample> MakeGraySource(const Image& image);  // graysource.cpp
template <typename Sample>
PictureSourcePtr<Sample> MakeSparseSource(const Image& image);  // graysource.cpp
template <typename Sample>
PictureSourcePtr<Sample> MakeRgbSource(const Image& image);  // rgbsource.cpp
template <typename Sample>
PictureSourcePtr<Sample> MakeBiColourSource(const Image& image);  // rgbsource.cpp
template <typename Sample>
PictureSourcePtr<Sample> MakeBilinearSource(const Image& image);  // bilinearsource.cpp
template <typename Sample>
PictureSourcePtr<Sample> MakeEdgeAwareSource(const Image& image);  // edgeawaresource.cpp
template <typename Sample>
PictureSourcePtr<Sample> MakeYuvSource(const Image& image, const ConvertOptions& options,
                                       bool isGray);  // yuvsource.cpp

// The bits of the samples that a source of the format gives.
uint32_t SampleDepth(const Format& format);

// Channel (red 0, green 1, blue 2) of each pixel of the cell of a mosaic, two by two, line by line.
using BayerCell = std::array<size_t, 4>;

// Throws Error for an image that is too small for a mosaic.
BayerCell CellOf(const Image& image);

inline size_t ChannelAt(const BayerCell& cell, size_t x, size_t y) {
    return cell[y % 2 * 2 + x % 2];
}

}  // namespace ZelImage::Internal
