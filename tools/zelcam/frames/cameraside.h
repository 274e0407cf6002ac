// The camera's side of an acquisition: locking, starting and stopping.
#pragma once

#include <string>

#include "ZelGenParam/Array.h"

namespace ZelTool {

// Uses the SFNC features that make a camera send frames. It leaves out a feature that the camera
// does not have, or that is not writable, for instance because the camera is opened read-only.
// Every operation returns the failure with the name of the feature; empty on success.
class CameraSide {
  public:
    // Whether AcquisitionStart was executed.
    enum class Started {
        No,           // Start was not called yet
        Missing,      // the camera does not have it
        NotWritable,  // it cannot be executed now
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
    bool locked_ = false;   // also after a failed attempt, which may have locked the camera
    bool sending_ = false;  // likewise
    Started started_ = Started::No;
};

}  // namespace ZelTool
