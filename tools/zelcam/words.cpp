#include "tools/zelcam/words.h"

namespace {

const char* Meaning(ZelCamErr code) {
    switch (code) {
        case ZelCamErr_Success:
            return "success";
        case ZelCamErr_Error:
            return "unspecified failure";
        case ZelCamErr_NoNodeMap:
            return "it has no parameters";
        case ZelCamErr_AcquisitionActive:
            return "refused while frames are being grabbed";
        case ZelCamErr_GenTL_Error:
            return "the producer reports an unspecified error";
        case ZelCamErr_GenTL_NotInitialized:
            return "the producer was not initialised";
        case ZelCamErr_GenTL_NotImplemented:
            return "the producer cannot do this";
        case ZelCamErr_GenTL_ResourceInUse:
            return "somebody else uses it";
        case ZelCamErr_GenTL_AccessDenied:
            return "access denied";
        case ZelCamErr_GenTL_InvalidHandle:
            return "the producer does not know the handle";
        case ZelCamErr_GenTL_InvalidId:
            return "the producer does not know the identifier";
        case ZelCamErr_GenTL_NoData:
            return "no data";
        case ZelCamErr_GenTL_InvalidParameter:
            return "the producer refuses a value as invalid";
        case ZelCamErr_GenTL_Io:
            return "communication with the camera failed";
        case ZelCamErr_GenTL_Timeout:
            return "no answer in time";
        case ZelCamErr_GenTL_Abort:
            return "the operation was ended early";
        case ZelCamErr_GenTL_InvalidBuffer:
            return "too few buffers, or an invalid one";
        case ZelCamErr_GenTL_NotAvailable:
            return "not available, or the producer lacks a function";
        case ZelCamErr_GenTL_InvalidAddress:
            return "there is nothing at that address";
        case ZelCamErr_GenTL_BufferTooSmall:
            return "a buffer is too small";
        default:
            return code <= -10000 && code > -40000 ? "an error of this producer's own"
                                                   : "an error without a name";
    }
}

}  // namespace

std::string ErrorWords(ZelCamErr code) {
    return std::string(Meaning(code)) + " (" + std::to_string(code) + ")";
}

std::string AccessWords(int32_t accessStatus) {
    switch (accessStatus) {
        case 1:
            return "free";
        case 2:
            return "read-only";
        case 3:
            return "no access";
        case 4:
            return "in use";
        case 5:
            return "open";
        case 6:
            return "open read-only";
        default:
            return "unknown";
    }
}

std::string InterfaceTypeWords(ZelCam::InterfaceType type) {
    switch (type) {
        case ZelCam::InterfaceType::U3V:
            return "USB3 Vision";
        case ZelCam::InterfaceType::GEV:
            return "GigE Vision";
        case ZelCam::InterfaceType::CL:
            return "Camera Link";
        case ZelCam::InterfaceType::CXP:
            return "CoaXPress";
        case ZelCam::InterfaceType::HDSDI:
            return "HD-SDI";
        default:
            return "other";
    }
}

std::string InterfaceTypeName(ZelCam::InterfaceType type) {
    switch (type) {
        case ZelCam::InterfaceType::U3V:
            return "U3V";
        case ZelCam::InterfaceType::GEV:
            return "GEV";
        case ZelCam::InterfaceType::CL:
            return "CL";
        case ZelCam::InterfaceType::CXP:
            return "CXP";
        case ZelCam::InterfaceType::HDSDI:
            return "HDSDI";
        default:
            return "Unknown";
    }
}
