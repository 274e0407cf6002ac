#include "ZelCameraApi/eventadapter.h"

#include <string_view>

#include <GenApi/EventAdapterGEV.h>
#include <GenApi/EventAdapterU3V.h>

#include "ZelCameraApi/base/errorboundary.h"
#include "ZelCameraApi/base/gentlinfo.h"

namespace ZelCameraApi::Internal {

std::unique_ptr<GenApi::CEventAdapter> CreateEventAdapter(const GenTLModule<void*>& port,
                                                          GenApi::INodeMap* nodeMap) {
    const std::string text =
        ZeroOnError([&] { return PortGetInfoString(port, GenTL::PORT_INFO_TLTYPE); });
    const std::string_view type = text.c_str();  // up to the terminating zero
    if (type == "CL" || type == "CXP") return nullptr;
    try {
        if (type == "GEV") return std::make_unique<GenApi::CEventAdapterGEV>(nodeMap);
        // "U3V", "Custom" and unknown types.
        return std::make_unique<GenApi::CEventAdapterU3V>(nodeMap);
    } catch (const GenICam::GenericException&) {
        return nullptr;
    }
}

void EventCallbackDelegate::Callback(uint32_t eventType, const void* data, size_t size,
                                     void* self) {
    const auto& function = static_cast<EventCallbackDelegate*>(self)->function;
    if (function) function(eventType, data, size);
}

}  // namespace ZelCameraApi::Internal
