// A piece of the device's register space.
#ifndef GENAPI_IREGISTER_H
#define GENAPI_IREGISTER_H

#include <GenApi/IValue.h>

namespace GENAPI_NAMESPACE {

// Thread-safe; IValue lists the common errors. A transfer may be shorter than the register.
// OutOfRangeException for a longer one, LogicalErrorException for a null buffer.
struct GENAPI_DECL_ABSTRACT IRegister : virtual public IValue {
    virtual void Set(const uint8_t* pBuffer, int64_t Length, bool Verify = true) = 0;
    virtual void Get(uint8_t* pBuffer, int64_t Length, bool Verify = false,
                     bool IgnoreCache = false) = 0;
    virtual int64_t GetLength(bool Verify = false) = 0;
    // The sum of all parts of the address.
    virtual int64_t GetAddress(bool Verify = false) = 0;
};

}  // namespace GENAPI_NAMESPACE

#endif  // GENAPI_IREGISTER_H
