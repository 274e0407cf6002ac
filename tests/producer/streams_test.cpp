// Streams: buffers and their queues, what a frame leaves in a buffer, starts and stops.

#include <future>
#include <optional>
#include <thread>
#include <utility>

#include <gmock/gmock.h>

#include "producers/server/modules/library.h"
#include "producers/server/modules/stream.h"
#include "tests/producer/producertest.h"
#include "tests/support/portnodemap.h"

using namespace GenTL;
using ::testing::ElementsAre;
using ZelCti::ByteOrder;
using ZelCti::Error;
using ZelCti::FrameBuffer;
using ZelCti::FrameInfo;
using ZelTest::Ask;
using ZelTest::PortNodeMap;

namespace {

class StreamTest : public ProducerTest {
  protected:
    void Open() {
        OpenCamera();
        Steps();
    }
    static FrameInfo Frame(uint64_t id) {
        FrameInfo frame;
        frame.id = id;
        return frame;
    }
    uint64_t Count(int32_t command) { return StreamInfo(command).Uint64(); }
    size_t NumQueued() { return StreamInfo(STREAM_INFO_NUM_QUEUED).Size(); }
    size_t NumAwaiting() { return StreamInfo(STREAM_INFO_NUM_AWAIT_DELIVERY).Size(); }
    bool IsGrabbing() { return StreamInfo(STREAM_INFO_IS_GRABBING).Bool(); }
};

TEST_F(StreamTest, AnswersWhatTheTransportSaysOfTheStream) {
    camera->streamInfo.minBuffers = 2;
    camera->streamInfo.alignment = 256;
    camera->streamInfo.maxChunks = 7;
    camera->payloadSize = 1000;
    Open();
    EXPECT_EQ(StreamInfo(STREAM_INFO_BUF_ANNOUNCE_MIN).Size(), 2U);
    EXPECT_EQ(StreamInfo(STREAM_INFO_BUF_ALIGNMENT).Size(), 256U);
    EXPECT_EQ(StreamInfo(STREAM_INFO_NUM_CHUNKS_MAX).Size(), 7U);
    EXPECT_TRUE(StreamInfo(STREAM_INFO_DEFINES_PAYLOADSIZE).Bool());
    EXPECT_EQ(StreamInfo(STREAM_INFO_PAYLOAD_SIZE).Size(), 1000U);
    EXPECT_EQ(reinterpret_cast<uintptr_t>(Data(Allocate())) % 256, 0U);
    EXPECT_EQ(StartStream(), GC_ERR_INVALID_BUFFER) << "one buffer announced of two";
    script.Fail("PayloadSize", Error(GC_ERR_IO, "no answer"));
    EXPECT_EQ(StreamInfo(STREAM_INFO_PAYLOAD_SIZE).code, GC_ERR_IO);
}

TEST_F(StreamTest, AnnouncesAndRevokesMemory) {
    camera->streamInfo.alignment = 256;
    camera->streamInfo.definesPayloadSize = false;
    Open();
    EXPECT_EQ(StreamInfo(STREAM_INFO_PAYLOAD_SIZE).code, GC_ERR_NOT_AVAILABLE);
    EXPECT_EQ(Ask(DSGetFlowInfo, stream, 0U, FLOW_INFO_SIZE).code, GC_ERR_NOT_AVAILABLE);
    alignas(256) static uint8_t aligned[512];
    int mark = 0;
    BUFFER_HANDLE buffer = nullptr;
    EXPECT_EQ(DSAnnounceBuffer(stream, nullptr, 256, nullptr, &buffer), GC_ERR_INVALID_PARAMETER);
    EXPECT_EQ(DSAnnounceBuffer(stream, aligned + 1, 256, nullptr, &buffer),
              GC_ERR_INVALID_PARAMETER);
    ASSERT_EQ(DSAnnounceBuffer(stream, aligned, 256, &mark, &buffer), GC_ERR_SUCCESS);
    BUFFER_HANDLE other = nullptr;
    EXPECT_EQ(DSAnnounceBuffer(stream, aligned, 256, nullptr, &other), GC_ERR_RESOURCE_IN_USE);
    ASSERT_EQ(DSAllocAndAnnounceBuffer(stream, 1000, nullptr, &other), GC_ERR_SUCCESS);
    BUFFER_HANDLE second = nullptr;
    EXPECT_EQ(DSGetBufferID(stream, 1, &second), GC_ERR_SUCCESS);
    EXPECT_EQ(second, other);
    EXPECT_EQ(DSGetBufferID(stream, 2, &second), GC_ERR_INVALID_INDEX);

    void* base = nullptr;
    void* user = nullptr;
    ASSERT_EQ(Queue(buffer), GC_ERR_SUCCESS);
    EXPECT_EQ(Queue(buffer), GC_ERR_RESOURCE_IN_USE);
    EXPECT_EQ(DSRevokeBuffer(stream, buffer, &base, &user), GC_ERR_RESOURCE_IN_USE);
    ASSERT_EQ(DSFlushQueue(stream, ACQ_QUEUE_ALL_DISCARD), GC_ERR_SUCCESS);
    EXPECT_EQ(DSRevokeBuffer(stream, buffer, &base, &user), GC_ERR_SUCCESS);
    EXPECT_EQ(base, aligned);
    EXPECT_EQ(user, &mark);
    EXPECT_EQ(DSRevokeBuffer(stream, buffer, &base, &user), GC_ERR_INVALID_HANDLE);
    EXPECT_EQ(DSRevokeBuffer(stream, other, &base, nullptr), GC_ERR_SUCCESS);
    EXPECT_EQ(base, nullptr) << "memory of the producer is gone";

    void* segments[] = {aligned, aligned + 256};
    size_t sizes[] = {256, 256};
    EXPECT_EQ(DSAnnounceCompositeBuffer(stream, 2, segments, sizes, nullptr, &buffer),
              GC_ERR_INVALID_PARAMETER);
    ASSERT_EQ(DSAnnounceCompositeBuffer(stream, 1, segments, sizes, nullptr, &buffer), 0);
    EXPECT_TRUE(BufferInfo(buffer, BUFFER_INFO_IS_COMPOSITE).Bool());
    uint32_t parts = 0;
    EXPECT_EQ(DSGetNumBufferParts(stream, buffer, &parts), GC_ERR_NO_DATA);
}

TEST_F(StreamTest, StreamsOfACameraAreIndependent) {
    camera->numStreams = 2;
    Open();
    DS_HANDLE other = nullptr;
    EXPECT_EQ(DevOpenDataStream(device, "C/Stream0", &other), GC_ERR_RESOURCE_IN_USE);
    EXPECT_EQ(DevOpenDataStream(device, "C/Stream2", &other), GC_ERR_INVALID_ID);
    ASSERT_EQ(DevOpenDataStream(device, "C/Stream1", &other), GC_ERR_SUCCESS);
    EXPECT_EQ(DSQueueBuffer(other, Allocate()), GC_ERR_INVALID_HANDLE);
    EXPECT_EQ(camera->streams.size(), 2U);
    ASSERT_EQ(DSClose(other), GC_ERR_SUCCESS);
    EXPECT_EQ(DevOpenDataStream(device, "C/Stream1", &other), GC_ERR_SUCCESS);
}

TEST_F(StreamTest, FlushMovesBuffersBetweenQueues) {
    Open();
    std::vector<BUFFER_HANDLE> buffers(4);
    for (BUFFER_HANDLE& buffer : buffers)
        buffer = Allocate();
    const auto flush = [&](int32_t operation) {
        EXPECT_EQ(DSFlushQueue(stream, operation), GC_ERR_SUCCESS);
        return std::make_pair(NumQueued(), NumAwaiting());
    };
    using Counts = std::pair<size_t, size_t>;
    ASSERT_EQ(Queue(buffers[2]), GC_ERR_SUCCESS);
    EXPECT_EQ(Stream().numInputs, 1);
    EXPECT_EQ(flush(ACQ_QUEUE_UNQUEUED_TO_INPUT), Counts(4, 0));
    EXPECT_EQ(Stream().numInputs, 2) << "the transport hears of them";
    EXPECT_EQ(flush(ACQ_QUEUE_INPUT_TO_OUTPUT), Counts(0, 4));
    EXPECT_EQ(Fetch(), buffers[2]) << "queued first";
    EXPECT_FALSE(BufferInfo(buffers[2], BUFFER_INFO_NEW_DATA).Bool());
    EXPECT_EQ(flush(ACQ_QUEUE_UNQUEUED_TO_INPUT), Counts(1, 3));
    EXPECT_EQ(flush(ACQ_QUEUE_OUTPUT_DISCARD), Counts(1, 0));
    EXPECT_EQ(TryFetch(0), GC_ERR_TIMEOUT);
    EXPECT_EQ(flush(ACQ_QUEUE_ALL_TO_INPUT), Counts(4, 0));
    EXPECT_EQ(flush(ACQ_QUEUE_ALL_DISCARD), Counts(0, 0));
    EXPECT_EQ(DSFlushQueue(stream, 99), GC_ERR_INVALID_PARAMETER);
    EXPECT_EQ(StreamInfo(STREAM_INFO_NUM_ANNOUNCED).Size(), 4U);
}

// Each way in which the transport gives a buffer back, and what is counted.
TEST_F(StreamTest, CountsHowTakenBuffersComeBack) {
    Open();
    const BUFFER_HANDLE first = Allocate();
    const BUFFER_HANDLE second = Allocate();
    ZelCti::BufferQueue& buffers = Stream().buffers;
    const auto expect = [&](uint64_t started, uint64_t lost, BUFFER_HANDLE next) {
        EXPECT_EQ(Count(STREAM_INFO_NUM_STARTED), started);
        EXPECT_EQ(Count(STREAM_INFO_NUM_UNDERRUN), lost);
        FrameBuffer* const taken = buffers.Take(true);
        ASSERT_NE(taken, nullptr);
        EXPECT_EQ(taken->Base(), Data(next));
        EXPECT_EQ(taken->Size(), camera->payloadSize);
        EXPECT_TRUE(BufferInfo(next, BUFFER_INFO_IS_ACQUIRING).Bool());
        buffers.PutBack(*taken);
    };
    EXPECT_FALSE(buffers.HasInput());
    EXPECT_EQ(buffers.Take(false), nullptr);
    EXPECT_EQ(Count(STREAM_INFO_NUM_UNDERRUN), 0U) << "there need not be one";
    EXPECT_EQ(buffers.Take(true), nullptr);
    ASSERT_EQ(Queue(first), GC_ERR_SUCCESS);
    ASSERT_EQ(Queue(second), GC_ERR_SUCCESS);
    EXPECT_TRUE(buffers.HasInput());
    expect(0, 1, first);
    buffers.Lose(*buffers.Take(true));
    expect(1, 2, first);
    buffers.Deliver(*buffers.Take(true), Frame(5));
    expect(2, 2, second);
    EXPECT_EQ(Count(STREAM_INFO_NUM_DELIVERED), 0U) << "not fetched yet";
    ASSERT_EQ(Fetch(), first);
    EXPECT_EQ(FrameId(first), 5U);
    EXPECT_EQ(Count(STREAM_INFO_NUM_DELIVERED), 1U);
    ASSERT_EQ(Queue(first), GC_ERR_SUCCESS);
    EXPECT_EQ(BufferInfo(first, BUFFER_INFO_FRAMEID).code, GC_ERR_NOT_AVAILABLE);

    // What the transport holds is neither queued again nor revoked.
    FrameBuffer* const taken = buffers.Take(true);
    EXPECT_EQ(DSFlushQueue(stream, ACQ_QUEUE_ALL_DISCARD), GC_ERR_SUCCESS);
    EXPECT_EQ(Queue(second), GC_ERR_RESOURCE_IN_USE);
    EXPECT_EQ(DSRevokeBuffer(stream, second, nullptr, nullptr), GC_ERR_RESOURCE_IN_USE);
    buffers.PutBack(*taken);
}

TEST_F(StreamTest, BuffersSayWhatTheirFrameLeft) {
    camera->streamInfo.sendsPairs = true;
    Open();
    const BUFFER_HANDLE buffer = QueueMemory(64);
    EXPECT_EQ(BufferInfo(buffer, BUFFER_INFO_WIDTH).code, GC_ERR_NOT_AVAILABLE);
    EXPECT_TRUE(BufferInfo(buffer, BUFFER_INFO_IS_QUEUED).Bool());
    EXPECT_FALSE(BufferInfo(buffer, BUFFER_INFO_NEW_DATA).Bool());
    FrameInfo frame = Frame(41);
    frame.timestamp = 42;
    frame.timestampNs = 43;
    frame.pixelFormat = 0x010C0047;
    frame.width = 32;
    frame.height = 40;
    frame.offsetX = 3;
    frame.offsetY = 4;
    frame.xPadding = 5;
    frame.yPadding = 6;
    frame.imageOffset = 7;
    frame.deliveredHeight = 39;
    frame.sizeFilled = 60;
    frame.isSecondOfPair = true;
    ASSERT_TRUE(Stream().Send(frame, {1, 2, 3}));
    ASSERT_EQ(Fetch(), buffer);
    EXPECT_EQ(memory[2], 3);
    const struct {
        int32_t command;
        size_t value;
    } sizes[] = {{BUFFER_INFO_WIDTH, 32},      {BUFFER_INFO_HEIGHT, 40},
                 {BUFFER_INFO_XOFFSET, 3},     {BUFFER_INFO_YOFFSET, 4},
                 {BUFFER_INFO_XPADDING, 5},    {BUFFER_INFO_YPADDING, 6},
                 {BUFFER_INFO_IMAGEOFFSET, 7}, {BUFFER_INFO_SIZE_FILLED, 60},
                 {BUFFER_INFO_DATA_SIZE, 60},  {BUFFER_INFO_SIZE, 64},
                 {BUFFER_INFO_PAYLOADTYPE, 1}, {BUFFER_INFO_DELIVERED_IMAGEHEIGHT, 39}};
    for (const auto& [command, value] : sizes) {
        EXPECT_EQ(BufferInfo(buffer, command).Size(), value) << command;
    }
    EXPECT_EQ(FrameId(buffer), 41U);
    EXPECT_EQ(BufferInfo(buffer, BUFFER_INFO_TIMESTAMP).Uint64(), 42U);
    EXPECT_EQ(BufferInfo(buffer, BUFFER_INFO_TIMESTAMP_NS).Uint64(), 43U);
    EXPECT_EQ(BufferInfo(buffer, BUFFER_INFO_PIXELFORMAT).Uint64(), 0x010C0047U);
    EXPECT_EQ(BufferInfo(buffer, BUFFER_INFO_PIXELFORMAT_NAMESPACE).Uint64(), 4U);
    EXPECT_EQ(BufferInfo(buffer, BUFFER_INFO_TLTYPE).Text(), "GEV");
    EXPECT_EQ(BufferInfo(buffer, BUFFER_INFO_FILENAME).code, GC_ERR_NOT_AVAILABLE);
    EXPECT_EQ(BufferInfo(buffer, 1102).code, GC_ERR_NOT_IMPLEMENTED);
    EXPECT_EQ(BufferInfo(buffer, BUFFER_INFO_CHUNKLAYOUTID).code, GC_ERR_NOT_AVAILABLE);
    EXPECT_TRUE(BufferInfo(buffer, BUFFER_INFO_NEW_DATA).Bool());
    EXPECT_TRUE(BufferInfo(buffer, 1101).Bool()) << "the second of a pair";
    for (const int32_t no : {BUFFER_INFO_IS_QUEUED, BUFFER_INFO_IS_INCOMPLETE,
                             BUFFER_INFO_DATA_LARGER_THAN_BUFFER, BUFFER_INFO_CONTAINS_CHUNKDATA})
        EXPECT_FALSE(BufferInfo(buffer, no).Bool()) << no;

    size_t width = 0;
    void* base = nullptr;
    DS_BUFFER_INFO_STACKED infos[] = {{BUFFER_INFO_WIDTH, 0, &width, sizeof(width), 1},
                                      {BUFFER_INFO_FILENAME, 0, nullptr, 0, 1},
                                      {BUFFER_INFO_BASE, 0, &base, sizeof(base), 1}};
    EXPECT_EQ(DSGetBufferInfoStacked(stream, buffer, infos, 3), GC_ERR_NOT_AVAILABLE);
    EXPECT_EQ(width, 32U);
    EXPECT_EQ(base, memory.data());
    EXPECT_EQ(infos[1].iResult, GC_ERR_NOT_AVAILABLE);
    EXPECT_EQ(infos[2].iType, INFO_DATATYPE_PTR);

    frame = Frame(44);
    frame.incomplete = true;
    frame.tooLarge = true;
    ASSERT_EQ(Queue(buffer), GC_ERR_SUCCESS);
    ASSERT_TRUE(Stream().Send(frame));
    ASSERT_EQ(Fetch(), buffer);
    EXPECT_TRUE(BufferInfo(buffer, BUFFER_INFO_IS_INCOMPLETE).Bool());
    EXPECT_TRUE(BufferInfo(buffer, BUFFER_INFO_DATA_LARGER_THAN_BUFFER).Bool());
    EXPECT_FALSE(BufferInfo(buffer, 1101).Bool());
}

// What frames of real cameras may be besides whole images.
TEST_F(StreamTest, BuffersTellPayloadsThatAreNoImages) {
    Open();
    const BUFFER_HANDLE buffer = QueueMemory(64);
    const auto send = [&](const FrameInfo& frame) {
        ASSERT_TRUE(Stream().Send(frame));
        ASSERT_EQ(Fetch(), buffer);
        ASSERT_EQ(Queue(buffer), GC_ERR_SUCCESS) << "which keeps nothing of the frame";
        EXPECT_EQ(BufferInfo(buffer, BUFFER_INFO_PAYLOADTYPE).code, GC_ERR_NOT_AVAILABLE);
        ASSERT_TRUE(Stream().Send(frame));
        ASSERT_EQ(Fetch(), buffer);
    };
    FrameInfo frame = Frame(1);
    frame.payloadType = PAYLOAD_TYPE_GENDC;
    frame.hasImage = false;
    frame.sizeFilled = 40;
    frame.dataSize = 60;
    frame.incomplete = true;
    send(frame);
    EXPECT_EQ(BufferInfo(buffer, BUFFER_INFO_PAYLOADTYPE).Size(), size_t{PAYLOAD_TYPE_GENDC});
    EXPECT_FALSE(BufferInfo(buffer, BUFFER_INFO_IMAGEPRESENT).Bool());
    for (const int32_t ofImages :
         {BUFFER_INFO_WIDTH, BUFFER_INFO_YOFFSET, BUFFER_INFO_IMAGEOFFSET, BUFFER_INFO_PIXELFORMAT,
          BUFFER_INFO_PIXELFORMAT_NAMESPACE, BUFFER_INFO_DELIVERED_IMAGEHEIGHT}) {
        EXPECT_EQ(BufferInfo(buffer, ofImages).code, GC_ERR_NOT_AVAILABLE) << ofImages;
    }
    EXPECT_TRUE(BufferInfo(buffer, BUFFER_INFO_IS_COMPOSITE).Bool());
    EXPECT_EQ(BufferInfo(buffer, BUFFER_INFO_SIZE_FILLED).Size(), 40U);
    EXPECT_EQ(BufferInfo(buffer, BUFFER_INFO_DATA_SIZE).Size(), 60U);
    const auto segment = [&](int32_t command) {
        return Ask(DSGetBufferSegmentInfo, stream, buffer, 0U, command).Size();
    };
    EXPECT_EQ(segment(SEGMENT_INFO_SIZE_FILLED), 40U);
    EXPECT_EQ(segment(SEGMENT_INFO_DATA_SIZE), 60U);

    ASSERT_EQ(Queue(buffer), GC_ERR_SUCCESS);
    frame = Frame(2);
    frame.pixelOrder = ByteOrder::Big;
    send(frame);
    EXPECT_TRUE(BufferInfo(buffer, BUFFER_INFO_IMAGEPRESENT).Bool());
    EXPECT_FALSE(BufferInfo(buffer, BUFFER_INFO_IS_COMPOSITE).Bool());
    EXPECT_EQ(BufferInfo(buffer, BUFFER_INFO_PIXEL_ENDIANNESS).Int32(), PIXELENDIANNESS_BIG);
}

TEST_F(StreamTest, BuffersDescribeThePartsOfAFrame) {
    camera->streamInfo.maxParts = 2;
    Open();
    const BUFFER_HANDLE buffer = QueueMemory(64);
    FrameInfo frame = Frame(1);
    frame.payloadType = PAYLOAD_TYPE_MULTI_PART;
    frame.parts.resize(2);
    frame.parts[1] = {PART_DATATYPE_CONFIDENCE_MAP, 24, 40, 0x01080001, 8, 5, 1, 2, 3, 4, 6, 7, 9};
    ASSERT_TRUE(Stream().Send(frame));
    ASSERT_EQ(Fetch(), buffer);
    uint32_t count = 0;
    ASSERT_EQ(DSGetNumBufferParts(stream, buffer, &count), GC_ERR_SUCCESS);
    EXPECT_EQ(count, 2U);
    const auto part = [&](uint32_t index, int32_t command) {
        return Ask(DSGetBufferPartInfo, stream, buffer, index, command);
    };
    EXPECT_EQ(part(0, BUFFER_PART_INFO_BASE).Pointer(), memory.data());
    EXPECT_EQ(part(1, BUFFER_PART_INFO_BASE).Pointer(), memory.data() + 24);
    const std::pair<int32_t, size_t> sizes[] = {
        {BUFFER_PART_INFO_DATA_SIZE, 40},
        {BUFFER_PART_INFO_DATA_TYPE, PART_DATATYPE_CONFIDENCE_MAP},
        {BUFFER_PART_INFO_WIDTH, 8},
        {BUFFER_PART_INFO_HEIGHT, 5},
        {BUFFER_PART_INFO_XOFFSET, 1},
        {BUFFER_PART_INFO_YOFFSET, 2},
        {BUFFER_PART_INFO_XPADDING, 3},
        {BUFFER_PART_INFO_DELIVERED_IMAGEHEIGHT, 4}};
    for (const auto& [command, value] : sizes)
        EXPECT_EQ(part(1, command).Size(), value) << command;
    const std::pair<int32_t, uint64_t> numbers[] = {
        {BUFFER_PART_INFO_DATA_FORMAT, 0x01080001},
        {BUFFER_PART_INFO_DATA_FORMAT_NAMESPACE, PIXELFORMAT_NAMESPACE_PFNC_32BIT},
        {BUFFER_PART_INFO_SOURCE_ID, 6},
        {BUFFER_PART_INFO_REGION_ID, 7},
        {BUFFER_PART_INFO_DATA_PURPOSE_ID, 9}};
    for (const auto& [command, value] : numbers)
        EXPECT_EQ(part(1, command).Uint64(), value) << command;
    EXPECT_EQ(part(2, BUFFER_PART_INFO_BASE).code, GC_ERR_INVALID_INDEX);
    EXPECT_EQ(part(0, 99).code, GC_ERR_NOT_IMPLEMENTED);

    size_t width = 0;
    DS_BUFFER_PART_INFO_STACKED infos[] = {
        {1, BUFFER_PART_INFO_WIDTH, 1, 0, &width, sizeof(width)},
        {2, BUFFER_PART_INFO_WIDTH, 1, 0, &width, sizeof(width)}};
    EXPECT_EQ(DSGetBufferPartInfoStacked(stream, buffer, infos, 2), GC_ERR_INVALID_INDEX);
    EXPECT_EQ(width, 8U);
    EXPECT_EQ(infos[0].iType, INFO_DATATYPE_SIZET);
    EXPECT_EQ(infos[1].iResult, GC_ERR_INVALID_INDEX);

    ASSERT_EQ(Queue(buffer), GC_ERR_SUCCESS);
    ASSERT_TRUE(Stream().Send(Frame(2)));
    ASSERT_EQ(Fetch(), buffer);
    EXPECT_EQ(DSGetNumBufferParts(stream, buffer, &count), GC_ERR_NO_DATA) << "an image";
    EXPECT_EQ(part(0, BUFFER_PART_INFO_BASE).code, GC_ERR_NO_DATA);
}

// The transport names the byte order; damaged or hostile trailers lead nowhere.
TEST_F(StreamTest, FindsChunksInTheOrderOfTheTransport) {
    Open();
    const BUFFER_HANDLE buffer = QueueMemory(16);
    std::optional<size_t> dataSize;
    const auto expect = [&](ByteOrder order, size_t filled, GC_ERROR code) {
        FrameInfo frame = Frame(0);
        frame.dataSize = dataSize;
        frame.chunkOrder = order;
        frame.chunkLayoutId = 9;
        frame.sizeFilled = filled;
        ASSERT_TRUE(Stream().Send(frame, {7, 7, 7, 7, 1, 0, 0, 0xC0, 4, 0, 0, 0}));
        ASSERT_EQ(Fetch(), buffer);
        SINGLE_CHUNK_DATA chunk{};
        size_t count = 1;
        EXPECT_EQ(DSGetBufferChunkData(stream, buffer, &chunk, &count), code);
        EXPECT_EQ(chunk.ChunkID, code == GC_ERR_SUCCESS ? 0xC0000001U : 0U);
        EXPECT_EQ(chunk.ChunkLength, code == GC_ERR_SUCCESS ? 4U : 0U);
        EXPECT_TRUE(BufferInfo(buffer, BUFFER_INFO_CONTAINS_CHUNKDATA).Bool());
        EXPECT_EQ(BufferInfo(buffer, BUFFER_INFO_CHUNKLAYOUTID).Uint64(), 9U);
        ASSERT_EQ(Queue(buffer), GC_ERR_SUCCESS);
    };
    expect(ByteOrder::Little, 12, GC_ERR_SUCCESS);
    expect(ByteOrder::Big, 12, GC_ERR_NO_DATA);
    // With a gap before the trailers, which end where the data end.
    dataSize = 12;
    expect(ByteOrder::Little, 8, GC_ERR_SUCCESS);
    dataSize.reset();
    expect(ByteOrder::Little, 4000000, GC_ERR_NO_DATA);  // more than the buffer
}

TEST_F(StreamTest, CountedAcquisitionsEndByThemselvesAndGoOn) {
    Open();
    AllocateAndQueue(3);
    EXPECT_FALSE(IsGrabbing());
    EXPECT_EQ(StopStream(), GC_ERR_RESOURCE_IN_USE);
    EXPECT_EQ(StartStream(0), GC_ERR_INVALID_PARAMETER);
    ASSERT_EQ(StartStream(2), GC_ERR_SUCCESS);
    EXPECT_TRUE(Stream().Send(Frame(0)));
    EXPECT_EQ(StartStream(2), GC_ERR_RESOURCE_IN_USE);
    EXPECT_TRUE(Stream().Send(Frame(1)));
    EXPECT_FALSE(IsGrabbing());
    ASSERT_EQ(StartStream(1), GC_ERR_SUCCESS) << "goes on without a stop";
    EXPECT_TRUE(IsGrabbing());
    EXPECT_EQ(StopStream(ACQ_STOP_FLAGS_DEFAULT), GC_ERR_SUCCESS);
    EXPECT_EQ(StopStream(), GC_ERR_RESOURCE_IN_USE);
    EXPECT_THAT(Steps(), ElementsAre("Start", "Start", "Stop"));
}

TEST_F(StreamTest, AStartThatFailsIsNone) {
    Open();
    AllocateAndQueue(1);
    script.Fail("Start", Error(GC_ERR_IO, "no answer"));
    EXPECT_EQ(StartStream(), GC_ERR_IO);
    EXPECT_FALSE(IsGrabbing());
    EXPECT_EQ(NumQueued(), 1U);
    EXPECT_EQ(StopStream(), GC_ERR_RESOURCE_IN_USE);
    ASSERT_EQ(DSClose(stream), GC_ERR_SUCCESS);
    EXPECT_THAT(Steps(), ElementsAre("Kill", "~Stream")) << "nothing to stop";
}

// A stop can be tried again; closing goes on without it.
TEST_F(StreamTest, AStopThatFailsKeepsNothingOpen) {
    Open();
    AllocateAndQueue(1);
    ASSERT_EQ(StartStream(), GC_ERR_SUCCESS);
    script.Fail("Stop", Error(GC_ERR_IO, "no answer"));
    EXPECT_EQ(StopStream(), GC_ERR_IO);
    EXPECT_EQ(StopStream(), GC_ERR_SUCCESS);
    ASSERT_EQ(StartStream(), GC_ERR_SUCCESS);
    const size_t before = NumHandles();
    Steps();
    script.Fail("Stop", Error(GC_ERR_IO, "no answer"));
    EXPECT_EQ(DSClose(stream), GC_ERR_SUCCESS);
    EXPECT_THAT(Steps(), ElementsAre("Kill", "Stop at once", "~Stream"));
    EXPECT_EQ(NumHandles(), before - 3) << "the stream, its buffer and its event";
    EXPECT_EQ(DevOpenDataStream(device, "C/Stream0", &stream), GC_ERR_SUCCESS);
}

TEST_F(StreamTest, ClosingEndsAStopThatWaits) {
    camera->holdsFrames = true;
    Open();
    AllocateAndQueue(1);
    ASSERT_EQ(StartStream(), GC_ERR_SUCCESS);
    auto stopped =
        std::async(std::launch::async, [&] { return StopStream(ACQ_STOP_FLAGS_DEFAULT); });
    std::vector<std::string> steps;
    while (steps != std::vector<std::string>{"Start", "Stop"}) {
        for (std::string& step : Steps())
            steps.push_back(std::move(step));
        std::this_thread::yield();
    }
    ASSERT_EQ(DSClose(stream), GC_ERR_SUCCESS);
    EXPECT_EQ(stopped.get(), GC_ERR_SUCCESS);
    EXPECT_THAT(Steps(), ElementsAre("Kill", "~Stream"));
}

TEST_F(StreamTest, ALostCameraEndsWaitsAndLeavesClosing) {
    Open();
    AllocateAndQueue(2);
    ASSERT_EQ(StartStream(), GC_ERR_SUCCESS);
    auto ended = std::async(std::launch::async, [&] { return TryFetch(GENTL_INFINITE); });
    std::async(std::launch::async, [&] { camera->Lose(); }).get();
    EXPECT_EQ(ended.get(), GC_ERR_IO);
    EXPECT_EQ(TryFetch(0), GC_ERR_IO);
    uint32_t count = 0;
    EXPECT_EQ(DevGetNumDataStreams(device, &count), GC_ERR_IO);
    EXPECT_EQ(StartStream(), GC_ERR_IO);
    EVENT_HANDLE event = nullptr;
    EXPECT_EQ(GCRegisterEvent(device, EVENT_MODULE, &event), GC_ERR_IO);
    EXPECT_EQ(DevGetPort(device, &event), GC_ERR_IO);

    EXPECT_EQ(StopStream(), GC_ERR_SUCCESS);
    EXPECT_EQ(GCUnregisterEvent(stream, EVENT_NEW_BUFFER), GC_ERR_SUCCESS);
    EXPECT_EQ(DSFlushQueue(stream, ACQ_QUEUE_ALL_DISCARD), GC_ERR_SUCCESS);
    BUFFER_HANDLE buffer = nullptr;
    ASSERT_EQ(DSGetBufferID(stream, 0, &buffer), GC_ERR_SUCCESS);
    EXPECT_EQ(DSRevokeBuffer(stream, buffer, nullptr, nullptr), GC_ERR_SUCCESS);
    EXPECT_EQ(DSClose(stream), GC_ERR_SUCCESS);
    EXPECT_EQ(DevClose(device), GC_ERR_SUCCESS);
}

// A thread that reports may hold locks of the transport, or be joined by its objects. So these do
// not end on it, even if the stream is closed at this moment.
TEST_F(StreamTest, TheReportOfALossEndsNoObjects) {
    Open();
    ZelCti::HandleTable& handles = ZelCti::Library::Instance().Handles();
    handles.Close(newBuffer);  // it stays registered, and its close would wait as the report does
    auto held = handles.Find<ZelCti::Stream>(stream);
    std::unique_lock<std::mutex> pause(held->Pool().Delivered().Mutex());
    const std::weak_ptr<ZelCti::Stream> watched = std::exchange(held, nullptr);
    auto reported = std::async(std::launch::async, [&] { camera->Lose(); });
    uint32_t count = 0;
    while (DevGetNumDataStreams(device, &count) == GC_ERR_SUCCESS)
        std::this_thread::yield();
    for (int i = 0; i < 1000; ++i)
        std::this_thread::yield();  // most likely it waits after that; if not, the outcome is the
                                    // same
    auto closed = std::async(std::launch::async, [&] { return DSClose(stream); });
    while (watched.use_count() > 1)
        std::this_thread::yield();
    pause.unlock();
    reported.get();
    EXPECT_EQ(closed.get(), GC_ERR_SUCCESS);
    EXPECT_THAT(Steps(), ElementsAre("Kill", "~Stream"));
}

TEST_F(StreamTest, FeaturesCountBuffersAndFrames) {
    camera->payloadSize = 2048;
    Open();
    PortNodeMap map(Functions(), stream);
    EXPECT_EQ(map.Integer("PayloadSize"), 2048);
    AllocateAndQueue(3);
    EXPECT_EQ(map.Integer("StreamInputBufferCount"), 3);
    ASSERT_EQ(StartStream(), GC_ERR_SUCCESS);
    EXPECT_EQ(map.Get("StreamIsGrabbing"), "1");
    EXPECT_TRUE(Stream().Send(Frame(0)));
    EXPECT_TRUE(Stream().Send(Frame(1)));
    Fetch();
    EXPECT_EQ(map.Integer("StreamOutputBufferCount"), 1);
    EXPECT_EQ(map.Integer("StreamDeliveredFrameCount"), 1);
    EXPECT_EQ(map.Integer("StreamStartedFrameCount"), 2);
    EXPECT_EQ(map.Integer("StreamAnnouncedBufferCount"), 3);

    EXPECT_THROW(map.Set("StreamBufferHandlingMode", "NewestOnly"),
                 GENICAM_NAMESPACE::AccessException);
    uint32_t mode = 1;
    size_t size = sizeof mode;
    EXPECT_EQ(GCWritePort(stream, 0x3058, &mode, &size), GC_ERR_ACCESS_DENIED);
    ASSERT_EQ(StopStream(), GC_ERR_SUCCESS);
    ASSERT_EQ(DSFlushQueue(stream, ACQ_QUEUE_ALL_TO_INPUT), GC_ERR_SUCCESS);

    // In the other mode three buffers take any number of frames.
    map.Set("StreamBufferHandlingMode", "NewestOnly");
    for (uint64_t id = 0; id < 5; ++id)
        EXPECT_TRUE(Stream().Send(Frame(id)));
    EXPECT_EQ(map.Integer("StreamOutputBufferCount"), 1);
    EXPECT_EQ(FrameId(Fetch()), 4U);
}

}  // namespace
