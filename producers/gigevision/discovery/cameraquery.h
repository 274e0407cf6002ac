// What is read of cameras that are listed: who controls them, and the speed of their clocks.
#pragma once

#include <chrono>
#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <optional>
#include <vector>

#include "producers/gigevision/discovery/round.h"
#include "producers/sockets/endpoint.h"
#include "producers/wire/byteview.h"
#include "producers/wire/gvcpanswers.h"

namespace ZelGev {

struct CameraReading {
    bool isAnswered = false;      // it answers at its address
    bool isDenied = false;        // others may not even read
    uint32_t ccp = 0;             // the control channel privilege register
    ZelCti::Endpoint holder;      // who has the privilege; zeros: unknown
    uint64_t ticksPerSecond = 0;  // 0: unknown
};

// Reads a few registers of several cameras at once, one register after the other of each. Thread-
// bound; pure: it takes datagrams and the time.
class CameraQuery {
  public:
    // Sends a command to the camera of an address.
    using Send = std::function<void(uint32_t camera, ZelCti::ByteView command)>;
    // The number of the next command. Everything that is sent from a socket takes its numbers from
    // one counter: a camera answers a number that it has just had as it did before.
    using NextRequest = std::function<uint16_t()>;

    static constexpr std::chrono::milliseconds kInterval{60};  // of a question that gets lost
    static constexpr std::chrono::milliseconds kLongest{250};  // of a camera

    CameraQuery(const std::vector<uint32_t>& cameras, Time now, NextRequest nextRequest, Send send);

    void OnTimer(Time now);
    void OnDatagram(const ZelCti::Endpoint& from, ZelCti::ByteView datagram, Time now);

    bool IsDone() const;
    Time NextDeadline() const;

    // What the camera answered; none when it is not over, and it has not answered so far.
    std::optional<CameraReading> ReadingOf(uint32_t camera) const;

  private:
    struct Progress {
        std::deque<uint32_t> registers;  // to be read; the first one is asked for
        uint16_t requestId = 0;
        Time nextAsk;
        Time end;
        CameraReading reading;
    };

    void AskNext(uint32_t camera, Progress& progress, Time now);
    void Ask(uint32_t camera, Progress& progress, Time now);
    static void Take(Progress& progress, const ZelCti::Gvcp::Acknowledge& ack);

    const NextRequest nextRequest_;
    const Send send_;
    std::map<uint32_t, Progress> cameras_;  // by address
};

}  // namespace ZelGev
