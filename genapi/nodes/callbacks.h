// Callbacks of nodes, and the notification of one change in its two phases.
#pragma once

#include <memory>
#include <vector>

#include <GenApi/NodeCallback.h>

#include "genapi/description/description.h"

namespace GENAPI_NAMESPACE {
namespace Engine {

class NodeMap;

// A registered callback object, which the node owns. A notification in progress shares it, so that
// a callback may deregister itself or another one while it runs.
class Callback {
  public:
    explicit Callback(CNodeCallback& object) : object_(object) {}
    ~Callback() { object_.Destroy(); }
    Callback(const Callback&) = delete;
    Callback& operator=(const Callback&) = delete;

    bool Is(CallbackHandleType handle) const {
        return reinterpret_cast<CallbackHandleType>(&object_) == handle;
    }
    void Invoke(ECallbackType phase) const { object_(phase); }

  private:
    CNodeCallback& object_;
};

// The callbacks of the nodes that one change touched, each once.
class Notification {
  public:
    // Adds the callbacks of the given nodes; the lock of the map is held.
    void Add(NodeMap& map, const ChangeSet& nodes);
    void AddAll(NodeMap& map);
    // Calls those that are still registered, with the given phase.
    void Fire(ECallbackType phase) const;

  private:
    std::vector<std::weak_ptr<Callback>> callbacks_;
};

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE
