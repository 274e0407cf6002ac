// A GenTL producer whose every call is recorded and can be made to answer anything.
//
// The module (libZelCTI.cti in a folder of its own) implements all functions over a tiny consistent
// world: interfaces with cameras as SetWorld says, one stream "stream0" a camera, buffers in plain
// memory, events that tests fire. Tests reach it through its Control, which the module exports:
// LoadControl in fixture.h keeps the module loaded, so that the record outlives the client's use.
#pragma once

#include <cstdint>
#include <cstring>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "gentl/GenTL.h"

namespace Scripted {

constexpr int64_t kAnyCommand = INT64_MIN;

// One recorded call.
struct Call {
    std::string function;
    void* handle = nullptr;          // of the module
    int64_t command = kAnyCommand;   // info command, event type, queue operation or flags
    std::string id;                  // a text argument
    std::optional<uint64_t> number;  // index, address, time-out, size or count
    void* object = nullptr;          // second handle, or the memory a caller announces
    bool sizeOnly = false;           // a query without a buffer
    void* priv = nullptr;            // user pointer of an announcement
    std::vector<uint8_t> data;       // what is written to a port

    // "IFOpenDevice 4 cam0", "TLUpdateInterfaceList 1000", "TLGetInfo 7?" (size only).
    std::string Text() const {
        std::string text = function;
        if (command != kAnyCommand) text += ' ' + std::to_string(command);
        if (!id.empty()) text += ' ' + id;
        if (number) text += ' ' + std::to_string(*number);
        if (sizeOnly) text += '?';
        return text;
    }
};

// What a scripted call does instead of, or on top of, its default. Where nothing is set the default
// acts.
struct Reply {
    std::optional<GenTL::GC_ERROR> code;  // do nothing but return this
    bool actFirst = false;                // with `code`: act, then return it
    std::optional<GenTL::INFO_DATATYPE> type;
    std::optional<size_t> size;                 // or count: reported, whatever is written
    std::optional<std::vector<uint8_t>> bytes;  // the value; what a port reads, at any address;
                                                // or the changed flag of an update
};

inline Reply Fails(GenTL::GC_ERROR code) {
    Reply reply;
    reply.code = code;
    return reply;
}

inline Reply ReportsType(GenTL::INFO_DATATYPE type) {
    Reply reply;
    reply.type = type;
    return reply;
}

inline Reply ReportsSize(size_t size) {
    Reply reply;
    reply.size = size;
    return reply;
}

inline Reply Gives(const std::string& text) {
    Reply reply;
    reply.type = GenTL::INFO_DATATYPE_STRING;
    reply.bytes.emplace(text.c_str(), text.c_str() + text.size() + 1);
    return reply;
}

template <typename T>
Reply Gives(T value, GenTL::INFO_DATATYPE type) {
    Reply reply;
    reply.type = type;
    reply.bytes.emplace(sizeof value);
    std::memcpy(reply.bytes->data(), &value, sizeof value);
    return reply;
}

struct Rule {
    std::string function;           // a GenTL function
    int64_t command = kAnyCommand;  // only calls with this command
    std::function<Reply(const Call&)> reply;
    size_t skip = 0;  // matching calls that pass first
    size_t count = SIZE_MAX;
};

struct InterfaceSpec {
    std::string id;
    std::string type;
    std::vector<std::string> devices;
};

// All operations are thread-safe.
class Control {
  public:
    // Forgets script, record and handles; the world is: interface "if0" (GEV) with "cam0" and
    // "cam1", interface "if1" (U3V) with "cam2".
    virtual void Reset() = 0;

    virtual void SetWorld(std::vector<InterfaceSpec> interfaces) = 0;

    // Of several rules that match a call the one added last acts. Throws std::invalid_argument for
    // a name that is no GenTL function.
    virtual void AddRule(Rule rule) = 0;
    virtual void ClearRules() = 0;

    // The record: since Reset, or since TakeCalls was called last.
    virtual std::vector<Call> TakeCalls() = 0;

    // Calls of a function since Reset.
    virtual size_t GetCount(const std::string& function, int64_t command = kAnyCommand) = 0;

    // Waits until GetCount is at least `count`; false when a generous time is over.
    virtual bool AwaitCount(const std::string& function, size_t count,
                            int64_t command = kAnyCommand) = 0;

    // Waits until a thread is inside the default wait for an event of a module.
    virtual bool AwaitWaiter(void* module, int32_t eventType) = 0;

    // Open handles as text ("device cam0"), and "library" for each GCInitLib without GCCloseLib.
    virtual std::vector<std::string> GetOpenHandles() = 0;

    // Uses of handles that were not open at the time (null handles apart).
    virtual std::vector<std::string> GetMisuses() = 0;

    // The oldest open handle of a module, as GetOpenHandles names it; null when there is none.
    virtual void* FindHandle(const std::string& name) = 0;

    // Puts an event into the queue of each registration on a module; false when there is none.
    virtual bool FireEvent(void* module, int32_t eventType, const std::vector<uint8_t>& data) = 0;

    // Fills the first queued buffer of a stream and fires its new-buffer event; false when no
    // buffer is queued, the stream does not grab or the event is not registered.
    virtual bool DeliverFrame(void* stream) = 0;

    // Register space of every module, 64 KiB.
    virtual std::vector<uint8_t>& GetRegisters() = 0;

    // The GenApi description of every module, served behind its registers. Without one a module
    // has no URL.
    virtual void SetDescription(const std::string& xml) = 0;

  protected:
    ~Control() = default;
};

using GetControl = Control* (*)();

}  // namespace Scripted
