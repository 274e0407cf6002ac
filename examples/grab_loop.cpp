// Lists the cameras, opens one of them, and looks at a hundred frames.
//
//   grab_loop [number of the camera, from 0]
//
// Without a camera at hand: ZELSIM=1 ./grab_loop
//
// Shows the life of each object: who owns it, what ends it, and what can fail on the way.

#include <cstdio>
#include <cstdlib>
#include <memory>
#include <system_error>
#include <vector>

#include "ZelCam/ZelCam.h"
#include "ZelGenParam/Array.h"

namespace {

// The library's objects end with Release(), never with delete.
struct Releaser {
    template <typename T>
    void operator()(T* object) const {
        object->Release();
    }
};
template <typename T>
using Released = std::unique_ptr<T, Releaser>;

const char* OrDash(const char* text) {
    return text != nullptr ? text : "-";
}

// Lets an interface search for a second; it may know no camera before.
void Search(ZelCam::Interface& interface) {
    try {
        const ZelCamErr err = interface.ReEnumerateDevices(nullptr, 1000);
        if (err != 0)
            std::fprintf(stderr, "%s: search failed: %s\n", interface.GetId(),
                         ZelCam::ErrorText(err));
    } catch (const std::system_error& error) {
        std::fprintf(stderr, "%s: %s\n", interface.GetId(), error.what());
    }
}

// The infos belong to the System and need no Release.
std::vector<ZelCam::DeviceInfo*> FindCameras(ZelCam::System& system) {
    std::vector<ZelCam::DeviceInfo*> found;
    Released<ZelCam::List<ZelCam::Interface>> interfaces(
        system.GetInterfaceList(ZelCam::InterfaceType::Unknown));
    if (!interfaces) return found;
    for (auto* interface = interfaces->GetFirst(); interface; interface = interfaces->GetNext()) {
        Search(*interface);
        Released<ZelCam::List<ZelCam::DeviceInfo>> cameras(interface->GetDeviceInfoList());
        if (!cameras) continue;
        for (auto* info = cameras->GetFirst(); info; info = cameras->GetNext()) {
            std::printf("%zu: %s, %s %s, serial number %s\n", found.size(), info->GetID(),
                        OrDash(info->GetVendor()), OrDash(info->GetModel()),
                        OrDash(info->GetSerialNumber()));
            found.push_back(info);
        }
    }
    return found;
}

// The frame may be used until its buffer is queued again.
void LookAt(ZelCam::Buffer& buffer) {
    const ZelImageInfo* image = buffer.GetImage();
    std::printf("frame %llu: %u x %u, pixel format 0x%08llX%s\n",
                static_cast<unsigned long long>(image->frameId), image->width, image->height,
                static_cast<unsigned long long>(buffer.GetPixelFormat()),
                buffer.IsIncomplete() ? ", incomplete" : "");
}

ZelCamErr Grab(ZelCam::Stream& stream, int frames) {
    while (frames-- > 0) {
        ZelCamErr err = ZelCamErr_Success;
        ZelCam::Buffer* buffer = stream.GetBuffer(2000, &err);
        if (buffer == nullptr) return err;  // ZelCamErr_GenTL_Timeout: nothing came in time
        LookAt(*buffer);
        err = stream.QueueBuffer(buffer);
        if (err != 0) return err;
    }
    return ZelCamErr_Success;
}

// Cameras need not have the features that start and stop them.
ZelCamErr Done(ZelCamErr err) {
    return err == ZelCamErr_ParamNotFound ? ZelCamErr_Success : err;
}

// The producer receives before the camera sends.
ZelCamErr StartAndGrab(ZelCam::Stream& stream, ZelGenParam::Array& features) {
    ZelCamErr err = stream.AllocBufferQueue(nullptr, 8);
    if (err == 0) err = stream.StartAcquisition(ZelCam::Infinite, ZelCam::StartFlag_Default);
    if (err == 0) err = Done(features.ExecuteCommand("AcquisitionStart"));
    if (err == 0) err = Grab(stream, 100);
    std::printf("%llu frames lost for want of a buffer\n",
                static_cast<unsigned long long>(stream.GetNumUnderrun()));
    return err;
}

// Every step is done whatever came of those before: the next program wants a camera that is idle
// and whose settings are not locked.
void Stop(ZelCam::Stream& stream, ZelGenParam::Array& features) {
    features.ExecuteCommand("AcquisitionStop");
    stream.StopAcquisition(ZelCam::StopFlag_Default);
    stream.ReleaseBufferQueue();
    features.SetIntegerValue("TLParamsLocked", 0);
}

// TLParamsLocked keeps the camera from changing the size of frames after buffers were made for
// them.
ZelCamErr GrabLocked(ZelCam::Stream& stream, ZelGenParam::Array& features) {
    ZelCamErr err = Done(features.SetIntegerValue("TLParamsLocked", 1));
    if (err == 0) err = StartAndGrab(stream, features);
    Stop(stream, features);
    return err;
}

}  // namespace

int main(int argc, char** argv) {
    Released<ZelCam::System> system(ZelCam_GetSystem());
    if (!system) {
        std::fprintf(stderr, "the default producer, libZelCTI.cti, cannot be loaded\n");
        return 1;
    }
    const std::vector<ZelCam::DeviceInfo*> cameras = FindCameras(*system);
    const size_t wanted = argc > 1 ? std::strtoul(argv[1], nullptr, 10) : 0;
    if (wanted >= cameras.size()) {
        std::fprintf(stderr, "there is no camera %zu\n", wanted);
        return 1;
    }
    // Declared after the System, and so ended before it.
    ZelCamErr err = ZelCamErr_Error;
    Released<ZelCam::Device> camera(
        ZelCam_CreateDevice(cameras[wanted], ZelCam::DeviceAccess::Control, &err));
    Released<ZelCam::Stream> stream(camera ? camera->GetStreamByIndex(0) : nullptr);
    if (!stream) {
        std::fprintf(stderr, "the camera cannot be opened: %s\n", ZelCam::ErrorText(err));
        return 1;
    }
    ZelGenParam::Array* const features = camera->GetCameraParameters(&err);
    if (features != nullptr) err = GrabLocked(*stream, *features);
    if (err != 0) std::fprintf(stderr, "grabbing ended: %s\n", ZelCam::ErrorText(err));
    return err == 0 ? 0 : 1;
}
