#include "genapi/nodes/callbacks.h"

#include "genapi/nodes/nodemap.h"

namespace GENAPI_NAMESPACE {
namespace Engine {

void Notification::add(NodeMap& map, const ChangeSet& nodes) {
    if (!map.hasCallbacks()) return;
    for (const NodeId id : nodes)
        if (const auto* callbacks = map.node(id).callbacks())
            callbacks_.insert(callbacks_.end(), callbacks->begin(), callbacks->end());
}

void Notification::addAll(NodeMap& map) {
    if (!map.hasCallbacks()) return;
    for (NodeId id = 0; id < map.nodeCount(); ++id)
        if (const auto* callbacks = map.node(id).callbacks())
            callbacks_.insert(callbacks_.end(), callbacks->begin(), callbacks->end());
}

void Notification::fire(ECallbackType phase) const {
    for (const std::weak_ptr<Callback>& callback : callbacks_)
        if (const std::shared_ptr<Callback> registered = callback.lock()) registered->call(phase);
}

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE
