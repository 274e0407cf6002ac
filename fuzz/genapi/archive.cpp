// Any bytes as a zip archive.
#include "genapi/description/archive.h"

#include <cstddef>
#include <cstdint>

#include <Base/GCException.h>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    try {
        GENAPI_NAMESPACE::Engine::UnzipFirstEntry({reinterpret_cast<const char*>(data), size});
    } catch (const GENICAM_NAMESPACE::RuntimeException&) {
        // refusing the input is right; only a crash or a hang is a fault
    }
    return 0;
}
