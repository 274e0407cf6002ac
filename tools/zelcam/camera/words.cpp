#include "tools/zelcam/camera/words.h"

#include <exception>

#include <Base/GCBase.h>

#include "ZelCam/DeviceInfo.h"
#include "tools/zelcam/console/wordtable.h"

namespace ZelTool {

namespace {

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
    return std::string(ZelCam::ErrorText(code)) + " (" + std::to_string(code) + ")";
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
