// A description, and what a program does with the camera, which fails and answers at random: see
// input.h. The mutator changes descriptions by their structure, so that most of them load.
#include <cstddef>
#include <cstdint>

#include <Base/GCException.h>
#include <GenApi/NodeMapFactory.h>
#include <GenApi/NodeMapRef.h>

#include "fuzz/genapi/input.h"
#include "fuzz/genapi/usage.h"

using namespace GENAPI_NAMESPACE;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    constexpr size_t kMaxSize = 1 << 16;
    if (size > kMaxSize) return 0;
    const auto [description, script] = Fuzz::SplitInput(data, size);
    if (description.empty()) return 0;
    Fuzz::Choices choices(reinterpret_cast<const uint8_t*>(script.data()), script.size());
    try {
        CNodeMapFactory factory(ContentType_Xml, description.data(), description.size());
        CNodeMapRef map(factory.CreateNodeMap());
        Fuzz::Use(*map._Ptr, choices);
    } catch (const GENICAM_NAMESPACE::GenericException&) {
        // refusing the input is right; only a crash or a hang is a fault
    }
    return 0;
}
