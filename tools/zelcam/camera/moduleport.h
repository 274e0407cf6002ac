// The port of a producer's module, opened without the library. The library offers the features of a
// module, but not the description that defines them.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "gentl/GenTL.h"
#include "tools/zelcam/camera/openedcamera.h"

namespace ZelTool {

// Where the module is. A module that lies above the camera or the interface ignores its identifier.
struct ModulePlace {
    std::string producer;
    std::string interfaceId;
    std::string cameraId;
    Module module = Module::Camera;
};

// The constructor initialises the producer and opens all modules on the way, the camera read-only
// if possible. The destructor closes them. Meanwhile no System of the library may use the producer.
// All operations throw Failure (CannotOpen) with the reason.
class ModulePort {
  public:
    explicit ModulePort(const ModulePlace& place);
    ~ModulePort();
    ModulePort(const ModulePort&) = delete;
    ModulePort& operator=(const ModulePort&) = delete;

    // The URLs of the module's descriptions, the preferred one first.
    std::vector<std::string> DescriptionUrls() const;

    std::string Read(uint64_t address, size_t size) const;

  private:
    void Open(const ModulePlace& place);
    void OpenSystem();
    void OpenInterface(const ModulePlace& place);
    GenTL::GC_ERROR TryDevice(const std::string& cameraId);
    void OpenDevice(const ModulePlace& place);
    void OpenStream();
    void Close();

    template <typename Function>
    Function Resolve(const char* name) const;

    std::shared_ptr<void> library_;
    std::vector<std::function<void()>> closers_;  // in the order of opening
    GenTL::TL_HANDLE system_ = nullptr;
    GenTL::IF_HANDLE interface_ = nullptr;
    GenTL::DEV_HANDLE device_ = nullptr;
    GenTL::PORT_HANDLE port_ = nullptr;
};

}  // namespace ZelTool
