// What follows a change: callbacks and polling; and maps side by side.
#include <atomic>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include <GenApi/NodeCallback.h>
#include <GenApi/NodeMapFactory.h>
#include <GenApi/Synch.h>
#include <gmock/gmock.h>

#include "tests/genapi/support/otherthread.h"
#include "tests/genapi/support/testmap.h"

using namespace test;
using testing::HasSubstr;
using testing::UnorderedElementsAre;

namespace {

const std::string kNodes =
    kPort + named("Category", "Root", "<pFeature>Width</pFeature>") + over("Width", "R") +
    intReg("R", 0) + over("Other", "R") +
    named("Integer", "Far", "<pIsAvailable>Width</pIsAvailable><Value>1</Value>") +
    named("Integer", "Ends", "<pInvalidator>R</pInvalidator><Value>1</Value>") +
    named("Integer", "Limited", "<Value>0</Value><pMax>Width</pMax>") + literal("Alone", "1") +
    named("IntSwissKnife", "Twice", "<pVariable Name='W'>Width</pVariable><Formula>W*2</Formula>") +
    named("Command", "Go", "<pValue>Start</pValue><CommandValue>1</CommandValue>") +
    intReg("Start", 16);

// Notes the names of the nodes whose callbacks are called, and the phase.
class Changes {
  public:
    Changes(TestMap& map, const std::vector<std::string>& nodes) {
        for (const std::string& name : nodes)
            for (const ECallbackType phase : {cbPostInsideLock, cbPostOutsideLock})
                Register(
                    &map.node(name),
                    [this, phase](INode* node) {
                        (phase == cbPostInsideLock ? inside : outside)
                            .push_back(toStd(node->GetName()));
                    },
                    phase);
    }
    // What was called inside; each of it must have been called outside, too.
    std::vector<std::string> take() {
        EXPECT_THAT(outside, testing::UnorderedElementsAreArray(inside));
        outside.clear();
        return std::exchange(inside, {});
    }

  private:
    std::vector<std::string> inside, outside;
};

const std::vector<std::string> kAll = {"Root",    "Width", "R",     "Other", "Far",   "Ends",
                                       "Limited", "Alone", "Twice", "Go",    "Start", "Device"};

TEST(Callbacks, FireForWhatAChangeTouches) {
    TestMap map(kNodes);
    Changes changes(map, kAll);
    const auto width =
        UnorderedElementsAre("Root", "Width", "R", "Other", "Far", "Ends", "Limited", "Twice");
    map.set("Width", "5");
    EXPECT_THAT(changes.take(), width);
    map.set("Width", "5");
    EXPECT_THAT(changes.take(), width) << "unchanged, but written";
    map.integer("Other").SetValue(6, false);
    EXPECT_THAT(changes.take(), width);
    map.set("Alone", "2");
    EXPECT_THAT(changes.take(), UnorderedElementsAre("Alone"));
    map.node("Width").InvalidateNode();
    EXPECT_THAT(changes.take(), UnorderedElementsAre("Root", "Width", "Far", "Limited", "Twice"));
    map.nodeMap()->InvalidateNodes();
    EXPECT_THAT(changes.take(), testing::UnorderedElementsAreArray(kAll));
    map.map._Connect(&map.port);
    EXPECT_THAT(changes.take(),
                testing::AllOf(testing::Contains("Device"), testing::Contains("Width"),
                               testing::Not(testing::Contains("Alone"))));
    map.get("Twice");
    map.integer("Width").GetValue(true, true);
    EXPECT_THAT(changes.take(), testing::IsEmpty()) << "reading changes nothing";

    map.set("Go", "1");
    EXPECT_THAT(changes.take(), UnorderedElementsAre("Go", "Start"));
    map.as<ICommand>("Go").IsDone();
    EXPECT_THAT(changes.take(), testing::IsEmpty());
    map.port.fill(16, {0});
    map.as<ICommand>("Go").IsDone();
    EXPECT_THAT(changes.take(), testing::Contains("Go"));
}

TEST(Callbacks, StaySilentWhenAWriteFails) {
    TestMap map(kNodes);
    Changes changes(map, kAll);
    map.set("Limited", "0");
    changes.take();
    EXPECT_THAT(errorOf([&] { map.set("Limited", "1"); }), HasSubstr("OutOfRangeException"));
    EXPECT_THAT(errorOf([&] { map.set("Twice", "1"); }), HasSubstr("AccessException"));
    EXPECT_THAT(errorOf([&] { map.set("Width", "x"); }), HasSubstr("InvalidArgumentException"));
    map.port.failing = 0;
    EXPECT_THAT(errorOf([&] { map.set("Width", "1"); }), HasSubstr("TimeoutException"));
    EXPECT_THAT(changes.take(), testing::IsEmpty());
}

TEST(Callbacks, RunInsideAndThenOutsideTheLock) {
    TestMap map(kNodes);
    std::string order;
    const auto note = [&](const char* phase) {
        return [&, phase](INode*) {
            const bool isFree = otherThreadGets(map.nodeMap()->GetLock());
            order += phase + map.get("Twice") + (isFree ? "f " : "l ");
        };
    };
    Register(&map.node("Width"), note("out"), cbPostOutsideLock);
    Register(&map.node("R"), note("in"), cbPostInsideLock);
    map.set("Width", "5");
    EXPECT_EQ(order, "in10l out10f ");
    order.clear();
    const AutoLock held(map.nodeMap()->GetLock());
    map.set("Width", "6");
    EXPECT_EQ(order, "in12l out12l ") << "the application's own lock stays";
}

TEST(Callbacks, MayWriteDeregisterAndThrow) {
    TestMap map(kNodes);
    std::string order;
    Register(&map.node("Width"), [&](INode*) {
        order += "width ";
        map.set("Alone", "7");
        order += "written ";
    });
    Register(&map.node("Alone"), [&](INode*) { order += "alone "; });
    map.set("Width", "5");
    EXPECT_EQ(order, "width alone written ");

    CallbackHandleType once = 0;
    int calls = 0;
    once = Register(&map.node("Far"), [&](INode* node) {
        ++calls;
        EXPECT_TRUE(node->DeregisterCallback(once));
    });
    map.set("Width", "6");
    map.set("Width", "7");
    EXPECT_EQ(calls, 1);
    EXPECT_FALSE(map.node("Far").DeregisterCallback(once));

    Register(&map.node("Other"), [](INode*) { throw RUNTIME_EXCEPTION("from a callback"); });
    EXPECT_EQ(errorOf([&] { map.set("Width", "8"); }), "RuntimeException: from a callback");
    EXPECT_EQ(map.get("Width"), "8");
    EXPECT_TRUE(otherThreadGets(map.nodeMap()->GetLock()));
}

// Tells of its end.
class Observed : public CNodeCallback {
  public:
    Observed(INode* node, int& ended) : CNodeCallback(node, cbPostInsideLock), ended_(ended) {}
    void operator()(ECallbackType) const override {}
    void Destroy() override {
        ++ended_;
        delete this;
    }

  private:
    int& ended_;
};

TEST(Callbacks, AreDestroyedOnDeregistrationAndWithTheMap) {
    int ended = 0;
    {
        TestMap map(kNodes);
        const auto add = [&](const char* name) {
            return map.node(name).RegisterCallback(new Observed(&map.node(name), ended));
        };
        const CallbackHandleType first = add("Width"), second = add("Width");
        add("R");
        EXPECT_FALSE(map.node("R").DeregisterCallback(first));
        EXPECT_FALSE(map.node("Width").DeregisterCallback(1));
        EXPECT_EQ(ended, 0);
        EXPECT_TRUE(map.node("Width").DeregisterCallback(first));
        EXPECT_EQ(ended, 1);
        Deregister(second);
        EXPECT_EQ(ended, 2);
        EXPECT_THAT(errorOf([&] { map.node("R").RegisterCallback(nullptr); }),
                    HasSubstr("InvalidArgumentException"));
    }
    EXPECT_EQ(ended, 3);
}

std::string polled(const std::string& name, int address, int time, const std::string& before = "") {
    return named("IntReg", name,
                 before + registerAt(address, 4) + element("PollingTime", time) + kLittle);
}

TEST(Polling, InvalidatesWhatIsDue) {
    TestMap map(kPort + polled("Slow", 0, 1000) + over("OfSlow", "Slow") + polled("Fast", 4, 300) +
                polled("Always", 8, 0) +
                polled("Blocked", 12, 500, "<pBlockPolling>Block</pBlockPolling>") +
                literal("Block", "1"));
    const std::vector<std::string> nodes = {"Slow", "OfSlow", "Fast", "Always", "Blocked"};
    Changes changes(map, nodes);
    EXPECT_EQ(map.node("Slow").GetPollingTime(), 1000);
    EXPECT_EQ(map.node("OfSlow").GetPollingTime(), -1);
    map.get("OfSlow");
    map.port.takeTrace();
    const auto poll = [&](int64_t elapsed) {
        map.nodeMap()->Poll(elapsed);
        EXPECT_EQ(map.port.takeTrace(), "") << "polling does not read";
        return changes.take();
    };
    EXPECT_THAT(poll(0), testing::IsEmpty());
    EXPECT_THAT(poll(-5000), testing::IsEmpty());
    EXPECT_THAT(poll(299), UnorderedElementsAre("Always"));
    EXPECT_THAT(poll(1), UnorderedElementsAre("Always", "Fast"));
    map.set("Fast", "1");  // does not restart its counter
    changes.take();
    map.port.takeTrace();
    EXPECT_THAT(poll(299), UnorderedElementsAre("Always"));
    EXPECT_THAT(poll(401), UnorderedElementsAre("Always", "Fast", "Slow", "OfSlow"));
    EXPECT_EQ(map.get("OfSlow"), "0");
    EXPECT_EQ(map.port.takeTrace(), "R0 ");
    map.set("Block", "0");
    EXPECT_THAT(poll(1), UnorderedElementsAre("Always", "Blocked"));
    EXPECT_THAT(poll(1000000), UnorderedElementsAre("Always", "Fast", "Slow", "OfSlow", "Blocked"));
    EXPECT_THAT(poll(299), UnorderedElementsAre("Always"));
}

TEST(Polling, OfWhatWaitsForTheDevice) {
    TestMap map(
        kPort +
        named("Command", "C",
              "<pValue>R</pValue><CommandValue>1</CommandValue><PollingTime>10</PollingTime>") +
        named(
            "Enumeration", "E",
            named("EnumEntry", "Idle", "<Value>0</Value>") +
                named("EnumEntry", "Once", "<Value>1</Value><IsSelfClearing>Yes</IsSelfClearing>") +
                "<pValue>S</pValue><PollingTime>10</PollingTime>") +
        intReg("R", 0) + intReg("S", 4));
    Changes changes(map, {"C", "E"});
    const auto poll = [&] {
        map.nodeMap()->Poll(10);
        return changes.take();
    };
    EXPECT_THAT(poll(), testing::IsEmpty());
    map.set("C", "1");
    map.set("E", "Once");
    changes.take();
    EXPECT_THAT(poll(), UnorderedElementsAre("C", "E"));
    EXPECT_EQ(map.get("E"), "Once");
    map.port.fill(0, {0, 0, 0, 0, 0});
    EXPECT_TRUE(map.as<ICommand>("C").IsDone());
    map.node("S").InvalidateNode();
    EXPECT_EQ(map.get("E"), "Idle");
    changes.take();
    EXPECT_THAT(poll(), testing::IsEmpty());
}

TEST(Maps, OfOneDescriptionAreIndependent) {
    CNodeMapFactory factory(document(kNodes).c_str());
    CNodeMapRef first(factory.CreateNodeMap("First", false));
    CNodeMapRef second(factory.CreateNodeMap("Second", false));
    MemoryPort ports[2];
    first._Connect(&ports[0]);
    second._Connect(&ports[1]);
    CIntegerPtr(first._GetNode("Width"))->SetValue(5);
    CIntegerPtr(first._GetNode("Alone"))->SetValue(6);
    CIntegerPtr(first._GetNode("Width"))->ImposeMax(7);
    first._GetNode("Alone")->ImposeAccessMode(RO);
    EXPECT_EQ(CIntegerPtr(second._GetNode("Width"))->GetValue(), 0);
    EXPECT_EQ(CIntegerPtr(second._GetNode("Alone"))->GetValue(), 1);
    EXPECT_EQ(CIntegerPtr(second._GetNode("Width"))->GetMax(), 0xFFFFFFFF);
    EXPECT_EQ(second._GetNode("Alone")->GetAccessMode(), RW);
    EXPECT_EQ(toStd(second._GetNode("R")->GetDeviceName()), "Second");
    first._Destroy();
    EXPECT_EQ(CIntegerPtr(second._GetNode("Twice"))->GetValue(), 0);
}

TEST(Maps, ServeSeveralThreads) {
    constexpr int kRounds = 2000;
    TestMap map(kNodes);
    std::atomic<int> fired{0};
    Register(
        &map.node("Twice"), [&](INode*) { ++fired; }, cbPostOutsideLock);
    const auto work = [&](const char* name) {
        for (int i = 0; i < kRounds; ++i) {
            map.integer(name).SetValue(1 + i % 3);
            map.integer("Twice").GetValue();
            map.node("Far").GetAccessMode();
            map.get("Limited");
            const AutoLock both(map.nodeMap()->GetLock());
            const int64_t width = map.integer("Width").GetValue();
            EXPECT_EQ(map.integer("Twice").GetValue(), 2 * width);
        }
    };
    std::thread other(work, "Other");
    work("Width");
    other.join();
    EXPECT_EQ(fired, 2 * kRounds);
}

}  // namespace
