// Event threads: registration, dispatch, failures, and every way in which a thread ends.
#include "ZelCameraApi/eventhandlers.h"

#include <array>
#include <atomic>
#include <functional>
#include <future>
#include <numeric>
#include <stdexcept>

#include "tests/library/support/fixture.h"
#include "tests/support/allocationfaults.h"

using testing::ElementsAre;
using testing::IsEmpty;
using ZelCameraApi::Internal::EventHandlers;
using ZelCameraApi::Internal::GenTLLib;

namespace {

constexpr size_t kMebibyte = size_t{1} << 20;
constexpr size_t kLargestEvent = 64 * kMebibyte;

// A callback that runs a function of the test's.
class Hook {
  public:
    explicit Hook(std::function<void()> function) : function_(std::move(function)) {}
    static void Call(const void* /*data*/, size_t /*size*/, void* self) {
        static_cast<Hook*>(self)->function_();
    }

  private:
    std::function<void()> function_;
};

class EventHandlersTest : public ScriptedTest {
  protected:
    void TearDown() override {
        handlers.reset();
        ScriptedTest::TearDown();
    }

    bool Fire(int type, const std::vector<uint8_t>& data = {1}) {
        return producer.FireEvent(module, type, data);
    }
    void Register(Subscriber& with, int type = 5) {
        EXPECT_EQ(handlers->RegisterEvent(module, type, Subscriber::Form1, &with), 0);
    }
    void Register(Hook& hook) {
        EXPECT_EQ(handlers->RegisterEvent(module, 5, Hook::Call, &hook), 0);
    }
    int Unregister(Subscriber& with, int type = 5) {
        return handlers->UnRegisterEvent(module, type, Subscriber::Form1, &with);
    }
    static void Await(std::promise<void>& promise) {
        ASSERT_EQ(promise.get_future().wait_for(kPatience), std::future_status::ready);
    }

    // Ends all dispatching before the objects of the test that are declared above it are destroyed.
    class Ending {
      public:
        explicit Ending(EventHandlers& handlers) : handlers_(handlers) {}
        ~Ending() { handlers_.clear(); }
        Ending(const Ending&) = delete;
        Ending& operator=(const Ending&) = delete;

      private:
        EventHandlers& handlers_;
    };

    Subscriber other;
    void* const module = reinterpret_cast<void*>(uintptr_t{0xABC0});
    std::shared_ptr<GenTLLib> lib = std::make_shared<GenTLLib>(ProducerPath("libZelCTI.cti"));
    std::unique_ptr<EventHandlers> handlers = std::make_unique<EventHandlers>(lib);
};

}  // namespace

TEST_F(EventHandlersTest, OneThreadServesAllSubscribersOfAnEvent) {
    Register(subscriber);
    EXPECT_EQ(handlers->RegisterEvent2(module, 5, Subscriber::Form2, &other), 0);
    ASSERT_TRUE(Fire(5, {7, 8, 9}));
    const auto one = subscriber.Await(1).at(0);
    const auto two = other.Await(1).at(0);
    EXPECT_EQ(one.type, 0U);
    EXPECT_EQ(two.type, 5U);
    std::vector<uint8_t> expected(64);  // the whole buffer of the size that the producer tells
    std::iota(expected.begin(), expected.begin() + 3, uint8_t{7});
    EXPECT_EQ(one.data, expected);
    EXPECT_EQ(two.data, expected);
    ASSERT_TRUE(producer.AwaitCount("EventGetData", 2));
    const std::vector<Scripted::Call> calls = producer.TakeCalls();
    const std::string wait = "EventGetData 18446744073709551615";
    EXPECT_THAT(TextsOf(calls), ElementsAre("GCRegisterEvent 5", "EventGetInfo 4", wait, wait));
    EXPECT_EQ(calls[0].handle, module);
    EXPECT_EQ(calls[2].handle, producer.FindHandle("event 5"));
}

TEST_F(EventHandlersTest, EachEventTypeAndModuleHasItsOwnThread) {
    Subscriber a;
    Subscriber b;
    Subscriber c;
    const Ending ending(*handlers);
    void* const neighbour = reinterpret_cast<void*>(uintptr_t{0xABD0});
    Register(a, 3);
    Register(b);
    EXPECT_EQ(handlers->RegisterEvent(neighbour, 5, Subscriber::Form1, &c), 0);
    ASSERT_TRUE(Fire(5) && producer.FireEvent(neighbour, 5, {2}) && Fire(3, {3}));
    EXPECT_EQ(a.Await(1).at(0).data.at(0), 3);
    EXPECT_EQ(b.Await(1).at(0).data.at(0), 1);
    EXPECT_EQ(c.Await(1).at(0).data.at(0), 2);
    EXPECT_EQ(producer.GetCount("GCRegisterEvent"), 3U);
}

TEST_F(EventHandlersTest, ASubscriptionMadeTwiceIsCalledTwiceInOrder) {
    std::promise<std::string> order;
    std::string calls;
    Hook a([&] { calls += 'a'; });
    Hook b([&] { calls += 'b'; });
    Hook last([&] { order.set_value(calls); });
    const Ending ending(*handlers);
    for (Hook* hook : {&a, &b, &a, &last})
        EXPECT_EQ(handlers->RegisterEvent(module, 5, Hook::Call, hook), 0);
    // The first equal subscription goes.
    EXPECT_EQ(handlers->UnRegisterEvent(module, 5, Hook::Call, &a), 0);
    ASSERT_TRUE(Fire(5));
    auto result = order.get_future();
    ASSERT_EQ(result.wait_for(kPatience), std::future_status::ready);
    EXPECT_EQ(result.get(), "ba");
}

// Who is told that it failed is not subscribed.
TEST_F(EventHandlersTest, AFailingStartGivesItsCodeAndTheNextRegistrationTriesAgain) {
    for (const int32_t code : {-1003, 1}) {
        Fail("GCRegisterEvent", code, 5, 0, 1);
        EXPECT_EQ(handlers->RegisterEvent(module, 5, Subscriber::Form1, &other), code);
        EXPECT_THAT(Calls(), ElementsAre("GCRegisterEvent 5"));
        EXPECT_EQ(Unregister(other), -1002);
    }
    EXPECT_EQ(handlers->RegisterEvent2(module, 5, Subscriber::Form2, &subscriber), 0);
    ASSERT_TRUE(Fire(5));
    EXPECT_FALSE(subscriber.Await(1).empty());
    EXPECT_EQ(Unregister(other), -1002);
}

TEST_F(EventHandlersTest, AFailingSizeQueryEndsTheStartWithoutUnregistering) {
    Fail("EventGetInfo", -1010, 4, 0, 1);
    EXPECT_EQ(handlers->RegisterEvent(module, 5, Subscriber::Form1, &subscriber), -1010);
    EXPECT_THAT(Calls(), ElementsAre("GCRegisterEvent 5", "EventGetInfo 4"));
    EXPECT_THAT(producer.GetOpenHandles(), ElementsAre("event 5"));
    // Tried again, where this producer finds the event still registered.
    EXPECT_EQ(handlers->RegisterEvent(module, 5, Subscriber::Form1, &subscriber), -1004);
    expectedOpen = {"event 5"};
}

// More than any event has, or more than there is memory for.
TEST_F(EventHandlersTest, ASizeThatCannotBeFailsTheRegistration) {
    const auto registerWithSize = [&](size_t size) {
        Answer("EventGetInfo", 4, Scripted::Gives(size, GenTL::INFO_DATATYPE_SIZET));
        Calls();
        return handlers->RegisterEvent(module, 5, Subscriber::Form1, &subscriber);
    };
    const auto expectRefused = [&](size_t size) {
        EXPECT_EQ(registerWithSize(size), GenTL::GC_ERR_OUT_OF_MEMORY);
        ASSERT_TRUE(producer.AwaitCount("GCUnregisterEvent", producer.GetCount("GCRegisterEvent")));
        EXPECT_THAT(Calls(),
                    ElementsAre("GCRegisterEvent 5", "EventGetInfo 4", "GCUnregisterEvent 5"));
        EXPECT_EQ(Unregister(subscriber), -1002);
    };
    expectRefused(kLargestEvent + 1);
    expectRefused(SIZE_MAX);
    {
        const ZelTest::OutOfMemory full(kMebibyte);
        expectRefused(kMebibyte);
    }
    EXPECT_EQ(registerWithSize(kMebibyte), 0);
}

TEST_F(EventHandlersTest, SizeOfTheEventBuffer) {
    const struct {
        Scripted::Reply reply;
        size_t size;
    } cases[] = {{Scripted::Fails(-1014), 1024},
                 {Scripted::Fails(-1006), 1024},
                 {Scripted::Gives(size_t{0}, GenTL::INFO_DATATYPE_SIZET), 2},
                 {Scripted::Gives(size_t{8}, GenTL::INFO_DATATYPE_SIZET), 8},
                 {Scripted::Gives(size_t{4000}, GenTL::INFO_DATATYPE_SIZET), 4000}};
    int type = 0;
    for (const auto& c : cases) {
        Answer("EventGetInfo", 4, c.reply);
        Register(subscriber, ++type);
        ASSERT_TRUE(Fire(type, {1, 2}));
        EXPECT_EQ(subscriber.Await(static_cast<size_t>(type)).back().data.size(), c.size);
    }
}

TEST_F(EventHandlersTest, TheEventBufferGrowsWithTheEventAndStaysSo) {
    Register(subscriber);
    std::vector<uint8_t> large(100, 0xEE);
    ASSERT_TRUE(Fire(5, large));
    ASSERT_TRUE(Fire(5, {0x11}));
    const auto events = subscriber.Await(2);
    EXPECT_EQ(events[0].data, large);
    large[0] = 0x11;  // what is behind the event's data is left from before
    EXPECT_EQ(events[1].data, large);
    ASSERT_TRUE(producer.AwaitCount("EventGetData", 4));  // one of them the repetition
}

TEST_F(EventHandlersTest, EventsThatThereIsNoMemoryForAreDroppedAndCounted) {
    Register(subscriber);
    const EventHandlers::EventID_t id{module, 5};
    const auto expectDropped = [&](const std::vector<uint8_t>& event) {
        const uint64_t before = handlers->GetNumDropped(id);
        ASSERT_TRUE(producer.AwaitWaiter(module, 5));
        const size_t waits = producer.GetCount("EventGetData");
        ASSERT_TRUE(Fire(5, event));
        ASSERT_TRUE(producer.AwaitCount("EventGetData", waits + 1));
        ASSERT_TRUE(producer.AwaitWaiter(module, 5));
        EXPECT_EQ(handlers->GetNumDropped(id), before + 1);
    };
    {
        const ZelTest::OutOfMemory full(kMebibyte);
        expectDropped(std::vector<uint8_t>(kMebibyte));
    }
    expectDropped(std::vector<uint8_t>(kLargestEvent + 1));
    ASSERT_TRUE(Fire(5, {42}));
    EXPECT_EQ(subscriber.Await(1).at(0).data.at(0), 42);

    // The copy of the list of the subscribers needs memory, too.
    constexpr size_t kMany = 10000;
    const auto ignore = [](const void*, size_t, void*) {};
    for (size_t i = 0; i < kMany; ++i)
        ASSERT_EQ(handlers->RegisterEvent(module, 5, ignore, nullptr), 0);
    {
        const ZelTest::OutOfMemory full(kMany * sizeof(void*));
        expectDropped({43});
    }
    ASSERT_TRUE(Fire(5, {44}));
    EXPECT_EQ(subscriber.Await(2).at(1).data.at(0), 44);
}

TEST_F(EventHandlersTest, AnEventThatCannotBeDroppedEndsTheThread) {
    Register(subscriber);
    Fail("EventFlush", -1003);
    ASSERT_TRUE(Fire(5, std::vector<uint8_t>(kLargestEvent + 1)));
    EXPECT_TRUE(producer.AwaitCount("GCUnregisterEvent", 1));
}

TEST_F(EventHandlersTest, WhatCallbacksThrowIsDropped) {
    Hook failing([] { throw std::runtime_error("of the application"); });
    const auto throwNumber = [](uint32_t, const void*, size_t, void*) { throw 7; };
    const Ending ending(*handlers);
    Register(failing);
    EXPECT_EQ(handlers->RegisterEvent2(module, 5, throwNumber, nullptr), 0);
    Register(subscriber);
    ASSERT_TRUE(Fire(5, {1}));
    ASSERT_TRUE(Fire(5, {2}));
    EXPECT_EQ(subscriber.Await(2).at(1).data.at(0), 2);
}

TEST_F(EventHandlersTest, OnlyTheSamePairIsUnregistered) {
    EXPECT_EQ(Unregister(subscriber), -1002);
    Register(subscriber);
    EXPECT_EQ(handlers->UnRegisterEvent(module, 5, Subscriber::Form1, &other), -1002);
    EXPECT_EQ(handlers->UnRegisterEvent(module, 5, Hook::Call, &subscriber), -1002);
    EXPECT_EQ(handlers->UnRegisterEvent2(module, 5, Subscriber::Form2, &subscriber), -1002);
    EXPECT_EQ(handlers->UnRegisterEvent(module, 6, Subscriber::Form1, &subscriber), -1002);
    EXPECT_EQ(handlers->UnRegisterEvent(nullptr, 5, Subscriber::Form1, &subscriber), -1002);
    ASSERT_TRUE(Fire(5));
    EXPECT_EQ(subscriber.Await(1).size(), 1U);  // still subscribed
    EXPECT_EQ(Unregister(subscriber), 0);
    EXPECT_EQ(Unregister(subscriber), -1002);
}

TEST_F(EventHandlersTest, WithoutSubscribersTheThreadEndsAtItsNextEvent) {
    std::array<Subscriber, 5> subscribers;
    const Ending ending(*handlers);
    Register(subscribers[0]);
    ASSERT_TRUE(producer.AwaitCount("EventGetData", 1));
    EXPECT_EQ(Unregister(subscribers[0]), 0);
    EXPECT_EQ(producer.GetCount("GCUnregisterEvent"), 0U);

    // A thread that waits serves the next subscriber too; one that has ended is started afresh.
    for (size_t i = 1; i < subscribers.size(); ++i) {
        Register(subscribers[i]);
        EXPECT_EQ(producer.GetCount("GCRegisterEvent"), i);
        ASSERT_TRUE(Fire(5, {42}));
        EXPECT_EQ(subscribers[i].Await(1).at(0).data.at(0), 42);
        EXPECT_EQ(Unregister(subscribers[i]), 0);
        Fire(5);  // or the thread has seen already that nobody is left
        ASSERT_TRUE(producer.AwaitCount("GCUnregisterEvent", i));
        EXPECT_EQ(subscribers[i].Await(1).size(), 1U);
    }
}

TEST_F(EventHandlersTest, AFailingWaitEndsTheThreadAndARegistrationRestartsIt) {
    Fail("EventGetData", -20000, Scripted::kAnyCommand, 0, 1);
    Register(subscriber);
    ASSERT_TRUE(producer.AwaitCount("GCUnregisterEvent", 1));
    // The old subscription counts again.
    EXPECT_EQ(handlers->RegisterEvent2(module, 5, Subscriber::Form2, &other), 0);
    ASSERT_TRUE(Fire(5));
    subscriber.Await(1);
    other.Await(1);
}

TEST_F(EventHandlersTest, ClearEndsWaitingThreads) {
    for (const int type : {3, 4, 5})
        Register(subscriber, type);
    for (const int type : {3, 4, 5})
        ASSERT_TRUE(producer.AwaitWaiter(module, type));
    Calls();
    handlers->clear();
    EXPECT_THAT(CallsWithoutRepeatedKills(), ElementsAre("EventKill", "GCUnregisterEvent 3",  //
                                                         "EventKill", "GCUnregisterEvent 4",  //
                                                         "EventKill", "GCUnregisterEvent 5"));
    EXPECT_EQ(Unregister(subscriber), -1002);
    Register(subscriber);  // usable again
}

TEST_F(EventHandlersTest, KillThreadEndsOneEntry) {
    Register(subscriber, 3);
    Register(subscriber, 5);
    handlers->KillThread({module, 3});
    EXPECT_EQ(producer.FindHandle("event 3"), nullptr);
    EXPECT_NE(producer.FindHandle("event 5"), nullptr);
    EXPECT_THROW(handlers->KillThread({module, 3}), std::out_of_range);
}

TEST_F(EventHandlersTest, CallbacksMayRegisterAndUnregister) {
    std::promise<void> done;
    Hook hook([&] {
        EXPECT_EQ(handlers->RegisterEvent(module, 5, Subscriber::Form1, &subscriber), 0);
        EXPECT_EQ(handlers->RegisterEvent(module, 6, Subscriber::Form1, &other), 0);
        EXPECT_EQ(handlers->UnRegisterEvent(module, 5, Hook::Call, &hook), 0);
        done.set_value();
    });
    const Ending ending(*handlers);
    Register(hook);
    ASSERT_TRUE(Fire(5, {1}));
    Await(done);
    ASSERT_TRUE(Fire(5, {2}));
    ASSERT_TRUE(Fire(6, {3}));
    EXPECT_EQ(subscriber.Await(1).at(0).data.at(0), 2);  // from the next event on
    EXPECT_EQ(other.Await(1).at(0).data.at(0), 3);
}

TEST_F(EventHandlersTest, ASubscriberRemovedDuringDispatchIsCalledOnceMore) {
    Hook hook([&] { Unregister(subscriber); });
    const Ending ending(*handlers);
    Register(hook);
    Register(subscriber);
    Register(other);
    ASSERT_TRUE(Fire(5));
    ASSERT_TRUE(Fire(5));
    other.Await(2);
    EXPECT_EQ(subscriber.Await(1).size(), 1U);  // the list was copied before
}

TEST_F(EventHandlersTest, KillingItsOwnThreadOnlyEndsTheWait) {
    for (const int32_t resultOfKill : {0, -1003}) {
        Fail("EventKill", resultOfKill);  // does nothing
        std::promise<void> done;
        Hook hook([&] {
            Calls();
            handlers->KillThread({module, 5});
            done.set_value();
        });
        Subscriber next;
        const Ending ending(*handlers);
        Register(hook);
        const size_t unregistered = producer.GetCount("GCUnregisterEvent");
        ASSERT_TRUE(Fire(5));
        Await(done);
        ASSERT_TRUE(producer.AwaitCount("GCUnregisterEvent", unregistered + 1));
        EXPECT_THAT(Calls(), ElementsAre("EventKill", "GCUnregisterEvent 5"));
        // The entry is still there, and can be used again.
        EXPECT_EQ(handlers->UnRegisterEvent(module, 5, Hook::Call, &hook), 0);
        Register(next);
        ASSERT_TRUE(Fire(5, {42}));
        EXPECT_EQ(next.Await(1).at(0).data.at(0), 42);
        producer.ClearRules();
    }
}

TEST_F(EventHandlersTest, ClearWaitsForACallbackThatRegisters) {
    std::promise<void> entered;
    std::promise<void> proceed;
    std::atomic<bool> left{false};
    Hook hook([&] {
        entered.set_value();
        proceed.get_future().wait();
        // This must not wait for clear, which waits for this callback.
        EXPECT_EQ(handlers->RegisterEvent(module, 5, Subscriber::Form1, &other), -1012);
        EXPECT_EQ(handlers->RegisterEvent(module, 6, Subscriber::Form1, &other), 0);
        EXPECT_EQ(handlers->UnRegisterEvent(module, 6, Subscriber::Form1, &other), 0);
        left = true;
    });
    const Ending ending(*handlers);
    Register(hook);
    ASSERT_TRUE(Fire(5));
    Await(entered);
    std::thread clearing([&] { handlers->clear(); });
    EXPECT_TRUE(producer.AwaitCount("EventKill", 1));
    proceed.set_value();
    clearing.join();
    EXPECT_TRUE(left);
    EXPECT_THAT(producer.GetOpenHandles(), IsEmpty());
}

// A producer may forget a kill.
TEST_F(EventHandlersTest, AKillIsRepeatedUntilTheThreadHasEnded) {
    Fail("EventKill", 0, Scripted::kAnyCommand, 0, 2);
    Register(subscriber);
    ASSERT_TRUE(producer.AwaitWaiter(module, 5));
    std::thread clearing([&] { handlers->clear(); });
    EXPECT_TRUE(producer.AwaitCount("EventKill", 3));
    Fire(5);  // whatever the kills did
    clearing.join();
}

// A producer may answer EventKill with an error, or not have it. The event that is unregistered
// instead is not used again: neither by a thread that waits nor by one that is in a callback.
TEST_F(EventHandlersTest, WithoutAKillTheEventIsUnregisteredOnce) {
    Fail("EventKill", -1003);
    Register(subscriber);
    ASSERT_TRUE(producer.AwaitWaiter(module, 5));
    Calls();
    handlers->clear();
    const auto once = ElementsAre("EventKill", "GCUnregisterEvent 5");
    EXPECT_THAT(Calls(), once);

    std::promise<void> entered;
    std::promise<void> proceed;
    Hook hook([&] {
        entered.set_value();
        proceed.get_future().wait();
    });
    Register(hook);
    ASSERT_TRUE(Fire(5));
    Await(entered);
    Calls();
    std::thread clearing([&] { handlers->clear(); });
    EXPECT_TRUE(producer.AwaitCount("GCUnregisterEvent", 2));
    proceed.set_value();
    clearing.join();
    EXPECT_THAT(Calls(), once);
}

TEST_F(EventHandlersTest, ManyThreadsMayRegisterAtOnce) {
    std::atomic<int> failures{0};
    std::vector<std::thread> threads;
    threads.reserve(4);
    const auto run = [&](int first) {
        for (int i = 0; i < 25; ++i) {
            const int type = 5 + (first + i) % 2;
            const auto ignore = [](const void*, size_t, void*) {};
            failures += handlers->RegisterEvent(module, type, ignore, &first) != 0 ? 1 : 0;
            Fire(type);
            failures += handlers->UnRegisterEvent(module, type, ignore, &first) != 0 ? 1 : 0;
        }
    };
    for (int t = 0; t < 4; ++t)
        threads.emplace_back(run, t);
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(failures, 0);
    Register(subscriber);
    ASSERT_TRUE(Fire(5, {99}));
    for (size_t n = 1; subscriber.Await(n).back().data.at(0) != 99; ++n) {
    }
}
