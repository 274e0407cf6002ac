// Interfaces: how lists of cameras are collected and updated.
#include "ZelCameraApi/ifaceimpl.h"

#include <algorithm>
#include <map>
#include <set>
#include <system_error>

#include "tests/library/support/fixture.h"

using testing::ElementsAre;
using testing::IsEmpty;
using ZelCam::InterfaceType;

namespace {

class InterfaceTest : public SessionTest {
  protected:
    using Infos = std::vector<ZelCam::DeviceInfo*>;

    void SetUp() override {
        ASSERT_NO_FATAL_FAILURE(OpenInterface());
        Calls();
    }

    Infos List() {
        Infos infos;
        const Holder<ZelCam::List<ZelCam::DeviceInfo>> list(iface->GetDeviceInfoList());
        EXPECT_NE(list, nullptr);
        if (list == nullptr) return infos;
        for (auto* i = list->GetFirst(); i != nullptr; i = list->GetNext())
            infos.push_back(i);
        return infos;
    }

    static std::vector<std::string> Ids(const Infos& infos) {
        std::vector<std::string> ids;
        for (ZelCam::DeviceInfo* i : infos)
            ids.emplace_back(i->GetID());
        return ids;
    }

    static bool ContainsId(const Infos& infos, const std::string& id) {
        const std::vector<std::string> ids = Ids(infos);
        return std::count(ids.begin(), ids.end(), id) > 0;
    }

    // The producer's list is now this, and an update says that it changed.
    void Plug(const std::vector<std::string>& devices) {
        producer.SetWorld({{"if0", "GEV", devices}});
        Answer("IFUpdateDeviceList", Scripted::kAnyCommand, Changed(1));
    }

    static Scripted::Reply Changed(uint8_t flag) {
        return Scripted::Gives(flag, GenTL::INFO_DATATYPE_BOOL8);
    }
};

}  // namespace

TEST_F(InterfaceTest, ListsTheProducersDevicesWithoutUpdating) {
    producer.SetWorld({{"if0", "GEV", {"b", "a"}}});
    EXPECT_THAT(Ids(List()), ElementsAre("a", "b"));
    EXPECT_THAT(Calls(), ElementsAre("IFGetNumDevices", "IFGetDeviceID 0?", "IFGetDeviceID 0",
                                     "IFGetDeviceID 1?", "IFGetDeviceID 1"));
    // A list that is not empty is not read again.
    producer.SetWorld({{"if0", "GEV", {"c"}}});
    EXPECT_THAT(Ids(List()), ElementsAre("a", "b"));
    EXPECT_STREQ(iface->GetFirstDeviceInfo()->GetID(), "a");
    EXPECT_THAT(Calls(), IsEmpty());
}

TEST_F(InterfaceTest, EnumerationAppliesTheDifference) {
    // Survivors keep object and place; new ones follow in the order of their identifiers.
    const std::pair<std::vector<std::string>, std::vector<std::string>> steps[] = {
        {{"B", "A"}, {"A", "B"}},
        {{"B", "D"}, {"B", "D"}},
        {{"D", "B"}, {"B", "D"}},
        {{"E", "A", "B"}, {"B", "A", "E"}},
        {{}, {}},
        {{"B"}, {"B"}},
        {{"A", "B", "C", "D", "E"}, {"B", "A", "C", "D", "E"}},
        {{"F", "E", "B", "A"}, {"B", "A", "E", "F"}}};
    Infos before;
    std::set<ZelCam::DeviceInfo*> ever;
    for (const auto& [listed, expected] : steps) {
        Plug(listed);
        EXPECT_EQ(iface->ReEnumerateDevices(nullptr, 0), 0);
        const Infos now = List();
        EXPECT_EQ(Ids(now), expected);
        for (ZelCam::DeviceInfo* i : now) {
            const bool survivor = std::count(before.begin(), before.end(), i) > 0;
            EXPECT_EQ(survivor, ContainsId(before, i->GetID()));
            EXPECT_NE(survivor, ever.insert(i).second);
        }
        before = now;
    }
    // Also the infos of vanished cameras are alive.
    EXPECT_THAT(
        Ids({ever.begin(), ever.end()}),
        testing::UnorderedElementsAre("A", "B", "D", "A", "E", "B", "A", "C", "D", "E", "F"));
}

TEST_F(InterfaceTest, ListsAreSnapshots) {
    ZelCam::List<ZelCam::DeviceInfo>* const before = iface->GetDeviceInfoList();
    Plug({"cam9"});
    EXPECT_EQ(iface->ReEnumerateDevices(nullptr, 0), 0);
    EXPECT_EQ(before->GetCount(), 2U);
    EXPECT_STREQ(before->GetFirst()->GetID(), "cam0");
    EXPECT_STREQ(before->GetNext()->GetID(), "cam1");
    before->Release();
    EXPECT_THAT(Ids(List()), ElementsAre("cam9"));
    iface->GetDeviceInfoList();  // ends with the interface
}

TEST_F(InterfaceTest, AnEmptyInterfaceIsAskedEveryTime) {
    producer.SetWorld({{"if0", "GEV", {}}});
    EXPECT_EQ(iface->GetFirstDeviceInfo(), nullptr);
    EXPECT_THAT(List(), IsEmpty());
    EXPECT_THAT(Calls(), ElementsAre("IFGetNumDevices", "IFGetNumDevices"));
}

TEST_F(InterfaceTest, FailedEnumerationsGiveNullAndDropWhatWasRead) {
    Fail("IFGetDeviceID", -1010, Scripted::kAnyCommand, 3);
    EXPECT_EQ(iface->GetDeviceInfoList(), nullptr);
    Fail("IFGetDeviceID", -1010);
    EXPECT_EQ(iface->GetFirstDeviceInfo(), nullptr);
    Fail("IFGetNumDevices", -1010);
    EXPECT_EQ(iface->GetDeviceInfoById("cam0"), nullptr);
    producer.ClearRules();
    EXPECT_THAT(Ids(List()), ElementsAre("cam0", "cam1"));
}

TEST_F(InterfaceTest, DeviceInfosByIdentifier) {
    EXPECT_EQ(iface->GetDeviceInfoById(nullptr), nullptr);
    EXPECT_THAT(Calls(), IsEmpty());
    ZelCam::DeviceInfo* const listed = iface->GetDeviceInfoById("cam1");
    EXPECT_EQ(listed, List().at(1));

    // An identifier that is not listed gets an info of its own, and keeps it when it appears.
    ZelCam::DeviceInfo* const unlisted = iface->GetDeviceInfoById("cam5");
    ASSERT_NE(unlisted, nullptr);
    EXPECT_STREQ(unlisted->GetID(), "cam5");
    EXPECT_EQ(unlisted->GetInterface(), iface);
    EXPECT_EQ(iface->GetDeviceInfoById("cam5"), unlisted);
    EXPECT_NE(iface->GetDeviceInfoById("CAM1"), listed);
    EXPECT_EQ(List().size(), 2U);

    Plug({"cam0", "cam5"});
    EXPECT_EQ(iface->ReEnumerateDevices(nullptr, 0), 0);
    EXPECT_THAT(Ids(List()), ElementsAre("cam0", "cam5"));
    EXPECT_NE(List().at(1), unlisted);
    EXPECT_EQ(iface->GetDeviceInfoById("cam5"), unlisted);
    EXPECT_NE(iface->GetDeviceInfoById("cam1"), listed);  // retired: no longer found
    EXPECT_STREQ(listed->GetModel(), "Model of cam1");    // but alive
}

TEST_F(InterfaceTest, ReEnumerateReportsTheProducersAnswer) {
    List();
    Calls();
    bool changed = true;
    EXPECT_EQ(iface->ReEnumerateDevices(&changed, 0x123456789AU), 0);
    EXPECT_FALSE(changed);
    EXPECT_THAT(Calls(), ElementsAre("IFUpdateDeviceList " + std::to_string(0x123456789AU)));

    Answer("IFUpdateDeviceList", Scripted::kAnyCommand, Changed(2));  // any byte but 0 is true
    EXPECT_EQ(iface->ReEnumerateDevices(&changed, 5), 0);
    EXPECT_TRUE(changed);
    EXPECT_EQ(Calls().size(), 6U);

    Scripted::Reply fails = Changed(0);
    fails.code = -1022;
    fails.actFirst = true;
    Answer("IFUpdateDeviceList", Scripted::kAnyCommand, fails);
    EXPECT_EQ(iface->ReEnumerateDevices(&changed, 5), -1022);
    EXPECT_TRUE(changed);
    EXPECT_THAT(Calls(), ElementsAre("IFUpdateDeviceList 5"));
}

TEST_F(InterfaceTest, AFailedCollectionLeavesReEnumerateAsAnException) {
    const Infos before = List();
    for (const char* function : {"IFGetNumDevices", "IFGetDeviceID"}) {
        Plug({"cam0", "cam7"});
        Fail(function, -1011);
        bool changed = false;
        EXPECT_THAT([&] { iface->ReEnumerateDevices(&changed, 0); },
                    testing::ThrowsMessage<std::system_error>(
                        "An operation's timeout time expired before it could be completed."));
        EXPECT_TRUE(changed);
        producer.ClearRules();
        EXPECT_EQ(List(), before);
    }
}

TEST_F(InterfaceTest, TypesAreCachedOnceKnown) {
    Fail("IFGetInfo", -1010, 2);
    EXPECT_EQ(iface->GetType(), InterfaceType::Unknown);
    Answer("IFGetInfo", 2, Scripted::ReportsType(GenTL::INFO_DATATYPE_UINT32));
    EXPECT_EQ(iface->GetType(), InterfaceType::Unknown);
    const std::pair<const char*, InterfaceType> types[] = {
        {"U3V", InterfaceType::U3V},     {"GEV", InterfaceType::GEV},
        {"CL", InterfaceType::CL},       {"CXP", InterfaceType::CXP},
        {"HDSDI", InterfaceType::HDSDI}, {"Custom", InterfaceType::Unknown},
        {"gev", InterfaceType::Unknown}, {"U3", InterfaceType::Unknown}};
    for (const auto& [name, type] : types) {
        SCOPED_TRACE(name);
        system.reset();
        iface = nullptr;
        producer.ClearRules();
        producer.SetWorld({{"if0", name, {}}});
        OpenInterface();
        Calls();
        EXPECT_EQ(iface->GetType(), type);
        EXPECT_THAT(Calls(), ElementsAre("IFGetInfo 2?", "IFGetInfo 2"));
        EXPECT_EQ(iface->GetType(), type);
        EXPECT_EQ(Calls().size(), type == InterfaceType::Unknown ? 2U : 0U);
    }
}

TEST_F(InterfaceTest, TextsAreAskedUntilTheyAreKnown) {
    const struct {
        const char* (ZelCam::Interface::*getter)();
        int command;
        const char* text;
    } getters[] = {{&ZelCam::Interface::GetDescription, 1, "Interface if0"},
                   {&ZelCam::Interface::GetVersion, 1000, "Version of if0"}};
    for (const auto& [getter, command, text] : getters) {
        Fail("IFGetInfo", -1014, command, 1, 1);  // the second call of the query
        EXPECT_EQ((iface->*getter)(), nullptr);
        Answer("IFGetInfo", command, Scripted::ReportsType(GenTL::INFO_DATATYPE_BUFFER));
        EXPECT_EQ((iface->*getter)(), nullptr);
        producer.ClearRules();
        const char* const first = (iface->*getter)();
        EXPECT_STREQ(first, text);
        Calls();
        EXPECT_EQ((iface->*getter)(), first);
        EXPECT_THAT(Calls(), IsEmpty());
    }
    EXPECT_STREQ(iface->GetId(), "if0");
    EXPECT_THAT(Calls(), IsEmpty());
}

TEST_F(InterfaceTest, EndsEventsThenDevicesThenItself) {
    Plug({"active", "retired", "unlisted"});
    std::map<void*, std::string> names;
    const auto open = [&](const std::string& name) {
        ZelCam::DeviceInfo* const i = iface->GetDeviceInfoById(name.c_str());
        EXPECT_NE(ZelCam_CreateDevice(i, ZelCam::DeviceAccess::Control, nullptr), nullptr);
        names[HandleOf("device " + name)] = name;
    };
    open("active");
    open("retired");
    Plug({"active"});
    EXPECT_EQ(iface->ReEnumerateDevices(nullptr, 0), 0);
    iface->GetDeviceInfoById("unlisted");
    Plug({"active", "unlisted"});
    open("unlisted");

    EXPECT_EQ(iface->RegisterEvent(5, Subscriber::Form1, &subscriber), 0);
    ASSERT_TRUE(producer.AwaitCount("EventGetData", 1));
    Calls();
    system.reset();
    std::vector<std::string> order;
    for (const Scripted::Call& call : producer.TakeCalls())
        order.push_back(call.function + names[call.handle]);
    // Infos that are no longer listed go with the containers.
    const auto gone = testing::AnyOf("DevCloseunlisted", "DevCloseretired");
    EXPECT_THAT(order, ElementsAre("EventKill", "GCUnregisterEvent", "DevCloseactive", "IFClose",
                                   gone, gone, "IFClose", "TLClose", "GCCloseLib"));
}
