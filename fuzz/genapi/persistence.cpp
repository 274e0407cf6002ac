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

bool read(CFeatureBag& bag, const std::string& text) {
    std::istringstream stream(text);
    try {
        stream >> bag;
        return true;
    } catch (const GENICAM_NAMESPACE::RuntimeException&) {
        return false;
    }
}

void require(bool condition) {
    if (!condition) std::abort();
}

// Every run begins with the same camera.
void reset(test::Camera& camera) {
    camera.port.memory.clear();
    camera.port.trace.clear();
    camera.map._InvalidateNodes();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);
int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static test::Camera camera;
    CFeatureBag bag;
    if (!read(bag, std::string(reinterpret_cast<const char*>(data), size))) return 0;

    std::ostringstream written;
    written << bag;
    CFeatureBag again;
    require(read(again, written.str()));
    const bool isComplete = written.str().find("\n# Left out: ") == std::string::npos;
    require(!isComplete || again == bag);

    reset(camera);
    GENICAM_NAMESPACE::gcstring_vector errors;
    require(bag.LoadFromBag(camera.nodeMap(), true, &errors) == errors.empty());
    return 0;
}
