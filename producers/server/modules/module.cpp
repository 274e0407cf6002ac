#include "producers/server/modules/module.h"

#include "producers/server/base/error.h"
#include "producers/server/events/messageevent.h"
#include "producers/server/modules/cameralink.h"
#include "producers/server/modules/library.h"

namespace ZelCti {

PortIdentity PortIdentity::OfCamera(const CameraInfo& camera, std::string id, const char* module,
                                    const char* portName) {
    PortIdentity port;
    port.id = std::move(id);
    port.vendor = camera.vendor;
    port.model = camera.model;
    port.version = camera.version;
    port.tlType = camera.tlType;
    port.module = module;
    port.portName = portName;
    return port;
}

void Module::CheckConnected() const {
    const CameraLink* const link = Link();
    if (link != nullptr) link->CheckConnected();
}

void Module::GetPortInfo(Answer answer) const {
    switch (answer.Command()) {
        case GenTL::PORT_INFO_ID:
            return answer.String(port_.id);
        case GenTL::PORT_INFO_VENDOR:
            return answer.String(port_.vendor);
        case GenTL::PORT_INFO_MODEL:
            return answer.String(port_.model);
        case GenTL::PORT_INFO_TLTYPE:
            return answer.String(port_.tlType);
        case GenTL::PORT_INFO_MODULE:
            return answer.String(port_.module);
        case GenTL::PORT_INFO_LITTLE_ENDIAN:
            return answer.Bool(!port_.bigEndian);
        case GenTL::PORT_INFO_BIG_ENDIAN:
            return answer.Bool(port_.bigEndian);
        case GenTL::PORT_INFO_ACCESS_READ:
            return answer.Bool(true);
        case GenTL::PORT_INFO_ACCESS_WRITE:
            return answer.Bool(MayWrite());
        case GenTL::PORT_INFO_ACCESS_NA:
        case GenTL::PORT_INFO_ACCESS_NI:
            return answer.Bool(false);
        case GenTL::PORT_INFO_VERSION:
            return answer.String(port_.version);
        case GenTL::PORT_INFO_PORTNAME:
            return answer.String(port_.portName);
        default:
            throw Error(GenTL::GC_ERR_NOT_IMPLEMENTED, "unknown port info command");
    }
}

void Module::ReadPort(uint64_t address, void* buffer, size_t size) {
    numReads_.fetch_add(1, std::memory_order_relaxed);
    CheckConnected();
    Read(address, buffer, size);
}

void Module::WritePort(uint64_t address, const void* buffer, size_t size) {
    numWrites_.fetch_add(1, std::memory_order_relaxed);
    CheckConnected();
    if (!MayWrite()) throw Error(GenTL::GC_ERR_ACCESS_DENIED, "the device is open read-only");
    Write(address, buffer, size);
}

Handle Module::RegisterEvent(const std::shared_ptr<Module>& module, GenTL::EVENT_TYPE type) {
    const std::lock_guard lock(module->eventsMutex_);
    // With the mutex held: either this sees that the camera is gone, or OnCameraLost sees the
    // event.
    module->CheckConnected();
    if (module->events_.count(type) != 0) {
        throw Error(GenTL::GC_ERR_RESOURCE_IN_USE, "the event is registered already");
    }
    const std::shared_ptr<Event> event = module->MakeEvent(type);
    if (event == nullptr) {
        throw Error(GenTL::GC_ERR_NOT_IMPLEMENTED, "the module has no such event");
    }
    const Handle handle = Library::Instance().Handles().Open(event, module);
    module->events_[type] = event;
    return handle;
}

void Module::UnregisterEvent(GenTL::EVENT_TYPE type) {
    std::shared_ptr<Event> event;
    {
        const std::lock_guard lock(eventsMutex_);
        const auto found = events_.find(type);
        if (found == events_.end()) {
            throw Error(GenTL::GC_ERR_NOT_AVAILABLE, "the event is not registered");
        }
        event = found->second;
        events_.erase(found);
    }
    Library::Instance().Handles().Close(event->GetHandle());
}

void Module::FireMessage(GenTL::EVENT_TYPE type, uint64_t id, EventData data) {
    const std::lock_guard lock(eventsMutex_);
    const auto found = events_.find(type);
    if (found == events_.end()) return;
    if (auto* const event = dynamic_cast<MessageEvent*>(found->second.get())) event->Fire(id, data);
}

void Module::OnCameraLost() {
    const std::lock_guard lock(eventsMutex_);
    for (const auto& [type, event] : events_) {
        // The loss itself is an event of the module.
        if (type == GenTL::EVENT_MODULE) {
            event->FailWhenEmpty(GenTL::GC_ERR_IO);
        } else {
            event->Fail(GenTL::GC_ERR_IO);
        }
    }
}

std::shared_ptr<Event> Module::MakeEvent(GenTL::EVENT_TYPE type) {
    switch (type) {
        case GenTL::EVENT_ERROR:
        case GenTL::EVENT_FEATURE_INVALIDATE:
        case GenTL::EVENT_FEATURE_CHANGE:
        case GenTL::EVENT_MODULE:
            return std::make_shared<MessageEvent>(type);
        default:
            return nullptr;
    }
}

}  // namespace ZelCti
