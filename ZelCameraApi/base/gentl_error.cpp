#include "ZelCameraApi/base/gentl_error.h"

#include "gentl/GenTL.h"

namespace ZelCameraApi::Internal {

std::string gentl_error_category::message(int code) const {
    switch (code) {
        case GenTL::GC_ERR_SUCCESS:
            return "Success";
        case GenTL::GC_ERR_ERROR:
            return "Unspecified runtime error.";
        case GenTL::GC_ERR_NOT_INITIALIZED:
            return "Module or resource not initialized.";
        case GenTL::GC_ERR_NOT_IMPLEMENTED:
            return "Requested operation not implemented.";
        case GenTL::GC_ERR_RESOURCE_IN_USE:
            return "Requested resource is already in use.";
        case GenTL::GC_ERR_ACCESS_DENIED:
            return "Requested operation is not allowed.";
        case GenTL::GC_ERR_INVALID_HANDLE:
            return "Given handle does not support the operation.";
        case GenTL::GC_ERR_INVALID_ID:
            return "ID could not be connected to a resource";
        case GenTL::GC_ERR_NO_DATA:
            return "The function has no data to work on.";
        case GenTL::GC_ERR_INVALID_PARAMETER:
            return "One of the parameter given was not valid or out of range.";
        case GenTL::GC_ERR_IO:
            return "Communication error has occurred.";
        case GenTL::GC_ERR_TIMEOUT:
            return "An operation's timeout time expired before it could be completed.";
        case GenTL::GC_ERR_ABORT:
            return "An operation has been aborted before it could be completed.";
        case GenTL::GC_ERR_INVALID_BUFFER:
            return "The GenTL Consumer has not announced enough buffers to start the acquisition "
                   "in "
                   "the currently active acquisition mode.";
        case GenTL::GC_ERR_NOT_AVAILABLE:
            return "Resource or information is not available at a given time in a current state.";
        case GenTL::GC_ERR_INVALID_ADDRESS:
            return "A given address is out of range or invalid for internal reasons";
        default:
            return "Unknown error";
    }
}

zelcam_exception::zelcam_exception(int code)
    : std::system_error(std::error_code(code, _gentl_error_category)) {}

}  // namespace ZelCameraApi::Internal
