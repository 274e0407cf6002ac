#include "producers/server/modules/stream.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <new>
#include <sys/mman.h>

#include "producers/server/base/error.h"
#include "producers/server/modules/infosource.h"
#include "producers/server/modules/library.h"
#include "producers/server/modules/newbufferevent.h"
#include "producers/server/registers/transporttype.h"

namespace ZelCti {

namespace {

constexpr LocalDescription kStreamDescription{"Stream", "Features of a data stream", '4'};

constexpr size_t kCacheLine = 64;
constexpr size_t kLargePage = 2 << 20;
constexpr uint64_t kNewestOnly = 1;  // the last of the buffer handling modes

PortIdentity StreamIdentity(const CameraInfo& camera, const std::string& id) {
    return PortIdentity::OfCamera(camera, id, "TLDataStream", "StreamPort");
}

}  // namespace

Stream::Stream(std::shared_ptr<CameraLink> link, uint32_t index, const std::string& id, Claim claim)
    : LocalModule(Kind::Stream, StreamIdentity(link->GetCamera().Info(), id), &kStreamDescription),
      link_(std::move(link)),
      claim_(std::move(claim)),
      pool_(std::make_shared<BufferPool>()),
      engine_(link_->GetConnection().OpenStream(index, *pool_)),
      info_(engine_->Info()) {}

BytesSource Stream::Info(int32_t command) const {
    return InfoSource(command, [this](Answer answer) { GetInfo(answer); });
}

void Stream::AddFeatures(FeatureTable& features) {
    AddInformation(features);
    AddBufferHandling(features);
    engine_->AddFeatures(features);
}

void Stream::AddInformation(FeatureTable& features) {
    features.Category("StreamInformation", "What the data stream is.");
    features.StringReg("StreamID", "Identifier of the stream.")
        .At(0x2000, kTextSize)
        .Bind(Info(GenTL::STREAM_INFO_ID));
    features.Enumeration("StreamType", "Transport type of the stream.")
        .At(0x2100)
        .Entries(TransportTypeEntries())
        .Get([this] { return TransportTypeNumber(Port().tlType); });
}

void Stream::AddBufferHandling(FeatureTable& features) {
    features.Category("BufferHandlingControl", "The buffers of the stream and the frames in them.");
    features
        .Enumeration("StreamBufferHandlingMode",
                     "Which frames are delivered when they come faster than they are fetched.")
        .Expert()
        .LockedBy("StreamIsGrabbing")
        .At(0x3058)
        .Entries({{"OldestFirst", 0, "All, in their order, as long as buffers wait for them."},
                  {"NewestOnly", kNewestOnly,
                   "The newest; buffers with older ones wait for frames again."}})
        .Check([this](uint64_t mode) { CheckBufferHandling(mode); })
        .Set([this](uint64_t mode) { pool_->SetNewestOnly(mode == kNewestOnly); });
    features.IntReg("StreamAnnounceBufferMinimum", "Buffers that must be announced before a start.")
        .Expert()
        .At(0x3030, 8)
        .Bind(Info(GenTL::STREAM_INFO_BUF_ANNOUNCE_MIN));
    features.IntReg("StreamBufferAlignment", "Alignment of the memory of announced buffers.")
        .Guru()
        .At(0x3038, 8)
        .Unit("B")
        .Bind(Info(GenTL::STREAM_INFO_BUF_ALIGNMENT));
    AddCounts(features);
    AddLayout(features);
}

void Stream::AddCounts(FeatureTable& features) {
    features.IntReg("StreamAnnouncedBufferCount", "Buffers that are announced.")
        .Expert()
        .At(0x3018, 8)
        .Bind(Info(GenTL::STREAM_INFO_NUM_ANNOUNCED));
    features.IntReg("StreamInputBufferCount", "Buffers that wait for a frame.")
        .Expert()
        .At(0x3020, 8)
        .Bind(Info(GenTL::STREAM_INFO_NUM_QUEUED));
    features.IntReg("StreamOutputBufferCount", "Buffers with a frame that wait to be fetched.")
        .Expert()
        .At(0x3028, 8)
        .Bind(Info(GenTL::STREAM_INFO_NUM_AWAIT_DELIVERY));
    features.IntReg("StreamStartedFrameCount", "Frames that began to fill a buffer.")
        .Expert()
        .At(0x3010, 8)
        .Bind(Info(GenTL::STREAM_INFO_NUM_STARTED));
    features
        .IntReg("StreamDeliveredFrameCount",
                "Frames that were fetched since the stream was opened.")
        .Expert()
        .At(0x3000, 8)
        .Bind(Info(GenTL::STREAM_INFO_NUM_DELIVERED));
    features
        .IntReg("StreamLostFrameCount", "Frames that were lost because no buffer waited for them.")
        .Expert()
        .At(0x3008, 8)
        .Bind(Info(GenTL::STREAM_INFO_NUM_UNDERRUN));
}

void Stream::AddLayout(FeatureTable& features) {
    features.IntReg("StreamChunkCountMaximum", "Chunks that a buffer can hold at most.")
        .Guru()
        .At(0x3040, 8)
        .Bind(Info(GenTL::STREAM_INFO_NUM_CHUNKS_MAX));
    features.Boolean("StreamIsGrabbing", "Whether the acquisition runs.")
        .Expert()
        .At(0x3054)
        .Bind(Info(GenTL::STREAM_INFO_IS_GRABBING));
    features.IntReg("PayloadSize", "Bytes that a frame takes.")
        .Expert()
        .AvailableIf("DefinesPayloadSize")
        .At(0x3048, 8)
        .Unit("B")
        .Bind(Info(GenTL::STREAM_INFO_PAYLOAD_SIZE));
    features.IntReg("DefinesPayloadSize")
        .At(0x3050)
        .Bind(Info(GenTL::STREAM_INFO_DEFINES_PAYLOADSIZE));
}

void Stream::CheckBufferHandling(uint64_t mode) const {
    if (mode > kNewestOnly) throw Error(GenTL::GC_ERR_INVALID_VALUE, "no such mode");
    if (engine_->IsGrabbing()) {
        throw Error(GenTL::GC_ERR_ACCESS_DENIED, "the acquisition runs");
    }
}

size_t Stream::PayloadSize() const {
    if (info_.definesPayloadSize) return engine_->PayloadSize();
    throw Error(GenTL::GC_ERR_NOT_AVAILABLE, "the camera defines the payload size");
}

void Stream::GetInfo(Answer answer) const {
    if (AnswerCount(answer)) return;
    switch (answer.Command()) {
        case GenTL::STREAM_INFO_ID:
            return answer.String(Id());
        case GenTL::STREAM_INFO_PAYLOAD_SIZE:
            return answer.Size(PayloadSize());
        case GenTL::STREAM_INFO_IS_GRABBING:
            return answer.Bool(engine_->IsGrabbing());
        case GenTL::STREAM_INFO_DEFINES_PAYLOADSIZE:
            return answer.Bool(info_.definesPayloadSize);
        case GenTL::STREAM_INFO_TLTYPE:
            return answer.String(Port().tlType);
        case GenTL::STREAM_INFO_NUM_CHUNKS_MAX:
            return answer.Size(info_.maxChunks);
        case GenTL::STREAM_INFO_BUF_ANNOUNCE_MIN:
            return answer.Size(info_.minBuffers);
        case GenTL::STREAM_INFO_BUF_ALIGNMENT:
            return answer.Size(info_.alignment);
        case GenTL::STREAM_INFO_FLOW_TABLE:
        case GenTL::STREAM_INFO_GENDC_PREFETCH_DESCRIPTOR:
            throw Error(GenTL::GC_ERR_NOT_AVAILABLE, "nothing of a frame is known before it comes");
        default:
            throw Error(GenTL::GC_ERR_NOT_IMPLEMENTED, "unknown stream info command");
    }
}

bool Stream::AnswerCount(Answer answer) const {
    switch (answer.Command()) {
        case GenTL::STREAM_INFO_NUM_DELIVERED:
            return answer.Uint64(pool_->Counts().delivered), true;
        case GenTL::STREAM_INFO_NUM_UNDERRUN:
            return answer.Uint64(pool_->Counts().underrun), true;
        case GenTL::STREAM_INFO_NUM_STARTED:
            return answer.Uint64(pool_->Counts().started), true;
        case GenTL::STREAM_INFO_NUM_ANNOUNCED:
            return answer.Size(pool_->Counts().announced), true;
        case GenTL::STREAM_INFO_NUM_QUEUED:
            return answer.Size(pool_->Counts().queued), true;
        case GenTL::STREAM_INFO_NUM_AWAIT_DELIVERY:
            return answer.Size(pool_->Counts().awaitDelivery), true;
        default:
            return false;
    }
}

void Stream::GetFlowInfo(uint32_t index, Answer answer) const {
    if (index != 0) throw Error(GenTL::GC_ERR_INVALID_INDEX, "the stream has one flow");
    if (answer.Command() == GenTL::FLOW_INFO_SIZE) return answer.Size(PayloadSize());
    throw Error(GenTL::GC_ERR_NOT_IMPLEMENTED, "unknown flow info command");
}

Handle Stream::Announce(const std::shared_ptr<Stream>& stream, void* base, size_t size,
                        void* userPointer, bool composite) {
    if (base == nullptr || size == 0) {
        throw Error(GenTL::GC_ERR_INVALID_PARAMETER, "no memory to announce");
    }
    if (reinterpret_cast<uintptr_t>(base) % stream->info_.alignment != 0) {
        throw Error(GenTL::GC_ERR_INVALID_PARAMETER, "the memory is not aligned as required");
    }
    return Announce(stream,
                    BufferMemory{static_cast<uint8_t*>(base), size, userPointer, composite});
}

Handle Stream::Allocate(const std::shared_ptr<Stream>& stream, size_t size, void* userPointer) {
    if (size == 0) throw Error(GenTL::GC_ERR_INVALID_PARAMETER, "a buffer of no size");
    // Large frames lie in large pages where the kernel has some: they cost less to copy to.
    const bool isLarge = size >= kLargePage;
    const size_t alignment =
        std::max<size_t>(stream->info_.alignment, isLarge ? kLargePage : kCacheLine);
    void* base = nullptr;
    if (posix_memalign(&base, alignment, size) != 0) throw std::bad_alloc();
    if (isLarge) madvise(base, size, MADV_HUGEPAGE);
    BufferMemory memory{static_cast<uint8_t*>(base), size, userPointer, false};
    memory.owned.reset(base);
    std::memset(base, 0, size);
    return Announce(stream, std::move(memory));
}

Handle Stream::Announce(const std::shared_ptr<Stream>& stream, BufferMemory memory) {
    stream->CheckConnected();
    const auto buffer =
        std::make_shared<Buffer>(stream->link_, *stream, stream->info_, std::move(memory));
    HandleTable& handles = Library::Instance().Handles();
    const Handle handle = handles.Open(buffer, stream);
    try {
        stream->pool_->Announce(buffer);
    } catch (...) {
        handles.Close(handle);
        throw;
    }
    return handle;
}

void Stream::Queue(Buffer& buffer) {
    CheckConnected();
    pool_->Queue(buffer);
    engine_->OnInput();
}

void Stream::Flush(GenTL::ACQ_QUEUE_TYPE operation) {
    pool_->Flush(operation);
    engine_->OnInput();
}

void Stream::Start(GenTL::ACQ_START_FLAGS flags, uint64_t numFrames) {
    if (flags != GenTL::ACQ_START_FLAGS_DEFAULT || numFrames == 0) {
        throw Error(GenTL::GC_ERR_INVALID_PARAMETER, "unknown flags, or no frame asked for");
    }
    CheckConnected();
    const std::lock_guard lock(startMutex_);
    if (closed_) throw Error(GenTL::GC_ERR_INVALID_HANDLE, "the stream is closed");
    if (engine_->IsGrabbing()) {
        throw Error(GenTL::GC_ERR_RESOURCE_IN_USE, "the stream is started already");
    }
    if (pool_->Counts().announced < info_.minBuffers) {
        throw Error(GenTL::GC_ERR_INVALID_BUFFER, "too few buffers are announced");
    }
    engine_->Start(numFrames);
    isStarted_ = true;
}

void Stream::Stop(GenTL::ACQ_STOP_FLAGS flags) {
    if (flags != GenTL::ACQ_STOP_FLAGS_DEFAULT && flags != GenTL::ACQ_STOP_FLAGS_KILL) {
        throw Error(GenTL::GC_ERR_INVALID_PARAMETER, "unknown flags");
    }
    const std::lock_guard lock(startMutex_);
    if (!isStarted_) throw Error(GenTL::GC_ERR_RESOURCE_IN_USE, "the stream is not started");
    engine_->Stop(flags == GenTL::ACQ_STOP_FLAGS_KILL);
    isStarted_ = false;
}

std::shared_ptr<Event> Stream::MakeEvent(GenTL::EVENT_TYPE type) {
    if (type == GenTL::EVENT_NEW_BUFFER) return std::make_shared<NewBufferEvent>(pool_);
    return Module::MakeEvent(type);
}

void Stream::OnClosing() noexcept {
    engine_->Kill();  // also for a Stop that waits for its frame
    const std::lock_guard lock(startMutex_);
    closed_ = true;
    try {
        if (isStarted_) engine_->Stop(true);
    } catch (const std::exception&) {
        // The camera does not obey, but no frame comes any more: closing goes on.
    }
    isStarted_ = false;
}

}  // namespace ZelCti
