#include "tests/library/support/fakeport.h"

#include <algorithm>
#include <cstdio>
#include <cstring>

namespace {

using GenTL::GC_ERROR;

FakePort& PortOf(void* handle) {
    return *static_cast<FakePort*>(handle);
}

GC_ERROR PutText(const std::string& text, void* buffer, size_t* size) {
    if (buffer != nullptr) std::memcpy(buffer, text.c_str(), std::min(*size, text.size() + 1));
    *size = text.empty() ? 0 : text.size() + 1;
    return 0;
}

GC_ERROR PutFlag(bool flag, void* buffer, size_t* size) {
    const GenTL::bool8_t value = flag ? 1 : 0;
    std::memcpy(buffer, &value, sizeof value);
    *size = sizeof value;
    return 0;
}

GC_ERROR GetPortInfo(void* handle, int32_t cmd, int32_t* type, void* buffer, size_t* size) {
    const FakePort& port = PortOf(handle);
    const auto failure = port.failures.find(cmd);
    if (failure != port.failures.end()) return failure->second;
    *type = GenTL::INFO_DATATYPE_BOOL8;
    switch (cmd) {
        case GenTL::PORT_INFO_ACCESS_NI:
            return PutFlag(port.notImplemented, buffer, size);
        case GenTL::PORT_INFO_ACCESS_NA:
            return PutFlag(port.notAvailable, buffer, size);
        case GenTL::PORT_INFO_ACCESS_READ:
            return PutFlag(port.readable, buffer, size);
        case GenTL::PORT_INFO_ACCESS_WRITE:
            return PutFlag(port.writable, buffer, size);
        default:
            break;
    }
    const auto text = port.texts.find(cmd);
    if (text == port.texts.end()) return GenTL::GC_ERR_NOT_AVAILABLE;
    *type = GenTL::INFO_DATATYPE_STRING;
    return PutText(text->second, buffer, size);
}

GC_ERROR GetNumPortURLs(void* handle, uint32_t* count) {
    *count = static_cast<uint32_t>(PortOf(handle).urls.size());
    return PortOf(handle).urlsResult;
}

GC_ERROR GetPortURLInfo(void* handle, uint32_t index, int32_t cmd, int32_t* type, void* buffer,
                        size_t* size) {
    if (cmd != GenTL::URL_INFO_URL) return GenTL::GC_ERR_NOT_IMPLEMENTED;
    const FakePort& port = PortOf(handle);
    if (port.whenUrlIsAsked) port.whenUrlIsAsked();
    const FakePort::Url& url = port.urls.at(index);
    *type = url.type;
    return url.result != 0 ? url.result : PutText(url.text, buffer, size);
}

// `copy(memory)` moves the bytes.
template <typename Copy>
GC_ERROR Access(void* handle, uint64_t address, size_t* size, Copy&& copy) {
    FakePort& port = PortOf(handle);
    ++port.accesses;
    port.lastSize = *size;
    if (port.result != 0) return port.result;
    const size_t room = port.memory.size();
    if (address > room || *size > room - address) return GenTL::GC_ERR_INVALID_ADDRESS;
    copy(port.memory.data() + address);
    *size = port.actualSize.value_or(*size);
    return 0;
}

GC_ERROR ReadPort(void* handle, uint64_t address, void* buffer, size_t* size) {
    return Access(handle, address, size, [=](const uint8_t* memory) {
        std::copy_n(memory, *size, static_cast<uint8_t*>(buffer));
    });
}

GC_ERROR WritePort(void* handle, uint64_t address, const void* buffer, size_t* size) {
    return Access(handle, address, size, [=](uint8_t* memory) {
        std::copy_n(static_cast<const uint8_t*>(buffer), *size, memory);
    });
}

}  // namespace

ZelCameraApi::Internal::GenTLModule<void*> FakePort::Module() {
    // A wide path loads nothing.
    auto lib = std::make_shared<ZelCameraApi::Internal::GenTLLib>(std::wstring(L"fake"));
    lib->GCGetPortInfo.Set(reinterpret_cast<void*>(&GetPortInfo));
    lib->GCGetNumPortURLs.Set(reinterpret_cast<void*>(&GetNumPortURLs));
    lib->GCGetPortURLInfo.Set(reinterpret_cast<void*>(&GetPortURLInfo));
    lib->GCReadPort.Set(reinterpret_cast<void*>(&ReadPort));
    lib->GCWritePort.Set(reinterpret_cast<void*>(&WritePort));
    return {this, lib};
}

std::string FakePort::Store(const std::string& description, const std::string& file) {
    memory.resize(std::max(memory.size(), kDescription + description.size()));
    std::copy(description.begin(), description.end(),
              memory.begin() + static_cast<std::ptrdiff_t>(kDescription));
    char range[64];
    std::snprintf(range, sizeof range, ";%zx;%zx", size_t{kDescription}, description.size());
    return "Local:///" + file + range;
}

void FakePort::Announce(const std::string& description, const std::string& file) {
    urls = {{Store(description, file)}};
}
