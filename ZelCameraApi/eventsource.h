// What interfaces, devices and streams share: an open module and the subscriptions to its events.
#pragma once

#include <memory>
#include <optional>

#include "ZelCameraApi/base/errorboundary.h"
#include "ZelCameraApi/base/gentlmodule.h"
#include "ZelCameraApi/eventhandlers.h"

namespace ZelCameraApi::Internal {

// Implements the four event operations of the public interface `Public` for the module that the
// derived class opens. Its destructor clears the subscriptions before it closes the module.
template <typename Public>
class EventSource : public Public {
  public:
    EventSource(const EventSource&) = delete;
    EventSource& operator=(const EventSource&) = delete;

    ZelCamErr RegisterEvent(uint32_t eventType, ZelCam::EventCallback cb, void* priv) override {
        return Forward(&EventHandlers::RegisterEvent, eventType, cb, priv);
    }
    ZelCamErr RegisterEvent2(uint32_t eventType, ZelCam::EventCallback2 cb, void* priv) override {
        return Forward(&EventHandlers::RegisterEvent2, eventType, cb, priv);
    }
    ZelCamErr UnRegisterEvent(uint32_t eventType, ZelCam::EventCallback cb, void* priv) override {
        return Forward(&EventHandlers::UnRegisterEvent, eventType, cb, priv);
    }
    ZelCamErr UnRegisterEvent2(uint32_t eventType, ZelCam::EventCallback2 cb, void* priv) override {
        return Forward(&EventHandlers::UnRegisterEvent2, eventType, cb, priv);
    }

    // The open module and its producer.
    const GenTLModule<void*>& Module() const { return module_; }

  protected:
    // `ownEvent` is an event that the object itself consumes; subscriptions to it are refused.
    explicit EventSource(const std::shared_ptr<GenTLLib>& lib, std::optional<int> ownEvent = {})
        : module_{nullptr, lib}, events_(lib), ownEvent_(ownEvent) {}
    ~EventSource() = default;

    GenTLModule<void*> module_;
    EventHandlers events_;

  private:
    template <typename Callback>
    ZelCamErr Forward(int (EventHandlers::*operation)(void*, int, Callback, void*),
                      uint32_t eventType, Callback cb, void* priv) {
        const int type = static_cast<int>(eventType);
        if (type == ownEvent_) return static_cast<ZelCamErr>(GenTL::GC_ERR_RESOURCE_IN_USE);
        return CodeOf([&] { return (events_.*operation)(module_.handle, type, cb, priv); });
    }

    std::optional<int> ownEvent_;
};

}  // namespace ZelCameraApi::Internal
