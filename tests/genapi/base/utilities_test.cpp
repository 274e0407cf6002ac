// Casts, environment variables, coding of URLs, files, and names that carry the version.
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include <Base/GCLinkage.h>
#include <Base/GCUtilities.h>
#include <gmock/gmock.h>

using namespace GENICAM_NAMESPACE;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

std::vector<std::string> Texts(const gcstring_vector& list) {
    std::vector<std::string> result;
    for (const gcstring& s : list)
        result.emplace_back(s.c_str(), s.length());
    return result;
}

std::vector<std::string> Tokens(const gcstring& text, const gcstring& delimiters) {
    gcstring_vector result;
    Tokenize(text, result, delimiters);
    return Texts(result);
}

TEST(Version, IsPartOfNames) {
    EXPECT_STREQ(DLL_NAME("GenApi"), "libGenApi_gcc48_v3_0.so");
    EXPECT_STREQ(GENICAM_CACHE_VERSION, "GENICAM_CACHE_V3_0");
    EXPECT_STREQ(TOSTRING(GENICAM_NAMESPACE), "GenICam_3_0");
    EXPECT_EQ(std::string("%" FMT_I64 "d"), sizeof(long) == 8 ? "%ld" : "%lld");
}

TEST(Cast, RefusesWhatDoesNotFit) {
    EXPECT_EQ(INTEGRAL_CAST<uint8_t>(255), 255);
    EXPECT_EQ(INTEGRAL_CAST<int32_t>(-5), -5);
    EXPECT_THROW(INTEGRAL_CAST<uint8_t>(256), RuntimeException);
    EXPECT_THROW(INTEGRAL_CAST<uint64_t>(-1), RuntimeException);
    EXPECT_THROW((INTEGRAL_CAST2<int64_t>(GC_UINT64_MAX)), RuntimeException);
}

TEST(Environment, GivesValues) {
    setenv("ZELCAM_TEST_SET", "a b", 1);
    unsetenv("ZELCAM_TEST_UNSET");
    EXPECT_TRUE(DoesEnvironmentVariableExist("ZELCAM_TEST_SET"));
    EXPECT_FALSE(DoesEnvironmentVariableExist("ZELCAM_TEST_UNSET"));
    EXPECT_STREQ(GetValueOfEnvironmentVariable("ZELCAM_TEST_SET"), "a b");
    EXPECT_STREQ(GetValueOfEnvironmentVariable("ZELCAM_TEST_UNSET"), "");
    gcstring value("kept");
    EXPECT_FALSE(GetValueOfEnvironmentVariable("ZELCAM_TEST_UNSET", value));
    EXPECT_STREQ(value, "kept");
    EXPECT_TRUE(GetValueOfEnvironmentVariable("ZELCAM_TEST_SET", value));
    EXPECT_STREQ(value, "a b");
}

TEST(Environment, ReplacesVariablesInTexts) {
    setenv("ZELCAM_TEST_SET", "a $(X)", 1);
    unsetenv("ZELCAM_TEST_UNSET");
    gcstring text("$(ZELCAM_TEST_SET)/$(ZELCAM_TEST_SET) $(open");
    ReplaceEnvironmentVariables(text);
    EXPECT_STREQ(text, "a $(X)/a $(X) $(open");
    text = "$(ZELCAM_TEST_SET) c";
    ReplaceEnvironmentVariables(text, true);
    EXPECT_STREQ(text, "a%20$(X)%20c");
    text = "$(ZELCAM_TEST_UNSET)";
    EXPECT_THROW(ReplaceEnvironmentVariables(text), RuntimeException);
    EXPECT_STREQ(text, "$(ZELCAM_TEST_UNSET)");
}

TEST(Environment, NamesFoldersUnlessTheProgramDoes) {
    setenv("GENICAM_CACHE_V3_0", "/from/variable", 1);
    setenv("GENICAM_LOG_CONFIG_V3_0", "/log", 1);
    unsetenv("GENICAM_CLPROTOCOL");
    EXPECT_STREQ(GetGenICamCacheFolder(), "/from/variable");
    SetGenICamCacheFolder("/from/program");
    EXPECT_STREQ(GetGenICamCacheFolder(), "/from/program");
    EXPECT_STREQ(GetGenICamLogConfig(), "/log");
    SetGenICamCacheFolder("");
    EXPECT_STREQ(GetGenICamCacheFolder(), "/from/variable");
    EXPECT_STREQ(GetGenICamCLProtocolFolder(), "");
    SetGenICamCLProtocolFolder("/cl");
    EXPECT_STREQ(GetGenICamCLProtocolFolder(), "/cl");
    SetGenICamCLProtocolFolder("");
}

TEST(Url, CodesAllBytes) {
    std::string all;
    for (int byte = 0; byte < 256; ++byte)
        all += static_cast<char>(byte);
    const gcstring coded = UrlEncode(gcstring(all.data(), all.size()));
    EXPECT_EQ(coded.find_first_of(" /:?#\xE4"), GCSTRING_NPOS);
    const gcstring decoded = UrlDecode(coded);
    EXPECT_EQ(std::string(decoded.c_str(), decoded.length()), all);
    EXPECT_STREQ(UrlEncode("a-b c/\xE4"), "a-b%20c%2F%E4");
}

TEST(Url, LeavesMalformedCodes) {
    EXPECT_STREQ(UrlDecode("%4a%4A+%"), "JJ+%");
    EXPECT_STREQ(UrlDecode("%4"), "%4");
    EXPECT_STREQ(UrlDecode("%zz%%41"), "%zz%A");
}

TEST(Tokens, AreWhatLiesBetweenDelimiters) {
    EXPECT_THAT(Tokens(" a  bc ", " "), ElementsAre("a", "bc"));
    EXPECT_THAT(Tokens("a,b;c", ",;"), ElementsAre("a", "b", "c"));
    EXPECT_THAT(Tokens("a b", ""), ElementsAre("a b"));
    EXPECT_THAT(Tokens(" ", " "), IsEmpty());
}

TEST(Files, MatchPatterns) {
    std::string folder = (std::filesystem::temp_directory_path() / "gcbase-XXXXXX").string();
    ASSERT_NE(mkdtemp(folder.data()), nullptr);
    for (const char* name : {"/b.xml", "/a.xml", "/a.txt"})
        const std::ofstream file(folder + name);
    std::filesystem::create_directory(folder + "/d.xml");
    const gcstring pattern = gcstring(folder.c_str()) + "/*.xml";
    gcstring_vector all, directories, none;
    GetFiles(pattern, all);
    GetFiles(pattern, directories, true);
    GetFiles(gcstring(folder.c_str()) + "/*.zip", none);
    EXPECT_THAT(Texts(all), ElementsAre(folder + "/a.xml", folder + "/b.xml", folder + "/d.xml"));
    EXPECT_THAT(Texts(directories), ElementsAre(folder + "/d.xml"));
    EXPECT_TRUE(none.empty());
    std::filesystem::remove_all(folder);
}

TEST(Module, IsFoundByItsFunctions) {
    const gcstring path = GetModulePathFromFunction(reinterpret_cast<void*>(&Texts));
    EXPECT_EQ(path.c_str(), std::filesystem::read_symlink("/proc/self/exe").string());
    EXPECT_THROW(GetModulePathFromFunction(nullptr), RuntimeException);
}

}  // namespace
