// The registers of the message channel and of the stream channels.
#pragma once

#include <cstdint>
#include <vector>

#include "producers/server/registers/registerspace.h"
#include "producers/simulator/camera/camera.h"
#include "producers/simulator/gige/control/capabilities.h"
#include "producers/simulator/gige/control/networkhardware.h"

namespace ZelSim {

// What these registers hold, and what writing them does to the channels. Guarded by the lock of the
// register space.
class ChannelRegisters {
  public:
    ChannelRegisters(Camera& camera, NetworkHardware& hardware)
        : camera_(camera), hardware_(hardware) {}

    // The channels get what the registers hold at power-on.
    void AddTo(ZelCti::RegisterSpace& space);

    // SCCFG at power-on: cameras whose frames have parts send these without being asked, which
    // needs 64-bit block ids.
    uint32_t PowerOnConfiguration() const;

    // The message channel, and the stream channels that are not to go on without a controller.
    void Close();
    bool IsUnconditional() const;  // a channel goes on

    // The stream channels are others now, which are closed; they get what the registers hold.
    void RenewStreams();

    // The channels of which test packets were asked for since the last call, once each.
    std::vector<uint32_t> TakeTestPackets();

  private:
    struct Message {
        uint32_t mcp = 0;
        uint32_t mcda = 0;
        uint32_t mctt = 0;
        uint32_t mcrc = 0;
    };
    struct Stream {
        uint32_t scp = 0;
        uint32_t scps = 0;
        uint32_t scpd = 0;
        uint32_t scda = 0;
        uint32_t sccfg = 0;
        bool firesTestPacket = false;
    };

    void AddMessageChannel(ZelCti::RegisterSpace& space);
    void AddStreamPort(ZelCti::RegisterSpace& space, uint32_t channel);
    void AddStreamPackets(ZelCti::RegisterSpace& space, uint32_t channel);
    void AddStreamConfiguration(ZelCti::RegisterSpace& space, uint32_t channel);
    void CheckStreamPort(const Stream& stream, uint32_t scp) const;
    void CheckPacketSize(const Stream& stream, uint32_t scps) const;
    void SetPacketSize(uint32_t channel, uint32_t scps);
    void CloseStream(uint32_t channel);
    void FollowPace() const;
    Capabilities Can() const {
        return CapabilitiesOf(*hardware_.Settings(), hardware_.StreamCapability());
    }

    Camera& camera_;
    NetworkHardware& hardware_;
    Message message_;
    std::vector<Stream> streams_;
};

}  // namespace ZelSim
