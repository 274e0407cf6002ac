// What a Camera, its features and its frames share: the opened device, which may be another one
// after the camera was lost and came back.
#ifndef ZEL_STATE_H
#define ZEL_STATE_H

#include <algorithm>
#include <array>
#include <atomic>
#include <chrono>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "ZelCam/ZelCam.h"
#include "ZelGenParam/Array.h"
#include "zel/error.h"
#include "zel/library.h"

namespace zel {

// Whose features.
enum class Module {
    Camera,
    Transport,  // the host's side of the connection
    Stream,
    Interface  // the adapter or port that the camera is connected to
};

namespace detail {

// An open device with its stream. Its end closes both.
class Opened {
  public:
    Opened(std::shared_ptr<Library> library, Released<ZelCam::Device> device)
        : library_(std::move(library)), device_(std::move(device)) {
        static std::atomic<uint64_t> count{0};
        number_ = ++count;
    }

    ~Opened() {
        stream_.reset();
        kept_.clear();
        const std::lock_guard<std::mutex> lock(library_->mutex());
        device_.reset();
    }

    Opened(const Opened&) = delete;
    Opened& operator=(const Opened&) = delete;

    // Another one for each Opened of the process.
    uint64_t number() const { return number_; }

    ZelCam::Device& device() const { return *device_; }

    // The first stream, opened by the first call.
    ZelCam::Stream& stream() {
        const std::lock_guard<std::mutex> lock(mutex_);
        if (!stream_) stream_.reset(device_->GetStreamByIndex(0));
        if (!stream_) throw Error(ZelCamErr_GenTL_Error, "opening the stream of the camera");
        return *stream_;
    }

    // Takes no lock once they were made: subscribers ask for them with the features locked.
    ZelGenParam::Array& features(Module module) {
        std::atomic<ZelGenParam::Array*>& made = features_.at(static_cast<size_t>(module));
        if (made == nullptr) {
            ZelCamErr code = ZelCamErr_NoNodeMap;
            ZelGenParam::Array* const features = make(module, &code);
            if (features == nullptr) throw Error(code, "reading the description of the features");
            made = features;
        }
        return *made;
    }

    // Memory that the producer may still write to is kept until the stream is closed.
    void keep(std::shared_ptr<const void> memory) {
        const std::lock_guard<std::mutex> lock(mutex_);
        kept_.push_back(std::move(memory));
    }

  private:
    ZelGenParam::Array* make(Module module, ZelCamErr* code) {
        if (module == Module::Stream) return stream().GetParameters(code);
        const std::lock_guard<std::mutex> lock(mutex_);
        if (module == Module::Transport) return device_->GetTransportParameters(code);
        if (module == Module::Interface)
            return device_->GetInfo()->GetInterface()->GetParameters(code);
        return device_->GetCameraParameters(code);
    }

    const std::shared_ptr<Library> library_;
    Released<ZelCam::Device> device_;
    Released<ZelCam::Stream> stream_;
    std::array<std::atomic<ZelGenParam::Array*>, 4> features_{};  // by Module
    std::vector<std::shared_ptr<const void>> kept_;
    std::mutex mutex_;
    uint64_t number_ = 0;
};

// A subscription to a feature, which follows the camera to the next Opened.
class Watch final : public ZelGenParam::ParamEventSink {
  public:
    Watch(Module module, std::string name, std::function<void()> call)
        : module_(module), name_(std::move(name)), call_(std::move(call)) {}

    Watch(const Watch&) = delete;
    Watch& operator=(const Watch&) = delete;
    ~Watch() { end(); }

    void begin(const std::shared_ptr<Opened>& opened) {
        ZelCamErr code = ZelCamErr_Success;
        ZelGenParam::Param* const param = opened->features(module_).GetParam(name_.c_str(), &code);
        check(code, "watching", name_);
        // Waits for the node map, whose thread may wait for the mutex.
        check(param->RegisterEventSink(this), "watching", name_);
        const std::lock_guard<std::mutex> lock(mutex_);
        opened_ = opened;
        param_ = param;
    }

    // No call runs any more when it returns, except the one that this is called from.
    void end() {
        std::shared_ptr<Opened> opened;
        ZelGenParam::Param* param = nullptr;
        {
            const std::lock_guard<std::mutex> lock(mutex_);
            opened = opened_.lock();
            param = std::exchange(param_, nullptr);
        }
        // As above.
        if (opened && param != nullptr) param->UnregisterEventSink(this);
    }

    void OnParamChanged(ZelGenParam::Param* /*param*/) override { call_(); }

  private:
    const Module module_;
    const std::string name_;
    const std::function<void()> call_;
    std::mutex mutex_;
    std::weak_ptr<Opened> opened_;
    ZelGenParam::Param* param_ = nullptr;
};

// A value that was set, for the next Opened.
struct Setting {
    std::vector<std::pair<std::string, std::string>> selectors;
    std::string name;
    std::string value;
};

class CameraState {
  public:
    CameraState(CameraInfo info, ZelCam::DeviceAccess access, std::shared_ptr<Library> library)
        : access_(access), library_(std::move(library)), info_(std::move(info)) {}

    // The device as it is now. Throws if it is closed, or lost and not yet back. The result is held
    // during the access only: while somebody holds it, a lost device cannot be opened again.
    std::shared_ptr<Opened> opened() const {
        const std::lock_guard<std::mutex> lock(mutex_);
        checkOpen();
        return opened_;
    }

    // The same for a short access, which counts as holding it: without the lock and the count of
    // the pointer, which take longer than reading a feature.
    class Use {
      public:
        explicit Use(const CameraState& state) : state_(state) {
            // Either drop() sees the number, or this sees that nothing is open.
            ++state_.numUses_;
            opened_ = state_.now_;
            if (opened_ != nullptr) return;
            --state_.numUses_;
            const std::lock_guard<std::mutex> lock(state_.mutex_);
            state_.checkOpen();
            throw Error(ZelCamErr_GenTL_Io, "using a camera that comes back");
        }
        ~Use() { --state_.numUses_; }
        Use(const Use&) = delete;
        Use& operator=(const Use&) = delete;

        Opened& operator*() const { return *opened_; }
        Opened* operator->() const { return opened_; }

      private:
        const CameraState& state_;
        Opened* opened_;
    };

    CameraInfo info() const {
        const std::lock_guard<std::mutex> lock(mutex_);
        return info_;
    }

    // Opens the camera, for the first time or again.
    void open() {
        const CameraInfo camera = info();
        const std::shared_ptr<Library> library = this->library();
        ZelCamErr code = ZelCamErr_Success;
        Released<ZelCam::Device> device = library->open(camera, access_, &code);
        if (!device) throw Error(code, "opening camera " + camera.description());
        const auto opened = std::make_shared<Opened>(library, std::move(device));
        std::vector<std::shared_ptr<Watch>> watches;
        {
            const std::lock_guard<std::mutex> lock(mutex_);
            opened_ = opened;
            now_ = opened.get();
            watches = liveWatches();
        }
        for (const std::shared_ptr<Watch>& watch : watches)
            watch->begin(opened);
    }

    // Looks for the same camera, which may have another identifier now. False if it is not there.
    bool find() {
        const CameraInfo wanted = info();
        const auto isSame = [&wanted](const CameraInfo& camera) {
            return wanted.serial.empty() ? camera.id == wanted.id : camera.serial == wanted.serial;
        };
        const auto found = library()->search(std::chrono::milliseconds(200), [&](const auto& list) {
            return std::any_of(list.begin(), list.end(), isSame);
        });
        const auto same = std::find_if(found.begin(), found.end(), isSame);
        if (same == found.end()) return false;
        const std::lock_guard<std::mutex> lock(mutex_);
        info_ = *same;
        return true;
    }

    // The device is gone: whoever uses it gets Error, until it is opened again.
    void lose() { drop(false); }

    void close() {
        drop(true);
        // What remains of the camera, such as a feature, keeps no producer loaded.
        const std::lock_guard<std::mutex> lock(mutex_);
        library_.reset();
    }

    bool isClosed() const {
        const std::lock_guard<std::mutex> lock(mutex_);
        return isClosed_;
    }

    void add(const std::shared_ptr<Watch>& watch) {
        watch->begin(opened());
        const std::lock_guard<std::mutex> lock(mutex_);
        watches_.push_back(watch);
    }

    // From now on, what is set is kept. A state that is kept already is forgotten.
    void keepSettings(std::string configuration) {
        const std::lock_guard<std::mutex> lock(settingsMutex_);
        configuration_ = std::move(configuration);
        settings_.clear();
        keepsSettings_ = true;
    }

    bool keepsSettings() const { return keepsSettings_; }

    void keep(Setting setting) {
        const std::lock_guard<std::mutex> lock(settingsMutex_);
        settings_.push_back(std::move(setting));
    }

    std::pair<std::string, std::vector<Setting>> keptSettings() const {
        const std::lock_guard<std::mutex> lock(settingsMutex_);
        return {configuration_, settings_};
    }

    // What is called when the camera is lost.
    std::shared_ptr<std::function<void(const Error&)>> onLost() const {
        const std::lock_guard<std::mutex> lock(mutex_);
        return onLost_;
    }

    void setOnLost(std::function<void(const Error&)> call) {
        auto shared = std::make_shared<std::function<void(const Error&)>>(std::move(call));
        const std::lock_guard<std::mutex> lock(mutex_);
        onLost_ = std::move(shared);
    }

  private:
    std::shared_ptr<Library> library() const {
        const std::lock_guard<std::mutex> lock(mutex_);
        if (!library_) throw Error(ZelCamErr_GenTL_NotInitialized, "using a closed camera");
        return library_;
    }

    void checkOpen() const {
        if (!opened_)
            throw Error(isClosed_ ? ZelCamErr_GenTL_NotInitialized : ZelCamErr_GenTL_Io,
                        isClosed_ ? "using a closed camera" : "using a camera that is lost");
    }

    // Nobody begins an access any more. Those that run end first, so that the device is not closed
    // by a thread of its own, which called a subscriber.
    void drop(bool closes) {
        std::shared_ptr<Opened> last;
        {
            const std::lock_guard<std::mutex> lock(mutex_);
            isClosed_ = isClosed_ || closes;
            now_ = nullptr;
            last = std::exchange(opened_, nullptr);
        }
        while (last.use_count() > 1 || numUses_ != 0)
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }

    std::vector<std::shared_ptr<Watch>> liveWatches() {
        std::vector<std::shared_ptr<Watch>> live;
        for (const std::weak_ptr<Watch>& watch : std::exchange(watches_, {})) {
            if (std::shared_ptr<Watch> one = watch.lock()) {
                live.push_back(std::move(one));
                watches_.push_back(watch);
            }
        }
        return live;
    }

    const ZelCam::DeviceAccess access_;
    mutable std::mutex mutex_;
    std::shared_ptr<Library> library_;  // null: closed
    CameraInfo info_;
    std::shared_ptr<Opened> opened_;
    std::atomic<Opened*> now_{nullptr};  // the same, for Use
    mutable std::atomic<size_t> numUses_{0};
    bool isClosed_ = false;
    std::vector<std::weak_ptr<Watch>> watches_;
    std::shared_ptr<std::function<void(const Error&)>> onLost_;
    mutable std::mutex settingsMutex_;
    std::atomic<bool> keepsSettings_{false};
    std::string configuration_;
    std::vector<Setting> settings_;
};

}  // namespace detail

}  // namespace zel

#endif  // ZEL_STATE_H
