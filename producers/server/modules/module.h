// What all modules share: identity, port and events.
#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "gentl/GenTL.h"
#include "producers/server/base/answer.h"
#include "producers/server/base/object.h"
#include "producers/server/events/event.h"
#include "producers/server/registers/description.h"
#include "producers/server/registers/porturl.h"
#include "producers/server/registers/registerspace.h"

namespace ZelSim {

class Camera;

// What GCGetPortInfo tells about the port of a module.
struct PortIdentity {
    std::string id;
    std::string vendor;
    std::string model;
    std::string version;
    std::string tlType;
    const char* module;
    const char* portName;
    bool bigEndian = false;
};

// A module of the standard: system, interface, device, remote device, stream or buffer. Each is a
// port with registers, and a source of events. Thread-safe.
class Module : public Object {
  public:
    static bool IsKind(Kind kind) { return kind != Kind::Event; }

    const std::string& Id() const { return port_.id; }
    const PortIdentity& Port() const { return port_; }

    // The camera the module works with; null above the devices.
    virtual const Camera* GetCamera() const { return nullptr; }

    // Throws GC_ERR_IO when the camera is gone.
    void CheckConnected() const;

    void GetPortInfo(Answer answer) const;

    // Where the description of the registers is, the first choice first; empty when there is none.
    virtual std::vector<PortUrl> Urls() const;

    // Throw GC_ERR_ACCESS_DENIED when the module may not be written, or the registers may not be
    // accessed in this way, and GC_ERR_INVALID_ADDRESS when there are none.
    void ReadPort(uint64_t address, void* buffer, size_t size) const;
    void WritePort(uint64_t address, const void* buffer, size_t size);

    // Accesses so far, those that failed included.
    uint64_t NumReads() const { return numReads_.load(std::memory_order_relaxed); }
    uint64_t NumWrites() const { return numWrites_.load(std::memory_order_relaxed); }

    // Throws GC_ERR_RESOURCE_IN_USE when the type is registered, GC_ERR_NOT_IMPLEMENTED when the
    // module has no such event.
    static Handle RegisterEvent(const std::shared_ptr<Module>& module, GenTL::EVENT_TYPE type);

    // Throws GC_ERR_NOT_AVAILABLE when the type is not registered.
    void UnregisterEvent(GenTL::EVENT_TYPE type);

    // Puts a message into the queue of this event type, if it is registered.
    void FireMessage(GenTL::EVENT_TYPE type, uint64_t id, EventData data);

    // The camera was unplugged: ends the waits for events.
    virtual void OnCameraLost();

  protected:
    // `registers` may be shared with other modules: those of a camera are.
    Module(Kind kind, PortIdentity port, std::shared_ptr<RegisterSpace> registers)
        : Object(kind), port_(std::move(port)), registers_(std::move(registers)) {}

    // Registers of a module that exists only on this side.
    static std::shared_ptr<RegisterSpace> OwnRegisters();
    RegisterSpace& Registers() { return *registers_; }

    virtual bool MayWrite() const { return true; }

    // Called once, when the description is first asked for; null when there is none.
    virtual std::unique_ptr<const Description> MakeDescription() const { return nullptr; }

    // A new registration; null when the module has no such event.
    virtual std::shared_ptr<Event> MakeEvent(GenTL::EVENT_TYPE type);

  private:
    const Description* GetDescription() const;
    const Description* DescriptionAt(uint64_t address, size_t size) const;  // null: registers

    const PortIdentity port_;
    const std::shared_ptr<RegisterSpace> registers_;
    mutable std::mutex descriptionMutex_;
    // Made when first asked for, null where there is none; guarded by descriptionMutex_.
    mutable std::optional<std::unique_ptr<const Description>> description_;
    mutable std::atomic<uint64_t> numReads_{0};
    std::atomic<uint64_t> numWrites_{0};
    std::mutex eventsMutex_;
    std::map<GenTL::EVENT_TYPE, std::shared_ptr<Event>> events_;  // guarded by eventsMutex_
};

}  // namespace ZelSim
