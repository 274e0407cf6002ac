// What all modules share: identity, port and events.
#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "gentl/GenTL.h"
#include "producers/server/base/answer.h"
#include "producers/server/base/object.h"
#include "producers/server/events/event.h"
#include "producers/server/registers/porturl.h"

namespace ZelCti {

class CameraLink;
struct CameraInfo;

// What GCGetPortInfo reports about the port of a module.
struct PortIdentity {
    std::string id;
    std::string vendor;
    std::string model;
    std::string version;
    std::string tlType;
    const char* module = "";
    const char* portName = "";
    bool bigEndian = false;

    // A module of a camera, which has its vendor, model, version and type.
    static PortIdentity OfCamera(const CameraInfo& camera, std::string id, const char* module,
                                 const char* portName);
};

// A module of the standard: system, interface, device, remote device, stream or buffer. Each is a
// port with registers, and a source of events. Thread-safe.
class Module : public Object {
  public:
    static bool IsKind(Kind kind) { return kind != Kind::Event; }

    const std::string& Id() const { return port_.id; }
    const PortIdentity& Port() const { return port_; }

    // The open camera that the module works with; null above the devices.
    virtual const CameraLink* Link() const { return nullptr; }

    // Throws GC_ERR_IO when the camera is gone.
    void CheckConnected() const;

    void GetPortInfo(Answer answer) const;

    // Where the description of the registers is, the first choice first; may be empty.
    virtual std::vector<PortUrl> Urls() = 0;

    // Throw GC_ERR_ACCESS_DENIED when the module may not be written, or the registers may not be
    // accessed in this way, and GC_ERR_INVALID_ADDRESS when there are none.
    void ReadPort(uint64_t address, void* buffer, size_t size);
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

    // The camera was lost: ends the waits for events.
    void OnCameraLost();

  protected:
    Module(Kind kind, PortIdentity port) : Object(kind), port_(std::move(port)) {}

    virtual bool MayWrite() const { return true; }

    // A new registration; null when the module has no such event.
    virtual std::shared_ptr<Event> MakeEvent(GenTL::EVENT_TYPE type);

  private:
    // The registers and the description.
    virtual void Read(uint64_t address, void* buffer, size_t size) = 0;
    virtual void Write(uint64_t address, const void* buffer, size_t size) = 0;

    const PortIdentity port_;
    std::atomic<uint64_t> numReads_{0};
    std::atomic<uint64_t> numWrites_{0};
    std::mutex eventsMutex_;
    std::map<GenTL::EVENT_TYPE, std::shared_ptr<Event>> events_;  // guarded by eventsMutex_
};

}  // namespace ZelCti
