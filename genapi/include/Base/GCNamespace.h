// The versioned namespace of the base library, and its short name GenICam.
#ifndef GCBASE_GCNAMESPACE_H
#define GCBASE_GCNAMESPACE_H

#include <GenICamVersion.h>

#ifndef GENICAM_NAMESPACE_DEFINED
#define GENICAM_NAMESPACE_DEFINED
#ifdef GENICAM_COMPANY_SUFFIX
#define GENICAM_NAMESPACE                                                                 \
    GENICAM_SEP_UNDERSCORE_COMPANY(GenICam, GENICAM_VERSION_MAJOR, GENICAM_VERSION_MINOR, \
                                   GENICAM_COMPANY_SUFFIX)
#else
#define GENICAM_NAMESPACE \
    GENICAM_SEP_UNDERSCORE(GenICam, GENICAM_VERSION_MAJOR, GENICAM_VERSION_MINOR)
#endif
#endif

namespace GENICAM_NAMESPACE {}

#ifndef GENICAM_SUPPRESS_NAMESPACE_ALIAS
namespace GenICam = GENICAM_NAMESPACE;
#endif

#endif  // GCBASE_GCNAMESPACE_H
