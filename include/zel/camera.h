// A camera in five lines:
//
//     zel::Camera camera = zel::open();                // or zel::open("4711"): a serial number
//     camera["ExposureTime"] = 5000.0;                 // us
//     for (const zel::Frame& frame : camera.frames(100)) {
//         std::cout << frame.id() << ": " << frame.image().width() << " pixels\n";
//     }
//
// This layer consists of headers only and uses the interfaces of ZelCam/ZelCam.h. Objects own by
// value: nothing is released by hand. Failures are thrown as zel::Error.
#ifndef ZEL_CAMERA_H
#define ZEL_CAMERA_H

#include <algorithm>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "zel/configuration.h"
#include "zel/error.h"
#include "zel/feature.h"
#include "zel/frame.h"
#include "zel/library.h"
#include "zel/picture.h"
#include "zel/state.h"

namespace zel {

using ZelCam::DeviceAccess;

// How a camera is opened.
struct OpenOptions : SearchOptions {
    // With Control, other programs may read from the camera; with ReadOnly, this one cannot change
    // it.
    DeviceAccess access = DeviceAccess::Exclusive;
};

class Camera;

// An event of a camera, while its function is called.
class Event {
  public:
    // "ExposureEnd".
    const std::string& name() const { return name_; }

    // A value of the event, such as "FrameID" or "Timestamp": the camera's feature
    // "EventExposureEndFrameID".
    Feature operator[](const std::string& value) const {
        return {state_, Module::Camera, "Event" + name_ + value};
    }

    // For the layer itself.
    Event(std::shared_ptr<detail::CameraState> state, std::string name)
        : state_(std::move(state)), name_(std::move(name)) {}

  private:
    std::shared_ptr<detail::CameraState> state_;
    std::string name_;
};

// An open camera; its end closes it. Threads: any may use its features at once, one at a time
// everything else, and cancel() may be called at any time.
class Camera {
  public:
    Camera(Camera&&) noexcept = default;
    Camera& operator=(Camera&& other) noexcept {
        close();
        state_ = std::move(other.state_);
        frames_ = std::move(other.frames_);
        return *this;
    }
    Camera(const Camera&) = delete;
    Camera& operator=(const Camera&) = delete;
    ~Camera() { close(); }

    // Ends the frames and closes the camera.
    void close() noexcept {
        if (!state_) return;
        if (const auto frames = frames_.lock()) frames->end();
        state_->close();
    }

    // As it was found; the identifier may be another one after it was lost and came back.
    CameraInfo info() const { return state_->info(); }

    // ---- Features -------------------------------------------------------------------------------

    // A feature of the camera by its name in the SFNC: "ExposureTime".
    Feature operator[](std::string name) const { return {state_, Module::Camera, std::move(name)}; }

    bool has(const std::string& name) const { return of(Module::Camera).has(name); }

    // All features of the camera.
    std::vector<Feature> features() const { return of(Module::Camera).all(); }

    // The features of another module: of(zel::Module::Stream)["StreamThroughput..."].
    FeatureMap of(Module module) const { return {state_, module}; }

    // ---- Frames ---------------------------------------------------------------------------------

    // Starts the camera and gives its frames, one range at a time (ZelCamErr_AcquisitionActive).
    Frames frames(const FrameOptions& options) {
        if (const auto running = frames_.lock(); running && !running->hasEnded())
            throw Error(ZelCamErr_AcquisitionActive, "starting the camera");
        auto grabbing = std::make_shared<detail::Grabbing>(state_, options);
        frames_ = grabbing;
        return Frames(std::move(grabbing));
    }
    Frames frames(uint64_t count) {
        FrameOptions options;
        options.count = count;
        return frames(options);
    }
    Frames frames() { return frames(FrameOptions{}); }

    // One frame, with memory of its own.
    Frame grab() {
        Frames one = frames(1);
        std::optional<Frame> frame = one.next();
        if (!frame) throw Error(ZelCamErr_GenTL_Abort, "grabbing a frame");
        return frame->copy();
    }

    // Ends the frames, also while a thread waits for one. Thread-safe.
    void cancel() {
        if (const auto frames = frames_.lock()) frames->cancel();
    }

    // Calls `function` when the camera no longer answers while frames are grabbed, on the thread
    // that waits for them.
    void onLost(std::function<void(const Error&)> function) {
        state_->setOnLost(std::move(function));
    }

    // ---- Events ---------------------------------------------------------------------------------

    // Switches an event of the camera on and calls `function` for each, as Feature::onChange does.
    // The end of the subscription switches it off.
    //
    //     auto events = camera.on("ExposureEnd", [](const zel::Event& event) {
    //         std::cout << event["FrameID"].text() << '\n';
    //     });
    [[nodiscard]] Subscription on(const std::string& name,
                                  std::function<void(const Event&)> function) {
        const Feature notification = (*this)["EventNotification"].at("EventSelector", name);
        const std::weak_ptr<detail::CameraState> weak = state_;
        auto watch = std::make_shared<detail::Watch>(Module::Camera, "Event" + name,
                                                     [weak, name, call = std::move(function)] {
                                                         if (const auto state = weak.lock())
                                                             call(Event(state, name));
                                                     });
        state_->add(watch);
        notification.set("On");
        return Subscription(std::move(watch), [weak, name] {
            if (const auto state = weak.lock())
                Feature(state, Module::Camera, "EventNotification", {{"EventSelector", name}})
                    .set("Off");
        });
    }

    // ---- Settings -------------------------------------------------------------------------------

    // Saves the settings to a file, loads them, and compares; see Device::SaveConfiguration.
    void save(const std::filesystem::path& file) const {
        detail::check(state_->opened()->device().SaveConfiguration(file.c_str()),
                      "saving " + file.string());
        if (!std::filesystem::exists(file))
            throw Error(ZelCamErr_FileOpenFailed, "saving " + file.string());
    }
    void load(const std::filesystem::path& file) {
        if (!std::filesystem::exists(file))
            throw Error(ZelCamErr_FileOpenFailed, "loading " + file.string());
        const ZelCamErr code = state_->opened()->device().LoadConfiguration(file.c_str());
        if (code != ZelCamErr_LoadConfigFailed)
            return detail::check(code, "loading " + file.string());
        std::string left;
        for (const Difference& one : diff(file))
            left += (left.empty() ? "" : ", ") + one.feature + " is " + one.current + ", not " +
                    one.saved;
        throw Error(code, "loading " + file.string(), "", left);
    }

    // What load() would change, by feature.
    std::vector<Difference> diff(const std::filesystem::path& file) const {
        return detail::differences(detail::contentsOf(file),
                                   detail::configurationOf(state_->opened()->device()));
    }

    // For the layer itself: see open().
    explicit Camera(std::shared_ptr<detail::CameraState> state) : state_(std::move(state)) {}

  private:
    std::shared_ptr<detail::CameraState> state_;
    std::weak_ptr<detail::Grabbing> frames_;
};

// All cameras, real ones first. Takes the whole time of the search if a network is searched.
inline CameraList cameras(const SearchOptions& options = {}) {
    return detail::Library::with(options.producers)->search(options.time, [](const CameraList&) {
        return false;
    });
}

// Opens the camera that has this identifier, serial number or user name; of several, the first real
// one. Without a name it is the first camera that nobody has open. ZelCamErr_NotFound if
// there is none: the error lists those that were found, and the producers that failed.
inline Camera open(const std::string& name = {}, const OpenOptions& options = {}) {
    const auto library = detail::Library::with(options.producers);
    const auto isWanted = [&name](const CameraInfo& camera) {
        const bool isFree = camera.access == ZelCam::AccessStatus_Unknown ||
                            camera.access == ZelCam::AccessStatus_ReadWrite ||
                            camera.access == ZelCam::AccessStatus_ReadOnly;
        return name.empty() ? isFree : camera.isNamed(name);
    };
    const CameraList found = library->search(options.time, [&](const CameraList& list) {
        return std::any_of(list.begin(), list.end(), [&](const CameraInfo& camera) {
            return isWanted(camera) && (!camera.isSimulated || !name.empty());
        });
    });
    const auto wanted = std::find_if(found.begin(), found.end(), isWanted);
    if (wanted == found.end()) {
        std::string reason = found.empty()
                                 ? "no camera was found; with ZELSIM=1 in the environment "
                                   "there are simulated ones"
                                 : "these were found:";
        for (const CameraInfo& camera : found)
            reason += " " + camera.description();
        for (const std::string& problem : found.problems())
            reason += "; " + problem;
        throw Error(ZelCamErr_NotFound,
                    name.empty() ? "opening a camera" : "opening camera " + name, "", reason);
    }
    auto state = std::make_shared<detail::CameraState>(*wanted, options.access, library);
    state->open();
    return Camera(std::move(state));
}

}  // namespace zel

#endif  // ZEL_CAMERA_H
