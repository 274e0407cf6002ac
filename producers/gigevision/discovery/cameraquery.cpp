#include "producers/gigevision/discovery/cameraquery.h"

#include <algorithm>
#include <array>
#include <utility>

#include "producers/wire/bootstrap.h"
#include "producers/wire/gvcpcommands.h"

namespace ZelGev {

namespace Gev = ZelCti::Gev;
namespace Gvcp = ZelCti::Gvcp;

CameraQuery::CameraQuery(const std::vector<uint32_t>& cameras, Time now, NextRequest nextRequest,
                         Send send)
    : nextRequest_(std::move(nextRequest)), send_(std::move(send)) {
    for (const uint32_t camera : cameras) {
        Progress& progress = cameras_[camera];
        progress.registers = {Gev::kCcp.address, Gev::kTimestampTickFrequencyHigh.address,
                              Gev::kTimestampTickFrequencyLow.address};
        progress.end = now + kLongest;
        AskNext(camera, progress, now);
    }
}

void CameraQuery::AskNext(uint32_t camera, Progress& progress, Time now) {
    progress.requestId = nextRequest_();
    Ask(camera, progress, now);
}

void CameraQuery::Ask(uint32_t camera, Progress& progress, Time now) {
    std::array<uint8_t, Gvcp::kMaxMessageSize> memory;
    const size_t size = Gvcp::EncodeReadRegCmd({memory.data(), memory.size()}, {progress.requestId},
                                               &progress.registers.front(), 1);
    progress.nextAsk = now + kInterval;
    send_(camera, {memory.data(), size});
}

void CameraQuery::OnTimer(Time now) {
    for (auto& [camera, progress] : cameras_) {
        if (progress.registers.empty()) continue;
        if (now >= progress.end) {
            progress.registers.clear();
        } else if (now >= progress.nextAsk) {
            Ask(camera, progress, now);
        }
    }
}

void CameraQuery::OnDatagram(const ZelCti::Endpoint& from, ZelCti::ByteView datagram, Time now) {
    const auto found = cameras_.find(from.address);
    if (found == cameras_.end() || from.port != Gvcp::kPort) return;
    Progress& progress = found->second;
    const auto ack = Gvcp::DecodeAcknowledge(datagram);
    if (!ack || ack->code != Gvcp::Code::ReadRegAck || ack->ackId != progress.requestId) return;
    if (progress.registers.empty()) return;
    progress.reading.isAnswered = true;
    Take(progress, *ack);
    progress.registers.pop_front();
    if (!progress.registers.empty()) AskNext(found->first, progress, now);
}

void CameraQuery::Take(Progress& progress, const Gvcp::Acknowledge& ack) {
    CameraReading& reading = progress.reading;
    const uint32_t address = progress.registers.front();
    const auto values = Gvcp::DecodeReadRegAck(ack);
    if (address == Gev::kCcp.address) reading.isDenied = ack.status == Gev::Status::AccessDenied;
    // Cameras lack registers, which is no reason not to read the next one.
    if (ack.status != Gev::Status::Success || !values || values->size() == 0) return;
    const uint32_t value = (*values)[0];
    if (address == Gev::kCcp.address) {
        reading.ccp = value;
        if (value == 0) return;
        progress.registers.push_back(Gev::kPrimaryApplicationIp.address);
        progress.registers.push_back(Gev::kPrimaryApplicationPort.address);
    } else if (address == Gev::kPrimaryApplicationIp.address) {
        reading.holder.address = value;
    } else if (address == Gev::kPrimaryApplicationPort.address) {
        reading.holder.port = static_cast<uint16_t>(value);
    } else if (address == Gev::kTimestampTickFrequencyHigh.address) {
        reading.ticksPerSecond = uint64_t{value} << 32;
    } else {
        reading.ticksPerSecond |= value;
    }
}

bool CameraQuery::IsDone() const {
    return std::all_of(cameras_.begin(), cameras_.end(),
                       [](const auto& camera) { return camera.second.registers.empty(); });
}

Time CameraQuery::NextDeadline() const {
    Time next = Time::max();
    for (const auto& [camera, progress] : cameras_) {
        if (progress.registers.empty()) continue;
        next = std::min({next, progress.nextAsk, progress.end});
    }
    return next;
}

std::optional<CameraReading> CameraQuery::ReadingOf(uint32_t camera) const {
    const auto found = cameras_.find(camera);
    if (found == cameras_.end()) return std::nullopt;
    const Progress& progress = found->second;
    if (!progress.reading.isAnswered && !progress.registers.empty()) return std::nullopt;
    return progress.reading;
}

}  // namespace ZelGev
