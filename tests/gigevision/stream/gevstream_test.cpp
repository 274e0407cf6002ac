// Streams of simulated cameras on loopback, whatever gets lost on the way.
#include "producers/gigevision/gevstream.h"

#include <algorithm>
#include <string>
#include <thread>

#include <gtest/gtest.h>

#include "producers/gigevision/stream/socketreader.h"
#include "producers/server/registers/featuretable.h"
#include "producers/server/registers/registerspace.h"
#include "producers/simulator/camera/camera.h"
#include "tests/gigevision/stream/framebuffers.h"
#include "tests/gigevision/stream/packetsender.h"
#include "tests/gigevision/stream/simulatedlink.h"

using namespace ZelGev;
using GevTest::FrameBuffers;
using GevTest::SimulatedLink;
using WireTest::Bytes;

namespace Gev = ZelCti::Gev;

namespace {

constexpr size_t kWidth = 640;
constexpr size_t kHeight = 120;
constexpr size_t kFrameSize = kWidth * kHeight;
constexpr const char* kCamera =
    "width='640' height='120' frameRate='100' acquisition='free-running'";

// Draws the frames of such a camera.
class Reference {
  public:
    // Whether these are the bytes of a frame behind the latest one.
    bool IsNext(const Bytes& data, size_t numLines = kHeight) {
        constexpr uint64_t kLook = 1000;
        Bytes image(kFrameSize);
        for (uint64_t frame = next_; frame < next_ + kLook; ++frame) {
            picture_->Draw(frame, image.data(), kHeight);
            if (!std::equal(image.begin(),
                            image.begin() + static_cast<ptrdiff_t>(numLines * kWidth),
                            data.begin()))
                continue;
            next_ = frame + 1;
            return true;
        }
        return false;
    }

  private:
    static ZelSim::CameraConfig Config() {
        return ZelSim::ParseConfig("<ZelSim><Interface id='I' type='GEV'><Camera id='C' " +
                                       std::string(kCamera) + "/></Interface></ZelSim>",
                                   "test")
            .interfaces[0]
            .cameras[0];
    }

    ZelSim::Camera camera_{Config(), "GEV", ZelSim::PermanentMemory(Config())};
    const std::shared_ptr<const ZelSim::TestPicture> picture_ =
        camera_.Picture(*camera_.Settings());
    uint64_t next_ = 0;
};

// The rows of a stream's module.
class Rows {
  public:
    explicit Rows(GevStream& stream) {
        table_.Category("StreamInformation", "The server's.");
        table_.Boolean("StreamIsGrabbing", "The server's.").At(0x100).Get([&] {
            return uint64_t{stream.IsGrabbing()};
        });
        stream.AddFeatures(table_);
        table_.Complete();
    }

    uint64_t Read(uint64_t address, size_t size = 8) const {
        uint64_t value = 0;
        space_.Read(address, &value, size);
        return value;
    }
    void Write(uint64_t address, uint32_t value) const {
        space_.Write(address, &value, sizeof value);
    }

  private:
    mutable ZelCti::RegisterSpace space_{UINT32_MAX};
    ZelCti::FeatureTable table_{space_, "Stream"};
};

constexpr uint64_t kGroup = 0x4000;
constexpr uint64_t kNegotiate = 0x4004;
constexpr uint64_t kMethod = 0x4008;
constexpr uint64_t kMethodInUse = 0x400C;
constexpr uint64_t kFairShare = 0x4014;
constexpr uint64_t kResend = 0x4200;
constexpr uint64_t kDeliverIncomplete = 0x4204;
constexpr uint64_t kMaxDuration = 0x4220;
constexpr uint64_t kSeen = 0x4400;
constexpr uint64_t kLost = 0x4418;
constexpr uint64_t kRequests = 0x4420;
constexpr uint64_t kDiscarded = 0x4460;
constexpr uint64_t kUnderruns = 0x4478;

// A connection to the same camera that does not control it.
class Monitor final : public DeviceLink {
  public:
    explicit Monitor(DeviceLink& controller) : controller_(controller) {}

    const Route& Place() const override { return controller_.Place(); }
    bool Controls() const override { return false; }
    uint32_t ReadRegister(uint32_t address) override { return controller_.ReadRegister(address); }
    void WriteRegister(uint32_t /*address*/, uint32_t /*value*/) override {
        ADD_FAILURE() << "a monitor writes";
    }
    uint32_t Capabilities() const override { return controller_.Capabilities(); }
    uint64_t TickFrequency() const override { return controller_.TickFrequency(); }
    bool IsLost() const override { return controller_.IsLost(); }

  private:
    DeviceLink& controller_;
};

class GevStreams : public testing::Test {
  protected:
    void Open(const std::string& network = {}, size_t bufferSize = kFrameSize) {
        stream_.reset();
        // However slow the machine is, the camera still has what is asked for, and frames are not
        // given up.
        link_.emplace(kCamera, network + " ResendMemoryBlocks='64'");
        buffers_.emplace(6, bufferSize);
        reference_.emplace();
        stream_.emplace(*link_, 0, *buffers_);
        Rows(*stream_).Write(kMaxDuration, 1000000);
    }

    // So many frames come, one after the other, and all are whole. The camera runs already when the
    // stream is started: packets of the first ones may be gone.
    void ExpectFrames(int count) {
        for (int i = 0; i < count; ++i) {
            auto frame = buffers_->Next();
            for (int j = 0; i == 0 && j < 10 && frame && frame->info.incomplete; ++j)
                frame = buffers_->Next();
            ASSERT_TRUE(frame) << "no frame after " << i;
            EXPECT_FALSE(frame->info.incomplete) << "frame " << frame->info.id;
            EXPECT_EQ(frame->info.sizeFilled, kFrameSize);
            ASSERT_TRUE(reference_->IsNext(frame->data)) << "frame " << frame->info.id;
        }
    }

    void ExpectAllBack() {
        EXPECT_TRUE(buffers_->AreAllBack());
        EXPECT_FALSE(stream_->IsGrabbing());
    }

    template <typename Condition>
    static void Await(const Condition& condition) {
        const Time end = Clock::now() + std::chrono::seconds(20);
        while (!condition()) {
            ASSERT_LT(Clock::now(), end);
            std::this_thread::yield();
        }
    }

    std::optional<SimulatedLink> link_;
    std::optional<FrameBuffers> buffers_;
    std::optional<GevStream> stream_;
    std::optional<Reference> reference_;
};

class GevStreamFaults : public GevStreams, public testing::WithParamInterface<const char*> {};

INSTANTIATE_TEST_SUITE_P(
    Switches, GevStreamFaults,
    testing::Values("", "LossRate='0.01'", "LossEvery='100' LossBurst='30'",
                    "LossRate='0.01' LoseResent='false'", "LoseLeaders='3'", "LoseTrailers='3'",
                    "LoseTails='3'", "LoseBlocks='4'", "Reorder='16'",
                    "Reorder='16' LossRate='0.01' DuplicateEvery='7'", "DuplicateEvery='3'",
                    "LateBlocks='2'", "WrongStatusEvery='30'", "FirstBlockId='65530'",
                    "ExtendedIdsOn='true' LossRate='0.01'", "PaddedLastPacket='true'",
                    "Segmentation='true'", "Segmentation='true' LossRate='0.01'", "ScspZero='true'",
                    "NeedsPortZero='true'", "ResendTwice='true' LossRate='0.01'",
                    "ResendStatusZero='true' LossRate='0.01'", "TimestampsAbove63Bits='true'",
                    "OwnPacketSize='9000' LossRate='0.02'", "LeaderAtStart='true'",
                    "TickFrequencyZero='true'"));

class GevStreamMethods : public GevStreams, public testing::WithParamInterface<const char*> {};

INSTANTIATE_TEST_SUITE_P(Methods, GevStreamMethods,
                         testing::Values("Automatic", "Singly", "Joined", "Ring"));

using GevStreamTest = GevStreams;

}  // namespace

TEST_P(GevStreamFaults, EachFrameIsWhole) {
    Open(GetParam());
    stream_->Start(UINT64_MAX);
    ExpectFrames(20);
    stream_->Stop(false);
    ExpectAllBack();
}

TEST_P(GevStreamMethods, EachDeliversTheSameFrames) {
    const std::string name = GetParam();
    const uint32_t method = name == "Singly" ? 1 : name == "Joined" ? 2 : name == "Ring" ? 3 : 0;
    for (const char* const segmentation : {"false", "true"}) {
        Open("LossRate='0.005' Segmentation='" + std::string(segmentation) + "'");
        const Rows rows(*stream_);
        rows.Write(kMethod, method);
        stream_->Start(UINT64_MAX);
        ExpectFrames(30);
        stream_->Stop(true);
        const bool isFixed = method == 1 || method == 2;
        EXPECT_TRUE(!isFixed || rows.Read(kMethodInUse, 4) == method);
    }
}

TEST_F(GevStreamTest, ItStopsAtAnyMoment) {
    Open("LossRate='0.05'");
    for (int round = 0; round < 20; ++round) {
        stream_->Start(UINT64_MAX);
        EXPECT_TRUE(stream_->IsGrabbing());
        EXPECT_TRUE(round % 4 != 3 || buffers_->Next());
        std::thread killer;
        if (round % 5 == 4) killer = std::thread([&] { stream_->Kill(); });
        stream_->Stop(round % 2 == 0);
        if (killer.joinable()) killer.join();
        ExpectAllBack();
    }
    stream_->Stop(false);
}

TEST_F(GevStreamTest, ItEndsWithTheFramesThatWereAskedFor) {
    Open();
    stream_->Start(3);
    ExpectFrames(3);
    Await([&] { return !stream_->IsGrabbing(); });
    ExpectAllBack();
    stream_->Start(2);
    ExpectFrames(2);
    Await([&] { return !stream_->IsGrabbing(); });
    stream_->Stop(false);
}

TEST_F(GevStreamTest, ACameraThatIsGoneEndsIt) {
    Open();
    stream_->Start(UINT64_MAX);
    ExpectFrames(2);
    link_->isLost = true;
    Await([&] { return !stream_->IsGrabbing(); });
    ExpectAllBack();
    EXPECT_THROW(stream_->Start(UINT64_MAX), ZelCti::Error);
    stream_->Stop(false);
}

TEST_F(GevStreamTest, AFrameWhoseRestNeverComesHoldsUpNoStop) {
    Open("LoseTails='1' NoResend='true'");
    const Rows rows(*stream_);
    stream_->Start(UINT64_MAX);
    Await([&] { return rows.Read(kSeen) > 100; });
    link_->Set("LossRate", "1");
    stream_->Stop(false);
    ExpectAllBack();
}

TEST_F(GevStreamTest, WhatIsLostForGoodIsToldOrDropped) {
    Open("LossEvery='10' NoResend='true'");
    const Rows rows(*stream_);
    stream_->Start(UINT64_MAX);
    const auto frame = buffers_->Next();
    ASSERT_TRUE(frame);
    EXPECT_TRUE(frame->info.incomplete);
    EXPECT_LT(frame->info.sizeFilled, kFrameSize);
    stream_->Stop(true);
    EXPECT_GT(rows.Read(kLost), 0U);
    const uint64_t numRequests = rows.Read(kRequests);
    EXPECT_GT(numRequests, 0U);

    rows.Write(kDeliverIncomplete, 0);
    rows.Write(kResend, 0);
    stream_->Start(UINT64_MAX);
    Await([&] { return rows.Read(kDiscarded) > 1; });
    stream_->Stop(true);
    EXPECT_EQ(rows.Read(kRequests), numRequests);
    ExpectAllBack();
}

TEST_F(GevStreamTest, FramesWithoutBufferAndThoseThatAreTooLarge) {
    Open({}, kFrameSize / 2);
    const Rows rows(*stream_);
    buffers_->Hold(true);
    stream_->Start(UINT64_MAX);
    Await([&] { return rows.Read(kUnderruns) > 1; });
    buffers_->Hold(false);
    stream_->OnInput();
    auto frame = buffers_->Next();
    for (int i = 0; i < 3 && frame && !frame->info.tooLarge; ++i)
        frame = buffers_->Next();
    ASSERT_TRUE(frame);
    EXPECT_TRUE(frame->info.tooLarge);
    EXPECT_TRUE(frame->info.incomplete);
    EXPECT_TRUE(reference_->IsNext(frame->data, kHeight / 2));
    stream_->Stop(true);
}

TEST_F(GevStreamTest, PacketsWithAnothersIdStopNothing) {
    for (const char* const network :
         {"WrongBlockIdEvery='30'", "ResendWrongId='true' LossRate='0.01'"}) {
        Open(network);
        stream_->Start(UINT64_MAX);
        int numWhole = 0;
        while (numWhole < 2) {
            const auto frame = buffers_->Next();
            ASSERT_TRUE(frame);
            numWhole += frame->info.incomplete ? 0 : 1;
        }
        stream_->Stop(false);
        ExpectAllBack();
    }
}

TEST_F(GevStreamTest, MulticastReachesTheControllerAndAMonitor) {
    Open("LossRate='0.005'");
    const Rows rows(*stream_);
    Monitor link(*link_);
    FrameBuffers buffers(6, kFrameSize);
    GevStream monitor(link, 0, buffers);
    EXPECT_THROW(monitor.Start(UINT64_MAX), ZelCti::Error) << "there is no group to join";
    rows.Write(kGroup, 0xEFFF4D01);
    monitor.Start(UINT64_MAX);
    stream_->Start(UINT64_MAX);
    ExpectFrames(10);
    Reference reference;
    for (int i = 0; i < 10; ++i) {
        auto frame = buffers.Next();
        if (i == 0 && frame && frame->info.incomplete) frame = buffers.Next();
        ASSERT_TRUE(frame);
        EXPECT_FALSE(frame->info.incomplete);
        EXPECT_TRUE(reference.IsNext(frame->data));
    }
    monitor.Stop(false);
    stream_->Stop(false);
    EXPECT_TRUE(buffers.AreAllBack());
}

TEST_F(GevStreamTest, TheByteOrderOfPixelsIsThatOfTheRegister) {
    link_.emplace(kCamera);
    link_->WriteRegister(Gev::kScps.address, Gev::Scps::kBigEndianPixels | 1500);
    buffers_.emplace(6, kFrameSize);
    stream_.emplace(*link_, 0, *buffers_);
    stream_->Start(UINT64_MAX);
    const auto frame = buffers_->Next();
    ASSERT_TRUE(frame);
    EXPECT_EQ(frame->info.pixelOrder, ZelCti::ByteOrder::Big);
    stream_->Stop(true);
}

TEST_F(GevStreamTest, ThePacketSizeIsNegotiatedOnDemand) {
    link_.emplace("width='64' height='32'", "PathMtu='4000'");
    link_->Way().mtu = 9000;
    buffers_.emplace(1, kFrameSize);
    stream_.emplace(*link_, 0, *buffers_);
    EXPECT_EQ(link_->ReadRegister(Gev::kScps.address), 1500U) << "what arrives is kept";
    const Rows rows(*stream_);
    rows.Write(kNegotiate, 1);
    EXPECT_GT(link_->ReadRegister(Gev::kScps.address) & Gev::Scps::kPacketSize, 3968U);
    EXPECT_LE(link_->ReadRegister(Gev::kScps.address) & Gev::Scps::kPacketSize, 4000U);
    link_->Set("FirstTestPacketsLost", "1000");
    rows.Write(kGroup, 0);  // opens the channel anew
    const uint32_t scps = link_->ReadRegister(Gev::kScps.address);
    rows.Write(kNegotiate, 1);
    EXPECT_EQ(link_->ReadRegister(Gev::kScps.address), scps) << "without test packets";
}

TEST_F(GevStreamTest, FirewallsLearnWhereTheStreamComesFrom) {
    Open();
    const uint32_t address = link_->Place().camera.address;
    const StreamSocket socket({GevTest::kLoopback, address, 0, 0});
    const GevTest::PacketSender camera(socket.Port(), address);
    Reception reception(*link_, *buffers_);
    Reception::Source source;
    source.socket = &socket;
    source.reader = std::make_unique<SocketReader>(socket, ReceiveMethod::Automatic);
    source.port = camera.Port();
    reception.Start(1, {}, std::move(source));
    EXPECT_EQ(camera.Receive().size(), 1U);
}

TEST_F(GevStreamTest, StreamsShareAnAdapterFairly) {
    Open();
    link_->Way().speed = 1000;
    SimulatedLink other(kCamera);
    other.Way().speed = 1000;
    FrameBuffers buffers(6, kFrameSize);
    GevStream second(other, 0, buffers);
    link_->WriteRegister(Gev::kScpd.address, 77);
    Rows(*stream_).Write(kFairShare, 1);
    Rows(second).Write(kFairShare, 1);
    const auto delayOf = [](SimulatedLink& link) { return link.ReadRegister(Gev::kScpd.address); };
    stream_->Start(UINT64_MAX);
    EXPECT_EQ(delayOf(*link_), 0U);
    second.Start(UINT64_MAX);
    EXPECT_NEAR(delayOf(*link_), 12304, 1) << "ns for a packet of 1500 bytes";
    EXPECT_EQ(delayOf(other), delayOf(*link_));
    stream_->Stop(true);
    EXPECT_EQ(delayOf(*link_), 77U);
    EXPECT_EQ(delayOf(other), 0U);
    second.Stop(true);
}

TEST(DelayOfShare, CamerasOfSlowLinksWaitLess) {
    EXPECT_EQ(DelayOfShare(1500, 8, 10000, 1000, 1000000000), 0U);
    EXPECT_NEAR(DelayOfShare(1500, 20, 10000, 1000, 1000000000), 12304, 1);
    EXPECT_NEAR(DelayOfShare(1500, 2, 0, 0, 125000000), 1538, 1);
    EXPECT_EQ(DelayOfShare(65535, SIZE_MAX, 1, 1, UINT64_MAX), UINT32_MAX);
}
