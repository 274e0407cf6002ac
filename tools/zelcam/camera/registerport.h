// The registers of a module.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

#include <GenApi/GenApi.h>

#include "tools/zelcam/camera/openedcamera.h"
#include "tools/zelcam/camera/registervalue.h"

namespace ZelTool {

// Reads and writes the registers of the camera directly, those of the other modules through the
// port of their node map. All operations throw Failure (FeatureFailed) with the address.
class RegisterPort {
  public:
    // The camera must outlive this object.
    RegisterPort(OpenedCamera& camera, Module module);

    std::string Read(uint64_t address, size_t size) const;
    void Write(uint64_t address, const std::string& bytes) const;

    // Nothing for a module that does not report its byte order.
    std::optional<ByteOrder> Order() const;

  private:
    template <typename Transfer>
    void Access(const char* verb, uint64_t address, size_t size, Transfer&& transfer) const;

    ZelCam::Device& device_;
    Module module_;
    GenApi::IPort* port_ = nullptr;  // null for the camera
};

}  // namespace ZelTool
