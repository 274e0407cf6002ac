// The producers of the process and the cameras that they find.
#ifndef ZEL_LIBRARY_H
#define ZEL_LIBRARY_H

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <system_error>
#include <thread>
#include <utility>
#include <vector>

#include "ZelCam/ZelCam.h"
#include "zel/error.h"

namespace zel {

// A camera as it was found.
struct CameraInfo {
    std::string id;  // within its interface
    std::string vendor;
    std::string model;
    std::string serial;
    std::string userName;
    std::string interfaceId;
    ZelCam::InterfaceType interfaceType = ZelCam::InterfaceType::Unknown;
    int32_t access = ZelCam::AccessStatus_Unknown;  // a ZelCam::AccessStatus
    bool isSimulated = false;

    // Whether it is called so: by its identifier, serial number or user name.
    bool isNamed(const std::string& name) const {
        return name == id || name == serial || name == userName;
    }

    // "ID (VENDOR MODEL, serial number N, simulated)".
    std::string description() const {
        std::string text = id + " (" + vendor + (vendor.empty() ? "" : " ") + model;
        if (!serial.empty()) text += ", serial number " + serial;
        if (!userName.empty()) text += ", \"" + userName + "\"";
        return text + (isSimulated ? ", simulated)" : ")");
    }
};

// The cameras of a search, real ones first, and what went wrong in it.
class CameraList {
  public:
    CameraList(std::vector<CameraInfo> cameras, std::vector<std::string> problems)
        : cameras_(std::move(cameras)), problems_(std::move(problems)) {}

    auto begin() const { return cameras_.begin(); }
    auto end() const { return cameras_.end(); }
    size_t size() const { return cameras_.size(); }
    bool empty() const { return cameras_.empty(); }
    const CameraInfo& operator[](size_t index) const { return cameras_.at(index); }

    // A sentence for each producer that cannot be used and each interface that cannot be searched.
    // They do not affect the others.
    const std::vector<std::string>& problems() const { return problems_; }

  private:
    std::vector<CameraInfo> cameras_;
    std::vector<std::string> problems_;
};

// How cameras are searched for.
struct SearchOptions {
    // Producer files (.cti) beside the default one and those in the folders of the environment
    // variable GENICAM_GENTL64_PATH.
    std::vector<std::string> producers;

    // GigE Vision cameras may wait for up to a second before they answer.
    std::chrono::milliseconds time{1000};
};

namespace detail {

struct Releaser {
    template <typename T>
    void operator()(T* object) const {
        object->Release();
    }
};
template <typename T>
using Released = std::unique_ptr<T, Releaser>;

// The .cti files of the options and of the folders, each once, as absolute paths.
inline std::vector<std::string> producerFiles(const std::vector<std::string>& given) {
    namespace fs = std::filesystem;
    constexpr const char* kDefault = "libZelCTI.cti";  // the library loads it by itself
    std::vector<std::string> files;
    const auto add = [&files](const fs::path& path) {
        std::error_code error;
        const std::string file = fs::weakly_canonical(path, error).string();
        if (std::find(files.begin(), files.end(), file) == files.end()) files.push_back(file);
    };
    for (const std::string& file : given)
        add(file);
    const char* const listed = std::getenv("GENICAM_GENTL64_PATH");
    const std::string folders = listed != nullptr ? listed : "";
    for (size_t begin = 0; begin < folders.size();) {
        const size_t end = std::min(folders.find(':', begin), folders.size());
        std::vector<fs::path> found;
        std::error_code error;
        for (const auto& entry : fs::directory_iterator(folders.substr(begin, end - begin), error))
            if (entry.path().extension() == ".cti" && entry.path().filename() != kDefault)
                found.push_back(entry.path());
        std::sort(found.begin(), found.end());
        std::for_each(found.begin(), found.end(), add);
        begin = end + 1;
    }
    return files;
}

// A System with its producers. All cameras of a process that use the same producers share one.
class Library {
  public:
    static std::shared_ptr<Library> with(const std::vector<std::string>& producers) {
        static std::mutex mutex;
        static std::vector<std::weak_ptr<Library>> all;
        std::vector<std::string> files = producerFiles(producers);
        const std::lock_guard<std::mutex> lock(mutex);
        for (const std::weak_ptr<Library>& one : all) {
            std::shared_ptr<Library> library = one.lock();
            if (library && library->files_ == files) return library;
        }
        all.erase(
            std::remove_if(all.begin(), all.end(), [](const auto& one) { return one.expired(); }),
            all.end());
        std::shared_ptr<Library> library(new Library(std::move(files)));
        all.push_back(library);
        return library;
    }

    // Searches until `isEnough` says so of the list, or the time has passed. Thread-safe, like all
    // that follows: the mutex stands for the System and its interfaces.
    CameraList search(std::chrono::milliseconds time,
                      const std::function<bool(const CameraList&)>& isEnough) {
        const std::lock_guard<std::mutex> lock(mutex_);
        const auto end = std::chrono::steady_clock::now() + time;
        CameraList found = searchOnce(time, true);
        while (!isEnough(found)) {
            const auto left = std::chrono::ceil<std::chrono::milliseconds>(
                end - std::chrono::steady_clock::now());
            if (left.count() <= 0 || !hasNetwork()) break;
            std::this_thread::sleep_for(std::chrono::milliseconds(20));
            found = searchOnce(left, false);
        }
        return found;
    }

    // Opens a camera of the last search. Null with `*err` if it is not there or cannot be opened.
    Released<ZelCam::Device> open(const CameraInfo& camera, ZelCam::DeviceAccess access,
                                  ZelCamErr* err) {
        const std::lock_guard<std::mutex> lock(mutex_);
        *err = ZelCamErr_NotFound;
        ZelCam::Interface* const interface = system_->GetInterfaceById(camera.interfaceId.c_str());
        ZelCam::DeviceInfo* const info =
            interface != nullptr ? interface->GetDeviceInfoById(camera.id.c_str()) : nullptr;
        return Released<ZelCam::Device>(info != nullptr ? ZelCam_CreateDevice(info, access, err)
                                                        : nullptr);
    }

    // To be held while a Device is released: it belongs to its DeviceInfo.
    std::mutex& mutex() { return mutex_; }

  private:
    explicit Library(std::vector<std::string> files)
        : files_(std::move(files)), system_(ZelCam_GetSystem()) {
        if (!system_) throw Error(ZelCamErr_NotFound, "loading the default producer libZelCTI.cti");
        for (const std::string& file : files_) {
            const ZelCamErr code = system_->RegisterGenTLProvider(file.c_str());
            if (code != ZelCamErr_Success)
                problems_.push_back("producer " + file + ": " + ZelCam::ErrorText(code));
        }
    }

    using Interfaces = std::vector<ZelCam::Interface*>;

    Interfaces listInterfaces() {
        const Released<ZelCam::List<ZelCam::Interface>> list(
            system_->GetInterfaceList(ZelCam::InterfaceType::Unknown));
        if (!list) throw Error(ZelCamErr_GenTL_Error, "listing the interfaces");
        Interfaces interfaces;
        for (auto* each = list->GetFirst(); each != nullptr; each = list->GetNext())
            interfaces.push_back(each);
        return interfaces;
    }

    static bool isSimulated(ZelCam::Interface& interface) {
        return textOf(interface.GetVendor()) == "ZelCam" &&
               textOf(interface.GetModel()) == "Simulated interface";
    }

    static bool isOnNetwork(ZelCam::Interface& interface) {
        return interface.GetType() == ZelCam::InterfaceType::GEV && !isSimulated(interface);
    }

    bool hasNetwork() {
        const Interfaces all = listInterfaces();
        return std::any_of(all.begin(), all.end(), [](auto* one) { return isOnNetwork(*one); });
    }

    // What went wrong; empty on success.
    static std::string searchOn(ZelCam::Interface& interface, std::chrono::milliseconds time) {
        try {
            const ZelCamErr code =
                interface.ReEnumerateDevices(nullptr, static_cast<uint64_t>(time.count()));
            return code == ZelCamErr_Success ? "" : ZelCam::ErrorText(code);
        } catch (const std::system_error& error) {
            return error.what();
        }
    }

    CameraList searchOnce(std::chrono::milliseconds time, bool everywhere) {
        std::vector<CameraInfo> cameras;
        std::vector<std::string> problems = problems_;
        for (ZelCam::Interface* const interface : listInterfaces()) {
            if (everywhere || isOnNetwork(*interface)) {
                const std::string problem = searchOn(*interface, time);
                if (!problem.empty())
                    problems.push_back("interface " + textOf(interface->GetId()) + ": " + problem);
            }
            list(*interface, cameras);
        }
        std::stable_partition(cameras.begin(), cameras.end(),
                              [](const CameraInfo& camera) { return !camera.isSimulated; });
        return {std::move(cameras), std::move(problems)};
    }

    static void list(ZelCam::Interface& interface, std::vector<CameraInfo>& cameras) {
        const Released<ZelCam::List<ZelCam::DeviceInfo>> list(interface.GetDeviceInfoList());
        if (!list) return;
        for (auto* info = list->GetFirst(); info != nullptr; info = list->GetNext()) {
            cameras.push_back({textOf(info->GetID()), textOf(info->GetVendor()),
                               textOf(info->GetModel()), textOf(info->GetSerialNumber()),
                               textOf(info->GetUserDefinedName()), textOf(interface.GetId()),
                               interface.GetType(), info->GetAccessStatus(),
                               isSimulated(interface)});
        }
    }

    const std::vector<std::string> files_;
    const Released<ZelCam::System> system_;
    std::vector<std::string> problems_;  // of producers
    std::mutex mutex_;
};

}  // namespace detail

}  // namespace zel

#endif  // ZEL_LIBRARY_H
