#include "producers/simulator/gige/control/channelregisters.h"

#include <algorithm>

#include "producers/simulator/gige/control/bigendianregister.h"
#include "producers/wire/bootstrap.h"
#include "producers/wire/gvsppackets.h"

namespace ZelSim {

namespace Gev = ZelCti::Gev;
namespace Gvsp = ZelCti::Gvsp;
namespace Mcp = ZelCti::Gev::Mcp;
namespace Scc = ZelCti::Gev::Scc;
namespace Scp = ZelCti::Gev::Scp;
namespace Scps = ZelCti::Gev::Scps;
using ZelCti::Error;
using ZelCti::RegisterSpace;

namespace {

// What can be switched on of what a channel is able to do.
constexpr uint32_t kSwitches = Scc::kGenDc | Scc::kMultiPart | Scc::kLargeLeaderTrailer |
                               Scc::kResendDestination | Scc::kAllIn |
                               Scc::kUnconditionalStreaming | Scc::kExtendedChunkData;

// A register that may change while a stream runs, and is only kept.
NumberValue Plain(uint32_t& member, std::function<void(uint32_t)> apply) {
    return {[&member] { return member; },
            [&member, apply = std::move(apply)](uint32_t value) {
                member = value;
                apply(value);
            },
            {}};
}

}  // namespace

void ChannelRegisters::AddTo(RegisterSpace& space) {
    message_ = {};
    streams_.assign(hardware_.NumStreams(), {});
    AddMessageChannel(space);
    for (uint32_t channel = 0; channel < streams_.size(); ++channel) {
        AddStreamPort(space, channel);
        AddStreamPackets(space, channel);
        AddStreamConfiguration(space, channel);
        SetPacketSize(channel, hardware_.Settings()->ownPacketSize);
        streams_[channel].sccfg = PowerOnConfiguration();
        hardware_.SetStreamConfiguration(channel, streams_[channel].sccfg);
    }
}

uint32_t ChannelRegisters::PowerOnConfiguration() const {
    if (camera_.Config().payload == PayloadForm::Image) return 0;
    return Can().stream & (Scc::kGenDc | Scc::kMultiPart);
}

void ChannelRegisters::AddMessageChannel(RegisterSpace& space) {
    AddNumber(space, Gev::kMcp,
              {[this] { return message_.mcp; },
               [this](uint32_t mcp) {
                   message_.mcp = mcp;
                   hardware_.SetMessagePort(static_cast<uint16_t>(mcp & Mcp::kPort));
               },
               [](uint32_t mcp) {
                   if ((mcp & ~Mcp::kPort) != 0) RefuseBits();  // there is one interface
               }});
    AddNumber(space, Gev::kMcda, Plain(message_.mcda, [this](uint32_t address) {
                  hardware_.SetMessageDestination(address);
              }));
    AddNumber(space, Gev::kMctt, Plain(message_.mctt, [this](uint32_t milliseconds) {
                  hardware_.SetMessageTimeout(milliseconds);
              }));
    AddNumber(space, Gev::kMcrc,
              Plain(message_.mcrc, [this](uint32_t count) { hardware_.SetMessageRetries(count); }));
    AddNumber(space, Gev::kMcsp, {[this] { return hardware_.MessageSourcePort(); }, {}, {}});
}

void ChannelRegisters::AddStreamPort(RegisterSpace& space, uint32_t channel) {
    Stream& stream = streams_[channel];
    AddNumber(space, Gev::kScp,
              {[&stream] { return stream.scp; },
               [this, &stream, channel](uint32_t scp) {
                   stream.scp = scp & Scp::kPort;
                   hardware_.SetStreamPort(channel, static_cast<uint16_t>(stream.scp));
               },
               [this, &stream](uint32_t scp) { CheckStreamPort(stream, scp); }},
              channel);
    AddNumber(space, Gev::kScda,
              {[&stream] { return stream.scda; },
               [this, &stream, channel](uint32_t scda) {
                   stream.scda = scda;
                   hardware_.SetStreamDestination(channel, scda);
               },
               [this](uint32_t /*scda*/) { camera_.Control().CheckUnlocked(); }},
              channel);
    AddNumber(space, Gev::kScsp,
              {[this, channel]() -> uint32_t {
                   return hardware_.Settings()->scspZero ? 0 : hardware_.StreamSourcePort(channel);
               },
               {},
               {}},
              channel);
}

// The direction cannot be written; a channel can be closed at any time.
void ChannelRegisters::CheckStreamPort(const Stream& stream, uint32_t scp) const {
    if ((scp & ~(Scp::kPort | Scp::kReceiver)) != 0) RefuseBits();
    const uint32_t port = scp & Scp::kPort;
    if (port != 0 && port != stream.scp) camera_.Control().CheckUnlocked();
}

void ChannelRegisters::AddStreamPackets(RegisterSpace& space, uint32_t channel) {
    Stream& stream = streams_[channel];
    AddNumber(space, Gev::kScps,
              {[&stream] { return stream.scps; },
               [this, channel](uint32_t scps) { SetPacketSize(channel, scps); },
               [this, &stream](uint32_t scps) { CheckPacketSize(stream, scps); }},
              channel);
    AddNumber(space, Gev::kScpd,
              Plain(stream.scpd,
                    [this, channel](uint32_t ticks) {
                        hardware_.SetStreamDelay(channel, ticks);
                        FollowPace();
                    }),
              channel);
}

// The sensor takes no more frames than the slowest channel can send, so that none is lost.
void ChannelRegisters::FollowPace() const {
    constexpr uint64_t kNsPerSecond = 1000000000;
    const uint64_t frequency = std::max<uint64_t>(camera_.Config().timestampFrequency, 1);
    LinkPace slowest;
    for (const Stream& stream : streams_) {
        const auto delay = std::chrono::nanoseconds(
            std::min(stream.scpd * kNsPerSecond / frequency, kNsPerSecond));
        const uint64_t bytes =
            Gvsp::DataPerPacket(stream.scps & Scps::kPacketSize, true, Gvsp::PacketFormat::Payload);
        if (delay * slowest.packetBytes <= slowest.packetDelay * bytes) continue;
        slowest.packetDelay = delay;
        slowest.packetBytes = bytes;
    }
    camera_.Control().Change([&](FrameSettings& settings) {
        slowest.speed = settings.link.speed;
        settings.link = slowest;
    });
}

void ChannelRegisters::CheckPacketSize(const Stream& stream, uint32_t scps) const {
    constexpr uint32_t kKnown =
        Scps::kFireTestPacket | Scps::kDoNotFragment | Scps::kBigEndianPixels | Scps::kPacketSize;
    const uint32_t size = scps & Scps::kPacketSize;
    if ((scps & ~kKnown) != 0 || size == 0) RefuseBits();
    if ((scps & Scps::kBigEndianPixels) != 0 && (Can().stream & Scc::kPixelEndianness) == 0)
        RefuseBits();
    const auto settings = hardware_.Settings();
    if (settings->refuseUnalignedPacketSize && settings->packetSizeRounding != 0 &&
        size % settings->packetSizeRounding != 0) {
        throw Error(GenTL::GC_ERR_INVALID_PARAMETER, "the packet size is not aligned");
    }
    if (size != (stream.scps & Scps::kPacketSize)) camera_.Control().CheckUnlocked();
}

void ChannelRegisters::SetPacketSize(uint32_t channel, uint32_t scps) {
    Stream& stream = streams_[channel];
    stream.scps = hardware_.SetStreamPacketSize(channel, scps & ~Scps::kFireTestPacket);
    FollowPace();
    if ((scps & Scps::kFireTestPacket) != 0 && stream.scp != 0 && stream.scda != 0)
        stream.firesTestPacket = true;
}

void ChannelRegisters::AddStreamConfiguration(RegisterSpace& space, uint32_t channel) {
    Stream& stream = streams_[channel];
    AddNumber(space, Gev::kScc, {[this] { return Can().stream; }, {}, {}}, channel);
    AddNumber(space, Gev::kSccfg,
              {[&stream] { return stream.sccfg; },
               [this, &stream, channel](uint32_t sccfg) {
                   stream.sccfg = sccfg;
                   hardware_.SetStreamConfiguration(channel, sccfg);
               },
               [this](uint32_t sccfg) {
                   if ((sccfg & ~(Can().stream & kSwitches)) != 0) RefuseBits();
                   camera_.Control().CheckUnlocked();
               }},
              channel);
}

void ChannelRegisters::Close() {
    message_.mcp = 0;
    hardware_.SetMessagePort(0);
    for (uint32_t channel = 0; channel < streams_.size(); ++channel)
        CloseStream(channel);
}

void ChannelRegisters::CloseStream(uint32_t channel) {
    Stream& stream = streams_[channel];
    if (stream.scp == 0 || (stream.sccfg & Scc::kUnconditionalStreaming) != 0) return;
    stream.scp = 0;
    hardware_.SetStreamPort(channel, 0);
}

void ChannelRegisters::RenewStreams() {
    for (uint32_t channel = 0; channel < streams_.size(); ++channel) {
        Stream& stream = streams_[channel];
        stream.scp = 0;
        SetPacketSize(channel, stream.scps);
        hardware_.SetStreamDestination(channel, stream.scda);
        hardware_.SetStreamDelay(channel, stream.scpd);
        hardware_.SetStreamConfiguration(channel, stream.sccfg);
    }
}

bool ChannelRegisters::IsUnconditional() const {
    return std::any_of(streams_.begin(), streams_.end(), [](const Stream& stream) {
        return stream.scp != 0 && (stream.sccfg & Scc::kUnconditionalStreaming) != 0;
    });
}

std::vector<uint32_t> ChannelRegisters::TakeTestPackets() {
    std::vector<uint32_t> channels;
    for (uint32_t channel = 0; channel < streams_.size(); ++channel) {
        if (!streams_[channel].firesTestPacket) continue;
        streams_[channel].firesTestPacket = false;
        channels.push_back(channel);
    }
    return channels;
}

}  // namespace ZelSim
