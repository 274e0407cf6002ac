// An image buffer.
#ifndef ZELCAM_BUFFER_H
#define ZELCAM_BUFFER_H

#include <cstddef>
#include <cstdint>

// An image in memory. The layout is part of the binary interface.
struct ZelImageInfo {
    uint32_t structSize;      // size of this structure in bytes: 96
    uint32_t version;         // 2
    uint32_t pixelType;       // II_PIXEL_TYPE_DEFINES code, see PixelType.h
    uint32_t bitsPerChannel;  // significant bits: 8, 10, 12, 14 or 16
    uint8_t reserved1;        // 0
    uint32_t packing;         // bits 8 to 15 of pixelType, in place
    uint32_t channels;        // 1, 3 or 4
    uint32_t bitsPerPixel;    // bits that one pixel occupies
    uint32_t reserved2;       // 0
    uint32_t width;           // pixels per line
    uint32_t height;          // lines
    uint32_t imageSize;       // bytes: linePitch * height, at most Buffer::GetBufferSize
    uint32_t linePitch;       // bytes from one line to the next, padding included
    uint64_t timestamp;       // as Buffer::GetTimestamp
    uint64_t frameId;         // as Buffer::GetFrameID
    uint64_t reserved3;       // 0
    void* imageData;          // first byte of the image
    void* bufferBase;         // first byte of the buffer
};

#if UINTPTR_MAX == UINT64_MAX
static_assert(sizeof(ZelImageInfo) == 96, "ZelImageInfo is part of the binary interface");
static_assert(offsetof(ZelImageInfo, packing) == 20 && offsetof(ZelImageInfo, linePitch) == 48 &&
                  offsetof(ZelImageInfo, timestamp) == 56 &&
                  offsetof(ZelImageInfo, imageData) == 80,
              "ZelImageInfo is part of the binary interface");
#endif

namespace ZelCam {

// One buffer of a Stream, which owns it (see Stream for its states). Its contents may be looked at
// from Stream::GetBuffer until it is queued again.
//
// Every property is asked of the producer on every call (GenTL BUFFER_INFO_CMD); one that the
// producer does not tell is 0, null or false. Thread-bound (see ZelCam.h).
class Buffer {
  public:
    // Describes the image in the buffer. The description belongs to the Buffer and is valid as long
    // as the Buffer. Its geometry and pixel type are taken on the first call and kept for the life
    // of the buffer; later calls bring only timestamp and frameId up to date. So do not call it
    // before the first delivery, when the producer knows no image: 0 x 0 pixels would stay. Revoke
    // buffers and create new ones after changing the camera's image format. Never null.
    //
    // `imageSize` does not take GetImageOffset into account. Where that is not 0, no more than
    // GetBufferSize - GetImageOffset bytes lie behind `imageData`.
    //
    // A pixel format without a code of its own is described as Mono8. These are 228 of the 276 that
    // GenTL/PFNC.h lists, the formats in RGB order among them; for the 213 that do not occupy eight
    // bits, `linePitch` and `imageSize` are wrong, too. When `pixelType` is Mono8 and
    // GetPixelFormat is not 0x01080001, go by that: bits 16 to 23 are the bits of a pixel, and a
    // line has their number times the width, in whole bytes, and GetXPadding.
    virtual ZelImageInfo* GetImage() = 0;

    // First byte and size in bytes of the buffer; offset in bytes of the image in it.
    virtual void* GetBufferPtr() = 0;
    virtual size_t GetImageOffset() = 0;
    virtual size_t GetBufferSize() = 0;

    // Pixel format as the producer tells it: as a rule a PFNC value, see GenTL/PFNC.h.
    virtual uint64_t GetPixelFormat() = 0;

    // The `userPtr` the buffer was made with.
    virtual void* GetUserPtr() = 0;

    // Timestamp of the frame in ticks of the camera; what a tick is, the camera tells.
    virtual uint64_t GetTimestamp() = 0;

    // Number of the frame, counted by the camera: a gap means lost frames.
    virtual uint64_t GetFrameID() = 0;

    // True when parts of the frame are missing.
    virtual bool IsIncomplete() = 0;

    // Size and place of the image on the sensor, in pixels.
    virtual size_t GetWidth() = 0;
    virtual size_t GetHeight() = 0;
    virtual size_t GetXOffset() = 0;
    virtual size_t GetYOffset() = 0;

    // Bytes added to each line, and bytes added to the image.
    virtual size_t GetXPadding() = 0;
    virtual size_t GetYPadding() = 0;

    // Lines actually delivered, for cameras with a variable frame height.
    virtual size_t GetDeliveredHeight() = 0;

    // True for the second frame of a frame pair (producer-specific info 1101).
    virtual bool IsKacFrameB() = 0;

  protected:
    ~Buffer() = default;
};

}  // namespace ZelCam

#endif  // ZELCAM_BUFFER_H
