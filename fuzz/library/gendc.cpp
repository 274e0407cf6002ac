// A buffer whose producer says that it holds a GenDC container. The parts that are found lie within
// it, behind each other.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <vector>

#include "ZelCameraApi/base/gentl_error.h"
#include "ZelCameraApi/gendcparts.h"

using namespace ZelCameraApi::Internal;

namespace {

void Require(bool condition) {
    if (!condition) std::abort();
}

// Reads all of it, so that a sanitizer sees bytes that are not the buffer's.
void Touch(const ZelBufferPart& part) {
    volatile uint8_t sum = 0;
    for (size_t i = 0; i < part.size; ++i)
        sum = static_cast<uint8_t>(sum + static_cast<const uint8_t*>(part.data)[i]);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    std::vector<uint8_t> buffer(data, data + size);
    std::vector<ZelBufferPart> parts;
    try {
        parts = FindGenDcParts(buffer.data(), buffer.size());
    } catch (const zelcam_exception&) {
        return 0;
    }
    Require(parts.size() <= kMostGenDcParts);
    uint64_t total = 0;
    for (const ZelBufferPart& part : parts) {
        Touch(part);
        Require(part.deliveredHeight <= part.height);
        total += part.size;
    }
    Require(total < size || parts.empty());
    return 0;
}
