// The text of a feature bag is a file from anywhere: it is read, loaded into a camera, and what was
// read must survive being written and read again.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <sstream>
#include <string>

#include <Base/GCException.h>
#include <GenApi/Persistence.h>

#include "tests/genapi/persistence/camera.h"

using namespace GENAPI_NAMESPACE;

namespace {

bool Read(CFeatureBag& bag, const std::string& text) {
    std::istringstream stream(text);
    try {
        stream >> bag;
        return true;
    } catch (const GENICAM_NAMESPACE::RuntimeException&) {
        return false;
    }
}

void Require(bool condition) {
    if (!condition) std::abort();
}

// Every run begins with the same camera.
void Reset(test::Camera& camera) {
    camera.port.memory.clear();
    camera.port.trace.clear();
    camera.map._InvalidateNodes();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size);
int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    static test::Camera camera;
    CFeatureBag bag;
    if (!Read(bag, std::string(reinterpret_cast<const char*>(data), size))) return 0;

    std::ostringstream written;
    written << bag;
    CFeatureBag again;
    Require(Read(again, written.str()));
    const bool isComplete = written.str().find("\n# Left out: ") == std::string::npos;
    Require(!isComplete || again == bag);

    Reset(camera);
    GENICAM_NAMESPACE::gcstring_vector errors;
    Require(bag.LoadFromBag(camera.NodeMap(), true, &errors) == errors.empty());
    return 0;
}
