// What a handle refers to.
#pragma once

#include <memory>
#include <mutex>
#include <set>

namespace ZelCti {

using Handle = void*;

enum class Kind { System, Interface, Device, RemoteDevice, Stream, Buffer, Event };

// A node of the tree of open handles: system, interface, device, stream, buffer, with the events
// and the remote port beside them.
//
//   constructed --HandleTable::Open--> open --HandleTable::Close--> closed
//
// The handle table owns the object while it is open. A call that runs while another thread closes
// the object keeps it alive until the call returns, but its handle is stale from the close on.
// Thread-safe.
class Object {
  public:
    explicit Object(Kind kind) : kind_(kind) {}
    virtual ~Object() = default;
    Object(const Object&) = delete;
    Object& operator=(const Object&) = delete;

    Kind GetKind() const { return kind_; }
    Handle GetHandle() const { return handle_; }

    // Null for a root, and when the parent is closed already.
    Handle ParentHandle() const;

  protected:
    // Called once when the object is closed and its handle is stale: first OnClosing, while its
    // children are still open, to end what works on them; then, when they are closed, OnClose.
    virtual void OnClosing() noexcept {}
    virtual void OnClose() noexcept {}

  private:
    friend class HandleTable;

    // False when the object is closed already and takes no more children.
    bool Adopt(Handle child);
    void Disown(Handle child);
    std::set<Handle> CloseForChildren();

    const Kind kind_;
    Handle handle_ = nullptr;  // set once, before another thread can find the object
    std::weak_ptr<Object> parent_;
    std::mutex childrenMutex_;
    std::set<Handle> children_;  // guarded by childrenMutex_
    bool closed_ = false;        // guarded by childrenMutex_
};

}  // namespace ZelCti
