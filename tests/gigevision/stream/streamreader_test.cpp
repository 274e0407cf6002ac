// Receiving packets straight into frames: whatever comes, each packet is handed over as it was
// sent, and data stand at the place of their packet or at none.
#include "producers/gigevision/stream/streamreader.h"

#include <algorithm>
#include <array>
#include <poll.h>
#include <random>
#include <set>
#include <sys/socket.h>

#include <gtest/gtest.h>
#include <linux/sock_diag.h>

#include "producers/gigevision/stream/streamsocket.h"
#include "producers/wire/gvsp.h"
#include "tests/gigevision/stream/packetsender.h"

using namespace ZelGev;
using GevTest::kLoopback;
using GevTest::PacketSender;
using WireTest::Bytes;
using ZelCti::ByteView;

namespace Gvsp = ZelCti::Gvsp;

namespace {

constexpr size_t kData = 500;       // of a packet
constexpr uint32_t kPackets = 200;  // of a frame

uint8_t ByteOf(uint64_t block, uint32_t packet, size_t i) {
    return static_cast<uint8_t>(block * 7 + packet * 31 + i);
}

Bytes Packet(uint64_t block, uint32_t id, bool extended = false, size_t size = kData,
             Gvsp::PacketFormat format = Gvsp::PacketFormat::Payload) {
    Gvsp::Header header;
    header.extended = extended;
    header.format = format;
    header.blockId = block;
    header.packetId = id;
    Bytes bytes(Gvsp::HeaderSize(extended) + size);
    const size_t begin = Gvsp::EncodeHeader({bytes.data(), bytes.size()}, header);
    for (size_t i = 0; i < size; ++i)
        bytes[begin + i] = ByteOf(block, id, i);
    return bytes;
}

// A frame that is being received: it predicts the packets after the newest one.
class Frame final : public PacketSink {
  public:
    explicit Frame(bool extended) : extended_(extended) {}

    void Predict(Prediction& next, size_t atMost) const override {
        next.extended = extended_;
        next.blockId = 1;
        next.firstPacket = newest_ + 1;
        next.headerSize = Gvsp::HeaderSize(extended_);
        next.dataSize = kData;
        next.count = std::min<size_t>(atMost, kPackets - newest_);
        for (size_t i = 0; i < next.count; ++i) {
            const auto id = static_cast<uint32_t>(next.firstPacket + i);
            next.places[i] = there_.count(id) != 0 ? nullptr : PlaceOf(id);
        }
    }

    void OnPacket(ByteView header, ByteView data) override {
        Bytes packet(header.data, header.data + header.size);
        packet.insert(packet.end(), data.data, data.data + data.size);
        packets.push_back(packet);
        const bool isInFrame = data.data >= memory_.data() &&
                               data.data < memory_.data() + memory_.size() && data.size != 0;
        numInPlace += isInFrame ? 1 : 0;
        const auto decoded = Gvsp::DecodePacket({packet.data(), packet.size()});
        const bool isMine = decoded && decoded->header.blockId == 1 &&
                            decoded->header.extended == extended_ &&
                            decoded->header.format == Gvsp::PacketFormat::Payload &&
                            decoded->header.packetId != 0 && decoded->header.packetId <= kPackets;
        if (!isMine) {
            EXPECT_FALSE(isInFrame) << "at the place of another packet";
            return;
        }
        const uint32_t id = decoded->header.packetId;
        EXPECT_TRUE(!isInFrame || data.data == PlaceOf(id));
        if (data.size != kData) return;
        if (!isInFrame && there_.count(id) == 0) std::copy_n(data.data, data.size, PlaceOf(id));
        there_.insert(id);
        newest_ = std::max(newest_, id);
    }

    // Whether all packets that came are where they belong.
    void ExpectIntact() {
        for (const uint32_t id : there_)
            for (size_t i = 0; i < kData; ++i)
                ASSERT_EQ(PlaceOf(id)[i], ByteOf(1, id, i)) << "packet " << id;
    }
    size_t Count() const { return there_.size(); }

    std::vector<Bytes> packets;
    size_t numInPlace = 0;

  private:
    uint8_t* PlaceOf(uint32_t id) const { return &memory_[(id - 1) * kData]; }

    bool extended_;
    uint32_t newest_ = 0;
    std::set<uint32_t> there_;
    mutable Bytes memory_ = Bytes(kPackets * kData);
};

// All that is sent at once fits the least socket buffer.
constexpr size_t kAtOnce = 40;

struct Case {
    ReceiveMethod method;
    bool joined;
    bool extended;
};

class SocketReading : public testing::TestWithParam<Case> {
  protected:
    void Send(const std::vector<Bytes>& packets) {
        for (size_t first = 0; first < packets.size();) {
            size_t count = 1;
            while (GetParam().joined && first + count < packets.size() && count < kAtOnce &&
                   packets[first + count - 1].size() == packets[first].size() &&
                   packets[first + count].size() <= packets[first].size())
                ++count;
            const auto begin = packets.begin() + static_cast<ptrdiff_t>(first);
            if (count == 1) {
                sender_.Send(*begin);
            } else {
                sender_.SendJoined({begin, begin + static_cast<ptrdiff_t>(count)});
            }
            first += count;
        }
        sent_.insert(sent_.end(), packets.begin(), packets.end());
    }

    // Sends these in lots, and reads each lot.
    void Pass(const std::vector<Bytes>& packets) {
        for (size_t first = 0; first < packets.size(); first += kAtOnce) {
            const auto begin = packets.begin() + static_cast<ptrdiff_t>(first);
            const size_t count = std::min(kAtOnce, packets.size() - first);
            Send({begin, begin + static_cast<ptrdiff_t>(count)});
            Receive();
        }
    }
    // Until all packets that were sent are there.
    void Receive() {
        constexpr int kPatienceMs = 10000;
        for (;;) {
            while (reader_.Read(frame_, false)) {
            }
            if (frame_.packets.size() >= sent_.size()) return;
            pollfd descriptor{reader_.Descriptor(), POLLIN, 0};
            ASSERT_EQ(poll(&descriptor, 1, kPatienceMs), 1) << "packets are missing";
        }
    }

    void ExpectAll() {
        EXPECT_EQ(frame_.packets, sent_);
        frame_.ExpectIntact();
    }

    Bytes Data(uint32_t id) const { return Packet(1, id, GetParam().extended); }
    Bytes Other(uint64_t block, uint32_t id, size_t size, Gvsp::PacketFormat format) const {
        return Packet(block, id, GetParam().extended, size, format);
    }

    void SetUp() override {
        if (GetParam().method != ReceiveMethod::Ring) return;
        reader_.Read(frame_, false);
        if (reader_.Method() != ReceiveMethod::Ring)
            GTEST_SKIP() << "packet rings need the capability CAP_NET_RAW";
    }

    StreamSocket socket_{{kLoopback, kLoopback, 0, 0}};
    PacketSender sender_{socket_.Port()};
    StreamReader reader_{socket_,
                         GetParam().method,
                         {kLoopback, kLoopback, socket_.Port(),
                          Gvsp::kIpUdpHeaderSize + Gvsp::HeaderSize(GetParam().extended) + kData}};
    Frame frame_{GetParam().extended};
    std::vector<Bytes> sent_;
};

std::string NameOf(const testing::TestParamInfo<Case>& info) {
    const auto method = info.param.method;
    return std::string(method == ReceiveMethod::Singly   ? "Singly"
                       : method == ReceiveMethod::Joined ? "Joined"
                       : method == ReceiveMethod::Ring   ? "Ring"
                                                         : "Automatic") +
           (info.param.joined ? "FromJoined" : "FromSingle") +
           (info.param.extended ? "Extended" : "");
}

INSTANTIATE_TEST_SUITE_P(Ways, SocketReading,
                         testing::Values(Case{ReceiveMethod::Singly, false, false},
                                         Case{ReceiveMethod::Singly, true, false},
                                         Case{ReceiveMethod::Joined, false, true},
                                         Case{ReceiveMethod::Joined, true, false},
                                         Case{ReceiveMethod::Joined, true, true},
                                         Case{ReceiveMethod::Ring, false, false},
                                         Case{ReceiveMethod::Ring, false, true},
                                         Case{ReceiveMethod::Automatic, false, true},
                                         Case{ReceiveMethod::Automatic, true, false}),
                         NameOf);

}  // namespace

TEST_P(SocketReading, PacketsInTheirOrderNeedNoCopy) {
    std::vector<Bytes> packets{Other(1, 0, 36, Gvsp::PacketFormat::Leader)};
    for (uint32_t id = 1; id <= kPackets; ++id)
        packets.push_back(Data(id));
    packets.push_back(Other(1, kPackets + 1, 8, Gvsp::PacketFormat::Trailer));
    Pass(packets);
    ExpectAll();
    EXPECT_EQ(frame_.Count(), kPackets);
    if (GetParam().method == ReceiveMethod::Ring) return;
    // Those of the first lots are behind the leader, or the reader does not yet know that they are
    // joined.
    EXPECT_GE(frame_.numInPlace, kPackets - 4 * kAtOnce);
}

TEST_P(SocketReading, PacketsInAnyOrderGetWhereTheyBelong) {
    for (uint32_t seed = 1; seed <= 20; ++seed) {
        std::mt19937 random(seed);
        frame_ = Frame(GetParam().extended);
        sent_.clear();
        std::vector<Bytes> packets;
        for (uint32_t id = 1; id <= kPackets; ++id) {
            const uint32_t fate = random() % 16;
            if (fate == 0) continue;
            packets.push_back(Data(id));
            if (fate == 1) packets.push_back(Data(id));
            if (fate == 2) packets.push_back(Other(2, id, kData, Gvsp::PacketFormat::Payload));
            if (fate == 3) packets.push_back(Packet(1, id, !GetParam().extended));
            if (fate == 4) packets.push_back(Other(1, id, 36, Gvsp::PacketFormat::Leader));
            if (fate == 5) packets.push_back(Other(1, id, kData / 2, Gvsp::PacketFormat::Payload));
            if (fate == 6) packets.push_back(Other(1, id, 2 * kData, Gvsp::PacketFormat::Payload));
            if (fate == 7) packets.push_back(Bytes(random() % 8 + 1, 0x83));
        }
        for (size_t i = 0; i + 16 < packets.size(); i += 1 + random() % 16)
            std::swap(packets[i], packets[i + random() % 16]);
        Pass(packets);
        ExpectAll();
        if (testing::Test::HasFailure()) FAIL() << "seed " << seed;
    }
}

TEST_P(SocketReading, ATrailerJoinedWithTheLastDataIsAPacketOfItsOwn) {
    Pass({Other(1, 7, kData / 3, Gvsp::PacketFormat::Payload),
          Other(1, 8, 8, Gvsp::PacketFormat::Trailer)});
    ExpectAll();
}

TEST_P(SocketReading, TheReaderFollowsWhatTheKernelJoins) {
    std::vector<Bytes> packets;
    for (uint32_t i = 0; i < 40 * kAtOnce; ++i)
        packets.push_back(Data(1 + i % kPackets));
    for (size_t i = 0; i < 4; ++i)
        Pass(packets);
    const bool isJoined = GetParam().method == ReceiveMethod::Joined ||
                          (GetParam().method == ReceiveMethod::Automatic && GetParam().joined);
    EXPECT_EQ(reader_.Method() == ReceiveMethod::Joined, isJoined);
    ExpectAll();
    if (GetParam().method != ReceiveMethod::Automatic) return;
    for (size_t i = 0; i < 150; ++i) {
        sender_.Send(Data(1));
        reader_.Read(frame_, false);
    }
    EXPECT_NE(reader_.Method(), ReceiveMethod::Joined);
}

class RingReading : public SocketReading {};

INSTANTIATE_TEST_SUITE_P(Ways, RingReading,
                         testing::Values(Case{ReceiveMethod::Ring, false, false},
                                         Case{ReceiveMethod::Ring, false, true}),
                         NameOf);

TEST_P(RingReading, WhatTheRingTakesDoesNotComeTwice) {
    Pass({Data(1), Data(2)});
    uint8_t byte = 0;
    EXPECT_EQ(recv(socket_.Descriptor(), &byte, 1, MSG_DONTWAIT), -1);
    EXPECT_EQ(reader_.NumDropped(), 0U) << "what the socket leaves to the ring is not lost";
}

TEST_P(RingReading, JoinedPacketsAreCutAndThenReadFromTheSocket) {
    std::vector<Bytes> packets;
    for (uint32_t id = 1; id <= 2 * kAtOnce; ++id)
        packets.push_back(Data(id));
    const auto half = packets.begin() + kAtOnce;
    sender_.SendJoined({packets.begin(), half});
    sent_.assign(packets.begin(), half);
    Receive();
    EXPECT_NE(reader_.Method(), ReceiveMethod::Ring);
    sender_.SendJoined({half, packets.end()});
    sent_ = packets;
    Receive();
    ExpectAll();
}

TEST_P(RingReading, FragmentsAreLeftToTheSocket) {
    // The ring sees the first fragment only, and the datagram is lost.
    sender_.SendInFragments(Data(1), 256);
    while (reader_.Method() == ReceiveMethod::Ring) {
        pollfd descriptor{reader_.Descriptor(), POLLIN, 0};
        ASSERT_EQ(poll(&descriptor, 1, 10000), 1);
        reader_.Read(frame_, false);
    }
    EXPECT_TRUE(frame_.packets.empty());
    sender_.SendInFragments(Data(2), 256);
    sent_ = {Data(2)};
    Receive();
    ExpectAll();
}

TEST(StreamSocket, OnlyTheCameraGetsIn) {
    const StreamSocket socket({kLoopback, kLoopback + 1, 0, 0});
    const PacketSender camera(socket.Port(), kLoopback + 1);
    const PacketSender other(socket.Port(), kLoopback + 2);
    other.Send({1});
    camera.Send({2, 2});
    other.Send({3});
    std::array<uint8_t, 4> memory{};
    EXPECT_EQ(recv(socket.Descriptor(), memory.data(), memory.size(), MSG_DONTWAIT), 2);
    EXPECT_EQ(recv(socket.Descriptor(), memory.data(), memory.size(), MSG_DONTWAIT), -1);
}

TEST(StreamSocket, TheBufferIsAsLargeAsTheSystemAllows) {
    StreamSocket socket({kLoopback, 0, 0, 0});
    const size_t size = socket.BufferSize();
    EXPECT_EQ(socket.BufferAdvice().empty(), size >= StreamSocket::kDefaultBuffer);
    socket.SetBufferSize(1 << 16);
    EXPECT_EQ(socket.BufferSize(), 1U << 16);
    EXPECT_EQ(socket.BufferAdvice(), "");
}

TEST(StreamSocket, WhatFindsNoRoomIsCountedAndTheRestIsDrained) {
    StreamSocket socket({kLoopback, 0, 0, 0});
    std::array<uint32_t, SK_MEMINFO_VARS> memory{};
    socklen_t length = sizeof memory;
    if (getsockopt(socket.Descriptor(), SOL_SOCKET, SO_MEMINFO, memory.data(), &length) != 0 ||
        length < sizeof memory)
        GTEST_SKIP() << "the system, or its emulator, does not count";
    socket.SetBufferSize(1 << 16);
    const PacketSender sender(socket.Port());
    for (int i = 0; i < 200; ++i)
        sender.Send(Bytes(1000));
    EXPECT_GT(socket.NumDropped(), 0U);
    EXPECT_LT(socket.NumDropped(), 200U);
    socket.Drain();
    uint8_t byte = 0;
    EXPECT_EQ(recv(socket.Descriptor(), &byte, 1, MSG_DONTWAIT), -1);
}
