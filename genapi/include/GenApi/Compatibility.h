// Names of other operating systems that this one lacks.
#ifndef GENAPI_COMPATIBILITY_H
#define GENAPI_COMPATIBILITY_H

#include <cstdint>

#ifndef GUID_DEFINED
#define GUID_DEFINED
using GUID = struct _GUID {
    uint32_t Data1;
    uint16_t Data2;
    uint16_t Data3;
    uint8_t Data4[8];
};
#endif

#endif  // GENAPI_COMPATIBILITY_H
