// Visibility of libGenApi's exports.
//
// Consumers export interfaces and classes, too, so that dynamic_cast and exceptions work across
// libraries that hide their symbols.
#ifndef GENAPI_GENAPIDLL_H
#define GENAPI_GENAPIDLL_H

#include <GenApi/GenApiNamespace.h>

#define GENAPI_DECL __attribute__((visibility("default")))
#define GENAPI_DECL_ABSTRACT __attribute__((visibility("default")))

#ifndef GENAPI_EXPORTS
#define GENAPI_EXPIMP_TEMPL extern
#endif

#endif  // GENAPI_GENAPIDLL_H
