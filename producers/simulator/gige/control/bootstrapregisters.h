// The bootstrap registers of a served camera.
#pragma once

#include <array>
#include <cstdint>
#include <mutex>
#include <string>
#include <vector>

#include "producers/server/registers/portregisters.h"
#include "producers/simulator/camera/camera.h"
#include "producers/simulator/gige/control/channelregisters.h"
#include "producers/simulator/gige/control/controlprivilege.h"

namespace ZelSim {

// What the control server follows of them.
struct ControlSettings {
    struct ActionSignal {
        uint32_t groupKey = 0;
        uint32_t groupMask = 0;
    };

    uint32_t heartbeatTimeout = 3000;  // ms
    uint32_t discoveryDelay = 0;       // ms
    uint32_t gvcpConfiguration = 0;    // bits of GvcpConfiguration
    uint16_t switchoverKey = 0;
    uint32_t actionDeviceKey = 0;
    std::array<ActionSignal, Camera::kNumActionSignals> actions{};
};

// Puts the registers into the space of the camera, big endian whatever its order. They are those of
// a device with one interface. Commands write CCP by the control privilege, which knows who writes;
// in the space it can only be read. Thread-safe after AddTo.
class BootstrapRegisters {
  public:
    // All of them must outlive the use of the registers. The privilege is what CCP shows, and the
    // description is read through `port`.
    BootstrapRegisters(Camera& camera, ZelCti::PortRegisters& port, NetworkHardware& hardware,
                       const ControlPrivilege& privilege);

    static constexpr uint32_t kPendingTimeout = 200;       // ms
    static constexpr uint32_t kScheduledActions = 8;       // that can wait
    static constexpr uint32_t kMinHeartbeatTimeout = 500;  // ms; less becomes this

    // Called when the space is made; the channels get their settings at power-on.
    void AddTo(ZelCti::RegisterSpace& space);

    ControlSettings Settings() const;
    Capabilities Can() const;

    // Nobody controls the camera any more: closes the channels, ends the acquisition and forgets
    // what the controller has set for itself. A channel that streams unconditionally goes on.
    void OnControlEnd();

    // The device has other stream channels, which are closed.
    void OnNewStreams();

    // As ChannelRegisters::TakeTestPackets.
    std::vector<uint32_t> TakeTestPackets();

  private:
    void AddIdentity(ZelCti::RegisterSpace& space);
    void AddTexts(ZelCti::RegisterSpace& space);
    void AddAddresses(ZelCti::RegisterSpace& space);
    void AddPersistentIp(ZelCti::RegisterSpace& space);
    void AddCapabilities(ZelCti::RegisterSpace& space);
    void AddTime(ZelCti::RegisterSpace& space);
    void AddControl(ZelCti::RegisterSpace& space);
    void AddConfiguration(ZelCti::RegisterSpace& space);
    void AddLink(ZelCti::RegisterSpace& space);
    void AddActions(ZelCti::RegisterSpace& space);
    void CheckConfiguration(uint32_t bits) const;
    void Configure(uint32_t bits);
    void SetHeartbeatTimeout(uint32_t milliseconds);
    uint32_t TickFrequency(bool high) const;
    void ControlTimestamp(uint32_t bits);
    std::string Text(std::string text, size_t size) const;
    std::string ManifestTable() const;
    std::array<std::string, 2> Urls() const;
    void Change(const std::function<void(ControlSettings&)>& change);

    Camera& camera_;
    ZelCti::PortRegisters& port_;
    NetworkHardware& hardware_;
    const ControlPrivilege& privilege_;

    // What follows is guarded by the lock of the space.
    ChannelRegisters channels_;
    bool extendedIds_ = false;
    uint64_t latchedTicks_ = 0;

    mutable std::mutex mutex_;  // no other is taken under it
    ControlSettings settings_;  // guarded by mutex_
};

}  // namespace ZelSim
