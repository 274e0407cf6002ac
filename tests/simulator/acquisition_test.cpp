// Frames of simulated cameras: how many there are, what they say, and which are lost.

#include <future>
#include <thread>

#include <gmock/gmock.h>

#include "tests/simulator/producer.h"
#include "tests/support/allocationfaults.h"

using namespace GenTL;
using ::testing::Each;
using ::testing::ElementsAre;

namespace {

class AcquisitionTest : public CameraTest {
  protected:
    // Waits until a condition that the producer brings about holds.
    template <typename Condition>
    void Await(Condition&& condition) {
        const auto end = std::chrono::steady_clock::now() + std::chrono::milliseconds(kPatienceMs);
        while (!condition()) {
            ASSERT_LT(std::chrono::steady_clock::now(), end);
            std::this_thread::yield();
        }
    }
    bool IsGrabbing() { return StreamInfo(STREAM_INFO_IS_GRABBING).Bool(); }
    size_t NumQueued() { return StreamInfo(STREAM_INFO_NUM_QUEUED).Size(); }
    size_t NumAwaiting() { return StreamInfo(STREAM_INFO_NUM_AWAIT_DELIVERY).Size(); }

    std::vector<uint64_t> FrameIds(size_t count) {
        std::vector<uint64_t> ids;
        while (ids.size() < count) {
            const BUFFER_HANDLE buffer = Fetch();
            if (buffer == nullptr) break;
            ids.push_back(FrameId(buffer));
            EXPECT_EQ(Queue(buffer), GC_ERR_SUCCESS);
        }
        return ids;
    }

    // Fetches and queues again, until something else ends it; gives the code of that.
    GC_ERROR FetchUntilFailure() {
        GC_ERROR code = GC_ERR_SUCCESS;
        for (BUFFER_HANDLE buffer = nullptr; code == GC_ERR_SUCCESS;) {
            code = TryFetch(GENTL_INFINITE, &buffer);
            if (code == GC_ERR_SUCCESS) Queue(buffer);
        }
        return code;
    }
};

TEST_F(AcquisitionTest, CountedAcquisitionEndsByItself) {
    OpenCamera("frameRate='0'");
    AllocateAndQueue(2);
    EXPECT_FALSE(IsGrabbing());
    ASSERT_EQ(Start(5), GC_ERR_SUCCESS);
    EXPECT_THAT(FrameIds(5), ElementsAre(0U, 1U, 2U, 3U, 4U));
    Await([&] { return !IsGrabbing(); });
    EXPECT_EQ(TryFetch(0), GC_ERR_TIMEOUT);
    EXPECT_EQ(StreamInfo(STREAM_INFO_NUM_DELIVERED).Uint64(), 5U);
    EXPECT_EQ(StreamInfo(STREAM_INFO_NUM_STARTED).Uint64(), 5U);
    EXPECT_EQ(Stop(), GC_ERR_SUCCESS);
    EXPECT_EQ(Stop(), GC_ERR_RESOURCE_IN_USE);
    // The numbers of frames start anew with each acquisition, the counts go on.
    ASSERT_EQ(Start(1), GC_ERR_SUCCESS);
    EXPECT_THAT(FrameIds(1), ElementsAre(0U));
    EXPECT_EQ(StreamInfo(STREAM_INFO_NUM_DELIVERED).Uint64(), 6U);
}

TEST_F(AcquisitionTest, FramesWithoutBufferAreUnderruns) {
    OpenCamera("frameRate='2000' width='64' height='48'");
    const BUFFER_HANDLE buffer = Allocate();
    ASSERT_EQ(Start(1), GC_ERR_SUCCESS);
    Await([&] { return StreamInfo(STREAM_INFO_NUM_UNDERRUN).Uint64() >= 3; });
    EXPECT_TRUE(IsGrabbing()) << "lost frames do not count";
    ASSERT_EQ(Queue(buffer), GC_ERR_SUCCESS);
    EXPECT_GE(FrameId(Fetch()), 3U) << "lost frames have numbers";
}

TEST_F(AcquisitionTest, FramesWithoutMemoryAreUnderruns) {
    OpenCamera("frameRate='0' width='640' height='480'");
    const BUFFER_HANDLE buffer = Allocate();
    ASSERT_EQ(Queue(buffer), GC_ERR_SUCCESS);
    {
        const ZelTest::OutOfMemory full(size_t{640} * 480);  // for the picture
        ASSERT_EQ(Start(1), GC_ERR_SUCCESS);
        Await([&] { return StreamInfo(STREAM_INFO_NUM_UNDERRUN).Uint64() >= 3; });
        EXPECT_TRUE(IsGrabbing()) << "lost frames do not count";
        EXPECT_EQ(NumAwaiting(), 0U);
    }
    EXPECT_EQ(Fetch(), buffer);
    EXPECT_GE(FrameId(buffer), 3U);
}

TEST_F(AcquisitionTest, DropsAndTearsFramesOnDemand) {
    OpenCamera("frameRate='0' dropEvery='4' incompleteEvery='3' width='64' height='64'");
    const BUFFER_HANDLE buffer = QueueMemory(4096);
    ASSERT_EQ(Start(), GC_ERR_SUCCESS);
    for (uint64_t id : {0U, 1U, 2U, 4U, 5U, 6U, 8U}) {  // 3 and 7 are dropped; 2, 5, 8 torn
        ASSERT_EQ(Fetch(), buffer);
        const bool torn = id % 3 == 2;
        EXPECT_EQ(FrameId(buffer), id);
        EXPECT_EQ(BufferInfo(buffer, BUFFER_INFO_IS_INCOMPLETE).Bool(), torn);
        EXPECT_EQ(BufferInfo(buffer, BUFFER_INFO_DELIVERED_IMAGEHEIGHT).Size(), torn ? 32U : 64U);
        EXPECT_EQ(BufferInfo(buffer, BUFFER_INFO_SIZE_FILLED).Size(), torn ? 2048U : 4096U);
        if (torn) {
            EXPECT_THAT(std::vector<uint8_t>(memory.begin() + 2048, memory.end()), Each(0xEE));
        }
        std::fill(memory.begin(), memory.end(), uint8_t{0xEE});
        ASSERT_EQ(Queue(buffer), GC_ERR_SUCCESS);
    }
}

TEST_F(AcquisitionTest, FramesHaveTheGeometryOfTheConfiguration) {
    OpenCamera(
        "width='32' height='40' offsetX='3' offsetY='4' xPadding='5' yPadding='6' imageOffset='7' "
        "pixelFormat='Mono12p' framePairs='true' frameRate='0' timestampFrequency='1000'");
    const BUFFER_HANDLE buffer = Allocate();
    EXPECT_EQ(BufferInfo(buffer, BUFFER_INFO_SIZE).Size(), 7U + (48 + 5) * 40 + 6);
    ASSERT_EQ(Queue(buffer), GC_ERR_SUCCESS);
    ASSERT_EQ(Start(2), GC_ERR_SUCCESS);
    ASSERT_EQ(Fetch(), buffer);
    const struct {
        int32_t command;
        size_t value;
    } sizes[] = {{BUFFER_INFO_WIDTH, 32},      {BUFFER_INFO_HEIGHT, 40},
                 {BUFFER_INFO_XOFFSET, 3},     {BUFFER_INFO_YOFFSET, 4},
                 {BUFFER_INFO_XPADDING, 5},    {BUFFER_INFO_YPADDING, 6},
                 {BUFFER_INFO_IMAGEOFFSET, 7}, {BUFFER_INFO_SIZE_FILLED, 2133},
                 {BUFFER_INFO_PAYLOADTYPE, 1}, {BUFFER_INFO_DELIVERED_IMAGEHEIGHT, 40}};
    for (const auto& [command, value] : sizes) {
        EXPECT_EQ(BufferInfo(buffer, command).Size(), value) << command;
    }
    EXPECT_EQ(BufferInfo(buffer, BUFFER_INFO_PIXELFORMAT).Uint64(), 0x010C0047U);
    EXPECT_EQ(BufferInfo(buffer, BUFFER_INFO_TIMESTAMP).Uint64(),
              BufferInfo(buffer, BUFFER_INFO_TIMESTAMP_NS).Uint64() / 1000000);
    EXPECT_FALSE(BufferInfo(buffer, 1101).Bool());
    ASSERT_EQ(Queue(buffer), GC_ERR_SUCCESS);
    ASSERT_EQ(Fetch(), buffer);
    EXPECT_TRUE(BufferInfo(buffer, 1101).Bool());
}

TEST_F(AcquisitionTest, StreamsAreWhatTheConfigurationSays) {
    OpenCamera("bufAlignment='256' bufAnnounceMin='2' definesPayloadSize='false' streams='3'");
    EXPECT_EQ(StreamInfo(STREAM_INFO_PAYLOAD_SIZE).code, GC_ERR_NOT_AVAILABLE);
    EXPECT_EQ(StreamInfo(STREAM_INFO_BUF_ANNOUNCE_MIN).Size(), 2U);
    EXPECT_EQ(StreamInfo(STREAM_INFO_BUF_ALIGNMENT).Size(), 256U);
    uint32_t count = 0;
    EXPECT_EQ(p.DevGetNumDataStreams(device, &count), GC_ERR_SUCCESS);
    EXPECT_EQ(count, 3U);
}

TEST_F(AcquisitionTest, FrameLargerThanBufferIsCut) {
    OpenCamera("frameRate='0' width='64' height='64'");
    const BUFFER_HANDLE buffer = QueueMemory(645);
    ASSERT_EQ(Start(1), GC_ERR_SUCCESS);
    ASSERT_EQ(Fetch(), buffer);
    EXPECT_TRUE(BufferInfo(buffer, BUFFER_INFO_DATA_LARGER_THAN_BUFFER).Bool());
    EXPECT_TRUE(BufferInfo(buffer, BUFFER_INFO_IS_INCOMPLETE).Bool());
    EXPECT_EQ(BufferInfo(buffer, BUFFER_INFO_SIZE_FILLED).Size(), 640U);
    EXPECT_THAT(std::vector<uint8_t>(memory.end() - 5, memory.end()), Each(0xEE));
}

TEST_F(AcquisitionTest, UnpluggingEndsWaitsAndLeavesClosing) {
    OpenCamera("frameRate='0'");
    AllocateAndQueue(3);
    ASSERT_EQ(Start(), GC_ERR_SUCCESS);
    auto ended = std::async(std::launch::async, [&] { return FetchUntilFailure(); });
    Await([&] { return StreamInfo(STREAM_INFO_NUM_DELIVERED).Uint64() > 10; });
    ASSERT_EQ(p.UnplugCamera("C"), GC_ERR_SUCCESS);
    EXPECT_EQ(ended.get(), GC_ERR_IO);
    Await([&] { return !IsGrabbing(); });
    EXPECT_EQ(StopStream(), GC_ERR_SUCCESS);
    EXPECT_EQ(p.DevClose(device), GC_ERR_SUCCESS);
}

TEST_F(AcquisitionTest, ClosingWhileGrabbingEndsEverything) {
    OpenCamera("frameRate='0' noFill='true'");
    AllocateAndQueue(3);
    ASSERT_EQ(Start(), GC_ERR_SUCCESS);
    auto ended = std::async(std::launch::async, [&] { return FetchUntilFailure(); });
    Await([&] { return StreamInfo(STREAM_INFO_NUM_DELIVERED).Uint64() > 100; });
    ASSERT_EQ(p.TLClose(system), GC_ERR_SUCCESS);
    EXPECT_THAT(ended.get(), ::testing::AnyOf(GC_ERR_ABORT, GC_ERR_INVALID_HANDLE));
}

}  // namespace
