// File names of libGenApi: DLL_NAME("GenApi") and the like. On this platform nothing is linked by
// including a header.
#ifndef GENAPI_GENAPILINKAGE_H
#define GENAPI_GENAPILINKAGE_H

#include <Base/GCLinkage.h>
#include <GenApi/GenApiNamespace.h>

#endif  // GENAPI_GENAPILINKAGE_H
