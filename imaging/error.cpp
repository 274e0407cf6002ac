#include "imaging/error.h"

#include <cstring>

#include "ZelImage/ZelImage.h"

namespace ZelImage {

namespace {

// Without a destructor, which would run when the thread ends, perhaps after the library is gone.
thread_local char lastReason[400] = "";

}  // namespace

void Internal::StoreReason(const char* reason) noexcept {
    const size_t size = strnlen(reason, sizeof lastReason - 1);
    std::memcpy(lastReason, reason, size);
    lastReason[size] = '\0';
}

const char* LastReason() {
    return lastReason;
}

}  // namespace ZelImage
