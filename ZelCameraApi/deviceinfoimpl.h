// A camera behind an interface, as the producer describes it.
#pragma once

#include <list>
#include <memory>
#include <string>

#include "ZelCam/DeviceInfo.h"
#include "ZelCameraApi/base/gentlmodule.h"
#include "ZelGenParam/Array.h"

namespace ZelCameraApi::Internal {

class DeviceImpl;
class InterfaceImpl;

// Every call asks the producer and stores the answer in a separate buffer, so a text stays valid
// until the next call of the same operation. Owns the devices opened from it. Its interface owns
// it.
class DeviceInfoImpl final : public ZelCam::DeviceInfo {
  public:
    DeviceInfoImpl(InterfaceImpl* parent, const std::string& id);
    ~DeviceInfoImpl();

    DeviceInfoImpl(const DeviceInfoImpl&) = delete;
    DeviceInfoImpl& operator=(const DeviceInfoImpl&) = delete;

    ZelCam::Interface* GetInterface() override;
    const char* GetID() override;
    const char* GetVendor() override;
    const char* GetModel() override;
    const char* GetDisplayName() override;
    const char* GetUserDefinedName() override;
    const char* GetSerialNumber() override;
    const char* GetVersion() override;
    int32_t GetAccessStatus() override;
    const char* GetUSB3HostInfo() override;
    const char* GetIPAddress(ZelCamErr* err) override;
    const char* GetIPMask(ZelCamErr* err) override;
    const char* GetIPGateway(ZelCamErr* err) override;
    ZelCamErr GetIP(uint32_t* address, uint32_t* mask, uint32_t* gateway) override;
    ZelCamErr ForceIP(const char* address, const char* mask, const char* gateway) override;
    ZelCamErr ForceIP(uint32_t address, uint32_t mask, uint32_t gateway) override;
    ZelCamErr SetExternalXml(const char* fileName) override;
    const char* GetExternalXml() override;

    // Opens the camera. One info may open several independent devices. Throws zelcam_exception if
    // the producer refuses.
    DeviceImpl* CreateDevice(ZelCam::DeviceAccess access);

    // Destroys a device that CreateDevice opened; ignores any other.
    void CloseDevice(DeviceImpl* device);

    // Forces a network configuration on the camera that the interface's DeviceSelector selects.
    static ZelCamErr ForceIPToCurrentDevice(ZelGenParam::Array* ifParams, uint32_t address,
                                            uint32_t mask, uint32_t gateway);

  private:
    // The camera's place among the cameras of its interface. If the producer lists its cameras in
    // the same order, this is also the camera's number in the interface's DeviceSelector.
    struct Position {
        int64_t index = 0;  // the number of cameras if it is not one of them
        bool listed = false;
    };

    const char* Info(std::string& buffer, int cmd);
    int32_t QueryAccessStatus() const;
    bool FindPosition(Position& position);
    ZelCamErr CorrectSelection(ZelGenParam::Array& ifParams) const;
    ZelCamErr CompareSelected(ZelGenParam::Array& ifParams) const;
    ZelCamErr SearchSelector(ZelGenParam::Array& ifParams) const;
    bool RefreshIPTexts(ZelCamErr* err);

    std::string id_;
    InterfaceImpl* parent_;  // owns this
    std::string vendor_;
    std::string model_;
    std::string displayName_;
    std::string userDefinedName_;
    std::string serialNumber_;
    std::string version_;
    std::string usb3HostInfo_;
    std::string externalXml_;  // set by the application; empty for none
    std::string ipAddress_;
    std::string ipMask_;
    std::string ipGateway_;
    std::list<std::unique_ptr<DeviceImpl>> devices_;
};

}  // namespace ZelCameraApi::Internal
