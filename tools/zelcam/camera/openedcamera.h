// An open camera, and the features of all modules on the way to it.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "ZelGenParam/Array.h"
#include "tools/zelcam/camera/session.h"

namespace ZelTool {

// The modules that have features.
enum class Module {
    Camera,
    Local,      // the host's side of the connection
    Interface,  // the adapter or port that the camera is connected to
    Stream,
    System,  // the producer itself. It has a description, but the library does not offer its
             // features
};

// The module with that name in the options; `name` must be one of those names.
Module ModuleOf(const std::string& name);
std::string ModuleWords(Module module);

// The names of the access modes. "auto" means control, or readonly when control is taken.
extern const std::vector<std::string> kAccessNames;

// Owns the device and its stream. The session must outlive it. All operations throw Failure with
// advice for the user.
class OpenedCamera {
  public:
    OpenedCamera(const Camera& camera, const std::string& access);

    const Camera& Info() const { return camera_; }
    ZelCam::Device& Device() const { return *device_; }

    // The first stream. The first call opens it.
    ZelCam::Stream& Stream();

    // The features are valid as long as this object. Throws Failure (FeatureFailed) when the module
    // has none.
    ZelGenParam::Array& Features(Module module);

  private:
    ZelGenParam::Array* Find(Module module, ZelCamErr* code);

    const Camera& camera_;
    Released<ZelCam::Device> device_;
    Released<ZelCam::Stream> stream_;
};

// The options of a command that works on one camera.
struct CameraOptions : SessionOptions {
    std::string camera;
    std::string module = "camera";
    std::string access = "auto";
};

// A session with one opened camera.
class FeatureSession {
  public:
    explicit FeatureSession(const CameraOptions& options);

    // Opens the camera that TakeCamera removes from `words`, instead of the one in the options. A
    // first word that means nothing to the first camera may name one that has not answered yet.
    using Means = std::function<bool(ZelGenParam::Array& features, const std::string& word)>;
    FeatureSession(const CameraOptions& options, std::vector<std::string>& words, size_t others,
                   const Means& means);

    OpenedCamera& Camera() { return *camera_; }
    ZelGenParam::Array& Features() { return camera_->Features(module_); }

  private:
    Session session_;
    std::optional<OpenedCamera> camera_;
    Module module_;
};

}  // namespace ZelTool
