#include "ZelCameraApi/base/gentllib.h"

#include <cerrno>
#include <dlfcn.h>
#include <system_error>

namespace ZelCameraApi::Internal {

GenTLLib::GenTLLib(const std::string& path) : library_(nullptr, dlclose) {
    Load(path);
}

GenTLLib::GenTLLib(const std::wstring& path) : library_(nullptr, dlclose) {
    Load(path);
}

void GenTLLib::Load(const std::string& path) {
    void* const loaded = dlopen(path.c_str(), RTLD_NOW);
    const int code = errno;
    const std::string message = loaded == nullptr ? dlerror() : "";
    library_.reset(loaded);
    Resolve();
    if (loaded == nullptr) throw std::system_error(code, std::system_category(), message);
}

void GenTLLib::Load(const std::wstring& /*path*/) {}

void GenTLLib::Resolve() {
    const auto find = [this](const char* name) {
        return library_ != nullptr ? dlsym(library_.get(), name) : nullptr;
    };
#define ZELCAM_RESOLVE(name, parameters) name.Set(find(#name));
    GENTL_FUNCTIONS(ZELCAM_RESOLVE)
#undef ZELCAM_RESOLVE
}

}  // namespace ZelCameraApi::Internal
