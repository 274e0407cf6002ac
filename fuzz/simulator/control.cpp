// Datagrams at the control port of a served camera, from three applications, with time passing
// between them. Whatever comes, the answers are well-formed acknowledges, few of them, and the
// camera answers a discovery in the end.
#include <cstddef>
#include <cstdint>
#include <cstdlib>

#include "fuzz/message.h"
#include "producers/wire/gvcp.h"
#include "tests/simulator/gige/controlledcamera.h"

namespace {

using namespace ZelCti;
using GigeTest::Bytes;
using GigeTest::ControlledCamera;

constexpr size_t kMaxSteps = 200;
constexpr size_t kMaxAnswers = 100;  // of one datagram, with all that had waited before

constexpr uint16_t kCodes[] = {0x0002, 0x0004, 0x0040, 0x0080, 0x0082, 0x0084,
                               0x0086, 0x00C0, 0x00C1, 0x0100, 0x0101, 0x0200};

void Require(bool condition) {
    if (!condition) std::abort();
}

Bytes Take(Fuzz::Message& input, size_t count) {
    const Fuzz::Message taken = input.Take(count);
    return {taken.data, taken.data + taken.size};
}

// A datagram with a header that fits, so that the fuzzer needs not find it.
Bytes Command(Fuzz::Message& input, uint16_t id) {
    const auto code = static_cast<Gvcp::Code>(kCodes[input.Number(1) % std::size(kCodes)]);
    const auto flags = static_cast<uint8_t>(input.Number(1));
    const Bytes payload = Take(input, input.Number(1) * 4);
    Bytes datagram(Gvcp::kHeaderSize);
    Gvcp::PutCommandHeader({datagram.data(), datagram.size()}, code, {id, flags}, payload.size());
    datagram.insert(datagram.end(), payload.begin(), payload.end());
    return datagram;
}

void CheckAnswers(ControlledCamera& camera) {
    Require(camera.sent.size() <= kMaxAnswers);
    for (const ControlledCamera::Sent& one : camera.sent) {
        Require(one.bytes.size() <= Gvcp::kMaxMessageSize);
        Require(static_cast<bool>(Gvcp::DecodeAcknowledge(WireTest::ViewOf(one.bytes))));
    }
    camera.sent.clear();
    camera.hardware.notes.clear();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    ControlledCamera camera;
    Fuzz::Message input{data, size};
    camera.hardware.settings.pendingAckMs = input.Number(1) % 8 == 1 ? 50 : 0;
    for (size_t step = 0; step < kMaxSteps && input.size != 0; ++step) {
        const auto choice = static_cast<uint32_t>(input.Number(1));
        const ZelCti::Endpoint from{0x7F000001, static_cast<uint16_t>(50000 + choice % 3)};
        const bool broadcast = (choice & 0x04U) != 0;
        const bool isRaw = (choice & 0x08U) != 0;
        // The same number twice now and then.
        const auto id = static_cast<uint16_t>(1 + step / 2);
        const Bytes datagram = isRaw ? Take(input, input.Number(2) % 1024) : Command(input, id);
        camera.server->Handle(WireTest::ViewOf(datagram), from, broadcast, camera.now);
        CheckAnswers(camera);
        const uint32_t exponent = choice >> 4;
        if (exponent != 0) camera.Pass(int64_t{1} << exponent);
        CheckAnswers(camera);
        const auto next = camera.server->NextDeadline(camera.now);
        if (next) Require(*next > camera.now - std::chrono::seconds(1));
    }
    camera.hardware.settings = {};
    Require(!camera.Ask("4201000200000001").empty());
    return 0;
}
