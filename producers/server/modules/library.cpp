#include "producers/server/modules/library.h"

#include <dlfcn.h>
#include <vector>

#include "producers/server/base/error.h"
#include "producers/simulator/config/configfile.h"

namespace ZelSim {

namespace {

// The path of this file, as the loader found it.
std::string OwnPath() {
    Dl_info info{};
    static const char anchor = 0;
    return dladdr(&anchor, &info) != 0 && info.dli_fname != nullptr ? info.dli_fname : "";
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
    GetWorld();
    const std::lock_guard lock(mutex_);
    ++numInits_;
}

void Library::Close() {
    const std::lock_guard lock(mutex_);
    CheckInitialized();
    if (--numInits_ == 0) CloseAll();
}

void Library::CloseAll() {
    std::vector<Handle> systems;
    handles_.ForEach([&](Object& object) {
        if (object.GetKind() == Kind::System) systems.push_back(object.GetHandle());
    });
    for (Handle system : systems)
        handles_.Close(system);
}

std::shared_ptr<World> Library::GetWorld() {
    const std::lock_guard lock(mutex_);
    if (world_ == nullptr) world_ = std::make_shared<World>(LoadConfig());
    return world_;
}

void Library::Replace(const WorldConfig& config) {
    const std::lock_guard lock(mutex_);
    if (handles_.Count() != 0) throw Error(GenTL::GC_ERR_BUSY, "modules are open");
    world_ = std::make_shared<World>(config);
}

void Library::GetInfo(Answer answer) {
    switch (answer.Command()) {
        case GenTL::TL_INFO_ID:
            return answer.String("ZelCTI");
        case GenTL::TL_INFO_VENDOR:
            return answer.String("ZelCam");
        case GenTL::TL_INFO_MODEL:
            return answer.String("ZelCam GenTL producer");
        case GenTL::TL_INFO_VERSION:
            return answer.String(ZELSIM_VERSION);
        case GenTL::TL_INFO_TLTYPE:
            return answer.String(TLTypeMixedName);
        case GenTL::TL_INFO_NAME:
            return answer.String("libZelCTI.cti");
        case GenTL::TL_INFO_PATHNAME:
            return answer.String(OwnPath());
        case GenTL::TL_INFO_DISPLAYNAME:
            return answer.String("ZelCam cameras");
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

}  // namespace ZelSim
