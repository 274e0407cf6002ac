// The URL under which a port announces its description. The registers of the port hold one at
// FakePort::kDescription.
#include <cstdint>
#include <cstdlib>
#include <string>

#include "ZelCameraApi/ZelGenParam/arrayimpl.h"
#include "fuzz/library/camera.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    FakePort port;
    port.Store(Fuzz::kCameraDescription);
    port.urls = {{std::string(reinterpret_cast<const char*>(data), size)}};
    ZelCamErr err = ZelCamErr_Success;
    const auto array = ZelCameraApi::Internal::CreateArray(port.Module(), &err, nullptr);
    if ((array == nullptr) != (err != ZelCamErr_Success)) std::abort();
    if (array != nullptr && array->GetNodeMap(nullptr) == nullptr) std::abort();
    return 0;
}
