#include "ZelCameraApi/deviceinfoimpl.h"

#include <cstdio>
#include <stdexcept>

#include "ZelCameraApi/deviceimpl.h"
#include "ZelCameraApi/errorboundary.h"
#include "ZelCameraApi/gentlinfo.h"
#include "ZelCameraApi/ifaceimpl.h"
#include "ZelCameraApi/listimpl.h"

namespace ZelCameraApi::Internal {

namespace {

// The USB host a camera is connected to: a producer-specific command.
constexpr int kDeviceInfoUsb3Host = 1100;

}  // namespace

DeviceInfoImpl::DeviceInfoImpl(InterfaceImpl* parent, const std::string& id)
    : id_(id), parent_(parent) {}

DeviceInfoImpl::~DeviceInfoImpl() = default;

ZelCam::Interface* DeviceInfoImpl::GetInterface() {
    return parent_;
}

const char* DeviceInfoImpl::GetID() {
    return id_.c_str();
}

const char* DeviceInfoImpl::GetVendor() {
    return Info(vendor_, GenTL::DEVICE_INFO_VENDOR);
}

const char* DeviceInfoImpl::GetModel() {
    return Info(model_, GenTL::DEVICE_INFO_MODEL);
}

const char* DeviceInfoImpl::GetDisplayName() {
    return Info(displayName_, GenTL::DEVICE_INFO_DISPLAYNAME);
}

const char* DeviceInfoImpl::GetUserDefinedName() {
    return Info(userDefinedName_, GenTL::DEVICE_INFO_USER_DEFINED_NAME);
}

const char* DeviceInfoImpl::GetSerialNumber() {
    return Info(serialNumber_, GenTL::DEVICE_INFO_SERIAL_NUMBER);
}

const char* DeviceInfoImpl::GetVersion() {
    return Info(version_, GenTL::DEVICE_INFO_VERSION);
}

const char* DeviceInfoImpl::GetUSB3HostInfo() {
    return Info(usb3HostInfo_, kDeviceInfoUsb3Host);
}

const char* DeviceInfoImpl::Info(std::string& buffer, int cmd) {
    return ZeroOnError([&] {
        // Copied into place: a text handed out before shows the new one.
        const std::string text = GetDevInfoString(parent_->module(), id_, cmd);
        buffer = text;
        return buffer.c_str();
    });
}

int32_t DeviceInfoImpl::GetAccessStatus() {
    return ZeroOnError([this] { return QueryAccessStatus(); });
}

int32_t DeviceInfoImpl::QueryAccessStatus() const {
    const GenTLModule<void*>& iface = parent_->module();
    int type = GenTL::INFO_DATATYPE_UNKNOWN;
    int32_t status = GenTL::DEVICE_ACCESS_STATUS_UNKNOWN;
    size_t size = 0;
    const auto query = [&](void* buffer) {
        ThrowOnError(iface.lib->IFGetDeviceInfo(
            iface.handle, id_.c_str(), GenTL::DEVICE_INFO_ACCESS_STATUS, &type, buffer, &size));
    };
    query(nullptr);
    if (type != GenTL::INFO_DATATYPE_INT32) throw std::invalid_argument("Not a Int32 type");
    size = sizeof status;
    query(&status);
    return status;
}

const char* DeviceInfoImpl::GetIPAddress(ZelCamErr* err) {
    StoreError(err, ZelCamErr_NoNodeMap);
    return nullptr;
}

const char* DeviceInfoImpl::GetIPMask(ZelCamErr* err) {
    StoreError(err, ZelCamErr_NoNodeMap);
    return nullptr;
}

const char* DeviceInfoImpl::GetIPGateway(ZelCamErr* err) {
    StoreError(err, ZelCamErr_NoNodeMap);
    return nullptr;
}

ZelCamErr DeviceInfoImpl::GetIP(uint32_t* /*address*/, uint32_t* /*mask*/, uint32_t* /*gateway*/) {
    return ZelCamErr_NoNodeMap;
}

ZelCamErr DeviceInfoImpl::ForceIP(const char* /*address*/, const char* /*mask*/,
                                  const char* /*gateway*/) {
    return ZelCamErr_NoNodeMap;
}

ZelCamErr DeviceInfoImpl::ForceIP(uint32_t /*address*/, uint32_t /*mask*/, uint32_t /*gateway*/) {
    return ZelCamErr_NoNodeMap;
}

ZelCamErr DeviceInfoImpl::SetExternalXml(const char* fileName) {
    externalXml_ = fileName != nullptr ? fileName : "";
    if (externalXml_.empty()) return ZelCamErr_Success;
    FILE* const file = fopen(externalXml_.c_str(), "r");
    if (file == nullptr) return ZelCamErr_FileOpenFailed;
    fclose(file);
    return ZelCamErr_Success;
}

const char* DeviceInfoImpl::GetExternalXml() {
    return externalXml_.empty() ? nullptr : externalXml_.c_str();
}

DeviceImpl* DeviceInfoImpl::CreateDevice(ZelCam::DeviceAccess access) {
    return devices_.emplace_back(std::make_unique<DeviceImpl>(this, id_, access)).get();
}

void DeviceInfoImpl::CloseDevice(DeviceImpl* device) {
    RemoveOwned(devices_, device);
}

}  // namespace ZelCameraApi::Internal
