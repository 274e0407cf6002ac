// A camera that answers commands as the input says: not, twice, late, with any status, with a
// PENDING_ACK, with numbers of other commands, with any bytes. Accesses end within the time that
// commands may take, those that succeed gave what an answer held, and the heartbeat goes on.
#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <optional>
#include <vector>

#include "fuzz/choices.h"
#include "producers/gigevision/control/gvcprequests.h"
#include "producers/gigevision/control/heartbeat.h"
#include "producers/gigevision/control/registerport.h"
#include "producers/server/base/error.h"
#include "producers/wire/gvcpcommands.h"

namespace {

using namespace ZelGev;
namespace Gvcp = ZelCti::Gvcp;
using ZelCti::ByteSpan;
using ZelCti::ByteView;
using ZelCti::Gev::Status;

constexpr size_t kLargestRead = 20'000;
constexpr int kMostAccesses = 8;

// Of one row of commands, with all that may come between: five minutes of PENDING_ACKs with a
// millisecond each.
constexpr int kMostSteps = 200'000;

void Require(bool condition) {
    if (!condition) std::abort();
}

// Byte i of the memory.
uint8_t ByteAt(uint32_t i) {
    return static_cast<uint8_t>(i * 37 + (i >> 8));
}

class Camera final : public CommandChannel {
  public:
    explicit Camera(Fuzz::Choices& choices)
        : choices_(choices),
          now_(Time() + std::chrono::hours(1)),
          requests_(static_cast<uint16_t>(choices.Number()), {Milliseconds(50), 3}),
          heartbeat_({Milliseconds(3000), true, std::nullopt}, now_) {}

    // As RegisterPort runs it; time passes as far as it has to.
    void Run(Exchange* exchanges, size_t count) override {
        const Time begin = now_;
        if (choices_.OneIn(8)) requests_.SetDeadline(now_ + Milliseconds(choices_.Byte()));
        for (size_t i = 0; i < count; ++i)
            requests_.Add(exchanges[i]);
        const auto isDone = [](const Exchange& exchange) { return exchange.IsDone(); };
        for (int steps = 0; !std::all_of(exchanges, exchanges + count, isDone); ++steps) {
            Require(steps < kMostSteps);
            Step();
        }
        requests_.SetDeadline(std::nullopt);
        // One command after the other, in the worst case.
        Require(now_ - begin <= std::chrono::minutes(6) * count);
        for (size_t i = 0; i < count; ++i)
            Require(exchanges[i].payloadSize <= exchanges[i].payload.size());
    }

    // Whether all answers so far were those of an honest camera.
    bool IsHonest() const { return isHonest_; }

  private:
    void Step() {
        Beat();
        while (const auto datagram = requests_.NextDatagram(now_)) {
            const std::vector<uint8_t> command(datagram->data, datagram->data + datagram->size);
            Answer({command.data(), command.size()});
        }
        const auto next = requests_.NextDeadline();
        if (next && *next > now_) now_ = *next;
        requests_.OnTimer(now_);
    }

    void Beat() {
        if (heartbeat_.IsDone()) heartbeat_.End(requests_, now_);
        if (choices_.OneIn(32)) heartbeat_.Doubt(now_);
        if (Exchange* const exchange = heartbeat_.Begin(now_)) requests_.Add(*exchange);
    }

    void Answer(ByteView datagram) {
        const auto command = *Gvcp::DecodeCommand(datagram);
        std::array<uint8_t, Gvcp::kMaxMessageSize> bytes;
        const ByteSpan out{bytes.data(), bytes.size()};
        const size_t size = Honest(command, out);
        switch (choices_.Below(12)) {
            case 0:
                return;  // lost
            case 1:
                Hear(bytes, size);
                break;
            case 2:
                isHonest_ = false;
                bytes[choices_.Below(size)] ^= static_cast<uint8_t>(1 + choices_.Below(255));
                break;
            case 3:
                isHonest_ = false;
                return Hear(bytes, choices_.Below(size));
            case 4:
                out.PutU16(6, static_cast<uint16_t>(command.requestId - choices_.Below(4)));
                isHonest_ = false;
                break;
            case 5:
                return Refuse(command, out);
            case 6:
                return Delay(command, out);
            default:
                break;
        }
        Hear(bytes, size);
    }

    size_t Honest(const Gvcp::Command& command, ByteSpan out) {
        const uint32_t address = command.payload.U32(0);
        std::array<uint8_t, Gvcp::kMaxPayloadSize> memory;
        if (command.code == Gvcp::Code::ReadRegCmd) {
            const auto addresses = *Gvcp::DecodeReadReg(command);
            std::array<uint32_t, 8> values;
            size_t count = 0;
            for (const uint32_t one : addresses)
                values.at(count++) = Word(one);
            return Gvcp::EncodeReadRegAck(out, Status::Success, command.requestId, values.data(),
                                          count);
        }
        if (command.code == Gvcp::Code::ReadMemCmd) {
            const size_t size = Gvcp::DecodeReadMem(command)->count;
            for (uint32_t i = 0; i < size; ++i)
                memory.at(i) = ByteAt(address + i);
            return Gvcp::EncodeReadMemAck(out, command.requestId, {address, {memory.data(), size}});
        }
        return Gvcp::EncodeAck(out, Status::Success, command.code, command.requestId);
    }

    static uint32_t Word(uint32_t address) {
        uint32_t word = 0;
        for (uint32_t i = 0; i < 4; ++i)
            word = word << 8 | ByteAt(address + i);
        return word;
    }

    void Refuse(const Gvcp::Command& command, ByteSpan out) {
        const auto status = static_cast<Status>(0x8000 + choices_.Below(0x20));
        Hear(out.data, Gvcp::EncodeAck(out, status, command.code, command.requestId));
    }

    // Waits for a bit, says that it does, and answers later or never.
    void Delay(const Gvcp::Command& command, ByteSpan out) {
        const auto milliseconds = static_cast<uint16_t>(choices_.Number());
        Hear(out.data, Gvcp::EncodePendingAck(out, command.requestId, milliseconds));
        now_ += Milliseconds(choices_.Byte());
        if (choices_.OneIn(2)) return;
        Hear(out.data, Honest(command, out));
    }

    void Hear(const std::array<uint8_t, Gvcp::kMaxMessageSize>& bytes, size_t size) {
        Hear(bytes.data(), size);
    }
    // In memory of its own, so that a sanitizer sees what is read beyond it.
    void Hear(const uint8_t* bytes, size_t size) {
        const std::vector<uint8_t> datagram(bytes, bytes + size);
        requests_.OnDatagram({datagram.data(), datagram.size()}, now_);
    }

    Fuzz::Choices& choices_;
    Time now_;
    GvcpRequests requests_;
    Heartbeat heartbeat_;
    bool isHonest_ = true;
};

void Access(Fuzz::Choices& choices, Camera& camera, RegisterPort& port) {
    const auto address = static_cast<uint32_t>(choices.Number());
    const size_t size = choices.Below(kLargestRead);
    std::vector<uint8_t> bytes(size);
    if (choices.OneIn(4)) return port.Write(address, bytes.data(), size);
    port.Read(address, bytes.data(), size);
    if (!camera.IsHonest()) return;
    for (size_t i = 0; i < size; ++i)
        Require(bytes[i] == ByteAt(address + static_cast<uint32_t>(i)));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    Fuzz::Choices choices(data, size);
    Camera camera(choices);
    RegisterPort port(camera);
    if (choices.OneIn(4)) port.SetCapabilities(static_cast<uint32_t>(choices.Number()));
    const size_t numAccesses = 1 + choices.Below(kMostAccesses);
    for (size_t i = 0; i < numAccesses; ++i) {
        try {
            Access(choices, camera, port);
        } catch (const ZelCti::Error&) {
            // The camera refuses, or says nothing.
        }
    }
    return 0;
}
