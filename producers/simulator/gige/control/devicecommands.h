// DISCOVERY and FORCEIP: commands to the device, whoever controls the camera.
#pragma once

#include <optional>

#include "producers/server/registers/portregisters.h"
#include "producers/simulator/gige/control/answerstore.h"
#include "producers/simulator/gige/control/bootstrapregisters.h"
#include "producers/wire/gvcpcommands.h"

namespace ZelSim {

// Where an answer goes, and after what time.
struct AddressedAnswer {
    ZelCti::Endpoint to;
    Answer answer;
    std::chrono::milliseconds delay{0};
};

// Thread-bound.
class DeviceCommands {
  public:
    using Command = ZelCti::Gvcp::Command;

    DeviceCommands(ZelCti::PortRegisters& port, const BootstrapRegisters& bootstrap,
                   NetworkHardware& hardware)
        : port_(port), bootstrap_(bootstrap), hardware_(hardware) {}

    // The answer to a broadcast command comes after a random time, and to another subnet only as a
    // broadcast, if the command allows that.
    std::optional<AddressedAnswer> Discover(const Command& command, const ZelCti::Endpoint& from,
                                            bool broadcast);

    // Silent unless the command means this device and gets an acknowledge.
    std::optional<AddressedAnswer> ForceIp(const Command& command, const ZelCti::Endpoint& from);

  private:
    std::chrono::milliseconds DiscoveryDelay();

    ZelCti::PortRegisters& port_;
    const BootstrapRegisters& bootstrap_;
    NetworkHardware& hardware_;
    uint64_t random_ = 0;
};

}  // namespace ZelSim
