#include "ZelCameraApi/deviceimpl.h"

#include <algorithm>
#include <fstream>
#include <sstream>

#include <tinyxml2.h>

#include "ZelCameraApi/base/errorboundary.h"
#include "ZelCameraApi/base/gentlinfo.h"
#include "ZelCameraApi/configurationfile.h"
#include "ZelCameraApi/deviceinfoimpl.h"
#include "ZelCameraApi/ifaceimpl.h"
#include "ZelCameraApi/listimpl.h"
#include "ZelCameraApi/streamimpl.h"

namespace ZelCameraApi::Internal {

namespace {

// The DEVICE_ACCESS_FLAGS of a DeviceAccess; unknown values request no access.
int AccessFlag(ZelCam::DeviceAccess access) {
    const auto value = static_cast<uint32_t>(access);
    return value < 3 ? static_cast<int>(value) + GenTL::DEVICE_ACCESS_READONLY
                     : GenTL::DEVICE_ACCESS_NONE;
}

// The first camera of the first interface that has one; null if there is none.
ZelCam::DeviceInfo* FindFirstCamera(ZelCam::System& system) {
    const ListHolder<ZelCam::Interface> interfaces(
        system.GetInterfaceList(ZelCam::InterfaceType::Unknown));
    if (interfaces == nullptr) return nullptr;
    for (auto* iface = interfaces->GetFirst(); iface != nullptr; iface = interfaces->GetNext()) {
        if (ZelCam::DeviceInfo* info = iface->GetFirstDeviceInfo()) return info;
    }
    return nullptr;
}

ZelCam::Device* OpenFirstCamera(ZelCam::DeviceAccess access) {
    SystemHolder system(ZelCam_GetSystem());
    if (system == nullptr) throw zelcam_exception(GenTL::GC_ERR_ERROR);
    ZelCam::DeviceInfo* const info = FindFirstCamera(*system);
    if (info == nullptr) throw zelcam_exception(GenTL::GC_ERR_ERROR);
    return new NonSystemDevice(std::move(system), &dynamic_cast<DeviceInfoImpl&>(*info), access);
}

// Turns failures of saving and loading a configuration into codes.
template <typename Operation>
ZelCamErr ConfigurationCode(Operation&& operation) {
    try {
        return operation();
    } catch (const GenICam::GenericException&) {
        return ZelCamErr_GenApiError;
    } catch (...) {
        return ZelCamErr_Error;
    }
}

}  // namespace

DeviceImpl::DeviceImpl(DeviceInfoImpl* info, const std::string& id, ZelCam::DeviceAccess access)
    : EventSource(dynamic_cast<InterfaceImpl&>(*info->GetInterface()).Module().lib),
      id_(id),
      info_(info),
      remotePort_{nullptr, module_.lib} {
    Init(dynamic_cast<InterfaceImpl&>(*info->GetInterface()).Module(), access);
}

void DeviceImpl::Init(const GenTLModule<void*>& iface, ZelCam::DeviceAccess access) {
    const GenTLLib& lib = *module_.lib;
    ThrowOnError(lib.IFOpenDevice(iface.handle, id_.c_str(), AccessFlag(access), &module_.handle));
    const int result = lib.DevGetPort(module_.handle, &remotePort_.handle);
    if (result == 0) return;
    lib.DevClose(module_.handle);
    throw zelcam_exception(result);
}

DeviceImpl::~DeviceImpl() {
    events_.clear();
    streams_.clear();
    // The end of an adapter makes the features of its events unavailable, and the port is closed by
    // then.
    for (const Parameters* parameters : {&camera_, &transport_})
        if (parameters->array != nullptr) parameters->array->Disconnect();
    module_.lib->DevClose(module_.handle);
}

void DeviceImpl::Release() {
    info_->CloseDevice(this);
}

uint32_t DeviceImpl::GetNumStreams() {
    return ZeroOnError([this] {
        return QueryCount([this](uint32_t* number) {
            return module_.lib->DevGetNumDataStreams(module_.handle, number);
        });
    });
}

ZelCam::Stream* DeviceImpl::GetStreamByIndex(uint32_t index) {
    return ZeroOnError([&] {
        const std::string id = QueryId([&](char* buffer, size_t* size) {
            return module_.lib->DevGetDataStreamID(module_.handle, index, buffer, size);
        });
        return GetStreamById(id.c_str());
    });
}

ZelCam::Stream* DeviceImpl::GetStreamById(const char* id) {
    return ZeroOnError([&]() -> ZelCam::Stream* {
        const std::string wanted(id);
        const auto open = std::find_if(streams_.begin(), streams_.end(),
                                       [&](const auto& stream) { return stream->Id() == wanted; });
        if (open != streams_.end()) return open->get();
        return streams_.emplace_back(std::make_unique<StreamImpl>(this, wanted)).get();
    });
}

ZelCam::DeviceInfo* DeviceImpl::GetInfo() {
    return info_;
}

ZelCamErr DeviceImpl::ReadMem(uint64_t address, void* buffer, size_t size) {
    return static_cast<ZelCamErr>(
        remotePort_.lib->GCReadPort(remotePort_.handle, address, buffer, &size));
}

ZelCamErr DeviceImpl::WriteMem(uint64_t address, const void* buffer, size_t size,
                               size_t* /*written*/) {
    return static_cast<ZelCamErr>(
        remotePort_.lib->GCWritePort(remotePort_.handle, address, buffer, &size));
}

ZelGenParam::Array* DeviceImpl::GetTransportParameters(ZelCamErr* err) {
    return NullWithCode(err, [&]() -> ZelGenParam::Array* {
        if (transport_.array == nullptr) MakeParameters(transport_, module_, nullptr, err);
        return transport_.array.get();
    });
}

ZelGenParam::Array* DeviceImpl::GetCameraParameters(ZelCamErr* err) {
    return NullWithCode(err, [&]() -> ZelGenParam::Array* {
        // Sinks ask for it, too, with the node map locked, which is made with the mutex locked.
        if (ZelGenParam::Array* const made = cameraArray_) return made;
        const std::lock_guard<std::mutex> lock(cameraMutex_);
        if (camera_.array == nullptr &&
            MakeParameters(camera_, remotePort_, info_->GetExternalXml(), err)) {
            FollowEvents();
            cameraArray_ = camera_.array.get();
        }
        return camera_.array.get();
    });
}

void DeviceImpl::FollowEvents() {
    eventDelegate_.function = [this](uint32_t /*eventType*/, const void* data, size_t size) {
        GenICamEvent(camera_.eventAdapter.get(), data, size);
    };
    // If the producer refuses, there are no events to deliver.
    RegisterEvent2(GenTL::EVENT_REMOTE_DEVICE, EventCallbackDelegate::Callback, &eventDelegate_);
}

// Makes both array and adapter, or neither and returns false.
bool DeviceImpl::MakeParameters(Parameters& parameters, const GenTLModule<void*>& port,
                                const char* xmlFile, ZelCamErr* err) {
    Parameters made;
    made.array = CreateArray(port, err, xmlFile);
    if (made.array == nullptr) return false;
    made.eventAdapter = CreateEventAdapter(port, made.array->GetNodeMap(nullptr));
    parameters = std::move(made);
    return true;
}

void DeviceImpl::GenICamEvent(GenApi::CEventAdapter* adapter, const void* data, size_t size) {
    if (adapter == nullptr) return;
    adapter->DeliverMessage(static_cast<const uint8_t*>(data), static_cast<uint32_t>(size));
}

GenApi::INodeMap* DeviceImpl::GetCameraNodeMap(ZelCamErr* err) {
    ZelGenParam::Array* const parameters = GetCameraParameters(err);
    return parameters != nullptr ? parameters->GetNodeMap(err) : nullptr;
}

ZelCamErr DeviceImpl::SaveConfiguration(const char* fileName) {
    ZelCamErr err = ZelCamErr_Success;
    GenApi::INodeMap* const nodeMap = GetCameraNodeMap(&err);
    if (nodeMap == nullptr) return err;
    return ConfigurationCode([&] {
        WriteConfigurationFile(fileName, info_->GetInterface()->GetId(), id_.c_str(),
                               StoreFeatures(nodeMap));
        return ZelCamErr_Success;
    });
}

ZelCamErr DeviceImpl::LoadConfiguration(const char* fileName) {
    if (fileName == nullptr) return ZelCamErr_FileOpenFailed;
    return ConfigurationCode([&] {
        tinyxml2::XMLDocument document;
        const tinyxml2::XMLError result = LoadXmlFile(fileName, document);
        if (result == tinyxml2::XML_SUCCESS) return LoadConfiguration(&document);
        if (result == tinyxml2::XML_ERROR_FILE_NOT_FOUND) {
            std::istringstream text(fileName);
            return LoadConfiguration(text);
        }
        std::ifstream file(fileName);
        return LoadConfiguration(file);
    });
}

ZelCamErr DeviceImpl::LoadConfiguration(const tinyxml2::XMLDocument* document) {
    return ConfigurationCode([&] {
        const std::optional<std::string> features = GetFeatureText(*document);
        if (!features) return ZelCamErr_InvalidFile;
        std::istringstream text(*features);
        return LoadConfiguration(text);
    });
}

ZelCamErr DeviceImpl::LoadConfiguration(std::istream& text) {
    if (text.fail()) return ZelCamErr_FileOpenFailed;
    ZelCamErr err = ZelCamErr_Success;
    GenApi::INodeMap* const nodeMap = GetCameraNodeMap(&err);
    return nodeMap != nullptr ? LoadFeatures(text, nodeMap) : err;
}

ZelCamErr DeviceImpl::UploadRpd(const char* fileName, unsigned long /*reserved*/,
                                void (*progress)(UploadEventType, UploadEventData)) {
    std::vector<uint8_t> image;
    const ZelCamErr result = ReadFirmware(fileName, image);
    return result == ZelCamErr_Success ? FirmwareUpload(*this, progress).Run(image) : result;
}

ZelCamErr DeviceImpl::UploadFirmware(const char* fileName, UploadCallback progress, void* priv) {
    return CodeOf([&] {
        std::vector<uint8_t> image;
        const ZelCamErr result = ReadFirmware(fileName, image);
        if (result != ZelCamErr_Success) return result;
        const auto report = [=](UploadEventType type, UploadEventData data) {
            if (progress != nullptr) progress(type, data, priv);
        };
        return FirmwareUpload(*this, report).RunWhenReady(image);
    });
}

bool DeviceImpl::EraseSector(unsigned long /*address*/, unsigned int /*count*/) {
    return true;
}

bool DeviceImpl::PageWrite(unsigned long /*address*/, unsigned char* /*data*/,
                           unsigned int /*size*/, unsigned long /*flags*/) {
    return true;
}

bool DeviceImpl::PageRead(unsigned long /*address*/, unsigned char* /*data*/, unsigned int /*size*/,
                          unsigned long /*flags*/) {
    return true;
}

uint32_t DeviceImpl::GetEndianness() const {
    int type = GenTL::INFO_DATATYPE_UNKNOWN;
    GenTL::bool8_t bigEndian = 0;
    size_t size = sizeof bigEndian;
    const int result = remotePort_.lib->GCGetPortInfo(
        remotePort_.handle, GenTL::PORT_INFO_BIG_ENDIAN, &type, &bigEndian, &size);
    return result == 0 && bigEndian == 0 ? 1 : 0;
}

void DeviceImpl::CloseStream(StreamImpl* stream) {
    RemoveOwned(streams_, stream);
}

NonSystemDevice::NonSystemDevice(SystemHolder system, DeviceInfoImpl* info,
                                 ZelCam::DeviceAccess access)
    : DeviceImpl(info, info->GetID(), access), system_(std::move(system)) {}

// The System ends last, because the device closes its modules through it.
void NonSystemDevice::Release() {
    const SystemHolder system = std::move(system_);
    delete this;
}

}  // namespace ZelCameraApi::Internal

ZelCam::Device* ZelCam_CreateDevice(ZelCam::DeviceInfo* info, ZelCam::DeviceAccess access,
                                    ZelCamErr* err) {
    using namespace ZelCameraApi::Internal;
    try {
        ZelCam::Device* const device =
            info != nullptr ? dynamic_cast<DeviceInfoImpl&>(*info).CreateDevice(access)
                            : OpenFirstCamera(access);
        StoreError(err, ZelCamErr_Success);
        return device;
    } catch (const zelcam_exception& e) {
        StoreError(err, e.code().value());
    } catch (const std::exception&) {
        // only a failure with a code of its own is written to *err
    } catch (const GenICam::GenericException&) {
        // likewise
    }
    return nullptr;
}
