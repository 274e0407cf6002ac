#include "producers/simulator/gige/poweredcamera.h"

#include <algorithm>
#include <utility>

#include "gentl/GenTL.h"
#include "producers/wire/bootstrapbits.h"

namespace ZelSim {

using ZelCti::ByteView;
using ZelCti::Endpoint;

PoweredCamera::PoweredCamera(const CameraConfig& config, PermanentMemory memory, NetworkBody& body,
                             uint32_t address, Links links)
    : body_(body),
      messages_(body.MessageSourcePort(), std::move(links.sendMessage), std::move(links.wake)),
      camera_(std::make_shared<SimulatedCamera>(
          config, TLTypeGEVName, MakeSurroundings(std::move(links.powerCycle)), std::move(memory))),
      subscription_(camera_->Hardware().Events().Subscribe(messages_)),
      streams_(MakeStreams(address)),
      registers_(camera_->Hardware(), camera_->Registers(), *this, privilege_),
      control_(camera_->Hardware(), camera_->Registers(), registers_, privilege_, *this,
               std::move(links.sendAnswer)) {}

PoweredCamera::~PoweredCamera() {
    camera_->Hardware().Unplug();
}

SimulatedCamera::Surroundings PoweredCamera::MakeSurroundings(std::function<void()> powerCycle) {
    SimulatedCamera::Surroundings surroundings;
    surroundings.addRegisters = [this](ZelCti::RegisterSpace& space) { registers_.AddTo(space); };
    surroundings.powerCycle = [cycle = std::move(powerCycle)](SimulatedCamera&) { cycle(); };
    return surroundings;
}

PoweredCamera::Streams PoweredCamera::MakeStreams(uint32_t address) const {
    Streams streams(NumStreams());
    for (auto& stream : streams) {
        stream = std::make_unique<StreamChannel>(camera_->Hardware(), address,
                                                 [this] { return body_.Settings(); });
    }
    return streams;
}

PoweredCamera::Time PoweredCamera::NextDeadline(Time now) const {
    return std::min(messages_.NextDeadline(), control_.NextDeadline(now).value_or(Time::max()));
}

void PoweredCamera::OnTimer(Time now) {
    control_.OnTimer(now);
    messages_.OnTimer(now);
}

void PoweredCamera::OnCommand(ByteView datagram, const Endpoint& from, bool broadcast, Time now) {
    control_.Handle(datagram, from, broadcast, now);
}

void PoweredCamera::MoveTo(uint32_t address) {
    Streams streams = MakeStreams(address);
    {
        const std::lock_guard lock(streamsMutex_);
        streams_.swap(streams);
    }
    registers_.OnNewStreams();
}

void PoweredCamera::FireTestEvent() {
    SendEvent(EventIdOf(EventKind::Test));
}

void PoweredCamera::AddTo(NetworkStatistics& statistics) const {
    const std::lock_guard lock(streamsMutex_);
    for (const auto& stream : streams_) {
        const StreamStatistics sent = stream->Statistics();
        statistics.blocks += sent.blocks;
        statistics.packets += sent.packets;
        statistics.lostBlocks += sent.lostBlocks;
        statistics.resent += sent.resent;
    }
}

uint32_t PoweredCamera::NumStreams() const {
    return camera_->Hardware().Config().streams;
}

uint32_t PoweredCamera::StreamCapability() const {
    using namespace ZelCti::Gev;
    const bool hasGenDc = camera_->Hardware().Config().payload == PayloadForm::GenDc;
    return (hasGenDc ? Scc::kGenDc : 0) | Scc::kPixelEndianness | Scc::kMultiPart |
           Scc::kLargeLeaderTrailer | Scc::kResendDestination | Scc::kAllIn |
           Scc::kUnconditionalStreaming | Scc::kExtendedChunkData;
}

uint16_t PoweredCamera::StreamSourcePort(uint32_t channel) const {
    return Stream(channel).SourcePort();
}

void PoweredCamera::SetStreamPort(uint32_t channel, uint16_t port) {
    Stream(channel).SetPort(port);
}

void PoweredCamera::SetStreamDestination(uint32_t channel, uint32_t address) {
    Stream(channel).SetDestination(address);
}

uint32_t PoweredCamera::SetStreamPacketSize(uint32_t channel, uint32_t scps) {
    return Stream(channel).SetPacketSize(scps);
}

void PoweredCamera::SetStreamDelay(uint32_t channel, uint32_t ticks) {
    Stream(channel).SetDelay(ticks);
}

void PoweredCamera::SetStreamConfiguration(uint32_t channel, uint32_t sccfg) {
    Stream(channel).SetConfiguration(sccfg);
}

void PoweredCamera::SetExtendedIds(bool on) {
    messages_.SetExtendedIds(on);
    for (const auto& stream : streams_)
        stream->SetExtendedIds(on);
}

void PoweredCamera::SetStatusCodes(bool on) {
    for (const auto& stream : streams_)
        stream->SetStatusCodes(on);
}

void PoweredCamera::FireTestPacket(uint32_t channel) {
    Stream(channel).FireTestPacket();
}

void PoweredCamera::Resend(const ZelCti::Gvcp::PacketResend& request, const Endpoint& from) {
    if (request.streamChannel < NumStreams()) Stream(request.streamChannel).Resend(request, from);
}

void PoweredCamera::SendEvent(uint16_t id) {
    Camera& camera = camera_->Hardware();
    for (uint32_t i = 0; i < kNumEventKinds; ++i) {
        const auto kind = static_cast<EventKind>(i);
        if (EventIdOf(kind) == id) camera.Events().Send(kind, camera.Ticks(camera.Nanoseconds()));
    }
}

void PoweredCamera::Act(uint32_t signal) {
    constexpr auto kFirst = static_cast<uint32_t>(TriggerSource::Action0);
    camera_->Hardware().Trigger(static_cast<TriggerSource>(kFirst + signal));
}

}  // namespace ZelSim
