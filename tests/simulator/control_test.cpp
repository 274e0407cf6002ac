// The control interface: faults, call counts and configuration.

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <future>
#include <map>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>

#include <gmock/gmock.h>

#include "tests/simulator/producer.h"

using namespace GenTL;
using ::testing::AllOf;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

namespace {

class FaultTest : public SimulatorTest {
  protected:
    static ZelSimFault Fault(const char* function, uint32_t actions) {
        ZelSimFault fault{};
        fault.function = function;
        fault.command = ZELSIM_ANY_COMMAND;
        fault.count = ZELSIM_FOREVER;
        fault.actions = actions;
        return fault;
    }
    Info TlInfo(int32_t command) { return Ask(p.TLGetInfo, system, command); }
    GC_ERROR Count() {
        uint32_t count = 0;
        return p.TLGetNumInterfaces(system, &count);
    }
};

TEST_F(FaultTest, CountsCalls) {
    const uint64_t before = p.GetCallCount("TLGetNumInterfaces");
    Count();
    Count();
    EXPECT_EQ(p.GetCallCount("TLGetNumInterfaces"), before + 2);
    EXPECT_EQ(p.GetCallCount("NoSuchFunction"), 0U);
}

TEST_F(FaultTest, ReturnsCodesAfterSkippedCalls) {
    ZelSimFault fault = Fault("TLGetNumInterfaces", ZELSIM_FAULT_RETURN);
    fault.code = GC_ERR_BUSY;
    fault.skip = 1;
    fault.count = 2;
    ASSERT_EQ(p.InjectFault(&fault), GC_ERR_SUCCESS);
    EXPECT_EQ(Count(), GC_ERR_SUCCESS);
    EXPECT_EQ(Count(), GC_ERR_BUSY);
    EXPECT_THAT(LastErrorText(), HasSubstr("TLGetNumInterfaces"));
    EXPECT_EQ(Count(), GC_ERR_BUSY);
    EXPECT_EQ(Count(), GC_ERR_SUCCESS);
    fault.function = "*";
    fault.skip = 0;
    fault.count = ZELSIM_FOREVER;
    ASSERT_EQ(p.InjectFault(&fault), GC_ERR_SUCCESS);
    EXPECT_EQ(TlInfo(TL_INFO_ID).code, GC_ERR_BUSY);
    ASSERT_EQ(p.ClearFaults(), GC_ERR_SUCCESS);
    EXPECT_EQ(TlInfo(TL_INFO_ID).code, GC_ERR_SUCCESS);
    fault.function = "NoSuchFunction";
    EXPECT_EQ(p.InjectFault(&fault), GC_ERR_INVALID_PARAMETER);
    EXPECT_EQ(p.InjectFault(nullptr), GC_ERR_INVALID_PARAMETER);
}

TEST_F(FaultTest, FirstOfSeveralActs) {
    ZelSimFault first = Fault("TLGetNumInterfaces", ZELSIM_FAULT_RETURN);
    first.code = GC_ERR_IO;
    first.count = 1;
    ZelSimFault second = first;
    second.code = GC_ERR_BUSY;
    ASSERT_EQ(p.InjectFault(&first), GC_ERR_SUCCESS);
    ASSERT_EQ(p.InjectFault(&second), GC_ERR_SUCCESS);
    EXPECT_EQ(Count(), GC_ERR_IO);
    EXPECT_EQ(Count(), GC_ERR_BUSY);
    EXPECT_EQ(Count(), GC_ERR_SUCCESS);
}

TEST_F(FaultTest, ChangesTypeSizeAndValueOfOneCommand) {
    ZelSimFault fault = Fault("TLGetInfo", ZELSIM_FAULT_TYPE | ZELSIM_FAULT_VALUE);
    fault.command = 1234;  // a command that there is not
    fault.type = INFO_DATATYPE_STRING;
    fault.value = "abc";
    fault.valueSize = 4;
    ASSERT_EQ(p.InjectFault(&fault), GC_ERR_SUCCESS);
    EXPECT_EQ(TlInfo(1234).Text(), "abc");
    EXPECT_EQ(TlInfo(TL_INFO_TLTYPE).Text(), "Mixed");
    char small[3];
    INFO_DATATYPE type = 0;
    size_t size = sizeof(small);
    EXPECT_EQ(p.TLGetInfo(system, 1234, &type, small, &size), GC_ERR_BUFFER_TOO_SMALL);
    EXPECT_EQ(size, 4U);
    ASSERT_EQ(p.ClearFaults(), GC_ERR_SUCCESS);

    fault = Fault("TLGetInfo", ZELSIM_FAULT_SIZE);
    fault.size = 3;
    ASSERT_EQ(p.InjectFault(&fault), GC_ERR_SUCCESS);
    size = 0;
    EXPECT_EQ(p.TLGetInfo(system, TL_INFO_TLTYPE, &type, nullptr, &size), GC_ERR_SUCCESS);
    EXPECT_EQ(size, 3U);
    EXPECT_EQ(type, INFO_DATATYPE_STRING);
    ASSERT_EQ(p.ClearFaults(), GC_ERR_SUCCESS);

    // A failure that reports a size; a success that is all made up.
    fault = Fault("TLGetInfo", ZELSIM_FAULT_RETURN | ZELSIM_FAULT_SIZE);
    fault.code = GC_ERR_BUFFER_TOO_SMALL;
    fault.size = 77;
    fault.count = 1;
    ASSERT_EQ(p.InjectFault(&fault), GC_ERR_SUCCESS);
    EXPECT_EQ(p.TLGetInfo(system, TL_INFO_ID, &type, nullptr, &size), GC_ERR_BUFFER_TOO_SMALL);
    EXPECT_EQ(size, 77U);
    fault = Fault("TLGetInfo", ZELSIM_FAULT_RETURN | ZELSIM_FAULT_VALUE | ZELSIM_FAULT_TYPE);
    fault.type = INFO_DATATYPE_BOOL8;
    fault.value = "\1";
    fault.valueSize = 1;
    ASSERT_EQ(p.InjectFault(&fault), GC_ERR_SUCCESS);
    EXPECT_TRUE(TlInfo(TL_INFO_ID).Bool());
    ASSERT_EQ(p.ClearFaults(), GC_ERR_SUCCESS);

    // Plain out-parameters too.
    const uint32_t seven = 7;
    fault = Fault("TLGetNumInterfaces", ZELSIM_FAULT_VALUE);
    fault.value = &seven;
    fault.valueSize = sizeof(seven);
    ASSERT_EQ(p.InjectFault(&fault), GC_ERR_SUCCESS);
    uint32_t count = 0;
    EXPECT_EQ(p.TLGetNumInterfaces(system, &count), GC_ERR_SUCCESS);
    EXPECT_EQ(count, 7U);
    EXPECT_EQ(p.TLGetNumInterfaces(nullptr, &count), GC_ERR_INVALID_HANDLE);
}

TEST_F(FaultTest, BlockedCallsContinueWhenFaultsAreCleared) {
    ZelSimFault fault = Fault("TLGetNumInterfaces", ZELSIM_FAULT_BLOCK);
    fault.blockMs = ZELSIM_FOREVER;
    ASSERT_EQ(p.InjectFault(&fault), GC_ERR_SUCCESS);
    const uint64_t before = p.GetCallCount("TLGetNumInterfaces");
    auto blocked = std::async(std::launch::async, [&] { return Count(); });
    while (p.GetCallCount("TLGetNumInterfaces") == before)
        std::this_thread::yield();
    EXPECT_EQ(TlInfo(TL_INFO_TLTYPE).Text(), "Mixed") << "others are not blocked";
    ASSERT_EQ(p.ClearFaults(), GC_ERR_SUCCESS);
    EXPECT_EQ(blocked.get(), GC_ERR_SUCCESS);
    fault.blockMs = 1;
    ASSERT_EQ(p.InjectFault(&fault), GC_ERR_SUCCESS);
    EXPECT_EQ(Count(), GC_ERR_SUCCESS);
}

TEST_F(FaultTest, EventsAreFiredAtOpenModules) {
    EVENT_HANDLE event = nullptr;
    ASSERT_EQ(p.GCRegisterEvent(system, EVENT_MODULE, &event), GC_ERR_SUCCESS);
    const auto fire = [&](const char* id, int32_t type) {
        return p.FireEvent(id, type, 0x9001, "data", 4);
    };
    EXPECT_EQ(fire("X", EVENT_MODULE), GC_ERR_INVALID_ID);
    EXPECT_EQ(fire("ZelCTI", EVENT_NEW_BUFFER), GC_ERR_INVALID_PARAMETER);
    EXPECT_EQ(fire("ZelCTI", EVENT_MODULE), GC_ERR_SUCCESS);
    std::string data(4, '\0');
    size_t size = data.size();
    EXPECT_EQ(p.EventGetData(event, data.data(), &size, 0), GC_ERR_SUCCESS);
    EXPECT_EQ(data, "data");
    EXPECT_EQ(Ask(p.EventGetDataInfo, event, data.data(), data.size(), EVENT_DATA_NUMID).Uint64(),
              0x9001U);
}

class ConfigTest : public SimulatorTest {};

TEST_F(ConfigTest, RefusesWhatIsNoConfiguration) {
    EXPECT_EQ(p.Configure("<ZelSim/>"), GC_ERR_BUSY);
    ASSERT_EQ(p.TLClose(system), GC_ERR_SUCCESS);
    const auto camera = [](const std::string& keys) {
        return "<ZelSim>\n<Interface id='I' type='GEV'>\n<Camera " + keys +
               "/></Interface></ZelSim>";
    };
    const struct {
        std::string text;
        const char* line;
        const char* reason;
    } cases[] = {
        {"<ZelSim>\n", ":", "not well-formed"},
        {"<Other/>", ":1:", "must be ZelSim"},
        {"<ZelSim>\n<Camera id='a'/></ZelSim>", ":2:", "only Interface"},
        {"<ZelSim><Interface type='GEV'/></ZelSim>", ":1:", "without id"},
        {"<ZelSim><Interface id='I'/></ZelSim>", ":1:", "without type"},
        {"<ZelSim><Interface id='I' type='gev'/></ZelSim>", ":1:", "GEV, U3V"},
        {camera("id='a' hight='3'"), ":3:", "no key \"hight\""},
        {camera("width='3'"), ":3:", "without id"},
        {camera("id='a' width='0'"), ":3:", "1 to 65536"},
        {camera("id='a' width='12x'"), ":3:", "1 to 65536"},
        {camera("id='a' frameRate='nan'"), ":3:", "frameRate"},
        {camera("id='a' noFill='yes'"), ":3:", "true or false"},
        {camera("id='a' pixelFormat='Mono9'"), ":3:", "PFNC"},
        {camera("id='a' pattern='Stripes'"), ":3:", "ColorBars"},
        {camera("id='a' bufAlignment='3'"), ":3:", "power of two"},
        {camera("id='a' pixelFormat='Mono10p' width='6'"), ":3:", "not whole bytes"},
        {camera("id='a' pixelFormat='YUV422_8' width='5'"), ":3:", "not whole bytes"},
        {camera("id='a' width='65536' height='65536'"), ":3:", "1 GiB"},
        {camera("id='a'/>\n<Camera id='a'"), ":4:", "used twice"},
    };
    for (const auto& bad : cases) {
        EXPECT_EQ(p.Configure(bad.text.c_str()), GC_ERR_INVALID_PARAMETER) << bad.text;
        EXPECT_THAT(LastErrorText(), AllOf(HasSubstr(bad.line), HasSubstr(bad.reason)));
    }
    EXPECT_EQ(p.Configure(nullptr), GC_ERR_SUCCESS);
    ASSERT_EQ(p.TLOpen(&system), GC_ERR_SUCCESS);
    EXPECT_EQ(DeviceIds(OpenInterface("GEV0")).size(), 2U);
}

// An environment that asks for nothing, until a test sets variables.
class EnvironmentTest : public ::testing::Test {
  protected:
    EnvironmentTest() { Clear(); }
    ~EnvironmentTest() override {
        Clear();
        std::filesystem::remove(path_);
    }

    static void Set(const char* name, const std::string& value) { setenv(name, value.c_str(), 1); }

    static void Clear() {
        unsetenv("ZELSIM");
        unsetenv("ZELSIM_CONFIG");
    }

    void SetConfig(const std::string& text) {
        std::ofstream(path_) << text;
        Set("ZELSIM_CONFIG", path_);
    }

    // What a program meets that loads the producer.
    static std::vector<std::string> InterfaceIds() {
        const Producer p;
        EXPECT_EQ(p.GCInitLib(), GC_ERR_SUCCESS);
        TL_HANDLE system = nullptr;
        EXPECT_EQ(p.TLOpen(&system), GC_ERR_SUCCESS);
        uint32_t count = 0;
        EXPECT_EQ(p.TLGetNumInterfaces(system, &count), GC_ERR_SUCCESS);
        std::vector<std::string> ids;
        for (uint32_t i = 0; i < count; ++i) {
            char id[16] = {};
            size_t size = sizeof(id);
            EXPECT_EQ(p.TLGetInterfaceID(system, i, id, &size), GC_ERR_SUCCESS);
            ids.emplace_back(id);
        }
        EXPECT_EQ(p.GCCloseLib(), GC_ERR_SUCCESS);
        return ids;
    }

    static void ExpectRefusal(const Producer& p, GC_ERROR expected, const std::string& reason) {
        EXPECT_EQ(p.GCInitLib(), expected) << reason;
        GC_ERROR code = 0;
        char text[600] = {};
        size_t size = sizeof(text);
        ASSERT_EQ(p.GCGetLastError(&code, text, &size), GC_ERR_SUCCESS);
        EXPECT_EQ(code, expected);
        EXPECT_THAT(text, HasSubstr(reason));
    }

    const std::string path_ = std::filesystem::path(::testing::TempDir()) /
                              ("zelsim-" + std::to_string(getpid()) + ".xml");
};

TEST_F(EnvironmentTest, NoSimulatedCameraComesUnasked) {
    EXPECT_THAT(InterfaceIds(), IsEmpty());
    for (const char* no : {"", "0"}) {
        Set("ZELSIM", no);
        Set("ZELSIM_CONFIG", "");
        EXPECT_THAT(InterfaceIds(), IsEmpty()) << no;
    }
    Set("ZELSIM", "1");
    EXPECT_THAT(InterfaceIds(), ElementsAre("GEV0", "U3V0"));
}

TEST_F(EnvironmentTest, ConfigurationGoesBeforeTheBuiltInOne) {
    SetConfig("<ZelSim><Interface id='mine' type='CL'/></ZelSim>");
    EXPECT_THAT(InterfaceIds(), ElementsAre("mine"));
    for (const char* other : {"", "0", "1", "yes"}) {
        Set("ZELSIM", other);
        EXPECT_THAT(InterfaceIds(), ElementsAre("mine")) << other;
    }
}

TEST_F(EnvironmentTest, OtherValuesFailTheInitialisation) {
    Producer p;
    for (const char* wrong : {"yes", "2", "01", " 1"}) {
        Set("ZELSIM", wrong);
        ExpectRefusal(p, GC_ERR_INVALID_PARAMETER, "ZELSIM=\"" + std::string(wrong) + "\"");
    }
    // What a program configured does not depend on the environment.
    ASSERT_EQ(p.Configure(nullptr), GC_ERR_SUCCESS);
    EXPECT_EQ(p.GCInitLib(), GC_ERR_SUCCESS);
    EXPECT_EQ(p.GCCloseLib(), GC_ERR_SUCCESS);
}

TEST_F(EnvironmentTest, BadFileFailsTheInitialisation) {
    SetConfig("<ZelSim>\n\n<Interface id='mine' type='X'/></ZelSim>");
    Producer p;
    ExpectRefusal(p, GC_ERR_INVALID_PARAMETER, path_ + ":3: type=\"X\"");
    const std::string pipe = path_ + ".pipe";
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    const std::map<std::string, std::string> files = {
        {"/nonexistent/cameras.xml", "No such file or directory"},
        {"/dev/zero", "only a regular file"},
        {pipe, "only a regular file"},
        {::testing::TempDir(), "it is a folder"}};
    for (const auto& [path, reason] : files) {
        Set("ZELSIM_CONFIG", path);
        ExpectRefusal(p, GC_ERR_IO, path + ": " + reason);
    }
    std::filesystem::remove(pipe);
    Clear();
    EXPECT_EQ(p.GCInitLib(), GC_ERR_SUCCESS);
    EXPECT_EQ(p.GCCloseLib(), GC_ERR_SUCCESS);
}

}  // namespace
