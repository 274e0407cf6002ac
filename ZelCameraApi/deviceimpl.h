// An opened camera.
#pragma once

#include <atomic>
#include <iosfwd>
#include <list>
#include <memory>
#include <mutex>
#include <string>

#include "ZelCam/Device.h"
#include "ZelCam/System.h"
#include "ZelCameraApi/ZelGenParam/arrayimpl.h"
#include "ZelCameraApi/base/gentlmodule.h"
#include "ZelCameraApi/chunkbinding.h"
#include "ZelCameraApi/eventadapter.h"
#include "ZelCameraApi/eventsource.h"
#include "ZelCameraApi/firmwareupload.h"

namespace tinyxml2 {
class XMLDocument;
}

namespace ZelCameraApi::Internal {

class DeviceInfoImpl;
class StreamImpl;

// One opened device module with the camera's own port. Owns its streams and parameters. The device
// info that opened it owns it, except for the NonSystemDevice below.
class DeviceImpl : public EventSource<ZelCam::Device> {
  public:
    // Opens the device. Throws zelcam_exception if the producer refuses, std::bad_cast if the
    // info's interface belongs to another implementation.
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
    ZelCamErr UploadFirmware(const char* fileName, UploadCallback progress, void* priv) override;

    ChunkBinding& Chunks() { return chunks_; }

    // Destroys an open stream of this device; ignores any other.
    void CloseStream(StreamImpl* stream);

    // LoadConfiguration from a configuration file, and from only the text of the features.
    ZelCamErr LoadConfiguration(const tinyxml2::XMLDocument* document);
    ZelCamErr LoadConfiguration(std::istream& text);

    // Delivers an event message of the camera to the node map of the adapter, if there is one. A
    // malformed message is dropped.
    static void GenICamEvent(GenApi::CEventAdapter* adapter, const void* data, size_t size);

    // Writes a firmware image into the camera's flash memory: see ReadFirmware and FirmwareUpload.
    ZelCamErr UploadRpd(const char* fileName, unsigned long reserved,
                        void (*progress)(UploadEventType, UploadEventData));

    // Without effect, and true.
    bool EraseSector(unsigned long address, unsigned int count);
    bool PageWrite(unsigned long address, unsigned char* data, unsigned int size,
                   unsigned long flags);
    bool PageRead(unsigned long address, unsigned char* data, unsigned int size,
                  unsigned long flags);

  private:
    // A node map, and the adapter that delivers events to it and ends first.
    struct Parameters {
        std::unique_ptr<ArrayImpl> array;
        std::unique_ptr<GenApi::CEventAdapter> eventAdapter;
    };

    void Init(const GenTLModule<void*>& iface, ZelCam::DeviceAccess access);
    static bool MakeParameters(Parameters& parameters, const GenTLModule<void*>& port,
                               const char* xmlFile, ZelCamErr* err);
    void FollowEvents();  // lets events of the camera reach its parameters
    GenApi::INodeMap* GetCameraNodeMap(ZelCamErr* err);

    std::string id_;
    DeviceInfoImpl* info_;  // lives until the System ends, which outlives its devices
    GenTLModule<void*> remotePort_;
    std::list<std::unique_ptr<StreamImpl>> streams_;
    Parameters transport_;  // made when first asked for
    Parameters camera_;     // likewise
    ChunkBinding chunks_;   // of buffers, to the features of the camera
    // Held while the camera's parameters are made: streams on other threads ask for them, too.
    std::mutex cameraMutex_;
    std::atomic<ZelGenParam::Array*> cameraArray_{nullptr};  // that of camera_, once it was made
    EventCallbackDelegate eventDelegate_;
};

// Holds a System and releases it.
struct SystemReleaser {
    void operator()(ZelCam::System* system) const { system->Release(); }
};
using SystemHolder = std::unique_ptr<ZelCam::System, SystemReleaser>;

// A device that the application opened without a System. It owns a private System, and only the
// application owns the device.
class NonSystemDevice final : public DeviceImpl {
  public:
    NonSystemDevice(SystemHolder system, DeviceInfoImpl* info, ZelCam::DeviceAccess access);

    void Release() override;

  private:
    SystemHolder system_;
};

}  // namespace ZelCameraApi::Internal
