#include "producers/simulator/device.h"

#include "producers/simulator/error.h"
#include "producers/simulator/library.h"
#include "producers/simulator/messageevent.h"
#include "producers/simulator/placeholders.h"
#include "producers/simulator/remotedevice.h"
#include "producers/simulator/stream.h"

namespace ZelSim {

namespace {

PortIdentity IdentityOf(const Camera& camera) {
    const CameraConfig& config = camera.Config();
    return {config.id,       config.vendor, config.model, config.version,
            camera.TlType(), "TLDevice",    "DevicePort"};
}

}  // namespace

Device::Device(const std::shared_ptr<Camera>& camera, GenTL::DEVICE_ACCESS_FLAGS access,
               Handle client)
    : Module(Kind::Device, IdentityOf(*camera), OwnRegisters()),
      camera_(camera),
      access_(access),
      client_(client),
      claim_(camera->Open(access, client)),
      eventSubscription_(camera->Events().Subscribe(*this)) {}

void Device::GetInfo(Answer answer) const {
    CheckConnected();
    camera_->GetInfo(answer, client_);
}

uint32_t Device::NumStreams() const {
    CheckConnected();
    return camera_->Config().streams;
}

std::string Device::StreamId(uint32_t index) const {
    if (index < NumStreams()) return Id() + "/Stream" + std::to_string(index);
    throw Error(GenTL::GC_ERR_INVALID_INDEX, "not that many streams");
}

Handle Device::OpenStream(const std::shared_ptr<Device>& device, const char* id) {
    if (id == nullptr) throw Error(GenTL::GC_ERR_INVALID_PARAMETER, "null identifier");
    const uint32_t count = device->NumStreams();
    uint32_t index = 0;
    while (index < count && device->StreamId(index) != id)
        ++index;
    if (index == count) throw Error(GenTL::GC_ERR_INVALID_ID, std::string("no stream ") + id);
    Claim claim = device->openedStreams_.Take(id);
    const auto stream = std::make_shared<Stream>(device->camera_, id, std::move(claim));
    return Library::Instance().Handles().Open(stream, device);
}

Handle Device::OpenRemote(const std::shared_ptr<Device>& device) {
    device->CheckConnected();
    const std::lock_guard lock(device->remoteMutex_);
    if (device->remote_ == nullptr) {
        const auto remote = std::make_shared<RemoteDevice>(device->camera_, device->MayWrite());
        device->remote_ = Library::Instance().Handles().Open(remote, device);
    }
    return device->remote_;
}

void Device::OnClose() {
    eventSubscription_.reset();
    claim_.reset();
}

std::shared_ptr<Event> Device::MakeEvent(GenTL::EVENT_TYPE type) {
    if (type == GenTL::EVENT_REMOTE_DEVICE) return std::make_shared<MessageEvent>(type);
    return Module::MakeEvent(type);
}

std::unique_ptr<const Description> Device::MakeDescription() const {
    return std::make_unique<Description>("ZelSim_Device", Placeholders().FillIn("device.xml"),
                                         Description::Form::Zip);
}

}  // namespace ZelSim
