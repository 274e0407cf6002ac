#include "tools/zelcam/camera/openedcamera.h"

#include <iostream>

#include "tools/zelcam/camera/camerachoice.h"
#include "tools/zelcam/camera/reachability.h"
#include "tools/zelcam/camera/words.h"
#include "tools/zelcam/console/failure.h"
#include "tools/zelcam/console/printable.h"
#include "tools/zelcam/console/wordtable.h"

namespace ZelTool {

namespace {

using Access = ZelCam::DeviceAccess;

std::string OpenHint(ZelCamErr code, const Camera& camera) {
    if (NeedsAnAddress(camera)) {
        return "\nThe camera is visible but cannot be reached at its address. `" +
               ForceCommand(camera) + "`\nchanges the address.";
    }
    if (code == ZelCamErr_GenTL_ResourceInUse || code == ZelCamErr_GenTL_AccessDenied) {
        return "\nAnother program has the camera open, or did not close it properly: close that "
               "program, or\nwait some seconds until the camera notices. `--access readonly` may "
               "work meanwhile.";
    }
    if (camera.accessStatus == ZelCam::AccessStatus_NoAccess) {
        return "\nThe camera is visible but cannot be reached. Check that this user may open the "
               "device (udev rules, groups).";
    }
    return "";
}

constexpr Word<Module> kModuleNames[] = {
    {Module::Camera, "camera"}, {Module::Local, "local"},   {Module::Interface, "interface"},
    {Module::Stream, "stream"}, {Module::System, "system"}, {Module::Camera, "device"},
};

Access AccessOf(const std::string& name) {
    if (name == "readonly") return Access::ReadOnly;
    return name == "exclusive" ? Access::Exclusive : Access::Control;
}

}  // namespace

const std::vector<std::string> kAccessNames = {"auto", "readonly", "control", "exclusive"};

Module ModuleOf(const std::string& name) {
    return CodeOf(name, kModuleNames);
}

std::string ModuleWords(Module module) {
    return module == Module::Local ? "local device" : WordsFor(module, kModuleNames, "");
}

OpenedCamera::OpenedCamera(const Camera& camera, const std::string& access) : camera_(camera) {
    ZelCamErr code = ZelCamErr_Error;
    device_.reset(ZelCam_CreateDevice(camera.info, AccessOf(access), &code));
    if (!device_ && access == "auto") {
        // If this fails, too, the first code is the more useful one.
        device_.reset(ZelCam_CreateDevice(camera.info, Access::ReadOnly, nullptr));
        if (device_) std::cerr << "zelcam: note: opened read-only: " << ErrorWords(code) << '\n';
    }
    if (!device_) {
        const std::string reason = Printable(AccessReasonOf(camera));
        throw Failure(ExitCode::CannotOpen,
                      "camera " + Printable(camera.id) + " cannot be opened: " + ErrorWords(code) +
                          "; its access status is \"" + AccessWords(camera.accessStatus) + "\"" +
                          (reason.empty() ? "" : ": " + reason) + OpenHint(code, camera));
    }
}

ZelCam::Stream& OpenedCamera::Stream() {
    if (!stream_) {
        if (device_->GetNumStreams() == 0) {
            throw Failure(ExitCode::CannotOpen, "the camera has no data stream");
        }
        stream_.reset(device_->GetStreamByIndex(0));
    }
    if (!stream_) throw Failure(ExitCode::CannotOpen, "the camera's data stream cannot be opened");
    return *stream_;
}

ZelGenParam::Array* OpenedCamera::Find(Module module, ZelCamErr* code) {
    switch (module) {
        case Module::Local:
            return device_->GetTransportParameters(code);
        case Module::Interface:
            return camera_.info->GetInterface()->GetParameters(code);
        case Module::Stream:
            return Stream().GetParameters(code);
        case Module::System:
            *code = ZelCamErr_NoNodeMap;
            return nullptr;
        default:
            return device_->GetCameraParameters(code);
    }
}

ZelGenParam::Array& OpenedCamera::Features(Module module) {
    ZelCamErr code = ZelCamErr_NoNodeMap;
    ZelGenParam::Array* features = Find(module, &code);
    if (features == nullptr) {
        throw Failure(ExitCode::FeatureFailed, "the features of the " + ModuleWords(module) +
                                                   " are not available: " + ErrorWords(code));
    }
    return *features;
}

FeatureSession::FeatureSession(const CameraOptions& options)
    : session_(options, EnoughToSelect({options.camera})), module_(ModuleOf(options.module)) {
    camera_.emplace(SelectCamera(session_, options.camera), options.access);
}

FeatureSession::FeatureSession(const CameraOptions& options, std::vector<std::string>& words,
                               size_t others, const Means& means)
    : session_(options, EnoughToTake(words, others)), module_(ModuleOf(options.module)) {
    const size_t given = words.size();
    const auto open = [&] {
        const std::string name = TakeCamera(session_.Cameras(), words, others);
        camera_.emplace(SelectCamera(session_, name), options.access);
    };
    open();
    if (words.empty() || words.size() != given || !session_.CanSearchOn()) return;
    if (means(Features(), words.front())) return;
    camera_.reset();
    session_.SearchOn(EnoughToSelect({words.front()}));
    open();
}

}  // namespace ZelTool
