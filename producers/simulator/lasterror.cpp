#include "producers/simulator/lasterror.h"

#include <cstdio>

namespace ZelSim {

namespace {

// Plain data: a destructor would keep the producer in memory until the last thread ends.
thread_local LastError _last = {GenTL::GC_ERR_SUCCESS, "No error"};

}  // namespace

const LastError& LastError::OfThread() {
    return _last;
}

void LastError::Set(GenTL::GC_ERROR code, const char* function, const char* reason) {
    _last.code = code;
    std::snprintf(_last.text, sizeof(_last.text), "%s: %s", function, reason);
}

}  // namespace ZelSim
