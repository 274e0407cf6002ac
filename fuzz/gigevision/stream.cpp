// What a camera sends on a stream channel: packets of blocks that are partly right, answers to
// requests, garbage, in any order and at any time. Nothing is written outside a buffer, each buffer
// comes back once, no frame waits for ever, and the work for a packet is bounded.
#include <array>
#include <cstddef>
#include <cstdint>

#include "fuzz/choices.h"
#include "tests/gigevision/stream/virtualstream.h"

namespace {

using namespace GevTest;
using Fuzz::Choices;
using ZelCti::Gvcp::PacketResend;

constexpr size_t kBufferSize = 6000;

// What a camera remembers: the packets of a few kinds of blocks, whatever their ids.
const std::vector<std::vector<Bytes>>& Kinds() {
    static const auto kKinds = [] {
        std::vector<std::vector<Bytes>> made;
        ZelCti::FrameInfo image = ImageFrame(64, 48, 7);
        ZelCti::FrameInfo chunks = image;
        chunks.chunkOrder = ZelCti::ByteOrder::Big;
        chunks.sizeFilled += 8 + 16;
        ZelSim::BlockForm form;
        form.packetSize = 600;
        const auto add = [&](const ZelCti::FrameInfo& frame) {
            made.push_back(PacketsOf(frame, Content(frame.sizeFilled, 1), 1, form));
        };
        for (const bool extended : {false, true}) {
            form.extendedIds = extended;
            add(image);
            add(chunks);
            add(ImageFrame(64, 100, 7));  // too large
        }
        form.multiPart = true;
        add(chunks);
        form.partRelativeOffsets = true;
        add(chunks);
        form.multiPart = false;
        form.allIn = true;
        add(ImageFrame(8, 8, 7));
        form.paddedLastPacket = true;
        add(chunks);
        ZelCti::FrameInfo container = image;
        container.payloadType = GenTL::PAYLOAD_TYPE_GENDC;
        container.parts.resize(1);
        container.parts[0].offset = 416;  // behind the descriptor
        form.genDc = true;
        add(container);
        return made;
    }();
    return kKinds;
}

// Puts other values into the header, and maybe into what follows.
Bytes Changed(Bytes packet, Choices& choices, uint64_t blockId) {
    const bool extended = packet.size() > 4 && (packet[4] & 0x80) != 0;
    const ZelCti::ByteSpan span{packet.data(), packet.size()};
    if (extended)
        span.PutU64(8, blockId);
    else
        span.PutU16(2, blockId);
    if (choices.OneIn(8)) {
        constexpr std::array<uint16_t, 9> kStatuses{0,      0x0100, 0x800C, 0x8010, 0x8011,
                                                    0x8012, 0x8014, 0x8015, 0x0001};
        span.PutU16(0, kStatuses[choices.Below(kStatuses.size())]);
    }
    if (choices.OneIn(8)) {
        const auto number = static_cast<uint64_t>(choices.Number());
        if (extended)
            span.PutU32(16, number);
        else
            span.PutU24(5, number);
    }
    if (choices.OneIn(16)) packet[4] = static_cast<uint8_t>(packet[4] ^ choices.Byte());
    for (size_t i = choices.OneIn(4) ? choices.Below(6) : 0; i > 0; --i)
        packet[choices.Below(packet.size())] = choices.Byte();
    if (choices.OneIn(16)) packet.resize(choices.Below(packet.size() + 20));
    return packet;
}

class Session {
  public:
    explicit Session(Choices& choices)
        : choices_(choices),
          buffers_(1 + choices.Below(5), kBufferSize),
          receiver_(buffers_, Settings(choices), [this](const auto& request) { Note(request); }) {
        receiver_.SetPacketSize(choices.OneIn(4) ? choices.Below(2000) : 600);
        receiver_.SetTickFrequency(choices.OneIn(2) ? 0 : 1000000000);
        receiver_.Start(choices.OneIn(4) ? choices.Below(10) : UINT64_MAX);
    }

    void Run() {
        for (int i = 0; i < 60; ++i)
            Step();
        // Only a frame of which nothing but the leader came may wait for ever.
        int numTimers = 0;
        while (receiver_.NextDeadline() != Time::max()) {
            now_ = std::max(now_, receiver_.NextDeadline());
            receiver_.OnTimer(now_);
            Require(++numTimers < 20000, "it never rests");
        }
        Require(buffers_.NumTaken() <= 1, "a frame waits for ever");
        receiver_.Stop(choices_.OneIn(2));
        Require(buffers_.AreAllBack(), "a buffer is lost");
    }

  private:
    static ZelGev::ReceptionSettings Settings(Choices& choices) {
        ZelGev::ReceptionSettings settings;
        settings.deliverIncomplete = !choices.OneIn(3);
        settings.resend = !choices.OneIn(4);
        if (choices.OneIn(4)) settings.maxGaps = choices.Below(4);
        if (choices.OneIn(4)) settings.maxRequests = static_cast<uint32_t>(choices.Below(4));
        if (choices.OneIn(4)) settings.orderDelay = {};
        if (choices.OneIn(8)) settings.repeatDelay = {};
        if (choices.OneIn(8)) settings.retention = {};
        if (choices.OneIn(8)) settings.silence = {};
        if (choices.OneIn(4)) settings.maxAskedPerSecond = choices.Byte();
        return settings;
    }

    void Note(const PacketResend& request) {
        Require(request.firstPacket <= request.lastPacket, "a request asks for nothing");
        Require(request.lastPacket - request.firstPacket < 64, "a request asks for too much");
        request_ = request;
    }

    void Step() {
        switch (choices_.Below(16)) {
            case 0:
                receiver_.Stop(choices_.OneIn(2));
                Require(buffers_.AreAllBack(), "a buffer is lost");
                receiver_.Start(UINT64_MAX);
                break;
            case 1:
                buffers_.keepsFrames = choices_.OneIn(2);
                buffers_.QueueKept();
                break;
            case 2:
            case 3:
                Wait();
                break;
            case 4:
                blockId_ += static_cast<uint64_t>(choices_.Number());
                break;
            case 5:
                kind_ = choices_.Below(Kinds().size());
                ++blockId_;
                next_ = 0;
                break;
            case 6:
            case 7:
                Answer();
                break;
            default:
                SendSome();
        }
    }

    void Wait() {
        now_ += microseconds(1U << choices_.Below(20));
        int numTimers = 0;
        while (receiver_.NextDeadline() <= now_) {
            receiver_.OnTimer(now_);
            Require(++numTimers < 100, "it never rests");
        }
    }

    Bytes Packet(size_t index, uint64_t blockId) {
        const auto& packets = Kinds()[kind_];
        return Changed(packets[index % packets.size()], choices_, blockId);
    }

    void SendSome() {
        std::vector<Bytes> packets;
        for (size_t count = 1 + choices_.Below(8); count > 0; --count) {
            if (choices_.OneIn(8)) ++next_;
            packets.push_back(Packet(next_++, choices_.OneIn(8) ? blockId_ - 1 : blockId_));
            if (next_ >= Kinds()[kind_].size()) {
                next_ = 0;
                ++blockId_;
            }
        }
        reader_.Read(receiver_, std::move(packets), now_);
    }

    void Answer() {
        if (!request_) return;
        std::vector<Bytes> packets;
        for (uint64_t id = request_->firstPacket; id <= request_->lastPacket; ++id) {
            Bytes packet = Packet(static_cast<size_t>(id), request_->blockId);
            if (!packet.empty()) packet[0] = choices_.OneIn(4) ? 0x80 : 0x01;
            if (packet.size() > 1 && packet[0] == 0x80) packet[1] = 0x0C;
            packets.push_back(std::move(packet));
        }
        request_.reset();
        reader_.Read(receiver_, std::move(packets), now_);
    }

    Choices& choices_;
    Buffers buffers_;
    ZelGev::BlockReceiver receiver_;
    Reader reader_;
    Time now_{milliseconds(1)};
    uint64_t blockId_ = 1;
    size_t kind_ = 0;
    size_t next_ = 0;
    std::optional<PacketResend> request_;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    Choices choices(data, size);
    Session(choices).Run();
    return 0;
}
