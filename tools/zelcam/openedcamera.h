// One camera, open, and the features of everything on the way to it.
#ifndef ZELCAM_TOOLS_ZELCAM_OPENEDCAMERA_H
#define ZELCAM_TOOLS_ZELCAM_OPENEDCAMERA_H

#include <string>
#include <vector>

#include "ZelGenParam/Array.h"
#include "tools/zelcam/session.h"

// What has features of its own.
enum class Module {
    Camera,
    Local,      // the transport layer's side of the connection
    Interface,  // what the camera is connected to
    Stream,
    System,  // the producer as a whole: has a description, but its features cannot be reached
};

// By the name that options have for it; `name` must be one of those.
Module ModuleOf(const std::string& name);
std::string ModuleWords(Module module);

// Names of the ways to open a camera. "auto" takes control if that is free, else reads only.
extern const std::vector<std::string> accessNames;

// Owns the device and its stream; the session must outlive it. All operations throw Failure with
// what the user can do about it.
class OpenedCamera {
  public:
    OpenedCamera(const Camera& camera, const std::string& access);

    const Camera& Info() const { return camera_; }
    ZelCam::Device& Device() const { return *device_; }

    // The first stream, opened on the first call.
    ZelCam::Stream& Stream();

    // Failure (FeatureFailed) when the module has none; valid as long as this object.
    ZelGenParam::Array& Features(Module module);

  private:
    ZelGenParam::Array* Find(Module module, ZelCamErr* code);

    const Camera& camera_;
    Released<ZelCam::Device> device_;
    Released<ZelCam::Stream> stream_;
};

// What a command that works on features is given.
struct FeatureOptions {
    SessionOptions session;
    std::string camera;
    std::string module = "camera";
    std::string access = "auto";
};

// A session with the one camera that was chosen, open.
class FeatureSession {
  public:
    explicit FeatureSession(const FeatureOptions& options);

    // With the camera that TakeCamera takes from `words` instead of that of the options.
    FeatureSession(const FeatureOptions& options, std::vector<std::string>& words, size_t others);

    OpenedCamera& Camera() { return camera_; }
    ZelGenParam::Array& Features() { return camera_.Features(module_); }

  private:
    Session session_;
    OpenedCamera camera_;
    Module module_;
};

#endif  // ZELCAM_TOOLS_ZELCAM_OPENEDCAMERA_H
