// The public boundary: it turns exceptions of the library's inside into codes, zero values or null.
#pragma once

#include <exception>

#include <Base/GCException.h>

#include "ZelCam/Error.h"
#include "ZelCameraApi/base/gentl_error.h"

namespace ZelCameraApi::Internal {

// Out-arguments for errors may be null.
inline void StoreError(ZelCamErr* err, int code) {
    if (err != nullptr) *err = static_cast<ZelCamErr>(code);
}

// For operations whose result is a code. `operation` returns the producer's code; an exception
// becomes ZelCamErr_Error.
template <typename Operation>
ZelCamErr CodeOf(Operation&& operation) {
    try {
        return static_cast<ZelCamErr>(operation());
    } catch (const std::exception&) {
        return ZelCamErr_Error;
    }
}

// For operations that cannot report: a failure gives the result type's zero.
template <typename Operation>
auto ZeroOnError(Operation&& operation) -> decltype(operation()) {
    try {
        return operation();
    } catch (const std::exception&) {
        // the zero is all that the operation can report
    } catch (const GenICam::GenericException&) {
        // likewise
    }
    return {};
}

// For operations that create an object and report through `err`: null on failure.
template <typename Operation>
auto NullWithCode(ZelCamErr* err, Operation&& operation) -> decltype(operation()) {
    StoreError(err, ZelCamErr_Success);
    try {
        return operation();
    } catch (const zelcam_exception& e) {
        StoreError(err, e.code().value());
    } catch (const std::exception&) {
        StoreError(err, ZelCamErr_Error);
    } catch (const GenICam::GenericException&) {
        StoreError(err, ZelCamErr_Error);
    }
    return nullptr;
}

}  // namespace ZelCameraApi::Internal
