// An opened camera.
#ifndef ZELCAMERAAPI_DEVICEIMPL_H
#define ZELCAMERAAPI_DEVICEIMPL_H

#include <list>
#include <memory>
#include <string>

#include "ZelCam/Device.h"
#include "ZelCam/System.h"
#include "ZelCameraApi/eventsource.h"
#include "ZelCameraApi/gentlmodule.h"

namespace ZelCameraApi::Internal {

class DeviceInfoImpl;
class StreamImpl;

// One opened device module with the camera's own port. Owns its streams. Owned by the device info
// it was opened from, save the NonSystemDevice below.
class DeviceImpl : public EventSource<ZelCam::Device> {
  public:
    // Opens the device. Throws zelcam_exception when the producer refuses, std::bad_cast when the
    // info is of an interface of another implementation.
    DeviceImpl(DeviceInfoImpl* info, const std::string& id, ZelCam::DeviceAccess access);
    virtual ~DeviceImpl();

    void Release() override;
    uint32_t GetNumStreams() override;
    ZelCam::Stream* GetStreamByIndex(uint32_t index) override;
    ZelCam::Stream* GetStreamById(const char* id) override;
    ZelCam::DeviceInfo* GetInfo() override;
    ZelCamErr ReadMem(uint64_t address, void* buffer, size_t size) override;
    ZelCamErr WriteMem(uint64_t address, const void* buffer, size_t size, size_t* written) override;
    ZelGenParam::Array* GetTransportParameters(ZelCamErr* err) override;
    ZelGenParam::Array* GetCameraParameters(ZelCamErr* err) override;
    ZelCamErr SaveConfiguration(const char* fileName) override;
    ZelCamErr LoadConfiguration(const char* fileName) override;
    uint32_t GetEndianness() const override;

    // Destroys an open stream of this device; ignores any other.
    void CloseStream(StreamImpl* stream);

  private:
    void Init(const GenTLModule<void*>& iface, ZelCam::DeviceAccess access);

    std::string id_;
    DeviceInfoImpl* info_;  // lives as long as the System, which outlives its devices
    GenTLModule<void*> remotePort_;
    std::list<std::unique_ptr<StreamImpl>> streams_;
};

// Holds a System and releases it.
struct SystemReleaser {
    void operator()(ZelCam::System* system) const { system->Release(); }
};
using SystemHolder = std::unique_ptr<ZelCam::System, SystemReleaser>;

// A device opened without the application having a System: it keeps the System it came from, and
// belongs to the application alone.
class NonSystemDevice final : public DeviceImpl {
  public:
    NonSystemDevice(SystemHolder system, DeviceInfoImpl* info, ZelCam::DeviceAccess access);

    void Release() override;

  private:
    SystemHolder system_;
};

}  // namespace ZelCameraApi::Internal

#endif  // ZELCAMERAAPI_DEVICEIMPL_H
