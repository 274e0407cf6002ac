// A command to a camera, and its acknowledge.
#pragma once

#include <array>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <string>

#include "producers/wire/gvcpanswers.h"

namespace ZelGev {

using Time = std::chrono::steady_clock::time_point;
using Milliseconds = std::chrono::milliseconds;

// Belongs to whoever asks; GvcpRequests changes it from Add until it is done.
struct Exchange {
    enum class Lane : uint8_t {
        Ordinary,   // one at a time, in the order in which they were added
        Pipelined,  // several of them may be on their way at once
        Heartbeat   // waits for no other
    };
    enum class State : uint8_t {
        Waiting,  // to be sent, for the first time or again
        Sent,
        Acknowledged,  // also with an error
        Unanswered,
        Cancelled
    };

    static Exchange ReadReg(const uint32_t* addresses, size_t count);
    static Exchange ReadReg(uint32_t address) { return ReadReg(&address, 1); }
    static Exchange WriteReg(uint32_t address, uint32_t value);
    static Exchange ReadMem(uint32_t address, size_t size);  // a multiple of 4
    static Exchange WriteMem(const ZelCti::Gvcp::Memory& memory);

    bool IsDone() const { return state > State::Sent; }
    bool IsAcknowledged() const { return state == State::Acknowledged; }
    bool Succeeded() const { return IsAcknowledged() && status == ZelCti::Gev::Status::Success; }

    // Of an exchange that is acknowledged; lies in it.
    ZelCti::Gvcp::Acknowledge Ack() const {
        return {status, ZelCti::Gvcp::AckOf(code), id, {payload.data(), payloadSize}};
    }

    // For texts about failures: "READREG 0x00000A00".
    std::string Name() const;
    uint32_t Address() const;  // the first one, of commands for several

    ZelCti::Gvcp::Code code{};
    Lane lane = Lane::Ordinary;
    // Limits of its own; 0 where those of all requests hold.
    unsigned maxTries = 0;
    Milliseconds timeout{0};

    std::array<uint8_t, ZelCti::Gvcp::kMaxMessageSize> command{};
    size_t commandSize = 0;
    size_t answerSize = 0;  // what a successful acknowledge holds; of READMEM at least

    State state = State::Waiting;
    ZelCti::Gev::Status status{};
    std::array<uint8_t, ZelCti::Gvcp::kMaxPayloadSize> payload{};
    size_t payloadSize = 0;

    // How it went so far.
    uint16_t id = 0;         // 0: not sent yet
    unsigned tries = 0;      // commands sent
    unsigned refusals = 0;   // statuses that another try may cure
    bool isPending = false;  // the camera said that it takes longer
    Time firstSent{};
    Time due{};  // when the camera must have answered, or when to send it

  private:
    template <typename Encode>
    static Exchange Make(ZelCti::Gvcp::Code code, const Encode& encode);
};

}  // namespace ZelGev
