// The interface of every node and every port.
#ifndef GENAPI_IBASE_H
#define GENAPI_IBASE_H

#include <GenApi/GenApiDll.h>
#include <GenApi/Types.h>

namespace GENAPI_NAMESPACE {

// Root of all interfaces; dynamic_cast moves from one interface of an object to another.
struct GENAPI_DECL_ABSTRACT IBase {
    // The current access mode. Thread-safe on nodes. A node map asks the consumer's port when it
    // computes the mode of the port's node; the port must not throw.
    virtual EAccessMode GetAccessMode() const = 0;

    virtual ~IBase() = 0;
};

inline IBase::~IBase() {}

}  // namespace GENAPI_NAMESPACE

#endif  // GENAPI_IBASE_H
