// The bytes of a camera's event on their way to the features it carries. The first byte chooses the
// form: 0 GigE Vision, otherwise USB3 Vision.
#include <cstdint>

#include "ZelCameraApi/eventadapter.h"
#include "fuzz/library/camera.h"

using namespace ZelCameraApi::Internal;

namespace {

struct Receiver {
    explicit Receiver(const char* tlType)
        : camera(tlType), adapter(CreateEventAdapter(camera.port.Module(), camera.nodeMap)) {}

    Fuzz::Camera camera;
    std::unique_ptr<GenApi::CEventAdapter> adapter;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    static Receiver gev("GEV");
    static Receiver u3v("U3V");
    if (size == 0) return 0;
    Receiver& receiver = data[0] == 0 ? gev : u3v;
    try {
        receiver.adapter->DeliverMessage(data + 1, static_cast<uint32_t>(size - 1));
    } catch (const GenICam::GenericException&) {
        // refusing a bad message is right; DeviceImpl drops it
    }
    receiver.camera.features->GetIntegerValue("Frame", nullptr);
    return 0;
}
