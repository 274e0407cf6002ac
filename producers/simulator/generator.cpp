#include "producers/simulator/generator.h"

#include <algorithm>
#include <cstring>

namespace ZelSim {

namespace {

using Seconds = std::chrono::duration<double>;

// Of a slow camera, too, a frame is under way only for a short time.
constexpr Seconds kLongestTransfer = std::chrono::milliseconds(10);

// Whether this is the Nth, 2Nth, ... frame; never for 0.
bool IsEvery(uint32_t n, uint64_t id) {
    return n != 0 && (id + 1) % n == 0;
}

}  // namespace

void Generator::Start(uint64_t numFrames) {
    Stop(BufferPool::Halt::Now);  // joins a thread that has ended by itself
    const CameraConfig& config = camera_->Config();
    if (!config.noFill) picture_ = camera_->Picture();
    if (config.frameRate > 0) {
        const Seconds transfer = std::min(Seconds(0.5 / config.frameRate), kLongestTransfer);
        transfer_ = std::chrono::duration_cast<Clock::duration>(transfer);
    }
    pool_->SetHalt(BufferPool::Halt::No);
    start_ = Clock::now();
    grabbing_ = true;
    try {
        thread_ = std::thread(&Generator::Run, this, numFrames);
    } catch (...) {
        grabbing_ = false;
        throw;
    }
}

void Generator::Stop(BufferPool::Halt halt) {
    if (!thread_.joinable()) return;
    pool_->SetHalt(halt);
    thread_.join();
    thread_ = std::thread();
}

// The point in time at which a frame is delivered.
Generator::Clock::time_point Generator::EndOf(uint64_t id) const {
    const Seconds since(static_cast<double>(id) / camera_->Config().frameRate);
    return start_ + transfer_ + std::chrono::duration_cast<Clock::duration>(since);
}

bool Generator::IsLost(uint64_t id) const {
    return IsEvery(camera_->Config().dropEvery, id);
}

void Generator::Run(uint64_t numFrames) {
    const bool paced = camera_->Config().frameRate > 0;
    Report(EventKind::AcquisitionStart);
    for (uint64_t id = 0, acquired = 0; acquired < numFrames; ++id) {
        if (paced) pool_->WaitUntil(EndOf(id) - transfer_, BufferPool::Halt::AfterFrame);
        if (pool_->IsHalted() || !camera_->IsPlugged()) break;
        if (!IsLost(id) && Acquire(id)) ++acquired;
    }
    Report(EventKind::AcquisitionEnd);
    grabbing_ = false;
}

void Generator::Report(EventKind kind, std::optional<uint64_t> frameId) {
    camera_->Events().Send(kind, camera_->Ticks(camera_->Nanoseconds()), frameId);
}

bool Generator::Acquire(uint64_t id) {
    const bool paced = camera_->Config().frameRate > 0;
    Buffer* const buffer = pool_->Take(!paced);
    if (buffer == nullptr) return false;
    Report(EventKind::FrameStart, id);
    if (paced && !pool_->WaitUntil(EndOf(id), BufferPool::Halt::Now)) {
        pool_->PutBack(*buffer);
        return false;
    }
    Report(EventKind::ExposureEnd, id);
    Fill(*buffer, id);
    Report(EventKind::FrameEnd, id);
    pool_->Deliver(*buffer);
    return true;
}

void Generator::Fill(Buffer& buffer, uint64_t id) {
    FrameInfo frame;
    frame.id = id;
    frame.timestampNs = camera_->Nanoseconds();
    Draw(buffer, id, frame);
    buffer.SetFrame(frame);
}

void Generator::Draw(const Buffer& buffer, uint64_t id, FrameInfo& frame) {
    const CameraConfig& config = camera_->Config();
    const BufferMemory& memory = buffer.Memory();
    const auto payload = static_cast<size_t>(config.PayloadSize());
    const auto pitch = static_cast<size_t>(config.LinePitch());
    frame.tooLarge = payload > memory.size;
    const size_t offset = std::min<size_t>(memory.size, config.imageOffset);
    const size_t room = memory.size - offset;
    size_t numLines = std::min<size_t>(config.height, room / pitch);
    const bool torn = IsEvery(config.incompleteEvery, id);
    if (torn) numLines = std::min<size_t>(numLines, config.height / 2);
    frame.incomplete = torn || frame.tooLarge;
    frame.deliveredHeight = numLines;
    frame.sizeFilled = frame.incomplete ? offset + numLines * pitch : payload;
    if (picture_ != nullptr) {
        picture_->Draw(id, memory.base + offset, numLines);
    } else if (memory.size >= sizeof(id)) {
        std::memcpy(memory.base, &id, sizeof(id));
    }
}

}  // namespace ZelSim
