// A pointer of the consumer's on a node or a node map.
#ifndef GENAPI_IUSERDATA_H
#define GENAPI_IUSERDATA_H

#include <GenApi/GenApiDll.h>

namespace GENAPI_NAMESPACE {

using UserData_t = void*;

// Thread-safe. The engine never looks at what the pointer points to.
struct GENAPI_DECL_ABSTRACT IUserData {
    // Null until something was set.
    virtual UserData_t GetUserData() const = 0;
    // Gives the former pointer.
    virtual UserData_t SetUserData(UserData_t userdata) = 0;

  protected:
    ~IUserData() = default;
};

}  // namespace GENAPI_NAMESPACE

#endif  // GENAPI_IUSERDATA_H
