// What a configuration says: the interfaces and cameras of the simulated world.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "producers/simulator/config/networkswitches.h"
#include "producers/simulator/frame/imagelayout.h"
#include "producers/sockets/ipaddress.h"

namespace ZelSim {

// One Camera element; docs/simulator.md describes the keys.
struct CameraConfig : ImageLayout {
    std::string id;
    std::string vendor = "ZelCam";
    std::string model = "Simulated camera";
    std::string serial = "0";
    std::string userName;
    std::string version = "1.0.0";
    std::string usbHostInfo = "Simulated USB 3.0 host, port 1";
    double frameRate = 30;
    bool freeRunning = false;
    uint64_t linkSpeed = 0;  // bytes a second; 0: the speed of the transport type
    uint32_t incompleteEvery = 0;
    uint32_t dropEvery = 0;
    bool noFill = false;
    bool framePairs = false;
    bool definesPayloadSize = true;
    bool bigEndian = false;
    uint32_t streams = 1;
    uint32_t bufAnnounceMin = 1;
    uint32_t bufAlignment = 1;
    uint32_t flashBusyTime = 5;  // ms
    uint64_t timestampFrequency = 1000000000;
    ZelCti::IpSettings ip;                   // address and mask 0: the interface gives them
    std::string descriptionFile;             // announced before the camera's own description
    std::string descriptionUrl;              // announced before all others
    std::optional<NetworkSettings> network;  // a GigE Vision device, which a network can have
};

struct InterfaceConfig {
    std::string id;
    std::string type;  // TL type name
    std::string displayName;
    std::string version = "1.0.0";
    std::vector<CameraConfig> cameras;
};

struct WorldConfig {
    std::vector<InterfaceConfig> interfaces;
};

}  // namespace ZelSim
