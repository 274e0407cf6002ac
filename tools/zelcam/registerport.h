// The registers of a module.
#ifndef ZELCAM_TOOLS_ZELCAM_REGISTERPORT_H
#define ZELCAM_TOOLS_ZELCAM_REGISTERPORT_H

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

#include <GenApi/GenApi.h>

#include "tools/zelcam/openedcamera.h"
#include "tools/zelcam/registervalue.h"

// The camera's are reached without its description. Those of the other modules are reached through
// the port of their node map. All operations throw Failure (FeatureFailed) with the address.
class RegisterPort {
  public:
    // The camera must outlive this object.
    RegisterPort(OpenedCamera& camera, Module module);

    std::string Read(uint64_t address, size_t size) const;
    void Write(uint64_t address, const std::string& bytes) const;

    // Nothing for modules that do not tell.
    std::optional<ByteOrder> Order() const;

  private:
    template <typename Transfer>
    void Access(const char* verb, uint64_t address, size_t size, Transfer&& transfer) const;

    ZelCam::Device& device_;
    Module module_;
    GenApi::IPort* port_ = nullptr;  // null for the camera
};

#endif  // ZELCAM_TOOLS_ZELCAM_REGISTERPORT_H
