#include "tools/zelcam/camera/reachability.h"

#include "ZelGenParam/Array.h"
#include "tools/zelcam/camera/words.h"
#include "tools/zelcam/console/printable.h"

namespace ZelTool {

namespace {

constexpr const char* kProposal = "GevDeviceProposeIP";

// The features of the camera's interface, with the camera selected; null when they do not show it.
ZelGenParam::Array* FeaturesShowing(const Camera& camera) {
    ZelGenParam::Array* const features = camera.info->GetInterface()->GetParameters(nullptr);
    if (features == nullptr) return nullptr;
    for (int64_t index = 0; features->SetIntegerValue("DeviceSelector", index) == ZelCamErr_Success;
         ++index) {
        if (TextOrEmpty(features->GetStringValue("DeviceID", nullptr)) == camera.id) {
            return features;
        }
    }
    return nullptr;
}

bool CanPropose(const Camera& camera) {
    ZelGenParam::Array* const features = camera.info->GetInterface()->GetParameters(nullptr);
    return features != nullptr && features->GetCommand(kProposal, nullptr) != nullptr;
}

std::string AddressIn(ZelGenParam::Array& features, const char* name) {
    ZelCamErr code = ZelCamErr_Success;
    const int64_t value = features.GetIntegerValue(name, &code);
    RequireSuccess(code, std::string("the interface proposes no address: ") + name);
    return DottedAddress(static_cast<uint32_t>(value));
}

}  // namespace

std::string AddressOf(const Camera& camera) {
    if (camera.interfaceType != ZelCam::InterfaceType::GEV) return "";
    return TextOrEmpty(camera.info->GetIPAddress(nullptr));
}

std::string AccessReasonOf(const Camera& camera) {
    switch (camera.info->GetAccessStatus()) {
        case ZelCam::AccessStatus_ReadOnly:
        case ZelCam::AccessStatus_NoAccess:
        case ZelCam::AccessStatus_Busy:
            break;
        default:
            return "";
    }
    ZelGenParam::Array* const features = FeaturesShowing(camera);
    if (features == nullptr) return "";
    return TextOrEmpty(features->GetStringValue("DeviceAccessReason", nullptr));
}

bool NeedsAnAddress(const Camera& camera) {
    return camera.accessStatus == ZelCam::AccessStatus_NoAccess &&
           camera.interfaceType == ZelCam::InterfaceType::GEV;
}

std::string ForceCommand(const Camera& camera) {
    return "zelcam ip force " + Printable(camera.id) +
           (CanPropose(camera) ? " auto" : " ADDRESS MASK");
}

Network ProposedNetwork(const Camera& camera) {
    ZelGenParam::Array* const features = FeaturesShowing(camera);
    if (features == nullptr) {
        throw Failure(ExitCode::FeatureFailed, "the interface does not show the camera");
    }
    RequireSuccess(features->ExecuteCommand(kProposal),
                   "the interface proposes no address: name one");
    return {AddressIn(*features, "GevDeviceForceIPAddress"),
            AddressIn(*features, "GevDeviceForceSubnetMask"),
            AddressIn(*features, "GevDeviceForceGateway")};
}

}  // namespace ZelTool
