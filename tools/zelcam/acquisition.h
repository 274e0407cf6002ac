// A camera that is sending frames.
#ifndef ZELCAM_TOOLS_ZELCAM_ACQUISITION_H
#define ZELCAM_TOOLS_ZELCAM_ACQUISITION_H

#include <cstddef>
#include <cstdint>

#include "ZelCam/ZelCam.h"

// Announces buffers and starts the acquisition at construction; undoes both at destruction. The
// stream must outlive it. Throws Failure (AcquisitionFailed) with what the user can do about it.
class Acquisition {
  public:
    // At least as many buffers are announced as the producer needs.
    Acquisition(ZelCam::Stream& stream, size_t buffers);
    ~Acquisition();
    Acquisition(const Acquisition&) = delete;
    Acquisition& operator=(const Acquisition&) = delete;

    // The next frame, or null: `*code` is then ZelCamErr_GenTL_Timeout when none came in time,
    // ZelCamErr_GenTL_Abort after Ctrl-C, or what the producer says.
    ZelCam::Buffer* WaitForFrame(uint64_t timeoutMs, ZelCamErr* code);

    // Gives a buffer back to be filled again.
    void Requeue(ZelCam::Buffer& buffer);

    ZelCam::Stream& Stream() { return stream_; }

  private:
    void Announce(size_t buffers);
    void Start();

    ZelCam::Stream& stream_;
};

#endif  // ZELCAM_TOOLS_ZELCAM_ACQUISITION_H
