#include "ZelCameraApi/ZelGenParam/genapierrors.h"

#include <new>

#include <GenApi/GenApi.h>

#include "ZelCameraApi/base/gentl_error.h"

namespace ZelCameraApi::Internal {

ZelCamErr CodeOfNamedAccess(ValueAccess access) {
    try {
        throw;
    } catch (const GenICam::AccessException&) {
        return ZelCamErr_AccessDenied;
    } catch (const GenICam::OutOfRangeException&) {
        return access == ValueAccess::Write ? ZelCamErr_OutOfRange : ZelCamErr_GenApiError;
    } catch (const GenICam::InvalidArgumentException&) {
        return ZelCamErr_InvalidValue;
    } catch (const GenICam::GenericException&) {
        return ZelCamErr_GenApiError;
    } catch (const std::bad_alloc&) {
        return ZelCamErr_Error;
    }
}

ZelCamErr CodeOfParamAccess(ValueAccess access) noexcept {
    try {
        throw;
    } catch (const GenICam::AccessException&) {
        return ZelCamErr_AccessDenied;
    } catch (const GenICam::OutOfRangeException&) {
        return access == ValueAccess::Write ? ZelCamErr_OutOfRange : ZelCamErr_Error;
    } catch (const GenICam::InvalidArgumentException&) {
        return ZelCamErr_InvalidArgument;
    } catch (...) {
        return ZelCamErr_Error;
    }
}

ZelCamErr CodeOfCreation() noexcept {
    try {
        throw;
    } catch (const zelcam_exception& e) {
        return static_cast<ZelCamErr>(e.code().value());
    } catch (const GenICam::RuntimeException&) {
        return ZelCamErr_RuntimeError;
    } catch (const GenICam::GenericException&) {
        return ZelCamErr_GenApiError;
    } catch (...) {
        return ZelCamErr_Error;
    }
}

}  // namespace ZelCameraApi::Internal
