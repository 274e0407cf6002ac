// One picture from the first camera. grab_loop.cpp shows how to choose a camera, how to go on
// grabbing, and what can fail. Without a camera at hand: ZELSIM=1 ./one_picture

#include <cstdio>

#include "ZelCam/ZelCam.h"
#include "ZelGenParam/Array.h"

int main() {
    ZelCam::Device* camera = ZelCam_CreateDevice(nullptr, ZelCam::DeviceAccess::Exclusive, nullptr);
    ZelCam::Stream* stream = camera ? camera->GetStreamByIndex(0) : nullptr;
    ZelGenParam::Array* features = stream ? camera->GetCameraParameters(nullptr) : nullptr;
    if (!features) {
        std::fprintf(stderr, "no camera can be opened\n");
        return 1;
    }
    // Cameras need not have the features that start and stop them, so their results are not looked
    // at.
    features->SetIntegerValue("TLParamsLocked", 1);  // the size of frames is fixed
    const bool started = stream->AllocBufferQueue(nullptr, 4) == ZelCamErr_Success &&
                         stream->StartAcquisition(1, ZelCam::StartFlag_Default) == 0;
    if (started) features->ExecuteCommand("AcquisitionStart");  // now the camera sends
    ZelCam::Buffer* buffer = started ? stream->GetBuffer(5000, nullptr) : nullptr;
    const ZelImageInfo* image = buffer ? buffer->GetImage() : nullptr;
    std::printf("%u x %u pixels\n", image ? image->width : 0, image ? image->height : 0);
    features->ExecuteCommand("AcquisitionStop");  // and the same backwards
    stream->StopAcquisition(ZelCam::StopFlag_Default);
    features->SetIntegerValue("TLParamsLocked", 0);
    camera->Release();
    return image ? 0 : 1;
}
