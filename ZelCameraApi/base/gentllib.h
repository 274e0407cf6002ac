// A loaded GenTL producer.
#pragma once

#include <memory>
#include <string>

#include "gentl/GenTL.h"

namespace ZelCameraApi::Internal {

// The parameter types of a producer function as the library passes them: `bool*` for the standard's
// one-byte booleans, everything else unchanged.
template <typename T>
struct GenTLArgument {
    using type = T;
};
template <>
struct GenTLArgument<GenTL::bool8_t*> {
    using type = bool*;
};

// One function of a producer. A call costs one null test and one indirect call; a function that the
// producer does not export returns GC_ERR_NOT_AVAILABLE.
template <typename Pointer>
class GenTLFunction;

template <typename... Args>
class GenTLFunction<GenTL::GC_ERROR (*)(Args...)> {
  public:
    using Pointer = GenTL::GC_ERROR (*)(Args...);

    int operator()(typename GenTLArgument<Args>::type... args) const {
        if (function_ == nullptr) return GenTL::GC_ERR_NOT_AVAILABLE;
        return function_(Pass<Args>(args)...);
    }

    void Set(void* symbol) { function_ = reinterpret_cast<Pointer>(symbol); }

  private:
    template <typename T>
    static T Pass(typename GenTLArgument<T>::type arg) {
        if constexpr (std::is_same_v<T, GenTL::bool8_t*>) {
            return reinterpret_cast<T>(arg);
        } else {
            return arg;
        }
    }

    Pointer function_ = nullptr;
};

// A producer file, loaded with the dynamic loader, and its GenTL functions up to version 1.6. Each
// function is a member with the function's name:
//
//     GenTLLib lib("/opt/producer/producer.cti");
//     int result = lib.TLOpen(&handle);
//
// No function is mandatory: only a call of a missing function fails. Everything that holds a handle
// of the producer (GenTLModule) shares this object, so the file stays loaded as long as there is a
// handle. This class calls neither GCInitLib nor GCCloseLib.
//
// After loading, thread-safe as far as the producer's functions are.
class GenTLLib {
  public:
    // Throws std::system_error with the loader's message if the file cannot be loaded.
    explicit GenTLLib(const std::string& path);

    // Wide paths load nothing: every function returns GC_ERR_NOT_AVAILABLE.
    explicit GenTLLib(const std::wstring& path);

    GenTLLib(const GenTLLib&) = delete;
    GenTLLib& operator=(const GenTLLib&) = delete;

    // Replaces the loaded producer. If loading fails, no producer is loaded.
    void Load(const std::string& path);
    void Load(const std::wstring& path);

#define ZELCAM_MEMBER(name, parameters) GenTLFunction<GenTL::P##name> name;
    GENTL_FUNCTIONS(ZELCAM_MEMBER)
#undef ZELCAM_MEMBER

  private:
    void Resolve();

    std::unique_ptr<void, int (*)(void*)> library_;
};

}  // namespace ZelCameraApi::Internal
