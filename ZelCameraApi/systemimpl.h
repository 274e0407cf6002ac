// The root of the object tree.
#pragma once

#include <list>
#include <memory>
#include <string>

#include "ZelCam/System.h"
#include "ZelCameraApi/base/gentlmodule.h"
#include "ZelCameraApi/listimpl.h"

namespace ZelCameraApi::Internal {

class InterfaceImpl;

// Owns the system modules of its producers, the interfaces of all producers and the lists that it
// handed out. They end in the reverse order.
class SystemImpl final : public ZelCam::System {
  public:
    using InterfaceList = ListImpl<ZelCam::Interface, SystemImpl>;

    // Registers the default producer. Throws zelcam_exception if that fails, because no System
    // exists without the default producer.
    SystemImpl();
    ~SystemImpl();

    SystemImpl(const SystemImpl&) = delete;
    SystemImpl& operator=(const SystemImpl&) = delete;

    void Release() override;
    ZelCam::List<ZelCam::Interface>* GetInterfaceList(ZelCam::InterfaceType type) override;
    ZelCam::Interface* GetInterfaceById(const char* id) override;
    const char* GetDisplayName() override;
    const char* GetVersion() override;
    ZelCam::Device* CreateDeviceFromConfig(const char* fileName, ZelCamErr* err) override;
    ZelCamErr RegisterGenTLProvider(const char* ctiPath) override;

    // Deletes a list that was handed out.
    void RemoveList(InterfaceList* list);

  private:
    void CollectInterfaces();
    void CollectInterfaces(const GenTLModule<void*>& tl,
                           std::list<std::unique_ptr<InterfaceImpl>>& interfaces);
    const char* CachedInfo(std::string& cache, int cmd);

    std::list<GenTLModule<void*>> systems_;  // in the order of registration
    std::string displayName_;                // empty until first asked
    std::string version_;                    // likewise
    std::list<std::unique_ptr<InterfaceImpl>> interfaces_;
    std::list<std::unique_ptr<InterfaceList>> lists_;
};

}  // namespace ZelCameraApi::Internal
