#include "ZelCameraApi/deviceinfoimpl.h"

#include <algorithm>
#include <cstdio>
#include <stdexcept>
#include <utility>

#include "ZelCameraApi/base/errorboundary.h"
#include "ZelCameraApi/base/gentlinfo.h"
#include "ZelCameraApi/deviceimpl.h"
#include "ZelCameraApi/ifaceimpl.h"
#include "ZelCameraApi/ipaddress.h"
#include "ZelCameraApi/listimpl.h"
#include "utils/zelgev_utils.h"

namespace ZelCameraApi::Internal {

namespace {

// The USB host a camera is connected to: a producer-specific command.
constexpr int kDeviceInfoUsb3Host = 1100;

// Features of an interface that reaches GigE Vision cameras.
constexpr const char* kDeviceSelector = "DeviceSelector";
constexpr const char* kDeviceID = "DeviceID";
constexpr const char* kForceIP = "GevDeviceForceIP";

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
        // Copied into place, so a pointer that was handed out earlier shows the new text.
        const std::string text = GetDevInfoString(parent_->Module(), id_, cmd);
        buffer = text;
        return buffer.c_str();
    });
}

int32_t DeviceInfoImpl::GetAccessStatus() {
    return ZeroOnError([this] { return QueryAccessStatus(); });
}

int32_t DeviceInfoImpl::QueryAccessStatus() const {
    const GenTLModule<void*>& iface = parent_->Module();
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
    return RefreshIPTexts(err) ? ipAddress_.c_str() : nullptr;
}

const char* DeviceInfoImpl::GetIPMask(ZelCamErr* err) {
    return RefreshIPTexts(err) ? ipMask_.c_str() : nullptr;
}

const char* DeviceInfoImpl::GetIPGateway(ZelCamErr* err) {
    return RefreshIPTexts(err) ? ipGateway_.c_str() : nullptr;
}

// Only failure writes `*err`.
bool DeviceInfoImpl::RefreshIPTexts(ZelCamErr* err) {
    uint32_t address = 0;
    uint32_t mask = 0;
    uint32_t gateway = 0;
    ZelCam::DeviceInfo& self = *this;
    const ZelCamErr result = self.GetIP(&address, &mask, &gateway);
    if (result != ZelCamErr_Success) {
        StoreError(err, result);
        return false;
    }
    ipAddress_ = IP_N2Str(address);
    ipMask_ = IP_N2Str(mask);
    ipGateway_ = IP_N2Str(gateway);
    return true;
}

// False if the interface cannot list its cameras.
bool DeviceInfoImpl::FindPosition(Position& position) {
    ZelCam::Interface& iface = *parent_;
    const ListHolder<ZelCam::DeviceInfo> infos(iface.GetDeviceInfoList());
    if (infos == nullptr) return false;
    ZelCam::DeviceInfo* info = infos->GetFirst();
    for (; info != nullptr && id_ != info->GetID(); info = infos->GetNext())
        ++position.index;
    position.listed = info != nullptr;
    return true;
}

// The library's list is sorted, but a producer may list in another order, so the place in the list
// is only a first guess. If the interface does not report which camera is selected, the guess
// stands.
ZelCamErr DeviceInfoImpl::CorrectSelection(ZelGenParam::Array& ifParams) const {
    const ZelCamErr err = CompareSelected(ifParams);
    if (err == ZelCamErr_ParamNotFound) return ZelCamErr_Success;
    return err == ZelCamErr_NotFound ? SearchSelector(ifParams) : err;
}

// ZelCamErr_NotFound if another camera is selected.
ZelCamErr DeviceInfoImpl::CompareSelected(ZelGenParam::Array& ifParams) const {
    ZelCamErr err = ZelCamErr_Success;
    const char* const selected = ifParams.GetStringValue(kDeviceID, &err);
    if (err != ZelCamErr_Success) return err;
    return id_ == selected ? ZelCamErr_Success : ZelCamErr_NotFound;
}

// Skips selector values whose camera cannot be determined.
ZelCamErr DeviceInfoImpl::SearchSelector(ZelGenParam::Array& ifParams) const {
    ZelGenParam::Int* const selector = ifParams.GetInt(kDeviceSelector, nullptr);
    if (selector == nullptr) return ZelCamErr_NotFound;
    const int64_t max = selector->GetMax(nullptr);
    const int64_t step = std::max<int64_t>(selector->GetIncrement(nullptr), 1);
    int64_t value = selector->GetMin(nullptr);
    for (uint32_t i = 0; i < kMaxCount && value <= max; ++i, value += step) {
        if (selector->SetValue(value) == ZelCamErr_Success &&
            CompareSelected(ifParams) == ZelCamErr_Success) {
            return ZelCamErr_Success;
        }
        const uint64_t left = static_cast<uint64_t>(max) - static_cast<uint64_t>(value);
        if (left < static_cast<uint64_t>(step)) break;
    }
    return ZelCamErr_NotFound;
}

ZelCamErr DeviceInfoImpl::GetIP(uint32_t* address, uint32_t* mask, uint32_t* gateway) {
    Position position;
    if (!FindPosition(position) || !position.listed) return ZelCamErr_NotFound;
    ZelGenParam::Array* const ifParams = parent_->GetParameters(nullptr);
    if (ifParams == nullptr) return ZelCamErr_NotFound;

    ZelCamErr err = ifParams->SetIntegerValue(kDeviceSelector, position.index);
    if (err == ZelCamErr_Success) err = CorrectSelection(*ifParams);
    const auto read = [&](const char* name) {
        const int64_t value = err == ZelCamErr_Success ? ifParams->GetIntegerValue(name, &err) : 0;
        return static_cast<uint32_t>(value);
    };
    const uint32_t values[] = {read("GevDeviceIPAddress"), read("GevDeviceSubnetMask"),
                               read("GevDeviceGateway")};
    if (err != ZelCamErr_Success) return err;
    *address = values[0];
    *mask = values[1];
    *gateway = values[2];
    return ZelCamErr_Success;
}

ZelCamErr DeviceInfoImpl::ForceIP(const char* address, const char* mask, const char* gateway) {
    uint32_t addressValue = 0;
    uint32_t maskValue = 0;
    uint32_t gatewayValue = 0;
    if (!validateIpAddress(address, &addressValue) || !validateIpAddress(mask, &maskValue)) {
        return ZelCamErr_InvalidArgument;
    }
    // A camera needs no gateway, so an unparsable text means none.
    validateIpAddress(gateway, &gatewayValue);
    ZelCam::DeviceInfo& self = *this;
    return self.ForceIP(addressValue, maskValue, gatewayValue);
}

ZelCamErr DeviceInfoImpl::ForceIP(uint32_t address, uint32_t mask, uint32_t gateway) {
    ZelCamErr err = ZelCamErr_Success;
    ZelGenParam::Array* const ifParams = parent_->GetParameters(&err);
    if (ifParams == nullptr) return err;
    const int64_t saved = ifParams->GetIntegerValue(kDeviceSelector, &err);
    if (err != ZelCamErr_Success) return err;
    if (ifParams->GetCommand(kForceIP, &err) == nullptr) return err;

    Position position;
    if (!FindPosition(position)) return ZelCamErr_NotFound;
    err = ifParams->SetIntegerValue(kDeviceSelector, position.index);
    if (err != ZelCamErr_Success) return err;
    err = CorrectSelection(*ifParams);
    if (err == ZelCamErr_Success) {
        err = ForceIPToCurrentDevice(ifParams, address, mask, gateway);
    }
    ifParams->SetIntegerValue(kDeviceSelector, saved);
    return err;
}

ZelCamErr DeviceInfoImpl::ForceIPToCurrentDevice(ZelGenParam::Array* ifParams, uint32_t address,
                                                 uint32_t mask, uint32_t gateway) {
    const std::pair<const char*, uint32_t> values[] = {{"GevDeviceForceIPAddress", address},
                                                       {"GevDeviceForceSubnetMask", mask},
                                                       {"GevDeviceForceGateway", gateway}};
    for (const auto& [name, value] : values) {
        const ZelCamErr err = ifParams->SetIntegerValue(name, value);
        if (err != ZelCamErr_Success) return err;
    }
    return ifParams->ExecuteCommand(kForceIP);
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
