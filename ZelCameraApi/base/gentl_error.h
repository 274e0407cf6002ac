// Failures of GenTL calls inside the library: an error category with the standard's texts, and the
// exception that carries a code.
#pragma once

#include <string>
#include <system_error>

namespace ZelCameraApi::Internal {

// Texts of the GC_ERROR codes 0 to -1015; every other code is an "Unknown error".
class gentl_error_category : public std::error_category {
  public:
    const char* name() const noexcept override { return "gentl"; }
    std::string message(int code) const override;
};

// Each source file has its own instance. This does no harm, because nothing compares categories.
static const gentl_error_category _gentl_error_category;

// A GenTL call failed: code().value() is the GC_ERROR, what() its text.
class zelcam_exception : public std::system_error {
  public:
    explicit zelcam_exception(int code);
};

inline void ThrowOnError(int code) {
    if (code != 0) throw zelcam_exception(code);
}

}  // namespace ZelCameraApi::Internal
