// Who controls a served camera.
#pragma once

#include <chrono>
#include <cstdint>
#include <mutex>
#include <optional>

#include "producers/sockets/endpoint.h"
#include "producers/wire/gevstatus.h"

namespace ZelSim {

// The control channel privilege (CCP) of a camera, and the heartbeat of the application that has
// it.
//
//   free --control--> controlled --exclusive--> exclusive     by the holder, in both directions
//   controlled, exclusive --0, heartbeat ends--> free
//   controlled, exclusive --key, if allowed--> held by another application
//
// An application is the address and the port that its commands come from. Thread-safe: registers
// show it.
class ControlPrivilege {
  public:
    using Clock = std::chrono::steady_clock;

    // What a write of CCP did.
    struct Change {
        ZelCti::Gev::Status status = ZelCti::Gev::Status::Success;
        bool isReleased = false;   // nobody holds it any more
        bool isNew = false;        // the writer did not hold it before
        bool isTakenOver = false;  // somebody else did
    };

    // `key` is the register that a take-over must match; none if the camera has no switchover.
    Change Write(const ZelCti::Endpoint& from, uint32_t ccp, std::optional<uint16_t> key,
                 Clock::time_point now);
    void Release();

    uint32_t Value() const;  // of CCP, without the key
    std::optional<ZelCti::Endpoint> Holder() const;

    bool MayRead(const ZelCti::Endpoint& from) const;  // not when another one has it exclusively
    bool MayWrite(const ZelCti::Endpoint& from) const;

    // A command came; that of the holder is a heartbeat.
    void OnCommand(const ZelCti::Endpoint& from, Clock::time_point now);
    std::optional<Clock::time_point> LastHeartbeat() const;  // while somebody holds it

  private:
    bool IsHolder(const ZelCti::Endpoint& from) const { return held_ && held_->holder == from; }

    struct Held {
        ZelCti::Endpoint holder;
        uint32_t bits;
        Clock::time_point heartbeat;
    };

    mutable std::mutex mutex_;  // no other is taken under it
    std::optional<Held> held_;  // guarded by mutex_
};

}  // namespace ZelSim
