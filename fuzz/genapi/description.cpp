// Any bytes as a description: loaded, and if that works, everything in it is asked.
#include <cstddef>
#include <cstdint>

#include <Base/GCException.h>
#include <GenApi/IDestroy.h>
#include <GenApi/NodeMapFactory.h>
#include <GenApi/NodeMapRef.h>

#include "fuzz/genapi/walk.h"

using namespace GENAPI_NAMESPACE;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    constexpr std::size_t kMaxSize = 1 << 16;
    if (size == 0 || size > kMaxSize) return 0;
    try {
        CNodeMapFactory factory(ContentType_Xml, data, size);
        CNodeMapRef map(factory.CreateNodeMap());
        walk(*map._Ptr);
    } catch (const GENICAM_NAMESPACE::GenericException&) {
    }
    return 0;
}
