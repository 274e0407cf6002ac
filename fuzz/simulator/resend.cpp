// Datagrams at a camera that streams: those that ask for packets again. Whatever they ask for, the
// sender is done after a bounded number of steps, and with it the next frame goes out.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>

#include "fuzz/message.h"
#include "producers/simulator/gige/stream/streamsender.h"

namespace {

using namespace ZelSim;

constexpr uint32_t kLoopback = 0x7F000001;
constexpr size_t kFrameSize = 3000;

void Require(bool condition) {
    if (!condition) std::abort();
}

// A sender whose packets go nowhere, and a ring with some blocks.
class Sender {
  public:
    Sender() {
        sender_.Open(ring_);
        settings_.packetSize = 300;
    }

    void SendFrame(uint64_t frameId) {
        ZelCti::FrameBuffer* const buffer = ring_.Take(true);
        if (buffer == nullptr) return;
        ZelCti::FrameInfo frame;
        frame.id = frameId;
        frame.pixelFormat = 0x01080001;  // Mono8
        frame.width = kFrameSize;
        frame.height = frame.deliveredHeight = 1;
        frame.sizeFilled = kFrameSize;
        ring_.Deliver(*buffer, frame);
    }

    void Ask(const ZelCti::Gvcp::PacketResend& packets, bool extendedIds, bool statusCodes) {
        settings_.extendedIds = extendedIds;
        settings_.statusCodes = statusCodes;
        sender_.Resend({packets, {}});
    }

    void Finish() {
        constexpr int kMostSteps = 20;
        const auto now = Pacer::Clock::now();
        int steps = 0;
        while (sender_.Step(settings_, now) != Pacer::Clock::time_point::max())
            Require(++steps < kMostSteps);
        Require(!sender_.IsResending());
    }

  private:
    const std::shared_ptr<const NetworkSettings> network_ =
        std::make_shared<const NetworkSettings>();
    Camera camera_{CameraConfig(), "GEV", PermanentMemory(CameraConfig())};
    BlockRing ring_{2, [] { return kFrameSize; }, [] {}};
    StreamSettings settings_;
    StreamSender sender_{camera_, kLoopback, [this] { return network_; }};
};

}  // namespace

// Two bytes of options and the datagram, as often as there are such.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    static Sender sender;
    static uint64_t frameId = 0;
    Fuzz::Message input{data, size};
    while (input.size != 0) {
        const uint64_t options = input.Number(1);
        const Fuzz::Message datagram = input.Take(static_cast<size_t>(input.Number(1)));
        if ((options & 1) != 0) sender.SendFrame(++frameId);
        const auto command = ZelCti::Gvcp::DecodeCommand({datagram.data, datagram.size});
        if (command) {
            const auto packets = ZelCti::Gvcp::DecodePacketResend(*command);
            if (packets) sender.Ask(*packets, (options & 2) != 0, (options & 4) != 0);
        }
        sender.Finish();
    }
    return 0;
}
