// The last failure of each thread: what GCGetLastError reports.
#pragma once

#include "gentl/GenTL.h"

namespace ZelCti {

struct LastError {
    GenTL::GC_ERROR code;
    char text[512];

    static const LastError& OfThread();

    // The text is "function: reason", cut where the room ends.
    static void Set(GenTL::GC_ERROR code, const char* function, const char* reason);
};

}  // namespace ZelCti
