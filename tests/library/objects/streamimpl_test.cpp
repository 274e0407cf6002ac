// Streams: buffers, the order of calls at start and stop, statistics.
#include "ZelCameraApi/streamimpl.h"

#include <algorithm>
#include <array>
#include <functional>
#include <thread>

#include "tests/library/support/moduledescription.h"

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class StreamTest : public SessionTest {
  protected:
    void SetUp() override {
        ASSERT_NO_FATAL_FAILURE(OpenStream());
        handle = HandleOf("stream stream0");
        Calls();
    }

    // Announces three buffers.
    std::array<ZelCam::Buffer*, 3> CreateBuffers() {
        std::array<ZelCam::Buffer*, 3> buffers{};
        for (ZelCam::Buffer*& buffer : buffers)
            buffer = stream->CreateBuffer(64, nullptr, nullptr);
        Calls();
        return buffers;
    }

    void* handle = nullptr;
};

// A buffer of another implementation.
class ForeignBuffer final : public ZelCam::Buffer {
  public:
    ZelImageInfo* GetImage() override { return nullptr; }
    void* GetBufferPtr() override { return nullptr; }
    size_t GetImageOffset() override { return 0; }
    size_t GetBufferSize() override { return 0; }
    uint64_t GetPixelFormat() override { return 0; }
    void* GetUserPtr() override { return nullptr; }
    uint64_t GetTimestamp() override { return 0; }
    uint64_t GetFrameID() override { return 0; }
    bool IsIncomplete() override { return false; }
    size_t GetWidth() override { return 0; }
    size_t GetHeight() override { return 0; }
    size_t GetXOffset() override { return 0; }
    size_t GetYOffset() override { return 0; }
    size_t GetXPadding() override { return 0; }
    size_t GetYPadding() override { return 0; }
    size_t GetDeliveredHeight() override { return 0; }
    bool IsKacFrameB() override { return false; }
};

}  // namespace

TEST_F(StreamTest, ARefusedNewBufferEventShowsInGetBuffer) {
    stream->Release();
    Fail("GCRegisterEvent", -1004, 1);
    stream = device->GetStreamByIndex(0);
    ASSERT_NE(stream, nullptr);
    ZelCamErr err = kUntouched;
    EXPECT_EQ(stream->GetBuffer(0, &err), nullptr);
    EXPECT_EQ(err, ZelCamErr_GenTL_InvalidHandle);
    Calls();
    stream->Release();  // nothing to unregister
    EXPECT_THAT(Calls(), ElementsAre("DSGetInfo 8", "DSFlushQueue 4", "DSClose"));
}

TEST_F(StreamTest, BuffersAreAnnouncedInBothForms) {
    std::array<uint8_t, 128> memory{};
    int user = 0;
    ZelCamErr err = kUntouched;
    ZelCam::Buffer* const own = stream->CreateBuffer(256, &user, &err);
    ASSERT_NE(own, nullptr);
    EXPECT_EQ(err, ZelCamErr_Success);
    ZelCam::Buffer* const foreign = stream->SetBuffer(memory.data(), memory.size(), &err, nullptr);
    ASSERT_NE(foreign, nullptr);
    EXPECT_THAT(Calls(), ElementsAre("DSAllocAndAnnounceBuffer 256", "DSAnnounceBuffer 128"));
    EXPECT_EQ(own->GetUserPtr(), &user);
    EXPECT_EQ(foreign->GetUserPtr(), &err);
    EXPECT_EQ(foreign->GetBufferPtr(), memory.data());
    EXPECT_EQ(stream->GetBufferQueueSize(), 2U);
}

TEST_F(StreamTest, RevokingEndsOnlyBuffersOfTheStream) {
    const auto buffers = CreateBuffers();
    ForeignBuffer foreign;
    EXPECT_EQ(stream->RevokeBuffer(nullptr), 0);
    EXPECT_EQ(stream->RevokeBuffer(&foreign), 0);
    EXPECT_EQ(stream->GetBufferQueueSize(), 3U);
    EXPECT_THAT(Calls(), IsEmpty());
    EXPECT_EQ(stream->RevokeBuffer(buffers[1]), 0);
    EXPECT_EQ(stream->GetBufferQueueSize(), 2U);
    EXPECT_THAT(Calls(), ElementsAre("DSRevokeBuffer"));
}

TEST_F(StreamTest, QueueBufferPassesOnlyBuffersOfThisLibrary) {
    const auto buffers = CreateBuffers();
    ForeignBuffer foreign;
    EXPECT_EQ(stream->QueueBuffer(nullptr), ZelCamErr_InvalidArgument);
    EXPECT_EQ(stream->QueueBuffer(&foreign), ZelCamErr_InvalidArgument);
    EXPECT_THAT(Calls(), IsEmpty());
    EXPECT_EQ(stream->QueueBuffer(buffers[2]), 0);
}

TEST_F(StreamTest, DeliveredBuffersComeBackAsTheSameObjects) {
    const auto buffers = CreateBuffers();
    EXPECT_EQ(stream->StartAcquisition(ZelCam::Infinite, 0), 0);
    ASSERT_TRUE(producer.DeliverFrame(handle));
    ASSERT_TRUE(producer.DeliverFrame(handle));
    ZelCamErr err = kUntouched;
    EXPECT_EQ(stream->GetBuffer(1000, &err), buffers[0]);
    EXPECT_EQ(err, ZelCamErr_Success);
    EXPECT_EQ(stream->GetBuffer(ZelCam::Infinite, nullptr), buffers[1]);
    EXPECT_EQ(stream->GetBufferQueueSize(), 3U);
    EXPECT_EQ(stream->QueueBuffer(buffers[0]), 0);
    EXPECT_EQ(producer.GetCount("DSQueueBuffer"), 4U);
    EXPECT_EQ(stream->GetNumDelivered(), 2U);
    const std::vector<std::string> calls = Calls();
    EXPECT_EQ(std::count(calls.begin(), calls.end(), "EventGetData 18446744073709551615"), 1);
    EXPECT_EQ(std::count(calls.begin(), calls.end(), "EventGetData 1000"), 1);
}

TEST_F(StreamTest, BuffersAreFoundAfterOthersCameAndWent) {
    const auto arrives = [&](ZelCam::Buffer* buffer) {
        return stream->QueueBuffer(buffer) == 0 && producer.DeliverFrame(handle) &&
               stream->GetBuffer(1000, nullptr) == buffer;
    };
    const auto buffers = CreateBuffers();
    ASSERT_EQ(stream->StartAcquisition(ZelCam::Infinite, ZelCam::StartFlag_KeepQueue), 0);
    stream->RevokeBuffer(buffers[1]);
    ZelCam::Buffer* const late = stream->CreateBuffer(64, nullptr, nullptr);
    for (ZelCam::Buffer* const buffer : {late, buffers[2], buffers[0]})
        EXPECT_TRUE(arrives(buffer));
    ASSERT_EQ(stream->StopAcquisition(ZelCam::StopFlag_Default), 0);
    ASSERT_EQ(stream->ReleaseBufferQueue(), 0);

    const auto others = CreateBuffers();
    ASSERT_EQ(stream->StartAcquisition(ZelCam::Infinite, ZelCam::StartFlag_KeepQueue), 0);
    for (ZelCam::Buffer* const buffer : {others[2], others[0], others[1]})
        EXPECT_TRUE(arrives(buffer));
}

TEST_F(StreamTest, AHandleThatIsNotTheStreamsIsAnError) {
    const auto buffers = CreateBuffers();
    const auto expectRefused = [&](void* buffer) {
        const GenTL::EVENT_NEW_BUFFER_DATA data{buffer, nullptr};
        const auto* const bytes = reinterpret_cast<const uint8_t*>(&data);
        ASSERT_TRUE(producer.FireEvent(handle, 1, {bytes, bytes + sizeof data}));
        ZelCamErr err = kUntouched;
        EXPECT_EQ(stream->GetBuffer(0, &err), nullptr);
        EXPECT_EQ(err, ZelCamErr_Error);
    };
    expectRefused(nullptr);
    void* const revoked = HandleOf("buffer of stream0");
    stream->RevokeBuffer(buffers[0]);
    expectRefused(revoked);
    void* const released = HandleOf("buffer of stream0");
    stream->ReleaseBufferQueue();
    expectRefused(released);
}

TEST_F(StreamTest, CancelBufferWakesAWaitOnAnotherThread) {
    ZelCamErr err = kUntouched;
    ZelCam::Buffer* buffer = nullptr;
    std::thread waiter([&] { buffer = stream->GetBuffer(ZelCam::Infinite, &err); });
    ASSERT_TRUE(producer.AwaitCount("EventGetData", 1));
    EXPECT_EQ(stream->CancelBuffer(), 0);
    waiter.join();
    EXPECT_EQ(buffer, nullptr);
    EXPECT_EQ(err, ZelCamErr_GenTL_Abort);
}

TEST_F(StreamTest, StartQueuesEveryBufferFirstUnlessTheQueueIsKept) {
    CreateBuffers();
    EXPECT_EQ(stream->StartAcquisition(10, 5), 0);
    EXPECT_THAT(Calls(), ElementsAre("DSFlushQueue 4", "DSQueueBuffer", "DSQueueBuffer",
                                     "DSQueueBuffer", "DSStartAcquisition 5 10"));
    EXPECT_EQ(stream->StartAcquisition(ZelCam::Infinite, ZelCam::StartFlag_KeepQueue | 0x7U), 0);
    EXPECT_THAT(Calls(), ElementsAre("DSStartAcquisition 7 18446744073709551615"));
}

TEST_F(StreamTest, StartStopsAtTheFirstFailure) {
    CreateBuffers();
    const struct {
        const char* function;
        size_t skip;
        size_t calls;
    } failures[] = {{"DSFlushQueue", 0, 1},
                    {"DSQueueBuffer", 0, 2},
                    {"DSQueueBuffer", 2, 4},
                    {"DSStartAcquisition", 0, 5}};
    for (const auto& failure : failures) {
        Fail(failure.function, -1013, Scripted::kAnyCommand, failure.skip, 1);
        EXPECT_EQ(stream->StartAcquisition(1, 0), -1013);
        EXPECT_EQ(Calls().size(), failure.calls) << failure.function;
        EXPECT_FALSE(stream->IsGrabbing());
        producer.ClearRules();
        Calls();
    }
}

TEST_F(StreamTest, StopAndFlushPassTheirArgumentOn) {
    EXPECT_EQ(stream->StopAcquisition(0x80000001U), 0);
    EXPECT_EQ(stream->FlushBuffers(ZelCam::FlushOperation::AllToInput), 0);
    EXPECT_EQ(stream->FlushBuffers(static_cast<ZelCam::FlushOperation>(6)), 0);
    EXPECT_THAT(Calls(),
                ElementsAre("DSStopAcquisition -2147483647", "DSFlushQueue 2", "DSFlushQueue 6"));
}

TEST_F(StreamTest, AllocBufferQueueAnnouncesAndQueues) {
    int user = 0;
    EXPECT_EQ(stream->AllocBufferQueue(&user, 0), 0);
    EXPECT_THAT(Calls(), ElementsAre("DSGetInfo 9", "DSGetInfo 7"));
    EXPECT_EQ(stream->AllocBufferQueue(&user, 2), 0);
    const std::vector<Scripted::Call> calls = producer.TakeCalls();
    EXPECT_THAT(TextsOf(calls), ElementsAre("DSGetInfo 9", "DSGetInfo 7",                      //
                                            "DSAllocAndAnnounceBuffer 6000", "DSQueueBuffer",  //
                                            "DSAllocAndAnnounceBuffer 6000", "DSQueueBuffer"));
    EXPECT_EQ(calls[4].priv, &user);

    // What was made before a failure stays.
    Fail("DSAllocAndAnnounceBuffer", -1021, Scripted::kAnyCommand, 1, 1);
    EXPECT_EQ(stream->AllocBufferQueue(&user, 3), -1021);
    EXPECT_EQ(stream->GetBufferQueueSize(), 3U);
    Fail("DSQueueBuffer", -1009, Scripted::kAnyCommand, 0, 1);
    EXPECT_EQ(stream->AllocBufferQueue(&user, 3), -1009);
    EXPECT_EQ(stream->GetBufferQueueSize(), 4U);
}

TEST_F(StreamTest, ReleaseBufferQueueIsRefusedWhileGrabbing) {
    EXPECT_EQ(stream->AllocBufferQueue(nullptr, 1), 0);
    CreateBuffers();
    EXPECT_EQ(stream->StartAcquisition(1, 0), 0);
    Calls();
    EXPECT_EQ(stream->ReleaseBufferQueue(), ZelCamErr_AcquisitionActive);
    EXPECT_THAT(Calls(), ElementsAre("DSGetInfo 8"));
    EXPECT_EQ(stream->GetBufferQueueSize(), 4U);

    EXPECT_EQ(stream->StopAcquisition(0), 0);
    Fail("DSFlushQueue", -1010);
    Calls();
    EXPECT_EQ(stream->ReleaseBufferQueue(), 0);
    EXPECT_THAT(Calls(), ElementsAre("DSGetInfo 8", "DSFlushQueue 4", "DSRevokeBuffer",
                                     "DSRevokeBuffer", "DSRevokeBuffer", "DSRevokeBuffer"));
    EXPECT_EQ(stream->GetBufferQueueSize(), 0U);
    EXPECT_EQ(stream->ReleaseBufferQueue(), 0);
}

TEST_F(StreamTest, TheNewBufferEventIsTheStreamsOwn) {
    EXPECT_EQ(stream->RegisterEvent(1, Subscriber::Form1, &subscriber), -1004);
    EXPECT_EQ(stream->RegisterEvent2(1, Subscriber::Form2, &subscriber), -1004);
    EXPECT_EQ(stream->UnRegisterEvent(1, Subscriber::Form1, &subscriber), -1004);
    EXPECT_EQ(stream->UnRegisterEvent2(1, Subscriber::Form2, &subscriber), -1004);
    EXPECT_THAT(Calls(), IsEmpty());
    EXPECT_EQ(stream->RegisterEvent(3, Subscriber::Form1, &subscriber), 0);
    ASSERT_TRUE(producer.FireEvent(handle, 3, {9}));
    EXPECT_EQ(subscriber.Await(1).at(0).data.at(0), 9);
}

namespace {

struct Statistic {
    const char* name;
    int command;
    GenTL::INFO_DATATYPE type;
    size_t width;
    std::function<uint64_t(ZelCam::Stream&)> get;
};

const Statistic kStatistics[] = {
    {"delivered", 1, 8, 8, [](ZelCam::Stream& s) { return s.GetNumDelivered(); }},
    {"underrun", 2, 8, 8, [](ZelCam::Stream& s) { return s.GetNumUnderrun(); }},
    {"announced", 3, 12, 8, [](ZelCam::Stream& s) { return s.GetNumAnnounced(); }},
    {"queued", 4, 12, 8, [](ZelCam::Stream& s) { return s.GetNumQueued(); }},
    {"await", 5, 12, 8, [](ZelCam::Stream& s) { return s.GetNumAwaitDelivery(); }},
    {"grabbing", 8, 11, 1, [](ZelCam::Stream& s) { return s.IsGrabbing() ? 1U : 0U; }},
    {"minimum", 12, 12, 8, [](ZelCam::Stream& s) { return s.GetMinNumBuffers(); }},
    {"alignment", 13, 12, 8, [](ZelCam::Stream& s) { return s.GetBufferAlignment(); }}};

}  // namespace

TEST_F(StreamTest, StatisticsAskOnceAndAreZeroOnAnyFault) {
    for (const Statistic& statistic : kStatistics) {
        SCOPED_TRACE(statistic.name);
        const bool flag = statistic.width == 1;
        const uint64_t value = flag ? 1 : 0xFEDCBA9876543210U;
        const auto answer = [&](GenTL::INFO_DATATYPE type) {
            // Any byte but 0 is true.
            return flag ? Scripted::Gives(uint8_t{2}, type) : Scripted::Gives(value, type);
        };
        Answer("DSGetInfo", statistic.command, answer(statistic.type));
        EXPECT_EQ(statistic.get(*stream), value);
        EXPECT_THAT(Calls(), ElementsAre("DSGetInfo " + std::to_string(statistic.command)));

        Answer("DSGetInfo", statistic.command, answer(flag ? 8 : 7));
        EXPECT_EQ(statistic.get(*stream), 0U);
        Scripted::Reply wrongWidth = answer(statistic.type);
        wrongWidth.size = 4;
        Answer("DSGetInfo", statistic.command, wrongWidth);
        EXPECT_EQ(statistic.get(*stream), 0U);
        Fail("DSGetInfo", -1014, statistic.command);
        EXPECT_EQ(statistic.get(*stream), 0U);
        Calls();
    }
}

TEST_F(StreamTest, BufferSizeIsTheProducersWhenItDefinesIt) {
    Answer("DSGetInfo", 7, Scripted::Gives(size_t{1001}, GenTL::INFO_DATATYPE_SIZET));
    EXPECT_EQ(stream->GetBufferSize(), 1001U);  // not rounded
    EXPECT_THAT(Calls(), ElementsAre("DSGetInfo 9", "DSGetInfo 7"));
    for (const int command : {7, 9}) {
        Answer("DSGetInfo", command, Scripted::ReportsType(GenTL::INFO_DATATYPE_UINT64));
        EXPECT_EQ(stream->GetBufferSize(), 0U);
        producer.ClearRules();
    }
}

TEST_F(StreamTest, BufferSizeIsTheCamerasOtherwise) {
    const auto size = [this](const std::string& xml, size_t alignment) {
        producer.SetDescription(xml);
        device->Release();
        OpenDevice();
        OpenStream();
        Answer("DSGetInfo", 9, Scripted::Gives(uint8_t{0}, GenTL::INFO_DATATYPE_BOOL8));
        Answer("DSGetInfo", 13, Scripted::Gives(alignment, GenTL::INFO_DATATYPE_SIZET));
        return stream->GetBufferSize();
    };
    const std::string xml = Description::Xml();
    EXPECT_EQ(size("no description", 64), 0U);
    Description::Poke(producer, Description::PayloadSize, 1000);
    EXPECT_EQ(size(xml, 64), 1024U);
    EXPECT_EQ(size(xml, 1), 1000U);
    EXPECT_EQ(size(xml, 0), 0U);
    Fail("DSGetInfo", -1014, 13);
    EXPECT_EQ(stream->GetBufferSize(), 0U);

    // Without a feature for it, from the image; bits over a byte do not count.
    const std::string imageOnly = Description::Xml("SomethingElse");
    Description::Poke(producer, Description::PixelFormat, 0x010C0047);
    Description::Poke(producer, Description::Width, 100);
    Description::Poke(producer, Description::Height, 10);
    EXPECT_EQ(size(imageOnly, 64), 1500U);
    Description::Poke(producer, Description::Width, 3);
    Description::Poke(producer, Description::Height, 1);
    EXPECT_EQ(size(imageOnly, 0), 4U);

    EXPECT_EQ(size(test::Document("<Category Name='Root'/>" + test::kPort), 64), 0U);
}

TEST_F(StreamTest, EndsInOrderWhetherGrabbingOrNot) {
    for (const bool grabbing : {false, true}) {
        stream = device->GetStreamByIndex(0);
        ASSERT_NE(stream, nullptr);
        CreateBuffers();
        EXPECT_EQ(stream->RegisterEvent(3, Subscriber::Form1, &subscriber), 0);
        ASSERT_TRUE(producer.AwaitWaiter(HandleOf("stream stream0"), 3));
        if (grabbing) {
            EXPECT_EQ(stream->StartAcquisition(1, 0), 0);
        }
        Calls();
        stream->Release();
        std::vector<std::string> expected = {
            "EventKill",           "GCUnregisterEvent 3", "DSGetInfo 8",
            "GCUnregisterEvent 1", "DSFlushQueue 4",      "DSRevokeBuffer",
            "DSRevokeBuffer",      "DSRevokeBuffer",      "DSClose"};
        if (grabbing) expected.insert(expected.begin() + 3, "DSStopAcquisition 1");
        EXPECT_EQ(CallsWithoutRepeatedKills(), expected);
    }
}
