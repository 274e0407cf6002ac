#include "ZelCameraApi/gendcparts.h"

#include <algorithm>
#include <cstring>
#include <utility>

#include "ZelCameraApi/base/gentl_error.h"
#include "gentl/GenTL.h"

namespace ZelCameraApi::Internal {

namespace {

constexpr char kSignature[] = {'G', 'N', 'D', 'C'};
constexpr uint64_t kContainerType = 0x1000;
constexpr uint64_t kComponentType = 0x2000;
constexpr uint64_t kInvalidComponent = 0x0001;

// Types of parts. Those in this range have a size in two dimensions.
constexpr uint64_t kImage = 0x4200;
constexpr uint64_t kJpeg = 0x4201;
constexpr uint64_t kJpeg2000 = 0x4202;
constexpr uint64_t kH264 = 0x4203;

// Types of components.
constexpr uint64_t kRange = 4;
constexpr uint64_t kConfidence = 6;
constexpr uint64_t kDisparity = 8;

// Sizes of headers, without the offsets at their end and the size of an image.
constexpr uint64_t kContainerHeader = 56;
constexpr uint64_t kComponentHeader = 48;
constexpr uint64_t kPartHeader = 40;
constexpr uint64_t kImageHeader = 52;
constexpr uint64_t kOffsetSize = 8;

[[noreturn]] void Refuse() {
    throw zelcam_exception(GenTL::GC_ERR_INVALID_BUFFER);
}

bool IsImage(uint64_t partType) {
    return partType >= kImage && partType <= kH264;
}

uint64_t DataTypeOf(uint64_t partType, uint64_t componentType) {
    switch (partType) {
        case kImage:
            if (componentType == kRange || componentType == kDisparity)
                return GenTL::PART_DATATYPE_3D_IMAGE;
            if (componentType == kConfidence) return GenTL::PART_DATATYPE_CONFIDENCE_MAP;
            return GenTL::PART_DATATYPE_2D_IMAGE;
        case kJpeg:
            return GenTL::PART_DATATYPE_JPEG;
        case kJpeg2000:
            return GenTL::PART_DATATYPE_JPEG2000;
        default:
            return GenTL::PART_DATATYPE_CUSTOM_ID + partType;
    }
}

// The lines of an image that its data hold. Packed pixels may run on from line to line.
uint64_t LinesIn(const ZelBufferPart& image) {
    constexpr uint64_t kBitsPerByte = 8;
    const uint64_t bitsPerPixel = image.format >> 16 & 0xFF;
    const uint64_t line = image.width * bitsPerPixel + image.xPadding * kBitsPerByte;
    return line == 0 ? image.height : std::min(image.height, image.size * kBitsPerByte / line);
}

// Reads a container. What lies in it is claimed before it is read: no byte is claimed twice.
class Reader {
  public:
    Reader(uint8_t* bytes, size_t size) : bytes_(bytes), size_(size) {}

    std::vector<ZelBufferPart> Read() {
        const uint64_t count = ReadContainer();
        for (uint64_t i = 0; i < count; ++i)
            ReadComponent(Number(kContainerHeader + i * kOffsetSize, kOffsetSize));
        CheckOverlaps();
        return std::move(parts_);
    }

  private:
    // A little-endian number in bytes that are claimed.
    uint64_t Number(uint64_t offset, size_t size) const {
        uint64_t value = 0;
        for (size_t i = size; i-- > 0;)
            value = value << 8 | bytes_[offset + i];
        return value;
    }

    void CheckWithin(uint64_t offset, uint64_t size) const {
        if (offset > size_ || size > size_ - offset) Refuse();
    }

    void Claim(uint64_t offset, uint64_t size) {
        CheckWithin(offset, size);
        if (size != 0) claims_.emplace_back(offset, offset + size);
    }

    // A header as large as it says, which is not less than the bytes that are read of it.
    void ClaimHeader(uint64_t offset, uint64_t size, uint64_t least) {
        if (size < least) Refuse();
        Claim(offset, size);
    }

    // Returns the number of components.
    uint64_t ReadContainer() {
        CheckWithin(0, kContainerHeader);
        if (std::memcmp(bytes_, kSignature, sizeof kSignature) != 0) Refuse();
        if (Number(8, 2) != kContainerType) Refuse();
        const uint64_t count = Number(52, 4);
        if (count > kMostGenDcParts) Refuse();
        ClaimHeader(0, Number(12, 4), kContainerHeader + count * kOffsetSize);
        return count;
    }

    void ReadComponent(uint64_t offset) {
        CheckWithin(offset, kComponentHeader);
        if (Number(offset, 2) != kComponentType) Refuse();
        const uint64_t count = Number(offset + 46, 2);
        if (count > kMostGenDcParts - parts_.size()) Refuse();
        ClaimHeader(offset, Number(offset + 4, 4), kComponentHeader + count * kOffsetSize);
        if ((Number(offset + 2, 2) & kInvalidComponent) != 0) return;
        for (uint64_t i = 0; i < count; ++i)
            ReadPart(offset, Number(offset + kComponentHeader + i * kOffsetSize, kOffsetSize));
    }

    void ReadPart(uint64_t component, uint64_t offset) {
        CheckWithin(offset, kPartHeader);
        const uint64_t type = Number(offset, 2);
        ClaimHeader(offset, Number(offset + 4, 4), IsImage(type) ? kImageHeader : kPartHeader);
        ZelBufferPart part{};
        part.dataPurposeId = Number(component + 32, 8);
        part.dataType = DataTypeOf(type, part.dataPurposeId);
        part.sourceId = Number(component + 12, 2);
        part.regionId = Number(component + 14, 2);
        part.xOffset = Number(component + 16, 4);
        part.yOffset = Number(component + 20, 4);
        part.format = Number(offset + 8, 4);
        part.formatNamespace = GenTL::PIXELFORMAT_NAMESPACE_PFNC_32BIT;
        part.size = Number(offset + 24, 8);
        const uint64_t data = Number(offset + 32, 8);
        Claim(data, part.size);
        part.data = bytes_ + data;
        if (IsImage(type)) ReadSize(offset, part, type == kImage);
        parts_.push_back(part);
    }

    void ReadSize(uint64_t offset, ZelBufferPart& part, bool hasLines) const {
        part.width = Number(offset + 40, 4);
        part.height = Number(offset + 44, 4);
        part.xPadding = Number(offset + 48, 2);
        part.deliveredHeight = hasLines ? LinesIn(part) : part.height;
    }

    void CheckOverlaps() {
        std::sort(claims_.begin(), claims_.end());
        const auto overlap = [](const Claimed& first, const Claimed& second) {
            return second.first < first.second;
        };
        if (std::adjacent_find(claims_.begin(), claims_.end(), overlap) != claims_.end()) Refuse();
    }

    using Claimed = std::pair<uint64_t, uint64_t>;  // begin and end

    uint8_t* const bytes_;
    const size_t size_;
    std::vector<Claimed> claims_;
    std::vector<ZelBufferPart> parts_;
};

}  // namespace

std::vector<ZelBufferPart> FindGenDcParts(uint8_t* bytes, size_t size) {
    return Reader(bytes, bytes != nullptr ? size : 0).Read();
}

}  // namespace ZelCameraApi::Internal
