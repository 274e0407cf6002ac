// The GenTL functions: each records its call, and without a script acts on the World.
#include <algorithm>
#include <type_traits>
#include <utility>

#include "tests/library/scriptedproducer/world.h"

namespace GenTL {

namespace {

using Scripted::BoolValue;
using Scripted::Call;
using Scripted::Kind;
using Scripted::NumberValue;
using Scripted::Object;
using Scripted::Reply;
using Scripted::SizeValue;
using Scripted::TextValue;
using Scripted::Uint64Value;
using Scripted::Value;
using Scripted::World;
using Lock = std::unique_lock<std::mutex>;

World& world = World::Get();

Call Record(const char* function, void* handle, int64_t command = Scripted::kAnyCommand,
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

Call WithObject(Call call, void* object) {
    call.object = object;
    return call;
}

// Runs an action that returns a code, or nothing when it always succeeds.
template <typename Action, typename... Arguments>
GC_ERROR CodeOf(Action&& action, Arguments&&... arguments) {
    if constexpr (std::is_void_v<std::invoke_result_t<Action, Arguments...>>) {
        action(arguments...);
        return GC_ERR_SUCCESS;
    } else {
        return action(arguments...);
    }
}

// A call that asks for no module: `action()`.
template <typename Action>
GC_ERROR Perform(const Call& call, Action&& action) {
    return world.Perform(call, [&](Lock&, const Reply&) { return CodeOf(action); });
}

GC_ERROR NotImplemented(const Call& call) {
    return Perform(call, [] { return GC_ERR_NOT_IMPLEMENTED; });
}

// A call on an open module: `action(object, reply)`.
template <typename Action>
GC_ERROR OnModuleWithReply(const Call& call, Kind kind, Action&& action) {
    return world.Perform(call, [&](Lock&, const Reply& reply) -> GC_ERROR {
        Object* const object = world.Find(call.handle, kind, call.function.c_str());
        return object != nullptr ? CodeOf(action, *object, reply) : GC_ERR_INVALID_HANDLE;
    });
}

// The same with `action(object)`.
template <typename Action>
GC_ERROR OnModule(const Call& call, Kind kind, Action&& action) {
    return OnModuleWithReply(call, kind,
                             [&](Object& object, const Reply&) { return CodeOf(action, object); });
}

// A call on a buffer of a stream.
template <typename Action>
GC_ERROR OnBuffer(const Call& call, Action&& action) {
    return Perform(call, [&]() -> GC_ERROR {
        Object* const buffer = world.Find(call.object, Kind::Buffer, call.function.c_str());
        if (buffer == nullptr || buffer->parent != call.handle) return GC_ERR_INVALID_HANDLE;
        return CodeOf(action, *buffer);
    });
}

// Where a query puts its answer.
struct Out {
    INFO_DATATYPE* type;
    void* buffer;
    size_t* size;
};

// Answers with `value`, as far as the script does not answer.
GC_ERROR Put(const Reply& reply, const Value& value, const Out& out) {
    const std::vector<uint8_t>& bytes = reply.bytes ? *reply.bytes : value.bytes;
    if (out.type != nullptr) *out.type = reply.type.value_or(value.type);
    const size_t room = std::exchange(*out.size, reply.size.value_or(bytes.size()));
    if (out.buffer == nullptr) return GC_ERR_SUCCESS;
    // A script may lie about the size; never write beyond what the caller has.
    if (room < bytes.size() && !reply.bytes && !reply.size) return GC_ERR_BUFFER_TOO_SMALL;
    std::copy_n(bytes.begin(), std::min(room, bytes.size()), static_cast<uint8_t*>(out.buffer));
    return GC_ERR_SUCCESS;
}

// `find(object)` returns the value, or nothing for a command that is not known.
template <typename Find>
GC_ERROR Query(Call call, Kind kind, const Out& out, Find&& find) {
    call.sizeOnly = out.buffer == nullptr;
    return OnModuleWithReply(call, kind, [&](Object& object, const Reply& reply) -> GC_ERROR {
        const std::optional<Value> value = find(object);
        if (!value && !reply.bytes) return GC_ERR_NOT_AVAILABLE;
        return Put(reply, value.value_or(Value{}), out);
    });
}

// What the modules answer.

using Table = std::vector<std::pair<int32_t, Value>>;

std::optional<Value> Lookup(const Table& table, int32_t command) {
    for (const auto& [key, value] : table) {
        if (key == command) return value;
    }
    return std::nullopt;
}

std::optional<Value> SystemInfo(int32_t command) {
    return Lookup({{TL_INFO_VERSION, TextValue("1.2.3")},
                   {TL_INFO_DISPLAYNAME, TextValue("Scripted system")}},
                  command);
}

std::optional<Value> InterfaceInfo(const Object& iface, int32_t command) {
    const std::string& id = iface.id;
    return Lookup({{INTERFACE_INFO_DISPLAYNAME, TextValue("Interface " + id)},
                   {INTERFACE_INFO_TLTYPE, TextValue(world.TypeOf(iface))},
                   {INTERFACE_INFO_CUSTOM_ID, TextValue("Version of " + id)}},
                  command);
}

std::optional<Value> DeviceInfo(const std::string& id, int32_t command) {
    return Lookup({{DEVICE_INFO_VENDOR, TextValue("Vendor of " + id)},
                   {DEVICE_INFO_MODEL, TextValue("Model of " + id)},
                   {DEVICE_INFO_DISPLAYNAME, TextValue("Display name of " + id)},
                   {DEVICE_INFO_ACCESS_STATUS,
                    NumberValue(INFO_DATATYPE_INT32, int32_t{DEVICE_ACCESS_STATUS_READWRITE})},
                   {DEVICE_INFO_USER_DEFINED_NAME, TextValue("User name of " + id)},
                   {DEVICE_INFO_SERIAL_NUMBER, TextValue("Serial number of " + id)},
                   {DEVICE_INFO_VERSION, TextValue("Version of " + id)},
                   {1100, TextValue("Host of " + id)}},
                  command);
}

std::optional<Value> StreamInfo(const Object& stream, void* handle, int32_t command) {
    return Lookup({{STREAM_INFO_NUM_DELIVERED, Uint64Value(stream.delivered)},
                   {STREAM_INFO_NUM_QUEUED, SizeValue(world.CountQueued(handle))},
                   {STREAM_INFO_PAYLOAD_SIZE, SizeValue(6000)},
                   {STREAM_INFO_IS_GRABBING, BoolValue(stream.grabbing)},
                   {STREAM_INFO_DEFINES_PAYLOADSIZE, BoolValue(true)},
                   {STREAM_INFO_BUF_ANNOUNCE_MIN, SizeValue(2)}},
                  command);
}

std::optional<Value> PortInfo(const Object& module, int32_t command) {
    return Lookup({{PORT_INFO_ID, TextValue("Port of " + module.id)},
                   {PORT_INFO_TLTYPE, TextValue(world.TypeOf(module))},
                   {PORT_INFO_BIG_ENDIAN, BoolValue(false)},
                   {PORT_INFO_ACCESS_READ, BoolValue(true)},
                   {PORT_INFO_ACCESS_WRITE, BoolValue(true)},
                   {PORT_INFO_ACCESS_NA, BoolValue(false)},
                   {PORT_INFO_ACCESS_NI, BoolValue(false)},
                   {PORT_INFO_PORTNAME, TextValue("Device")}},
                  command);
}

std::optional<Value> BufferInfo(const Object& buffer, int32_t command) {
    return Lookup({{BUFFER_INFO_BASE, NumberValue(INFO_DATATYPE_PTR, buffer.base)},
                   {BUFFER_INFO_SIZE, SizeValue(buffer.size)},
                   {BUFFER_INFO_USER_PTR, NumberValue(INFO_DATATYPE_PTR, buffer.userPtr)},
                   {BUFFER_INFO_TIMESTAMP, Uint64Value(1003)},
                   {BUFFER_INFO_IS_INCOMPLETE, BoolValue(true)},
                   {BUFFER_INFO_WIDTH, SizeValue(100)},
                   {BUFFER_INFO_HEIGHT, SizeValue(50)},
                   {BUFFER_INFO_XOFFSET, SizeValue(1012)},
                   {BUFFER_INFO_YOFFSET, SizeValue(1013)},
                   {BUFFER_INFO_XPADDING, SizeValue(4)},
                   {BUFFER_INFO_YPADDING, SizeValue(1015)},
                   {BUFFER_INFO_FRAMEID, Uint64Value(1016)},
                   {BUFFER_INFO_IMAGEOFFSET, SizeValue(8)},
                   {BUFFER_INFO_PIXELFORMAT, Uint64Value(0x01080001)},
                   {BUFFER_INFO_DELIVERED_IMAGEHEIGHT, SizeValue(1022)},
                   {BUFFER_INFO_SIZE_FILLED, SizeValue(buffer.size)},
                   {1101, BoolValue(true)}},
                  command);
}

// Each value differs from all others of both parts.
std::optional<Value> PartInfo(const Object& buffer, uint32_t part, int32_t command) {
    if (part >= 2) return std::nullopt;
    const size_t number = 2000 + 100 * part + static_cast<size_t>(command);
    switch (command) {
        case BUFFER_PART_INFO_BASE:
            return NumberValue(INFO_DATATYPE_PTR, buffer.base);
        case BUFFER_PART_INFO_DATA_FORMAT:
        case BUFFER_PART_INFO_DATA_FORMAT_NAMESPACE:
        case BUFFER_PART_INFO_SOURCE_ID:
        case BUFFER_PART_INFO_REGION_ID:
        case BUFFER_PART_INFO_DATA_PURPOSE_ID:
            return Uint64Value(number);
        default:
            return SizeValue(number);
    }
}

// What the modules have in common.

GC_ERROR CloseModule(const char* function, void* handle, Kind kind) {
    return OnModule(Record(function, handle), kind, [=](Object&) { world.Close(handle); });
}

GC_ERROR CountChildren(const char* function, void* handle, Kind kind, uint32_t* count) {
    return OnModuleWithReply(
        Record(function, handle), kind, [=](Object& object, const Reply& reply) {
            *count = static_cast<uint32_t>(reply.size.value_or(world.ChildrenOf(object).size()));
        });
}

GC_ERROR GetChildId(const Call& call, Kind kind, const Out& out) {
    return Query(call, kind, out, [&](const Object& object) -> std::optional<Value> {
        const std::vector<std::string> ids = world.ChildrenOf(object);
        if (*call.number >= ids.size()) return std::nullopt;
        return TextValue(ids[*call.number]);
    });
}

GC_ERROR OpenChild(const Call& call, Kind kind, Kind childKind, void** child) {
    return OnModule(call, kind, [&](Object& object) -> GC_ERROR {
        const std::vector<std::string> ids = world.ChildrenOf(object);
        if (std::count(ids.begin(), ids.end(), call.id) == 0) return GC_ERR_INVALID_ID;
        *child = world.Open(childKind, call.id, call.handle);
        return GC_ERR_SUCCESS;
    });
}

// Nothing changed unless the script says otherwise.
GC_ERROR UpdateList(const Call& call, Kind kind, bool8_t* changed) {
    return OnModuleWithReply(call, kind, [=](Object&, const Reply& reply) {
        if (changed != nullptr) *changed = reply.bytes ? reply.bytes->at(0) : bool8_t{0};
    });
}

// `memory` is null for a buffer of the producer's own.
GC_ERROR Announce(Call call, void* memory, size_t size, void* priv, BUFFER_HANDLE* handle) {
    void* const stream = call.handle;
    call.number = size;
    call.object = memory;
    call.priv = priv;
    constexpr size_t kLargest = size_t{1} << 30;
    return OnModuleWithReply(call, Kind::Stream, [=](Object& object, const Reply&) -> GC_ERROR {
        if (size > kLargest) return GenTL::GC_ERR_OUT_OF_MEMORY;
        *handle = world.Open(Kind::Buffer, "of " + object.id, stream);
        Object& buffer = *world.Find(*handle, Kind::Buffer, "Announce");
        if (memory == nullptr) buffer.memory.resize(size);
        buffer.base = memory != nullptr ? memory : buffer.memory.data();
        buffer.size = size;
        buffer.userPtr = priv;
        return 0;
    });
}

// `copy` moves bytes between the caller and the registers.
template <typename Copy>
GC_ERROR AccessPort(Call call, uint64_t address, size_t* size, Copy&& copy) {
    call.number = address;
    return OnModuleWithReply(call, Scripted::kAnyModule, [&](Object&, Reply reply) -> GC_ERROR {
        std::vector<uint8_t>& registers = world.GetRegisters();
        const bool inside = address <= registers.size() && *size <= registers.size() - address;
        if (reply.bytes) {
            reply.bytes->resize(*size);
        } else if (!inside) {
            return GC_ERR_INVALID_ADDRESS;
        }
        copy(reply.bytes ? reply.bytes->data() : registers.data() + address, *size);
        *size = reply.size.value_or(*size);
        return GC_ERR_SUCCESS;
    });
}

}  // namespace

extern "C" {

GC_ERROR GCInitLib() {
    return Perform(Record(__func__, nullptr), [] { world.InitLibrary(1); });
}

GC_ERROR GCCloseLib() {
    return Perform(Record(__func__, nullptr), [] { world.InitLibrary(-1); });
}

GC_ERROR GCReadPort(PORT_HANDLE port, uint64_t address, void* buffer, size_t* size) {
    return AccessPort(Record(__func__, port), address, size,
                      [=](const uint8_t* data, size_t n) { std::memcpy(buffer, data, n); });
}

GC_ERROR GCWritePort(PORT_HANDLE port, uint64_t address, const void* buffer, size_t* size) {
    Call call = Record(__func__, port);
    const auto* const bytes = static_cast<const uint8_t*>(buffer);
    if (bytes != nullptr) call.data.assign(bytes, bytes + *size);
    return AccessPort(std::move(call), address, size,
                      [=](uint8_t* data, size_t n) { std::memcpy(data, buffer, n); });
}

GC_ERROR GCGetPortInfo(PORT_HANDLE port, PORT_INFO_CMD cmd, INFO_DATATYPE* type, void* buffer,
                       size_t* size) {
    return Query(Record(__func__, port, cmd), Scripted::kAnyModule, {type, buffer, size},
                 [=](const Object& object) { return PortInfo(object, cmd); });
}

// The script tells the number as the size.
GC_ERROR GCGetNumPortURLs(PORT_HANDLE port, uint32_t* count) {
    return OnModuleWithReply(Record(__func__, port), Scripted::kAnyModule,
                             [=](Object&, const Reply& reply) {
                                 const size_t urls = world.DescriptionUrl().empty() ? 0 : 1;
                                 *count = static_cast<uint32_t>(reply.size.value_or(urls));
                             });
}

GC_ERROR GCGetPortURLInfo(PORT_HANDLE port, uint32_t index, URL_INFO_CMD cmd, INFO_DATATYPE* type,
                          void* buffer, size_t* size) {
    return Query(WithNumber(Record(__func__, port, cmd), index), Scripted::kAnyModule,
                 {type, buffer, size}, [=](const Object&) {
                     return Lookup({{URL_INFO_URL, TextValue(world.DescriptionUrl())}}, cmd);
                 });
}

GC_ERROR GCRegisterEvent(EVENTSRC_HANDLE source, EVENT_TYPE eventType, EVENT_HANDLE* event) {
    return Perform(Record(__func__, source, eventType), [=]() -> GC_ERROR {
        if (world.FindEvent(source, eventType) != nullptr) return GC_ERR_RESOURCE_IN_USE;
        *event = world.Open(Kind::Event, std::to_string(eventType), source);
        world.Find(*event, Kind::Event, "GCRegisterEvent")->eventType = eventType;
        return GC_ERR_SUCCESS;
    });
}

GC_ERROR GCUnregisterEvent(EVENTSRC_HANDLE source, EVENT_TYPE eventType) {
    return Perform(Record(__func__, source, eventType), [=]() -> GC_ERROR {
        void* const event = world.FindEvent(source, eventType);
        if (event == nullptr) return GC_ERR_NOT_INITIALIZED;
        world.Close(event);
        return GC_ERR_SUCCESS;
    });
}

GC_ERROR EventGetData(EVENT_HANDLE event, void* buffer, size_t* size, uint64_t timeout) {
    return world.Perform(WithNumber(Record(__func__, event), timeout),
                         [=](Lock& lock, const Reply&) {
                             return world.AwaitEvent(lock, event, buffer, size, timeout);
                         });
}

GC_ERROR EventGetInfo(EVENT_HANDLE event, EVENT_INFO_CMD cmd, INFO_DATATYPE* type, void* buffer,
                      size_t* size) {
    return Query(Record(__func__, event, cmd), Kind::Event, {type, buffer, size},
                 [=](const Object&) {
                     return Lookup({{EVENT_INFO_DATA_SIZE_MAX, SizeValue(64)}}, cmd);
                 });
}

GC_ERROR EventKill(EVENT_HANDLE event) {
    return OnModule(Record(__func__, event), Kind::Event,
                    [](Object& object) { object.killed = true; });
}

GC_ERROR EventFlush(EVENT_HANDLE event) {
    return OnModule(Record(__func__, event), Kind::Event,
                    [](Object& object) { object.queue.clear(); });
}

GC_ERROR TLOpen(TL_HANDLE* tl) {
    return Perform(Record(__func__, nullptr),
                   [=] { *tl = world.Open(Kind::System, "scripted", nullptr); });
}

GC_ERROR TLClose(TL_HANDLE tl) {
    return CloseModule(__func__, tl, Kind::System);
}

GC_ERROR TLGetInfo(TL_HANDLE tl, TL_INFO_CMD cmd, INFO_DATATYPE* type, void* buffer, size_t* size) {
    return Query(Record(__func__, tl, cmd), Kind::System, {type, buffer, size},
                 [=](const Object&) { return SystemInfo(cmd); });
}

GC_ERROR TLGetNumInterfaces(TL_HANDLE tl, uint32_t* count) {
    return CountChildren(__func__, tl, Kind::System, count);
}

GC_ERROR TLGetInterfaceID(TL_HANDLE tl, uint32_t index, char* id, size_t* size) {
    return GetChildId(WithNumber(Record(__func__, tl), index), Kind::System, {nullptr, id, size});
}

GC_ERROR TLOpenInterface(TL_HANDLE tl, const char* id, IF_HANDLE* iface) {
    return OpenChild(Record(__func__, tl, Scripted::kAnyCommand, id), Kind::System, Kind::Interface,
                     iface);
}

GC_ERROR TLUpdateInterfaceList(TL_HANDLE tl, bool8_t* changed, uint64_t timeout) {
    return UpdateList(WithObject(WithNumber(Record(__func__, tl), timeout), changed), Kind::System,
                      changed);
}

GC_ERROR IFClose(IF_HANDLE iface) {
    return CloseModule(__func__, iface, Kind::Interface);
}

GC_ERROR IFGetInfo(IF_HANDLE iface, INTERFACE_INFO_CMD cmd, INFO_DATATYPE* type, void* buffer,
                   size_t* size) {
    return Query(Record(__func__, iface, cmd), Kind::Interface, {type, buffer, size},
                 [=](const Object& object) { return InterfaceInfo(object, cmd); });
}

GC_ERROR IFGetNumDevices(IF_HANDLE iface, uint32_t* count) {
    return CountChildren(__func__, iface, Kind::Interface, count);
}

GC_ERROR IFGetDeviceID(IF_HANDLE iface, uint32_t index, char* id, size_t* size) {
    return GetChildId(WithNumber(Record(__func__, iface), index), Kind::Interface,
                      {nullptr, id, size});
}

GC_ERROR IFUpdateDeviceList(IF_HANDLE iface, bool8_t* changed, uint64_t timeout) {
    return UpdateList(WithNumber(Record(__func__, iface), timeout), Kind::Interface, changed);
}

GC_ERROR IFGetDeviceInfo(IF_HANDLE iface, const char* id, DEVICE_INFO_CMD cmd, INFO_DATATYPE* type,
                         void* buffer, size_t* size) {
    return Query(Record(__func__, iface, cmd, id), Kind::Interface, {type, buffer, size},
                 [=](const Object&) { return DeviceInfo(id, cmd); });
}

GC_ERROR IFOpenDevice(IF_HANDLE iface, const char* id, DEVICE_ACCESS_FLAGS flags,
                      DEV_HANDLE* device) {
    return OpenChild(Record(__func__, iface, flags, id), Kind::Interface, Kind::Device, device);
}

GC_ERROR DevGetPort(DEV_HANDLE device, PORT_HANDLE* port) {
    return OnModule(Record(__func__, device), Kind::Device,
                    [=](Object& object) { *port = world.Open(Kind::Port, object.id, device); });
}

GC_ERROR DevGetNumDataStreams(DEV_HANDLE device, uint32_t* count) {
    return CountChildren(__func__, device, Kind::Device, count);
}

GC_ERROR DevGetDataStreamID(DEV_HANDLE device, uint32_t index, char* id, size_t* size) {
    return GetChildId(WithNumber(Record(__func__, device), index), Kind::Device,
                      {nullptr, id, size});
}

GC_ERROR DevOpenDataStream(DEV_HANDLE device, const char* id, DS_HANDLE* stream) {
    return OpenChild(Record(__func__, device, Scripted::kAnyCommand, id), Kind::Device,
                     Kind::Stream, stream);
}

GC_ERROR DevClose(DEV_HANDLE device) {
    return CloseModule(__func__, device, Kind::Device);
}

GC_ERROR DSAnnounceBuffer(DS_HANDLE stream, void* memory, size_t size, void* priv,
                          BUFFER_HANDLE* buffer) {
    return Announce(Record(__func__, stream), memory, size, priv, buffer);
}

GC_ERROR DSAllocAndAnnounceBuffer(DS_HANDLE stream, size_t size, void* priv,
                                  BUFFER_HANDLE* buffer) {
    return Announce(Record(__func__, stream), nullptr, size, priv, buffer);
}

GC_ERROR DSFlushQueue(DS_HANDLE stream, ACQ_QUEUE_TYPE operation) {
    return OnModule(Record(__func__, stream, operation), Kind::Stream,
                    [=](Object&) { world.FlushQueue(stream, operation); });
}

GC_ERROR DSStartAcquisition(DS_HANDLE stream, ACQ_START_FLAGS flags, uint64_t count) {
    return OnModule(WithNumber(Record(__func__, stream, flags), count), Kind::Stream,
                    [](Object& object) { object.grabbing = true; });
}

GC_ERROR DSStopAcquisition(DS_HANDLE stream, ACQ_STOP_FLAGS flags) {
    return OnModule(Record(__func__, stream, flags), Kind::Stream,
                    [](Object& object) { object.grabbing = false; });
}

GC_ERROR DSGetInfo(DS_HANDLE stream, STREAM_INFO_CMD cmd, INFO_DATATYPE* type, void* buffer,
                   size_t* size) {
    return Query(Record(__func__, stream, cmd), Kind::Stream, {type, buffer, size},
                 [=](const Object& object) { return StreamInfo(object, stream, cmd); });
}

GC_ERROR DSClose(DS_HANDLE stream) {
    return CloseModule(__func__, stream, Kind::Stream);
}

GC_ERROR DSRevokeBuffer(DS_HANDLE stream, BUFFER_HANDLE buffer, void** /*base*/, void** /*priv*/) {
    return OnBuffer(WithObject(Record(__func__, stream), buffer),
                    [=](Object&) { world.Close(buffer); });
}

GC_ERROR DSQueueBuffer(DS_HANDLE stream, BUFFER_HANDLE buffer) {
    return OnBuffer(WithObject(Record(__func__, stream), buffer),
                    [](Object& object) { object.queued = true; });
}

GC_ERROR DSGetBufferInfo(DS_HANDLE stream, BUFFER_HANDLE buffer, BUFFER_INFO_CMD cmd,
                         INFO_DATATYPE* type, void* out, size_t* size) {
    const auto find = [=](const Object&) -> std::optional<Value> {
        const Object* const object = world.Find(buffer, Kind::Buffer, "DSGetBufferInfo");
        if (object == nullptr || object->parent != stream) return std::nullopt;
        return BufferInfo(*object, cmd);
    };
    return Query(WithObject(Record(__func__, stream, cmd), buffer), Kind::Stream, {type, out, size},
                 find);
}

GC_ERROR DSGetNumBufferParts(DS_HANDLE stream, BUFFER_HANDLE buffer, uint32_t* count) {
    return OnModuleWithReply(WithObject(Record(__func__, stream), buffer), Kind::Stream,
                             [=](Object&, const Reply& reply) {
                                 *count = static_cast<uint32_t>(reply.size.value_or(2));
                             });
}

GC_ERROR DSGetBufferPartInfo(DS_HANDLE stream, BUFFER_HANDLE buffer, uint32_t index,
                             BUFFER_PART_INFO_CMD cmd, INFO_DATATYPE* type, void* out,
                             size_t* size) {
    const auto find = [=](const Object&) -> std::optional<Value> {
        const Object* const object = world.Find(buffer, Kind::Buffer, "DSGetBufferPartInfo");
        return object != nullptr ? PartInfo(*object, index, cmd) : std::nullopt;
    };
    return Query(WithNumber(WithObject(Record(__func__, stream, cmd), buffer), index), Kind::Stream,
                 {type, out, size}, find);
}

// What the library never calls of itself is only recorded.
#define SCRIPTED_UNUSED(name, call, parameters) \
    GC_ERROR name parameters {                  \
        return NotImplemented(call);            \
    }

SCRIPTED_UNUSED(GCGetInfo, Record(__func__, nullptr, cmd),
                (TL_INFO_CMD cmd, INFO_DATATYPE*, void*, size_t*))
SCRIPTED_UNUSED(GCGetLastError, Record(__func__, nullptr), (GC_ERROR*, char*, size_t*))
SCRIPTED_UNUSED(GCGetPortURL, Record(__func__, port), (PORT_HANDLE port, char*, size_t*))
SCRIPTED_UNUSED(EventGetDataInfo, WithNumber(Record(__func__, event, cmd), size),
                (EVENT_HANDLE event, const void*, size_t size, EVENT_DATA_INFO_CMD cmd,
                 INFO_DATATYPE*, void*, size_t*))
SCRIPTED_UNUSED(TLGetInterfaceInfo, Record(__func__, tl, cmd, id),
                (TL_HANDLE tl, const char* id, INTERFACE_INFO_CMD cmd, INFO_DATATYPE*, void*,
                 size_t*))
SCRIPTED_UNUSED(DevGetInfo, Record(__func__, device, cmd),
                (DEV_HANDLE device, DEVICE_INFO_CMD cmd, INFO_DATATYPE*, void*, size_t*))
SCRIPTED_UNUSED(DSGetBufferID, WithNumber(Record(__func__, stream), index),
                (DS_HANDLE stream, uint32_t index, BUFFER_HANDLE*))
SCRIPTED_UNUSED(GCReadPortStacked, Record(__func__, port),
                (PORT_HANDLE port, PORT_REGISTER_STACK_ENTRY*, size_t*))
SCRIPTED_UNUSED(GCWritePortStacked, Record(__func__, port),
                (PORT_HANDLE port, PORT_REGISTER_STACK_ENTRY*, size_t*))
SCRIPTED_UNUSED(DSGetBufferChunkData, WithObject(Record(__func__, stream), buffer),
                (DS_HANDLE stream, BUFFER_HANDLE buffer, SINGLE_CHUNK_DATA*, size_t*))
SCRIPTED_UNUSED(IFGetParentTL, Record(__func__, iface), (IF_HANDLE iface, TL_HANDLE*))
SCRIPTED_UNUSED(DevGetParentIF, Record(__func__, device), (DEV_HANDLE device, IF_HANDLE*))
SCRIPTED_UNUSED(DSGetParentDev, Record(__func__, stream), (DS_HANDLE stream, DEV_HANDLE*))
SCRIPTED_UNUSED(DSAnnounceCompositeBuffer, WithNumber(Record(__func__, stream), count),
                (DS_HANDLE stream, size_t count, void**, size_t*, void*, BUFFER_HANDLE*))
SCRIPTED_UNUSED(DSGetBufferInfoStacked,
                WithNumber(WithObject(Record(__func__, stream), buffer), count),
                (DS_HANDLE stream, BUFFER_HANDLE buffer, DS_BUFFER_INFO_STACKED*, size_t count))
SCRIPTED_UNUSED(DSGetBufferPartInfoStacked,
                WithNumber(WithObject(Record(__func__, stream), buffer), count),
                (DS_HANDLE stream, BUFFER_HANDLE buffer, DS_BUFFER_PART_INFO_STACKED*,
                 size_t count))
SCRIPTED_UNUSED(DSGetNumFlows, Record(__func__, stream), (DS_HANDLE stream, uint32_t*))
SCRIPTED_UNUSED(DSGetFlowInfo, WithNumber(Record(__func__, stream, cmd), index),
                (DS_HANDLE stream, uint32_t index, FLOW_INFO_CMD cmd, INFO_DATATYPE*, void*,
                 size_t*))
SCRIPTED_UNUSED(DSGetNumBufferSegments, WithObject(Record(__func__, stream), buffer),
                (DS_HANDLE stream, BUFFER_HANDLE buffer, uint32_t*))
SCRIPTED_UNUSED(DSGetBufferSegmentInfo,
                WithNumber(WithObject(Record(__func__, stream, cmd), buffer), index),
                (DS_HANDLE stream, BUFFER_HANDLE buffer, uint32_t index, SEGMENT_INFO_CMD cmd,
                 INFO_DATATYPE*, void*, size_t*))
#undef SCRIPTED_UNUSED

}  // extern "C"

// The list of the standard, so that a function missing here does not link.
#define SCRIPTED_POINTER(name, parameters) reinterpret_cast<void*>(&name),
extern const std::vector<void*> kAllFunctions;
const std::vector<void*> kAllFunctions = {GENTL_FUNCTIONS(SCRIPTED_POINTER)};
#undef SCRIPTED_POINTER

}  // namespace GenTL
