// Systems: producers, lists of interfaces, and the order in which everything ends.
#include "ZelCameraApi/systemimpl.h"

#include <stdexcept>

#include "tests/library/support/fixture.h"
#include "tests/support/allocationfaults.h"

using testing::ElementsAre;
using testing::IsEmpty;
using ZelCam::InterfaceType;

namespace {

class SystemTest : public SessionTest {
  protected:
    SystemTest() { second.Reset(); }

    std::vector<std::string> Ids(InterfaceType type = InterfaceType::Unknown) {
        std::vector<std::string> ids;
        const Holder<ZelCam::List<ZelCam::Interface>> list(system->GetInterfaceList(type));
        if (list == nullptr) return {"no list"};
        for (auto* i = list->GetFirst(); i != nullptr; i = list->GetNext())
            ids.emplace_back(i->GetId());
        EXPECT_EQ(list->GetCount(), ids.size());
        return ids;
    }

    Scripted::Control& second = LoadControl("second.cti");
    const std::string secondPath = ProducerPath("second.cti");
};

}  // namespace

TEST_F(SystemTest, OpensTheDefaultProducer) {
    OpenSystem();
    const std::vector<Scripted::Call> calls = producer.TakeCalls();
    EXPECT_THAT(TextsOf(calls), ElementsAre("GCInitLib", "TLOpen", "TLUpdateInterfaceList 1000"));
    EXPECT_EQ(calls.back().object, nullptr);  // nobody asks whether the list changed
}

TEST_F(SystemTest, RegisteringReturnsTheFailingStepsCode) {
    OpenSystem();
    for (const char* function : {"GCInitLib", "TLOpen", "TLUpdateInterfaceList"}) {
        second.Reset();
        second.AddRule({function, Scripted::kAnyCommand,
                        [](const Scripted::Call&) { return Scripted::Fails(-1234); }});
        EXPECT_EQ(system->RegisterGenTLProvider(secondPath.c_str()), -1234);
        EXPECT_EQ(second.TakeCalls().back().function, function);
    }
    EXPECT_EQ(system->RegisterGenTLProvider(nullptr), ZelCamErr_Error);
    EXPECT_EQ(system->RegisterGenTLProvider("/no/such/producer.cti"), ZelCamErr_Error);
    EXPECT_THAT(Ids(), ElementsAre("if0", "if1"));  // none of them was taken on
}

TEST_F(SystemTest, AProducerIsUnloadedWithItsLastUse) {
    const ProducerCopy complete("second.cti");
    const ProducerCopy minimal("minimal.cti");
    OpenSystem();
    // Lacks TLUpdateInterfaceList.
    EXPECT_EQ(system->RegisterGenTLProvider(minimal.Path().c_str()), -1014);
    EXPECT_FALSE(IsLoaded(minimal.Path()));
    EXPECT_EQ(system->RegisterGenTLProvider(complete.Path().c_str()), 0);
    EXPECT_TRUE(IsLoaded(complete.Path()));
    EXPECT_EQ(Ids().size(), 4U);
    system.reset();
    EXPECT_FALSE(IsLoaded(complete.Path()));
}

TEST_F(SystemTest, InterfacesAreEnumeratedOnce) {
    OpenSystem();
    Calls();
    EXPECT_THAT(Ids(), ElementsAre("if0", "if1"));
    EXPECT_THAT(Calls(), ElementsAre("TLGetNumInterfaces",                         //
                                     "TLGetInterfaceID 0?", "TLGetInterfaceID 0",  //
                                     "TLOpenInterface if0",                        //
                                     "TLGetInterfaceID 1?", "TLGetInterfaceID 1",  //
                                     "TLOpenInterface if1"));
    ZelCam::Interface* const if1 = system->GetInterfaceById("if1");
    EXPECT_EQ(system->GetInterfaceById("if1"), if1);
    EXPECT_THAT(Ids(), ElementsAre("if0", "if1"));
    EXPECT_THAT(Calls(), IsEmpty());

    // Interfaces of a producer registered now are not looked for any more.
    EXPECT_EQ(system->RegisterGenTLProvider(secondPath.c_str()), 0);
    EXPECT_THAT(Ids(), ElementsAre("if0", "if1"));
    EXPECT_EQ(second.GetCount("TLGetNumInterfaces"), 0U);
}

TEST_F(SystemTest, InterfacesOfAllProducersInTheirOrder) {
    OpenSystem();
    second.SetWorld({{"z", "CXP", {}}, {"a", "HDSDI", {}}});
    EXPECT_EQ(system->RegisterGenTLProvider(secondPath.c_str()), 0);
    EXPECT_THAT(Ids(), ElementsAre("if0", "if1", "z", "a"));
    EXPECT_THAT(Ids(InterfaceType::CXP), ElementsAre("z"));
    EXPECT_THAT(Ids(InterfaceType::GEV), ElementsAre("if0"));
    EXPECT_THAT(Ids(InterfaceType::CL), IsEmpty());
    EXPECT_THAT(Ids(static_cast<InterfaceType>(0)), IsEmpty());
}

TEST_F(SystemTest, AFailedEnumerationLeavesNothingAndIsRepeated) {
    OpenSystem();
    // The second interface, with the first one open.
    Fail("TLGetInterfaceID", -1010, Scripted::kAnyCommand, 2, 1);
    EXPECT_EQ(system->GetInterfaceList(InterfaceType::Unknown), nullptr);
    EXPECT_EQ(producer.FindHandle("interface if0"), nullptr);
    Fail("TLGetNumInterfaces", -1010, Scripted::kAnyCommand, 0, 1);
    EXPECT_EQ(system->GetInterfaceById("if0"), nullptr);
    EXPECT_THAT(Ids(), ElementsAre("if0", "if1"));
}

TEST_F(SystemTest, ListsAreWalkedWithACursorThatStaysAtTheEnd) {
    OpenSystem();
    const Holder<ZelCam::List<ZelCam::Interface>> list(
        system->GetInterfaceList(InterfaceType::Unknown));
    EXPECT_EQ(list->GetNext(), nullptr);  // it starts there
    for (int round = 0; round < 2; ++round) {
        EXPECT_EQ(list->GetFirst(), system->GetInterfaceById("if0"));
        EXPECT_EQ(list->GetNext(), system->GetInterfaceById("if1"));
        EXPECT_EQ(list->GetNext(), nullptr);
        EXPECT_EQ(list->GetNext(), nullptr);
    }
    const Holder<ZelCam::List<ZelCam::Interface>> empty(
        system->GetInterfaceList(InterfaceType::CL));
    EXPECT_EQ(empty->GetFirst(), nullptr);
    EXPECT_EQ(empty->GetNext(), nullptr);
}

TEST_F(SystemTest, ReleasedListsAreDestroyed) {
    OpenInterface();
    const auto getAndRelease = [&] {
        system->GetInterfaceList(InterfaceType::Unknown)->Release();
        iface->GetDeviceInfoList()->Release();
        producer.TakeCalls();
    };
    getAndRelease();
    const int64_t before = ZelTest::AllocationFaults::Live();
    for (int i = 0; i < 10; ++i)
        getAndRelease();
    EXPECT_EQ(ZelTest::AllocationFaults::Live(), before);
}

TEST_F(SystemTest, InterfacesThatDoNotOpenAreSkipped) {
    producer.SetWorld({{"a", "GEV", {}}, {"b", "GEV", {}}, {"c", "GEV", {}}});
    OpenSystem();
    Fail("TLOpenInterface", -1005, Scripted::kAnyCommand, 1, 1);
    EXPECT_THAT(Ids(), ElementsAre("a", "c"));
    EXPECT_EQ(system->GetInterfaceById("b"), nullptr);
}

TEST_F(SystemTest, IdentifiersAreComparedExactly) {
    OpenSystem();
    EXPECT_STREQ(system->GetInterfaceById("if1")->GetId(), "if1");
    for (const char* id : {"IF1", "if", "if10", "", " if1"})
        EXPECT_EQ(system->GetInterfaceById(id), nullptr) << id;
    EXPECT_THROW(system->GetInterfaceById(nullptr), std::logic_error);
}

TEST_F(SystemTest, NameAndVersionAreAskedOfTheFirstProducerUntilItTells) {
    OpenSystem();
    EXPECT_EQ(system->RegisterGenTLProvider(secondPath.c_str()), 0);
    second.TakeCalls();
    const struct {
        const char* (ZelCam::System::*getter)();
        int command;
        const char* text;
    } getters[] = {{&ZelCam::System::GetDisplayName, 7, "Scripted system"},
                   {&ZelCam::System::GetVersion, 3, "1.2.3"}};
    for (const auto& [getter, command, text] : getters) {
        Fail("TLGetInfo", -1014, command, 0, 1);
        EXPECT_EQ((*system.*getter)(), nullptr);
        Answer("TLGetInfo", command, Scripted::ReportsType(GenTL::INFO_DATATYPE_UINT32));
        EXPECT_EQ((*system.*getter)(), nullptr);
        producer.ClearRules();
        Calls();
        const char* const first = (*system.*getter)();
        EXPECT_STREQ(first, text);
        const std::string query = "TLGetInfo " + std::to_string(command);
        EXPECT_THAT(Calls(), ElementsAre(query + '?', query));
        EXPECT_EQ((*system.*getter)(), first);
        EXPECT_THAT(Calls(), IsEmpty());
    }
    EXPECT_THAT(second.TakeCalls(), IsEmpty());
}

TEST_F(SystemTest, EndsInterfacesThenProducersInTheirOrder) {
    OpenSystem();
    EXPECT_EQ(system->RegisterGenTLProvider(secondPath.c_str()), 0);
    ASSERT_NE(system->GetInterfaceList(InterfaceType::Unknown), nullptr);  // never released
    // What of the other producer is closed when each of them is.
    std::vector<size_t> closed;
    producer.AddRule({"TLClose", Scripted::kAnyCommand, [&](const Scripted::Call&) {
                          closed.push_back(second.GetCount("IFClose"));
                          return Scripted::Fails(-1010);  // ignored
                      }});
    second.AddRule({"TLClose", Scripted::kAnyCommand, [&](const Scripted::Call&) {
                        closed.push_back(producer.GetCount("GCCloseLib"));
                        return Scripted::Reply{};
                    }});
    Fail("GCCloseLib", -1010);
    Calls();
    system.reset();
    EXPECT_THAT(Calls(), ElementsAre("IFClose", "IFClose", "TLClose", "GCCloseLib"));
    EXPECT_THAT(closed, ElementsAre(2, 1));
    EXPECT_THAT(second.GetOpenHandles(), IsEmpty());
    expectedOpen = {"library", "system scripted"};  // as scripted above
}

TEST_F(SystemTest, SystemsAreIndependent) {
    OpenSystem();
    ZelCam::Interface* const mine = system->GetInterfaceById("if0");
    Holder<ZelCam::System> other(ZelCam_GetSystem());
    ASSERT_NE(other, nullptr);
    EXPECT_NE(other->GetInterfaceById("if0"), mine);
    other.reset();
    EXPECT_STREQ(mine->GetFirstDeviceInfo()->GetID(), "cam0");
}
