#include "producers/server/modules/library.h"

#include <dlfcn.h>
#include <vector>

#include "producers/server/base/error.h"

namespace ZelCti {

namespace {

// The path of this file, as the loader found it.
std::string OwnPath() {
    Dl_info info{};
    static const char kAnchor = 0;
    return dladdr(&kAnchor, &info) != 0 && info.dli_fname != nullptr ? info.dli_fname : "";
}

}  // namespace

Library& Library::Instance() {
    static Library library;
    return library;
}

void Library::ThrowNotInitialized() {
    throw Error(GenTL::GC_ERR_NOT_INITIALIZED, "GCInitLib comes first");
}

void Library::Init() {
    Transports();
    const std::lock_guard lock(mutex_);
    ++numInits_;
}

void Library::Close() {
    const std::lock_guard lock(mutex_);
    CheckInitialized();
    if (--numInits_ != 0) return;
    CloseAll();
    transports_.reset();
}

void Library::CloseAll() {
    std::vector<Handle> systems;
    handles_.ForEach([&](Object& object) {
        if (object.GetKind() == Kind::System) systems.push_back(object.GetHandle());
    });
    for (Handle system : systems)
        handles_.Close(system);
}

std::shared_ptr<const TransportList> Library::Transports() {
    const std::lock_guard lock(mutex_);
    if (transports_ == nullptr) {
        transports_ = std::make_shared<const TransportList>(MakeTransports());
    }
    return transports_;
}

void Library::Reconfigure(const std::function<void()>& change) {
    const std::lock_guard lock(mutex_);
    if (handles_.Count() != 0) throw Error(GenTL::GC_ERR_BUSY, "modules are open");
    change();
    transports_.reset();
}

void Library::GetInfo(Answer answer) {
    const ProducerInfo& info = GetProducerInfo();
    switch (answer.Command()) {
        case GenTL::TL_INFO_ID:
            return answer.String(info.id);
        case GenTL::TL_INFO_VENDOR:
            return answer.String(info.vendor);
        case GenTL::TL_INFO_MODEL:
            return answer.String(info.model);
        case GenTL::TL_INFO_VERSION:
            return answer.String(info.version);
        case GenTL::TL_INFO_TLTYPE:
            return answer.String(TLTypeMixedName);
        case GenTL::TL_INFO_NAME:
            return answer.String(info.fileName);
        case GenTL::TL_INFO_PATHNAME:
            return answer.String(OwnPath());
        case GenTL::TL_INFO_DISPLAYNAME:
            return answer.String(info.displayName);
        case GenTL::TL_INFO_CHAR_ENCODING:
            return answer.Int32(GenTL::TL_CHAR_ENCODING_UTF8);
        case GenTL::TL_INFO_GENTL_VER_MAJOR:
            return answer.Uint32(GenTLMajorVersion);
        case GenTL::TL_INFO_GENTL_VER_MINOR:
            return answer.Uint32(GenTLMinorVersion);
        default:
            throw Error(GenTL::GC_ERR_NOT_IMPLEMENTED, "unknown system info command");
    }
}

}  // namespace ZelCti
