// The features that only GigE cameras and their interfaces have on this side, as rows over what a
// transport knows.
#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <vector>

#include "producers/server/registers/featuretable.h"
#include "producers/transport.h"
#include "producers/wire/gvcpcommands.h"

namespace ZelCti {

// A network adapter, as the rows of its interface see it. Thread-safe; it outlives the registers.
class GigeHost {
  public:
    struct Subnet {
        uint32_t address;  // the adapter's; 192.168.1.2 is 0xC0A80102
        uint32_t mask;
    };

    virtual uint64_t MacAddress() const = 0;
    virtual std::vector<Subnet> Subnets() const = 0;
    virtual std::vector<uint32_t> Gateways() const = 0;

    // Whether somebody in a subnet of the adapter has the address, as far as it knows.
    virtual bool IsTaken(uint32_t address) const = 0;

    // Gives a camera that nobody has open an address, a mask and a gateway until it is switched
    // off; the address 0 gives it the settings of its configuration again. Returns when the camera
    // has confirmed it; throws GC_ERR_TIMEOUT when it has not in time.
    virtual void ForceNetwork(Camera& camera, const CameraNetwork& network,
                              std::chrono::milliseconds timeout) = 0;

  protected:
    ~GigeHost() = default;
};

// Rows of an interface: the adapter, and the addresses of the selected camera.
void AddGigeInterfaceFeatures(FeatureTable& features, GigeHost& host,
                              const HostInterface::SelectedCamera& selected);

// Rows of an interface whose cameras take action commands. `send` sends one to an address, by
// default to all.
void AddActionFeatures(FeatureTable& features,
                       std::function<void(const Gvcp::Action& action, uint32_t to)> send);

// Rows of a device. The camera outlives the registers.
void AddGigeCameraFeatures(FeatureTable& features, const Camera& camera);

}  // namespace ZelCti
