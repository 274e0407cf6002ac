// The default behaviour of the scripted producer: its handles and what they answer.
#pragma once

#include <condition_variable>
#include <deque>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "tests/library/scriptedproducer/scriptedproducer.h"

namespace Scripted {

enum class Kind { System, Interface, Device, Port, Stream, Buffer, Event };

// Where a kind is asked for: one of those that have registers.
constexpr Kind kAnyModule = Kind{-1};

// A module, buffer or event registration. Handles are never used twice.
struct Object {
    size_t number;  // of all that were opened
    Kind kind;
    std::string id;
    void* parent;

    // Stream.
    bool grabbing = false;
    uint64_t delivered = 0;

    // Buffer.
    std::vector<uint8_t> memory;  // allocated by the producer
    void* base = nullptr;
    size_t size = 0;
    void* userPtr = nullptr;
    bool queued = false;

    // Event.
    int32_t eventType = 0;
    std::deque<std::vector<uint8_t>> queue;
    bool killed = false;
    bool waiting = false;
};

// The value of an information command.
struct Value {
    GenTL::INFO_DATATYPE type;
    std::vector<uint8_t> bytes;
};

Value TextValue(const std::string& text);

template <typename T>
Value NumberValue(GenTL::INFO_DATATYPE type, T number) {
    Value value{type, std::vector<uint8_t>(sizeof number)};
    std::memcpy(value.bytes.data(), &number, sizeof number);
    return value;
}

inline Value SizeValue(size_t size) {
    return NumberValue(GenTL::INFO_DATATYPE_SIZET, size);
}
inline Value Uint64Value(uint64_t n) {
    return NumberValue(GenTL::INFO_DATATYPE_UINT64, n);
}
inline Value BoolValue(bool b) {
    return NumberValue(GenTL::INFO_DATATYPE_BOOL8, static_cast<GenTL::bool8_t>(b ? 1 : 0));
}

class World final : public Control {
  public:
    static World& Get();

    World() { Reset(); }

    void Reset() override;
    void SetWorld(std::vector<InterfaceSpec> interfaces) override;
    void AddRule(Rule rule) override;
    void ClearRules() override;
    std::vector<Call> TakeCalls() override;
    size_t GetCount(const std::string& function, int64_t command) override;
    bool AwaitCount(const std::string& function, size_t count, int64_t command) override;
    bool AwaitWaiter(void* module, int32_t eventType) override;
    std::vector<std::string> GetOpenHandles() override;
    std::vector<std::string> GetMisuses() override;
    void* FindHandle(const std::string& name) override;
    bool FireEvent(void* module, int32_t eventType, const std::vector<uint8_t>& data) override;
    bool DeliverFrame(void* stream) override;
    std::vector<uint8_t>& GetRegisters() override { return registers_; }
    void SetDescription(const std::string& xml) override;

    // One call of a client: records it, consults the script and runs `action` with the lock held.
    // `action` takes (std::unique_lock<std::mutex>&, const Reply&) and returns a GC_ERROR.
    template <typename Action>
    GenTL::GC_ERROR Perform(const Call& call, Action&& action) {
        const Reply reply = Enter(call);
        if (reply.code && !reply.actFirst) return *reply.code;
        std::unique_lock lock(mutex_);
        const GenTL::GC_ERROR result = action(lock, reply);
        changed_.notify_all();
        return reply.code.value_or(result);
    }

    // With the lock held.
    void* Open(Kind kind, const std::string& id, void* parent);
    Object* Find(void* handle, Kind kind, const char* function);
    void Close(void* handle);
    const InterfaceSpec* FindInterface(const std::string& id) const;
    std::string TypeOf(const Object& module) const;
    std::string DescriptionUrl() const;
    std::vector<std::string> ChildrenOf(const Object& module) const;
    void* FindEvent(void* module, int32_t eventType);
    GenTL::GC_ERROR AwaitEvent(std::unique_lock<std::mutex>& lock, void* event, void* buffer,
                               size_t* size, uint64_t timeout);
    size_t CountQueued(void* stream) const;
    void FlushQueue(void* stream, int32_t operation);
    void InitLibrary(int change) { initialised_ += change; }

  private:
    Reply Enter(const Call& call);
    template <typename Matches>
    void* FindFirst(Matches&& matches) const;
    bool Push(void* module, int32_t eventType, const std::vector<uint8_t>& data);

    std::mutex mutex_;  // guards everything below
    std::condition_variable changed_;
    std::vector<InterfaceSpec> interfaces_;
    std::vector<Rule> rules_;
    std::vector<Call> calls_;
    std::map<std::pair<std::string, int64_t>, size_t> counts_;
    std::map<void*, Object> objects_;
    std::vector<std::string> misuses_;
    std::vector<uint8_t> registers_;  // followed by the description
    size_t lastNumber_ = 0;
    int initialised_ = 0;
};

}  // namespace Scripted
