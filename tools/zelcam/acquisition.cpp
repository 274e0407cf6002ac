#include "tools/zelcam/acquisition.h"

#include <algorithm>
#include <chrono>
#include <string>

#include "tools/zelcam/failure.h"
#include "tools/zelcam/interrupt.h"
#include "tools/zelcam/words.h"

namespace {

// A wait is cut into slices so that Ctrl-C is seen soon: a signal does not end a producer's wait,
// and calling into a producer is not allowed in a signal handler.
constexpr uint64_t sliceMs = 100;

std::string OpenHint(ZelCamErr code, const Camera& camera) {
    if (code == ZelCamErr_GenTL_ResourceInUse || code == ZelCamErr_GenTL_AccessDenied) {
        return "\nAnother program has it open, or did not close it properly: close that program, "
               "or "
               "wait some seconds\nuntil the camera notices. `--access readonly` may work beside "
               "it.";
    }
    if (camera.accessStatus == 3 && camera.interfaceType == ZelCam::InterfaceType::GEV) {
        return "\nThe camera is seen but cannot be reached: its address does not fit into the "
               "network of the adapter.";
    }
    if (camera.accessStatus == 3) {
        return "\nThe camera is seen but cannot be reached: may this user open the device (udev "
               "rules, groups)?";
    }
    return "";
}

Released<ZelCam::Device> OpenCamera(const Camera& camera, ZelCam::DeviceAccess access) {
    ZelCamErr code = ZelCamErr_Error;
    Released<ZelCam::Device> device(ZelCam_CreateDevice(camera.info, access, &code));
    if (!device) {
        throw Failure(ExitCode::CannotOpen,
                      "camera " + camera.id + " cannot be opened: " + ErrorWords(code) +
                          "; its access status is \"" + AccessWords(camera.accessStatus) + "\"" +
                          OpenHint(code, camera));
    }
    return device;
}

}  // namespace

Acquisition::Acquisition(const Camera& camera, ZelCam::DeviceAccess access, size_t buffers)
    : device_(OpenCamera(camera, access)) {
    OpenStream();
    Announce(buffers);
    Start();
}

// Nobody is left to be told about failures here; the rest is undone all the same.
Acquisition::~Acquisition() {
    stream_->StopAcquisition(ZelCam::StopFlag_Kill);
    stream_->ReleaseBufferQueue();
}

void Acquisition::OpenStream() {
    if (device_->GetNumStreams() == 0) {
        throw Failure(ExitCode::CannotOpen, "the camera has no data stream");
    }
    stream_.reset(device_->GetStreamByIndex(0));
    if (!stream_) throw Failure(ExitCode::CannotOpen, "the camera's data stream cannot be opened");
}

void Acquisition::Announce(size_t buffers) {
    if (stream_->GetBufferSize() == 0) {
        throw Failure(ExitCode::AcquisitionFailed,
                      "neither the stream nor the camera tells how large a frame is");
    }
    const size_t count = std::max(buffers, stream_->GetMinNumBuffers());
    const ZelCamErr code = stream_->AllocBufferQueue(nullptr, count);
    if (code != ZelCamErr_Success) {
        throw Failure(ExitCode::AcquisitionFailed,
                      "no memory for " + std::to_string(count) + " buffers of " +
                          std::to_string(stream_->GetBufferSize()) + " bytes: " + ErrorWords(code));
    }
}

void Acquisition::Start() {
    const ZelCamErr code = stream_->StartAcquisition(ZelCam::Infinite, ZelCam::StartFlag_Default);
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
        ZelCam::Buffer* buffer = stream_->GetBuffer(std::min(left, sliceMs), code);
        if (buffer != nullptr || *code != ZelCamErr_GenTL_Timeout) return buffer;
        const auto remaining = std::chrono::ceil<milliseconds>(end - Clock::now()).count();
        if (remaining <= 0) return nullptr;
        left = static_cast<uint64_t>(remaining);
    }
}

void Acquisition::Requeue(ZelCam::Buffer& buffer) {
    const ZelCamErr code = stream_->QueueBuffer(&buffer);
    if (code != ZelCamErr_Success) {
        throw Failure(ExitCode::AcquisitionFailed,
                      "a buffer cannot be queued again: " + ErrorWords(code));
    }
}
