#include "producers/gigevision/stream/socketreader.h"

#include <algorithm>
#include <cstring>
#include <netinet/in.h>
#include <netinet/udp.h>

namespace ZelGev {

using ZelCti::ByteView;

namespace {

constexpr size_t kMinMessages = 4;
constexpr size_t kMinJoined = 8;

// Memory of messages begins at different places of a page, so that their headers do not compete for
// the same lines of the cache.
constexpr size_t kStagger = 192;

// Whether it is that packet of the prediction, by its header.
bool IsPredicted(ByteView packet, const Prediction& prediction, size_t index) {
    if (packet.size < prediction.headerSize) return false;
    const PacketKind kind = KindOf(packet);
    if (kind.extended != prediction.extended || kind.format != prediction.format) return false;
    const uint64_t packetId = uint64_t{prediction.firstPacket} + index;
    if (kind.extended) return packet.U64(8) == prediction.blockId && packet.U32(16) == packetId;
    return packet.U16(2) == prediction.blockId && packet.U24(5) == packetId;
}

}  // namespace

// ---- One datagram ------------------------------------------------------------------------------

void SocketReader::Slot::Add(uint8_t* data, size_t size) {
    pieces_[numPieces_++] = {data, size};
}

void SocketReader::Slot::Expect(uint8_t* memory, const Prediction& prediction, size_t first,
                                size_t count) {
    memory_ = memory;
    first_ = first;
    const size_t packet = prediction.headerSize + prediction.dataSize;
    numExpected_ = first < prediction.count ? std::min(count, prediction.count - first) : 0;
    if (packet != 0) numExpected_ = std::min(numExpected_, kMaxDatagram / packet);
    numPieces_ = 0;
    size_t offset = 0;    // of the next packet in the datagram
    size_t unplaced = 0;  // begin of the bytes for which there is no piece yet
    for (size_t i = 0; i < numExpected_; ++i, offset += packet) {
        uint8_t* const place = prediction.places[first + i];
        if (place == nullptr) continue;
        Add(memory + unplaced, offset + prediction.headerSize - unplaced);
        Add(place, prediction.dataSize);
        unplaced = offset + packet;
    }
    Add(memory + unplaced, kMaxDatagram - unplaced);
}

ByteView SocketReader::Slot::Packet(size_t index) const {
    const size_t offset = index * segment_;
    return {memory_ + offset, std::min(segment_, size_ - offset)};
}

// Whether the packet's data, if it has any, went to a place in a frame.
bool SocketReader::Slot::IsPlaced(size_t index, const Prediction& prediction) const {
    return index < numExpected_ && prediction.places[first_ + index] != nullptr &&
           Packet(index).size > prediction.headerSize;
}

// Whether all data that went to a place in a frame belong there. Only packets of the length that
// was expected do: those behind shorter ones lie elsewhere in the datagram, and elsewhere in the
// frame, too. The last one of a block may be shorter.
bool SocketReader::Slot::IsAsExpected(const Prediction& prediction) const {
    if (numExpected_ == 0) return true;
    const size_t expected = prediction.headerSize + prediction.dataSize;
    if (segment_ > expected || (numPackets_ > 1 && segment_ != expected)) return false;
    const size_t count = std::min(numPackets_, numExpected_);
    for (size_t i = 0; i < count; ++i) {
        if (!IsPlaced(i, prediction)) continue;
        const bool mayBeShort = first_ + i + 1 == prediction.count;
        if (Packet(i).size != expected && !mayBeShort) return false;
        if (!IsPredicted(Packet(i), prediction, first_ + i)) return false;
    }
    return true;
}

// Makes one piece of the datagram.
void SocketReader::Slot::Gather() {
    size_t offset = 0;
    for (size_t i = 0; i < numPieces_ && offset < size_; ++i) {
        const iovec& piece = pieces_[i];
        const bool isPlace = piece.iov_base != memory_ + offset;
        if (isPlace)
            std::memcpy(memory_ + offset, piece.iov_base, std::min(piece.iov_len, size_ - offset));
        offset += piece.iov_len;
    }
    numMoved_ = std::min(numPackets_, numExpected_);
    numExpected_ = 0;
}

void SocketReader::Slot::Receive(size_t size, size_t segment, const Prediction& prediction) {
    size_ = size;
    segment_ = segment == 0 || segment > size ? std::max<size_t>(size, 1) : segment;
    numPackets_ = std::max<size_t>(1, (size + segment_ - 1) / segment_);
    numMoved_ = 0;
    if (!IsAsExpected(prediction)) Gather();
}

void SocketReader::Slot::HandOver(PacketSink& sink, const Prediction& prediction) const {
    for (size_t i = 0; i < numPackets_; ++i) {
        const ByteView packet = Packet(i);
        if (IsPlaced(i, prediction)) {
            sink.OnPacket(packet.Sub(0, prediction.headerSize),
                          {prediction.places[first_ + i], packet.size - prediction.headerSize});
        } else {
            ZelGev::HandOver(sink, packet);
        }
    }
}

// ---- The reader --------------------------------------------------------------------------------

SocketReader::SocketReader(const StreamSocket& socket, ReceiveMethod method)
    : socket_(socket),
      isAutomatic_(method == ReceiveMethod::Automatic),
      droppedBefore_(socket.NumDropped()),
      isJoined_(method == ReceiveMethod::Joined),
      memory_(new uint8_t[kMaxMessages * (kMaxDatagram + kStagger)]),
      slots_(new Slot[kMaxMessages]) {
    socket.JoinPackets(method != ReceiveMethod::Singly);
}

bool SocketReader::Read(PacketSink& sink, bool mayWait) {
    const bool isMore = isJoined_ ? ReadJoined(sink, mayWait) : ReadSingly(sink, mayWait);
    Watch();
    return isMore;
}

bool SocketReader::ReadSingly(PacketSink& sink, bool mayWait) {
    prediction_.count = 0;
    sink.Predict(prediction_, numMessages_);
    for (size_t i = 0; i < numMessages_; ++i) {
        slots_[i].Expect(&memory_[i * (kMaxDatagram + kStagger)], prediction_, i, 1);
        Prepare(i);
    }
    const int received =
        recvmmsg(Descriptor(), messages_.data(), static_cast<unsigned>(numMessages_),
                 mayWait ? MSG_WAITFORONE : MSG_DONTWAIT, nullptr);
    if (received <= 0) return false;
    const auto count = static_cast<size_t>(received);
    const bool isFull = count == numMessages_;
    // All data that lie in the wrong place are moved before anybody writes to these places.
    for (size_t i = 0; i < count; ++i)
        Accept(i, messages_[i].msg_len);
    for (size_t i = 0; i < count; ++i)
        slots_[i].HandOver(sink, prediction_);
    numMessages_ = std::clamp(2 * count, kMinMessages, kMaxMessages);
    return isFull;
}

bool SocketReader::ReadJoined(PacketSink& sink, bool mayWait) {
    prediction_.count = 0;
    // A list that is longer than the datagram costs time for nothing.
    const size_t most = std::clamp(2 * slots_[0].NumPackets(), kMinJoined, Prediction::kMostPlaces);
    sink.Predict(prediction_, most);
    slots_[0].Expect(&memory_[0], prediction_, 0, most);
    Prepare(0);
    const ssize_t size = recvmsg(Descriptor(), &messages_[0].msg_hdr, mayWait ? 0 : MSG_DONTWAIT);
    if (size < 0) return false;
    Accept(0, static_cast<size_t>(size));
    slots_[0].HandOver(sink, prediction_);
    return true;
}

void SocketReader::Prepare(size_t index) {
    msghdr& message = messages_[index].msg_hdr;
    message.msg_iov = slots_[index].Pieces();
    message.msg_iovlen = slots_[index].NumPieces();
    message.msg_control = controls_[index].bytes.data();
    message.msg_controllen = controls_[index].bytes.size();
}

// Reads what the kernel says of a datagram.
void SocketReader::Accept(size_t index, size_t size) {
    msghdr& message = messages_[index].msg_hdr;
    int segment = 0;
    for (cmsghdr* c = CMSG_FIRSTHDR(&message); c != nullptr; c = CMSG_NXTHDR(&message, c))
        if (c->cmsg_level == IPPROTO_UDP && c->cmsg_type == UDP_GRO)
            std::memcpy(&segment, CMSG_DATA(c), sizeof segment);
    Slot& slot = slots_[index];
    slot.Receive(size, static_cast<size_t>(std::max(segment, 0)), prediction_);
    ++counts_.datagrams;
    counts_.packets += slot.NumPackets();
    counts_.moved += slot.NumMoved();
}

// Chooses the way, whenever a hundred packets or joined datagrams have come.
void SocketReader::Watch() {
    constexpr uint64_t kLook = 100;
    const uint64_t datagrams = counts_.datagrams - watchedDatagrams_;
    const uint64_t packets = counts_.packets - watchedPackets_;
    if (!isAutomatic_ || (isJoined_ ? datagrams : packets) < kLook) return;
    isJoined_ = packets >= 2 * datagrams;
    watchedDatagrams_ = counts_.datagrams;
    watchedPackets_ = counts_.packets;
}

}  // namespace ZelGev
