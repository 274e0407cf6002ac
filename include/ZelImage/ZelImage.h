// ZelImage: the images of cameras as pictures. Unpacks and converts the pixel formats of the
// GenICam Pixel Format Naming Convention (PFNC, see GenTL/PFNC.h), and writes picture files. Needs
// no camera and no producer; link libZelImage.
//
// All functions are thread-safe, throw nothing, read nothing outside of a View and write nothing
// outside of the memory they are given. After a function has failed, LastReason says why; for a
// wrong argument, it has then written nothing.
//
// What is not converted, because the convention leaves open how it would look: coordinates and
// confidences as floating-point numbers, coordinates of more than one axis, data (Data8 and the
// like). They are described, and Unpack gives their numbers. For RGB10V1Packed and RGB12V1Packed
// the bits of a pixel are described only.
#ifndef ZELIMAGE_ZELIMAGE_H
#define ZELIMAGE_ZELIMAGE_H

#include <cstddef>
#include <cstdint>

#include "ZelCam/Error.h"

namespace ZelImage {

// An image as it lies in memory, which stays the caller's.
struct View {
    const void* data = nullptr;
    size_t size = 0;           // bytes at `data`
    uint64_t pixelFormat = 0;  // PFNC number
    size_t width = 0;          // pixels per line
    size_t height = 0;         // lines
    // Bytes from one line to the next; 0 for the bits of a line rounded up to whole bytes. The
    // planes of a planar format follow each other and all have this pitch.
    size_t linePitch = 0;
};

// What the components of a format mean.
enum class FormatKind : uint32_t {
    Mono = 1,
    ColourPlane = 2,   // R8, G8, B8 and the like: one colour alone
    Bayer = 3,         // a mosaic with one colour per pixel
    SparseColour = 4,  // SCF1: a mosaic, every second pixel without a filter
    BiColour = 5,      // green in every pixel, red and blue in every second one
    Rgb = 6,           // in either order, with or without alpha
    Yuv = 7,           // YUV and YCbCr
    Coordinates = 8,   // Coord3D
    Confidence = 9,
    Data = 10
};

enum class ComponentType : uint32_t { Unsigned = 1, Signed = 2, Float = 3 };

// How components lie in memory.
enum class Packing : uint32_t {
    Unpacked = 1,    // each in one, two, four or eight bytes, little-endian, value in the low bits
    LsbFirst = 2,    // no gaps, least significant bit first: the "p" formats
    GigEVision = 3,  // two in three bytes, high bits in the outer bytes: the "Packed" formats
    PixelWord = 4,   // those of a pixel in one little-endian word, the first in its lowest bits
    Unknown = 5      // RGB10V1Packed, RGB12V1Packed
};

// A pixel format. May grow at its end.
struct FormatInfo {
    const char* name;  // PFNC name, for example "BayerRG12p"
    FormatKind kind;
    ComponentType componentType;
    Packing packing;
    uint32_t bitsPerPixel;
    uint32_t significantBits;  // of a component; of green in RGB565p and BGR565p
    // Stored for each pixel. Two if pixels share chroma, except for 4:1:1 and 4:2:0, where it is 1:
    // there, six components are stored for four pixels.
    uint32_t components;
    uint32_t componentBytes;  // of each component that Unpack writes; 0 if it cannot
    bool isPlanar;            // the components lie in two or more planes
    // PFNC number of the same components unpacked, which Convert makes: Mono12 for Mono12p. The
    // number itself if the format is not packed; 0 if there is no such format.
    uint64_t unpackedFormat;
    // The format of a picture of this format: Mono8, Mono16, RGB8 or RGB16, with 16 bits if the
    // format has more than 8. 0 if it is not converted to pictures.
    uint64_t pictureFormat;
};

// How Convert computes the colours that the pixels of a Bayer mosaic lack.
enum class Demosaic : uint32_t {
    // The rounded mean of the neighbours, of the eight around a pixel, that have the colour. At the
    // borders these are the neighbours inside the image.
    Bilinear = 0,
    // Green along the direction in which the image changes less, corrected by the own colour of the
    // pixel; then red and blue from their differences to green. Sharper, with fewer false colours
    // at edges, and several times slower.
    EdgeAware = 1
};

// Weights of red, green and blue in luma, after the recommendations of the ITU: 0.299, 0.587, 0.114
// in BT.601; 0.2126, 0.7152, 0.0722 in BT.709; 0.2627, 0.678, 0.0593 in BT.2020 (the form without
// constant luminance).
enum class YuvMatrix : uint32_t { OfFormat = 0, Bt601 = 1, Bt709 = 2, Bt2020 = 3 };

// Limited: luma from 16 to 235, chroma from 16 to 240, of 8 bits; deeper formats in proportion.
// Full: the whole scale.
enum class YuvRange : uint32_t { OfFormat = 0, Full = 1, Limited = 2 };

// May grow at its end.
struct ConvertOptions {
    uint32_t structSize = sizeof(ConvertOptions);
    Demosaic demosaic = Demosaic::Bilinear;
    // By default the format decides: YCbCr601, YCbCr709 and YCbCr2020 have these weights and the
    // limited range; YUV and plain YCbCr those of BT.601 and the full range.
    YuvMatrix matrix = YuvMatrix::OfFormat;
    YuvRange range = YuvRange::OfFormat;
};

// May grow at its end.
struct SaveOptions {
    uint32_t structSize = sizeof(SaveOptions);
    uint32_t jpegQuality = 95;  // 1 to 100
    const ConvertOptions* convert = nullptr;
};

enum class FileType : uint32_t { Png = 1, Tiff = 2, Jpeg = 3, Raw = 4 };

// Takes the next bytes of a file; false ends the encoding, which fails. Must not throw.
using WriteFunction = bool (*)(void* context, const void* data, size_t size);

#pragma GCC visibility push(default)

// The PFNC name of a format, null for a number that is not in the table; and the number of a name,
// 0 for a name that is not.
const char* FormatName(uint64_t pixelFormat);
uint64_t FormatByName(const char* name);

// Describes a format. `size` is the size of the caller's FormatInfo: a library that knows more
// members does not write them, and members that the library does not know become 0. False, with
// `*info` 0, for a number that is not in the table.
bool DescribeFormat(uint64_t pixelFormat, FormatInfo* info, size_t size);

// The formats of the table one after the other; 0 from the end of the table on.
uint64_t FormatAt(size_t index);

// Bytes of a line without padding: its bits rounded up to whole bytes; of a planar format the
// line of a plane. Also for formats that are not in the table, as every number holds the bits of a
// pixel. 0 for a size that no image has.
size_t LineBytes(uint64_t pixelFormat, size_t width);

// Bytes from the first to the last one of an image; padding after the last line does not count. The
// bytes in `view` do not matter, and the format need not be in the table. 0 for a size that no
// image has, or a pitch that is shorter than a line.
size_t ImageSize(const View& view);

// Bytes that Convert needs at `to` for `from` in that format. `toPitch` is 0 for lines without
// padding. 0 if there is no such conversion.
size_t ConvertedSize(const View& from, uint64_t toFormat, size_t toPitch);

// Converts an image. `toFormat` is one of
//   Mono8, Mono16, RGB8, BGR8, RGB16, BGR16, RGBa8, BGRa8, for any format with a picture format:
//     the picture
//   FormatInfo::unpackedFormat: the same components, unpacked
// `options` may be null for the defaults. The memory at `to` must not overlap the image.
//
// In pictures, full scale of the camera is full scale of the target: v * max / (2^bits - 1),
// rounded; bits above the significant ones count as full scale. Signed numbers begin at black.
// Mono is gray in red, green and blue, and so are a single colour (R8), one coordinate and a
// confidence. Gray of a colour is luma; of RGB that of BT.601. Alpha is kept from RGBa to RGBa, and
// else opaque. Pixels that share chroma, or in BiColor red and blue, have the same values. The
// pixels of a sparse mosaic (SCF1) become gray, from those without a filter: a pixel with a filter
// is the rounded mean of its neighbours in line and column.
//
// Fails with ZelCamErr_InvalidArgument if an argument cannot be used.
ZelCamErr Convert(const View& from, uint64_t toFormat, const ConvertOptions* options, void* to,
                  size_t toSize, size_t toPitch);

// The components of an image as they were stored, as numbers of FormatInfo::componentBytes bytes,
// in the format's order; lines, and then planes, follow each other without padding. UnpackedSize is
// the bytes this takes; 0 if that is not possible.
size_t UnpackedSize(const View& from);
ZelCamErr Unpack(const View& from, void* to, size_t toSize);

// The type of file that a name ends with: .png, .tif, .tiff, .jpg, .jpeg or .raw, in either case.
// Fails with ZelCamErr_InvalidArgument.
ZelCamErr FileTypeOf(const char* fileName, FileType* type);

// The bytes of a file. PNG and TIFF hold the picture with all its bits, JPEG one with 8 bits that
// resembles it, raw the bytes of the image as they are. `options` may be null for the defaults.
// Fails with ZelCamErr_InvalidArgument, also if the encoder refuses the picture, and with
// ZelCamErr_FileOpenFailed if `write` does.
ZelCamErr Encode(const View& from, FileType type, const SaveOptions* options, WriteFunction write,
                 void* context);

// Writes an image to a file of the type that the name ends with. The file is replaced as a whole: a
// reader finds the former file or the new one. Fails like Encode, and with ZelCamErr_FileOpenFailed
// if the file cannot be written.
ZelCamErr Save(const View& from, const char* fileName, const SaveOptions* options);

// Why the last call of this thread that failed did so: a sentence for the user, for example "the
// buffer holds 5 bytes, the image needs 6". Valid until the next call that fails. Never null.
const char* LastReason();

#pragma GCC visibility pop

}  // namespace ZelImage

#endif  // ZELIMAGE_ZELIMAGE_H
