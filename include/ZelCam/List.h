// The collections that the library hands out.
#ifndef ZELCAM_LIST_H
#define ZELCAM_LIST_H

#include <cstddef>

namespace ZelCam {

// A snapshot of a collection, walked with a cursor:
//
//     for (ZelCam::Interface* i = list->GetFirst(); i != nullptr; i = list->GetNext()) ...
//     list->Release();
//
// The items belong to the object that handed out the list, and outlive the list. A list keeps its
// original items, even if the owner enumerates again. If the application does not release a list,
// its owner deletes it at its own end. Thread-bound (see ZelCam.h).
template <typename T>
class List {
  public:
    // Gives the list back to its owner, which deletes it. The items stay.
    virtual void Release() = 0;

    virtual size_t GetCount() = 0;

    // Moves the cursor to the first item and returns it; null if the list is empty.
    virtual T* GetFirst() = 0;

    // Moves the cursor to the next item and returns it; null at the end, and before any GetFirst.
    virtual T* GetNext() = 0;

  protected:
    ~List() = default;
};

}  // namespace ZelCam

#endif  // ZELCAM_LIST_H
