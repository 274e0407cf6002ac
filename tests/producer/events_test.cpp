// Events: queues, waits, kills, and their data.

#include <atomic>
#include <future>
#include <thread>

#include <gmock/gmock.h>

#include "producers/server/exports/faults.h"
#include "producers/server/modules/library.h"
#include "producers/server/modules/module.h"
#include "tests/producer/producertest.h"

using namespace GenTL;
using ::testing::AnyOf;
using ZelTest::Ask;
using ZelTest::Info;
using ZelTest::kPatienceMs;

namespace {

class EventTest : public ProducerTest {
  protected:
    EventTest() { OpenCamera(); }

    EVENT_HANDLE Register(EVENTSRC_HANDLE module, int32_t type) {
        EVENT_HANDLE event = nullptr;
        EXPECT_EQ(GCRegisterEvent(module, type, &event), GC_ERR_SUCCESS);
        return event;
    }
    // As a module of this side does it. What a camera reports comes from the transport.
    static void Fire(EVENTSRC_HANDLE module, int32_t type, const std::string& data) {
        ZelCti::Find<ZelCti::Module>(module)->FireMessage(type, static_cast<uint64_t>(GC_ERR_IO),
                                                          {data.data(), data.size()});
    }
    void Report(const std::string& data, uint64_t id = 0x9001) {
        camera->Report(EVENT_REMOTE_DEVICE, id, data);
    }
    GC_ERROR Get(EVENT_HANDLE event, std::string& data, uint64_t timeoutMs = kPatienceMs) {
        size_t size = data.size();
        const GC_ERROR code = EventGetData(event, data.data(), &size, timeoutMs);
        data.resize(size);
        return code;
    }
    // Calls of EventGetData.
    static uint64_t NumGets() {
        return ZelCti::Faults::Instance().CallCount(ZelCti::Function::EventGetData);
    }
    Info EventInfo(EVENT_HANDLE event, int32_t command) {
        return Ask(EventGetInfo, event, command);
    }
    Info DataInfo(EVENT_HANDLE event, const std::string& data, int32_t command) {
        return Ask(EventGetDataInfo, event, data.data(), data.size(), command);
    }
};

TEST_F(EventTest, RegistersWhatTheModuleHas) {
    EVENT_HANDLE event = nullptr;
    EXPECT_EQ(GCRegisterEvent(stream, EVENT_NEW_BUFFER, &event), GC_ERR_RESOURCE_IN_USE);
    EXPECT_EQ(GCRegisterEvent(device, EVENT_NEW_BUFFER, &event), GC_ERR_NOT_IMPLEMENTED);
    EXPECT_EQ(GCRegisterEvent(interface, EVENT_REMOTE_DEVICE, &event), GC_ERR_NOT_IMPLEMENTED);
    EXPECT_EQ(GCRegisterEvent(device, EVENT_ERROR, nullptr), GC_ERR_INVALID_PARAMETER);
    for (EVENTSRC_HANDLE module : {system, interface, device, stream})
        Register(module, EVENT_MODULE);
    EXPECT_EQ(GCUnregisterEvent(device, EVENT_MODULE), GC_ERR_SUCCESS);
    EXPECT_EQ(GCUnregisterEvent(device, EVENT_MODULE), GC_ERR_NOT_AVAILABLE);
    Register(device, EVENT_MODULE);
}

TEST_F(EventTest, DeliversInOrderAndKeepsWhatDoesNotFit) {
    const EVENT_HANDLE event = Register(device, EVENT_REMOTE_DEVICE);
    std::string data(4, '\0');
    EXPECT_EQ(Get(event, data, 0), GC_ERR_TIMEOUT);
    EXPECT_EQ(Get(event, data, 1), GC_ERR_TIMEOUT);
    Report("first");
    Report("2nd");
    EXPECT_EQ(EventInfo(event, EVENT_NUM_IN_QUEUE).Size(), 2U);
    EXPECT_EQ(EventInfo(event, EVENT_EVENT_TYPE).Int32(), EVENT_REMOTE_DEVICE);
    data.resize(4);
    EXPECT_EQ(Get(event, data), GC_ERR_BUFFER_TOO_SMALL);
    EXPECT_EQ(data.size(), 5U);
    size_t size = 0;
    EXPECT_EQ(EventGetData(event, nullptr, &size, 0), GC_ERR_SUCCESS);
    EXPECT_EQ(size, 5U);
    EXPECT_EQ(EventGetData(event, data.data(), nullptr, 0), GC_ERR_INVALID_PARAMETER);
    EXPECT_EQ(Get(event, data), GC_ERR_SUCCESS);
    EXPECT_EQ(data, "first");
    EXPECT_EQ(Get(event, data), GC_ERR_SUCCESS);
    EXPECT_EQ(data, "2nd");
    Report("third");
    ASSERT_EQ(EventFlush(event), GC_ERR_SUCCESS);
    EXPECT_EQ(EventInfo(event, EVENT_NUM_IN_QUEUE).Size(), 0U);
    EXPECT_EQ(EventInfo(event, EVENT_NUM_FIRED).Uint64(), 3U);

    // A message may be larger than those before it.
    const std::string large(EventInfo(event, EVENT_SIZE_MAX).Size() + 1, 'x');
    Report(large);
    EXPECT_EQ(EventInfo(event, EVENT_SIZE_MAX).Size(), large.size());
    EXPECT_EQ(EventInfo(event, EVENT_INFO_DATA_SIZE_MAX).Size(), large.size());
    data.resize(large.size());
    EXPECT_EQ(Get(event, data), GC_ERR_SUCCESS);
    EXPECT_EQ(data, large);
}

TEST_F(EventTest, KeepsTheNewestWhenNobodyFetchesThem) {
    const EVENT_HANDLE event = Register(device, EVENT_REMOTE_DEVICE);
    for (int i = 0; i <= 1024; ++i)
        Report(std::to_string(i));
    EXPECT_EQ(EventInfo(event, EVENT_NUM_IN_QUEUE).Size(), 1024U);
    std::string data(8, '\0');
    EXPECT_EQ(Get(event, data), GC_ERR_SUCCESS);
    EXPECT_EQ(data, "1");
}

TEST_F(EventTest, DataInfoFollowsTheTypeOfTheEvent) {
    const EVENT_HANDLE remote = Register(device, EVENT_REMOTE_DEVICE);
    const EVENT_HANDLE change = Register(device, EVENT_FEATURE_CHANGE);
    const EVENT_HANDLE invalidated = Register(device, EVENT_FEATURE_INVALIDATE);
    const EVENT_HANDLE error = Register(stream, EVENT_ERROR);
    const std::string named(
        "Gain\0"
        "12\0",
        8);
    Report("abc");
    Fire(device, EVENT_FEATURE_CHANGE, named);
    Fire(stream, EVENT_ERROR, "broken");
    std::string data(8, '\0');
    ASSERT_EQ(Get(remote, data), GC_ERR_SUCCESS);
    EXPECT_EQ(DataInfo(remote, data, EVENT_DATA_ID).Text(), "9001");
    EXPECT_EQ(DataInfo(remote, data, EVENT_DATA_NUMID).Uint64(), 0x9001U);
    const Info value = DataInfo(remote, data, EVENT_DATA_VALUE);
    EXPECT_EQ(value.type, INFO_DATATYPE_BUFFER);
    EXPECT_EQ(std::string(value.bytes.begin(), value.bytes.end()), "abc");
    EXPECT_EQ(DataInfo(remote, "abd", EVENT_DATA_ID).code, GC_ERR_INVALID_PARAMETER);
    data.resize(8);
    ASSERT_EQ(Get(change, data), GC_ERR_SUCCESS);
    EXPECT_EQ(DataInfo(change, data, EVENT_DATA_ID).Text(), "Gain");
    EXPECT_EQ(DataInfo(change, data, EVENT_DATA_VALUE).Text(), "12");
    EXPECT_EQ(DataInfo(change, data, EVENT_DATA_NUMID).code, GC_ERR_NOT_IMPLEMENTED);
    data.resize(8);
    using namespace std::string_literals;
    camera->Report(EVENT_FEATURE_INVALIDATE, 0, "Width\0"s);
    ASSERT_EQ(Get(invalidated, data), GC_ERR_SUCCESS);
    EXPECT_EQ(DataInfo(invalidated, data, EVENT_DATA_ID).Text(), "Width");
    EXPECT_EQ(DataInfo(invalidated, data, EVENT_DATA_VALUE).code, GC_ERR_NOT_IMPLEMENTED);
    data.resize(8);
    ASSERT_EQ(Get(error, data), GC_ERR_SUCCESS);
    EXPECT_EQ(DataInfo(error, data, EVENT_DATA_ID).Int32(), GC_ERR_IO);
    EXPECT_EQ(DataInfo(error, data, EVENT_DATA_VALUE).Text(), "broken");
}

// A lost camera is an event of its module, which comes before the end of the event.
TEST_F(EventTest, TellsWhyTheCameraIsLost) {
    const EVENT_HANDLE event = Register(device, EVENT_MODULE);
    const EVENT_HANDLE remote = Register(device, EVENT_REMOTE_DEVICE);
    Report("queued");
    camera->Lose();
    std::string data(64, '\0');
    EXPECT_EQ(Get(remote, data), GC_ERR_IO);
    ASSERT_EQ(Get(event, data), GC_ERR_SUCCESS);
    EXPECT_STREQ(data.c_str(), "is unplugged");
    EXPECT_EQ(DataInfo(event, data, EVENT_DATA_NUMID).Uint64(), 1U);
    EXPECT_EQ(Get(event, data), GC_ERR_IO);
    uint32_t count = 0;
    EXPECT_EQ(DevGetNumDataStreams(device, &count), GC_ERR_IO);
    EXPECT_THAT(LastErrorText(), ::testing::HasSubstr("C is unplugged"));
}

TEST_F(EventTest, NewBufferDataNameTheBuffer) {
    int mark = 0;
    BUFFER_HANDLE buffer = nullptr;
    ASSERT_EQ(DSAllocAndAnnounceBuffer(stream, 16, &mark, &buffer), GC_ERR_SUCCESS);
    ASSERT_EQ(Queue(buffer), GC_ERR_SUCCESS);
    ASSERT_TRUE(Stream().Send({}));
    std::string data(sizeof(EVENT_NEW_BUFFER_DATA), '\0');
    EXPECT_EQ(EventInfo(newBuffer, EVENT_SIZE_MAX).Size(), data.size());
    ASSERT_EQ(Get(newBuffer, data), GC_ERR_SUCCESS);
    EXPECT_EQ(DataInfo(newBuffer, data, EVENT_DATA_ID).Pointer(), buffer);
    EXPECT_EQ(DataInfo(newBuffer, data, EVENT_DATA_VALUE).Pointer(), &mark);
}

TEST_F(EventTest, KillEndsTheNextWaitOnceAndKeepsEvents) {
    const EVENT_HANDLE event = Register(interface, EVENT_MODULE);
    std::string data(8, '\0');
    Fire(interface, EVENT_MODULE, "kept");
    ASSERT_EQ(EventKill(event), GC_ERR_SUCCESS);
    ASSERT_EQ(EventKill(event), GC_ERR_SUCCESS) << "two kills that nobody waits for are one";
    EXPECT_EQ(Get(event, data), GC_ERR_ABORT);
    data.resize(8);
    EXPECT_EQ(Get(event, data), GC_ERR_SUCCESS);
    EXPECT_EQ(data, "kept");
}

// Whichever comes first, the wait or what ends it, the outcome is the same.
TEST_F(EventTest, WaitsEndOnKillEventAndUnregistration) {
    const EVENT_HANDLE event = Register(device, EVENT_MODULE);
    const auto wait = [&] {
        std::string data(8, '\0');
        return Get(event, data, GENTL_INFINITE);
    };
    const auto launch = [&] {
        const uint64_t before = NumGets();
        auto result = std::async(std::launch::async, wait);
        while (NumGets() == before)
            std::this_thread::yield();
        return result;
    };
    auto killed = launch();
    ASSERT_EQ(EventKill(event), GC_ERR_SUCCESS);
    EXPECT_EQ(killed.get(), GC_ERR_ABORT);
    auto served = launch();
    Fire(device, EVENT_MODULE, "event");
    EXPECT_EQ(served.get(), GC_ERR_SUCCESS);
    auto ended = launch();
    ASSERT_EQ(GCUnregisterEvent(device, EVENT_MODULE), GC_ERR_SUCCESS);
    EXPECT_THAT(ended.get(), AnyOf(GC_ERR_ABORT, GC_ERR_INVALID_HANDLE));
}

// The wait of the next registration, which begins before the ended one is over, has no part in it.
TEST_F(EventTest, UnregisteredWaitsEndAlthoughTheNextOneBegins) {
    for (int round = 0; round < 100; ++round) {
        EVENT_HANDLE event = nullptr;
        GCUnregisterEvent(stream, EVENT_NEW_BUFFER);
        ASSERT_EQ(GCRegisterEvent(stream, EVENT_NEW_BUFFER, &event), GC_ERR_SUCCESS);
        const uint64_t before = NumGets();
        auto ended = std::async(std::launch::async, [&] {
            std::string data(sizeof(EVENT_NEW_BUFFER_DATA), '\0');
            return Get(event, data);
        });
        while (NumGets() == before)
            std::this_thread::yield();
        // Most likely it sleeps after that; if not, the outcome is the same.
        std::this_thread::sleep_for(std::chrono::microseconds(100));
        ASSERT_EQ(GCUnregisterEvent(stream, EVENT_NEW_BUFFER), GC_ERR_SUCCESS);
        ASSERT_EQ(GCRegisterEvent(stream, EVENT_NEW_BUFFER, &newBuffer), GC_ERR_SUCCESS);
        std::string data(sizeof(EVENT_NEW_BUFFER_DATA), '\0');
        EXPECT_EQ(Get(newBuffer, data, 1), GC_ERR_TIMEOUT);
        ASSERT_THAT(ended.get(), AnyOf(GC_ERR_ABORT, GC_ERR_INVALID_HANDLE)) << "round " << round;
    }
}

TEST_F(EventTest, ManyThreadsShareOneQueue) {
    const EVENT_HANDLE event = Register(device, EVENT_REMOTE_DEVICE);
    constexpr size_t kNumThreads = 4;
    constexpr uint32_t kNumEvents = 500;
    std::atomic<uint64_t> sum{0};
    std::atomic<uint32_t> numLeft{kNumEvents};
    const auto fetch = [&] {
        for (;;) {
            uint32_t number = 0;
            size_t size = sizeof(number);
            const GC_ERROR code = EventGetData(event, &number, &size, kPatienceMs);
            if (code == GC_ERR_ABORT || code == GC_ERR_INVALID_HANDLE) return;
            ASSERT_EQ(code, GC_ERR_SUCCESS);
            sum += number;
            --numLeft;
        }
    };
    std::vector<std::thread> threads;
    for (size_t i = 0; i < kNumThreads; ++i)
        threads.emplace_back(fetch);
    for (uint32_t i = 1; i <= kNumEvents; ++i) {
        Report({reinterpret_cast<const char*>(&i), sizeof(i)});
    }
    while (numLeft != 0)
        std::this_thread::yield();
    EXPECT_EQ(GCUnregisterEvent(device, EVENT_REMOTE_DEVICE), GC_ERR_SUCCESS);
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(sum, uint64_t{kNumEvents} * (kNumEvents + 1) / 2);
}

}  // namespace
