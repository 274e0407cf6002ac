#include "producers/server/base/object.h"

#include <utility>

namespace ZelCti {

Handle Object::ParentHandle() const {
    const std::shared_ptr<Object> parent = parent_.lock();
    return parent == nullptr ? nullptr : parent->handle_;
}

bool Object::Adopt(Handle child) {
    const std::lock_guard lock(childrenMutex_);
    if (!closed_) children_.insert(child);
    return !closed_;
}

void Object::Disown(Handle child) {
    const std::lock_guard lock(childrenMutex_);
    children_.erase(child);
}

std::set<Handle> Object::CloseForChildren() {
    const std::lock_guard lock(childrenMutex_);
    closed_ = true;
    return std::exchange(children_, {});
}

}  // namespace ZelCti
