#include "producers/server/modules/remotedevice.h"

namespace ZelCti {

namespace {

PortIdentity RemoteIdentity(const CameraInfo& camera) {
    PortIdentity identity = PortIdentity::OfCamera(camera, camera.id, "Device", "Device");
    identity.bigEndian = camera.bigEndian;
    return identity;
}

}  // namespace

RemoteDevice::RemoteDevice(std::shared_ptr<CameraLink> link)
    : Module(Kind::RemoteDevice, RemoteIdentity(link->GetCamera().Info())),
      link_(std::move(link)) {}

}  // namespace ZelCti
