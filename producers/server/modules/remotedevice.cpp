#include "producers/server/modules/remotedevice.h"

namespace ZelSim {

namespace {

PortIdentity IdentityOf(const Camera& camera) {
    const CameraConfig& config = camera.Config();
    return {config.id,       config.vendor, config.model, config.version,
            camera.TlType(), "Device",      "Device",     config.bigEndian};
}

}  // namespace

RemoteDevice::RemoteDevice(std::shared_ptr<Camera> camera, bool mayWrite)
    : Module(Kind::RemoteDevice, IdentityOf(*camera), camera->Registers()),
      camera_(std::move(camera)),
      mayWrite_(mayWrite) {}

std::vector<PortUrl> RemoteDevice::Urls() const {
    const CameraConfig& config = camera_->Config();
    std::vector<PortUrl> urls = Module::Urls();
    if (!config.descriptionFile.empty()) {
        urls.insert(urls.begin(), PortUrl::OfFile(config.descriptionFile));
    }
    if (!config.descriptionUrl.empty()) {
        urls.insert(urls.begin(), PortUrl(config.descriptionUrl));
    }
    return urls;
}

}  // namespace ZelSim
