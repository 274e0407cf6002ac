#include "tools/zelcam/acquisition.h"

#include <algorithm>
#include <chrono>
#include <string>

#include "tools/zelcam/failure.h"
#include "tools/zelcam/interrupt.h"
#include "tools/zelcam/pause.h"
#include "tools/zelcam/words.h"

Acquisition::Acquisition(ZelCam::Stream& stream, size_t buffers) : stream_(stream) {
    Announce(buffers);
    Start();
}

// Nobody is left to be told about failures here; the rest is undone all the same.
Acquisition::~Acquisition() {
    stream_.StopAcquisition(ZelCam::StopFlag_Kill);
    stream_.ReleaseBufferQueue();
}

void Acquisition::Announce(size_t buffers) {
    if (stream_.GetBufferSize() == 0) {
        throw Failure(ExitCode::AcquisitionFailed,
                      "neither the stream nor the camera tells how large a frame is");
    }
    const size_t count = std::max(buffers, stream_.GetMinNumBuffers());
    const ZelCamErr code = stream_.AllocBufferQueue(nullptr, count);
    if (code != ZelCamErr_Success) {
        throw Failure(ExitCode::AcquisitionFailed,
                      "no memory for " + std::to_string(count) + " buffers of " +
                          std::to_string(stream_.GetBufferSize()) + " bytes: " + ErrorWords(code));
    }
}

void Acquisition::Start() {
    const ZelCamErr code = stream_.StartAcquisition(ZelCam::Infinite, ZelCam::StartFlag_Default);
    if (code != ZelCamErr_Success) {
        throw Failure(ExitCode::AcquisitionFailed,
                      "the acquisition does not start: " + ErrorWords(code));
    }
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
        ZelCam::Buffer* buffer = stream_.GetBuffer(std::min(left, sliceMs), code);
        if (buffer != nullptr || *code != ZelCamErr_GenTL_Timeout) return buffer;
        const auto remaining = std::chrono::ceil<milliseconds>(end - Clock::now()).count();
        if (remaining <= 0) return nullptr;
        left = static_cast<uint64_t>(remaining);
    }
}

void Acquisition::Requeue(ZelCam::Buffer& buffer) {
    const ZelCamErr code = stream_.QueueBuffer(&buffer);
    if (code != ZelCamErr_Success) {
        throw Failure(ExitCode::AcquisitionFailed,
                      "a buffer cannot be queued again: " + ErrorWords(code));
    }
}
