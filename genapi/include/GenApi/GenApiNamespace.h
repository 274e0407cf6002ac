// The versioned namespace of the node-map interface, and its short name GenApi.
#ifndef GENAPI_GENAPINAMESPACE_H
#define GENAPI_GENAPINAMESPACE_H

#include <GenICamVersion.h>

#ifndef GENAPI_NAMESPACE_DEFINED
#define GENAPI_NAMESPACE_DEFINED
#ifdef GENICAM_COMPANY_SUFFIX
#define GENAPI_NAMESPACE                                                                 \
    GENICAM_SEP_UNDERSCORE_COMPANY(GenApi, GENICAM_VERSION_MAJOR, GENICAM_VERSION_MINOR, \
                                   GENICAM_COMPANY_SUFFIX)
#else
#define GENAPI_NAMESPACE \
    GENICAM_SEP_UNDERSCORE(GenApi, GENICAM_VERSION_MAJOR, GENICAM_VERSION_MINOR)
#endif
#endif

namespace GENAPI_NAMESPACE {}

#ifndef GENICAM_SUPPRESS_NAMESPACE_ALIAS
namespace GenApi = GENAPI_NAMESPACE;
#endif

#endif  // GENAPI_GENAPINAMESPACE_H
