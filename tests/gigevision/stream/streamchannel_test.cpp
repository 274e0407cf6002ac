// The registers of stream channels, and the packet size, with simulated cameras on loopback.
#include "producers/gigevision/stream/streamchannel.h"

#include <gtest/gtest.h>

#include "tests/gigevision/stream/simulatedlink.h"

using namespace ZelGev;
using GevTest::SimulatedLink;

namespace Gev = ZelCti::Gev;

namespace {

using Aim = PacketSizeSearch::Aim;

class StreamChannels : public testing::Test {
  protected:
    void Connect(const std::string& network = {}) {
        link_.emplace("width='64' height='32'", network);
        socket_.emplace(
            StreamSocket::Place{link_->Place().hostAddress, link_->Place().camera.address, 0, 0});
        channel_.emplace(*link_, 0);
        channel_->Open({link_->Place().hostAddress, socket_->Port()});
    }
    uint32_t Read(const Gev::Register& reg) { return link_->ReadRegister(reg.address); }

    // The size that a search leaves.
    uint32_t Find(PacketSizeSearch::Aim aim, bool arrives = true) {
        EXPECT_EQ(channel_->FindPacketSize(aim, *socket_), arrives);
        return channel_->PacketSize();
    }

    std::optional<SimulatedLink> link_;
    std::optional<StreamSocket> socket_;
    std::optional<StreamChannel> channel_;
};

}  // namespace

TEST_F(StreamChannels, TheCameraSendsWhereItIsTold) {
    Connect();
    EXPECT_EQ(Read(Gev::kScda), 0x7F000001U);
    EXPECT_EQ(Read(Gev::kScp), socket_->Port());
    EXPECT_EQ(channel_->Destination(), (ZelCti::Endpoint{0x7F000001, socket_->Port()}));
    EXPECT_EQ(channel_->SourcePort(), Read(Gev::kScsp));
    channel_->Close();
    EXPECT_EQ(Read(Gev::kScp), 0U);
}

TEST_F(StreamChannels, ALostCameraIsNotAskedToClose) {
    Connect();
    link_->isLost = true;
    channel_->Close();
    EXPECT_EQ(Read(Gev::kScp), socket_->Port());
}

TEST_F(StreamChannels, ThePresentPacketSizeStaysWhereItArrives) {
    Connect("OwnPacketSize='1400'");
    const uint32_t scps = Read(Gev::kScps);
    EXPECT_EQ(Find(Aim::Keep), 1400U);
    EXPECT_EQ(Read(Gev::kScps), scps) << "fragmentation is allowed as before";
}

TEST_F(StreamChannels, APresentPacketSizeThatDoesNotArriveIsReplaced) {
    Connect("OwnPacketSize='9000' PathMtu='4000'");
    const uint32_t size = Find(Aim::Keep);
    EXPECT_LE(size, 4000U);
    EXPECT_GT(size, 3968U);
}

TEST_F(StreamChannels, TheLargestPacketsAreThoseOfOurLink) {
    Connect("IgnoreDontFragment='true'");
    link_->Way().mtu = 9000;
    EXPECT_EQ(Find(Aim::Largest), 9000U);
}

TEST_F(StreamChannels, CamerasWithOddTestPackets) {
    for (const char* const network :
         {"FirstTestPacketsLost='2'", "TestPacketDelayMs='200'", "PacketSizeRounding='16'",
          "PacketSizeRounding='16' RefuseUnalignedPacketSize='true'", "ScspZero='true'"}) {
        Connect(network);
        link_->Way().mtu = 9000;
        EXPECT_GE(Find(Aim::Largest), 8992U) << network;
    }
}

TEST_F(StreamChannels, WithoutTestPacketsTheSizeStays) {
    Connect("FirstTestPacketsLost='1000' OwnPacketSize='1400'");
    EXPECT_EQ(Find(Aim::Largest, false), 1400U);
}

TEST_F(StreamChannels, AChannelIsRenewedUnlessItIsLocked) {
    Connect();
    const StreamSocket& socket = *socket_;
    link_->WriteRegister(Gev::kScps.address, Gev::Scps::kFireTestPacket | 1000);
    channel_->Renew(socket);
    EXPECT_EQ(Read(Gev::kScp), socket.Port());

    // Closing it behind the channel's back shows whether it opens it again.
    link_->WriteRegister(Gev::kScp.address, 0);
    channel_->Renew(socket);
    EXPECT_EQ(Read(Gev::kScp), socket.Port());
}
