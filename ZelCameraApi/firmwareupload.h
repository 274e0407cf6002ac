// Writing a firmware image into a camera's flash memory.
#ifndef ZELCAMERAAPI_FIRMWAREUPLOAD_H
#define ZELCAMERAAPI_FIRMWAREUPLOAD_H

#include <cstdint>
#include <vector>

#include "ZelCam/Device.h"

namespace ZelCameraApi::Internal {

using UploadProgress = void (*)(ZelCam::Device::UploadEventType, ZelCam::Device::UploadEventData);

// Drives the flash controller through the camera's registers. Nothing is rolled back: sectors
// erased before a failure stay erased.
//
// A flash that stays busy ends the upload quietly: the step is reported as if it had finished, and
// the code is success.
class FirmwareUpload {
  public:
    // `progress` may be null.
    FirmwareUpload(ZelCam::Device& device, UploadProgress progress)
        : device_(device), progress_(progress) {}

    // Erases the flash and programs the image, as Program takes it. Returns the code of the first
    // register access that fails.
    ZelCamErr Run(const std::vector<uint8_t>& image);

    // Programs the first page of the image, which has at least that many bytes; a page of erased
    // bytes needs no programming.
    ZelCamErr Program(const std::vector<uint8_t>& image);

  private:
    enum class Flash { Ready, Busy, Failed };

    Flash EraseSector(uint64_t address);
    Flash AwaitReady();
    bool Write(uint64_t address, uint32_t value);
    bool Write(uint64_t address, const void* data, size_t size);
    void Report(ZelCam::Device::UploadEventType type, uint64_t current, uint64_t end) const;

    ZelCam::Device& device_;
    UploadProgress progress_;
    ZelCamErr result_ = ZelCamErr_Success;  // of the last register access
};

// Reads a firmware image; only an empty file is one. `image` gets at least a page, its rest as
// erased flash reads. ZelCamErr_FileOpenFailed or ZelCamErr_InvalidFile.
ZelCamErr ReadFirmware(const char* fileName, std::vector<uint8_t>& image);

}  // namespace ZelCameraApi::Internal

#endif  // ZELCAMERAAPI_FIRMWAREUPLOAD_H
