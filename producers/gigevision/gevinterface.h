// A network adapter with its cameras.
#pragma once

#include <chrono>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "producers/gigefeatures/gigefeatures.h"
#include "producers/gigevision/discovery/discovery.h"
#include "producers/gigevision/gevcamera.h"
#include "producers/transport.h"

namespace ZelGev {

// The objects of the cameras, of all adapters: a camera that another adapter sees is the same one.
// Thread-safe.
class CameraObjects {
  public:
    // The object of a camera that was found, up to date.
    std::shared_ptr<GevCamera> For(const ListedCamera& listed);

  private:
    std::mutex mutex_;
    std::map<std::string, std::weak_ptr<GevCamera>> cameras_;  // guarded by mutex_; by identifier
};

// Thread-safe. Its adapter is known by the index: when the adapter changes, the object stays for
// those who have it open, and another one is listed.
class GevInterface final : public ZelCti::HostInterface, private ZelCti::GigeHost {
  public:
    GevInterface(std::shared_ptr<Discovery> discovery, std::shared_ptr<CameraObjects> objects,
                 const NetworkAdapter& adapter);

    // One that has no cameras because there is no such adapter, for a reason that people see.
    GevInterface(std::shared_ptr<Discovery> discovery, const std::string& name,
                 const std::string& reason);

    // Whether both show the same adapter in the same way.
    bool IsLike(const GevInterface& other) const {
        return adapter_ == other.adapter_ && info_.displayName == other.info_.displayName;
    }

    const ZelCti::InterfaceInfo& Info() const override { return info_; }
    void UpdateCameras(ZelCti::Deadline deadline) override;
    std::shared_ptr<const ZelCti::CameraList> Cameras() const override;
    bool HasSearched() const override;
    void AddFeatures(ZelCti::FeatureTable& features, const SelectedCamera& camera) override;

  private:
    std::optional<int64_t> ClockOffset() const;
    uint64_t MacAddress() const override;
    std::vector<Subnet> Subnets() const override;
    std::vector<uint32_t> Gateways() const override;
    bool IsTaken(uint32_t address) const override { return discovery_->IsTaken(address); }
    void ForceNetwork(ZelCti::Camera& camera, const ZelCti::CameraNetwork& network,
                      std::chrono::milliseconds timeout) override;

    const ZelCti::InterfaceInfo info_;
    const unsigned adapter_;
    const std::shared_ptr<Discovery> discovery_;
    const std::shared_ptr<CameraObjects> objects_;
    mutable std::mutex mutex_;
    std::shared_ptr<const ZelCti::CameraList> cameras_;  // guarded by mutex_
    bool hasSearched_ = false;                           // guarded by mutex_
};

}  // namespace ZelGev
