// The commands to a camera that are waiting or on their way.
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "producers/gigevision/control/exchange.h"
#include "producers/wire/byteview.h"

namespace ZelGev {

struct RequestLimits {
    Milliseconds timeout{200};  // until a command is sent again
    unsigned maxTries = 4;
};

// Counts since the channel was opened.
struct RequestStatistics {
    uint64_t commands = 0;     // without repetitions
    uint64_t repetitions = 0;  // sent again because no acknowledge came
    uint64_t unanswered = 0;   // given up
    uint64_t pendings = 0;     // PENDING_ACK
    uint64_t refusals = 0;     // commands that were sent anew: the camera was busy
    uint64_t strayAcks = 0;    // late, doubled or malformed ones
};

// Gives numbers to commands, repeats those that get no acknowledge, and finds the command of each
// acknowledge. Has no socket and no clock: it is given datagrams and the time.
//
//   Add ──> NextDatagram (until there is none) ──> OnDatagram, OnTimer ──> the exchange is done
//
// A repetition has the number of the command, so that a camera that had done it acknowledges it
// only. A number that is not waited for any more belongs to a late or doubled acknowledge, which is
// dropped. BUSY is worth further tries, and BAD_ALIGNMENT one, which some cameras answer to the
// first command of a controller; these are new commands, as the camera would repeat its answer.
// Thread-bound.
class GvcpRequests {
  public:
    // Numbers begin anywhere, so that no acknowledge for an earlier user of the port fits.
    GvcpRequests(uint16_t firstId, RequestLimits limits) : nextId_(firstId), limits_(limits) {}

    const RequestLimits& Limits() const { return limits_; }
    void SetLimits(RequestLimits limits) { limits_ = limits; }

    // No command is waited for beyond this time, whatever the camera says; none: for five minutes.
    void SetDeadline(std::optional<Time> deadline) { deadline_ = deadline; }

    // The exchange stays where it is until it is done.
    void Add(Exchange& exchange);
    void CancelAll();

    // The next command to be sent now; empty if there is none. Valid until the next call.
    std::optional<ZelCti::ByteView> NextDatagram(Time now);

    void OnDatagram(ZelCti::ByteView datagram, Time now);
    void OnTimer(Time now);

    // When OnTimer or NextDatagram has something to do; none while nothing is waited for.
    std::optional<Time> NextDeadline() const;

    // The last acknowledge of a command that was waited for.
    Time LastHeard() const { return lastHeard_; }

    // Whether the camera works on a command, as it said: it may be silent for that time.
    bool IsPending() const;

    const RequestStatistics& Statistics() const { return statistics_; }

  private:
    bool MayGo(const Exchange& exchange) const;
    uint16_t NewId();
    Exchange* Find(uint16_t id) const;
    unsigned MaxTries(const Exchange& exchange) const;
    Milliseconds Timeout(const Exchange& exchange) const;
    Time LatestEnd(const Exchange& exchange) const;
    static bool IsAnswer(const ZelCti::Gvcp::Acknowledge& ack, const Exchange& exchange);
    bool OnPending(Exchange& exchange, const ZelCti::Gvcp::Acknowledge& ack, Time now);
    bool TriesAnew(Exchange& exchange, ZelCti::Gev::Status status, Time now);
    void Finish(Exchange& exchange, Exchange::State state);

    uint16_t nextId_;
    RequestLimits limits_;
    std::optional<Time> deadline_;
    std::vector<Exchange*> exchanges_;  // that are not done, in the order of Add
    Time lastHeard_{};
    RequestStatistics statistics_;
};

}  // namespace ZelGev
