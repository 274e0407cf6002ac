#include "producers/simulator/gige/stream/streamsender.h"

#include <algorithm>
#include <cassert>
#include <utility>

#include "producers/server/base/waitpoint.h"
#include "producers/simulator/camera/framewriter.h"
#include "producers/simulator/frame/pixelformat.h"
#include "producers/wire/bootstrapbits.h"

namespace ZelSim {

namespace Gev = ZelCti::Gev;
namespace Gvsp = ZelCti::Gvsp;

using ZelCti::Endpoint;
using ZelCti::FrameInfo;
using ZelCti::WaitPoint;

namespace {

constexpr size_t kMostTestPackets = 16;  // that wait
constexpr uint64_t kNsPerSecond = 1000000000;
constexpr unsigned kBitsPerByte = 8;

// After the acknowledge of the write that fired it.
constexpr std::chrono::microseconds kTestPacketDelay(500);

uint64_t AdvanceBlockId(uint64_t id, uint64_t by, bool extended) {
    if (extended) return id + by;
    return ((id & UINT16_MAX) + UINT16_MAX - 1 + by % UINT16_MAX) % UINT16_MAX + 1;
}

uint64_t FirstBlockId(const NetworkSettings& network, bool extended) {
    const uint64_t id = extended ? network.firstBlockId : network.firstBlockId & UINT16_MAX;
    return id == 0 ? 1 : id;
}

BlockForm FormOf(const StreamSettings& settings, const NetworkSettings& network) {
    BlockForm form;
    form.extendedIds = settings.extendedIds;
    form.packetSize = settings.packetSize;
    form.allIn = (settings.configuration & Gev::Sccfg::kAllIn) != 0;
    form.multiPart = (settings.configuration & Gev::Sccfg::kMultiPart) != 0;
    form.genDc = (settings.configuration & Gev::Sccfg::kGenDc) != 0;
    if (network.payloadType4) {
        const bool extends = (settings.configuration & Gev::Sccfg::kExtendedChunkData) != 0;
        form.chunks = extends ? BlockForm::Chunks::Extended : BlockForm::Chunks::ChunkData;
    } else if (network.payloadType5) {
        form.chunks = BlockForm::Chunks::Extended;
    }
    form.halfHeight = network.variableHeight;
    form.paddedLastPacket = network.paddedLastPacket;
    form.partRelativeOffsets = network.partRelativeOffsets;
    form.timestampAbove63Bits = network.timestampsAbove63Bits;
    return form;
}

// Whether the values of a format are two bytes each, which cameras write little endian.
bool IsOfWords(uint64_t pixelFormat) {
    const PixelFormat* const format = FindPixelFormat(static_cast<uint32_t>(pixelFormat));
    if (format == nullptr) return pixelFormat == kRangeFormat;
    return format->packing == Packing::Words && format->bits > kBitsPerByte;
}

void SwapWords(uint8_t* lines, uint64_t pixelFormat, size_t width, size_t padding,
               size_t numLines) {
    if (!IsOfWords(pixelFormat)) return;
    const size_t bytes = width * (pixelFormat >> 16 & 0xFF) / kBitsPerByte;
    for (size_t line = 0; line < numLines; ++line) {
        uint8_t* const pixels = lines + line * (bytes + padding);
        for (size_t i = 0; i + 1 < bytes; i += 2)
            std::swap(pixels[i], pixels[i + 1]);
    }
}

void SwapPixels(const Block& block) {
    const FrameInfo& frame = block.Frame();
    if (frame.parts.empty()) {
        SwapWords(block.Base() + frame.imageOffset, frame.pixelFormat, frame.width, frame.xPadding,
                  frame.deliveredHeight);
    }
    for (const ZelCti::FramePart& part : frame.parts)
        SwapWords(block.Base() + part.offset, part.format, part.width, part.xPadding,
                  part.deliveredHeight);
}

Pacer::Duration DelayOf(const StreamSettings& settings, const Camera& camera) {
    const uint64_t frequency = std::max<uint64_t>(camera.Config().timestampFrequency, 1);
    return Pacer::Duration(static_cast<int64_t>(settings.delay * kNsPerSecond / frequency));
}

}  // namespace

StreamSender::StreamSender(Camera& camera, uint32_t address, NetworkSource network)
    : camera_(camera), networkSource_(std::move(network)), socket_(address) {
    sent_.parts.reserve(BlockPackets::kMaxParts);
}

void StreamSender::Open(BlockRing& ring) {
    ring_ = &ring;
    block_ = nullptr;
    blockId_.reset();
    frameId_.reset();
    isRefusing_ = false;
    isBeginning_ = false;
    announcedTime_.reset();
    late_.reset();
    nextLate_.reset();
    request_.reset();
    testPackets_.clear();
    numTestPackets_ = 0;
    faults_.Restart(*networkSource_());
}

StreamSender::Clock::time_point StreamSender::Step(const StreamSettings& settings,
                                                   Clock::time_point now) {
    SendTestPackets(now);
    if (block_ == nullptr) {
        if (std::exchange(isBeginning_, false)) AnnounceBlock(settings);
        block_ = ring_->Next();
        if (block_ != nullptr) BeginBlock(settings);
    }
    const bool isIdle = block_ == nullptr && !request_;
    if (!isIdle && std::exchange(wasIdle_, false)) pacer_.EndIdle(now);
    wasIdle_ = isIdle;
    const auto nextTest = testPackets_.empty() ? WaitPoint::kEndless : testPackets_.front().due;
    if (isIdle) return nextTest;

    pacer_.Limit(now);
    if (request_ && pacer_.IsDue(now)) SendResent(settings, now);
    if (block_ != nullptr) SendBlock(settings, now);
    const bool isDone = block_ == nullptr && !request_;  // with what was known until now
    return isDone || pacer_.IsDue(now) ? now : std::min(pacer_.Wake(), nextTest);
}

// ---- Packets on their way
// ------------------------------------------------------------------------

PacketBytes& StreamSender::Add(const Block& block, uint32_t packetId, const Gvsp::Header& header) {
    assert(numPackets_ < packets_.size());
    auto& head = heads_[numPackets_];
    PacketBytes& packet = packets_[numPackets_++];
    packet = block.packets.Packet(packetId, header, {head.data(), head.size()});
    return packet;
}

void StreamSender::SetSocket(bool dontFragment, const NetworkSettings& network) {
    socket_.SetDontFragment(dontFragment && !network.ignoreDontFragment);
    socket_.SetSegmentation(network.segmentation);
}

void StreamSender::Flush(const Endpoint& to) {
    if (to.address != 0) statistics_.packets += socket_.Send(to, packets_.data(), numPackets_);
    numPackets_ = 0;
}

// ---- Blocks
// --------------------------------------------------------------------------------------

uint64_t StreamSender::NextId(const StreamSettings& settings, uint64_t numLost) const {
    return blockId_ ? AdvanceBlockId(*blockId_, 1 + numLost, settings.extendedIds)
                    : FirstBlockId(*network_, settings.extendedIds);
}

// No byte of the payload is read here: only its size counts.
void StreamSender::AnnounceBlock(const StreamSettings& settings) {
    network_ = networkSource_();
    if (!network_->leaderAtStart || isRefusing_) return;
    const FrameInfo frame = ZelSim::Announce(camera_, {0, camera_.Settings(), Frame::Clock::now()});
    const BlockPackets packets(frame, {kZeroBytes.data(), frame.sizeFilled}, NextId(settings, 0),
                               FormOf(settings, *network_));
    if (packets.Count() == 1) return;  // the leader is part of the only packet
    announcedTime_ = frame.timestamp;
    auto& head = heads_[numPackets_];
    packets_[numPackets_++] = packets.Packet(0, packets.HeaderOf(0), {head.data(), head.size()});
    Flush(settings.destination);
}

void StreamSender::BeginBlock(const StreamSettings& settings) {
    network_ = networkSource_();
    sent_ = block_->Frame();
    const bool isContinued = frameId_ && sent_.id > *frameId_;
    const uint64_t numLost = isContinued ? sent_.id - *frameId_ - 1 : 0;
    if (network_->needsPortZero && frameId_ && !isContinued) isRefusing_ = true;
    frameId_ = sent_.id;
    statistics_.lostBlocks += numLost;
    flags_ = numLost == 0 ? 0 : Gvsp::kFlagPreviousBlockDropped;
    blockId_ = NextId(settings, numLost);
    if (announcedTime_) sent_.timestamp = *announcedTime_;

    BlockForm form = FormOf(settings, *network_);
    form.halfHeight = form.halfHeight && *blockId_ % 2 == 0;
    block_->packets = BlockPackets(sent_, {block_->Base(), sent_.sizeFilled}, *blockId_, form);
    const bool isBigEndian = settings.bigEndianPixels || network_->bigEndianPixels;
    if (isBigEndian && !block_->packets.IsGenDc()) SwapPixels(*block_);  // containers never are
    block_->numSent = std::exchange(announcedTime_, std::nullopt) ? 1 : 0;
    faults_.BeginBlock(*network_, block_->packets.Count());
    pacer_.Set(camera_.Settings()->link.speed, DelayOf(settings, camera_));
}

void StreamSender::SendBlock(const StreamSettings& settings, Clock::time_point now) {
    const uint32_t count = isRefusing_ ? 0 : block_->packets.Count();
    while (block_->numSent < count && HasRoom() && pacer_.IsDue(now))
        AddNextPacket();
    SetSocket(settings.dontFragment, *network_);
    Flush(settings.destination);
    if (block_->numSent >= count) FinishBlock(settings);
}

void StreamSender::AddNextPacket() {
    const BlockPackets& packets = block_->packets;
    const uint32_t packetId = PacketAt(block_->numSent++, packets.Count(), network_->reorder);
    Gvsp::Header header = packets.HeaderOf(packetId);
    header.flags |= flags_;
    PacketBytes& packet = Add(*block_, packetId, header);
    pacer_.Count(packet.pieces[1].size);

    const PacketFate fate = faults_.FateOf(packetId, packet.Size() + Gvsp::kIpUdpHeaderSize);
    if (fate.isLate) nextLate_ = PacketPlace{*blockId_, packetId};
    if (fate.isLost || fate.isLate) {
        --numPackets_;
        return;
    }
    if (fate.hasWrongStatus || fate.hasWrongBlockId) {
        if (fate.hasWrongStatus) header.status = Gev::Status::Error;
        if (fate.hasWrongBlockId)
            header.blockId = Gvsp::NextBlockId(header.blockId, header.extended);
        --numPackets_;
        Add(*block_, packetId, header);
    }
    if (fate.comesTwice) Add(*block_, packetId, header);
}

// A packet of the block before, when this one has been sent.
void StreamSender::AddLatePacket() {
    if (late_) {
        if (Block* const block = ring_->Hold(late_->blockId)) {
            Add(*block, late_->packetId, block->packets.HeaderOf(late_->packetId));
            ring_->LetGo(*block);
        }
    }
    late_ = std::exchange(nextLate_, std::nullopt);
}

void StreamSender::FinishBlock(const StreamSettings& settings) {
    AddLatePacket();
    Flush(settings.destination);
    if (!isRefusing_) ++statistics_.blocks;
    ring_->Finish(*std::exchange(block_, nullptr));
    camera_.GetAcquisition().OnInput();
}

// ---- Packets that are sent again
// -----------------------------------------------------------------

void StreamSender::Resend(const ResendRequest& request) {
    assert(!request_);
    requestNetwork_ = networkSource_();
    if (!requestNetwork_->noResend) request_ = request;
}

bool StreamSender::IsWithinResendLimit(Clock::time_point now) {
    const uint32_t limit = requestNetwork_->resendLimitPerSecond;
    if (limit == 0) return true;
    if (now - resendSecond_ >= std::chrono::seconds(1)) {
        resendSecond_ = now;
        numResentInSecond_ = 0;
    }
    return numResentInSecond_ < limit;
}

// Answers as many packets as one call of the socket takes, then gives way to the block. The block
// may be overwritten in between, so it is looked for each time.
void StreamSender::SendResent(const StreamSettings& settings, Clock::time_point now) {
    Block* const block = ring_->Hold(request_->packets.blockId);
    const auto count = block != nullptr ? std::optional(block->packets.Count()) : std::nullopt;
    sendsStatusCodes_ = settings.statusCodes;
    const auto range = AnsweredPackets(request_->packets, count);
    uint64_t next = range ? range->first : 1;
    const uint64_t last = range ? range->last : 0;
    while (next <= last && HasRoom() && pacer_.IsDue(now)) {
        if (!IsWithinResendLimit(now)) {
            next = last + 1;  // the rest is not answered
            break;
        }
        Answer(block, static_cast<uint32_t>(next++));
    }
    SetSocket(settings.dontFragment, *requestNetwork_);
    const bool toAsker = (settings.configuration & Gev::Sccfg::kResendDestination) != 0;
    Flush(toAsker ? request_->from : settings.destination);
    if (block != nullptr) ring_->LetGo(*block);
    if (next > last) {
        request_.reset();
    } else {
        request_->packets.firstPacket = static_cast<uint32_t>(next);
    }
}

void StreamSender::Answer(const Block* block, uint32_t packetId) {
    ++numResentInSecond_;
    if (block == nullptr) {
        const auto& asked = request_->packets;
        AddRefused(
            nullptr, packetId,
            ReasonAgainstBlock(asked.blockId, ring_->OldestId(), blockId_, asked.extendedIds));
        return;
    }
    const bool hasGone = block != block_ || packetId < block->numSent;
    const auto reason = ReasonAgainst(packetId, block->packets.Count(), hasGone);
    if (reason) {
        AddRefused(block, packetId, *reason);
    } else {
        AddResent(*block, packetId);
    }
}

void StreamSender::AddResent(const Block& block, uint32_t packetId) {
    const NetworkSettings& network = *requestNetwork_;
    Gvsp::Header header = Gvsp::ResentHeader(block.packets.HeaderOf(packetId));
    if (network.resendStatusZero) header.status = Gev::Status::Success;
    if (network.resendWrongId) ++header.packetId;
    const PacketBytes& packet = Add(block, packetId, header);
    pacer_.Count(packet.pieces[1].size);
    if (faults_.IsResentLost(network, packet.Size() + Gvsp::kIpUdpHeaderSize)) {
        --numPackets_;
        return;
    }
    ++statistics_.resent;
    if (!network.resendTwice) return;
    Add(block, packetId, header).pieces[1].data = kZeroBytes.data();
}

void StreamSender::AddRefused(const Block* block, uint32_t packetId, Gev::Status reason) {
    Gvsp::Header asked;
    asked.extended = request_->packets.extendedIds;
    asked.blockId = request_->packets.blockId;
    asked.packetId = packetId;
    Gvsp::Header header = Gvsp::RefusedHeader(asked, StatusFor(reason, sendsStatusCodes_));
    if (block != nullptr && packetId >= block->packets.Count())
        header.flags |= Gvsp::kFlagNoSuchPacket;
    auto& head = heads_[numPackets_];
    PacketBytes& packet = packets_[numPackets_++];
    packet = {};
    packet.pieces[0] = {head.data(), Gvsp::EncodeHeader({head.data(), head.size()}, header)};
    pacer_.Count(packet.Size());
    ++statistics_.refused;
}

// ---- Test packets
// --------------------------------------------------------------------------------

void StreamSender::FireTestPacket(const TestPacket& packet, Clock::time_point now) {
    const auto network = networkSource_();
    if (numTestPackets_++ < network->firstTestPacketsLost) return;
    if (network->pathMtu != 0 && packet.ipSize > network->pathMtu) return;
    if (testPackets_.size() >= kMostTestPackets) return;
    testPackets_.push_back(
        {now + kTestPacketDelay + std::chrono::milliseconds(network->testPacketDelayMs), packet});
}

void StreamSender::SendTestPackets(Clock::time_point now) {
    while (!testPackets_.empty() && testPackets_.front().due <= now) {
        const TestPacket packet = testPackets_.front().packet;
        testPackets_.pop_front();
        const size_t size =
            Gvsp::EncodeTestPacket({testPacket_.data(), testPacket_.size()}, packet.ipSize);
        SetSocket(packet.dontFragment, *networkSource_());
        packets_[numPackets_++] = {{{{testPacket_.data(), size}, {}, {}}}};
        Flush(packet.destination);
        ++statistics_.testPackets;
    }
}

}  // namespace ZelSim
