// Integer types with their limits, and the visibility of libGCBase's exports.
#ifndef GCBASE_GCTYPES_H
#define GCBASE_GCTYPES_H

#include <cstddef>
#include <cstdint>

#include <Base/GCCompatibility.h>
#include <Base/GCNamespace.h>

#ifdef GCBASE_EXPORTS
#define GCBASE_API __attribute__((visibility("default")))
#else
#define GCBASE_API
#endif
// All libraries, even those that hide their symbols, must share the type information of exceptions.
#define GCBASE_RTTI_CLASS_API __attribute__((visibility("default")))

#ifndef GENICAM_INTERFACE
#define GENICAM_INTERFACE struct
#endif

#define GC_INT64_MAX INT64_MAX
#define GC_INT64_MIN INT64_MIN
#define GC_UINT64_MAX UINT64_MAX
#define GC_INT32_MAX INT32_MAX
#define GC_INT32_MIN INT32_MIN
#define GC_UINT32_MAX UINT32_MAX
#define GC_INT8_MAX INT8_MAX
#define GC_INT8_MIN INT8_MIN
#define GC_UINT8_MAX UINT8_MAX

#define GC_UNUSED(unused_var) ((void)(unused_var))
#define GENICAM_UNUSED(unused_var) ((void)(unused_var))
#define GENICAM_DEPRECATED(decl) decl __attribute__((deprecated))
#define GC_COUNTOF(arr) (sizeof(arr) / sizeof((arr)[0]))

#ifdef __LP64__
#define PLATFORM_NAME "Linux64_x64"
#else
#define PLATFORM_NAME "Linux32_i86"
#endif

using float32_t = float;
using float64_t = double;

namespace GENICAM_NAMESPACE {

struct Version_t {
    uint16_t Major;
    uint16_t Minor;
    uint16_t SubMinor;
};

}  // namespace GENICAM_NAMESPACE

using GENICAM_NAMESPACE::Version_t;

#endif  // GCBASE_GCTYPES_H
