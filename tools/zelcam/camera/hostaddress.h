// The network configuration of a camera.
#pragma once

#include <cstdint>
#include <string>

#include "ZelCam/DeviceInfo.h"

namespace ZelTool {

// Addresses in the form "192.168.0.1". The gateway 0.0.0.0 means that there is no gateway.
struct Network {
    std::string address;
    std::string mask;
    std::string gateway;
};

// Throws Failure (FeatureFailed) when the interface does not report it.
Network NetworkOf(ZelCam::DeviceInfo& info);

// "192.168.0.1" for 0xC0A80001.
std::string DottedAddress(uint32_t address);

// Throws Failure (Usage) for a text of another form: the library accepts more forms, and the camera
// could get an address that the user did not mean. Unless `anyAddress` is set, this also throws for
// an invalid mask, an address that no host of the network can have, and a gateway outside the
// network.
void CheckNetwork(const Network& network, bool anyAddress);

}  // namespace ZelTool
