// Failures inside of the library, and how they reach the caller.
#pragma once

#include <exception>
#include <stdexcept>
#include <string>

#include "ZelCam/Error.h"

namespace ZelImage::Internal {

// Ends an operation; the text is the caller's reason.
class Error : public std::runtime_error {
  public:
    explicit Error(const std::string& reason, ZelCamErr code = ZelCamErr_InvalidArgument)
        : std::runtime_error(reason), code_(code) {}
    ZelCamErr Code() const { return code_; }

  private:
    ZelCamErr code_;
};

// Stores what LastReason returns; a long text is cut.
void StoreReason(const char* reason) noexcept;

// Runs the body of a public function. Every exception becomes a code and a reason.
template <typename Body>
ZelCamErr Guarded(const Body& body) noexcept {
    try {
        body();
        return ZelCamErr_Success;
    } catch (const Error& error) {
        StoreReason(error.what());
        return error.Code();
    } catch (const std::bad_alloc&) {
        StoreReason("there is not enough memory");
    } catch (const std::exception& error) {
        StoreReason(error.what());
    }
    return ZelCamErr_Error;
}

}  // namespace ZelImage::Internal
