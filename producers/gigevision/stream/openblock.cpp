#include "producers/gigevision/stream/openblock.h"

#include <algorithm>
#include <cstring>

namespace ZelGev {

using namespace ZelCti::Gvsp;

using ZelCti::ByteView;

namespace {

// A camera that sends less in full packets gets no memory for them.
constexpr size_t kLeastDataPerPacket = 8;
// Packets that are not full because they end a part, a zone or a flow.
constexpr uint64_t kMostPartialPackets = 1024;
constexpr uint64_t kMostOffset = uint64_t{1} << 48;

}  // namespace

void OpenBlock::ReserveGaps(size_t count) {
    missing_.Reserve(count);
    firstIds_.reserve(UINT8_MAX);
}

void OpenBlock::ReservePackets(size_t blockSize, size_t datagram) {
    constexpr size_t kMostBefore = kExtendedHeaderSize + PrefixSize(PacketFormat::PayloadGenDc);
    const size_t perPacket = std::max(datagram, kMostBefore + kLeastDataPerPacket) - kMostBefore;
    received_.Reserve(static_cast<uint32_t>(
        std::min(PacketsFor(blockSize, perPacket) + kMostPartialPackets, MaxPackets(true))));
}

void OpenBlock::Begin(const Header& header, uint64_t frameId, ZelCti::FrameBuffer& buffer,
                      PacketSize& packetSize, Time now) {
    id_ = header.blockId;
    isExtended_ = header.extended;
    frameId_ = frameId;
    buffer_ = &buffer;
    packetSize_ = &packetSize;
    begun_ = lastNews_ = now;
    description_.Clear();
    trailerId_ = 0;
    isAllIn_ = false;
    dataTimestamp_ = 0;
    format_.reset();
    SetDataPerPacket(0);
    hasChangedSize_ = false;
    missing_.Clear();
    frontier_ = -1;
    hasTooManyGaps_ = false;
    isBroken_ = false;
}

OpenBlock::Arrival OpenBlock::Take(const Header& header, const PayloadPrefix& prefix,
                                   ByteView content, const PacketTimes& times) {
    times_ = times;
    answered_.reset();
    // Only what was asked for comes again; some cameras send such packets with wrong ids.
    if (IsResent(header) && header.packetId > frontier_) return Arrival::Unusable;
    const auto take = [&] {
        switch (header.format) {
            case PacketFormat::Leader:
                return TakeLeader(header, content);
            case PacketFormat::Trailer:
                return TakeTrailer(header, content);
            case PacketFormat::AllIn:
                return TakeAllIn(header, content);
            default:
                return TakeData(header, prefix, content);
        }
    };
    const Arrival arrival = take();
    if (arrival == Arrival::New) lastNews_ = times.now;
    FindRow();
    return arrival;
}

// ---- The short way
// -------------------------------------------------------------------------------

void OpenBlock::FindRow() {
    const bool isInRow = format_ == PacketFormat::Payload && packetSize_->isConfirmed &&
                         shortPacket_ == 0 && HasData() && frontier_ == highestData_;
    rowEnd_ = isInRow
                  ? static_cast<uint32_t>(std::min<uint64_t>(limit_, buffer_->Size() / perPacket_))
                  : 0;
}

bool OpenBlock::IsNext(ByteView header) const {
    constexpr uint64_t kExtendedPayload = 0x83000000;
    constexpr uint64_t kPayload = 0x03000000;
    const uint64_t next = uint64_t{highestData_} + 1;
    if (isExtended_) {
        return header.size == kExtendedHeaderSize && header.U64(0) == kExtendedPayload &&
               header.U64(8) == id_ && header.U32(16) == next;
    }
    return header.size == kHeaderSize && header.U64(0) == (id_ << 32 | kPayload | next);
}

bool OpenBlock::TakeNext(ByteView header, ByteView data, Time now) {
    if (highestData_ >= rowEnd_ || data.size != perPacket_ || !IsNext(header)) return false;
    uint8_t* const place = buffer_->Base() + size_t{highestData_} * perPacket_;
    if (place != data.data) memmove(place, data.data, data.size);
    frontier_ = ++highestData_;
    received_.Insert(highestData_);
    bytes_ += data.size;
    dataEnd_ = uint64_t{highestData_} * perPacket_;
    lastNews_ = now;
    return true;
}

// ---- Leader, trailer, all in one ----------------------------------------------------------------

OpenBlock::Arrival OpenBlock::TakeLeader(const Header& header, ByteView content) {
    if (description_.HasLeader()) return Arrival::Duplicate;
    if (header.packetId != 0 || !description_.SetLeader(header, content)) return Arrival::Unusable;
    if (!HasData()) SetFormat(description_.DataFormat());
    ListFirstIds();
    NoteArrival(0);
    return Arrival::New;
}

OpenBlock::Arrival OpenBlock::TakeTrailer(const Header& header, ByteView content) {
    if (HasTrailer()) return Arrival::Duplicate;
    if (header.packetId <= highestData_) return Arrival::Unusable;
    trailerId_ = header.packetId;
    description_.SetTrailer(header, content);
    if (!format_) SetFormat(PacketFormat::Payload);
    NoteArrival(trailerId_);
    missing_.CutFrom(trailerId_);
    return Arrival::New;
}

OpenBlock::Arrival OpenBlock::TakeAllIn(const Header& header, ByteView content) {
    if (!IsEmpty()) return Arrival::Duplicate;
    const auto block = DecodeAllIn({header, content});
    if (!block) return Arrival::Unusable;
    description_.SetLeader(header, content);
    description_.SetTrailer(header, content.From(LeaderSize(block->leader)));
    isAllIn_ = true;
    missing_.Clear();
    Store({0, block->payload.data.size}, block->payload.data.data);
    return Arrival::New;
}

// ---- Data --------------------------------------------------------------------------------------

OpenBlock::Arrival OpenBlock::TakeData(const Header& header, const PayloadPrefix& prefix,
                                       ByteView data) {
    const uint32_t id = header.packetId;
    if (id == 0 || data.size == 0 || isAllIn_) return Arrival::Unusable;
    if (HasTrailer() && id >= trailerId_) return Arrival::Unusable;
    if (!HasData()) SetFormat(header.format);
    if (header.format != format_) return Arrival::Unusable;
    if (received_.Contains(id)) return Arrival::Duplicate;
    if (!IsResent(header)) LearnPacketSize(id, prefix, data.size);

    if (id > limit_) return TakeBeyondBuffer(id);
    const auto place = PlaceOf(id, prefix, data.size);
    if (!place) return Arrival::Unusable;
    Store(*place, data.data);
    received_.Insert(id);
    isBroken_ |= shortPacket_ != 0 && id > shortPacket_;
    highestData_ = std::max(highestData_, id);
    if (id == 1) firstSize_ = place->size;
    if (const auto* h264 = std::get_if<H264Prefix>(&prefix); h264 != nullptr && id == 1)
        dataTimestamp_ = h264->timestamp;
    NoteArrival(id);
    return Arrival::New;
}

OpenBlock::Arrival OpenBlock::TakeBeyondBuffer(uint32_t packetId) {
    if (packetId <= highestBeyond_) return Arrival::Duplicate;
    highestBeyond_ = packetId;
    AddGapUpTo(limit_);
    return Arrival::New;
}

void OpenBlock::SetFormat(PacketFormat format) {
    if (format == format_) return;
    format_ = format;
    const size_t before = HeaderSize(isExtended_) + PrefixSize(format);
    SetDataPerPacket(packetSize_->datagram > before ? packetSize_->datagram - before : 0);
}

bool OpenBlock::LiesInRow() const {
    return format_ == PacketFormat::Payload || format_ == PacketFormat::PayloadH264;
}

// Forgets all data.
void OpenBlock::SetDataPerPacket(size_t size) {
    perPacket_ = size;
    limit_ = 0;
    if (size != 0) {
        const uint64_t partial = LiesInRow() ? 0 : kMostPartialPackets;
        limit_ = static_cast<uint32_t>(
            std::min(PacketsFor(buffer_->Size(), size) + partial, MaxPackets(isExtended_) - 2));
    }
    received_.Reset(limit_);
    highestData_ = shortPacket_ = highestBeyond_ = 0;
    hasFullPacket_ = false;
    bytes_ = dataEnd_ = 0;
    ListFirstIds();
}

void OpenBlock::ListFirstIds() {
    firstIds_.clear();
    if (perPacket_ == 0) return;
    uint64_t next = 1;
    for (const PartPlace& part : description_.Parts()) {
        firstIds_.push_back(next);
        next += PacketsFor(part.length, perPacket_);
    }
}

bool OpenBlock::IsBeforeLast(uint32_t packetId) const {
    return packetId < highestData_ || (HasTrailer() && packetId + 1 < trailerId_);
}

// A larger packet is a full one, and a smaller one is full, too, unless it is the last.
void OpenBlock::LearnPacketSize(uint32_t packetId, const PayloadPrefix& prefix, size_t size) {
    if (size > perPacket_) {
        ChangePacketSize(size);
    } else if (const auto* inPart = std::get_if<MultiPartPrefix>(&prefix)) {
        LearnFromPart(packetId, *inPart, size);
    } else if (LiesInRow() && size == perPacket_) {
        packetSize_->isConfirmed |= hasFullPacket_;
        hasFullPacket_ = true;
    } else if (LiesInRow()) {
        LearnFromShort(packetId, size);
    }
}

void OpenBlock::LearnFromPart(uint32_t packetId, const MultiPartPrefix& prefix, size_t size) {
    const auto place = PlaceInPart(packetId, prefix, size);
    if (size == perPacket_ || !place || prefix.partId >= description_.Parts().size()) return;
    const PartPlace& part = description_.Parts()[prefix.partId];
    if (place->offset + size < part.offset + part.length) ChangePacketSize(size);
}

void OpenBlock::LearnFromShort(uint32_t packetId, size_t size) {
    const bool isConfirmed = packetSize_->isConfirmed;
    if (isConfirmed && IsBeforeLast(packetId)) return;  // it is of no use
    if (shortPacket_ != 0 && packetId > shortPacket_) {
        ChangePacketSize(std::max(shortSize_, size));
    } else if (!isConfirmed && !EndsStatedSize(packetId, size)) {
        ChangePacketSize(size);
    } else {
        shortPacket_ = packetId;
        shortSize_ = size;
    }
}

// Data that came before lie at wrong places, but for the first packet; the camera is asked for them
// again. That happens once in a block.
void OpenBlock::ChangePacketSize(size_t size) {
    if (size < kLeastDataPerPacket || size == perPacket_) return;
    if (highestData_ > 1) {
        if (hasChangedSize_) return;
        hasChangedSize_ = true;
    }
    packetSize_->datagram = size + HeaderSize(isExtended_) + PrefixSize(*format_);
    packetSize_->isConfirmed = false;
    const bool hasFirst = received_.Contains(1);
    SetDataPerPacket(size);
    if (hasFirst) {
        received_.Insert(1);
        highestData_ = 1;
        bytes_ = dataEnd_ = firstSize_;
    }
    missing_.CutFrom(2);
    frontier_ = std::min<int64_t>(frontier_, 1);
    if (HasTrailer()) NoteArrival(trailerId_);
}

std::optional<OpenBlock::Place> OpenBlock::PlaceOf(uint32_t packetId, const PayloadPrefix& prefix,
                                                   size_t size) const {
    if (const auto* inPart = std::get_if<MultiPartPrefix>(&prefix))
        return PlaceInPart(packetId, *inPart, size);
    if (const auto* zone = std::get_if<MultiZonePrefix>(&prefix)) return Place{zone->offset, size};
    if (const auto* genDc = std::get_if<GenDcPrefix>(&prefix)) {
        if (genDc->offset > kMostOffset) return std::nullopt;
        return Place{genDc->offset, size};
    }
    if (size > perPacket_ || (size < perPacket_ && IsBeforeLast(packetId))) return std::nullopt;
    return Place{uint64_t{packetId - 1} * perPacket_, size};
}

// Offsets count from the begin of the block or of the part. Those of the former are not below the
// begin of the part; and the ids of packets tell where in its part the latter have to be.
std::optional<OpenBlock::Place> OpenBlock::PlaceInPart(uint32_t packetId,
                                                       const MultiPartPrefix& prefix,
                                                       size_t size) const {
    const auto& parts = description_.Parts();
    if (parts.empty() && prefix.partId == 0) return Place{prefix.offset, size};
    if (prefix.partId >= parts.size()) return std::nullopt;
    const PartPlace& part = parts[prefix.partId];
    uint64_t offset = prefix.offset;
    if (offset >= part.offset) {
        const uint64_t first = prefix.partId < firstIds_.size() ? firstIds_[prefix.partId] : 0;
        const bool countsFromPart =
            first != 0 && packetId >= first && offset == (packetId - first) * perPacket_;
        if (!countsFromPart) offset -= part.offset;
    }
    if (offset >= part.length) return std::nullopt;
    return Place{part.offset + offset,
                 static_cast<size_t>(std::min<uint64_t>(size, part.length - offset))};
}

void OpenBlock::Store(const Place& place, const uint8_t* data) {
    const uint64_t room = buffer_->Size() - std::min<uint64_t>(place.offset, buffer_->Size());
    const auto size = static_cast<size_t>(std::min<uint64_t>(place.size, room));
    if (size != 0) {
        uint8_t* const destination = buffer_->Base() + place.offset;
        if (destination != data) memmove(destination, data, size);
    }
    bytes_ += size;
    dataEnd_ = std::max(dataEnd_, place.offset + place.size);
}

// ---- What comes next
// -----------------------------------------------------------------------------

void OpenBlock::Predict(Prediction& prediction, size_t atMost) const {
    prediction.count = 0;
    if (!format_ || HasTrailer() || isAllIn_) return;
    prediction.extended = isExtended_;
    prediction.format = *format_;
    prediction.blockId = id_;
    prediction.firstPacket = highestData_ + 1;
    prediction.headerSize = HeaderSize(isExtended_) + PrefixSize(*format_);
    prediction.dataSize = perPacket_;

    const uint64_t stated = StatedPackets().value_or(limit_);
    const uint64_t left = stated - std::min<uint64_t>(stated, highestData_);
    const size_t most =
        static_cast<size_t>(std::min<uint64_t>({atMost, Prediction::kMostPlaces, left}));
    while (prediction.count < most) {
        const auto id = static_cast<uint32_t>(prediction.firstPacket + prediction.count);
        const auto offset = OffsetOfFullPacket(id);
        if (!offset || *offset + perPacket_ > buffer_->Size()) return;
        prediction.places[prediction.count++] = buffer_->Base() + *offset;
    }
}

// None for the last packet of a part, and where only the packet itself says where its data belong.
std::optional<uint64_t> OpenBlock::OffsetOfFullPacket(uint32_t packetId) const {
    if (packetId > limit_) return std::nullopt;
    if (LiesInRow()) return uint64_t{packetId - 1} * perPacket_;
    if (format_ != PacketFormat::PayloadMultiPart || firstIds_.empty()) return std::nullopt;
    const auto next = std::upper_bound(firstIds_.begin(), firstIds_.end(), packetId);
    const auto index = static_cast<size_t>(next - firstIds_.begin()) - 1;
    const PartPlace& part = description_.Parts()[index];
    const uint64_t offset = (packetId - firstIds_[index]) * perPacket_;
    if (offset + perPacket_ > part.length) return std::nullopt;
    return part.offset + offset;
}

// ---- What is missing ---------------------------------------------------------------------------

void OpenBlock::AddGapUpTo(uint64_t last) {
    if (static_cast<int64_t>(last) <= frontier_) return;
    if (!missing_.Add(static_cast<uint32_t>(frontier_ + 1), static_cast<uint32_t>(last),
                      times_.gapDue))
        hasTooManyGaps_ = true;
    frontier_ = static_cast<int64_t>(last);
}

// Of packets that have no room in the buffer, none is missing.
void OpenBlock::NoteArrival(uint32_t packetId) {
    if (packetId <= frontier_) {
        answered_ = missing_.Remove(packetId, times_.repeatDue);
        return;
    }
    if (packetId != 0) AddGapUpTo(std::min(packetId - 1, limit_));
    frontier_ = packetId;
}

void OpenBlock::AddTail(uint64_t last, Time due) {
    times_.gapDue = due;
    const uint64_t most = perPacket_ == 0 ? 1 : uint64_t{limit_} + 1;
    AddGapUpTo(std::min(last, most));
    FindRow();
}

void OpenBlock::CutTail(uint32_t first) {
    missing_.CutFrom(first);
    frontier_ = std::min(frontier_, int64_t{first} - 1);
    FindRow();
}

bool OpenBlock::IsCertain(uint32_t packetId) const {
    return packetId <= highestData_ || (HasTrailer() && packetId < trailerId_) ||
           packetId < StatedTrailer();
}

// ---- What is there
// -------------------------------------------------------------------------------

bool OpenBlock::EndsStatedSize(uint32_t packetId, size_t size) const {
    const auto stated = description_.StatedSize();
    return !stated || uint64_t{packetId - 1} * perPacket_ + size == *stated;
}

std::optional<uint64_t> OpenBlock::StatedPackets() const {
    const auto size = description_.StatedSize();
    if (!size || perPacket_ == 0) return std::nullopt;
    if (LiesInRow()) return PacketsFor(*size, perPacket_);
    if (format_ != PacketFormat::PayloadMultiPart || firstIds_.empty()) return std::nullopt;
    return firstIds_.back() + PacketsFor(description_.Parts().back().length, perPacket_) - 1;
}

uint32_t OpenBlock::StatedTrailer() const {
    const auto packets = StatedPackets();
    return packets && *packets < UINT32_MAX - 1 ? static_cast<uint32_t>(*packets + 1) : 0;
}

bool OpenBlock::IsWhole() const {
    if (isAllIn_) return true;
    if (isBroken_ || !description_.HasLeader() || !HasTrailer()) return false;
    const uint32_t packets = trailerId_ - 1;
    return packets == 0 || (perPacket_ != 0 && received_.Count() == std::min(packets, limit_));
}

bool OpenBlock::IsWholeBySize() const {
    if (isBroken_ || !description_.HasLeader() || HasTrailer() || !HasData()) return false;
    if (const auto packets = StatedPackets())
        return received_.Count() == std::min<uint64_t>(*packets, limit_);
    return description_.StatedSize() == bytes_;
}

uint64_t OpenBlock::NumReceived() const {
    if (isAllIn_) return 1;
    return uint64_t{received_.Count()} + (description_.HasLeader() ? 1 : 0) +
           (HasTrailer() ? 1 : 0);
}

uint64_t OpenBlock::NumLost() const {
    if (isAllIn_) return 0;
    const uint64_t trailer = HasTrailer() ? trailerId_ : StatedTrailer();
    const uint64_t data = trailer != 0 ? trailer - 1 : highestData_;
    const uint64_t lost = data - std::min<uint64_t>(data, received_.Count());
    return lost + (description_.HasLeader() ? 0 : 1) + (HasTrailer() ? 0 : 1);
}

uint64_t OpenBlock::Timestamp() const {
    return format_ == PacketFormat::PayloadH264 ? dataTimestamp_ : description_.Timestamp();
}

// The last packet may be filled up with padding, and then is a full one.
uint64_t OpenBlock::Size() const {
    uint64_t slack = 1;
    if (isAllIn_)
        slack = dataEnd_ + 1;
    else if (LiesInRow() && dataEnd_ == uint64_t{highestData_} * perPacket_)
        slack = perPacket_;
    return description_.SizeOf(dataEnd_, slack, buffer_->Size());
}

}  // namespace ZelGev
