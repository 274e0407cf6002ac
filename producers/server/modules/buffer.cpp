#include "producers/server/modules/buffer.h"

#include "producers/server/base/error.h"

namespace ZelSim {

namespace {

constexpr int32_t kInfoSecondOfPair = 1101;  // of this producer: the second frame of a pair

PortIdentity IdentityOf(const Camera& camera) {
    const CameraConfig& config = camera.Config();
    return {camera.Id() + "/Buffer", config.vendor, config.model, config.version,
            camera.TlType(),         "TLBuffer",    "BufferPort"};
}

}  // namespace

Buffer::Buffer(std::shared_ptr<Camera> camera, const Module& stream, BufferMemory memory)
    : Module(Kind::Buffer, IdentityOf(*camera), OwnRegisters()),
      camera_(std::move(camera)),
      stream_(stream),
      memory_(std::move(memory)) {}

void Buffer::SetFrame(FrameInfo frame) {
    const std::lock_guard lock(mutex_);
    frame_ = std::move(frame);
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

void Buffer::GetInfo(Answer answer) const {
    const std::lock_guard lock(mutex_);
    if (AnswerFrame(answer) || AnswerChunks(answer) || AnswerGeometry(answer) ||
        AnswerState(answer) || AnswerMemory(answer)) {
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
            return answer.String(camera_->TlType()), true;
        case GenTL::BUFFER_INFO_IS_COMPOSITE:
            return answer.Bool(memory_.composite), true;
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
        case GenTL::BUFFER_INFO_DATA_SIZE:
            return answer.Size(hasFrame_ ? frame_.sizeFilled : 0), true;
        case GenTL::BUFFER_INFO_DATA_LARGER_THAN_BUFFER:
            return answer.Bool(hasFrame_ && frame_.tooLarge), true;
        case GenTL::BUFFER_INFO_IMAGEPRESENT:
            return answer.Bool(hasFrame_), true;
        case GenTL::BUFFER_INFO_CONTAINS_CHUNKDATA:
            return answer.Bool(hasFrame_ && !frame_.chunks.IsEmpty()), true;
        default:
            return false;
    }
}

bool Buffer::AnswerGeometry(Answer answer) const {
    switch (answer.Command()) {
        case GenTL::BUFFER_INFO_WIDTH:
            return answer.Size(Frame().settings->width), true;
        case GenTL::BUFFER_INFO_HEIGHT:
            return answer.Size(Frame().settings->height), true;
        case GenTL::BUFFER_INFO_XOFFSET:
            return answer.Size(Frame().settings->offsetX), true;
        case GenTL::BUFFER_INFO_YOFFSET:
            return answer.Size(Frame().settings->offsetY), true;
        case GenTL::BUFFER_INFO_XPADDING:
            return answer.Size(Frame().settings->xPadding), true;
        case GenTL::BUFFER_INFO_YPADDING:
            return answer.Size(Frame().settings->yPadding), true;
        case GenTL::BUFFER_INFO_IMAGEOFFSET:
            return answer.Size(Frame().settings->imageOffset), true;
        case GenTL::BUFFER_INFO_PIXELFORMAT:
            return answer.Uint64(Frame().settings->pixelFormat->value), true;
        case GenTL::BUFFER_INFO_PIXELFORMAT_NAMESPACE:
            return Frame(), answer.Uint64(GenTL::PIXELFORMAT_NAMESPACE_PFNC_32BIT), true;
        case GenTL::BUFFER_INFO_PIXEL_ENDIANNESS:
            return Frame(), answer.Int32(GenTL::PIXELENDIANNESS_LITTLE), true;
        default:
            return false;
    }
}

bool Buffer::AnswerFrame(Answer answer) const {
    switch (answer.Command()) {
        case GenTL::BUFFER_INFO_TIMESTAMP:
            return answer.Uint64(camera_->Ticks(Frame().timestampNs)), true;
        case GenTL::BUFFER_INFO_TIMESTAMP_NS:
            return answer.Uint64(Frame().timestampNs), true;
        case GenTL::BUFFER_INFO_FRAMEID:
            return answer.Uint64(Frame().id), true;
        case GenTL::BUFFER_INFO_PAYLOADTYPE:
            return Frame(), answer.Size(GenTL::PAYLOAD_TYPE_IMAGE), true;
        case GenTL::BUFFER_INFO_DELIVERED_IMAGEHEIGHT:
            return answer.Size(Frame().deliveredHeight), true;
        case GenTL::BUFFER_INFO_FILENAME:
            throw Error(GenTL::GC_ERR_NOT_AVAILABLE, "images have no file");
        case kInfoSecondOfPair:
            if (!camera_->Config().framePairs) return false;
            return answer.Bool(Frame().id % 2 != 0), true;
        default:
            return false;
    }
}

bool Buffer::AnswerChunks(Answer answer) const {
    const bool size = answer.Command() == GenTL::BUFFER_INFO_DELIVERED_CHUNKPAYLOADSIZE;
    if (!size && answer.Command() != GenTL::BUFFER_INFO_CHUNKLAYOUTID) return false;
    if (Frame().chunks.IsEmpty()) {
        throw Error(GenTL::GC_ERR_NOT_AVAILABLE, "the frame has no chunks");
    }
    if (size) return answer.Size(frame_.sizeFilled), true;
    const uint64_t layout = frame_.settings->ImageSize() << kNumChunkKinds | frame_.chunks.Bits();
    return answer.Uint64(layout), true;
}

std::vector<ChunkPlace> Buffer::Chunks() const {
    const std::lock_guard lock(mutex_);
    if (Frame().chunks.IsEmpty()) throw Error(GenTL::GC_ERR_NO_DATA, "the frame has no chunks");
    return ChunkPlaces(frame_.chunks, frame_.settings->ImageSize());
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
        case GenTL::SEGMENT_INFO_DATA_SIZE:
            return answer.Size(hasFrame_ ? frame_.sizeFilled : 0);
        default:
            throw Error(GenTL::GC_ERR_NOT_IMPLEMENTED, "unknown segment info command");
    }
}

}  // namespace ZelSim
