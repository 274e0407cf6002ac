// A producer file with three functions only.
#include "gentl/GenTL.h"

namespace GenTL {

extern "C" {

GC_ERROR GCInitLib() {
    return GC_ERR_SUCCESS;
}

GC_ERROR GCCloseLib() {
    return GC_ERR_SUCCESS;
}

GC_ERROR TLOpen(TL_HANDLE* tl) {
    static int system;
    *tl = &system;
    return GC_ERR_SUCCESS;
}

}  // extern "C"

}  // namespace GenTL
