#include "producers/simulator/gige/stream/streamchannel.h"

#include <algorithm>
#include <limits>
#include <utility>

#include "producers/wire/bootstrapbits.h"

namespace ZelSim {

using ZelCti::Endpoint;

namespace Scps = ZelCti::Gev::Scps;

StreamChannel::StreamChannel(Camera& camera, uint32_t address, NetworkSource network)
    : camera_(camera), network_(std::move(network)), sender_(camera, address, network_) {
    const auto settings = network_();
    settings_.packetSize =
        std::clamp<size_t>(settings->ownPacketSize, kMinPacketSize, kMaxPacketSize);
    settings_.extendedIds = settings->extendedIdsOn;
}

StreamChannel::~StreamChannel() {
    SetPort(0);
}

template <typename Change>
void StreamChannel::ChangeSettings(const Change& change) {
    const std::lock_guard lock(mutex_);
    change(settings_);
}

void StreamChannel::SetDestination(uint32_t address) {
    ChangeSettings([&](StreamSettings& settings) { settings.destination.address = address; });
}

void StreamChannel::SetDelay(uint32_t ticks) {
    ChangeSettings([&](StreamSettings& settings) { settings.delay = ticks; });
}

void StreamChannel::SetConfiguration(uint32_t configuration) {
    ChangeSettings([&](StreamSettings& settings) { settings.configuration = configuration; });
}

void StreamChannel::SetExtendedIds(bool extendedIds) {
    ChangeSettings([&](StreamSettings& settings) { settings.extendedIds = extendedIds; });
}

void StreamChannel::SetStatusCodes(bool statusCodes) {
    ChangeSettings([&](StreamSettings& settings) { settings.statusCodes = statusCodes; });
}

uint32_t StreamChannel::SetPacketSize(uint32_t scps) {
    const auto network = network_();
    const size_t asked = scps & Scps::kPacketSize;
    const size_t step = std::max<uint32_t>(network->packetSizeRounding, 1);
    const bool isRefused = network->refuseUnalignedPacketSize && asked % step != 0;
    const std::lock_guard lock(mutex_);
    if (!isRefused) {
        settings_.packetSize =
            std::clamp(asked / step * step, kMinPacketSize, kMaxPacketSize / step * step);
        settings_.dontFragment = (scps & Scps::kDoNotFragment) != 0;
        settings_.bigEndianPixels = (scps & Scps::kBigEndianPixels) != 0;
    }
    return static_cast<uint32_t>(settings_.packetSize) |
           (settings_.dontFragment ? Scps::kDoNotFragment : 0) |
           (settings_.bigEndianPixels ? Scps::kBigEndianPixels : 0);
}

void StreamChannel::SetPort(uint16_t port) {
    const std::lock_guard changing(portMutex_);
    if (port == 0) {
        Close();
        return;
    }
    ChangeSettings([&](StreamSettings& settings) { settings.destination.port = port; });
    if (ring_ == nullptr) Open();
}

bool StreamChannel::IsOpen() const {
    const std::lock_guard lock(mutex_);
    return isOpen_;
}

void StreamChannel::Open() {
    ring_ = std::make_unique<BlockRing>(
        network_()->resendMemoryBlocks,
        [this] { return static_cast<size_t>(camera_.Settings()->PayloadSize()); },
        [this] { Wake(); });
    sender_.Open(*ring_);
    receiver_ = std::make_unique<Receiver>(*ring_, [this] { OnAcquisitionBegin(); });
    ChangeSettings([this](StreamSettings&) {
        isOpen_ = true;
        numRequests_ = 0;
        testPackets_.clear();
        isBeginning_ = false;
    });
    try {
        thread_ = std::thread(&StreamChannel::Run, this);
        camera_.GetAcquisition().Attach(*receiver_, std::numeric_limits<uint64_t>::max());
    } catch (...) {
        Close();
        throw;
    }
}

// Frames end first: the thread has nothing to send when it is gone, and the ring no user.
void StreamChannel::Close() {
    if (ring_ == nullptr) return;
    camera_.GetAcquisition().Detach(*receiver_, true);
    {
        const std::lock_guard lock(mutex_);
        isOpen_ = false;
        ++numWakes_;
        wake_.WakeAll();
    }
    if (thread_.joinable()) thread_.join();
    receiver_.reset();
    ring_.reset();
}

void StreamChannel::Wake() {
    const std::lock_guard lock(mutex_);
    ++numWakes_;
    wake_.WakeAll();
}

void StreamChannel::OnAcquisitionBegin() {
    const std::lock_guard lock(mutex_);
    isBeginning_ = true;
    ++numWakes_;
    wake_.WakeAll();
}

void StreamChannel::FireTestPacket() {
    const std::lock_guard lock(mutex_);
    if (!isOpen_ || settings_.destination.address == 0) return;
    if (testPackets_.size() == kMaxTestPackets) return;
    testPackets_.push_back({settings_.destination, settings_.packetSize, settings_.dontFragment});
    ++numWakes_;
    wake_.WakeAll();
}

void StreamChannel::Resend(const ZelCti::Gvcp::PacketResend& packets, const Endpoint& from) {
    const std::lock_guard lock(mutex_);
    if (!isOpen_ || numRequests_ == kMaxRequests) return;
    requests_[(firstRequest_ + numRequests_++) % kMaxRequests] = {packets, from};
    ++numWakes_;
    wake_.WakeAll();
}

StreamStatistics StreamChannel::Statistics() const {
    const std::lock_guard lock(mutex_);
    return statistics_;
}

void StreamChannel::Run() {
    std::unique_lock lock(mutex_);
    while (isOpen_) {
        const uint64_t before = numWakes_;
        const auto now = Pacer::Clock::now();
        for (const TestPacket& packet : testPackets_)
            sender_.FireTestPacket(packet, now);
        testPackets_.clear();
        if (numRequests_ != 0 && !sender_.IsResending()) {
            sender_.Resend(requests_[firstRequest_]);
            firstRequest_ = (firstRequest_ + 1) % kMaxRequests;
            --numRequests_;
        }
        if (std::exchange(isBeginning_, false)) sender_.BeginAcquisition();
        const StreamSettings settings = settings_;
        lock.unlock();
        const auto next = sender_.Step(settings, now);
        lock.lock();
        statistics_ = sender_.Statistics();
        const bool hasRequest = numRequests_ != 0 && !sender_.IsResending();
        if (hasRequest || next <= now) continue;
        wake_.SleepUntil(lock, next, [&] { return numWakes_ != before; });
    }
}

}  // namespace ZelSim
