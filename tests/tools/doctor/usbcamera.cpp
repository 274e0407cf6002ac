// A producer with one USB3 Vision camera. USBCAMERA_DEVICE is the file of its device, without which
// it cannot be opened.

#include <cstdlib>
#include <unistd.h>

#include "tests/producer/scriptedtransport.h"

namespace {

const bool kIsMade = [] {
    auto camera = std::make_shared<ZelTest::ScriptedCamera>("USB");
    const char* const device = std::getenv("USBCAMERA_DEVICE");
    if (device == nullptr || access(device, R_OK | W_OK) != 0)
        camera->status = GenTL::DEVICE_ACCESS_STATUS_NOACCESS;
    camera->accessReason.clear();
    const auto interface =
        std::make_shared<ZelTest::ScriptedInterface>("usb1", ZelCti::CameraList{camera});
    camera->info.tlType = interface->info.tlType = "U3V";
    ZelTest::Script::Instance().transports = {
        std::make_shared<ZelTest::ScriptedTransport>(ZelCti::InterfaceList{interface})};
    return true;
}();

}  // namespace
