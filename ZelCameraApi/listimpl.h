// The lists that the library hands out.
#pragma once

#include <algorithm>
#include <list>
#include <memory>
#include <utility>

#include "ZelCam/List.h"

namespace ZelCameraApi::Internal {

// A snapshot of items that belong to `Owner`. The owner also owns the list and deletes it on
// Release.
template <typename T, typename Owner>
class ListImpl final : public ZelCam::List<T> {
  public:
    ListImpl(Owner* owner, std::list<T*> items)
        : items_(std::move(items)), cursor_(items_.end()), owner_(owner) {}

    void Release() override { owner_->RemoveList(this); }

    size_t GetCount() override { return items_.size(); }

    T* GetFirst() override {
        cursor_ = items_.begin();
        return Current();
    }

    T* GetNext() override {
        if (cursor_ != items_.end()) ++cursor_;
        return Current();
    }

  private:
    T* Current() const { return cursor_ != items_.end() ? *cursor_ : nullptr; }

    std::list<T*> items_;
    typename std::list<T*>::iterator cursor_;
    Owner* owner_;
};

// Holds a list of the library and releases it.
struct ListReleaser {
    template <typename T>
    void operator()(ZelCam::List<T>* list) const {
        list->Release();
    }
};
template <typename T>
using ListHolder = std::unique_ptr<ZelCam::List<T>, ListReleaser>;

// The element of a list of unique pointers that holds exactly `object`, or the end.
template <typename T, typename Base>
auto FindOwned(std::list<std::unique_ptr<T>>& owners, const Base* object) {
    return std::find_if(owners.begin(), owners.end(), [object](const std::unique_ptr<T>& owner) {
        return owner.get() == object;
    });
}

// Removes that element, and so destroys the object.
template <typename T, typename Base>
void RemoveOwned(std::list<std::unique_ptr<T>>& owners, const Base* object) {
    const auto found = FindOwned(owners, object);
    if (found != owners.end()) owners.erase(found);
}

}  // namespace ZelCameraApi::Internal
