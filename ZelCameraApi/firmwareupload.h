// Writing a firmware image into a camera's flash memory.
#pragma once

#include <cstdint>
#include <functional>
#include <vector>

#include "ZelCam/Device.h"

namespace ZelCameraApi::Internal {

using UploadProgress =
    std::function<void(ZelCam::Device::UploadEventType, ZelCam::Device::UploadEventData)>;

// Drives the flash controller through the camera's registers. There is no rollback: sectors erased
// before a failure stay erased.
//
// If the flash stays busy in a step, the upload ends and reports the step as if it had finished.
class FirmwareUpload {
  public:
    // `progress` may be empty.
    FirmwareUpload(ZelCam::Device& device, UploadProgress progress)
        : device_(device), progress_(std::move(progress)) {}

    // Erases the flash and programs the first page of the image, which has at least a page of
    // bytes; a page of erased bytes needs no programming. Returns the code of the first register
    // access that fails, and success if the flash stays busy.
    ZelCamErr Run(const std::vector<uint8_t>& image);

    // The same for a flash that an earlier upload may have left busy: it first waits for the flash.
    // ZelCamErr_GenTL_Busy if the flash stays busy, before or during the upload.
    ZelCamErr RunWhenReady(const std::vector<uint8_t>& image);

  private:
    enum class Flash { Ready, Busy, Failed };

    Flash EraseAndProgram(const std::vector<uint8_t>& image);
    Flash EraseSector(uint64_t address);
    Flash Program(const std::vector<uint8_t>& image);
    Flash AwaitReady(int polls);
    bool Write(uint64_t address, uint32_t value);
    bool Write(uint64_t address, const void* data, size_t size);
    void Report(ZelCam::Device::UploadEventType type, uint64_t current, uint64_t end) const;

    ZelCam::Device& device_;
    UploadProgress progress_;
    ZelCamErr result_ = ZelCamErr_Success;  // of the last register access
};

// Reads a firmware image; only an empty regular file is accepted. `image` gets at least a page,
// filled up with the bytes of erased flash. ZelCamErr_FileOpenFailed or ZelCamErr_InvalidFile.
ZelCamErr ReadFirmware(const char* fileName, std::vector<uint8_t>& image);

}  // namespace ZelCameraApi::Internal
