#include "producers/server/modules/buffer.h"

#include <algorithm>

#include "producers/server/base/error.h"

namespace ZelCti {

namespace {

constexpr int32_t kInfoSecondOfPair = 1101;  // of this producer: the second frame of a pair

void AnswerPartGeometry(const FramePart& part, Answer answer) {
    switch (answer.Command()) {
        case GenTL::BUFFER_PART_INFO_WIDTH:
            return answer.Size(part.width);
        case GenTL::BUFFER_PART_INFO_HEIGHT:
            return answer.Size(part.height);
        case GenTL::BUFFER_PART_INFO_XOFFSET:
            return answer.Size(part.offsetX);
        case GenTL::BUFFER_PART_INFO_YOFFSET:
            return answer.Size(part.offsetY);
        case GenTL::BUFFER_PART_INFO_XPADDING:
            return answer.Size(part.xPadding);
        case GenTL::BUFFER_PART_INFO_DELIVERED_IMAGEHEIGHT:
            return answer.Size(part.deliveredHeight);
        default:
            throw Error(GenTL::GC_ERR_NOT_IMPLEMENTED, "unknown part info command");
    }
}

PortIdentity BufferIdentity(const CameraInfo& camera) {
    return PortIdentity::OfCamera(camera, camera.id + "/Buffer", "TLBuffer", "BufferPort");
}

}  // namespace

Buffer::Buffer(std::shared_ptr<const CameraLink> link, const Module& stream, const StreamInfo& info,
               BufferMemory memory)
    : LocalModule(Kind::Buffer, BufferIdentity(link->GetCamera().Info())),
      link_(std::move(link)),
      stream_(stream),
      sendsPairs_(info.sendsPairs),
      memory_(std::move(memory)) {
    frame_.parts.reserve(info.maxParts);
}

void Buffer::SetFrame(const FrameInfo& frame) {
    const std::lock_guard lock(mutex_);
    frame_ = frame;
    hasFrame_ = true;
}

void Buffer::ClearFrame() {
    const std::lock_guard lock(mutex_);
    hasFrame_ = false;
}

const FrameInfo& Buffer::Frame() const {
    if (!hasFrame_) throw Error(GenTL::GC_ERR_NOT_AVAILABLE, "the buffer holds no frame");
    return frame_;
}

const FrameInfo& Buffer::Image() const {
    if (!Frame().hasImage) throw Error(GenTL::GC_ERR_NOT_AVAILABLE, "the payload is no image");
    return frame_;
}

const std::vector<FramePart>& Buffer::Parts() const {
    if (!hasFrame_) throw Error(GenTL::GC_ERR_NO_DATA, "the buffer holds no frame");
    if (frame_.payloadType != GenTL::PAYLOAD_TYPE_MULTI_PART) {
        throw Error(GenTL::GC_ERR_NO_DATA, "the payload is not multi-part");
    }
    return frame_.parts;
}

size_t Buffer::DataSize() const {
    return hasFrame_ ? frame_.dataSize.value_or(frame_.sizeFilled) : 0;
}

void Buffer::GetInfo(Answer answer) const {
    const std::lock_guard lock(mutex_);
    if (AnswerFrame(answer) || AnswerChunks(answer) || AnswerGeometry(answer) ||
        AnswerPixels(answer) || AnswerState(answer) || AnswerMemory(answer)) {
        return;
    }
    throw Error(GenTL::GC_ERR_NOT_IMPLEMENTED, "unknown buffer info command");
}

bool Buffer::AnswerMemory(Answer answer) const {
    switch (answer.Command()) {
        case GenTL::BUFFER_INFO_BASE:
            return answer.Pointer(memory_.base), true;
        case GenTL::BUFFER_INFO_SIZE:
            return answer.Size(memory_.size), true;
        case GenTL::BUFFER_INFO_USER_PTR:
            return answer.Pointer(memory_.userPointer), true;
        case GenTL::BUFFER_INFO_TLTYPE:
            return answer.String(Port().tlType), true;
        case GenTL::BUFFER_INFO_IS_COMPOSITE:
            return answer.Bool(memory_.composite ||
                               (hasFrame_ && frame_.payloadType == GenTL::PAYLOAD_TYPE_GENDC)),
                   true;
        default:
            return false;
    }
}

bool Buffer::AnswerState(Answer answer) const {
    switch (answer.Command()) {
        case GenTL::BUFFER_INFO_NEW_DATA:
            return answer.Bool(hasFrame_), true;
        case GenTL::BUFFER_INFO_IS_QUEUED:
            return answer.Bool(state_ != State::Idle), true;
        case GenTL::BUFFER_INFO_IS_ACQUIRING:
            return answer.Bool(state_ == State::Acquiring), true;
        case GenTL::BUFFER_INFO_IS_INCOMPLETE:
            return answer.Bool(hasFrame_ && frame_.incomplete), true;
        case GenTL::BUFFER_INFO_SIZE_FILLED:
            return answer.Size(hasFrame_ ? frame_.sizeFilled : 0), true;
        case GenTL::BUFFER_INFO_DATA_SIZE:
            return answer.Size(DataSize()), true;
        case GenTL::BUFFER_INFO_DATA_LARGER_THAN_BUFFER:
            return answer.Bool(hasFrame_ && frame_.tooLarge), true;
        case GenTL::BUFFER_INFO_IMAGEPRESENT:
            return answer.Bool(hasFrame_ && frame_.hasImage), true;
        case GenTL::BUFFER_INFO_CONTAINS_CHUNKDATA:
            return answer.Bool(hasFrame_ && frame_.chunkOrder.has_value()), true;
        default:
            return false;
    }
}

bool Buffer::AnswerGeometry(Answer answer) const {
    switch (answer.Command()) {
        case GenTL::BUFFER_INFO_WIDTH:
            return answer.Size(Image().width), true;
        case GenTL::BUFFER_INFO_HEIGHT:
            return answer.Size(Image().height), true;
        case GenTL::BUFFER_INFO_XOFFSET:
            return answer.Size(Image().offsetX), true;
        case GenTL::BUFFER_INFO_YOFFSET:
            return answer.Size(Image().offsetY), true;
        case GenTL::BUFFER_INFO_XPADDING:
            return answer.Size(Image().xPadding), true;
        case GenTL::BUFFER_INFO_YPADDING:
            return answer.Size(Image().yPadding), true;
        case GenTL::BUFFER_INFO_IMAGEOFFSET:
            return answer.Size(Image().imageOffset), true;
        case GenTL::BUFFER_INFO_DELIVERED_IMAGEHEIGHT:
            return answer.Size(Image().deliveredHeight), true;
        default:
            return false;
    }
}

bool Buffer::AnswerPixels(Answer answer) const {
    switch (answer.Command()) {
        case GenTL::BUFFER_INFO_PIXELFORMAT:
            return answer.Uint64(Image().pixelFormat), true;
        case GenTL::BUFFER_INFO_PIXELFORMAT_NAMESPACE:
            return Image(), answer.Uint64(GenTL::PIXELFORMAT_NAMESPACE_PFNC_32BIT), true;
        case GenTL::BUFFER_INFO_PIXEL_ENDIANNESS:
            return answer.Int32(Frame().pixelOrder == ByteOrder::Big
                                    ? GenTL::PIXELENDIANNESS_BIG
                                    : GenTL::PIXELENDIANNESS_LITTLE),
                   true;
        default:
            return false;
    }
}

bool Buffer::AnswerFrame(Answer answer) const {
    switch (answer.Command()) {
        case GenTL::BUFFER_INFO_TIMESTAMP:
            return answer.Uint64(Frame().timestamp), true;
        case GenTL::BUFFER_INFO_TIMESTAMP_NS:
            return answer.Uint64(Frame().timestampNs), true;
        case GenTL::BUFFER_INFO_FRAMEID:
            return answer.Uint64(Frame().id), true;
        case GenTL::BUFFER_INFO_PAYLOADTYPE:
            return answer.Size(static_cast<size_t>(Frame().payloadType)), true;
        case GenTL::BUFFER_INFO_FILENAME:
            throw Error(GenTL::GC_ERR_NOT_AVAILABLE, "the frame has no file name");
        case kInfoSecondOfPair:
            if (!sendsPairs_) return false;
            return answer.Bool(Frame().isSecondOfPair), true;
        default:
            return false;
    }
}

bool Buffer::AnswerChunks(Answer answer) const {
    const bool size = answer.Command() == GenTL::BUFFER_INFO_DELIVERED_CHUNKPAYLOADSIZE;
    if (!size && answer.Command() != GenTL::BUFFER_INFO_CHUNKLAYOUTID) return false;
    if (!Frame().chunkOrder) throw Error(GenTL::GC_ERR_NOT_AVAILABLE, "the frame has no chunks");
    const size_t begin = std::min(frame_.chunkBegin, frame_.sizeFilled);
    if (size) return answer.Size(frame_.sizeFilled - begin), true;
    return answer.Uint64(frame_.chunkLayoutId), true;
}

std::vector<ChunkPlace> Buffer::Chunks() const {
    const std::lock_guard lock(mutex_);
    if (!Frame().chunkOrder) throw Error(GenTL::GC_ERR_NO_DATA, "the frame has no chunks");
    const size_t size = std::min(DataSize(), memory_.size);
    const size_t begin = std::min(frame_.chunkBegin, size);
    auto chunks = FindChunks(memory_.base + begin, size - begin, *frame_.chunkOrder);
    if (!chunks) throw Error(GenTL::GC_ERR_NO_DATA, "the chunks of the frame are damaged");
    for (ChunkPlace& chunk : *chunks)
        chunk.offset += begin;
    return *std::move(chunks);
}

void Buffer::GetSegmentInfo(Answer answer) const {
    const std::lock_guard lock(mutex_);
    switch (answer.Command()) {
        case GenTL::SEGMENT_INFO_BASE:
            return answer.Pointer(memory_.base);
        case GenTL::SEGMENT_INFO_SIZE:
            return answer.Size(memory_.size);
        case GenTL::SEGMENT_INFO_IS_INCOMPLETE:
            return answer.Bool(hasFrame_ && frame_.incomplete);
        case GenTL::SEGMENT_INFO_SIZE_FILLED:
            return answer.Size(hasFrame_ ? frame_.sizeFilled : 0);
        case GenTL::SEGMENT_INFO_DATA_SIZE:
            return answer.Size(DataSize());
        default:
            throw Error(GenTL::GC_ERR_NOT_IMPLEMENTED, "unknown segment info command");
    }
}

size_t Buffer::NumParts() const {
    const std::lock_guard lock(mutex_);
    return Parts().size();
}

void Buffer::GetPartInfo(size_t index, Answer answer) const {
    const std::lock_guard lock(mutex_);
    if (index >= Parts().size()) {
        throw Error(GenTL::GC_ERR_INVALID_INDEX, "the frame has not that many parts");
    }
    const FramePart& part = frame_.parts[index];
    switch (answer.Command()) {
        case GenTL::BUFFER_PART_INFO_BASE:
            return answer.Pointer(memory_.base + part.offset);
        case GenTL::BUFFER_PART_INFO_DATA_SIZE:
            return answer.Size(part.dataSize);
        case GenTL::BUFFER_PART_INFO_DATA_TYPE:
            return answer.Size(static_cast<size_t>(part.type));
        case GenTL::BUFFER_PART_INFO_DATA_FORMAT:
            return answer.Uint64(part.format);
        case GenTL::BUFFER_PART_INFO_DATA_FORMAT_NAMESPACE:
            return answer.Uint64(GenTL::PIXELFORMAT_NAMESPACE_PFNC_32BIT);
        case GenTL::BUFFER_PART_INFO_SOURCE_ID:
            return answer.Uint64(part.sourceId);
        case GenTL::BUFFER_PART_INFO_REGION_ID:
            return answer.Uint64(part.regionId);
        case GenTL::BUFFER_PART_INFO_DATA_PURPOSE_ID:
            return answer.Uint64(part.purposeId);
        default:
            return AnswerPartGeometry(part, answer);
    }
}

}  // namespace ZelCti
