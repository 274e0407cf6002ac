#include "ZelCameraApi/systemimpl.h"

#include <tinyxml2.h>

#include "ZelCameraApi/base/errorboundary.h"
#include "ZelCameraApi/base/gentlinfo.h"
#include "ZelCameraApi/configurationfile.h"
#include "ZelCameraApi/ifaceimpl.h"

namespace ZelCameraApi::Internal {

namespace {

constexpr const char* kDefaultProducer = "libZelCTI.cti";
constexpr uint64_t kUpdateTimeoutMs = 1000;

// Never filled: a System belongs to the application, and unloading the library must not end it.
std::unique_ptr<SystemImpl> systemWPtr;

// Loads and opens a producer into `module`; returns the first code that is not 0. After a failure,
// unloading the producer ends what was opened before.
int OpenProducer(const char* ctiPath, GenTLModule<void*>& module) {
    module.lib = std::make_shared<GenTLLib>(std::string(ctiPath));
    int result = module.lib->GCInitLib();
    if (result == 0) result = module.lib->TLOpen(&module.handle);
    if (result == 0) {
        result = module.lib->TLUpdateInterfaceList(module.handle, nullptr, kUpdateTimeoutMs);
    }
    return result;
}

}  // namespace

SystemImpl::SystemImpl() {
    ThrowOnError(SystemImpl::RegisterGenTLProvider(kDefaultProducer));
}

SystemImpl::~SystemImpl() {
    lists_.clear();
    interfaces_.clear();
    while (!systems_.empty()) {
        const GenTLModule<void*> system = std::move(systems_.front());
        systems_.pop_front();
        system.lib->TLClose(system.handle);
        system.lib->GCCloseLib();
    }
}

void SystemImpl::Release() {
    delete this;
}

ZelCam::List<ZelCam::Interface>* SystemImpl::GetInterfaceList(ZelCam::InterfaceType type) {
    return ZeroOnError([&]() -> ZelCam::List<ZelCam::Interface>* {
        if (interfaces_.empty()) CollectInterfaces();
        std::list<ZelCam::Interface*> items;
        for (const auto& iface : interfaces_) {
            if (type == ZelCam::InterfaceType::Unknown || iface->GetType() == type) {
                items.push_back(iface.get());
            }
        }
        return lists_.emplace_back(std::make_unique<InterfaceList>(this, std::move(items))).get();
    });
}

ZelCam::Interface* SystemImpl::GetInterfaceById(const char* id) {
    const std::string wanted(id);
    ZelCam::System& self = *this;
    const ListHolder<ZelCam::Interface> list(self.GetInterfaceList(ZelCam::InterfaceType::Unknown));
    if (list == nullptr) return nullptr;
    ZelCam::Interface* iface = list->GetFirst();
    while (iface != nullptr && wanted != iface->GetId())
        iface = list->GetNext();
    return iface;
}

const char* SystemImpl::GetDisplayName() {
    return CachedInfo(displayName_, GenTL::TL_INFO_DISPLAYNAME);
}

const char* SystemImpl::GetVersion() {
    return CachedInfo(version_, GenTL::TL_INFO_VERSION);
}

const char* SystemImpl::CachedInfo(std::string& cache, int cmd) {
    return ZeroOnError([&] {
        if (cache.empty()) cache = TLGetInfoString(systems_.front(), cmd);
        return cache.c_str();
    });
}

ZelCam::Device* SystemImpl::CreateDeviceFromConfig(const char* fileName, ZelCamErr* err) {
    return ZeroOnError([&]() -> ZelCam::Device* {
        tinyxml2::XMLDocument document;
        const bool loaded = LoadXmlFile(fileName, document) == tinyxml2::XML_SUCCESS;
        const char* const id = loaded ? GetCameraAttribute(document, kInterfaceId) : nullptr;
        if (id == nullptr) {
            StoreError(err, ZelCamErr_InvalidFile);
            return nullptr;
        }
        ZelCam::System& self = *this;
        auto* const iface = dynamic_cast<InterfaceImpl*>(self.GetInterfaceById(id));
        if (iface == nullptr) {
            StoreError(err, ZelCamErr_NotFound);
            return nullptr;
        }
        return iface->CreateDeviceFromConfig(&document, err);
    });
}

ZelCamErr SystemImpl::RegisterGenTLProvider(const char* ctiPath) {
    return CodeOf([&] {
        // First the entry in the list: nothing may fail once the producer is open.
        std::list<GenTLModule<void*>> opened(1);
        const int result = OpenProducer(ctiPath, opened.front());
        if (result == 0) systems_.splice(systems_.end(), opened);
        return result;
    });
}

void SystemImpl::RemoveList(InterfaceList* list) {
    RemoveOwned(lists_, list);
}

// All or nothing: if a producer fails midway, the next call starts again.
void SystemImpl::CollectInterfaces() {
    std::list<std::unique_ptr<InterfaceImpl>> interfaces;
    for (const auto& tl : systems_)
        CollectInterfaces(tl, interfaces);
    interfaces_ = std::move(interfaces);
}

void SystemImpl::CollectInterfaces(const GenTLModule<void*>& tl,
                                   std::list<std::unique_ptr<InterfaceImpl>>& interfaces) {
    const uint32_t count =
        QueryCount([&](uint32_t* number) { return tl.lib->TLGetNumInterfaces(tl.handle, number); });
    for (uint32_t i = 0; i < count; ++i) {
        std::string id = QueryId([&](char* buffer, size_t* size) {
            return tl.lib->TLGetInterfaceID(tl.handle, i, buffer, size);
        });
        try {
            interfaces.push_back(std::make_unique<InterfaceImpl>(this, tl, std::move(id)));
        } catch (const zelcam_exception&) {
            // one interface that cannot be opened leaves the others usable
        }
    }
}

}  // namespace ZelCameraApi::Internal

ZelCam::System* ZelCam_GetSystem() {
    using ZelCameraApi::Internal::SystemImpl;
    return ZelCameraApi::Internal::ZeroOnError([]() -> ZelCam::System* { return new SystemImpl; });
}
