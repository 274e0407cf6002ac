// A pointer that the consumer attaches to a node or a node map.
#ifndef GENAPI_IUSERDATA_H
#define GENAPI_IUSERDATA_H

#include <GenApi/GenApiDll.h>

namespace GENAPI_NAMESPACE {

using UserData_t = void*;

// Thread-safe. The engine does not use the pointer.
struct GENAPI_DECL_ABSTRACT IUserData {
    // Null until it is set.
    virtual UserData_t GetUserData() const = 0;
    // Returns the previous pointer.
    virtual UserData_t SetUserData(UserData_t userdata) = 0;

  protected:
    ~IUserData() = default;
};

}  // namespace GENAPI_NAMESPACE

#endif  // GENAPI_IUSERDATA_H
