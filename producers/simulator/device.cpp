#include "producers/simulator/device.h"

#include "producers/simulator/error.h"
#include "producers/simulator/library.h"
#include "producers/simulator/localregisters.h"
#include "producers/simulator/messageevent.h"
#include "producers/simulator/placeholders.h"
#include "producers/simulator/remotedevice.h"
#include "producers/simulator/stream.h"
#include "producers/simulator/transporttype.h"

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
      eventSubscription_(camera->Events().Subscribe(*this)) {
    AddInformation();
    AddStreams();
    if (camera_->TlType() == TLTypeGEVName) AddNetwork();
    AddLink();
}

// The registers stand in descriptions/device.xml as well.
void Device::AddInformation() {
    AddInfos(Registers(),
             {{0x2000, kTextSize, GenTL::DEVICE_INFO_ID},
              {0x2100, kTextSize, GenTL::DEVICE_INFO_VENDOR},
              {0x2200, kTextSize, GenTL::DEVICE_INFO_MODEL},
              {0x2300, kTextSize, GenTL::DEVICE_INFO_SERIAL_NUMBER},
              {0x2400, kTextSize, GenTL::DEVICE_INFO_USER_DEFINED_NAME},
              {0x2500, kTextSize, GenTL::DEVICE_INFO_VERSION},
              {0x2600, kTextSize, GenTL::DEVICE_INFO_DISPLAYNAME},
              {0x2704, 4, GenTL::DEVICE_INFO_ACCESS_STATUS},
              {0x2708, 8, GenTL::DEVICE_INFO_TIMESTAMP_FREQUENCY}},
             [this](Answer answer) { GetInfo(answer); });
    AddNumber(Registers(), 0x2700, 4, [this] { return TransportTypeNumber(camera_->TlType()); });
}

void Device::AddStreams() {
    RegisterSpace& registers = Registers();
    AddNumber(registers, 0x3004, 4, [this] { return NumStreams(); });
    registers.Add(RegisterSpace::Integer{
        0x3000, 4, Access::ReadWrite, [this] { return selectedStream_; },
        [this](uint64_t index) {
            if (index < NumStreams()) return;
            throw Error(GenTL::GC_ERR_INVALID_VALUE, "not that many streams");
        },
        [this](uint64_t index) { selectedStream_ = static_cast<uint32_t>(index); }});
    registers.Add(RegisterSpace::String{0x3100, kTextSize, Access::ReadOnly,
                                        [this] { return StreamId(selectedStream_); }, nullptr,
                                        nullptr});
}

// These stand in descriptions/devicegev.xml.
void Device::AddNetwork() {
    AddNumber(Registers(), 0x4100, 8, [this] { return MacAddressOf(Id()); });
    AddNumber(Registers(), 0x4108, 4, [this] { return camera_->Ip().address; });
    AddNumber(Registers(), 0x410C, 4, [this] { return camera_->Ip().mask; });
    AddNumber(Registers(), 0x4110, 4, [this] { return camera_->Ip().gateway; });
}

void Device::AddLink() {
    const auto count = [this](uint64_t (Module::*counter)() const) {
        const std::shared_ptr<RemoteDevice> remote = Remote();
        return remote == nullptr ? 0 : (*remote.*counter)();
    };
    AddNumber(Registers(), 0x5000, 8, [=] { return count(&Module::NumReads); });
    AddNumber(Registers(), 0x5008, 8, [=] { return count(&Module::NumWrites); });
}

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
        Library::Instance().Handles().Open(remote, device);
        device->remote_ = remote;
    }
    return device->remote_->GetHandle();
}

std::shared_ptr<RemoteDevice> Device::Remote() const {
    const std::lock_guard lock(remoteMutex_);
    return remote_;
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
    Placeholders values;
    values.Xml("GEV_INFORMATION", "");
    values.Xml("GEV_FEATURES", "");
    if (camera_->TlType() == TLTypeGEVName) {
        values.List("GEV_INFORMATION", "pFeature",
                    {"GevDeviceMACAddress", "GevDeviceIPAddress", "GevDeviceSubnetMask",
                     "GevDeviceGateway"});
        values.Xml("GEV_FEATURES", "@devicegev.xml@");
    }
    return std::make_unique<Description>("ZelSim_Device", values.FillIn("device.xml"),
                                         Description::Form::Zip);
}

}  // namespace ZelSim
