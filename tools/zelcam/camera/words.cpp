#include "tools/zelcam/camera/words.h"

#include "ZelCam/DeviceInfo.h"
#include "gentl/GenTL.h"

namespace ZelTool {

namespace {

constexpr struct {
    ZelCamErr code;
    const char* words;
} kMeanings[] = {
    {ZelCamErr_Success, "success"},
    {ZelCamErr_Error, "unspecified failure"},
    {ZelCamErr_FileOpenFailed, "the file cannot be opened"},
    {ZelCamErr_InvalidFile, "the file has the wrong form"},
    {ZelCamErr_LoadConfigFailed, "not every feature took its value"},
    {ZelCamErr_NotFound, "there is no such object"},
    {ZelCamErr_InvalidArgument, "an argument is not valid"},
    {ZelCamErr_AcquisitionActive, "not allowed while frames are being grabbed"},
    {ZelCamErr_GenApiError, "access to the feature failed"},
    {ZelCamErr_NoNodeMap, "it has no features"},
    {ZelCamErr_AccessDenied, "not readable or not writable at the moment"},
    {ZelCamErr_WrongParamType, "the feature is of another kind"},
    {ZelCamErr_OutOfRange, "the value is out of range"},
    {ZelCamErr_ParamNotFound, "there is no such feature"},
    {ZelCamErr_InvalidValue, "the feature cannot have this value"},
    {ZelCamErr_RuntimeError, "the description of the features cannot be used"},
    {ZelCamErr_GenTL_Error, "the producer reports an unspecified error"},
    {ZelCamErr_GenTL_NotInitialized, "the producer was not initialised"},
    {ZelCamErr_GenTL_NotImplemented, "the producer cannot do this"},
    {ZelCamErr_GenTL_ResourceInUse, "another program uses it"},
    {ZelCamErr_GenTL_AccessDenied, "access denied"},
    {ZelCamErr_GenTL_InvalidHandle, "the producer does not know the handle"},
    {ZelCamErr_GenTL_InvalidId, "the producer does not know the identifier"},
    {ZelCamErr_GenTL_NoData, "no data"},
    {ZelCamErr_GenTL_InvalidParameter, "the producer rejects a value as invalid"},
    {ZelCamErr_GenTL_Io, "communication failed"},
    {ZelCamErr_GenTL_Timeout, "no answer in time"},
    {ZelCamErr_GenTL_Abort, "the operation was ended early"},
    {ZelCamErr_GenTL_InvalidBuffer, "too few buffers, or an invalid one"},
    {ZelCamErr_GenTL_NotAvailable, "not available, or the producer lacks a function"},
    {ZelCamErr_GenTL_InvalidAddress, "there is nothing at that address"},
    {ZelCamErr_GenTL_BufferTooSmall, "a buffer is too small"},
    {static_cast<ZelCamErr>(GenTL::GC_ERR_INVALID_INDEX), "there is no such index"},
    {static_cast<ZelCamErr>(GenTL::GC_ERR_INVALID_VALUE), "the value is rejected"},
    {static_cast<ZelCamErr>(GenTL::GC_ERR_RESOURCE_EXHAUSTED), "a resource is exhausted"},
    {static_cast<ZelCamErr>(GenTL::GC_ERR_OUT_OF_MEMORY), "out of memory"},
    {ZelCamErr_GenTL_Busy, "busy"},
    {static_cast<ZelCamErr>(GenTL::GC_ERR_AMBIGUOUS), "the name is ambiguous"},
};

const char* Meaning(ZelCamErr code) {
    for (const auto& meaning : kMeanings) {
        if (meaning.code == code) return meaning.words;
    }
    // The GenTL standard leaves this range to producers.
    return code <= -10000 && code > -40000 ? "an error specific to this producer"
                                           : "an unknown error";
}

}  // namespace

std::string ErrorWords(ZelCamErr code) {
    return std::string(Meaning(code)) + " (" + std::to_string(code) + ")";
}

std::string AccessWords(int32_t accessStatus) {
    switch (accessStatus) {
        case ZelCam::AccessStatus_ReadWrite:
            return "free";
        case ZelCam::AccessStatus_ReadOnly:
            return "read-only";
        case ZelCam::AccessStatus_NoAccess:
            return "no access";
        case ZelCam::AccessStatus_Busy:
            return "in use";
        case ZelCam::AccessStatus_OpenReadWrite:
            return "open";
        case ZelCam::AccessStatus_OpenReadOnly:
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

}  // namespace ZelTool
