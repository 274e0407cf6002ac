// A configuration from anywhere, loaded into a camera: as a file, and as the text of the features
// alone.
#include <cstdint>
#include <cstdlib>
#include <sstream>
#include <string>

#include <tinyxml2.h>

#include "ZelCameraApi/configurationfile.h"
#include "fuzz/library/camera.h"

using namespace ZelCameraApi::Internal;

namespace {

void Load(const std::string& text, GenApi::INodeMap* nodeMap) {
    std::istringstream stream(text);
    const ZelCamErr err = LoadFeatures(stream, nodeMap);
    if (err != ZelCamErr_Success && err != ZelCamErr_InvalidFile &&
        err != ZelCamErr_LoadConfigFailed) {
        std::abort();
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    static Fuzz::Camera camera("GEV");
    const std::string text(reinterpret_cast<const char*>(data), size);
    Load(text, camera.nodeMap);

    tinyxml2::XMLDocument document;
    if (document.Parse(text.c_str()) != tinyxml2::XML_SUCCESS) return 0;
    GetCameraAttribute(document, kInterfaceId);
    GetCameraAttribute(document, kCameraId);
    if (const auto features = GetFeatureText(document)) Load(*features, camera.nodeMap);
    return 0;
}
