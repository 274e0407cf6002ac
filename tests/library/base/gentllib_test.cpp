// Loading and unloading producers, and the calls of their functions.
#include "ZelCameraApi/base/gentllib.h"

#include <dlfcn.h>
#include <system_error>
#include <type_traits>

#include "tests/library/support/fixture.h"

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

    const TemporaryFile text(
        "text.cti", "This is no shared object, however long one makes the text that it holds.");
    EXPECT_THAT(LoadFailure(text.Path()), testing::HasSubstr("invalid ELF header"));
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
        GenTLLib lib(first.Path());
        EXPECT_TRUE(IsLoaded(first.Path()));
        lib.Load(second.Path());
        EXPECT_FALSE(IsLoaded(first.Path()));
        EXPECT_TRUE(IsLoaded(second.Path()));
        uint32_t count = 0;
        EXPECT_EQ(lib.TLGetNumInterfaces(nullptr, &count), GenTL::GC_ERR_INVALID_HANDLE);
    }
    EXPECT_FALSE(IsLoaded(second.Path()));
}

TEST(GenTLLib, AFailedLoadLeavesNothingLoaded) {
    const ProducerCopy first("minimal.cti");
    GenTLLib lib(first.Path());
    EXPECT_THROW(lib.Load(testing::TempDir() + "no such producer.cti"), std::system_error);
    EXPECT_FALSE(IsLoaded(first.Path()));
    EXPECT_EQ(lib.GCInitLib(), -1014);
}

// The symbols of one producer must not shadow those of another.
TEST(GenTLLib, SymbolsStayLocal) {
    const GenTLLib lib(ProducerPath("minimal.cti"));
    EXPECT_EQ(dlsym(RTLD_DEFAULT, "TLOpen"), nullptr);
}

namespace {

void* const kAnyHandle = reinterpret_cast<void*>(uintptr_t{1});
constexpr uint64_t kBig = 0x8000000000000001U;

// An argument for each type, as the record of the call shows it.
template <typename T>
T Argument() {
    if constexpr (std::is_same_v<T, void*>) {
        return kAnyHandle;
    } else if constexpr (std::is_same_v<T, const char*>) {
        return "id";
    } else if constexpr (std::is_pointer_v<T>) {
        return nullptr;
    } else if constexpr (sizeof(T) == sizeof(uint64_t)) {
        return kBig;
    } else {
        return std::is_signed_v<T> ? 3 : 5;
    }
}

template <typename T, typename... Args>
constexpr bool kHas = (std::is_same_v<T, Args> || ...);

template <typename... Args>
constexpr bool kHasHandleFirst = false;
template <typename... Args>
constexpr bool kHasHandleFirst<void*, Args...> = true;

class GenTLLibCalls : public ScriptedTest {
  protected:
    template <typename... Args>
    void Check(const std::string& name, int code,
               const GenTLFunction<GenTL::GC_ERROR (*)(Args...)>& function) {
        SCOPED_TRACE(name);
        Fail(name, code);
        EXPECT_EQ(function(Argument<typename GenTLArgument<Args>::type>()...), code);
        const std::vector<Scripted::Call> calls = producer.TakeCalls();
        ASSERT_EQ(calls.size(), 1U);
        const Scripted::Call& call = calls[0];
        EXPECT_EQ(call.function, name);
        CheckArguments<typename GenTLArgument<Args>::type...>(call);
    }

    template <typename... Args>
    static void CheckArguments(const Scripted::Call& call) {
        EXPECT_EQ(call.handle, kHasHandleFirst<Args...> ? kAnyHandle : nullptr);
        EXPECT_EQ(call.id, (kHas<const char*, Args...>) ? "id" : "");
        EXPECT_EQ(call.command, (kHas<int32_t, Args...>) ? 3 : Scripted::kAnyCommand);
        if constexpr (kHas<uint64_t, Args...>) {
            EXPECT_EQ(call.number, kBig);
        } else if constexpr (kHas<uint32_t, Args...>) {
            EXPECT_EQ(call.number, 5U);
        } else {
            EXPECT_EQ(call.number, std::nullopt);
        }
    }

    GenTLLib lib{ProducerPath("libZelCTI.cti")};
};

}  // namespace

// Each with a code of its own.
TEST_F(GenTLLibCalls, EveryFunctionReachesTheProducerUnchanged) {
    int32_t code = -20000;
#define CHECK_FUNCTION(name, parameters) Check(#name, --code, lib.name);
    GENTL_FUNCTIONS(CHECK_FUNCTION)
#undef CHECK_FUNCTION
    EXPECT_EQ(code, -20064);
}
