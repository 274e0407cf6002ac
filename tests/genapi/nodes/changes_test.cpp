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
    kPort + Named("Category", "Root", "<pFeature>Width</pFeature>") + Over("Width", "R") +
    IntReg("R", 0) + Over("Other", "R") +
    Named("Integer", "Far", "<pIsAvailable>Width</pIsAvailable><Value>1</Value>") +
    Named("Integer", "Ends", "<pInvalidator>R</pInvalidator><Value>1</Value>") +
    Named("Integer", "Limited", "<Value>0</Value><pMax>Width</pMax>") + Literal("Alone", "1") +
    Named("IntSwissKnife", "Twice", "<pVariable Name='W'>Width</pVariable><Formula>W*2</Formula>") +
    Named("Command", "Go", "<pValue>Start</pValue><CommandValue>1</CommandValue>") +
    IntReg("Start", 16);

// Notes the names of the nodes whose callbacks are called, and the phase.
class Changes {
  public:
    Changes(TestMap& map, const std::vector<std::string>& nodes) {
        for (const std::string& name : nodes)
            for (const ECallbackType phase : {cbPostInsideLock, cbPostOutsideLock})
                Register(
                    &map.Node(name),
                    [this, phase](INode* node) {
                        (phase == cbPostInsideLock ? inside_ : outside_)
                            .push_back(ToStd(node->GetName()));
                    },
                    phase);
    }
    // What was called inside; each of it must have been called outside, too.
    std::vector<std::string> Take() {
        EXPECT_THAT(outside_, testing::UnorderedElementsAreArray(inside_));
        outside_.clear();
        return std::exchange(inside_, {});
    }

  private:
    std::vector<std::string> inside_, outside_;
};

const std::vector<std::string> kAll = {"Root",    "Width", "R",     "Other", "Far",   "Ends",
                                       "Limited", "Alone", "Twice", "Go",    "Start", "Device"};

TEST(Callbacks, FireForWhatAChangeTouches) {
    TestMap map(kNodes);
    Changes changes(map, kAll);
    const auto width =
        UnorderedElementsAre("Root", "Width", "R", "Other", "Far", "Ends", "Limited", "Twice");
    map.Set("Width", "5");
    EXPECT_THAT(changes.Take(), width);
    map.Set("Width", "5");
    EXPECT_THAT(changes.Take(), width) << "unchanged, but written";
    map.Integer("Other").SetValue(6, false);
    EXPECT_THAT(changes.Take(), width);
    map.Set("Alone", "2");
    EXPECT_THAT(changes.Take(), UnorderedElementsAre("Alone"));
    map.Node("Width").InvalidateNode();
    EXPECT_THAT(changes.Take(), UnorderedElementsAre("Root", "Width", "Far", "Limited", "Twice"));
    map.NodeMap()->InvalidateNodes();
    EXPECT_THAT(changes.Take(), testing::UnorderedElementsAreArray(kAll));
    map.map._Connect(&map.port);
    EXPECT_THAT(changes.Take(),
                testing::AllOf(testing::Contains("Device"), testing::Contains("Width"),
                               testing::Not(testing::Contains("Alone"))));
    map.Get("Twice");
    map.Integer("Width").GetValue(true, true);
    EXPECT_THAT(changes.Take(), testing::IsEmpty()) << "reading changes nothing";

    map.Set("Go", "1");
    EXPECT_THAT(changes.Take(), UnorderedElementsAre("Go", "Start"));
    map.As<ICommand>("Go").IsDone();
    EXPECT_THAT(changes.Take(), testing::IsEmpty());
    map.port.Fill(16, {0});
    map.As<ICommand>("Go").IsDone();
    EXPECT_THAT(changes.Take(), testing::Contains("Go"));
}

TEST(Callbacks, StaySilentWhenAWriteFails) {
    TestMap map(kNodes);
    Changes changes(map, kAll);
    map.Set("Limited", "0");
    changes.Take();
    EXPECT_THAT(ErrorOf([&] { map.Set("Limited", "1"); }), HasSubstr("OutOfRangeException"));
    EXPECT_THAT(ErrorOf([&] { map.Set("Twice", "1"); }), HasSubstr("AccessException"));
    EXPECT_THAT(ErrorOf([&] { map.Set("Width", "x"); }), HasSubstr("InvalidArgumentException"));
    map.port.failing = 0;
    EXPECT_THAT(ErrorOf([&] { map.Set("Width", "1"); }), HasSubstr("TimeoutException"));
    EXPECT_THAT(changes.Take(), testing::IsEmpty());
}

TEST(Callbacks, RunInsideAndThenOutsideTheLock) {
    TestMap map(kNodes);
    std::string order;
    const auto note = [&](const char* phase) {
        return [&, phase](INode*) {
            const bool isFree = OtherThreadGets(map.NodeMap()->GetLock());
            order += phase + map.Get("Twice") + (isFree ? "f " : "l ");
        };
    };
    Register(&map.Node("Width"), note("out"), cbPostOutsideLock);
    Register(&map.Node("R"), note("in"), cbPostInsideLock);
    map.Set("Width", "5");
    EXPECT_EQ(order, "in10l out10f ");
    order.clear();
    const AutoLock held(map.NodeMap()->GetLock());
    map.Set("Width", "6");
    EXPECT_EQ(order, "in12l out12l ") << "the application's own lock stays";
}

TEST(Callbacks, MayWriteDeregisterAndThrow) {
    TestMap map(kNodes);
    std::string order;
    Register(&map.Node("Width"), [&](INode*) {
        order += "width ";
        map.Set("Alone", "7");
        order += "written ";
    });
    Register(&map.Node("Alone"), [&](INode*) { order += "alone "; });
    map.Set("Width", "5");
    EXPECT_EQ(order, "width alone written ");

    CallbackHandleType once = 0;
    int calls = 0;
    once = Register(&map.Node("Far"), [&](INode* node) {
        ++calls;
        EXPECT_TRUE(node->DeregisterCallback(once));
    });
    map.Set("Width", "6");
    map.Set("Width", "7");
    EXPECT_EQ(calls, 1);
    EXPECT_FALSE(map.Node("Far").DeregisterCallback(once));

    Register(&map.Node("Other"), [](INode*) { throw RUNTIME_EXCEPTION("from a callback"); });
    EXPECT_EQ(ErrorOf([&] { map.Set("Width", "8"); }), "RuntimeException: from a callback");
    EXPECT_EQ(map.Get("Width"), "8");
    EXPECT_TRUE(OtherThreadGets(map.NodeMap()->GetLock()));
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
            return map.Node(name).RegisterCallback(new Observed(&map.Node(name), ended));
        };
        const CallbackHandleType first = add("Width"), second = add("Width");
        add("R");
        EXPECT_FALSE(map.Node("R").DeregisterCallback(first));
        EXPECT_FALSE(map.Node("Width").DeregisterCallback(1));
        EXPECT_EQ(ended, 0);
        EXPECT_TRUE(map.Node("Width").DeregisterCallback(first));
        EXPECT_EQ(ended, 1);
        Deregister(second);
        EXPECT_EQ(ended, 2);
        EXPECT_THAT(ErrorOf([&] { map.Node("R").RegisterCallback(nullptr); }),
                    HasSubstr("InvalidArgumentException"));
    }
    EXPECT_EQ(ended, 3);
}

std::string Polled(const std::string& name, int address, int time, const std::string& before = "") {
    return Named("IntReg", name,
                 before + RegisterAt(address, 4) + Element("PollingTime", time) + kLittle);
}

TEST(Polling, InvalidatesWhatIsDue) {
    TestMap map(kPort + Polled("Slow", 0, 1000) + Over("OfSlow", "Slow") + Polled("Fast", 4, 300) +
                Polled("Always", 8, 0) +
                Polled("Blocked", 12, 500, "<pBlockPolling>Block</pBlockPolling>") +
                Literal("Block", "1"));
    const std::vector<std::string> nodes = {"Slow", "OfSlow", "Fast", "Always", "Blocked"};
    Changes changes(map, nodes);
    EXPECT_EQ(map.Node("Slow").GetPollingTime(), 1000);
    EXPECT_EQ(map.Node("OfSlow").GetPollingTime(), -1);
    map.Get("OfSlow");
    map.port.TakeTrace();
    const auto poll = [&](int64_t elapsed) {
        map.NodeMap()->Poll(elapsed);
        EXPECT_EQ(map.port.TakeTrace(), "") << "polling does not read";
        return changes.Take();
    };
    EXPECT_THAT(poll(0), testing::IsEmpty());
    EXPECT_THAT(poll(-5000), testing::IsEmpty());
    EXPECT_THAT(poll(299), UnorderedElementsAre("Always"));
    EXPECT_THAT(poll(1), UnorderedElementsAre("Always", "Fast"));
    map.Set("Fast", "1");  // does not restart its counter
    changes.Take();
    map.port.TakeTrace();
    EXPECT_THAT(poll(299), UnorderedElementsAre("Always"));
    EXPECT_THAT(poll(401), UnorderedElementsAre("Always", "Fast", "Slow", "OfSlow"));
    EXPECT_EQ(map.Get("OfSlow"), "0");
    EXPECT_EQ(map.port.TakeTrace(), "R0 ");
    map.Set("Block", "0");
    EXPECT_THAT(poll(1), UnorderedElementsAre("Always", "Blocked"));
    EXPECT_THAT(poll(1000000), UnorderedElementsAre("Always", "Fast", "Slow", "OfSlow", "Blocked"));
    EXPECT_THAT(poll(299), UnorderedElementsAre("Always"));
}

TEST(Polling, OfWhatWaitsForTheDevice) {
    TestMap map(
        kPort +
        Named("Command", "C",
              "<pValue>R</pValue><CommandValue>1</CommandValue><PollingTime>10</PollingTime>") +
        Named(
            "Enumeration", "E",
            Named("EnumEntry", "Idle", "<Value>0</Value>") +
                Named("EnumEntry", "Once", "<Value>1</Value><IsSelfClearing>Yes</IsSelfClearing>") +
                "<pValue>S</pValue><PollingTime>10</PollingTime>") +
        IntReg("R", 0) + IntReg("S", 4));
    Changes changes(map, {"C", "E"});
    const auto poll = [&] {
        map.NodeMap()->Poll(10);
        return changes.Take();
    };
    EXPECT_THAT(poll(), testing::IsEmpty());
    map.Set("C", "1");
    map.Set("E", "Once");
    changes.Take();
    EXPECT_THAT(poll(), UnorderedElementsAre("C", "E"));
    EXPECT_EQ(map.Get("E"), "Once");
    map.port.Fill(0, {0, 0, 0, 0, 0});
    EXPECT_TRUE(map.As<ICommand>("C").IsDone());
    map.Node("S").InvalidateNode();
    EXPECT_EQ(map.Get("E"), "Idle");
    changes.Take();
    EXPECT_THAT(poll(), testing::IsEmpty());
}

TEST(Maps, OfOneDescriptionAreIndependent) {
    CNodeMapFactory factory(Document(kNodes).c_str());
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
    EXPECT_EQ(ToStd(second._GetNode("R")->GetDeviceName()), "Second");
    first._Destroy();
    EXPECT_EQ(CIntegerPtr(second._GetNode("Twice"))->GetValue(), 0);
}

TEST(Maps, ServeSeveralThreads) {
    constexpr int kRounds = 2000;
    TestMap map(kNodes);
    std::atomic<int> fired{0};
    Register(
        &map.Node("Twice"), [&](INode*) { ++fired; }, cbPostOutsideLock);
    const auto work = [&](const char* name) {
        for (int i = 0; i < kRounds; ++i) {
            map.Integer(name).SetValue(1 + i % 3);
            map.Integer("Twice").GetValue();
            map.Node("Far").GetAccessMode();
            map.Get("Limited");
            const AutoLock both(map.NodeMap()->GetLock());
            const int64_t width = map.Integer("Width").GetValue();
            EXPECT_EQ(map.Integer("Twice").GetValue(), 2 * width);
        }
    };
    std::thread other(work, "Other");
    work("Width");
    other.join();
    EXPECT_EQ(fired, 2 * kRounds);
}

}  // namespace
