#include "ZelCameraApi/gentllib.h"

#include <dlfcn.h>
#include <filesystem>
#include <fstream>
#include <system_error>
#include <type_traits>

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

TEST(GenTLLib, AFailedLoadLeavesNothingLoaded) {
    const ProducerCopy first("minimal.cti");
    GenTLLib lib(first.path());
    EXPECT_THROW(lib.Load(testing::TempDir() + "no such producer.cti"), std::system_error);
    EXPECT_FALSE(IsLoaded(first.path()));
    EXPECT_EQ(lib.GCInitLib(), -1014);
}

// The symbols of one producer must not shadow those of another.
TEST(GenTLLib, SymbolsStayLocal) {
    const GenTLLib lib(ProducerPath("minimal.cti"));
    EXPECT_EQ(dlsym(RTLD_DEFAULT, "TLOpen"), nullptr);
}

namespace {

void* const handle = reinterpret_cast<void*>(uintptr_t{1});
constexpr uint64_t big = 0x8000000000000001U;

// An argument for each type, as the record of the call shows it.
template <typename T>
T Argument() {
    if constexpr (std::is_same_v<T, void*>) {
        return handle;
    } else if constexpr (std::is_same_v<T, const char*>) {
        return "id";
    } else if constexpr (std::is_pointer_v<T>) {
        return nullptr;
    } else if constexpr (sizeof(T) == sizeof(uint64_t)) {
        return big;
    } else {
        return std::is_signed_v<T> ? 3 : 5;
    }
}

template <typename... Args>
int CallIt(const GenTLFunction<GenTL::GC_ERROR (*)(Args...)>& function) {
    return function(Argument<typename GenTLArgument<Args>::type>()...);
}

class GenTLLibCalls : public ScriptedTest {
  protected:
    void Check(const std::string& name, int code, int result) {
        SCOPED_TRACE(name);
        EXPECT_EQ(result, code);
        const std::vector<Scripted::Call> calls = producer.TakeCalls();
        ASSERT_EQ(calls.size(), 1U);
        EXPECT_EQ(calls[0].function, name);
        EXPECT_THAT(calls[0].handle, testing::AnyOf(nullptr, handle));
        EXPECT_THAT(calls[0].command, testing::AnyOf(Scripted::AnyCommand, 3));
        EXPECT_THAT(calls[0].id, testing::AnyOf("", "id"));
        EXPECT_THAT(calls[0].number.value_or(5), testing::AnyOf(5U, big));
    }

    GenTLLib lib{ProducerPath("libZelCTI.cti")};
};

}  // namespace

// Each with a code of its own.
TEST_F(GenTLLibCalls, EveryFunctionReachesTheProducerUnchanged) {
    int32_t code = -20000;
#define CHECK_FUNCTION(name, parameters) \
    Fail(#name, --code);                 \
    Check(#name, code, CallIt(lib.name));
    GENTL_FUNCTIONS_1_4(CHECK_FUNCTION)
#undef CHECK_FUNCTION
    EXPECT_EQ(code, -20055);
}
