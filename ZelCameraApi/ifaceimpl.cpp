#include "ZelCameraApi/ifaceimpl.h"

#include <algorithm>
#include <cstring>
#include <utility>

#include <tinyxml2.h>

#include "ZelCameraApi/base/errorboundary.h"
#include "ZelCameraApi/base/gentlinfo.h"
#include "ZelCameraApi/configurationfile.h"
#include "ZelCameraApi/deviceimpl.h"
#include "ZelCameraApi/deviceinfoimpl.h"

namespace ZelCameraApi::Internal {

const std::map<ZelCam::InterfaceType, std::string>& GetInterfaceTypesMap() {
    static const std::map<ZelCam::InterfaceType, std::string> kTypes = {
        {ZelCam::InterfaceType::U3V, "U3V"},     {ZelCam::InterfaceType::GEV, "GEV"},
        {ZelCam::InterfaceType::CL, "CL"},       {ZelCam::InterfaceType::CXP, "CXP"},
        {ZelCam::InterfaceType::HDSDI, "HDSDI"},
    };
    return kTypes;
}

InterfaceImpl::InterfaceImpl(SystemImpl* parent, const GenTLModule<void*>& tl, std::string id)
    : EventSource(tl.lib), parent_(parent), id_(std::move(id)) {
    ThrowOnError(tl.lib->TLOpenInterface(tl.handle, id_.c_str(), &module_.handle));
}

InterfaceImpl::~InterfaceImpl() {
    events_.clear();
    lists_.clear();
    deviceInfos_.clear();
    module_.lib->IFClose(module_.handle);
}

ZelCam::List<ZelCam::DeviceInfo>* InterfaceImpl::GetDeviceInfoList() {
    return ZeroOnError([&]() -> ZelCam::List<ZelCam::DeviceInfo>* {
        if (deviceInfos_.empty()) CollectDeviceInfos();
        std::list<ZelCam::DeviceInfo*> items;
        for (const auto& info : deviceInfos_)
            items.push_back(info.get());
        return lists_.emplace_back(std::make_unique<DeviceInfoList>(this, std::move(items))).get();
    });
}

ZelCam::DeviceInfo* InterfaceImpl::GetFirstDeviceInfo() {
    return ZeroOnError([&]() -> ZelCam::DeviceInfo* {
        if (deviceInfos_.empty()) CollectDeviceInfos();
        return deviceInfos_.empty() ? nullptr : deviceInfos_.front().get();
    });
}

ZelCam::DeviceInfo* InterfaceImpl::GetDeviceInfoById(const char* id) {
    if (id == nullptr) return nullptr;
    return ZeroOnError([&]() -> ZelCam::DeviceInfo* {
        const std::string wanted(id);
        const auto requested = deviceInfosById_.find(wanted);
        if (requested != deviceInfosById_.end()) return requested->second.get();

        if (deviceInfos_.empty()) CollectDeviceInfos();
        for (const auto& info : deviceInfos_) {
            if (wanted == info->GetID()) return info.get();
        }
        auto info = std::make_unique<DeviceInfoImpl>(this, wanted);
        return deviceInfosById_.emplace(wanted, std::move(info)).first->second.get();
    });
}

ZelCamErr InterfaceImpl::ReEnumerateDevices(bool* changed, uint64_t timeout) {
    GenTL::bool8_t flag = 0;  // a producer may write any byte, but a bool must be 0 or 1
    const int result =
        module_.lib->IFUpdateDeviceList(module_.handle, reinterpret_cast<bool*>(&flag), timeout);
    if (result != 0) return static_cast<ZelCamErr>(result);
    if (changed != nullptr) *changed = flag != 0;
    if (flag != 0) CollectDeviceInfos();
    return ZelCamErr_Success;
}

const char* InterfaceImpl::GetDescription() {
    return CachedInfo(description_, GenTL::INTERFACE_INFO_DISPLAYNAME);
}

ZelCam::InterfaceType InterfaceImpl::GetType() {
    if (type_ != ZelCam::InterfaceType::Unknown) return type_;
    const std::string name =
        ZeroOnError([&] { return IFGetInfoString(module_, GenTL::INTERFACE_INFO_TLTYPE); });
    for (const auto& [type, typeName] : GetInterfaceTypesMap()) {
        if (typeName == name) type_ = type;
    }
    return type_;
}

const char* InterfaceImpl::GetId() {
    return id_.c_str();
}

const char* InterfaceImpl::GetVersion() {
    return CachedInfo(version_, GenTL::INTERFACE_INFO_CUSTOM_ID);
}

const char* InterfaceImpl::CachedInfo(std::string& cache, int cmd) {
    return ZeroOnError([&] {
        if (cache.empty()) cache = IFGetInfoString(module_, cmd);
        return cache.c_str();
    });
}

const char* InterfaceImpl::GetVendor() {
    return CachedPortInfo(vendor_, GenTL::PORT_INFO_VENDOR);
}

const char* InterfaceImpl::GetModel() {
    return CachedPortInfo(model_, GenTL::PORT_INFO_MODEL);
}

const char* InterfaceImpl::CachedPortInfo(std::string& cache, int cmd) {
    return ZeroOnError([&] {
        if (cache.empty()) cache = PortGetInfoString(module_, cmd);
        return cache.c_str();
    });
}

ZelGenParam::Array* InterfaceImpl::GetParameters(ZelCamErr* err) {
    StoreError(err, ZelCamErr_Success);
    if (parameters_ == nullptr) parameters_ = CreateArray(module_, err, nullptr);
    return parameters_.get();
}

ZelCam::Device* InterfaceImpl::CreateDeviceFromConfig(const char* fileName, ZelCamErr* err) {
    return NullWithCode(err, [&]() -> ZelCam::Device* {
        tinyxml2::XMLDocument document;
        if (LoadXmlFile(fileName, document) != tinyxml2::XML_SUCCESS) return nullptr;
        return CreateDeviceFromConfig(&document, err);
    });
}

ZelCam::Device* InterfaceImpl::CreateDeviceFromConfig(tinyxml2::XMLDocument* document,
                                                      ZelCamErr* err) {
    StoreError(err, ZelCamErr_Success);
    const char* const cameraId = GetCameraAttribute(*document, kCameraId);
    if (cameraId == nullptr) {
        StoreError(err, ZelCamErr_InvalidFile);
        return nullptr;
    }
    ZelCam::Interface& self = *this;
    ZelCam::DeviceInfo* const info = self.GetDeviceInfoById(cameraId);
    if (info == nullptr) {
        StoreError(err, ZelCamErr_NotFound);
        return nullptr;
    }
    StoreError(err, ZelCamErr_Error);  // stays if the device cannot be made
    auto* const device =
        dynamic_cast<DeviceImpl*>(ZelCam_CreateDevice(info, ZelCam::DeviceAccess::Exclusive, err));
    if (device != nullptr) StoreError(err, device->LoadConfiguration(document));
    return device;
}

void InterfaceImpl::RemoveList(DeviceInfoList* list) {
    RemoveOwned(lists_, list);
}

// Walks both sorted lists side by side; an entry in only one of them is a change.
void InterfaceImpl::CollectDeviceInfos() {
    const std::vector<std::string> found = FindDeviceIds();
    const std::vector<KnownDevice> known = SortedDeviceInfos();
    auto id = found.begin();
    auto device = known.begin();
    while (id != found.end() || device != known.end()) {
        const int order = id == found.end()       ? 1
                          : device == known.end() ? -1
                                                  : id->compare(device->id);
        if (order < 0) {
            deviceInfos_.push_back(std::make_unique<DeviceInfoImpl>(this, *id));
        } else if (order > 0) {
            retiredDeviceInfos_.splice(retiredDeviceInfos_.end(), deviceInfos_, device->info);
        }
        if (order <= 0) ++id;
        if (order >= 0) ++device;
    }
}

// The identifiers that the producer lists.
std::vector<std::string> InterfaceImpl::FindDeviceIds() const {
    const uint32_t count = QueryCount(
        [&](uint32_t* number) { return module_.lib->IFGetNumDevices(module_.handle, number); });
    std::vector<std::string> ids;
    for (uint32_t i = 0; i < count; ++i) {
        std::string id = QueryId([&](char* buffer, size_t* size) {
            return module_.lib->IFGetDeviceID(module_.handle, i, buffer, size);
        });
        if (!id.empty()) id.pop_back();  // the terminating zero
        ids.push_back(std::move(id));
    }
    std::sort(ids.begin(), ids.end());
    return ids;
}

// The active device infos in the order of their identifiers. Each enumeration appends its new ones
// in this order, so most are sorted already.
std::vector<InterfaceImpl::KnownDevice> InterfaceImpl::SortedDeviceInfos() {
    std::vector<KnownDevice> known;
    for (auto info = deviceInfos_.begin(); info != deviceInfos_.end(); ++info)
        known.push_back({(*info)->GetID(), info});
    const auto isLess = [](const auto& a, const auto& b) { return std::strcmp(a.id, b.id) < 0; };
    const auto tail = std::is_sorted_until(known.begin(), known.end(), isLess);
    std::stable_sort(tail, known.end(), isLess);
    std::inplace_merge(known.begin(), tail, known.end(), isLess);
    return known;
}

}  // namespace ZelCameraApi::Internal
