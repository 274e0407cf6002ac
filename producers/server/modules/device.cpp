#include "producers/server/modules/device.h"

#include "producers/server/base/error.h"
#include "producers/server/events/messageevent.h"
#include "producers/server/modules/devicefeatures.h"
#include "producers/server/modules/infos.h"
#include "producers/server/modules/infosource.h"
#include "producers/server/modules/library.h"
#include "producers/server/modules/remotedevice.h"
#include "producers/server/modules/stream.h"
#include "producers/server/registers/selectorrows.h"
#include "producers/server/registers/transporttype.h"

namespace ZelCti {

namespace {

constexpr LocalDescription kDeviceDescription{"Device", "Features of this side of a camera", '3',
                                              Description::Form::Zip};

}  // namespace

Device::Device(const std::shared_ptr<Camera>& camera, GenTL::DEVICE_ACCESS_FLAGS access,
               Handle client)
    : LocalModule(Kind::Device,
                  PortIdentity::OfCamera(camera->Info(), camera->Id(), "TLDevice", "DevicePort"),
                  &kDeviceDescription),
      client_(client),
      link_(std::make_shared<CameraLink>(camera, access, client, *this)) {}

void Device::AddFeatures(FeatureTable& features) {
    AddInformation(features);
    AddStreams(features);
    AddLink(features);
    link_->GetConnection().AddFeatures(features);
}

void Device::AddInformation(FeatureTable& features) {
    ShownCamera shown;
    shown.getInfo = [this](Answer answer) { GetInfo(answer); };
    features.Category("DeviceInformation", "What the camera is, as this side knows it.");
    AddDeviceIdentity(features, shown, 0x2000);
    features.StringReg("DeviceDisplayName", "Name of the camera for people.")
        .Expert()
        .At(0x2600, kTextSize)
        .Bind(InfoSource(GenTL::DEVICE_INFO_DISPLAYNAME, shown.getInfo));
    features.Enumeration("DeviceType", "Transport type of the camera.")
        .At(0x2700)
        .Entries(TransportTypeEntries())
        .Get([this] { return TransportTypeNumber(Port().tlType); });
    AddDeviceAccessStatus(features, shown, "How the camera is open.", 0x2704);
    features
        .IntReg("DeviceTimestampFrequency",
                "Ticks of the clock of the camera in a second; 0 is unknown.")
        .Expert()
        .At(0x2708, 8)
        .Unit("Hz")
        .Get([this] { return link_->GetCamera().TimestampFrequency(); });
    features
        .Enumeration("DeviceEndianessMechanism",
                     "How the camera reports the byte order of its registers.")
        .Guru()
        .Entries({{"Legacy", 0, "By the transport type."},
                  {"Standard", 1, "By the description of the camera."}})
        .Constant(1);
}

void Device::AddStreams(FeatureTable& features) {
    IntegerValue index;
    index.get = [this] { return selectedStream_; };
    index.check = [this](uint64_t value) {
        if (value < NumStreams()) return;
        throw Error(GenTL::GC_ERR_INVALID_VALUE, "not that many streams");
    };
    index.set = [this](uint64_t value) { selectedStream_ = static_cast<uint32_t>(value); };
    features.Category("StreamEnumeration", "The data streams of the camera.");
    AddSelector(features, "Stream", "Index of the stream that the features below show.", 0x3000,
                std::move(index), [this] { return NumStreams(); })
        .Expert();
    features.StringReg("StreamID", "Identifier of the stream.")
        .Expert()
        .AvailableIf("StreamCount")
        .SelectedBy("StreamSelector")
        .At(0x3100, kTextSize)
        .Get([this] { return StreamId(selectedStream_); });
}

void Device::AddLink(FeatureTable& features) {
    const auto count = [this](uint64_t (Module::*counter)() const) {
        const std::shared_ptr<RemoteDevice> remote = Remote();
        return remote == nullptr ? 0 : (*remote.*counter)();
    };
    features
        .Category("LinkStatistics", "What went over the link to the camera since it was opened.")
        .Expert();
    features.IntReg("LinkReadCount", "Read accesses to registers of the camera.")
        .Expert()
        .At(0x5000, 8)
        .Get([=] { return count(&Module::NumReads); });
    features.IntReg("LinkWriteCount", "Write accesses to registers of the camera.")
        .Expert()
        .At(0x5008, 8)
        .Get([=] { return count(&Module::NumWrites); });
}

void Device::GetInfo(Answer answer) const {
    CheckConnected();
    AnswerInfo(link_->GetCamera(), client_, answer);
}

uint32_t Device::NumStreams() const {
    CheckConnected();
    return link_->GetConnection().NumStreams();
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
    const auto stream = std::make_shared<Stream>(device->link_, index, id, std::move(claim));
    return Library::Instance().Handles().Open(stream, device);
}

Handle Device::OpenRemote(const std::shared_ptr<Device>& device) {
    device->CheckConnected();
    const std::lock_guard lock(device->remoteMutex_);
    if (device->remote_ == nullptr) {
        const auto remote = std::make_shared<RemoteDevice>(device->link_);
        Library::Instance().Handles().Open(remote, device);
        device->remote_ = remote;
    }
    return device->remote_->GetHandle();
}

std::shared_ptr<RemoteDevice> Device::Remote() const {
    const std::lock_guard lock(remoteMutex_);
    return remote_;
}

std::shared_ptr<Event> Device::MakeEvent(GenTL::EVENT_TYPE type) {
    if (type == GenTL::EVENT_REMOTE_DEVICE) return std::make_shared<MessageEvent>(type);
    return Module::MakeEvent(type);
}

}  // namespace ZelCti
