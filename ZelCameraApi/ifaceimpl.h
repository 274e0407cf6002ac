// An opened interface of a producer.
#pragma once

#include <list>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "ZelCam/Interface.h"
#include "ZelCameraApi/ZelGenParam/arrayimpl.h"
#include "ZelCameraApi/base/gentlmodule.h"
#include "ZelCameraApi/eventsource.h"
#include "ZelCameraApi/listimpl.h"

namespace tinyxml2 {
class XMLDocument;
}

namespace ZelCameraApi::Internal {

class DeviceInfoImpl;
class SystemImpl;

// The transport-layer type names of GenTL that have a number.
const std::map<ZelCam::InterfaceType, std::string>& GetInterfaceTypesMap();

// Owns every DeviceInfoImpl that it made, so pointers to them stay valid until the interface ends:
// those of present cameras (active), those of cameras that disappeared (retired), and those for
// identifiers that the producer did not list.
class InterfaceImpl final : public EventSource<ZelCam::Interface> {
  public:
    using DeviceInfoList = ListImpl<ZelCam::DeviceInfo, InterfaceImpl>;

    // Opens the interface. Throws zelcam_exception if the producer refuses.
    InterfaceImpl(SystemImpl* parent, const GenTLModule<void*>& tl, std::string id);
    ~InterfaceImpl();

    ZelCam::List<ZelCam::DeviceInfo>* GetDeviceInfoList() override;
    ZelCam::DeviceInfo* GetFirstDeviceInfo() override;
    ZelCam::DeviceInfo* GetDeviceInfoById(const char* id) override;
    ZelCamErr ReEnumerateDevices(bool* changed, uint64_t timeout) override;
    const char* GetDescription() override;
    ZelCam::InterfaceType GetType() override;
    const char* GetId() override;
    const char* GetVersion() override;
    ZelGenParam::Array* GetParameters(ZelCamErr* err) override;
    ZelCam::Device* CreateDeviceFromConfig(const char* fileName, ZelCamErr* err) override;
    const char* GetVendor() override;
    const char* GetModel() override;

    // The same for a file that was already read.
    ZelCam::Device* CreateDeviceFromConfig(tinyxml2::XMLDocument* document, ZelCamErr* err);

    // Deletes a list that was handed out.
    void RemoveList(DeviceInfoList* list);

    // Reads the producer's current list of devices. New devices get a DeviceInfoImpl, those of
    // missing devices are retired, and the others stay. Throws zelcam_exception if the producer
    // fails.
    void CollectDeviceInfos();

  private:
    using DeviceInfos = std::list<std::unique_ptr<DeviceInfoImpl>>;
    struct KnownDevice {
        const char* id;
        DeviceInfos::iterator info;
    };

    std::vector<std::string> FindDeviceIds() const;
    std::vector<KnownDevice> SortedDeviceInfos();
    const char* CachedInfo(std::string& cache, int cmd);
    const char* CachedPortInfo(std::string& cache, int cmd);

    [[maybe_unused]] SystemImpl* parent_;  // owns this
    std::string description_;              // empty until first asked
    std::string id_;
    std::string version_;  // empty until first asked
    std::string vendor_;   // likewise
    std::string model_;    // likewise
    ZelCam::InterfaceType type_ = ZelCam::InterfaceType::Unknown;
    DeviceInfos deviceInfos_;
    DeviceInfos retiredDeviceInfos_;
    std::list<std::unique_ptr<DeviceInfoList>> lists_;
    std::map<std::string, std::unique_ptr<DeviceInfoImpl>> deviceInfosById_;
    std::unique_ptr<ArrayImpl> parameters_;  // made when first asked for
};

}  // namespace ZelCameraApi::Internal
