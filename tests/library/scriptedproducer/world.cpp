#include "tests/library/scriptedproducer/world.h"

#include <algorithm>
#include <chrono>
#include <set>
#include <stdexcept>
#include <utility>

namespace Scripted {

namespace {

constexpr std::chrono::seconds kPatience{30};
constexpr size_t kRegisterSpace = 0x10000;

const std::set<std::string>& FunctionNames() {
#define SCRIPTED_NAME(name, parameters) #name,
    static const std::set<std::string> kNames = {GENTL_FUNCTIONS(SCRIPTED_NAME)};
#undef SCRIPTED_NAME
    return kNames;
}

std::string NameOf(const Object& object) {
    static const std::map<Kind, std::string> kInds = {
        {Kind::System, "system"}, {Kind::Interface, "interface"}, {Kind::Device, "device"},
        {Kind::Port, "port"},     {Kind::Stream, "stream"},       {Kind::Buffer, "buffer"},
        {Kind::Event, "event"}};
    return kInds.at(object.kind) + ' ' + object.id;
}

}  // namespace

Value TextValue(const std::string& text) {
    return {GenTL::INFO_DATATYPE_STRING,
            std::vector<uint8_t>(text.c_str(), text.c_str() + text.size() + 1)};
}

World& World::Get() {
    static World world;
    return world;
}

void World::Reset() {
    const std::lock_guard lock(mutex_);
    interfaces_ = {{"if0", "GEV", {"cam0", "cam1"}}, {"if1", "U3V", {"cam2"}}};
    rules_.clear();
    calls_.clear();
    counts_.clear();
    objects_.clear();
    misuses_.clear();
    registers_.assign(kRegisterSpace, 0);
    initialised_ = 0;
}

void World::SetWorld(std::vector<InterfaceSpec> interfaces) {
    const std::lock_guard lock(mutex_);
    interfaces_ = std::move(interfaces);
}

void World::SetDescription(const std::string& xml) {
    const std::lock_guard lock(mutex_);
    registers_.resize(kRegisterSpace);
    registers_.insert(registers_.end(), xml.begin(), xml.end());
    registers_.resize((registers_.size() + 3) / 4 * 4, ' ');
}

// Empty when there is none.
std::string World::DescriptionUrl() const {
    if (registers_.size() == kRegisterSpace) return {};
    char url[64];
    std::snprintf(url, sizeof url, "Local:scripted.xml;%zx;%zx", kRegisterSpace,
                  registers_.size() - kRegisterSpace);
    return url;
}

void World::AddRule(Rule rule) {
    if (FunctionNames().count(rule.function) == 0) throw std::invalid_argument(rule.function);
    const std::lock_guard lock(mutex_);
    rules_.push_back(std::move(rule));
}

void World::ClearRules() {
    const std::lock_guard lock(mutex_);
    rules_.clear();
}

Reply World::Enter(const Call& call) {
    std::function<Reply(const Call&)> reply;
    {
        const std::lock_guard lock(mutex_);
        calls_.push_back(call);
        ++counts_[{call.function, kAnyCommand}];
        if (call.command != kAnyCommand) ++counts_[{call.function, call.command}];
        for (auto rule = rules_.rbegin(); rule != rules_.rend(); ++rule) {
            if (rule->function != call.function) continue;
            if (rule->command != kAnyCommand && rule->command != call.command) continue;
            if (rule->skip > 0) {
                --rule->skip;
                continue;
            }
            if (rule->count == 0) continue;
            if (rule->count != SIZE_MAX) --rule->count;
            reply = rule->reply;
            break;
        }
    }
    changed_.notify_all();
    return reply ? reply(call) : Reply{};
}

std::vector<Call> World::TakeCalls() {
    const std::lock_guard lock(mutex_);
    return std::exchange(calls_, {});
}

size_t World::GetCount(const std::string& function, int64_t command) {
    if (FunctionNames().count(function) == 0) throw std::invalid_argument(function);
    const std::lock_guard lock(mutex_);
    return counts_[{function, command}];
}

bool World::AwaitCount(const std::string& function, size_t count, int64_t command) {
    if (FunctionNames().count(function) == 0) throw std::invalid_argument(function);
    std::unique_lock lock(mutex_);
    return changed_.wait_for(lock, kPatience, [&] {
        return counts_[{function, command}] >= count;
    });
}

bool World::AwaitWaiter(void* module, int32_t eventType) {
    std::unique_lock lock(mutex_);
    return changed_.wait_for(lock, kPatience, [&] {
        void* const event = FindEvent(module, eventType);
        return event != nullptr && objects_.at(event).waiting;
    });
}

std::vector<std::string> World::GetOpenHandles() {
    const std::lock_guard lock(mutex_);
    std::vector<std::string> names(static_cast<size_t>(std::max(initialised_, 0)), "library");
    for (const auto& [handle, object] : objects_) {
        if (object.kind != Kind::Port) names.push_back(NameOf(object));
    }
    return names;
}

std::vector<std::string> World::GetMisuses() {
    const std::lock_guard lock(mutex_);
    return misuses_;
}

// The handle that was opened first of those that `matches(object)`; null when there is none.
template <typename Matches>
void* World::FindFirst(Matches&& matches) const {
    void* first = nullptr;
    for (const auto& [handle, object] : objects_) {
        if (!matches(object)) continue;
        if (first == nullptr || object.number < objects_.at(first).number) first = handle;
    }
    return first;
}

void* World::FindHandle(const std::string& name) {
    const std::lock_guard lock(mutex_);
    return FindFirst([&name](const Object& object) { return NameOf(object) == name; });
}

bool World::FireEvent(void* module, int32_t eventType, const std::vector<uint8_t>& data) {
    const std::lock_guard lock(mutex_);
    return Push(module, eventType, data);
}

bool World::Push(void* module, int32_t eventType, const std::vector<uint8_t>& data) {
    void* const event = FindEvent(module, eventType);
    if (event == nullptr) return false;
    objects_.at(event).queue.push_back(data);
    changed_.notify_all();
    return true;
}

bool World::DeliverFrame(void* stream) {
    const std::lock_guard lock(mutex_);
    const auto found = objects_.find(stream);
    if (found == objects_.end() || !found->second.grabbing) return false;
    void* const handle = FindFirst([stream](const Object& object) {
        return object.kind == Kind::Buffer && object.parent == stream && object.queued;
    });
    if (handle == nullptr) return false;
    Object& buffer = objects_.at(handle);
    const GenTL::EVENT_NEW_BUFFER_DATA data{handle, buffer.userPtr};
    std::vector<uint8_t> bytes(sizeof data);
    std::memcpy(bytes.data(), &data, sizeof data);
    if (!Push(stream, GenTL::EVENT_NEW_BUFFER, bytes)) return false;
    buffer.queued = false;
    ++found->second.delivered;
    return true;
}

// Handles come in no order: the next one lies now above, now below all others.
void* World::Open(Kind kind, const std::string& id, void* parent) {
    constexpr uintptr_t kMiddle = uintptr_t{1} << 40;
    const uintptr_t distance = ++lastNumber_ * 0x10;
    void* const handle =
        reinterpret_cast<void*>(lastNumber_ % 2 != 0 ? kMiddle + distance : kMiddle - distance);
    Object& object = objects_[handle];
    object.number = lastNumber_;
    object.kind = kind;
    object.id = id;
    object.parent = parent;
    return handle;
}

Object* World::Find(void* handle, Kind kind, const char* function) {
    const auto found = objects_.find(handle);
    const auto matches = [kind](Kind actual) {
        const bool module = actual != Kind::Buffer && actual != Kind::Event;
        return kind == kAnyModule ? module : kind == actual;
    };
    if (found != objects_.end() && matches(found->second.kind)) return &found->second;
    if (handle != nullptr) misuses_.emplace_back(function);
    return nullptr;
}

void World::Close(void* handle) {
    objects_.erase(handle);
    // A remote port is part of its device.
    for (auto it = objects_.begin(); it != objects_.end();) {
        const bool port = it->second.kind == Kind::Port && it->second.parent == handle;
        it = port ? objects_.erase(it) : std::next(it);
    }
}

const InterfaceSpec* World::FindInterface(const std::string& id) const {
    const auto found = std::find_if(interfaces_.begin(), interfaces_.end(),
                                    [&id](const InterfaceSpec& spec) { return spec.id == id; });
    return found != interfaces_.end() ? &*found : nullptr;
}

// The transport-layer type of the interface that a module is or belongs to.
std::string World::TypeOf(const Object& module) const {
    if (module.kind == Kind::System) return "Mixed";
    if (module.kind != Kind::Interface) return TypeOf(objects_.at(module.parent));
    const InterfaceSpec* const spec = FindInterface(module.id);
    return spec != nullptr ? spec->type : "Custom";
}

// The identifiers of what can be opened below a module.
std::vector<std::string> World::ChildrenOf(const Object& module) const {
    if (module.kind == Kind::Device) return {"stream0"};
    if (module.kind == Kind::Interface) {
        const InterfaceSpec* const spec = FindInterface(module.id);
        return spec != nullptr ? spec->devices : std::vector<std::string>{};
    }
    std::vector<std::string> ids;
    for (const InterfaceSpec& spec : interfaces_)
        ids.push_back(spec.id);
    return ids;
}

void* World::FindEvent(void* module, int32_t eventType) {
    for (const auto& [handle, object] : objects_) {
        if (object.kind == Kind::Event && object.parent == module && object.eventType == eventType)
            return handle;
    }
    return nullptr;
}

// As the standard has it, a kill without a wait under way ends the next wait.
GenTL::GC_ERROR World::AwaitEvent(std::unique_lock<std::mutex>& lock, void* event, void* buffer,
                                  size_t* size, uint64_t timeout) {
    Object* const registration = Find(event, Kind::Event, "EventGetData");
    if (registration == nullptr) return GenTL::GC_ERR_INVALID_HANDLE;
    registration->waiting = true;
    changed_.notify_all();
    const auto ready = [this, event] {
        const auto found = objects_.find(event);
        return found == objects_.end() || found->second.killed || !found->second.queue.empty();
    };
    if (timeout == GENTL_INFINITE) {
        changed_.wait(lock, ready);
    } else if (!changed_.wait_for(lock, std::chrono::milliseconds(timeout), ready)) {
        objects_.at(event).waiting = false;
        return GenTL::GC_ERR_TIMEOUT;
    }
    const auto found = objects_.find(event);
    if (found == objects_.end()) return GenTL::GC_ERR_ABORT;
    Object& object = found->second;
    object.waiting = false;
    if (std::exchange(object.killed, false)) return GenTL::GC_ERR_ABORT;
    const std::vector<uint8_t>& data = object.queue.front();
    const size_t room = std::exchange(*size, data.size());
    if (buffer == nullptr) return GenTL::GC_ERR_SUCCESS;  // a query of the size: the event stays
    if (room < data.size()) return GenTL::GC_ERR_BUFFER_TOO_SMALL;
    std::copy(data.begin(), data.end(), static_cast<uint8_t*>(buffer));
    object.queue.pop_front();
    return GenTL::GC_ERR_SUCCESS;
}

size_t World::CountQueued(void* stream) const {
    return static_cast<size_t>(
        std::count_if(objects_.begin(), objects_.end(), [stream](const auto& entry) {
            return entry.second.parent == stream && entry.second.queued;
        }));
}

void World::FlushQueue(void* stream, int32_t operation) {
    const bool queued = operation == GenTL::ACQ_QUEUE_ALL_TO_INPUT ||
                        operation == GenTL::ACQ_QUEUE_UNQUEUED_TO_INPUT;
    for (auto& [handle, object] : objects_) {
        const bool ofStream = object.parent == stream;
        if (ofStream && object.kind == Kind::Buffer && operation != GenTL::ACQ_QUEUE_OUTPUT_DISCARD)
            object.queued = queued;
        if (ofStream && object.kind == Kind::Event && object.eventType == GenTL::EVENT_NEW_BUFFER &&
            operation != GenTL::ACQ_QUEUE_INPUT_TO_OUTPUT)
            object.queue.clear();
    }
}

}  // namespace Scripted

extern "C" GC_IMPORT_EXPORT Scripted::Control* ScriptedProducer_GetControl() {
    return &Scripted::World::Get();
}
