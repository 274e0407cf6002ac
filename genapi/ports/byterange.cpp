#include "genapi/ports/byterange.h"

#include <Base/GCCompatibility.h>
#include <Base/GCException.h>

namespace GENAPI_NAMESPACE {
namespace Engine {

bool ReadPortSize(void* buffer, int64_t address, int64_t length, int64_t size) {
    if (address != kPortSizeAddress || length != kPortSizeLength) return false;
    uint64_t rest = static_cast<uint64_t>(size);
    for (int64_t i = 0; i < kPortSizeLength; ++i, rest >>= 8)
        static_cast<uint8_t*>(buffer)[i] = static_cast<uint8_t>(rest);
    return true;
}

void CheckByteRange(const char* portName, int64_t address, int64_t length, int64_t begin,
                    int64_t end) {
    // In this order no difference can overflow.
    const bool starts = begin <= address && address <= end;
    if (starts && 0 <= length && length <= end - address) return;
    // The sum may overflow; unsigned, it wraps.
    const uint64_t last = static_cast<uint64_t>(address) + static_cast<uint64_t>(length);
    throw RUNTIME_EXCEPTION("%s : Attempt to read address range [%" FMT_I64 "d,%" FMT_I64
                            "d] which is outside the buffers address range [%" FMT_I64 "d,%" FMT_I64
                            "d]",
                            portName, address, static_cast<int64_t>(last), begin, end);
}

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE
