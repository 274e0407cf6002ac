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
// The items belong to the object that handed out the list and outlive it. A list keeps the items it
// was made with, whatever the owner enumerates later. A list that is not released is deleted with
// its owner. Thread-bound (see ZelCam.h).
template <typename T>
class List {
  public:
    // Gives the list back to its owner, which deletes it. The items are not touched.
    virtual void Release() = 0;

    virtual size_t GetCount() = 0;

    // Moves the cursor to the first item and returns it; null when the list is empty.
    virtual T* GetFirst() = 0;

    // Moves the cursor on and returns the item there; null at the end, and before any GetFirst.
    virtual T* GetNext() = 0;

  protected:
    ~List() = default;
};

}  // namespace ZelCam

#endif  // ZELCAM_LIST_H
