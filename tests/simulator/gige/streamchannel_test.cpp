// Stream channels as an application on the network sees them: what arrives at a socket, byte by
// byte.
#include "producers/simulator/gige/stream/streamchannel.h"

#include <thread>

#include <gtest/gtest.h>

#include "producers/wire/bootstrapbits.h"
#include "tests/simulator/gige/streamreceiver.h"
#include "tests/support/allocationfaults.h"

using namespace ZelSim;
using namespace WireTest;
using GigeTest::kLoopback;
using GigeTest::StreamReceiver;

using ZelCti::FrameInfo;

namespace Scps = ZelCti::Gev::Scps;
namespace Sccfg = ZelCti::Gev::Sccfg;

namespace {

// Pixels 0 to 15 are the number of the frame and the time; the others are 0.
CameraConfig SmallCamera() {
    CameraConfig config;
    config.id = "SMALL";
    config.width = 64;
    config.height = 16;
    config.frameRate = 0;
    config.noFill = true;
    return config;
}

// A camera with a channel to a receiver. Frames of 1,024 bytes are two packets of data.
class StreamChannels : public testing::Test {
  protected:
    static constexpr size_t kPacketsOfBlock = 4;
    static constexpr uint32_t kPacketSize = 556;  // 520 bytes of data

    StreamChannel& Channel() {
        if (channel_ == nullptr) {
            channel_ = std::make_unique<StreamChannel>(camera_, kLoopback,
                                                       [this] { return switches_.Settings(); });
            channel_->SetDestination(kLoopback);
            channel_->SetPacketSize(kPacketSize);
        }
        return *channel_;
    }

    void Set(std::string_view name, std::string_view text) { switches_.Set(name, text); }

    void Open() { Channel().SetPort(receiver_.Port()); }

    // So many frames are taken.
    void Take(uint32_t numFrames) {
        // The last frame may arrive before the camera notes that it was the last.
        while (camera_.GetAcquisition().Is(Acquisition::Status::AcquisitionActive))
            std::this_thread::yield();
        camera_.Control().Change([&](FrameSettings& settings) {
            settings.acquisitionMode = AcquisitionMode::MultiFrame;
            settings.acquisitionFrameCount = numFrames;
        });
        camera_.Control().LockByClient(true);
        camera_.GetAcquisition().Start();
    }

    Bytes Next() { return receiver_.Next(); }
    void Skip(size_t numPackets) {
        for (size_t i = 0; i < numPackets; ++i)
            ASSERT_FALSE(Next().empty());
    }
    Bytes NextHeader() {
        Bytes packet = Next();
        packet.resize(std::min<size_t>(packet.size(), 8));
        return packet;
    }

    void Resend(uint64_t blockId, uint32_t first, uint32_t last) {
        ZelCti::Gvcp::PacketResend request;
        request.blockId = blockId;
        request.firstPacket = first;
        request.lastPacket = last;
        Channel().Resend(request, {kLoopback, other_.Port()});
    }

    // What has arrived is counted when the channel is closed at the latest.
    StreamStatistics FinalStatistics() {
        Channel().SetPort(0);
        return Channel().Statistics();
    }

    // Whether nothing was to come before a test packet that is fired now.
    bool NextIsTestPacket() {
        Channel().FireTestPacket();
        return NextHeader() == Hex("00000000 03000000");
    }

    Camera camera_{SmallCamera(), "GEV", ZelSim::PermanentMemory(SmallCamera())};
    NetworkSwitches switches_;
    StreamReceiver receiver_;
    StreamReceiver other_;
    std::unique_ptr<StreamChannel> channel_;  // ends before what it uses
};

}  // namespace

TEST_F(StreamChannels, AFrameArrivesInOrderFromTheSourcePort) {
    Open();
    Take(1);
    const Bytes leader = Next();
    ASSERT_EQ(leader.size(), 44U);
    EXPECT_EQ(Bytes(leader.begin(), leader.begin() + 12), Hex("00000001 01000000 00000001"));
    EXPECT_EQ(Bytes(leader.begin() + 20, leader.end()),
              Hex("01080001 00000040 00000010 00000000 00000000 0000 0000"));
    EXPECT_EQ(receiver_.Sender(), (ZelCti::Endpoint{kLoopback, Channel().SourcePort()}));
    const Bytes first = Next();
    ASSERT_EQ(first.size(), 8U + 520U);
    EXPECT_EQ(Bytes(first.begin(), first.begin() + 16), Hex("00000001 03000001 0000000000000000"));
    const Bytes second = Next();
    ASSERT_EQ(second.size(), 8U + 504U);
    EXPECT_EQ(Bytes(second.begin(), second.begin() + 8), Hex("00000001 03000002"));
    EXPECT_EQ(Next(), Hex("00000001 02000003 00000001 00000010"));
    EXPECT_TRUE(NextIsTestPacket());
    const StreamStatistics statistics = FinalStatistics();
    EXPECT_EQ(statistics.blocks, 1U);
    EXPECT_EQ(statistics.lostBlocks, 0U);
}

TEST_F(StreamChannels, LargeFramesArriveAsTheCameraDrewThem) {
    CameraConfig config = SmallCamera();
    config.width = 1280;
    config.height = 200;
    config.noFill = false;
    config.frameRate = 10;
    Camera camera(config, "GEV", ZelSim::PermanentMemory(config));
    StreamChannel channel(camera, kLoopback, [this] { return switches_.Settings(); });
    channel.SetDestination(kLoopback);
    channel.SetPacketSize(1500);
    channel.SetPort(receiver_.Port());
    camera.Control().LockByClient(true);
    camera.GetAcquisition().Start();

    Bytes wanted(size_t{config.width} * config.height);
    camera.Picture(*camera.Settings())->Draw(0, wanted.data(), config.height);
    Bytes image;
    EXPECT_EQ(Next().size(), 44U);
    for (uint8_t id = 1; id <= 175; ++id) {
        const Bytes packet = Next();
        ASSERT_GT(packet.size(), 8U);
        ASSERT_EQ(packet[7], id);
        image.insert(image.end(), packet.begin() + 8, packet.end());
    }
    EXPECT_EQ(image, wanted);
    EXPECT_EQ(Next(), Hex("00000001 020000b0 00000001 000000c8"));
}

TEST_F(StreamChannels, ExtendedIdsMultiPartAndAllInAreChosenByRegisters) {
    Channel().SetExtendedIds(true);
    Channel().SetPacketSize(kPacketSize + 20);
    Open();
    Take(1);
    EXPECT_EQ(NextHeader(), Hex("00000000 81000000"));
    Skip(3);

    Channel().SetConfiguration(Sccfg::kMultiPart);
    Take(1);
    EXPECT_EQ(NextHeader(), Hex("00000000 81000001"));
    EXPECT_EQ(NextHeader(), Hex("00000000 87000000"));
    Skip(2);

    Channel().SetExtendedIds(false);
    Channel().SetConfiguration(Sccfg::kAllIn);
    Channel().SetPacketSize(1500);
    Take(1);
    const Bytes block = Next();
    EXPECT_EQ(block.size(), 8U + 36U + 8U + 1024U);
    EXPECT_EQ(Bytes(block.begin(), block.begin() + 8), Hex("00000003 04000000"));
}

TEST_F(StreamChannels, PixelsOfPartsAreSentInTheOrderThatTheRegisterSays) {
    CameraConfig config = SmallCamera();
    config.noFill = false;
    config.payload = PayloadForm::MultiPart;
    Camera camera(config, "GEV", ZelSim::PermanentMemory(config));
    StreamChannel channel(camera, kLoopback, [this] { return switches_.Settings(); });
    channel.SetDestination(kLoopback);
    channel.SetPacketSize(5000 | Scps::kBigEndianPixels);
    channel.SetExtendedIds(true);
    channel.SetConfiguration(Sccfg::kMultiPart);
    channel.SetPort(receiver_.Port());
    camera.Control().LockByClient(true);
    camera.GetAcquisition().Start();
    Skip(2);
    const Bytes range = Next();
    ASSERT_EQ(range.size(), 28U + 2048);
    EXPECT_EQ(range[28 + 1], 0);
    EXPECT_EQ(range[28 + 3], 2) << "the value of the second pixel";
    const Bytes confidence = Next();
    ASSERT_EQ(confidence.size(), 28U + 1024);
    EXPECT_EQ(confidence[28 + 3], 3);
}

TEST_F(StreamChannels, BlockIdsBeginWithTheChannelAndSkipZero) {
    Set("FirstBlockId", "65535");
    Open();
    Take(2);
    EXPECT_EQ(NextHeader(), Hex("0000ffff 01000000"));
    Skip(kPacketsOfBlock - 1);
    EXPECT_EQ(NextHeader(), Hex("00000001 01000000"));
    Skip(kPacketsOfBlock - 1);
    Take(1);  // goes on
    EXPECT_EQ(NextHeader(), Hex("00000002 01000000"));
    Skip(kPacketsOfBlock - 1);
    Channel().SetPort(0);
    Open();
    Take(1);
    EXPECT_EQ(NextHeader(), Hex("0000ffff 01000000"));
}

TEST_F(StreamChannels, AFrameThatTheCameraLostLeavesAGap) {
    CameraConfig config = SmallCamera();
    config.dropEvery = 2;
    Camera camera(config, "GEV", ZelSim::PermanentMemory(config));
    StreamChannel channel(camera, kLoopback, [this] { return switches_.Settings(); });
    channel.SetDestination(kLoopback);
    channel.SetPacketSize(2000);
    channel.SetExtendedIds(true);
    channel.SetPort(receiver_.Port());
    camera.Control().Change([](FrameSettings& settings) {
        settings.acquisitionMode = AcquisitionMode::MultiFrame;
        settings.acquisitionFrameCount = 3;
    });
    camera.Control().LockByClient(true);
    camera.GetAcquisition().Start();
    Bytes leader = Next();
    EXPECT_EQ(Bytes(leader.begin(), leader.begin() + 16),
              Hex("00000000 81000000 0000000000000001"));
    Skip(2);
    leader = Next();
    EXPECT_EQ(Bytes(leader.begin(), leader.begin() + 16),
              Hex("00000002 81000000 0000000000000003"));
    Skip(2);
    channel.SetPort(0);
    EXPECT_EQ(channel.Statistics().lostBlocks, 1U);
}

// Without a frame rate, the camera sends as fast as it can.
TEST_F(StreamChannels, NoPacketLeavesAfterTheChannelIsClosed) {
    Open();
    camera_.Control().LockByClient(true);
    camera_.GetAcquisition().Start();
    Skip(100);
    Channel().SetPort(0);
    receiver_.Drain();
    EXPECT_FALSE(camera_.GetAcquisition().Is(Acquisition::Status::AcquisitionActive));
    Resend(1, 0, 3);
    Channel().FireTestPacket();
    EXPECT_TRUE(receiver_.IsEmpty());
    EXPECT_FALSE(Channel().IsOpen());

    Open();
    EXPECT_TRUE(NextIsTestPacket());  // of the other requests nothing is left
}

TEST_F(StreamChannels, AnotherPortGetsWhatFollows) {
    Open();
    Take(1);
    Skip(kPacketsOfBlock);
    Channel().SetPort(other_.Port());
    Take(1);
    EXPECT_EQ(other_.Next().size(), 44U);
    EXPECT_TRUE(receiver_.IsEmpty());
}

TEST_F(StreamChannels, ThePacketSizeIsRoundedLimitedOrRefused) {
    EXPECT_EQ(Channel().SetPacketSize(1503), 1500U);
    EXPECT_EQ(Channel().SetPacketSize(Scps::kDoNotFragment | 9000), Scps::kDoNotFragment | 9000);
    EXPECT_EQ(Channel().SetPacketSize(Scps::kFireTestPacket | Scps::kBigEndianPixels | 65535),
              Scps::kBigEndianPixels | 16384);
    EXPECT_EQ(Channel().SetPacketSize(1), 256U);
    Set("PacketSizeRounding", "16");
    EXPECT_EQ(Channel().SetPacketSize(1500), 1488U);
    Set("RefuseUnalignedPacketSize", "true");
    EXPECT_EQ(Channel().SetPacketSize(1500), 1488U);
    EXPECT_EQ(Channel().SetPacketSize(1504), 1504U);
}

TEST_F(StreamChannels, TestPacketsLeaveAsTheyWereFired) {
    Channel().FireTestPacket();  // of a closed channel: none
    Set("FirstTestPacketsLost", "1");
    Set("PathMtu", "2000");
    Open();
    Channel().SetPacketSize(1500);
    Channel().FireTestPacket();
    Channel().SetPacketSize(2004);
    Channel().FireTestPacket();
    Channel().SetPacketSize(2000);
    Channel().FireTestPacket();
    Channel().SetPacketSize(600);
    Channel().SetDestination(0);
    const Bytes packet = Next();
    ASSERT_EQ(packet.size(), 2000U - 28U);
    EXPECT_EQ(Bytes(packet.begin(), packet.begin() + 12), Hex("00000000 03000000 00010203"));
}

TEST_F(StreamChannels, BytesOfPixelsAreSwappedWhenTheRegisterSaysSo) {
    const PixelFormat* const mono16 = FindPixelFormat("Mono16");
    ASSERT_NE(mono16, nullptr);
    camera_.Control().Change([&](FrameSettings& settings) {
        settings.pixelFormat = mono16;
        settings.width = 32;
    });
    Channel().SetPacketSize(Scps::kBigEndianPixels | 2000);
    Open();
    Take(2);
    Skip(4);
    const Bytes second = Next();  // frame 1: its number is written little endian
    ASSERT_EQ(second.size(), 8U + 1024U);
    EXPECT_EQ(Bytes(second.begin() + 8, second.begin() + 12), Hex("00010000"));
}

// ---- Packets that are sent again
// -----------------------------------------------------------------

TEST_F(StreamChannels, PacketsComeAgainWithTheirStatus) {
    Open();
    Take(1);
    const Bytes leader = Next();
    Skip(1);
    Bytes data = Next();
    Skip(1);
    Resend(1, 2, 2);
    data[0] = 0x01;
    EXPECT_EQ(Next(), data);
    Resend(1, 0, 0xFFFFFF);
    EXPECT_EQ(NextHeader(), Hex("01000001 01000000"));
    EXPECT_EQ(NextHeader(), Hex("01000001 03000001"));
    EXPECT_EQ(NextHeader(), Hex("01000001 03000002"));
    EXPECT_EQ(Next(), Hex("01000001 02000003 00000001 00000010"));
    EXPECT_TRUE(NextIsTestPacket());
    EXPECT_EQ(FinalStatistics().resent, 5U);
}

TEST_F(StreamChannels, WhatIsNotThereIsRefusedWithAReason) {
    Set("ResendMemoryBlocks", "2");
    Open();
    Take(4);
    Skip(4 * kPacketsOfBlock);
    Resend(2, 1, 1);
    EXPECT_EQ(Next(), Hex("800c0002 03000001"));
    Channel().SetStatusCodes(true);
    Resend(2, 1, 2);
    EXPECT_EQ(Next(), Hex("80110002 03000001"));
    EXPECT_EQ(Next(), Hex("80110002 03000002"));
    Resend(5, 1, 1);
    EXPECT_EQ(Next(), Hex("800c0005 03000001"));
    Resend(3, 3, 4);
    EXPECT_EQ(NextHeader(), Hex("01000003 02000003"));
    EXPECT_EQ(Next(), Hex("800c0003 03000004"));
    EXPECT_EQ(FinalStatistics().refused, 5U);
}

TEST_F(StreamChannels, ARequestForAllPacketsThereCouldBeIsAnsweredBriefly) {
    Channel().SetExtendedIds(true);
    Channel().SetPacketSize(kPacketSize + 12);
    Open();
    Take(1);
    Skip(kPacketsOfBlock);
    ZelCti::Gvcp::PacketResend request;
    request.extendedIds = true;
    request.blockId = 1;
    request.firstPacket = 3;
    request.lastPacket = 0xFFFFFFFE;
    Channel().Resend(request, {});
    EXPECT_EQ(NextHeader(), Hex("01000001 82000000"));
    for (uint8_t id = 4; id < 20; ++id) {
        Bytes wanted = Hex("800c0004 83000000 0000000000000001 00000000");
        wanted.back() = id;
        EXPECT_EQ(Next(), wanted);
    }
    Channel().FireTestPacket();
    EXPECT_EQ(NextHeader(), Hex("00000000 03000000"));
}

TEST_F(StreamChannels, ResentPacketsCanGoToWhoeverAsked) {
    Channel().SetConfiguration(Sccfg::kResendDestination);
    Open();
    Take(1);
    Skip(kPacketsOfBlock);
    Resend(1, 3, 3);
    EXPECT_EQ(other_.Next(), Hex("01000001 02000003 00000001 00000010"));
    EXPECT_TRUE(receiver_.IsEmpty());
}

TEST_F(StreamChannels, ResendsAreWrongAsTheSwitchesSay) {
    Open();
    Take(1);
    Skip(kPacketsOfBlock);
    Set("ResendStatusZero", "true");
    Resend(1, 1, 1);
    EXPECT_EQ(NextHeader(), Hex("00000001 03000001"));
    Set("ResendStatusZero", "false");
    Set("ResendWrongId", "true");
    Resend(1, 1, 1);
    EXPECT_EQ(NextHeader(), Hex("01000001 03000002"));
    Set("ResendWrongId", "false");
    Set("ResendTwice", "true");
    Resend(1, 1, 1);
    const Bytes right = Next();
    const Bytes wrong = Next();
    ASSERT_EQ(wrong.size(), right.size());
    EXPECT_EQ(Bytes(wrong.begin(), wrong.begin() + 8), Hex("01000001 03000001"));
    EXPECT_NE(wrong, right);
    Set("ResendTwice", "false");
    Set("NoResend", "true");
    Resend(1, 1, 1);
    EXPECT_TRUE(NextIsTestPacket());
    Set("NoResend", "false");
    Set("ResendLimitPerSecond", "2");
    Resend(1, 0, 3);
    EXPECT_EQ(NextHeader(), Hex("01000001 01000000"));
    EXPECT_EQ(NextHeader(), Hex("01000001 03000001"));
    EXPECT_TRUE(NextIsTestPacket());
}

// ---- Faults on the way
// ---------------------------------------------------------------------------

TEST_F(StreamChannels, FaultsAreSeenInTheStream) {
    Set("DuplicateEvery", "2");
    Set("WrongStatusEvery", "3");
    Set("WrongBlockIdEvery", "4");
    Set("LoseLeaders", "1");
    Open();
    Take(1);
    EXPECT_EQ(NextHeader(), Hex("00000001 03000001"));
    EXPECT_EQ(NextHeader(), Hex("00000001 03000001"));
    EXPECT_EQ(Next(), Hex("8fff0001 03000002"));
    EXPECT_EQ(NextHeader(), Hex("00000002 02000003"));
    EXPECT_EQ(NextHeader(), Hex("00000002 02000003"));
    Resend(1, 0, 0);
    EXPECT_EQ(NextHeader(), Hex("01000001 01000000"));
}

TEST_F(StreamChannels, ALatePacketComesAfterTheNextBlock) {
    Set("LateBlocks", "2");
    Open();
    Take(3);
    Skip(kPacketsOfBlock);
    EXPECT_EQ(NextHeader(), Hex("00000002 01000000"));
    EXPECT_EQ(NextHeader(), Hex("00000002 03000001"));
    EXPECT_EQ(NextHeader(), Hex("00000002 02000003"));
    EXPECT_EQ(NextHeader(), Hex("00000003 01000000"));
    Skip(kPacketsOfBlock - 1);
    EXPECT_EQ(NextHeader(), Hex("00000002 03000002"));
}

TEST_F(StreamChannels, TheFirstLeaderCanComeBeforeItsFrame) {
    Set("LeaderAtStart", "true");
    Open();
    camera_.Control().Change([](FrameSettings& settings) { settings.triggerMode = true; });
    Take(2);
    const Bytes leader = Next();  // the camera waits for a trigger
    ASSERT_EQ(leader.size(), 44U);
    EXPECT_EQ(Bytes(leader.begin(), leader.begin() + 8), Hex("00000001 01000000"));
    camera_.GetAcquisition().Trigger();
    EXPECT_EQ(NextHeader(), Hex("00000001 03000001"));
    EXPECT_EQ(NextHeader(), Hex("00000001 03000002"));
    EXPECT_EQ(NextHeader(), Hex("00000001 02000003"));
    Resend(1, 0, 0);
    Bytes again = Next();
    again[0] = 0;
    EXPECT_EQ(again, leader);  // with the time it had
    camera_.GetAcquisition().Trigger();
    EXPECT_EQ(NextHeader(), Hex("00000002 01000000"));
}

TEST_F(StreamChannels, AStreamThatNeedsPortZeroStartsOnce) {
    Set("NeedsPortZero", "true");
    Open();
    Take(2);
    Skip(2 * kPacketsOfBlock);
    Take(1);
    EXPECT_TRUE(NextIsTestPacket());
    Channel().SetPort(0);
    Open();
    Take(1);
    EXPECT_EQ(NextHeader(), Hex("00000001 01000000"));
}

// ---- Memory
// --------------------------------------------------------------------------------------

namespace {

constexpr size_t kFrameSize = 100;

// What a camera does with a frame.
bool PassThrough(BlockRing& ring, uint64_t frameId, bool mustBeOne = false) {
    ZelCti::FrameBuffer* const buffer = ring.Take(mustBeOne);
    if (buffer == nullptr) return false;
    EXPECT_EQ(buffer->Size(), kFrameSize);
    FrameInfo frame;
    frame.id = frameId;
    frame.pixelFormat = 0x01080001;  // Mono8
    frame.width = kFrameSize;
    frame.height = frame.deliveredHeight = 1;
    frame.sizeFilled = kFrameSize;
    ring.Deliver(*buffer, frame);
    return true;
}

void SendNext(BlockRing& ring, uint64_t blockId) {
    Block* const block = ring.Next();
    ASSERT_NE(block, nullptr);
    block->packets = BlockPackets(block->Frame(), {block->Base(), kFrameSize}, blockId, {});
    ring.Finish(*block);
}

}  // namespace

TEST(BlockRing, KeepsTheNewestBlocksAndLosesFramesOfASlowNetwork) {
    size_t numReady = 0;
    BlockRing ring(
        2, [] { return kFrameSize; }, [&] { ++numReady; });
    EXPECT_EQ(ring.Next(), nullptr);
    for (uint64_t id = 1; id <= 3; ++id)
        EXPECT_TRUE(PassThrough(ring, id));
    EXPECT_EQ(numReady, 3U);
    EXPECT_FALSE(ring.HasInput());
    EXPECT_FALSE(PassThrough(ring, 4));
    for (uint64_t id = 1; id <= 3; ++id)
        SendNext(ring, id);
    EXPECT_TRUE(ring.HasInput());
    EXPECT_EQ(ring.OldestId(), 2U);
    EXPECT_EQ(ring.Hold(1), nullptr);
    Block* const second = ring.Hold(2);
    ASSERT_NE(second, nullptr);
    EXPECT_EQ(second->Frame().id, 2U);

    ring.LetGo(*second);
    for (uint64_t id = 4; id <= 6; ++id)
        EXPECT_TRUE(PassThrough(ring, id));
    for (uint64_t id = 4; id <= 6; ++id)
        SendNext(ring, id);
    EXPECT_EQ(ring.Hold(2), nullptr);
    EXPECT_EQ(ring.OldestId(), 5U);

    // A camera that keeps its rate does not wait: its frames take all memory but what is held.
    Block* const fifth = ring.Hold(5);
    for (uint64_t id = 7; id <= 10; ++id)
        EXPECT_TRUE(PassThrough(ring, id, true));
    EXPECT_FALSE(PassThrough(ring, 11, true));
    EXPECT_EQ(ring.Hold(5), fifth);
    ring.LetGo(*fifth);
    EXPECT_TRUE(PassThrough(ring, 11, true));
    EXPECT_FALSE(PassThrough(ring, 12, true));
    EXPECT_EQ(ring.OldestId(), std::nullopt);
}

TEST(StreamSender, AllocatesNothingForABlock) {
    Camera camera(SmallCamera(), "GEV", ZelSim::PermanentMemory(SmallCamera()));
    auto network = std::make_shared<const NetworkSettings>();
    StreamReceiver receiver;
    StreamSender sender(camera, kLoopback, [&] { return network; });
    BlockRing ring(
        2, [] { return kFrameSize; }, [] {});
    StreamSettings settings;
    settings.destination = {kLoopback, receiver.Port()};
    sender.Open(ring);
    const auto finish = [&] {
        while (sender.Step(settings, Pacer::Clock::now()) != ZelCti::WaitPoint::kEndless) {
        }
    };
    const auto send = [&](uint64_t frameId) {
        EXPECT_TRUE(PassThrough(ring, frameId));
        finish();
        sender.Resend({{false, 0, frameId, 0, 5}, {}});
        finish();
    };
    for (uint64_t id = 1; id <= 5; ++id)
        send(id);
    ZelTest::AllocationFaults::Begin(0, 0);
    {
        const ZelTest::AllocationFaults::Counted counted;
        for (uint64_t id = 6; id <= 10; ++id)
            send(id);
    }
    EXPECT_EQ(ZelTest::AllocationFaults::End(), 0U);
    EXPECT_EQ(sender.Statistics().blocks, 10U);
    EXPECT_EQ(sender.Statistics().resent, 30U);
    EXPECT_EQ(sender.Statistics().refused, 30U);
}

TEST(BlockRing, GivesMemoryOfTheSizeThatFramesHaveNow) {
    size_t size = 10;
    BlockRing ring(
        0, [&] { return size; }, [] {});
    ZelCti::FrameBuffer* const small = ring.Take(true);
    EXPECT_EQ(small->Size(), 10U);
    ring.PutBack(*small);
    size = 1000;
    ZelCti::FrameBuffer* const large = ring.Take(true);
    ASSERT_EQ(large->Size(), 1000U);
    EXPECT_EQ(Bytes(large->Base(), large->Base() + 1000), Bytes(1000, 0));
    ring.PutBack(*large);
    size = 2000;
    const ZelCti::FrameBuffer* refused = nullptr;
    ZelTest::AllocationFaults::Begin(0, 1);
    {
        const ZelTest::AllocationFaults::Counted counted;
        refused = ring.Take(true);
    }
    ZelTest::AllocationFaults::End();
    EXPECT_EQ(refused, nullptr);
    EXPECT_NE(ring.Take(true), nullptr);
}
