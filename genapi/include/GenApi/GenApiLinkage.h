// File names of libGenApi.
#ifndef GENAPI_GENAPILINKAGE_H
#define GENAPI_GENAPILINKAGE_H

#include <Base/GCLinkage.h>
#include <GenApi/GenApiNamespace.h>

// What a consumer passes to the loader when it loads the library by name.
#define GENAPI_DLL_NAME DLL_NAME("GenApi")

#endif  // GENAPI_GENAPILINKAGE_H
