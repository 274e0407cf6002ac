#include "tools/zelcam/camera/words.h"

#include <exception>

#include <Base/GCBase.h>

#include "ZelCam/DeviceInfo.h"
#include "gentl/GenTL.h"
#include "tools/zelcam/console/wordtable.h"

namespace ZelTool {

namespace {

constexpr Word<ZelCamErr> kMeanings[] = {
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

constexpr Word<int32_t> kAccess[] = {
    {ZelCam::AccessStatus_ReadWrite, "free"},
    {ZelCam::AccessStatus_ReadOnly, "read-only"},
    {ZelCam::AccessStatus_NoAccess, "no access"},
    {ZelCam::AccessStatus_Busy, "in use"},
    {ZelCam::AccessStatus_OpenReadWrite, "open"},
    {ZelCam::AccessStatus_OpenReadOnly, "open read-only"},
};

constexpr Word<ZelCam::InterfaceType> kTypes[] = {
    {ZelCam::InterfaceType::U3V, "USB3 Vision"}, {ZelCam::InterfaceType::GEV, "GigE Vision"},
    {ZelCam::InterfaceType::CL, "Camera Link"},  {ZelCam::InterfaceType::CXP, "CoaXPress"},
    {ZelCam::InterfaceType::HDSDI, "HD-SDI"},
};

constexpr Word<ZelCam::InterfaceType> kShortTypes[] = {
    {ZelCam::InterfaceType::U3V, "U3V"},     {ZelCam::InterfaceType::GEV, "GEV"},
    {ZelCam::InterfaceType::CL, "CL"},       {ZelCam::InterfaceType::CXP, "CXP"},
    {ZelCam::InterfaceType::HDSDI, "HDSDI"},
};

}  // namespace

std::string ErrorWords(ZelCamErr code) {
    // The GenTL standard leaves this range to producers.
    const char* const unknown =
        code <= -10000 && code > -40000 ? "an error specific to this producer" : "an unknown error";
    return std::string(WordsFor(code, kMeanings, unknown)) + " (" + std::to_string(code) + ")";
}

void RequireSuccess(ZelCamErr code, const std::string& what, ExitCode exitCode) {
    if (code != ZelCamErr_Success) throw Failure(exitCode, what + ": " + ErrorWords(code));
}

std::optional<Failure> FailureOf(const std::function<void()>& action) {
    try {
        action();
        return std::nullopt;
    } catch (const Failure& failure) {
        return failure;
    } catch (const GenICam::GenericException& error) {
        return Failure(ExitCode::FeatureFailed, error.GetDescription());
    } catch (const std::exception& error) {
        return Failure(ExitCode::AcquisitionFailed, error.what());
    }
}

std::string AccessWords(int32_t accessStatus) {
    return WordsFor(accessStatus, kAccess, "unknown");
}

std::string InterfaceTypeWords(ZelCam::InterfaceType type) {
    return WordsFor(type, kTypes, "other");
}

std::string InterfaceTypeName(ZelCam::InterfaceType type) {
    return WordsFor(type, kShortTypes, "Unknown");
}

}  // namespace ZelTool
