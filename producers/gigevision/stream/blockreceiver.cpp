#include "producers/gigevision/stream/blockreceiver.h"

#include <utility>

namespace ZelGev {

using namespace ZelCti::Gvsp;

using ZelCti::ByteView;
using ZelCti::FrameBuffer;

namespace {

// A block whose id lies so far back, or so far ahead, was not delayed, and follows no loss: the
// camera began to count anew.
constexpr int64_t kFarBack = 100;
constexpr int64_t kFarAhead = 10000;
// Blocks of which nothing came, in a row, that are asked for.
constexpr uint64_t kMostSkipped = 16;
// How often a block is asked for that may never have been sent.
constexpr uint32_t kSkippedRequests = 4;
// Packets asked for at once where the end of a block is not known.
constexpr uint64_t kBlindTail = 32;
// After each silence, more packets behind the last one are asked for.
constexpr uint64_t kProbeGrowth = 8;
// Retention times: of a block that is followed by another one, whatever comes of it; and without
// news of a block that nothing follows.
constexpr int kMostRetentions = 4;
// This program did not run in time. What waits in the socket is read before frames are given up.
constexpr Duration kStall = std::chrono::milliseconds(10);
constexpr unsigned kMostReprieves = 16;

// How far the time grows after which a packet counts as lost, where networks delay some for longer.
constexpr int kMostOrderDelays = 4;
// Packets of a block whose ids are wrong belong near the newest one of the block before.
constexpr uint32_t kNear = 16;

constexpr uint64_t kNsPerSecond = 1000000000;

__extension__ using Uint128 = unsigned __int128;

uint64_t ToNs(uint64_t ticks, uint64_t frequency) {
    return static_cast<uint64_t>(static_cast<Uint128>(ticks) * kNsPerSecond / frequency);
}

uint64_t ToNs(Time time) {
    return static_cast<uint64_t>(
        std::chrono::duration_cast<std::chrono::nanoseconds>(time.time_since_epoch()).count());
}

// The id of the block that many blocks before another one.
uint64_t BlockIdBefore(uint64_t id, uint64_t distance, bool extended) {
    if (extended) return id - distance;
    constexpr uint64_t kCircle = UINT16_MAX;
    return (id - 1 + kCircle - distance % kCircle) % kCircle + 1;
}

// What tells blocks of the same id apart; 0: nothing.
uint64_t TimestampOf(const Packet& packet) {
    const bool hasLeader =
        packet.header.format == PacketFormat::Leader || packet.header.format == PacketFormat::AllIn;
    if (!hasLeader || packet.content.size < kLeaderCommonSize) return 0;
    return BaseType(packet.content.U16(2)) == PayloadType::H264 ? 0 : packet.content.U64(4);
}

}  // namespace

BlockReceiver::BlockReceiver(ZelCti::BufferQueue& queue, const ReceptionSettings& settings,
                             AskForPackets ask)
    : queue_(queue), settings_(settings), ask_(std::move(ask)), policy_(settings) {
    frame_.parts.reserve(BlockDescription::kMaxParts);
    SetSettings(settings);
}

void BlockReceiver::SetPacketSize(size_t ipSize) {
    packetSize_ = {};
    reservedSize_ = 0;
    packetSize_.datagram = ipSize - std::min(ipSize, kIpUdpHeaderSize);
}

void BlockReceiver::SetSettings(const ReceptionSettings& settings) {
    settings_ = settings;
    policy_ = ResendPolicy(settings);
    orderDelay_ = settings.orderDelay;
    for (Slot& slot : slots_)
        slot.block.ReserveGaps(settings.maxGaps);
}

void BlockReceiver::Start(uint64_t numFrames) {
    numLeft_ = numFrames;
    newest_.reset();
    lastTrailer_ = 0;
    packetInterval_ = {};
    deadline_ = Time::max();
    for (size_t i = 0; i < kMostOpen; ++i)
        open_[i] = &slots_[i];
}

void BlockReceiver::Predict(Prediction& prediction, size_t atMost) const {
    prediction.count = 0;
    if (numOpen_ != 0) open_[numOpen_ - 1]->block.Predict(prediction, atMost);
}

size_t BlockReceiver::NumAhead() const {
    if (numOpen_ == 0) return 0;
    const OpenBlock& block = open_[numOpen_ - 1]->block;
    const uint32_t end = block.StatedTrailer();
    return end > block.HighestData() ? end - block.HighestData() : 0;
}

// ---- Packets -----------------------------------------------------------------------------------

void BlockReceiver::OnPacket(ByteView header, ByteView data, Time now) {
    statistics_.seenPackets.Add();
    lastPacket_ = now;
    if (numOpen_ != 0 && open_[numOpen_ - 1]->block.TakeNext(header, data, now)) return;
    TakeOther(header, data, now);
}

void BlockReceiver::TakeOther(ByteView header, ByteView data, Time now) {
    const auto packet = DecodePacket(header);
    if (!packet) return statistics_.malformedPackets.Add();
    if (packet->header.blockId == 0) return;  // a test packet
    if (ZelCti::Gev::IsError(packet->header.status)) return TakeRefusal(packet->header, now);

    if (PrefixSize(packet->header.format) == 0) return TakeContent({packet->header, data}, {}, now);
    const auto payload = DecodePayload(*packet);
    if (!payload) return statistics_.malformedPackets.Add();
    if (const auto* genDc = std::get_if<GenDcPrefix>(&payload->prefix))
        data.size = std::min<size_t>(data.size, genDc->dataSize);
    TakeContent({packet->header, data}, payload->prefix, now);
}

void BlockReceiver::TakeContent(const Packet& packet, const PayloadPrefix& prefix, Time now) {
    Slot* slot = Find(packet.header);
    const uint64_t timestamp = TimestampOf(packet);
    if (!IsResent(packet.header)) {
        if (IsRestart(packet.header, timestamp, slot != nullptr)) {
            while (numOpen_ != 0)
                CloseOldest(false);
            newest_.reset();
            slot = nullptr;
        }
        if (slot == nullptr && IsStray(packet.header)) return statistics_.malformedPackets.Add();
        if (slot == nullptr) slot = Begin(packet.header, timestamp, now);
    }
    if (slot == nullptr) return statistics_.latePackets.Add();
    TakePacket(*slot, packet, prefix, now);
}

void BlockReceiver::TakePacket(Slot& slot, const Packet& packet, const PayloadPrefix& prefix,
                               Time now) {
    const PacketTimes times{now, now + orderDelay_, now + policy_.RepeatDelay(1)};
    const auto arrival = slot.block.Take(packet.header, prefix, packet.content, times);
    if (arrival == OpenBlock::Arrival::Duplicate) return statistics_.duplicatePackets.Add();
    if (arrival == OpenBlock::Arrival::Unusable) return statistics_.malformedPackets.Add();

    slot.hasEnd = false;
    if (const auto& answered = slot.block.Answered(); answered && answered->requests != 0) {
        statistics_.resentPackets.Add();
        if (answered->requests == 1) policy_.OnAnswer(now - answered->asked);
        // It was not lost after all.
        if (!IsResent(packet.header))
            orderDelay_ = std::min(2 * orderDelay_, kMostOrderDelays * settings_.orderDelay);
        if (policy_.IsWaiting()) HaveTimerBy(now);
    }
    if (newest_ && slot.block.Is(newest_->id, newest_->isExtended))
        newest_->timestamp = std::max(newest_->timestamp, TimestampOf(packet));
    HaveTimerBy(times.gapDue);
    CloseWhatHasEnded();
}

// A packet that the camera has not may be the one behind the last of a block, whose end is not
// known.
void BlockReceiver::TakeRefusal(const Header& header, Time now) {
    Slot* const slot = Find(header);
    if (slot == nullptr || !slot->block.Missing().Contains(header.packetId))
        return statistics_.latePackets.Add();
    MissingPackets& missing = slot->block.Missing();
    HaveTimerBy(now);
    switch (DeliveryOf(header.status)) {
        case Delivery::Content:
            return;
        case Delivery::AskLater:
            Reprieve(*slot, now);
            return;
        case Delivery::GoneWithAllBefore:
            missing.CutTo(header.packetId);
            break;
        case Delivery::Gone:
            if (WasSent(*slot, header.packetId)) {
                missing.Remove(header.packetId, now);
            } else {
                slot->block.CutTail(header.packetId);
                slot->hasEnd = true;
            }
            break;
    }
    slot->isRefused = slot->isRefused || WasSent(*slot, header.packetId);
    statistics_.unavailablePackets.Add();
    CloseWhatHasEnded();
}

// ---- Blocks ------------------------------------------------------------------------------------

BlockReceiver::Slot* BlockReceiver::Find(const Header& header) {
    for (size_t i = numOpen_; i > 0; --i)
        if (open_[i - 1]->block.Is(header.blockId, header.extended)) return open_[i - 1];
    return nullptr;
}

// Whether a camera counts its blocks anew: it went back a long way; or a block has an earlier id
// than another one, but a later time.
bool BlockReceiver::IsRestart(const Header& header, uint64_t timestamp, bool isOpen) const {
    if (!newest_) return false;
    if (header.extended != newest_->isExtended) return true;
    const int64_t ahead = BlockIdDifference(newest_->id, header.blockId, header.extended);
    if (ahead > 0) return ahead > kFarAhead;
    if (!isOpen && ahead <= -kFarBack) return true;
    return newest_->timestamp != 0 && timestamp > newest_->timestamp;
}

// Some cameras give a packet now and then the id of the next block, which would keep that packet's
// place. A block whose begin is lost seldom goes on just where the one before it ends.
bool BlockReceiver::IsStray(const Header& header) const {
    if (!newest_ || numOpen_ == 0 || header.format == PacketFormat::Leader) return false;
    const OpenBlock& newest = open_[numOpen_ - 1]->block;
    if (newest.HasTrailer() || !newest.Is(newest_->id, newest_->isExtended) ||
        header.blockId != NextBlockId(newest_->id, newest_->isExtended))
        return false;
    const uint32_t next = newest.HighestData() + 1;
    return header.packetId > 1 && header.packetId + kNear > next && header.packetId < next + kNear;
}

// Null when there is no buffer, or when the block is over.
BlockReceiver::Slot* BlockReceiver::Begin(const Header& header, uint64_t timestamp, Time now) {
    uint64_t numSkipped = 0;
    uint64_t frameId = header.blockId;
    if (newest_) {
        const int64_t ahead = BlockIdDifference(newest_->id, header.blockId, header.extended);
        if (ahead <= 0) return nullptr;
        numSkipped = static_cast<uint64_t>(ahead) - 1;
        frameId = newest_->frameId + static_cast<uint64_t>(ahead);
    }
    if (numOpen_ != 0) {
        Slot& before = *open_[numOpen_ - 1];
        before.supersededAt = std::min(before.supersededAt, now);
    }
    newest_ = {header.blockId, header.extended, frameId, timestamp};
    HaveTimerBy(now + orderDelay_);

    if (numOpen_ == kMostOpen) CloseOldest(false);
    FrameBuffer* const buffer = IsFinished() ? nullptr : queue_.Take(true);
    if (buffer == nullptr) {
        statistics_.skippedBlocks.Add(numSkipped);
        if (!IsFinished()) statistics_.engineUnderruns.Add();
        return nullptr;
    }
    Slot& slot = Open(header, frameId, numOpen_, *buffer, now);
    if (numSkipped != 0) OpenSkipped(header, numSkipped, now);
    return &slot;
}

BlockReceiver::Slot& BlockReceiver::Open(const Header& header, uint64_t frameId, size_t place,
                                         FrameBuffer& buffer, Time now) {
    const auto end = open_.begin() + static_cast<ptrdiff_t>(numOpen_);
    std::rotate(open_.begin() + static_cast<ptrdiff_t>(place), end, end + 1);
    ++numOpen_;
    Slot& slot = *open_[place];
    ReserveFor(buffer.Size());
    slot.block.Begin(header, frameId, buffer, packetSize_, now);
    slot.supersededAt = Time::max();
    slot.hasEnd = false;
    slot.isRefused = false;
    slot.probe = 1;
    slot.numAsked = 0;
    slot.numReprieves = 0;
    return slot;
}

// All at once, so that frames of one size need memory only once.
void BlockReceiver::ReserveFor(size_t size) {
    if (size <= reservedSize_ || packetSize_.datagram == 0) return;
    reservedSize_ = size;
    for (Slot& slot : slots_)
        slot.block.ReservePackets(size, packetSize_.datagram);
}

// The blocks between the newest two, of which nothing came: the latest ones, as far as there are
// buffers. They leave one for the next block.
void BlockReceiver::OpenSkipped(const Header& next, uint64_t numSkipped, Time now) {
    const bool isLastDropped = (next.flags & kFlagPreviousBlockDropped) != 0;
    const uint64_t most =
        settings_.resend && !isLastDropped ? std::min(numSkipped, kMostSkipped) : 0;
    std::array<FrameBuffer*, kMostSkipped> buffers{};
    size_t count = 0;
    while (count < most && numOpen_ + count < kMostOpen - 1) {
        buffers[count] = queue_.HasInput() ? queue_.Take(false) : nullptr;
        if (buffers[count] == nullptr) break;
        if (!queue_.HasInput()) {
            queue_.PutBack(*buffers[count]);
            break;
        }
        ++count;
    }
    const size_t place = numOpen_ - 1;
    Header header = next;
    for (size_t i = 0; i < count; ++i) {
        const uint64_t distance = count - i;
        header.blockId = BlockIdBefore(next.blockId, distance, next.extended);
        Open(header, newest_->frameId - distance, place + i, *buffers[i], now).supersededAt = now;
    }
    statistics_.skippedBlocks.Add(numSkipped - count);
}

// ---- Missing packets ---------------------------------------------------------------------------

bool BlockReceiver::MayAsk(const Slot& slot) const {
    return settings_.resend && settings_.maxAskedPerSecond != 0 && !slot.isRefused &&
           !slot.block.HasTooManyGaps();
}

// Whether the camera has sent the packet for certain. Of the newest block, it may be still to come.
bool BlockReceiver::WasSent(const Slot& slot, uint32_t packetId) {
    if (slot.IsSuperseded()) return slot.block.IsCertain(packetId);
    return slot.block.HasTrailer() || packetId <= slot.block.HighestData();
}

// The last packet of the block as far as is known, or one that may tell more.
uint64_t BlockReceiver::ExpectedEnd(const Slot& slot) const {
    const auto frontier = static_cast<uint64_t>(slot.block.Frontier() + 1);  // -1: nothing yet
    const uint64_t stated = slot.block.StatedTrailer();
    if (stated != 0 && slot.block.HighestData() < stated) return stated;
    if (lastTrailer_ >= frontier) return lastTrailer_;
    return slot.block.Missing().IsEmpty() ? frontier + kBlindTail : 0;
}

// When the end of the block is to be asked for. A camera sends leaders long before the data when it
// waits for a trigger.
Time BlockReceiver::TailDue(const Slot& slot) const {
    const bool isOpenEnded = !slot.block.HasTrailer() && !slot.hasEnd && MayAsk(slot) &&
                             static_cast<int64_t>(ExpectedEnd(slot)) > slot.block.Frontier();
    if (!isOpenEnded) return Time::max();
    if (slot.IsSuperseded()) return slot.supersededAt + orderDelay_;
    return slot.block.HasData() ? slot.block.LastNews() + settings_.silence : Time::max();
}

// A block that is followed by another one has been sent; of the newest one, the camera may have
// more to send, and is asked for little at first.
void BlockReceiver::LookForTail(Slot& slot, Time now) {
    if (TailDue(slot) > now) return;
    uint64_t last = ExpectedEnd(slot);
    if (!slot.IsSuperseded()) {
        last = std::min(last, static_cast<uint64_t>(slot.block.Frontier()) + slot.probe);
        slot.probe *= kProbeGrowth;
        slot.block.Touch(now);
    }
    const int64_t before = slot.block.Frontier();
    slot.block.AddTail(last, now);
    slot.hasEnd = slot.block.Frontier() == before;  // there is no room for more
}

void BlockReceiver::LookForMissing(Slot& slot, Time now) {
    MissingPackets& missing = slot.block.Missing();
    const uint32_t mostRequests = slot.block.IsEmpty()
                                      ? std::min(kSkippedRequests, settings_.maxRequests)
                                      : settings_.maxRequests;
    for (size_t i = 0; i < missing.NumGaps();) {
        Gap& gap = missing[i];
        if (gap.due > now) {
            ++i;
            continue;
        }
        const bool isLast = gap.requests >= mostRequests;
        // The camera, the network or this program stands still.
        const bool isPause =
            isLast && lastPacket_ <= gap.asked && slot.numReprieves < kMostReprieves;
        if (!MayAsk(slot) || (isLast && !isPause)) {
            GiveUp(slot, i);
            continue;
        }
        if (isPause) {
            ++slot.numReprieves;
            gap.due = now + policy_.RepeatDelay(gap.requests);
        } else {
            if (gap.requests != 0) policy_.OnSilence(now);
            if (!Ask(slot, i, now)) return;
        }
        ++i;
    }
}

// False when no more may be asked for at the moment.
bool BlockReceiver::Ask(Slot& slot, size_t index, Time now) {
    MissingPackets& missing = slot.block.Missing();
    const uint64_t numPackets =
        std::min(slot.block.MostPackets(),
                 std::max<uint64_t>({slot.block.StatedTrailer(), lastTrailer_,
                                     static_cast<uint64_t>(slot.block.Frontier() + 1)}));
    const uint64_t most = policy_.MostAsked(numPackets);
    if (slot.numAsked >= most) {
        GiveUp(slot, index);
        return true;
    }
    const uint64_t wanted = std::min(missing[index].Size(), most - slot.numAsked);
    const uint64_t granted = policy_.Grant(wanted, packetSize_.datagram, now);
    if (granted == 0) return false;
    // Where there is no room for another gap, the begin of the gap comes first.
    const bool isWhole = granted == missing[index].Size() || missing.Split(index, granted);

    Gap& gap = missing[index];
    if (isWhole) ++gap.requests;
    gap.asked = now;
    gap.due = now + policy_.RepeatDelay(gap.requests);
    slot.numAsked += granted;
    statistics_.resendCommands.Add();
    statistics_.resendPackets.Add(granted);
    ask_({slot.block.IsExtended(), settings_.channel, slot.block.Id(), gap.first,
          static_cast<uint32_t>(gap.first + granted - 1)});
    return true;
}

void BlockReceiver::GiveUp(Slot& slot, size_t index) {
    MissingPackets& missing = slot.block.Missing();
    if (WasSent(slot, missing[index].first)) {
        missing.RemoveAt(index);
    } else {
        slot.block.CutTail(missing[index].first);
        slot.hasEnd = true;
    }
}

// ---- Time --------------------------------------------------------------------------------------

void BlockReceiver::OnTimer(Time now) {
    if (deadline_ != Time::max() && now - deadline_ > kStall && ReprieveAll(now)) {
        deadline_ = now + orderDelay_;
        return;
    }
    policy_.SetAwaited(CountAwaited(now));
    for (size_t i = 0; i < numOpen_; ++i) {
        LookForTail(*open_[i], now);
        LookForMissing(*open_[i], now);
    }
    CloseWhatIsOver(now);
    FindDeadline();
}

// Packets that may be on their way because they were asked for.
uint64_t BlockReceiver::CountAwaited(Time now) const {
    uint64_t count = 0;
    for (size_t i = 0; i < numOpen_; ++i)
        count += open_[i]->block.Missing().CountAwaited(now);
    return count;
}

// Gives a block as much time as if its latest packet came now. False if it had enough.
bool BlockReceiver::Reprieve(Slot& slot, Time now) {
    if (slot.numReprieves == kMostReprieves) return false;
    ++slot.numReprieves;
    slot.block.Touch(now);
    if (slot.IsSuperseded()) slot.supersededAt = now;
    MissingPackets& missing = slot.block.Missing();
    for (size_t i = 0; i < missing.NumGaps(); ++i)
        missing[i].due = std::max(missing[i].due, now + orderDelay_);
    return true;
}

bool BlockReceiver::ReprieveAll(Time now) {
    bool isAny = false;
    for (size_t i = 0; i < numOpen_; ++i)
        isAny |= Reprieve(*open_[i], now);
    return isAny;
}

void BlockReceiver::FindDeadline() {
    deadline_ = Time::max();
    for (size_t i = 0; i < numOpen_; ++i) {
        const Slot& slot = *open_[i];
        Time missingDue = slot.block.Missing().Due();
        if (MayAsk(slot)) missingDue = std::max(missingDue, policy_.NextGrant());
        deadline_ = std::min({deadline_, missingDue, TailDue(slot)});
    }
    if (numOpen_ != 0) deadline_ = std::min(deadline_, OverDue(*open_[0]));
}

// When a block is taken as it is.
Time BlockReceiver::OverDue(const Slot& slot) const {
    const OpenBlock& block = slot.block;
    if (!slot.IsSuperseded() && !block.HasData() && !block.HasTrailer()) return Time::max();
    const Time most = block.LastNews() + kMostRetentions * settings_.retention;
    if (block.IsWholeBySize()) return std::min(block.LastNews() + 2 * settings_.silence, most);
    if (!slot.IsSuperseded()) return most;
    return std::min(block.LastNews() + settings_.retention,
                    slot.supersededAt + kMostRetentions * settings_.retention);
}

// Whether it is whole, or nothing that it lacks may come any more.
bool BlockReceiver::HasEnded(const Slot& slot) {
    return slot.block.IsWhole() || (slot.block.HasTrailer() && slot.block.Missing().IsEmpty());
}

bool BlockReceiver::IsOver(const Slot& slot, Time now) const {
    if (HasEnded(slot) || now >= OverDue(slot)) return true;
    return slot.IsSuperseded() && now >= slot.supersededAt + orderDelay_ &&
           slot.block.Missing().IsEmpty() && TailDue(slot) == Time::max();
}

// Not by time: after a pause of this program, packets that wait are seen first.
void BlockReceiver::CloseWhatHasEnded() {
    while (numOpen_ != 0 && HasEnded(*open_[0]))
        CloseOldest(false);
}

void BlockReceiver::CloseWhatIsOver(Time now) {
    while (numOpen_ != 0 && IsOver(*open_[0], now))
        CloseOldest(false);
}

// ---- Frames ------------------------------------------------------------------------------------

void BlockReceiver::CloseOldest(bool isKilled) {
    Slot* const slot = open_[0];
    std::rotate(open_.begin(), open_.begin() + 1, open_.begin() + static_cast<ptrdiff_t>(numOpen_));
    --numOpen_;
    const bool isWhole = slot->block.IsWhole() || slot->block.IsWholeBySize();
    if (isWhole || (!isKilled && settings_.deliverIncomplete && !slot->block.IsEmpty())) {
        Deliver(*slot, isWhole);
    } else {
        Drop(*slot, isKilled);
    }
    if (IsFinished()) PutAllBack();
}

void BlockReceiver::Deliver(Slot& slot, bool isWhole) {
    const OpenBlock& block = slot.block;
    FrameBuffer& buffer = block.Buffer();
    const uint64_t size = std::min<uint64_t>(block.Size(), buffer.Size());
    frame_.id = block.FrameId();
    frame_.tooLarge = block.IsTooLarge();
    frame_.incomplete = !isWhole || frame_.tooLarge;
    frame_.sizeFilled = static_cast<size_t>(isWhole ? size : std::min(size, block.NumBytes()));
    frame_.dataSize = static_cast<size_t>(size);
    frame_.pixelOrder = settings_.pixelOrder;
    block.Description().Describe(frame_, size);
    frame_.timestamp = block.Timestamp();
    frame_.timestampNs =
        tickFrequency_ == 0 ? ToNs(block.Begun()) : ToNs(frame_.timestamp, tickFrequency_);

    statistics_.receivedBytes.Add(block.NumBytes());
    if (frame_.tooLarge) statistics_.oversizedBlocks.Add();
    if (isWhole) {
        statistics_.completeBlocks.Add();
        statistics_.deliveredPackets.Add(block.NumReceived());
        if (block.HasTrailer()) lastTrailer_ = block.Trailer();
        if (slot.numAsked == 0)
            packetInterval_ =
                (lastPacket_ - block.Begun()) / std::max<uint32_t>(block.HighestData(), 1);
    } else {
        statistics_.incompleteBlocks.Add();
        statistics_.lostPackets.Add(block.NumLost());
    }
    --numLeft_;
    queue_.Deliver(buffer, frame_);
}

void BlockReceiver::Drop(Slot& slot, bool isKilled) {
    const OpenBlock& block = slot.block;
    if (block.IsEmpty()) {
        statistics_.skippedBlocks.Add();
        return queue_.PutBack(block.Buffer());
    }
    statistics_.receivedBytes.Add(block.NumBytes());
    statistics_.lostPackets.Add(block.NumLost());
    statistics_.incompleteBlocks.Add();
    statistics_.discardedBlocks.Add();
    if (isKilled) return queue_.PutBack(block.Buffer());
    queue_.Lose(block.Buffer());
}

void BlockReceiver::PutAllBack() {
    while (numOpen_ != 0)
        queue_.PutBack(open_[--numOpen_]->block.Buffer());
    deadline_ = Time::max();
}

void BlockReceiver::Stop(bool kill) {
    // Of a frame of which only the leader came, nothing is there to be delivered.
    while (numOpen_ != 0 && !IsFinished()) {
        const OpenBlock& newest = open_[numOpen_ - 1]->block;
        if (!newest.HasData() && !newest.IsWhole()) {
            queue_.PutBack(newest.Buffer());
            --numOpen_;
        } else {
            CloseOldest(kill);
        }
    }
    PutAllBack();
    numLeft_ = 0;
}

}  // namespace ZelGev
