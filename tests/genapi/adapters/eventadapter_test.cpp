// Events in a node map.
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <Base/GCException.h>
#include <GenApi/EventAdapter1394.h>
#include <GenApi/EventAdapterGEV.h>
#include <GenApi/EventAdapterGeneric.h>
#include <GenApi/EventAdapterU3V.h>
#include <GenApi/NodeCallback.h>
#include <GenApi/Pointer.h>
#include <gmock/gmock.h>

#include "tests/genapi/adapters/description.h"
#include "tests/genapi/adapters/messages.h"
#include "tests/genapi/support/otherthread.h"
#include "tests/genapi/support/testmap.h"

using namespace GENAPI_NAMESPACE;
using GENICAM_NAMESPACE::gcstring;
using testing::ElementsAre;
using testing::IsEmpty;
using namespace test;

namespace {

std::string EventNode(const std::string& kind, const std::string& name, const std::string& id,
                      const std::string& rest = {}) {
    return "<" + kind + " Name=\"" + name + "\"><EventID>" + id + "</EventID>" + rest + "</" +
           kind + ">";
}

// "Note" stands before the ports in the description, to see that it comes after them.
const std::string kEventNodes =
    EventNode("Integer", "Note", "9001", "<Value>1</Value>") + EventNode("Port", "First", "9001") +
    EventNode("Port", "Padded", "000000009001") + EventNode("Port", "Second", "9c0A") +
    EventNode("Port", "Zero", "0000") + RegisterOn("First", "Size", 0, 2) +
    RegisterOn("First", "Id", 2, 2) + RegisterOn("First", "Block", 6, 2) +
    RegisterOn("First", "Data", 16, 4) + RegisterOn("Second", "SecondSize", 0, 2) +
    RegisterOn("Second", "SecondData", 16, 4);

void Deliver(CEventAdapter& adapter, const Bytes& message) {
    adapter.DeliverMessage(message.data(), static_cast<uint32_t>(message.size()));
}

class EventAdapterTest : public testing::Test {
  protected:
    void SetUp() override { Load(map, kEventNodes); }

    EAccessMode Mode(const char* name) { return map._GetNode(name)->GetAccessMode(); }
    int64_t Value(const char* name) { return CIntegerPtr(map._GetNode(name))->GetValue(); }
    Bytes Content(const char* port, int64_t address, int64_t length) {
        Bytes bytes(static_cast<size_t>(length));
        CPortPtr(map._GetNode(port))->Read(bytes.data(), address, length);
        return bytes;
    }

    // Has the callbacks of nodes note their names and phases.
    void Watch(std::initializer_list<const char*> names) {
        for (const char* name : names) {
            const auto note = [this](const char* phase) {
                return [this, phase](INode* node) {
                    log.push_back(std::string(node->GetName().c_str()) + phase);
                };
            };
            Register(map._GetNode(name), note(" inside"), cbPostInsideLock);
            Register(map._GetNode(name), note(" outside"), cbPostOutsideLock);
        }
    }
    std::vector<std::string> Log() { return std::exchange(log, {}); }

    CNodeMapRef map;
    std::vector<std::string> log;
};

TEST_F(EventAdapterTest, PortsAreThereFromAttachingToDetaching) {
    EXPECT_EQ(Mode("First"), NI);
    EXPECT_EQ(Mode("Block"), NI);
    auto adapter = std::make_unique<CEventAdapterGEV>(map._Ptr);
    EXPECT_EQ(Mode("First"), NA);
    EXPECT_EQ(Mode("Block"), NA);
    EXPECT_EQ(Mode("Note"), RW);
    Deliver(*adapter, kGevEvents);
    EXPECT_EQ(Mode("First"), RO);
    EXPECT_EQ(Mode("Block"), RO);
    EXPECT_EQ(Mode("Zero"), NA);
    adapter->DetachNodeMap();
    EXPECT_EQ(Mode("First"), NI);
    EXPECT_EQ(Mode("Block"), NI);
    Deliver(*adapter, kGevEvents);
    EXPECT_EQ(Mode("First"), NI);

    // The event of before is gone.
    adapter->AttachNodeMap(map._Ptr);
    EXPECT_EQ(Mode("Block"), NA);
    adapter.reset();
    EXPECT_EQ(Mode("Block"), NI);
}

TEST_F(EventAdapterTest, AttachingAndDetachingFireCallbacks) {
    Watch({"First", "Block", "Note"});
    CEventAdapterGEV adapter(map._Ptr);
    EXPECT_THAT(Log(), testing::UnorderedElementsAre("First inside", "Block inside",
                                                     "First outside", "Block outside"));
    adapter.DetachNodeMap();
    EXPECT_EQ(Log().size(), 4u);
}

TEST_F(EventAdapterTest, AttachingElsewhereLeavesTheFormerMap) {
    CNodeMapRef other;
    Load(other, kEventNodes);
    CEventAdapterGEV adapter(map._Ptr);
    adapter.AttachNodeMap(other._Ptr);
    EXPECT_EQ(Mode("First"), NI);
    EXPECT_EQ(other._GetNode("First")->GetAccessMode(), NA);
}

TEST_F(EventAdapterTest, TheLaterOfTwoAdaptersHasThePorts) {
    CEventAdapterGEV former(map._Ptr);
    auto later = std::make_unique<CEventAdapterGEV>(map._Ptr);
    Deliver(former, kGevEvents);
    EXPECT_EQ(Mode("Block"), NA);
    Deliver(*later, kGevEvents);
    EXPECT_EQ(Value("Block"), 7);
    later.reset();
    EXPECT_EQ(Mode("Block"), NI);
}

TEST_F(EventAdapterTest, OddIdsAreRefused) {
    CNodeMapRef odd;
    Load(odd, EventNode("Port", "Good", "9001") + EventNode("Port", "Odd", "901"));
    CEventAdapterGEV adapter;
    EXPECT_EQ(ErrorOf([&] { adapter.AttachNodeMap(odd._Ptr); }),
              "LogicalErrorException: EventID is a hex string and must not be composed of an "
              "uneven number of characters");
    EXPECT_EQ(odd._GetNode("Good")->GetAccessMode(), NI);
    EXPECT_THROW(CEventAdapterGEV{odd._Ptr}, GENICAM_NAMESPACE::LogicalErrorException);
}

TEST_F(EventAdapterTest, GevEventsShowTheirItems) {
    CEventAdapterGEV adapter(map._Ptr);
    Bytes message = kGevEvents;
    Deliver(adapter, message);
    EXPECT_EQ(message, kGevEvents);
    EXPECT_EQ(Value("Size"), 16);
    EXPECT_EQ(Value("Id"), 0x9001);
    EXPECT_EQ(Value("Block"), 7);
    EXPECT_EQ(Value("SecondSize"), 20);
    EXPECT_EQ(Value("SecondData"), 0xDEADBEEF);
    EXPECT_EQ(Content("Padded", 2, 2), (Bytes{0x90, 0x01}));
    EXPECT_EQ(ErrorOf([&] { Value("Data"); }),
              "RuntimeException: CEventPort : Attempt to read address range [16,20] which is "
              "outside the buffers address range [0,16]");

    // The next event of the id replaces the former; the others stay.
    Deliver(adapter, kGevEventData);
    EXPECT_EQ(Value("Block"), 9);
    EXPECT_EQ(Value("Data"), 0x01020304);
    EXPECT_EQ(Value("SecondSize"), 20);
    Deliver(adapter, kGevExtended);
    EXPECT_EQ(Value("Size"), 24);
    EXPECT_EQ(Content("First", 8, 8), (Bytes{1, 2, 3, 4, 5, 6, 7, 8}));
    EXPECT_THROW(CIntegerPtr(map._GetNode("Block"))->SetValue(1),
                 GENICAM_NAMESPACE::AccessException);
}

TEST_F(EventAdapterTest, GevMessagesAsStructures) {
    CEventAdapterGEV adapter(map._Ptr);
    const auto as = [](auto* type, const Bytes& bytes) {
        return reinterpret_cast<decltype(type)>(bytes.data());
    };
    adapter.DeliverEventMessage(as(static_cast<const GVCP_EVENT_REQUEST*>(nullptr), kGevEvents));
    EXPECT_EQ(Value("SecondData"), 0xDEADBEEF);
    adapter.DeliverEventMessage(
        as(static_cast<const GVCP_EVENTDATA_REQUEST*>(nullptr), kGevEventData));
    EXPECT_EQ(Value("Data"), 0x01020304);
    adapter.DeliverEventMessage(
        as(static_cast<const GVCP_EVENT_REQUEST_EXTENDED_ID*>(nullptr), kGevExtended));
    EXPECT_EQ(Value("Size"), 24);
}

TEST_F(EventAdapterTest, MalformedMessagesDeliverNothing) {
    CEventAdapterGEV adapter(map._Ptr);
    Watch({"First", "Second", "Note"});
    Bytes message = kGevEvents;
    message[25] = 21;  // the second item is too long
    EXPECT_THROW(Deliver(adapter, message), GENICAM_NAMESPACE::RuntimeException);
    EXPECT_THROW(adapter.DeliverMessage(nullptr, 40), GENICAM_NAMESPACE::RuntimeException);
    EXPECT_THAT(Log(), IsEmpty());
    EXPECT_EQ(Mode("First"), NA);
}

TEST_F(EventAdapterTest, DeliveryGoesPortByPortThenToTheOthers) {
    CEventAdapterGEV adapter(map._Ptr);
    Watch({"Note", "First", "Padded", "Second"});
    Deliver(adapter, kGevEvents);
    EXPECT_THAT(Log(), ElementsAre("First inside", "First outside",    //
                                   "Padded inside", "Padded outside",  //
                                   "Note inside", "Note outside",      //
                                   "Second inside", "Second outside"));
}

TEST_F(EventAdapterTest, CallbacksSeeTheEventAndTheLock) {
    CEventAdapterGEV adapter(map._Ptr);
    const auto look = [&](INode*) {
        const bool free = OtherThreadGets(map._Ptr->GetLock());
        log.push_back(std::to_string(Value("Block")) + (free ? " free" : " locked"));
    };
    Register(map._GetNode("First"), look, cbPostInsideLock);
    Register(map._GetNode("First"), look, cbPostOutsideLock);
    Deliver(adapter, kGevEvents);
    EXPECT_THAT(Log(), ElementsAre("7 locked", "7 free"));
}

TEST_F(EventAdapterTest, CallbacksMayDetach) {
    CEventAdapterGEV adapter(map._Ptr);
    Register(map._GetNode("First"), [&](INode*) { adapter.DetachNodeMap(); });
    Deliver(adapter, kGevEvents);
    EXPECT_EQ(Mode("First"), NI);
    EXPECT_EQ(Mode("Second"), NI);
}

TEST_F(EventAdapterTest, ThrowingCallbackDoesNotKeepTheAdapter) {
    const auto handle = Register(map._GetNode("First"), [](INode*) { throw std::string("no"); });
    EXPECT_THROW(CEventAdapterGEV{map._Ptr}, std::string);
    EXPECT_EQ(Mode("First"), NI);
    CEventAdapterGEV adapter;
    EXPECT_THROW(adapter.AttachNodeMap(map._Ptr), std::string);
    EXPECT_EQ(Mode("First"), NI);
    Deregister(handle);
}

TEST_F(EventAdapterTest, U3vEventsShowWhatFollowsTheHeader) {
    CEventAdapterU3V adapter(map._Ptr);
    Deliver(adapter, kU3vEvent);
    EXPECT_EQ(Content("First", 0, 14), Bytes(kU3vEvent.begin() + 12, kU3vEvent.end()));
    EXPECT_THROW(Content("First", 0, 15), GENICAM_NAMESPACE::RuntimeException);

    // A second event in the message does not count, a Reserved field is no size.
    Bytes message = kU3vEvent;
    message[8] = 28;
    message[12] = 14;
    message.insert(message.end(), kU3vEvent.begin() + 12, kU3vEvent.end());
    message[28] = 0x0A;
    message[29] = 0x9C;
    Deliver(adapter, message);
    EXPECT_EQ(Content("First", 0, 28), Bytes(message.begin() + 12, message.end()));
    EXPECT_EQ(Mode("Second"), NA);

    adapter.DetachNodeMap();
    adapter.AttachNodeMap(map._Ptr);
    adapter.DeliverEventMessage(reinterpret_cast<const U3V_EVENT_MESSAGE*>(kU3vEvent.data()));
    EXPECT_EQ(Content("First", 2, 2), (Bytes{0x01, 0x90}));
}

TEST_F(EventAdapterTest, GenericEventsAreTheirData) {
    CEventAdapterGeneric adapter(map._Ptr);
    const Bytes data = {1, 2, 3};
    const auto deliver = [&](auto id) { adapter.DeliverMessage(data.data(), 3, id); };
    Watch({"First", "Padded", "Second", "Zero"});

    deliver(gcstring("00009001"));
    EXPECT_THAT(Log(), ElementsAre("First inside", "First outside",  //
                                   "Padded inside", "Padded outside"));
    EXPECT_EQ(Content("First", 0, 3), data);
    deliver(uint64_t(0x9C0A));
    EXPECT_THAT(Log(), ElementsAre("Second inside", "Second outside"));
    deliver(gcstring("00"));
    EXPECT_THAT(Log(), ElementsAre("Zero inside", "Zero outside"));

    deliver(gcstring("0x9001"));
    deliver(gcstring(""));
    deliver(uint64_t(0x9002));
    adapter.DeliverMessage(data.data(), 3);
    EXPECT_THAT(Log(), IsEmpty());
    EXPECT_EQ(ErrorOf([&] { deliver(gcstring("a")); }),
              "RuntimeException: Invalid event ID delivered: a");
}

TEST(EventAdapterWithoutMapTest, ChecksMessagesAllTheSame) {
    using GENICAM_NAMESPACE::RuntimeException;
    CEventAdapterGEV gev;
    EXPECT_NO_THROW(Deliver(gev, kGevEvents));
    EXPECT_THROW(Deliver(gev, kU3vEvent), RuntimeException);
    CEventAdapterU3V u3v(nullptr);
    EXPECT_NO_THROW(Deliver(u3v, kU3vEvent));
    EXPECT_THROW(Deliver(u3v, kGevEvents), RuntimeException);
    CEventAdapterGeneric generic;
    const uint8_t byte = 0;
    EXPECT_NO_THROW(generic.DeliverMessage(&byte, 1, gcstring("9001")));
    EXPECT_THROW(generic.DeliverMessage(&byte, 1, gcstring("901")), RuntimeException);
    CEventAdapter1394 unsupported;
    EXPECT_THROW(Deliver(unsupported, kU3vEvent), RuntimeException);
}

}  // namespace
