#include "genapi/nodes/callbacks.h"

#include "genapi/nodes/nodemap.h"

namespace GENAPI_NAMESPACE {
namespace Engine {

void Notification::Add(NodeMap& map, const ChangeSet& nodes) {
    if (!map.HasCallbacks()) return;
    for (const NodeId id : nodes)
        if (const auto* callbacks = map.NodeAt(id).Callbacks())
            callbacks_.insert(callbacks_.end(), callbacks->begin(), callbacks->end());
}

void Notification::AddAll(NodeMap& map) {
    if (!map.HasCallbacks()) return;
    for (NodeId id = 0; id < map.NodeCount(); ++id)
        if (const auto* callbacks = map.NodeAt(id).Callbacks())
            callbacks_.insert(callbacks_.end(), callbacks->begin(), callbacks->end());
}

void Notification::Fire(ECallbackType phase) const {
    for (const std::weak_ptr<Callback>& callback : callbacks_)
        if (const std::shared_ptr<Callback> registered = callback.lock()) registered->Invoke(phase);
}

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE
