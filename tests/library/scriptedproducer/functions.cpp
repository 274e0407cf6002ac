// The GenTL functions: each records its call, and without a script acts on the World.
#include <algorithm>
#include <utility>

#include "tests/library/scriptedproducer/world.h"

namespace GenTL {

namespace {

using Scripted::Call;
using Scripted::Kind;
using Scripted::Object;
using Scripted::Reply;
using Scripted::Value;
using Scripted::World;
using Lock = std::unique_lock<std::mutex>;

Call Record(const char* function, void* handle, int64_t command = Scripted::AnyCommand,
            const char* id = nullptr) {
    Call call;
    call.function = function;
    call.handle = handle;
    call.command = command;
    if (id != nullptr) call.id = id;
    return call;
}

Call WithNumber(Call call, uint64_t number) {
    call.number = number;
    return call;
}

Call WithBuffer(Call call, const void* buffer) {
    call.sizeOnly = buffer == nullptr;
    return call;
}

// Answers a query with `value`, as far as the script does not answer it.
GC_ERROR Put(const Reply& reply, const Value& value, INFO_DATATYPE* type, void* buffer,
             size_t* size) {
    const std::vector<uint8_t>& bytes = reply.bytes ? *reply.bytes : value.bytes;
    if (type != nullptr) *type = reply.type.value_or(value.type);
    const size_t room = std::exchange(*size, reply.size.value_or(bytes.size()));
    if (buffer == nullptr) return GC_ERR_SUCCESS;
    // A script may lie about the size; never write beyond what the caller has.
    if (room < bytes.size() && !reply.bytes && !reply.size) return GC_ERR_BUFFER_TOO_SMALL;
    std::copy_n(bytes.begin(), std::min(room, bytes.size()), static_cast<uint8_t*>(buffer));
    return GC_ERR_SUCCESS;
}

// `find` returns the value or null for a command that is not known.
template <typename Find>
GC_ERROR Query(Call call, INFO_DATATYPE* type, void* buffer, size_t* size, Kind kind, Find&& find) {
    void* const handle = call.handle;
    const std::string function = call.function;
    return World::Get().Perform(
        WithBuffer(std::move(call), buffer), [&](Lock&, const Reply& reply) -> GC_ERROR {
            Object* const object = World::Get().Find(handle, kind, function.c_str());
            if (object == nullptr) return GC_ERR_INVALID_HANDLE;
            const std::optional<Value> value = find(*object);
            if (!value && !reply.bytes) return GC_ERR_NOT_AVAILABLE;
            return Put(reply, value.value_or(Value{}), type, buffer, size);
        });
}

template <typename Action>
GC_ERROR OnModule(Call call, Kind kind, Action&& action) {
    void* const handle = call.handle;
    const std::string function = call.function;
    return World::Get().Perform(std::move(call), [&](Lock&, const Reply& reply) -> GC_ERROR {
        Object* const object = World::Get().Find(handle, kind, function.c_str());
        if (object == nullptr) return GC_ERR_INVALID_HANDLE;
        return action(*object, reply);
    });
}

GC_ERROR CloseModule(const char* function, void* handle, Kind kind) {
    return OnModule(Record(function, handle), kind, [handle](Object&, const Reply&) -> GC_ERROR {
        World::Get().Close(handle);
        return GC_ERR_SUCCESS;
    });
}

GC_ERROR NotImplemented(Call call) {
    return World::Get().Perform(
        std::move(call), [](Lock&, const Reply&) -> GC_ERROR { return GC_ERR_NOT_IMPLEMENTED; });
}

template <typename T>
std::optional<Value> Lookup(const std::vector<std::pair<int32_t, T>>& table, int32_t command) {
    for (const auto& [key, value] : table) {
        if (key == command) return value;
    }
    return std::nullopt;
}

using Table = std::vector<std::pair<int32_t, Value>>;

std::optional<Value> SystemInfo(int32_t command) {
    static const Table table = {{TL_INFO_ID, Scripted::TextValue("scripted")},
                                {TL_INFO_VENDOR, Scripted::TextValue("Tests")},
                                {TL_INFO_MODEL, Scripted::TextValue("Scripted producer")},
                                {TL_INFO_VERSION, Scripted::TextValue("1.2.3")},
                                {TL_INFO_TLTYPE, Scripted::TextValue("Mixed")},
                                {TL_INFO_NAME, Scripted::TextValue("libZelCTI.cti")},
                                {TL_INFO_DISPLAYNAME, Scripted::TextValue("Scripted system")}};
    return Lookup(table, command);
}

std::optional<Value> InterfaceInfo(const std::string& id, int32_t command) {
    const Scripted::InterfaceSpec* const spec = World::Get().FindInterface(id);
    if (command == INTERFACE_INFO_ID) return Scripted::TextValue(id);
    if (command == INTERFACE_INFO_DISPLAYNAME) return Scripted::TextValue("Interface " + id);
    if (command == INTERFACE_INFO_TLTYPE) return Scripted::TextValue(spec ? spec->type : "Custom");
    if (command == INTERFACE_INFO_CUSTOM_ID) return Scripted::TextValue("Version of " + id);
    return std::nullopt;
}

std::optional<Value> DeviceInfo(const std::string& id, int32_t command) {
    static const std::vector<std::pair<int32_t, const char*>> texts = {
        {DEVICE_INFO_VENDOR, "Vendor of "},
        {DEVICE_INFO_MODEL, "Model of "},
        {DEVICE_INFO_DISPLAYNAME, "Display name of "},
        {DEVICE_INFO_USER_DEFINED_NAME, "User name of "},
        {DEVICE_INFO_SERIAL_NUMBER, "Serial number of "},
        {DEVICE_INFO_VERSION, "Version of "},
        {1100, "Host of "}};
    if (command == DEVICE_INFO_ID) return Scripted::TextValue(id);
    if (command == DEVICE_INFO_ACCESS_STATUS)
        return Scripted::NumberValue(INFO_DATATYPE_INT32, int32_t{DEVICE_ACCESS_STATUS_READWRITE});
    for (const auto& [key, text] : texts) {
        if (key == command) return Scripted::TextValue(text + id);
    }
    return std::nullopt;
}

std::optional<Value> PortInfo(const std::string& id, int32_t command) {
    if (command == PORT_INFO_ID) return Scripted::TextValue(id);
    if (command == PORT_INFO_TLTYPE) return Scripted::TextValue("U3V");
    if (command == PORT_INFO_PORTNAME) return Scripted::TextValue("Device");
    if (command == PORT_INFO_BIG_ENDIAN) return Scripted::BoolValue(false);
    return std::nullopt;
}

std::optional<Value> StreamInfo(const Object& stream, void* handle, int32_t command) {
    const auto count = [handle](bool queued) {
        return Scripted::SizeValue(World::Get().CountBuffers(handle, queued));
    };
    switch (command) {
        case STREAM_INFO_ID:
            return Scripted::TextValue(stream.id);
        case STREAM_INFO_NUM_DELIVERED:
            return Scripted::Uint64Value(stream.delivered);
        case STREAM_INFO_NUM_UNDERRUN:
            return Scripted::Uint64Value(7);
        case STREAM_INFO_NUM_ANNOUNCED:
            return count(false);
        case STREAM_INFO_NUM_QUEUED:
            return count(true);
        case STREAM_INFO_NUM_AWAIT_DELIVERY:
            return Scripted::SizeValue(5);
        case STREAM_INFO_PAYLOAD_SIZE:
            return Scripted::SizeValue(6000);
        case STREAM_INFO_IS_GRABBING:
            return Scripted::BoolValue(stream.grabbing);
        case STREAM_INFO_DEFINES_PAYLOADSIZE:
            return Scripted::BoolValue(true);
        case STREAM_INFO_BUF_ANNOUNCE_MIN:
            return Scripted::SizeValue(2);
        case STREAM_INFO_BUF_ALIGNMENT:
            return Scripted::SizeValue(64);
        default:
            return std::nullopt;
    }
}

std::optional<Value> BufferInfo(const Object& buffer, int32_t command) {
    const auto pointer = [](void* p) { return Scripted::NumberValue(INFO_DATATYPE_PTR, p); };
    switch (command) {
        case BUFFER_INFO_BASE:
            return pointer(buffer.base);
        case BUFFER_INFO_SIZE:
            return Scripted::SizeValue(buffer.size);
        case BUFFER_INFO_USER_PTR:
            return pointer(buffer.userPtr);
        case BUFFER_INFO_TIMESTAMP:
            return Scripted::Uint64Value(1003);
        case BUFFER_INFO_IS_INCOMPLETE:
            return Scripted::BoolValue(true);
        case BUFFER_INFO_WIDTH:
            return Scripted::SizeValue(100);
        case BUFFER_INFO_HEIGHT:
            return Scripted::SizeValue(50);
        case BUFFER_INFO_XOFFSET:
            return Scripted::SizeValue(1012);
        case BUFFER_INFO_YOFFSET:
            return Scripted::SizeValue(1013);
        case BUFFER_INFO_XPADDING:
            return Scripted::SizeValue(4);
        case BUFFER_INFO_YPADDING:
            return Scripted::SizeValue(1015);
        case BUFFER_INFO_FRAMEID:
            return Scripted::Uint64Value(1016);
        case BUFFER_INFO_IMAGEOFFSET:
            return Scripted::SizeValue(8);
        case BUFFER_INFO_PIXELFORMAT:
            return Scripted::Uint64Value(0x01080001);
        case BUFFER_INFO_DELIVERED_IMAGEHEIGHT:
            return Scripted::SizeValue(1022);
        case 1101:
            return Scripted::BoolValue(true);
        default:
            return std::nullopt;
    }
}

GC_ERROR Announce(Call call, void* memory, size_t size, void* priv, BUFFER_HANDLE* handle) {
    void* const stream = call.handle;
    call.number = size;
    call.object = memory;
    call.priv = priv;
    return OnModule(std::move(call), Kind::Stream, [=](Object& object, const Reply&) -> GC_ERROR {
        // The new object may move none of the others: `object` stays valid.
        *handle = World::Get().Open(Kind::Buffer, "of " + object.id, stream);
        Object& buffer = *World::Get().Find(*handle, Kind::Buffer, "Announce");
        if (memory == nullptr) buffer.memory.resize(size);
        buffer.base = memory != nullptr ? memory : buffer.memory.data();
        buffer.size = size;
        buffer.userPtr = priv;
        return GC_ERR_SUCCESS;
    });
}

// The changed flag of an update: false unless the script says otherwise.
GC_ERROR PutChanged(const Reply& reply, bool8_t* changed) {
    if (changed != nullptr) *changed = reply.bytes ? reply.bytes->at(0) : bool8_t{0};
    return GC_ERR_SUCCESS;
}

// Register access: `copy` moves bytes between the caller and the registers.
template <typename Copy>
GC_ERROR AccessPort(const char* function, void* port, uint64_t address, size_t* size, Copy&& copy) {
    Call call = WithNumber(Record(function, port), address);
    return World::Get().Perform(std::move(call), [&](Lock&, const Reply& reply) -> GC_ERROR {
        std::vector<uint8_t>& registers = World::Get().GetRegisters();
        if (address > registers.size() || *size > registers.size() - address)
            return GC_ERR_INVALID_ADDRESS;
        copy(registers.data() + address, *size);
        *size = reply.size.value_or(*size);
        return GC_ERR_SUCCESS;
    });
}

}  // namespace

extern "C" {

GC_ERROR GCGetInfo(TL_INFO_CMD cmd, INFO_DATATYPE* type, void* buffer, size_t* size) {
    return World::Get().Perform(WithBuffer(Record("GCGetInfo", nullptr, cmd), buffer),
                                [&](Lock&, const Reply& reply) -> GC_ERROR {
                                    const std::optional<Value> value = SystemInfo(cmd);
                                    if (!value) return GC_ERR_NOT_AVAILABLE;
                                    return Put(reply, *value, type, buffer, size);
                                });
}

GC_ERROR GCGetLastError(GC_ERROR* code, char* text, size_t* size) {
    return World::Get().Perform(Record("GCGetLastError", nullptr),
                                [&](Lock&, const Reply& reply) -> GC_ERROR {
                                    *code = GC_ERR_SUCCESS;
                                    return Put(reply, Scripted::TextValue(""), nullptr, text, size);
                                });
}

GC_ERROR GCInitLib() {
    return World::Get().Perform(Record("GCInitLib", nullptr), [](Lock&, const Reply&) -> GC_ERROR {
        World::Get().InitLibrary(1);
        return GC_ERR_SUCCESS;
    });
}

GC_ERROR GCCloseLib() {
    return World::Get().Perform(Record("GCCloseLib", nullptr), [](Lock&, const Reply&) -> GC_ERROR {
        World::Get().InitLibrary(-1);
        return GC_ERR_SUCCESS;
    });
}

GC_ERROR GCReadPort(PORT_HANDLE port, uint64_t address, void* buffer, size_t* size) {
    return AccessPort("GCReadPort", port, address, size,
                      [=](uint8_t* data, size_t n) { std::memcpy(buffer, data, n); });
}

GC_ERROR GCWritePort(PORT_HANDLE port, uint64_t address, const void* buffer, size_t* size) {
    return AccessPort("GCWritePort", port, address, size,
                      [=](uint8_t* data, size_t n) { std::memcpy(data, buffer, n); });
}

GC_ERROR GCGetPortURL(PORT_HANDLE port, char* /*url*/, size_t* /*size*/) {
    return NotImplemented(Record("GCGetPortURL", port));
}

GC_ERROR GCGetPortInfo(PORT_HANDLE port, PORT_INFO_CMD cmd, INFO_DATATYPE* type, void* buffer,
                       size_t* size) {
    return Query(Record("GCGetPortInfo", port, cmd), type, buffer, size, Kind::Port,
                 [=](const Object& object) { return PortInfo(object.id, cmd); });
}

GC_ERROR GCRegisterEvent(EVENTSRC_HANDLE source, EVENT_TYPE eventType, EVENT_HANDLE* event) {
    return World::Get().Perform(
        Record("GCRegisterEvent", source, eventType), [=](Lock&, const Reply&) -> GC_ERROR {
            World& world = World::Get();
            if (world.FindEvent(source, eventType) != nullptr) return GC_ERR_RESOURCE_IN_USE;
            *event = world.Open(Kind::Event, std::to_string(eventType), source);
            world.Find(*event, Kind::Event, "GCRegisterEvent")->eventType = eventType;
            return GC_ERR_SUCCESS;
        });
}

GC_ERROR GCUnregisterEvent(EVENTSRC_HANDLE source, EVENT_TYPE eventType) {
    return World::Get().Perform(Record("GCUnregisterEvent", source, eventType),
                                [=](Lock&, const Reply&) -> GC_ERROR {
                                    void* const event = World::Get().FindEvent(source, eventType);
                                    if (event == nullptr) return GC_ERR_NOT_INITIALIZED;
                                    World::Get().Close(event);
                                    return GC_ERR_SUCCESS;
                                });
}

GC_ERROR EventGetData(EVENT_HANDLE event, void* buffer, size_t* size, uint64_t timeout) {
    Call call = WithNumber(Record("EventGetData", event), timeout);
    return World::Get().Perform(std::move(call), [=](Lock& lock, const Reply& reply) -> GC_ERROR {
        if (reply.bytes) return Put(reply, {}, nullptr, buffer, size);
        return World::Get().AwaitEvent(lock, event, buffer, size, timeout);
    });
}

GC_ERROR EventGetDataInfo(EVENT_HANDLE event, const void* data, size_t dataSize,
                          EVENT_DATA_INFO_CMD cmd, INFO_DATATYPE* type, void* buffer,
                          size_t* size) {
    return Query(Record("EventGetDataInfo", event, cmd), type, buffer, size, Kind::Event,
                 [=](const Object&) -> std::optional<Value> {
                     const auto* const bytes = static_cast<const uint8_t*>(data);
                     if (cmd != EVENT_DATA_VALUE) return std::nullopt;
                     return Value{INFO_DATATYPE_BUFFER, {bytes, bytes + dataSize}};
                 });
}

GC_ERROR EventGetInfo(EVENT_HANDLE event, EVENT_INFO_CMD cmd, INFO_DATATYPE* type, void* buffer,
                      size_t* size) {
    return Query(Record("EventGetInfo", event, cmd), type, buffer, size, Kind::Event,
                 [=](const Object&) -> std::optional<Value> {
                     if (cmd != EVENT_INFO_DATA_SIZE_MAX) return std::nullopt;
                     return Scripted::SizeValue(64);
                 });
}

GC_ERROR EventFlush(EVENT_HANDLE event) {
    return OnModule(Record("EventFlush", event), Kind::Event,
                    [](Object& object, const Reply&) -> GC_ERROR {
                        object.queue.clear();
                        return GC_ERR_SUCCESS;
                    });
}

GC_ERROR EventKill(EVENT_HANDLE event) {
    return OnModule(Record("EventKill", event), Kind::Event,
                    [](Object& object, const Reply&) -> GC_ERROR {
                        object.killed = true;
                        return GC_ERR_SUCCESS;
                    });
}

GC_ERROR TLOpen(TL_HANDLE* tl) {
    return World::Get().Perform(Record("TLOpen", nullptr), [=](Lock&, const Reply&) -> GC_ERROR {
        *tl = World::Get().Open(Kind::System, "scripted", nullptr);
        return GC_ERR_SUCCESS;
    });
}

GC_ERROR TLClose(TL_HANDLE tl) {
    return CloseModule("TLClose", tl, Kind::System);
}

GC_ERROR TLGetInfo(TL_HANDLE tl, TL_INFO_CMD cmd, INFO_DATATYPE* type, void* buffer, size_t* size) {
    return Query(Record("TLGetInfo", tl, cmd), type, buffer, size, Kind::System,
                 [=](const Object&) { return SystemInfo(cmd); });
}

GC_ERROR TLGetNumInterfaces(TL_HANDLE tl, uint32_t* count) {
    return OnModule(Record("TLGetNumInterfaces", tl), Kind::System,
                    [=](Object&, const Reply&) -> GC_ERROR {
                        *count = static_cast<uint32_t>(World::Get().GetInterfaces().size());
                        return GC_ERR_SUCCESS;
                    });
}

GC_ERROR TLGetInterfaceID(TL_HANDLE tl, uint32_t index, char* id, size_t* size) {
    Call call = WithNumber(WithBuffer(Record("TLGetInterfaceID", tl), id), index);
    return OnModule(std::move(call), Kind::System, [=](Object&, const Reply& reply) -> GC_ERROR {
        const auto& interfaces = World::Get().GetInterfaces();
        if (index >= interfaces.size()) return GC_ERR_INVALID_INDEX;
        return Put(reply, Scripted::TextValue(interfaces[index].id), nullptr, id, size);
    });
}

GC_ERROR TLGetInterfaceInfo(TL_HANDLE tl, const char* id, INTERFACE_INFO_CMD cmd,
                            INFO_DATATYPE* type, void* buffer, size_t* size) {
    return Query(Record("TLGetInterfaceInfo", tl, cmd, id), type, buffer, size, Kind::System,
                 [=](const Object&) { return InterfaceInfo(id, cmd); });
}

GC_ERROR TLOpenInterface(TL_HANDLE tl, const char* id, IF_HANDLE* iface) {
    return OnModule(Record("TLOpenInterface", tl, Scripted::AnyCommand, id), Kind::System,
                    [=](Object&, const Reply&) -> GC_ERROR {
                        if (World::Get().FindInterface(id) == nullptr) return GC_ERR_INVALID_ID;
                        *iface = World::Get().Open(Kind::Interface, id, tl);
                        return GC_ERR_SUCCESS;
                    });
}

GC_ERROR TLUpdateInterfaceList(TL_HANDLE tl, bool8_t* changed, uint64_t timeout) {
    Call call = WithNumber(Record("TLUpdateInterfaceList", tl), timeout);
    call.object = changed;
    return OnModule(std::move(call), Kind::System, [=](Object&, const Reply& reply) -> GC_ERROR {
        return PutChanged(reply, changed);
    });
}

GC_ERROR IFClose(IF_HANDLE iface) {
    return CloseModule("IFClose", iface, Kind::Interface);
}

GC_ERROR IFGetInfo(IF_HANDLE iface, INTERFACE_INFO_CMD cmd, INFO_DATATYPE* type, void* buffer,
                   size_t* size) {
    return Query(Record("IFGetInfo", iface, cmd), type, buffer, size, Kind::Interface,
                 [=](const Object& object) { return InterfaceInfo(object.id, cmd); });
}

GC_ERROR IFGetNumDevices(IF_HANDLE iface, uint32_t* count) {
    return OnModule(Record("IFGetNumDevices", iface), Kind::Interface,
                    [=](Object& object, const Reply&) -> GC_ERROR {
                        const auto* const spec = World::Get().FindInterface(object.id);
                        *count = spec ? static_cast<uint32_t>(spec->devices.size()) : 0;
                        return GC_ERR_SUCCESS;
                    });
}

GC_ERROR IFGetDeviceID(IF_HANDLE iface, uint32_t index, char* id, size_t* size) {
    Call call = WithNumber(WithBuffer(Record("IFGetDeviceID", iface), id), index);
    return OnModule(std::move(call), Kind::Interface,
                    [=](Object& object, const Reply& reply) -> GC_ERROR {
                        const auto* const spec = World::Get().FindInterface(object.id);
                        if (spec == nullptr || index >= spec->devices.size())
                            return GC_ERR_INVALID_INDEX;
                        const Value value = Scripted::TextValue(spec->devices[index]);
                        return Put(reply, value, nullptr, id, size);
                    });
}

GC_ERROR IFUpdateDeviceList(IF_HANDLE iface, bool8_t* changed, uint64_t timeout) {
    Call call = WithNumber(Record("IFUpdateDeviceList", iface), timeout);
    return OnModule(std::move(call), Kind::Interface, [=](Object&, const Reply& reply) -> GC_ERROR {
        return PutChanged(reply, changed);
    });
}

GC_ERROR IFGetDeviceInfo(IF_HANDLE iface, const char* id, DEVICE_INFO_CMD cmd, INFO_DATATYPE* type,
                         void* buffer, size_t* size) {
    return Query(Record("IFGetDeviceInfo", iface, cmd, id), type, buffer, size, Kind::Interface,
                 [=](const Object&) { return DeviceInfo(id, cmd); });
}

GC_ERROR IFOpenDevice(IF_HANDLE iface, const char* id, DEVICE_ACCESS_FLAGS flags,
                      DEV_HANDLE* device) {
    return OnModule(
        Record("IFOpenDevice", iface, flags, id), Kind::Interface,
        [=](Object& object, const Reply&) -> GC_ERROR {
            const auto* const spec = World::Get().FindInterface(object.id);
            if (spec == nullptr || std::count(spec->devices.begin(), spec->devices.end(), id) == 0)
                return GC_ERR_INVALID_ID;
            *device = World::Get().Open(Kind::Device, id, iface);
            return GC_ERR_SUCCESS;
        });
}

GC_ERROR DevGetPort(DEV_HANDLE device, PORT_HANDLE* port) {
    return OnModule(Record("DevGetPort", device), Kind::Device,
                    [=](Object& object, const Reply&) -> GC_ERROR {
                        *port = World::Get().Open(Kind::Port, object.id, device);
                        return GC_ERR_SUCCESS;
                    });
}

GC_ERROR DevGetNumDataStreams(DEV_HANDLE device, uint32_t* count) {
    return OnModule(Record("DevGetNumDataStreams", device), Kind::Device,
                    [=](Object&, const Reply&) -> GC_ERROR {
                        *count = 1;
                        return GC_ERR_SUCCESS;
                    });
}

GC_ERROR DevGetDataStreamID(DEV_HANDLE device, uint32_t index, char* id, size_t* size) {
    Call call = WithNumber(WithBuffer(Record("DevGetDataStreamID", device), id), index);
    return OnModule(std::move(call), Kind::Device, [=](Object&, const Reply& reply) -> GC_ERROR {
        if (index > 0) return GC_ERR_INVALID_INDEX;
        return Put(reply, Scripted::TextValue("stream0"), nullptr, id, size);
    });
}

GC_ERROR DevOpenDataStream(DEV_HANDLE device, const char* id, DS_HANDLE* stream) {
    return OnModule(Record("DevOpenDataStream", device, Scripted::AnyCommand, id), Kind::Device,
                    [=](Object&, const Reply&) -> GC_ERROR {
                        if (std::strcmp(id, "stream0") != 0) return GC_ERR_INVALID_ID;
                        *stream = World::Get().Open(Kind::Stream, id, device);
                        return GC_ERR_SUCCESS;
                    });
}

GC_ERROR DevGetInfo(DEV_HANDLE device, DEVICE_INFO_CMD cmd, INFO_DATATYPE* type, void* buffer,
                    size_t* size) {
    return Query(Record("DevGetInfo", device, cmd), type, buffer, size, Kind::Device,
                 [=](const Object& object) { return DeviceInfo(object.id, cmd); });
}

GC_ERROR DevClose(DEV_HANDLE device) {
    return CloseModule("DevClose", device, Kind::Device);
}

GC_ERROR DSAnnounceBuffer(DS_HANDLE stream, void* memory, size_t size, void* priv,
                          BUFFER_HANDLE* buffer) {
    return Announce(Record("DSAnnounceBuffer", stream), memory, size, priv, buffer);
}

GC_ERROR DSAllocAndAnnounceBuffer(DS_HANDLE stream, size_t size, void* priv,
                                  BUFFER_HANDLE* buffer) {
    return Announce(Record("DSAllocAndAnnounceBuffer", stream), nullptr, size, priv, buffer);
}

GC_ERROR DSFlushQueue(DS_HANDLE stream, ACQ_QUEUE_TYPE operation) {
    return OnModule(Record("DSFlushQueue", stream, operation), Kind::Stream,
                    [=](Object&, const Reply&) -> GC_ERROR {
                        World::Get().FlushQueue(stream, operation);
                        return GC_ERR_SUCCESS;
                    });
}

GC_ERROR DSStartAcquisition(DS_HANDLE stream, ACQ_START_FLAGS flags, uint64_t count) {
    Call call = WithNumber(Record("DSStartAcquisition", stream, flags), count);
    return OnModule(std::move(call), Kind::Stream, [](Object& object, const Reply&) -> GC_ERROR {
        object.grabbing = true;
        return GC_ERR_SUCCESS;
    });
}

GC_ERROR DSStopAcquisition(DS_HANDLE stream, ACQ_STOP_FLAGS flags) {
    return OnModule(Record("DSStopAcquisition", stream, flags), Kind::Stream,
                    [](Object& object, const Reply&) -> GC_ERROR {
                        object.grabbing = false;
                        return GC_ERR_SUCCESS;
                    });
}

GC_ERROR DSGetInfo(DS_HANDLE stream, STREAM_INFO_CMD cmd, INFO_DATATYPE* type, void* buffer,
                   size_t* size) {
    return Query(Record("DSGetInfo", stream, cmd), type, buffer, size, Kind::Stream,
                 [=](const Object& object) { return StreamInfo(object, stream, cmd); });
}

GC_ERROR DSGetBufferID(DS_HANDLE stream, uint32_t index, BUFFER_HANDLE* buffer) {
    return OnModule(WithNumber(Record("DSGetBufferID", stream), index), Kind::Stream,
                    [=](Object&, const Reply&) -> GC_ERROR {
                        *buffer = World::Get().GetBuffer(stream, index);
                        return *buffer != nullptr ? GC_ERR_SUCCESS : GC_ERR_INVALID_INDEX;
                    });
}

GC_ERROR DSClose(DS_HANDLE stream) {
    return CloseModule("DSClose", stream, Kind::Stream);
}

GC_ERROR DSRevokeBuffer(DS_HANDLE stream, BUFFER_HANDLE buffer, void** base, void** priv) {
    Call call = Record("DSRevokeBuffer", stream);
    call.object = buffer;
    return World::Get().Perform(std::move(call), [=](Lock&, const Reply&) -> GC_ERROR {
        const Object* const object = World::Get().Find(buffer, Kind::Buffer, "DSRevokeBuffer");
        if (object == nullptr || object->parent != stream) return GC_ERR_INVALID_HANDLE;
        if (base != nullptr) *base = object->base;
        if (priv != nullptr) *priv = object->userPtr;
        World::Get().Close(buffer);
        return GC_ERR_SUCCESS;
    });
}

GC_ERROR DSQueueBuffer(DS_HANDLE stream, BUFFER_HANDLE buffer) {
    Call call = Record("DSQueueBuffer", stream);
    call.object = buffer;
    return World::Get().Perform(std::move(call), [=](Lock&, const Reply&) -> GC_ERROR {
        Object* const object = World::Get().Find(buffer, Kind::Buffer, "DSQueueBuffer");
        if (object == nullptr || object->parent != stream) return GC_ERR_INVALID_HANDLE;
        object->queued = true;
        return GC_ERR_SUCCESS;
    });
}

GC_ERROR DSGetBufferInfo(DS_HANDLE stream, BUFFER_HANDLE buffer, BUFFER_INFO_CMD cmd,
                         INFO_DATATYPE* type, void* out, size_t* size) {
    Call call = Record("DSGetBufferInfo", stream, cmd);
    call.object = buffer;
    return Query(
        std::move(call), type, out, size, Kind::Stream, [=](const Object&) -> std::optional<Value> {
            const Object* const object = World::Get().Find(buffer, Kind::Buffer, "DSGetBufferInfo");
            if (object == nullptr || object->parent != stream) return std::nullopt;
            return BufferInfo(*object, cmd);
        });
}

GC_ERROR GCGetNumPortURLs(PORT_HANDLE port, uint32_t* count) {
    return World::Get().Perform(Record("GCGetNumPortURLs", port),
                                [=](Lock&, const Reply&) -> GC_ERROR {
                                    *count = 0;
                                    return GC_ERR_SUCCESS;
                                });
}

GC_ERROR GCGetPortURLInfo(PORT_HANDLE port, uint32_t index, URL_INFO_CMD cmd,
                          INFO_DATATYPE* /*type*/, void* /*buffer*/, size_t* /*size*/) {
    return NotImplemented(WithNumber(Record("GCGetPortURLInfo", port, cmd), index));
}

GC_ERROR GCReadPortStacked(PORT_HANDLE port, PORT_REGISTER_STACK_ENTRY* /*entries*/,
                           size_t* /*count*/) {
    return NotImplemented(Record("GCReadPortStacked", port));
}

GC_ERROR GCWritePortStacked(PORT_HANDLE port, PORT_REGISTER_STACK_ENTRY* /*entries*/,
                            size_t* /*count*/) {
    return NotImplemented(Record("GCWritePortStacked", port));
}

GC_ERROR DSGetBufferChunkData(DS_HANDLE stream, BUFFER_HANDLE /*buffer*/,
                              SINGLE_CHUNK_DATA* /*chunks*/, size_t* /*count*/) {
    return NotImplemented(Record("DSGetBufferChunkData", stream));
}

GC_ERROR IFGetParentTL(IF_HANDLE iface, TL_HANDLE* tl) {
    return OnModule(Record("IFGetParentTL", iface), Kind::Interface,
                    [=](Object& object, const Reply&) -> GC_ERROR {
                        *tl = object.parent;
                        return GC_ERR_SUCCESS;
                    });
}

GC_ERROR DevGetParentIF(DEV_HANDLE device, IF_HANDLE* iface) {
    return OnModule(Record("DevGetParentIF", device), Kind::Device,
                    [=](Object& object, const Reply&) -> GC_ERROR {
                        *iface = object.parent;
                        return GC_ERR_SUCCESS;
                    });
}

GC_ERROR DSGetParentDev(DS_HANDLE stream, DEV_HANDLE* device) {
    return OnModule(Record("DSGetParentDev", stream), Kind::Stream,
                    [=](Object& object, const Reply&) -> GC_ERROR {
                        *device = object.parent;
                        return GC_ERR_SUCCESS;
                    });
}

}  // extern "C"

// The list of the standard, so that a function missing here does not link.
#define SCRIPTED_POINTER(name, parameters) reinterpret_cast<void*>(&name),
extern const std::vector<void*> allFunctions;
const std::vector<void*> allFunctions = {GENTL_FUNCTIONS_1_4(SCRIPTED_POINTER)};
#undef SCRIPTED_POINTER

}  // namespace GenTL
