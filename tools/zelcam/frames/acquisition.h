// Runs an acquisition: starts and stops the stream and the camera.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

#include "tools/zelcam/camera/openedcamera.h"
#include "tools/zelcam/frames/cameraside.h"

namespace ZelTool {

// Starts and stops the two sides of an acquisition, in the order of GenTL and SFNC:
//
//   constructor  TLParamsLocked = 1   locks the features that determine the size of frames, so that
//                                     the buffers announced next are large enough
//                buffers
//   Start        StartAcquisition     the producer begins to receive,
//                AcquisitionStart     the camera begins to send
//   Stop         AcquisitionStop      the camera stops,
//                StopAcquisition      the producer stops
//   End          (Stop)  buffers revoked  TLParamsLocked = 0
//
// A stop undoes every step that was tried, even a failed one, and continues after failures. All
// operations throw Failure (AcquisitionFailed) with the names of the steps that failed.
class Acquisition {
  public:
    // Announces `buffers`, or as many as the producer needs if that is more. The camera must
    // outlive this object; its stream is opened before anything is locked.
    Acquisition(OpenedCamera& camera, size_t buffers);

    // Does the same as End, but ignores failures.
    ~Acquisition();

    Acquisition(const Acquisition&) = delete;
    Acquisition& operator=(const Acquisition&) = delete;

    // The producer stops by itself after `frames`.
    void Start(uint64_t frames = ZelCam::Infinite);
    void Stop(uint32_t flags = ZelCam::StopFlag_Kill);
    void End();

    // The next frame, or null with `*code`: ZelCamErr_GenTL_Timeout when no frame arrives in time,
    // ZelCamErr_GenTL_Abort after Ctrl-C, or the code of the producer.
    ZelCam::Buffer* WaitForFrame(uint64_t timeoutMs, ZelCamErr* code);

    // Queues a buffer again.
    void Requeue(ZelCam::Buffer& buffer);

    ZelCam::Stream& Stream() { return stream_; }
    const CameraSide& Camera() const { return camera_; }

  private:
    explicit Acquisition(OpenedCamera& camera);
    size_t FrameSize();
    void Announce(size_t buffers);
    std::string StopBothSides(uint32_t flags);
    std::string Undo();

    ZelCam::Stream& stream_;
    CameraSide camera_;
    bool receiving_ = false;  // also after a failed attempt
};

}  // namespace ZelTool
