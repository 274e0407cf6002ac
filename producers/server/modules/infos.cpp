#include "producers/server/modules/infos.h"

#include "producers/server/base/error.h"
#include "producers/server/modules/library.h"

namespace ZelCti {

namespace {

std::string DisplayName(const Camera& camera) {
    std::string name = camera.DisplayName();
    if (!name.empty()) return name;
    std::string userName = camera.UserName();
    if (!userName.empty()) return userName;
    const CameraInfo& info = camera.Info();
    return info.vendor + " " + info.model + " (" + info.serialNumber + ")";
}

// Empty for those who have the camera open, or may.
std::string AccessReason(const Camera& camera, Handle client) {
    switch (Library::Instance().Access().StatusFor(camera, client)) {
        case GenTL::DEVICE_ACCESS_STATUS_READONLY:
        case GenTL::DEVICE_ACCESS_STATUS_NOACCESS:
        case GenTL::DEVICE_ACCESS_STATUS_BUSY:
            return camera.AccessReason();
        default:
            return {};
    }
}

}  // namespace

void AnswerInfo(const HostInterface& interface, Answer answer) {
    const InterfaceInfo& info = interface.Info();
    switch (answer.Command()) {
        case GenTL::INTERFACE_INFO_ID:
            return answer.String(info.id);
        case GenTL::INTERFACE_INFO_DISPLAYNAME:
            return answer.String(info.displayName);
        case GenTL::INTERFACE_INFO_TLTYPE:
            return answer.String(info.tlType);
        case GenTL::INTERFACE_INFO_CUSTOM_ID:  // of this producer: the version of the interface
            return answer.String(info.version);
        default:
            throw Error(GenTL::GC_ERR_NOT_IMPLEMENTED, "unknown interface info command");
    }
}

void AnswerInfo(const Camera& camera, Handle client, Answer answer) {
    const CameraInfo& info = camera.Info();
    switch (answer.Command()) {
        case GenTL::DEVICE_INFO_ID:
            return answer.String(info.id);
        case GenTL::DEVICE_INFO_VENDOR:
            return answer.String(info.vendor);
        case GenTL::DEVICE_INFO_MODEL:
            return answer.String(info.model);
        case GenTL::DEVICE_INFO_TLTYPE:
            return answer.String(info.tlType);
        case GenTL::DEVICE_INFO_DISPLAYNAME:
            return answer.String(DisplayName(camera));
        case GenTL::DEVICE_INFO_ACCESS_STATUS:
            return answer.Int32(Library::Instance().Access().StatusFor(camera, client));
        case GenTL::DEVICE_INFO_USER_DEFINED_NAME:
            return answer.String(camera.UserName());
        case GenTL::DEVICE_INFO_SERIAL_NUMBER:
            return answer.String(info.serialNumber);
        case GenTL::DEVICE_INFO_VERSION:
            return answer.String(info.version);
        case GenTL::DEVICE_INFO_TIMESTAMP_FREQUENCY:
            if (const uint64_t ticks = camera.TimestampFrequency()) return answer.Uint64(ticks);
            throw Error(GenTL::GC_ERR_NOT_AVAILABLE, "the frequency of the clock is not known");
        case kInfoAccessReason:
            return answer.String(AccessReason(camera, client));
        case kInfoUsbHost:
            if (info.usbHost) return answer.String(*info.usbHost);
            break;
        default:
            break;
    }
    throw Error(GenTL::GC_ERR_NOT_IMPLEMENTED, "unknown device info command");
}

}  // namespace ZelCti
