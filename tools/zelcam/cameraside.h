// The camera's side of an acquisition.
#ifndef ZELCAM_TOOLS_ZELCAM_CAMERASIDE_H
#define ZELCAM_TOOLS_ZELCAM_CAMERASIDE_H

#include <string>

#include "ZelGenParam/Array.h"

// The SFNC features with which a program makes a camera send frames. A feature that the camera does
// not have, or that cannot be written now (the camera is opened read-only), is left out. Every
// operation returns what went wrong, with the name of the feature; empty when nothing did.
class CameraSide {
  public:
    // Whether the camera was told to send.
    enum class Started {
        No,           // not asked yet
        Missing,      // it has no AcquisitionStart
        NotWritable,  // its AcquisitionStart cannot be executed now
        Yes,
    };

    // `features` must outlive this object; null for a camera without a description.
    explicit CameraSide(ZelGenParam::Array* features) : features_(features) {}

    std::string Lock();    // TLParamsLocked = 1
    std::string Start();   // AcquisitionStart
    std::string Stop();    // AcquisitionStop; AcquisitionAbort when it fails or is not done in time
    std::string Unlock();  // TLParamsLocked = 0

    Started HasStarted() const { return started_; }
    ZelGenParam::Array* Features() const { return features_; }

  private:
    ZelGenParam::Array* features_;
    bool locked_ = false;   // or the attempt failed, which may have had its effect all the same
    bool sending_ = false;  // likewise
    Started started_ = Started::No;
};

#endif  // ZELCAM_TOOLS_ZELCAM_CAMERASIDE_H
