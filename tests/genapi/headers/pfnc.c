// The pixel formats are for C programs too.
#define PFNC_INCLUDE_HELPERS
#include <GenTL/PFNC.h>

_Static_assert(PFNC_PIXEL_SIZE(PFNC_Mono12p) == 12, "size of a pixel");
_Static_assert(PFNC_IS_PIXEL_MULTIPLE_COMPONENT(PFNC_RGB8), "components");
_Static_assert(!PFNC_IS_PIXEL_CUSTOM(GVSP_Mono12Packed), "a format of the standard");
_Static_assert(Mono12Packed == GVSP_Mono12Packed, "enumerators have the values of the macros");

const char* NameOf(PfncFormat format);
const char* NameOf(PfncFormat format) {
    return GetPixelFormatName(format);
}
