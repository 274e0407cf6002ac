// An image buffer.
#ifndef ZELCAM_BUFFER_H
#define ZELCAM_BUFFER_H

#include <cstddef>
#include <cstdint>

#include "ZelCam/Error.h"

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

// One part of a multi-part payload, as GenTL 1.5 describes it (BUFFER_PART_INFO_CMD); GenTL 1.6 for
// the region and the purpose. What the producer does not report is 0. The layout is part of the
// binary interface and may grow at its end.
//
// A part of a GenDC container has the region, the source and the offset of its component, whose
// type is the purpose. `dataType` is 1000 plus the type of the part if GenTL has no number for it.
// Parts without two dimensions have no width and height.
struct ZelBufferPart {
    uint64_t dataType;         // GenTL PARTDATATYPE_ID: 1 is a 2D image, 9 a confidence map
    uint64_t format;           // what the namespace says: usually a PFNC value, see GenTL/PFNC.h
    uint64_t formatNamespace;  // GenTL PIXELFORMAT_NAMESPACE_ID: 4 is PFNC
    void* data;                // first byte of the part
    uint64_t size;             // bytes
    uint64_t width;            // pixels per line
    uint64_t height;           // lines
    uint64_t xOffset;          // place of the part on the sensor, in pixels
    uint64_t yOffset;
    uint64_t xPadding;         // bytes added to each line
    uint64_t deliveredHeight;  // lines actually delivered
    uint64_t sourceId;         // parts of one source show the same scene
    uint64_t regionId;
    uint64_t dataPurposeId;
};

#if UINTPTR_MAX == UINT64_MAX
static_assert(sizeof(ZelBufferPart) == 112, "ZelBufferPart is part of the binary interface");
static_assert(sizeof(ZelImageInfo) == 96, "ZelImageInfo is part of the binary interface");
static_assert(offsetof(ZelImageInfo, packing) == 20 && offsetof(ZelImageInfo, linePitch) == 48 &&
                  offsetof(ZelImageInfo, timestamp) == 56 &&
                  offsetof(ZelImageInfo, imageData) == 80,
              "ZelImageInfo is part of the binary interface");
#endif

namespace ZelCam {

// One buffer of a Stream, which owns it (see Stream for its states). The application may read its
// contents from Stream::GetBuffer until it queues the buffer again.
//
// Every call asks the producer for the property (GenTL BUFFER_INFO_CMD); the result is 0, null or
// false if the producer does not report it. Thread-bound (see ZelCam.h).
class Buffer {
  public:
    // Describes the image in the buffer. The description belongs to the Buffer and is valid as long
    // as the Buffer. The first call stores geometry and pixel type for the life of the buffer;
    // later calls update only timestamp and frameId. So do not call it before the first delivery,
    // when the producer knows no image: the description would stay at 0 x 0 pixels. Revoke buffers
    // and create new ones after changing the camera's image format. Never null.
    //
    // `imageSize` ignores GetImageOffset. If the offset is not 0, `imageData` points to no more
    // than GetBufferSize - GetImageOffset bytes.
    //
    // A pixel format without a code of its own is described as Mono8. GenTL/PFNC.h lists 276
    // formats; 228 of them have no code, including the formats in RGB order. For the 213 of these
    // that do not occupy eight bits, `linePitch` and `imageSize` are wrong, too. If `pixelType` is
    // Mono8 but GetPixelFormat is not 0x01080001, use GetPixelFormat: bits 16 to 23 are the bits of
    // a pixel; a line has this number times the width, rounded up to whole bytes, plus GetXPadding.
    virtual ZelImageInfo* GetImage() = 0;

    // First byte of the buffer, byte offset of the image in it, and size of the buffer in bytes.
    virtual void* GetBufferPtr() = 0;
    virtual size_t GetImageOffset() = 0;
    virtual size_t GetBufferSize() = 0;

    // Pixel format as the producer reports it: usually a PFNC value, see GenTL/PFNC.h.
    virtual uint64_t GetPixelFormat() = 0;

    // The `userPtr` the buffer was made with.
    virtual void* GetUserPtr() = 0;

    // Timestamp of the frame in ticks of the camera, which defines the length of a tick.
    virtual uint64_t GetTimestamp() = 0;

    // Number of the frame. The camera counts its frames, so a gap means lost frames.
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

    // Operations from here on have a body, so that stand-ins of programs need not know them.

    // The parts of a multi-part payload or of a GenDC container, such as an image with its range
    // and confidence. 0 for any other payload, and for a damaged container. The library reads a
    // container itself if the producer lists no parts of it: those of components that the camera
    // marks as invalid do not count.
    virtual size_t GetNumParts() { return 0; }

    // Describes a part. `size` is the size of the caller's ZelBufferPart: a library that knows more
    // members does not write them. ZelCamErr_GenTL_InvalidParameter if `part` is null,
    // ZelCamErr_GenTL_InvalidBuffer if a container is damaged (something in it lies outside of the
    // buffer or on something else, or it has more than 1024 parts), the producer's code if there is
    // no such part; `*part` is 0 then.
    virtual ZelCamErr GetPart(size_t /*index*/, ZelBufferPart* /*part*/, size_t /*size*/) {
        return ZelCamErr_GenTL_NotImplemented;
    }

    // Binds the chunks of the buffer, which holds a frame, to the features of the camera: then
    // ChunkExposureTime, ChunkTimestamp and the like in Device::GetCameraParameters have the values
    // of this frame. Before, and without such a chunk in the frame, they are not readable. One
    // buffer of a device is attached at a time. Each of these detaches it: attaching another one,
    // DetachChunks, queueing or revoking the buffer, StartAcquisition, FlushBuffers.
    //
    // The producer says where the chunks lie; if it cannot, the layout of GigE Vision or USB3
    // Vision is looked for, as the camera's interface says. Fails with ZelCamErr_GenTL_NoData if
    // the frame has no chunks, ZelCamErr_NoNodeMap or the producer's code if the camera's features
    // cannot be had, -1018 if the chunks lie outside of the buffer or have no known layout.
    //
    // Threads that read chunk features of several buffers must take turns.
    virtual ZelCamErr AttachChunks() { return ZelCamErr_GenTL_NotImplemented; }

    // Does nothing if another buffer or none is attached.
    virtual void DetachChunks() {}

  protected:
    ~Buffer() = default;
};

}  // namespace ZelCam

#endif  // ZELCAM_BUFFER_H
