// Keeps the control of a camera, and notices when it is lost.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "producers/gigevision/control/exchange.h"
#include "producers/gigevision/control/gvcprequests.h"
#include "producers/sockets/endpoint.h"

namespace ZelGev {

struct HeartbeatSettings {
    Milliseconds timeout{3000};  // after which a camera frees itself, and counts as lost here
    bool controls = true;        // otherwise only that the camera is there is looked after
    // Who the camera says has control, when it is we and the camera can be asked for all of it in
    // one command.
    std::optional<ZelCti::Endpoint> holder;
};

// Asks for CCP three times within the time-out, and at least once a second. Control is lost when
// nobody has it, when another has it, when the camera denies the read, or when it was silent for
// the time-out although it was asked again and again; so a process that did not run for a while
// asks before it judges. What an answer says is asked once more before it counts, because cameras
// confuse the answers to commands. Has no socket and no clock. Thread-bound.
//
//   Begin ──> (the exchange is done) ──> End ──> Begin ...
class Heartbeat {
  public:
    Heartbeat(const HeartbeatSettings& settings, Time now);

    // When Begin has something to do; none while it waits for the camera.
    std::optional<Time> NextDeadline() const;

    // The command to send now, if it is time for one: it is to be added to `requests`.
    Exchange* Begin(Time now);

    // Looks at the command of Begin, when it is done. Returns why control is lost, empty when it is
    // not.
    std::string End(const GvcpRequests& requests, Time now);

    bool IsUnderWay() const { return isUnderWay_; }
    bool IsDone() const { return isUnderWay_ && exchange_.IsDone(); }

    // Something makes it doubtful that we have control: asks at once. When the camera does not say
    // who has control, it writes its time-out, which only the holder may.
    void Doubt(Time now);

    // The client changed the time-out in the camera.
    void FollowTimeout(Milliseconds timeout, Time now);

    // The time-out in the camera is to be another one, as long as a debugger may stop the process.
    void SetTimeoutOfCamera(Milliseconds timeout, Time now);

  private:
    std::string Judge() const;
    std::string Confirmed(std::string reason, Time now);

    HeartbeatSettings settings_;
    Milliseconds timeoutOfCamera_;
    Exchange exchange_;
    bool isUnderWay_ = false;
    bool writesNext_ = false;
    bool isSuspected_ = false;  // the latest answer says that control is lost
    Time next_;
    Time begun_{};
};

}  // namespace ZelGev
