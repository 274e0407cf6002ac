// How the events of a device reach its node map.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>

#include <GenApi/EventAdapter.h>
#include <GenApi/GenApi.h>

#include "ZelCameraApi/base/gentlmodule.h"

namespace ZelCameraApi::Internal {

// The adapter for the events of a port, attached to the port's node map. The transport-layer type
// of the port decides the format of the messages. Null for a transport without event messages, and
// for a node map with invalid event identifiers. Destroy it before its node map.
std::unique_ptr<GenApi::CEventAdapter> CreateEventAdapter(const GenTLModule<void*>& port,
                                                          GenApi::INodeMap* nodeMap);

// An event callback of the library with state; pass `this` as the private pointer.
struct EventCallbackDelegate {
    std::function<void(uint32_t eventType, const void* data, size_t size)> function;

    static void Callback(uint32_t eventType, const void* data, size_t size, void* self);
};

}  // namespace ZelCameraApi::Internal
