// File names of libGenApi: DLL_NAME("GenApi") and the like. Including a header does not link a
// library on this platform.
#ifndef GENAPI_GENAPILINKAGE_H
#define GENAPI_GENAPILINKAGE_H

#include <Base/GCLinkage.h>
#include <GenApi/GenApiNamespace.h>

#endif  // GENAPI_GENAPILINKAGE_H
