#include "ZelCameraApi/base/gentlinfo.h"

namespace ZelCameraApi::Internal {

namespace {

enum class TerminatingZero { Keep, Cut };

// Calls `query(&type, buffer, &size)` for the size, then for the text.
template <typename Query>
std::string QueryString(TerminatingZero zero, Query&& query) {
    int type = GenTL::INFO_DATATYPE_UNKNOWN;
    size_t size = 0;
    ThrowOnError(query(&type, nullptr, &size));
    if (type != GenTL::INFO_DATATYPE_STRING) throw std::invalid_argument("Not a string type");

    std::string text(CheckedTextSize(size), '\0');
    size_t written = size;
    const int result = query(&type, text.data(), &written);
    if (zero == TerminatingZero::Cut) text.erase(size - 1);
    ThrowOnError(result);
    return text;
}

}  // namespace

size_t CheckedTextSize(size_t size) {
    constexpr size_t kLimit = size_t{16} << 20;
    if (size > kLimit) throw zelcam_exception(GenTL::GC_ERR_OUT_OF_MEMORY);
    return size;
}

std::string TLGetInfoString(const GenTLModule<void*>& tl, int cmd) {
    return QueryString(TerminatingZero::Keep, [&](int* type, void* buffer, size_t* size) {
        return tl.lib->TLGetInfo(tl.handle, cmd, type, buffer, size);
    });
}

std::string IFGetInfoString(const GenTLModule<void*>& iface, int cmd) {
    return QueryString(TerminatingZero::Cut, [&](int* type, void* buffer, size_t* size) {
        return iface.lib->IFGetInfo(iface.handle, cmd, type, buffer, size);
    });
}

std::string GetDevInfoString(const GenTLModule<void*>& iface, const std::string& deviceId,
                             int cmd) {
    return QueryString(TerminatingZero::Keep, [&](int* type, void* buffer, size_t* size) {
        return iface.lib->IFGetDeviceInfo(iface.handle, deviceId.c_str(), cmd, type, buffer, size);
    });
}

std::string PortGetInfoString(const GenTLModule<void*>& port, int cmd) {
    return QueryString(TerminatingZero::Keep, [&](int* type, void* buffer, size_t* size) {
        return port.lib->GCGetPortInfo(port.handle, cmd, type, buffer, size);
    });
}

std::string PortGetURLString(const GenTLModule<void*>& port, uint32_t index) {
    return QueryString(TerminatingZero::Keep, [&](int* type, void* buffer, size_t* size) {
        return port.lib->GCGetPortURLInfo(port.handle, index, GenTL::URL_INFO_URL, type, buffer,
                                          size);
    });
}

}  // namespace ZelCameraApi::Internal
