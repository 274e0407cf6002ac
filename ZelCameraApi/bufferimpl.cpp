#include "ZelCameraApi/bufferimpl.h"

#include <algorithm>
#include <cstring>

#include "ZelCam/DeviceInfo.h"
#include "ZelCam/PixelType.h"
#include "ZelCameraApi/base/errorboundary.h"
#include "ZelCameraApi/deviceimpl.h"
#include "ZelCameraApi/gendcparts.h"
#include "utils/pixeltypes.h"

namespace ZelCameraApi::Internal {

namespace {

constexpr uint32_t kImageInfoVersion = 2;
constexpr uint32_t kFamilyMask = 0xFF000000;
constexpr uint32_t kFamilyRgb = 0x02000000;
constexpr uint32_t kPackingMask = 0xFF00;
constexpr uint32_t kPacked10p = 0x2200;
constexpr uint32_t kPacked12p = 0x2300;
constexpr uint32_t kGevPackedMask = 0xFE00;  // 10 and 12 bits alike
constexpr uint32_t kGevPacked = 0x1200;

constexpr uint32_t BitsPerPixel(uint32_t pixelType) {
    return pixelType >> 16 & 0xFF;
}

uint32_t PixelTypeOf(uint64_t pixelFormat) {
    const auto format = static_cast<uint32_t>(pixelFormat);
    uint32_t type = ZelPixelType_None;
    if (format == pixelFormat) {
        type = PFNCToZelPixelType(static_cast<GenICam_3_0::PFNC::PixelFormatStandardValue>(format));
    }
    if (type == ZelPixelType_None) type = GevToZelPixelType(format);
    return type != ZelPixelType_None ? type : ZelPixelType_Mono8;
}

// Without padding. The bit-packed layouts round down, as cameras with such widths do; everything
// else rounds up to whole bytes.
uint32_t BytesPerLine(uint32_t pixelType, uint32_t width) {
    const bool rgb = (pixelType & kFamilyMask) == kFamilyRgb;
    const uint32_t packing = pixelType & kPackingMask;
    if (!rgb && packing == kPacked10p) return width * 5 / 4;
    if (!rgb && ((packing & kGevPackedMask) == kGevPacked || packing == kPacked12p)) {
        return width * 3 / 2;
    }
    const uint32_t bits = BitsPerPixel(pixelType) * width;
    return bits / 8 + (bits % 8 != 0 ? 1 : 0);
}

void FillPixelType(ZelImageInfo& image, uint32_t pixelType) {
    const uint32_t row = (pixelType & 0xFF) - 1;
    if (row >= s_colorModelDescription.size()) return;
    image.pixelType = pixelType;
    image.bitsPerChannel = s_colorModelDescription[row].bitsPerChannel;
    image.channels = s_colorModelDescription[row].channels;
    image.packing = pixelType & kPackingMask;
    image.bitsPerPixel = BitsPerPixel(pixelType);
}

}  // namespace

BufferImpl::BufferImpl(StreamImpl* stream, size_t size, void* userPtr) : stream_(stream) {
    const GenTLModule<void*>& module = stream->Module();
    ThrowOnError(module.lib->DSAllocAndAnnounceBuffer(module.handle, size, userPtr, &handle_));
}

BufferImpl::BufferImpl(StreamImpl* stream, void* ptr, size_t size, void* userPtr)
    : stream_(stream) {
    const GenTLModule<void*>& module = stream->Module();
    ThrowOnError(module.lib->DSAnnounceBuffer(module.handle, ptr, size, userPtr, &handle_));
}

BufferImpl::~BufferImpl() {
    BufferImpl::DetachChunks();
    void* base = nullptr;
    void* userPtr = nullptr;
    const GenTLModule<void*>& module = stream_->Module();
    module.lib->DSRevokeBuffer(module.handle, handle_, &base, &userPtr);
}

ZelImageInfo* BufferImpl::GetImage() {
    if (!image_) image_ = DescribeImage();
    image_->timestamp = GetTimestamp();
    image_->frameId = GetFrameID();
    return &*image_;
}

ZelImageInfo BufferImpl::DescribeImage() {
    ZelImageInfo image{};
    image.structSize = sizeof(ZelImageInfo);
    image.version = kImageInfoVersion;

    const uint32_t pixelType = PixelTypeOf(GetPixelFormat());
    FillPixelType(image, pixelType);
    image.width = static_cast<uint32_t>(GetWidth());
    image.height = static_cast<uint32_t>(GetHeight());
    image.linePitch = BytesPerLine(pixelType, image.width) + static_cast<uint32_t>(GetXPadding());
    image.imageSize =
        std::min(image.linePitch * image.height, static_cast<uint32_t>(GetBufferSize()));
    image.bufferBase = GetBufferPtr();
    image.imageData =
        reinterpret_cast<void*>(reinterpret_cast<uintptr_t>(image.bufferBase) + GetImageOffset());
    return image;
}

void* BufferImpl::GetBufferPtr() {
    return ZeroOnError([this] { return GetInfo<GenTL::BUFFER_INFO_BASE>(); });
}

size_t BufferImpl::GetImageOffset() {
    return ZeroOnError([this] { return GetInfo<GenTL::BUFFER_INFO_IMAGEOFFSET>(); });
}

size_t BufferImpl::GetBufferSize() {
    return ZeroOnError([this] { return GetInfo<GenTL::BUFFER_INFO_SIZE>(); });
}

uint64_t BufferImpl::GetPixelFormat() {
    return ZeroOnError([this] { return GetInfo<GenTL::BUFFER_INFO_PIXELFORMAT>(); });
}

void* BufferImpl::GetUserPtr() {
    return ZeroOnError([this] { return GetInfo<GenTL::BUFFER_INFO_USER_PTR>(); });
}

// Asks a producer that reports "not available" or "not implemented" once more.
uint64_t BufferImpl::GetTimestamp() {
    return ZeroOnError([this] {
        try {
            return GetInfo<GenTL::BUFFER_INFO_TIMESTAMP>();
        } catch (const zelcam_exception& e) {
            const int code = e.code().value();
            if (code != GenTL::GC_ERR_NOT_AVAILABLE && code != GenTL::GC_ERR_NOT_IMPLEMENTED) throw;
        }
        return GetInfo<GenTL::BUFFER_INFO_TIMESTAMP>();
    });
}

uint64_t BufferImpl::GetFrameID() {
    return ZeroOnError([this] { return GetInfo<GenTL::BUFFER_INFO_FRAMEID>(); });
}

bool BufferImpl::IsIncomplete() {
    return ZeroOnError([this] { return GetInfo<GenTL::BUFFER_INFO_IS_INCOMPLETE>(); });
}

size_t BufferImpl::GetWidth() {
    return ZeroOnError([this] { return GetInfo<GenTL::BUFFER_INFO_WIDTH>(); });
}

size_t BufferImpl::GetHeight() {
    return ZeroOnError([this] { return GetInfo<GenTL::BUFFER_INFO_HEIGHT>(); });
}

size_t BufferImpl::GetXOffset() {
    return ZeroOnError([this] { return GetInfo<GenTL::BUFFER_INFO_XOFFSET>(); });
}

size_t BufferImpl::GetYOffset() {
    return ZeroOnError([this] { return GetInfo<GenTL::BUFFER_INFO_YOFFSET>(); });
}

size_t BufferImpl::GetXPadding() {
    return ZeroOnError([this] { return GetInfo<GenTL::BUFFER_INFO_XPADDING>(); });
}

size_t BufferImpl::GetYPadding() {
    return ZeroOnError([this] { return GetInfo<GenTL::BUFFER_INFO_YPADDING>(); });
}

size_t BufferImpl::GetDeliveredHeight() {
    return ZeroOnError([this] { return GetInfo<GenTL::BUFFER_INFO_DELIVERED_IMAGEHEIGHT>(); });
}

bool BufferImpl::IsKacFrameB() {
    return ZeroOnError([this] { return GetInfo<BUFFER_INFO_KAC_FRAME_B>(); });
}

size_t BufferImpl::GetNumParts() {
    return ZeroOnError([this]() -> size_t {
        if (HasUnlistedParts()) return UnlistedParts().size();
        const GenTLModule<void*>& stream = stream_->Module();
        return QueryCount([&](uint32_t* number) {
            return stream.lib->DSGetNumBufferParts(stream.handle, handle_, number);
        });
    });
}

// GenTL knows parts of multi-part payloads: producers hand over a GenDC container as it is.
bool BufferImpl::HasUnlistedParts() const {
    const auto payload = ZeroOnError([this] { return GetInfo<GenTL::BUFFER_INFO_PAYLOADTYPE>(); });
    if (payload != size_t{GenTL::PAYLOAD_TYPE_GENDC}) return false;
    const GenTLModule<void*>& stream = stream_->Module();
    uint32_t number = 0;
    return stream.lib->DSGetNumBufferParts(stream.handle, handle_, &number) != 0 || number == 0;
}

// All of the buffer counts: what was filled of it says nothing about where the gaps of an
// incomplete frame are.
std::vector<ZelBufferPart> BufferImpl::UnlistedParts() const {
    return FindGenDcParts(static_cast<uint8_t*>(GetInfo<GenTL::BUFFER_INFO_BASE>()),
                          GetInfo<GenTL::BUFFER_INFO_SIZE>());
}

// Value of a command of a part. Throws as QueryValue.
template <GenTL::BUFFER_PART_INFO_CMD_LIST CMD>
auto BufferImpl::GetPartInfo(uint32_t index) const {
    const GenTLModule<void*>& stream = stream_->Module();
    return QueryValue<CMD>([&](int cmd, int* type, void* buffer, size_t* size) {
        return stream.lib->DSGetBufferPartInfo(stream.handle, handle_, index, cmd, type, buffer,
                                               size);
    });
}

template <GenTL::BUFFER_PART_INFO_CMD_LIST CMD>
auto BufferImpl::PartInfoOrZero(uint32_t index) const {
    return ZeroOnError([&] { return GetPartInfo<CMD>(index); });
}

// Without its place and size a part is of no use; the rest may be missing.
ZelBufferPart BufferImpl::ListedPart(uint32_t index) const {
    ZelBufferPart part{};
    part.data = GetPartInfo<GenTL::BUFFER_PART_INFO_BASE>(index);
    part.size = GetPartInfo<GenTL::BUFFER_PART_INFO_DATA_SIZE>(index);
    part.dataType = PartInfoOrZero<GenTL::BUFFER_PART_INFO_DATA_TYPE>(index);
    part.format = PartInfoOrZero<GenTL::BUFFER_PART_INFO_DATA_FORMAT>(index);
    part.formatNamespace = PartInfoOrZero<GenTL::BUFFER_PART_INFO_DATA_FORMAT_NAMESPACE>(index);
    part.width = PartInfoOrZero<GenTL::BUFFER_PART_INFO_WIDTH>(index);
    part.height = PartInfoOrZero<GenTL::BUFFER_PART_INFO_HEIGHT>(index);
    part.xOffset = PartInfoOrZero<GenTL::BUFFER_PART_INFO_XOFFSET>(index);
    part.yOffset = PartInfoOrZero<GenTL::BUFFER_PART_INFO_YOFFSET>(index);
    part.xPadding = PartInfoOrZero<GenTL::BUFFER_PART_INFO_XPADDING>(index);
    part.deliveredHeight = PartInfoOrZero<GenTL::BUFFER_PART_INFO_DELIVERED_IMAGEHEIGHT>(index);
    part.sourceId = PartInfoOrZero<GenTL::BUFFER_PART_INFO_SOURCE_ID>(index);
    part.regionId = PartInfoOrZero<GenTL::BUFFER_PART_INFO_REGION_ID>(index);
    part.dataPurposeId = PartInfoOrZero<GenTL::BUFFER_PART_INFO_DATA_PURPOSE_ID>(index);
    return part;
}

ZelCamErr BufferImpl::GetPart(size_t index, ZelBufferPart* part, size_t size) {
    if (part == nullptr) return ZelCamErr_GenTL_InvalidParameter;
    std::memset(part, 0, size);
    if (index > UINT32_MAX) return static_cast<ZelCamErr>(GenTL::GC_ERR_INVALID_INDEX);
    return CodeOf([&] {
        try {
            const ZelBufferPart found = FindPart(static_cast<uint32_t>(index));
            std::memcpy(part, &found, std::min(size, sizeof found));
        } catch (const zelcam_exception& e) {
            return e.code().value();
        }
        return 0;
    });
}

ZelBufferPart BufferImpl::FindPart(uint32_t index) const {
    if (!HasUnlistedParts()) return ListedPart(index);
    const std::vector<ZelBufferPart> parts = UnlistedParts();
    if (index >= parts.size()) throw zelcam_exception(GenTL::GC_ERR_INVALID_INDEX);
    return parts[index];
}

ZelCamErr BufferImpl::AttachChunks() {
    return CodeOf([this] {
        try {
            BindChunks();
        } catch (const zelcam_exception& e) {
            return e.code().value();
        }
        return 0;
    });
}

void BufferImpl::BindChunks() {
    DeviceImpl& device = stream_->Device();
    ZelCamErr err = ZelCamErr_Success;
    ZelGenParam::Array* const features = device.GetCameraParameters(&err);
    GenApi::INodeMap* const map = features != nullptr ? features->GetNodeMap(&err) : nullptr;
    if (map == nullptr) throw zelcam_exception(err);

    const ChunkBytes bytes{static_cast<uint8_t*>(GetInfo<GenTL::BUFFER_INFO_BASE>()),
                           GetInfo<GenTL::BUFFER_INFO_SIZE_FILLED>()};
    const GenTLModule<void*>& stream = stream_->Module();
    size_t count = 0;
    const int result = stream.lib->DSGetBufferChunkData(stream.handle, handle_, nullptr, &count);
    if (result == GenTL::GC_ERR_NOT_AVAILABLE || result == GenTL::GC_ERR_NOT_IMPLEMENTED) {
        device.Chunks().Attach(*map, this, bytes, device.GetInfo()->GetInterface()->GetType());
        return;
    }
    ThrowOnError(result);
    if (count == 0) throw zelcam_exception(GenTL::GC_ERR_NO_DATA);
    if (count > bytes.size) throw zelcam_exception(GenTL::GC_ERR_PARSING_CHUNK_DATA);
    ChunkBinding::Places places(count);
    ThrowOnError(stream.lib->DSGetBufferChunkData(stream.handle, handle_, places.data(), &count));
    places.resize(std::min(count, places.size()));
    device.Chunks().Attach(*map, this, bytes, places);
}

void BufferImpl::DetachChunks() {
    stream_->Device().Chunks().Detach(this);
}

}  // namespace ZelCameraApi::Internal
