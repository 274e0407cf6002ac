// What every operation of the layer throws.
#ifndef ZEL_ERROR_H
#define ZEL_ERROR_H

#include <stdexcept>
#include <string>

#include "ZelCam/Error.h"
#include "ZelCam/Text.h"

namespace zel {

// A failure of the library, a producer or a camera. what() is a sentence for people, such as
// "setting ExposureTime: the value is out of range (-40204): 1e+09 is not from 10 to 1e+06 us".
class Error : public std::runtime_error {
  public:
    // `operation` says what was tried. `feature` and `reason` may be empty.
    Error(ZelCamErr code, const std::string& operation, const std::string& feature = {},
          const std::string& reason = {})
        : std::runtime_error(sentence(code, operation, feature, reason)),
          code_(code),
          operation_(operation),
          feature_(feature) {}

    // A code of the library or of GenTL, see ZelCam/Error.h.
    ZelCamErr code() const { return code_; }

    // What the code means, without the number.
    const char* text() const { return ZelCam::ErrorText(code_); }

    // What was tried: "setting", "opening camera 4711".
    const std::string& operation() const { return operation_; }

    // The feature that it was tried with; empty without one.
    const std::string& feature() const { return feature_; }

    // Whether nothing came in time, and whether the camera no longer answers.
    bool isTimeout() const { return code_ == ZelCamErr_GenTL_Timeout; }
    bool isLost() const { return code_ == ZelCamErr_GenTL_Io; }

  private:
    static std::string sentence(ZelCamErr code, const std::string& operation,
                                const std::string& feature, const std::string& reason) {
        std::string text = operation;
        if (!feature.empty()) text += " " + feature;
        text += ": ";
        text += ZelCam::ErrorText(code);
        text += " (" + std::to_string(static_cast<int>(code)) + ")";
        if (!reason.empty()) text += ": " + reason;
        return text;
    }

    ZelCamErr code_;
    std::string operation_;
    std::string feature_;
};

namespace detail {

inline void check(ZelCamErr code, const std::string& operation, const std::string& feature = {},
                  const std::string& reason = {}) {
    if (code != ZelCamErr_Success) throw Error(code, operation, feature, reason);
}

inline std::string textOf(const char* text) {
    return text != nullptr ? text : "";
}

}  // namespace detail

}  // namespace zel

#endif  // ZEL_ERROR_H
