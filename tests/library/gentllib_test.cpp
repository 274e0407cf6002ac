#include "ZelCameraApi/gentllib.h"

#include <dlfcn.h>
#include <filesystem>
#include <fstream>
#include <system_error>

#include "tests/library/fixture.h"

using namespace ZelCameraApi::Internal;

namespace {

std::string LoadFailure(const std::string& path) {
    try {
        const GenTLLib lib(path);
    } catch (const std::system_error& e) {
        EXPECT_EQ(e.code().category(), std::system_category());
        return e.what();
    }
    return "no failure";
}

}  // namespace

TEST(GenTLLib, FilesThatCannotBeLoadedThrowTheLoadersMessage) {
    const std::string missing = testing::TempDir() + "no such producer.cti";
    EXPECT_THAT(LoadFailure(missing), testing::HasSubstr(missing + ": cannot open shared object"));

    const std::string text = testing::TempDir() + "text.cti";
    std::ofstream(text)
        << "This is no shared object, however long one makes the text that it holds.";
    EXPECT_THAT(LoadFailure(text), testing::HasSubstr("invalid ELF header"));
    std::filesystem::remove(text);
}

TEST(GenTLLib, MissingFunctionsShowWhenTheyAreCalled) {
    const GenTLLib lib(ProducerPath("minimal.cti"));
    void* handle = nullptr;
    EXPECT_EQ(lib.GCInitLib(), 0);
    EXPECT_EQ(lib.TLOpen(&handle), 0);
    EXPECT_NE(handle, nullptr);
    uint32_t count = 77;
    EXPECT_EQ(lib.TLGetNumInterfaces(handle, &count), -1014);
    EXPECT_EQ(count, 77U);
    EXPECT_EQ(lib.TLClose(handle), -1014);
    EXPECT_EQ(lib.DSGetParentDev(handle, &handle), -1014);
    EXPECT_EQ(lib.GCCloseLib(), 0);
}

TEST(GenTLLib, WidePathsLoadNothing) {
    const std::string path = ProducerPath("minimal.cti");
    GenTLLib lib(std::wstring(path.begin(), path.end()));
    EXPECT_EQ(lib.GCInitLib(), -1014);
    lib.Load(path);
    EXPECT_EQ(lib.GCInitLib(), 0);
}

TEST(GenTLLib, LoadsReplaceAndTheEndUnloads) {
    const ProducerCopy first("minimal.cti");
    const ProducerCopy second("second.cti");
    {
        GenTLLib lib(first.path());
        EXPECT_TRUE(IsLoaded(first.path()));
        lib.Load(second.path());
        EXPECT_FALSE(IsLoaded(first.path()));
        EXPECT_TRUE(IsLoaded(second.path()));
        uint32_t count = 0;
        EXPECT_EQ(lib.TLGetNumInterfaces(nullptr, &count), GenTL::GC_ERR_INVALID_HANDLE);
    }
    EXPECT_FALSE(IsLoaded(second.path()));
}

// The symbols of one producer must not shadow those of another.
TEST(GenTLLib, SymbolsStayLocal) {
    const GenTLLib lib(ProducerPath("minimal.cti"));
    EXPECT_EQ(dlsym(RTLD_DEFAULT, "TLOpen"), nullptr);
}

class GenTLLibCalls : public ScriptedTest {
  protected:
    GenTLLib lib{ProducerPath("libZelCTI.cti")};
};

TEST_F(GenTLLibCalls, EveryFunctionReachesTheProducerUnchanged) {
    const auto handle = reinterpret_cast<void*>(uintptr_t{1});
    int type = 0;
    size_t size = 0;
    void* out = nullptr;
    uint32_t n = 0;
    bool changed = false;
    GenTL::SINGLE_CHUNK_DATA chunk{};
    GenTL::PORT_REGISTER_STACK_ENTRY entry{};
    const uint64_t big = 0x8000000000000001U;

    // Each call twice: as it is answered by default, then with a code of the script's choice.
    const auto call = [&] {
        return std::vector<int>{lib.GCGetInfo(3, &type, nullptr, &size),
                                lib.GCGetLastError(&type, nullptr, &size),
                                lib.GCInitLib(),
                                lib.GCCloseLib(),
                                lib.GCReadPort(handle, big, nullptr, &size),
                                lib.GCWritePort(handle, big, nullptr, &size),
                                lib.GCGetPortURL(handle, nullptr, &size),
                                lib.GCGetPortInfo(handle, 3, &type, nullptr, &size),
                                lib.GCRegisterEvent(handle, 3, &out),
                                lib.GCUnregisterEvent(handle, 3),
                                lib.EventGetData(handle, nullptr, &size, big),
                                lib.EventGetDataInfo(handle, "", 1, 3, &type, nullptr, &size),
                                lib.EventGetInfo(handle, 3, &type, nullptr, &size),
                                lib.EventFlush(handle),
                                lib.EventKill(handle),
                                lib.TLOpen(&out),
                                lib.TLClose(handle),
                                lib.TLGetInfo(handle, 3, &type, nullptr, &size),
                                lib.TLGetNumInterfaces(handle, &n),
                                lib.TLGetInterfaceID(handle, 5, nullptr, &size),
                                lib.TLGetInterfaceInfo(handle, "id", 3, &type, nullptr, &size),
                                lib.TLOpenInterface(handle, "id", &out),
                                lib.TLUpdateInterfaceList(handle, &changed, big),
                                lib.IFClose(handle),
                                lib.IFGetInfo(handle, 3, &type, nullptr, &size),
                                lib.IFGetNumDevices(handle, &n),
                                lib.IFGetDeviceID(handle, 5, nullptr, &size),
                                lib.IFUpdateDeviceList(handle, &changed, big),
                                lib.IFGetDeviceInfo(handle, "id", 3, &type, nullptr, &size),
                                lib.IFOpenDevice(handle, "id", 3, &out),
                                lib.DevGetPort(handle, &out),
                                lib.DevGetNumDataStreams(handle, &n),
                                lib.DevGetDataStreamID(handle, 5, nullptr, &size),
                                lib.DevOpenDataStream(handle, "id", &out),
                                lib.DevGetInfo(handle, 3, &type, nullptr, &size),
                                lib.DevClose(handle),
                                lib.DSAnnounceBuffer(handle, nullptr, 5, nullptr, &out),
                                lib.DSAllocAndAnnounceBuffer(handle, 5, nullptr, &out),
                                lib.DSFlushQueue(handle, 3),
                                lib.DSStartAcquisition(handle, 3, big),
                                lib.DSStopAcquisition(handle, 3),
                                lib.DSGetInfo(handle, 3, &type, nullptr, &size),
                                lib.DSGetBufferID(handle, 5, &out),
                                lib.DSClose(handle),
                                lib.DSRevokeBuffer(handle, handle, &out, &out),
                                lib.DSQueueBuffer(handle, handle),
                                lib.DSGetBufferInfo(handle, handle, 3, &type, nullptr, &size),
                                lib.GCGetNumPortURLs(handle, &n),
                                lib.GCGetPortURLInfo(handle, 5, 3, &type, nullptr, &size),
                                lib.GCReadPortStacked(handle, &entry, &size),
                                lib.GCWritePortStacked(handle, &entry, &size),
                                lib.DSGetBufferChunkData(handle, handle, &chunk, &size),
                                lib.IFGetParentTL(handle, &out),
                                lib.DevGetParentIF(handle, &out),
                                lib.DSGetParentDev(handle, &out)};
    };

    int32_t code = -20000;
#define FAIL_WITH_OWN_CODE(name, parameters) Fail(#name, code--);
    GENTL_FUNCTIONS_1_4(FAIL_WITH_OWN_CODE)
#undef FAIL_WITH_OWN_CODE
    const std::vector<int> results = call();
    ASSERT_EQ(results.size(), 55U);
    const std::vector<Scripted::Call> calls = producer.TakeCalls();
    ASSERT_EQ(calls.size(), 55U);

    // The standard's list gives the order; every argument that can be told apart arrived.
    size_t i = 0;
    const auto check = [&](const std::string& name) {
        EXPECT_EQ(calls[i].function, name);
        EXPECT_EQ(results[i], -20000 - static_cast<int>(i)) << name;
        const Scripted::Call& c = calls[i];
        EXPECT_THAT(c.handle, testing::AnyOf(nullptr, handle)) << name;
        EXPECT_THAT(c.command, testing::AnyOf(Scripted::AnyCommand, 3)) << name;
        EXPECT_THAT(c.id, testing::AnyOf("", "id")) << name;
        EXPECT_THAT(c.number.value_or(5), testing::AnyOf(5U, big)) << name;
        ++i;
    };
#define CHECK_CALL(name, parameters) check(#name);
    GENTL_FUNCTIONS_1_4(CHECK_CALL)
#undef CHECK_CALL
}
