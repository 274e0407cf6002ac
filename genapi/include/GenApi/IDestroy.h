// Destruction of an object.
#ifndef GENAPI_IDESTROY_H
#define GENAPI_IDESTROY_H

#include <GenApi/GenApiDll.h>

namespace GENAPI_NAMESPACE {

struct GENAPI_DECL_ABSTRACT IDestroy {
    // Destroys the object and invalidates the pointer.
    virtual void Destroy() = 0;

  protected:
    ~IDestroy() = default;
};

}  // namespace GENAPI_NAMESPACE

#endif  // GENAPI_IDESTROY_H
