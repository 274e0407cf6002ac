// One picture from the first camera. grab_loop.cpp shows how to choose a camera, how to go on
// grabbing, and what can fail.

#include <cstdio>

#include "ZelCam/ZelCam.h"

int main() {
    ZelCam::Device* camera = ZelCam_CreateDevice(nullptr, ZelCam::DeviceAccess::Exclusive, nullptr);
    ZelCam::Stream* stream = camera ? camera->GetStreamByIndex(0) : nullptr;
    const bool started = stream && stream->AllocBufferQueue(nullptr, 4) == ZelCamErr_Success &&
                         stream->StartAcquisition(1, ZelCam::StartFlag_Default) == 0;
    ZelCam::Buffer* buffer = started ? stream->GetBuffer(5000, nullptr) : nullptr;
    const ZelImageInfo* image = buffer ? buffer->GetImage() : nullptr;
    std::printf("%u x %u pixels\n", image ? image->width : 0, image ? image->height : 0);
    if (camera) camera->Release();
    return image ? 0 : 1;
}
