#include "fuzz/library/fakeport.h"

#include <algorithm>
#include <cinttypes>
#include <cstdio>
#include <cstring>

namespace Fuzz {

namespace {

using GenTL::GC_ERROR;

FakePort& PortOf(void* handle) {
    return *static_cast<FakePort*>(handle);
}

GC_ERROR Answer(const std::string& text, void* buffer, size_t* size) {
    const size_t needed = text.size() + 1;
    if (buffer != nullptr) {
        if (*size < needed) return GenTL::GC_ERR_BUFFER_TOO_SMALL;
        std::memcpy(buffer, text.c_str(), needed);
    }
    *size = needed;
    return GenTL::GC_ERR_SUCCESS;
}

GC_ERROR GetNumPortURLs(GenTL::PORT_HANDLE, uint32_t* count) {
    *count = 1;
    return GenTL::GC_ERR_SUCCESS;
}

GC_ERROR GetPortURLInfo(GenTL::PORT_HANDLE port, uint32_t, GenTL::URL_INFO_CMD,
                        GenTL::INFO_DATATYPE* type, void* buffer, size_t* size) {
    *type = GenTL::INFO_DATATYPE_STRING;
    return Answer(PortOf(port).url, buffer, size);
}

GC_ERROR GetPortInfo(GenTL::PORT_HANDLE port, GenTL::PORT_INFO_CMD command,
                     GenTL::INFO_DATATYPE* type, void* buffer, size_t* size) {
    *type = GenTL::INFO_DATATYPE_STRING;
    switch (command) {
        case GenTL::PORT_INFO_ID:
            return Answer("fuzzed", buffer, size);
        case GenTL::PORT_INFO_TLTYPE:
            return Answer(PortOf(port).tlType, buffer, size);
        case GenTL::PORT_INFO_PORTNAME:
            return Answer("Device", buffer, size);
        default:
            break;
    }
    *type = GenTL::INFO_DATATYPE_BOOL8;
    const bool value =
        command == GenTL::PORT_INFO_ACCESS_READ || command == GenTL::PORT_INFO_ACCESS_WRITE;
    if (buffer != nullptr) std::memcpy(buffer, &value, sizeof value);
    *size = sizeof value;
    return GenTL::GC_ERR_SUCCESS;
}

GC_ERROR ReadPort(GenTL::PORT_HANDLE port, uint64_t address, void* buffer, size_t* size) {
    const std::string& registers = PortOf(port).registers;
    auto* const bytes = static_cast<char*>(buffer);
    for (size_t i = 0; i < *size; ++i) {
        const uint64_t at = address + i;
        bytes[i] =
            at < registers.size() ? registers[static_cast<size_t>(at)] : static_cast<char>(at);
    }
    return GenTL::GC_ERR_SUCCESS;
}

GC_ERROR WritePort(GenTL::PORT_HANDLE, uint64_t, const void*, size_t*) {
    return GenTL::GC_ERR_SUCCESS;
}

}  // namespace

ZelCameraApi::Internal::GenTLModule<void*> FakePort::Module() {
    using ZelCameraApi::Internal::GenTLLib;
    static const std::shared_ptr<GenTLLib> lib = [] {
        auto made = std::make_shared<GenTLLib>(std::wstring());  // without a producer file
        made->GCGetNumPortURLs.Set(reinterpret_cast<void*>(&GetNumPortURLs));
        made->GCGetPortURLInfo.Set(reinterpret_cast<void*>(&GetPortURLInfo));
        made->GCGetPortInfo.Set(reinterpret_cast<void*>(&GetPortInfo));
        made->GCReadPort.Set(reinterpret_cast<void*>(&ReadPort));
        made->GCWritePort.Set(reinterpret_cast<void*>(&WritePort));
        return made;
    }();
    return {this, lib};
}

void FakePort::Announce(const std::string& description, const std::string& extension) {
    registers = description;
    char range[32];
    std::snprintf(range, sizeof range, ";0;%zX", description.size());
    url = "Local:camera." + extension + range;
}

}  // namespace Fuzz
