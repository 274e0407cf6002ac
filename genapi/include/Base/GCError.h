// The type of error codes of C-style operations. Failures of this library are exceptions.
#ifndef GCBASE_GCERROR_H
#define GCBASE_GCERROR_H

#include <Base/GCTypes.h>

namespace GENICAM_NAMESPACE {

// 0 means success. The type is inside the namespace because transport layers have one of the same
// name.
using GC_ERROR = int32_t;

}  // namespace GENICAM_NAMESPACE

#endif  // GCBASE_GCERROR_H
