#include "producers/simulator/generator.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <sys/resource.h>
#include <utility>

#include "producers/simulator/zelsim.h"

namespace ZelSim {

namespace {

using Seconds = std::chrono::duration<double>;

// Of a slow camera, too, a frame is under way only for a short time.
constexpr Seconds kLongestTransfer = std::chrono::milliseconds(10);

// Whether this is the Nth, 2Nth, ... frame; never for 0.
bool IsEvery(uint32_t n, uint64_t id) {
    return n != 0 && (id + 1) % n == 0;
}

// Linux has a nice value for each thread. For frames without pause this would only mean more
// switches between threads: a sixth fewer frames where all processors are busy.
void GiveWayToTheProgram() {
    setpriority(PRIO_PROCESS, 0, getpriority(PRIO_PROCESS, 0) + ZELSIM_NICENESS);
}

uint64_t FramesOfOneStart(const FrameSettings& settings) {
    switch (settings.acquisitionMode) {
        case AcquisitionMode::SingleFrame:
            return 1;
        case AcquisitionMode::MultiFrame:
            return settings.acquisitionFrameCount;
        default:
            return std::numeric_limits<uint64_t>::max();
    }
}

ChunkValues ChunkValuesOf(const FrameSettings& settings) {
    ChunkValues values;
    values.width = settings.width;
    values.height = settings.height;
    values.pixelFormat = settings.pixelFormat->value;
    values.exposureTime = settings.exposureTime / 10.0;
    values.gain = settings.gain[static_cast<size_t>(Channel::All)] / 10.0;
    return values;
}

}  // namespace

void Generator::Start(uint64_t numFrames) {
    Stop(BufferPool::Halt::Now);  // joins a thread that has ended by itself
    pool_->SetHalt(BufferPool::Halt::No);
    listener_ = camera_->Control().AddListener(
        [pool = pool_](const FrameSettings&, const FrameSettings&) { pool->Wake(); });
    locked_ = camera_->Control().LockForStream();
    id_ = 0;
    acquires_ = false;
    triggers_ = camera_->Control().State().triggers;
    Restart();
    grabbing_ = true;
    try {
        thread_ = std::thread(&Generator::Run, this, numFrames);
    } catch (...) {
        grabbing_ = false;
        listener_.reset();
        locked_.reset();
        throw;
    }
}

void Generator::Stop(BufferPool::Halt halt) {
    if (!thread_.joinable()) return;
    pool_->SetHalt(halt);
    thread_.join();
    thread_ = std::thread();
    listener_.reset();
    locked_.reset();
}

// The acquisition begins, or begins again: its next frame comes at once.
void Generator::Restart() {
    settings_ = camera_->Settings();
    starts_ = camera_->Control().State().starts;
    numLeft_ = FramesOfOneStart(*settings_);
    base_ = Clock::now();
    baseId_ = id_;
    frameRate_ = 0;
}

Generator::Clock::time_point Generator::StartOf(uint64_t id) const {
    if (frameRate_ <= 0) return base_;
    const Seconds since(static_cast<double>(id - baseId_) / frameRate_);
    return base_ + std::chrono::duration_cast<Clock::duration>(since);
}

// Frames come at another rate from the next one on.
void Generator::FollowRate() {
    const double rate = settings_->IsPaced() ? settings_->frameRate : 0;
    if (rate == frameRate_) return;
    base_ = StartOf(id_);
    baseId_ = id_;
    frameRate_ = rate;
    const Seconds transfer =
        rate > 0 ? std::min(Seconds(0.5 / rate), kLongestTransfer) : Seconds(0);
    transfer_ = std::chrono::duration_cast<Clock::duration>(transfer);
}

bool Generator::IsLost() const {
    return IsEvery(camera_->Config().dropEvery, id_);
}

void Generator::Run(uint64_t numFrames) {
    if (settings_->IsPaced()) GiveWayToTheProgram();
    for (uint64_t acquired = 0; acquired < numFrames && AwaitTurn(); ++id_) {
        --numLeft_;
        if (!IsLost() && Acquire()) ++acquired;
    }
    ReportAcquisition(false);
    grabbing_ = false;
}

// Whether the camera wants a frame; takes the trigger or the start that says so.
bool Generator::IsDue() {
    const CameraControl::Acquisition state = camera_->Control().State();
    if (!state.enabled) return false;
    if (state.starts != starts_) Restart();
    if (numLeft_ == 0) return false;
    settings_ = camera_->Settings();
    if (!settings_->IsPaced() && !pool_->HasInput()) return false;
    if (!settings_->triggerMode) {
        triggers_ = state.triggers;
        return true;
    }
    if (triggers_ == state.triggers) return false;
    ++triggers_;
    return true;
}

// Whether the camera is between the start and the end of an acquisition.
bool Generator::IsAcquiring() const {
    return numLeft_ != 0 && camera_->Control().State().enabled;
}

void Generator::ReportAcquisition(bool acquires) {
    if (acquires == acquires_) return;
    acquires_ = acquires;
    Report(acquires ? EventKind::AcquisitionStart : EventKind::AcquisitionEnd);
}

void Generator::Report(EventKind kind, std::optional<uint64_t> frameId) {
    EventChannel& events = camera_->Events();
    if (events.IsOn(kind)) events.Send(kind, camera_->Ticks(camera_->Nanoseconds()), frameId);
}

// Waits until a frame is due, and reports on the way when the acquisition begins or ends.
bool Generator::AwaitDue() {
    bool due = false;
    while (!due) {
        const auto hasNews = [&] {
            due = IsDue();
            return due || IsAcquiring() != acquires_;
        };
        if (!pool_->WaitFor(hasNews)) return false;
        ReportAcquisition(due || IsAcquiring());
    }
    return true;
}

// Waits for the start of the next frame; false when the acquisition has ended.
bool Generator::AwaitTurn() {
    if (!AwaitDue()) return false;
    FollowRate();
    const bool triggered = settings_->triggerMode;
    if (triggered || wasTriggered_) {
        base_ = Clock::now();
        baseId_ = id_;
    }
    wasTriggered_ = triggered;
    if (frameRate_ > 0 && !triggered) {
        pool_->WaitUntil(StartOf(id_), BufferPool::Halt::AfterFrame);
    }
    return !pool_->IsHalted() && camera_->IsPlugged();
}

bool Generator::Acquire() {
    const bool paced = frameRate_ > 0;
    Buffer* const buffer = pool_->Take(!paced);
    if (buffer == nullptr) return false;
    Report(EventKind::FrameStart, id_);
    if (paced && !pool_->WaitUntil(StartOf(id_) + transfer_, BufferPool::Halt::Now)) {
        pool_->PutBack(*buffer);
        return false;
    }
    Report(EventKind::ExposureEnd, id_);
    Fill(*buffer);
    Report(EventKind::FrameEnd, id_);
    pool_->Deliver(*buffer);
    return true;
}

void Generator::Fill(Buffer& buffer) {
    settings_ = camera_->Settings();  // they may have changed while the frame was under way
    FrameInfo frame;
    frame.settings = settings_;
    frame.id = id_;
    Draw(buffer, frame);
    frame.timestampNs = camera_->Nanoseconds();
    if (!frame.incomplete) AppendChunks(buffer.Memory().base, frame);
    buffer.SetFrame(std::move(frame));
}

void Generator::Draw(const Buffer& buffer, FrameInfo& frame) {
    const CameraConfig& config = camera_->Config();
    const BufferMemory& memory = buffer.Memory();
    const auto payload = static_cast<size_t>(settings_->PayloadSize());
    const auto pitch = static_cast<size_t>(settings_->LinePitch());
    frame.tooLarge = payload > memory.size;
    const size_t offset = std::min<size_t>(memory.size, settings_->imageOffset);
    const size_t room = memory.size - offset;
    size_t numLines = std::min<size_t>(settings_->height, room / pitch);
    const bool torn = IsEvery(config.incompleteEvery, id_);
    if (torn) numLines = std::min<size_t>(numLines, settings_->height / 2);
    frame.incomplete = torn || frame.tooLarge;
    frame.deliveredHeight = numLines;
    frame.sizeFilled = frame.incomplete ? offset + numLines * pitch : payload;
    if (!config.noFill) {
        camera_->Picture(*settings_)->Draw(id_, memory.base + offset, numLines);
    } else if (memory.size >= sizeof(id_)) {
        std::memcpy(memory.base, &id_, sizeof(id_));
    }
}

void Generator::AppendChunks(uint8_t* payload, FrameInfo& frame) const {
    frame.chunks = settings_->SentChunks();
    if (frame.chunks.IsEmpty()) return;
    ChunkValues values = ChunkValuesOf(*settings_);
    values.frameId = frame.id;
    values.timestamp = camera_->Ticks(frame.timestampNs);
    WriteChunks(payload, frame.chunks, settings_->ImageSize(), values, camera_->WireOrder(),
                camera_->Registers()->Order());
}

}  // namespace ZelSim
