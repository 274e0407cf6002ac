// A camera that is sending frames.
#ifndef ZELCAM_TOOLS_ZELCAM_ACQUISITION_H
#define ZELCAM_TOOLS_ZELCAM_ACQUISITION_H

#include <cstddef>
#include <cstdint>
#include <string>

#include "tools/zelcam/cameraside.h"
#include "tools/zelcam/openedcamera.h"

// Starts and stops the two sides of an acquisition, in the order of GenTL and SFNC:
//
//   constructor  TLParamsLocked = 1   what decides the size of frames is fixed from here on, so
//                                     that buffers announced now are large enough
//                buffers
//   Start        StartAcquisition     the producer receives,
//                AcquisitionStart     the camera sends
//   Stop         AcquisitionStop      the camera ceases,
//                StopAcquisition      the producer too
//   End          (Stop)  buffers revoked  TLParamsLocked = 0
//
// A stop undoes every step that was tried, also one that failed, and goes on past failures. All
// operations throw Failure (AcquisitionFailed) with the names of the steps that failed.
class Acquisition {
  public:
    // At least as many buffers are announced as the producer needs. The camera must outlive this
    // object; its stream is opened before anything is locked.
    Acquisition(OpenedCamera& camera, size_t buffers);

    // Does what End does. Nobody is left to be told about failures.
    ~Acquisition();

    Acquisition(const Acquisition&) = delete;
    Acquisition& operator=(const Acquisition&) = delete;

    // `frames` is the number after which the producer stops by itself.
    void Start(uint64_t frames = ZelCam::Infinite);
    void Stop(uint32_t flags = ZelCam::StopFlag_Kill);
    void End();

    // The next frame, or null: `*code` is then ZelCamErr_GenTL_Timeout when none came in time,
    // ZelCamErr_GenTL_Abort after Ctrl-C, or what the producer says.
    ZelCam::Buffer* WaitForFrame(uint64_t timeoutMs, ZelCamErr* code);

    // Gives a buffer back to be filled again.
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
    bool receiving_ = false;  // or the attempt failed
};

#endif  // ZELCAM_TOOLS_ZELCAM_ACQUISITION_H
