#include "tools/zelcam/frames/acquisition.h"

#include <algorithm>
#include <chrono>
#include <utility>

#include "tools/zelcam/camera/words.h"
#include "tools/zelcam/console/failure.h"
#include "tools/zelcam/console/interrupt.h"

namespace ZelTool {

namespace {

void ThrowIfFailed(const std::string& failure) {
    if (!failure.empty()) throw Failure(ExitCode::AcquisitionFailed, failure);
}

std::string StepFailure(const char* step, ZelCamErr code) {
    return code == ZelCamErr_Success ? "" : std::string(step) + " failed: " + ErrorWords(code);
}

void AppendFailure(std::string& failures, const std::string& failure) {
    if (!failures.empty() && !failure.empty()) failures += "; ";
    failures += failure;
}

}  // namespace

Acquisition::Acquisition(OpenedCamera& camera)
    : stream_(camera.Stream()), camera_(camera.Device().GetCameraParameters(nullptr)) {}

// If this throws, the destructor runs and undoes the steps so far, since the delegated constructor
// has completed the object.
Acquisition::Acquisition(OpenedCamera& camera, size_t buffers) : Acquisition(camera) {
    ThrowIfFailed(camera_.Lock());
    Announce(buffers);
}

Acquisition::~Acquisition() {
    Undo();
}

// If the stream does not know the size, because the producer reports no alignment, the size of the
// payload suffices: any alignment is right.
size_t Acquisition::FrameSize() {
    const size_t size = stream_.GetBufferSize();
    if (size != 0 || camera_.Features() == nullptr) return size;
    return static_cast<size_t>(camera_.Features()->GetIntegerValue("PayloadSize", nullptr));
}

void Acquisition::Announce(size_t buffers) {
    const size_t size = FrameSize();
    if (size == 0) ThrowIfFailed("neither the stream nor the camera reports the size of a frame");
    const size_t count = std::max(buffers, stream_.GetMinNumBuffers());
    for (size_t i = 0; i < count; ++i) {
        ZelCamErr code = ZelCamErr_Success;
        ZelCam::Buffer* const buffer = stream_.CreateBuffer(size, nullptr, &code);
        if (buffer != nullptr) code = stream_.QueueBuffer(buffer);
        RequireSuccess(
            code,
            std::to_string(count) + " buffers of " + std::to_string(size) + " bytes cannot be made",
            ExitCode::AcquisitionFailed);
    }
}

void Acquisition::Start(uint64_t frames) {
    receiving_ = true;
    ThrowIfFailed(StepFailure("StartAcquisition",
                              stream_.StartAcquisition(frames, ZelCam::StartFlag_Default)));
    ThrowIfFailed(camera_.Start());
}

std::string Acquisition::StopBothSides(uint32_t flags) {
    std::string failures = camera_.Stop();
    if (std::exchange(receiving_, false)) {
        AppendFailure(failures, StepFailure("StopAcquisition", stream_.StopAcquisition(flags)));
    }
    return failures;
}

void Acquisition::Stop(uint32_t flags) {
    ThrowIfFailed(StopBothSides(flags));
}

std::string Acquisition::Undo() {
    std::string failures = StopBothSides(ZelCam::StopFlag_Kill);
    AppendFailure(failures, StepFailure("ReleaseBufferQueue", stream_.ReleaseBufferQueue()));
    AppendFailure(failures, camera_.Unlock());
    return failures;
}

void Acquisition::End() {
    ThrowIfFailed(Undo());
}

ZelCam::Buffer* Acquisition::WaitForFrame(uint64_t timeoutMs, ZelCamErr* code) {
    using std::chrono::milliseconds;
    using Clock = std::chrono::steady_clock;
    const Clock::time_point end = Clock::now() + milliseconds(timeoutMs);
    for (uint64_t left = timeoutMs;;) {
        if (Interrupted()) {
            *code = ZelCamErr_GenTL_Abort;
            return nullptr;
        }
        ZelCam::Buffer* buffer = stream_.GetBuffer(std::min(left, kSliceMs), code);
        if (buffer != nullptr || *code != ZelCamErr_GenTL_Timeout) return buffer;
        const auto remaining = std::chrono::ceil<milliseconds>(end - Clock::now()).count();
        if (remaining <= 0) return nullptr;
        left = static_cast<uint64_t>(remaining);
    }
}

void Acquisition::Requeue(ZelCam::Buffer& buffer) {
    RequireSuccess(stream_.QueueBuffer(&buffer), "a buffer cannot be queued again",
                   ExitCode::AcquisitionFailed);
}

}  // namespace ZelTool
