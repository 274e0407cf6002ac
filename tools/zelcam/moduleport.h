// The port of a module of a producer, without the library between: it passes on what the features
// are, but not the description that they come from.
#ifndef ZELCAM_TOOLS_ZELCAM_MODULEPORT_H
#define ZELCAM_TOOLS_ZELCAM_MODULEPORT_H

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "gentl/GenTL.h"
#include "tools/zelcam/openedcamera.h"

// Where the module is: a file, and in it the identifiers of an interface and of a camera, which are
// looked at as far as the module needs them.
struct ModulePlace {
    std::string producer;
    std::string interfaceId;
    std::string cameraId;
    Module module = Module::Camera;
};

// Initialises the producer and opens what lies on the way to the module, read-only if possible, at
// construction; closes it all at destruction. No System of the library may use the producer
// meanwhile. All operations throw Failure (CannotOpen) with what the producer says.
class ModulePort {
  public:
    explicit ModulePort(const ModulePlace& place);
    ~ModulePort();
    ModulePort(const ModulePort&) = delete;
    ModulePort& operator=(const ModulePort&) = delete;

    // Where the descriptions of the module are, the one to be preferred first.
    std::vector<std::string> DescriptionUrls() const;

    std::string Read(uint64_t address, size_t size) const;

  private:
    void Open(const ModulePlace& place);
    void OpenSystem();
    void OpenInterface(const ModulePlace& place);
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

#endif  // ZELCAM_TOOLS_ZELCAM_MODULEPORT_H
