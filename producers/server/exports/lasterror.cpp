#include "producers/server/exports/lasterror.h"

#include <cstdio>

namespace ZelCti {

namespace {

// Plain data: a destructor would keep the producer in memory until the last thread ends.
thread_local LastError lastError = {GenTL::GC_ERR_SUCCESS, "No error"};

}  // namespace

const LastError& LastError::OfThread() {
    return lastError;
}

void LastError::Set(GenTL::GC_ERROR code, const char* function, const char* reason) {
    lastError.code = code;
    std::snprintf(lastError.text, sizeof(lastError.text), "%s: %s", function, reason);
}

}  // namespace ZelCti
