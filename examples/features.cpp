// Sets features of the first camera, shows what they do to the image, saves the settings and
// restores them, and listens to an event of the camera.
//
//   features [file for the settings]
//
// Without a camera at hand: ZELSIM=1 ./features

#include <atomic>
#include <chrono>
#include <cstdio>
#include <memory>
#include <thread>

#include "ZelCam/ZelCam.h"
#include "ZelGenParam/Array.h"

namespace {

struct Releaser {
    void operator()(ZelCam::Device* camera) const { camera->Release(); }
};

bool Succeeded(ZelCamErr err, const char* what) {
    if (err != ZelCamErr_Success)
        std::fprintf(stderr, "%s failed: %s\n", what, ZelCam::ErrorText(err));
    return err == ZelCamErr_Success;
}

// Prints the size and mean brightness of the next frame.
ZelCamErr DescribeNext(ZelCam::Stream& stream) {
    ZelCamErr err = ZelCamErr_Success;
    ZelCam::Buffer* const buffer = stream.GetBuffer(5000, &err);
    if (!buffer) return err;
    const ZelImageInfo* const image = buffer->GetImage();
    const auto* const bytes = static_cast<const unsigned char*>(image->imageData);
    unsigned long long sum = 0;
    for (uint32_t i = 0; i < image->imageSize; ++i)
        sum += bytes[i];
    std::printf("  frame of %u x %u, mean %llu\n", image->width, image->height,
                sum / image->imageSize);
    return ZelCamErr_Success;
}

// Grabs one frame. The stream is opened for it and closed again, and TLParamsLocked is 1 meanwhile
// only: the image format is locked while it is. Cameras without these features are started by the
// producer alone, so that "not found" is no failure.
bool DescribeFrame(ZelCam::Device& camera, ZelGenParam::Array& features) {
    ZelCam::Stream* const stream = camera.GetStreamByIndex(0);
    if (!stream) return Succeeded(ZelCamErr_Error, "opening the stream");
    features.SetIntegerValue("TLParamsLocked", 1);
    ZelCamErr err = stream->AllocBufferQueue(nullptr, 4);
    if (err == ZelCamErr_Success) err = stream->StartAcquisition(1, ZelCam::StartFlag_Default);
    if (err == ZelCamErr_Success) err = features.ExecuteCommand("AcquisitionStart");
    if (err == ZelCamErr_Success || err == ZelCamErr_ParamNotFound) err = DescribeNext(*stream);
    features.ExecuteCommand("AcquisitionStop");
    stream->StopAcquisition(ZelCam::StopFlag_Default);
    stream->Release();
    features.SetIntegerValue("TLParamsLocked", 0);
    return Succeeded(err, "grabbing");
}

bool ChangeImage(ZelGenParam::Array& features) {
    return Succeeded(features.SetIntegerValue("Width", 320), "setting Width") &&
           Succeeded(features.SetIntegerValue("Height", 240), "setting Height") &&
           Succeeded(features.SetFloatValue("ExposureTime", 2500), "setting ExposureTime");
}

// Called on a thread of the library when the event's features have changed.
struct Counter final : ZelGenParam::ParamEventSink {
    void OnParamChanged(ZelGenParam::Param*) override { ++count; }
    std::atomic<int> count{0};
};

// Lets the camera send a test event and waits for it.
bool ReceiveEvent(ZelGenParam::Array& features) {
    ZelCamErr err = ZelCamErr_Success;
    ZelGenParam::Param* const event = features.GetParam("EventTest", &err);
    Counter counter;
    if (!Succeeded(features.SetEnumValueStr("EventSelector", "Test"), "choosing the event") ||
        !Succeeded(features.SetEnumValueStr("EventNotification", "On"), "switching it on") ||
        !Succeeded(err, "finding the event's feature")) {
        return false;
    }
    event->RegisterEventSink(&counter);
    err = features.ExecuteCommand("TestEventGenerate");
    for (int i = 0; i < 500 && counter.count == 0; ++i)
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    event->UnregisterEventSink(&counter);
    const long long time = features.GetIntegerValue("EventTestTimestamp", nullptr);
    if (counter.count > 0) std::printf("event of the camera: Test, at %lld of its clock\n", time);
    return counter.count > 0 && Succeeded(err, "generating the event");
}

}  // namespace

int main(int argc, char** argv) {
    const char* const file = argc > 1 ? argv[1] : "camera.xml";
    ZelCamErr err = ZelCamErr_Success;
    const std::unique_ptr<ZelCam::Device, Releaser> camera(
        ZelCam_CreateDevice(nullptr, ZelCam::DeviceAccess::Exclusive, &err));
    ZelGenParam::Array* const features = camera ? camera->GetCameraParameters(&err) : nullptr;
    if (!features) {
        Succeeded(err, "opening the camera and its features");
        return 1;
    }

    std::printf("as it is, saved to %s:\n", file);
    bool good =
        Succeeded(camera->SaveConfiguration(file), "saving") && DescribeFrame(*camera, *features);
    std::puts("Width 320, Height 240, ExposureTime 2500 us:");
    good = good && ChangeImage(*features) && DescribeFrame(*camera, *features);
    std::printf("restored from %s:\n", file);
    good = good && Succeeded(camera->LoadConfiguration(file), "loading") &&
           DescribeFrame(*camera, *features);
    good = good && ReceiveEvent(*features);
    return good ? 0 : 1;
}
