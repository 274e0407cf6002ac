#include "producers/simulator/object.h"

#include <algorithm>

namespace ZelSim {

Handle Object::ParentHandle() const {
    const std::shared_ptr<Object> parent = parent_.lock();
    return parent == nullptr ? nullptr : parent->handle_;
}

bool Object::Adopt(Handle child) {
    const std::lock_guard lock(childrenMutex_);
    if (!closed_) children_.push_back(child);
    return !closed_;
}

void Object::Disown(Handle child) {
    const std::lock_guard lock(childrenMutex_);
    children_.erase(std::remove(children_.begin(), children_.end(), child), children_.end());
}

std::vector<Handle> Object::CloseForChildren() {
    const std::lock_guard lock(childrenMutex_);
    closed_ = true;
    return std::move(children_);
}

}  // namespace ZelSim
