// Builders of library file names.
#ifndef GCBASE_GCLINKAGE_H
#define GCBASE_GCLINKAGE_H

#include <GenICamVersion.h>

#define DLL_PREFIX "lib"
#define LIB_SUFFIX ".so"
#define DLL_SUFFIX ".so"
#ifdef _DEBUG
#define GENICAM_DEBUG_SUFFIX "_d"
#else
#define GENICAM_DEBUG_SUFFIX ""
#endif
#define GENICAM_VERSION_SUFFIX \
    GENICAM_DEBUG_SUFFIX       \
    "_" GENICAM_COMPILER_STR "_v" GENICAM_VERSION_MAJOR_STR "_" GENICAM_VERSION_MINOR_STR

#define LIB_NAME(module) DLL_PREFIX module GENICAM_VERSION_SUFFIX LIB_SUFFIX
#define DLL_NAME(module) DLL_PREFIX module GENICAM_VERSION_SUFFIX DLL_SUFFIX
#define EXE_NAME(module) module GENICAM_VERSION_SUFFIX

#endif  // GCBASE_GCLINKAGE_H
