// Callbacks of nodes, and the two-phase notification of a change.
#pragma once

#include <memory>
#include <vector>

#include <GenApi/NodeCallback.h>

#include "genapi/description/description.h"

namespace GENAPI_NAMESPACE {
namespace Engine {

class NodeMap;

// A registered callback object, owned by its node. A notification in progress shares it, so a
// callback may deregister itself or another one while it runs.
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

// The callbacks of all nodes affected by one change, each once.
class Notification {
  public:
    // Adds the callbacks of the given nodes; the caller holds the lock of the map.
    void Add(NodeMap& map, const ChangeSet& nodes);
    void AddAll(NodeMap& map);
    // Calls the callbacks that are still registered, for the given phase.
    void Fire(ECallbackType phase) const;

  private:
    std::vector<std::weak_ptr<Callback>> callbacks_;
};

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE
