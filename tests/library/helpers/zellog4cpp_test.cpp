// The logging front end: property files, appenders, formatted messages.
#include "log/zellog4cpp.h"

#include <cstring>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <unistd.h>

#include <log4cpp/FileAppender.hh>
#include <log4cpp/RollingFileAppender.hh>

#include "tests/library/support/fixture.h"
#include "tests/library/support/systemlog.h"
#include "tests/support/processstate.h"

TEST(HelpStr, FormatsTextsOfAnyLength) {
    EXPECT_EQ(help_str("%d %s", 42, "text"), "42 text");
    EXPECT_EQ(help_str("%s", ""), "");
    EXPECT_EQ(help_str(L"%d %ls", 42, L"text"), L"42 text");
    for (const size_t length : {510U, 511U, 512U, 513U, 1023U, 1024U, 1025U, 2000U, 100000U}) {
        const std::string text(length, 'x');
        EXPECT_EQ(help_str("%s", text.c_str()), text) << length;
        const std::wstring wide(length, L'x');
        EXPECT_EQ(help_str(L"%ls", wide.c_str()), wide) << length;
    }
}

namespace {

const std::filesystem::path kProgramFolder =
    std::filesystem::read_symlink("/proc/self/exe").parent_path();

// A property file beside the program.
class PropertyFile {
  public:
    explicit PropertyFile(const std::string& text) { std::ofstream(Path()) << text; }
    ~PropertyFile() { std::filesystem::remove(Path()); }
    PropertyFile(const PropertyFile&) = delete;
    PropertyFile& operator=(const PropertyFile&) = delete;

    std::filesystem::path Path() const { return kProgramFolder / name_; }
    void Configure() const { ZelLog4Cpp_configure(name_.c_str(), "ignored"); }

  private:
    const std::string name_ = "zellog4cpp_test_" + std::to_string(getpid()) + ".property";
};

std::string ContentOf(const std::string& path) {
    std::ostringstream text;
    text << std::ifstream(path).rdbuf();
    return text.str();
}

// Appenders "file", used by a category, and "other", used by none.
class AppendersTest : public testing::Test {
  protected:
    ~AppendersTest() override {
        ZelLog4Cpp_configure("no such file.property", "");  // leaves none
        for (const std::string& path : {library, application})
            std::filesystem::remove(path);
    }

    std::string Properties(const std::string& layoutOfOther = "BasicLayout") const {
        return "log4cpp.rootCategory=WARN\n"
               "log4cpp.category.tests.library=DEBUG, file\n"
               "log4cpp.appender.file=RollingFileAppender\n"
               "log4cpp.appender.file.fileName=" +
               library +
               "\nlog4cpp.appender.file.layout=PatternLayout\n"
               "log4cpp.appender.file.layout.ConversionPattern=%m\n"
               "# log4cpp.appender.application=FileAppender\n"
               "log4j.appender.other = FileAppender  # with another prefix\n"
               "log4j.appender.other.fileName=/dev/null\n"
               "log4j.appender.other.layout=" +
               layoutOfOther + "\n";
    }

    static long Descriptors() { return ZelTest::ProcessState::Now().descriptors; }

    const std::string library = TempPath("library.log");
    const std::string application = TempPath("application.log");
    log4cpp::Category& libraryCategory = log4cpp::Category::getInstance("tests.library");
    log4cpp::Category& applicationCategory = log4cpp::Category::getInstance("tests.application");
};

}  // namespace

TEST(ZelLog4Cpp, WithoutAPropertyFileOnlyTheSystemLogHearsOfIt) {
    SystemLog log;
    ZelLog4Cpp_configure("no such file.property", "tests");
    EXPECT_EQ(
        log.Take(),
        "log: ZelLog4Cpp: trying to load " + kProgramFolder.string() +
            "/no such file.property\n"
            "log: ZelLog4Cpp: PropertyConfigurator::configure failed, logging is disabled!\n");
}

TEST(ZelLog4Cpp, ReadsThePropertyFileBesideTheProgram) {
    const PropertyFile file(
        "log4cpp.rootCategory=ERROR\n"
        "log4cpp.category.tests.configured=FATAL\n");
    SystemLog log;
    file.Configure();
    EXPECT_EQ(log.Take(), "log: ZelLog4Cpp: trying to load " + file.Path().string() +
                              "\n"
                              "log: ZelLog4Cpp: PropertyConfigurator::configure succeeded!\n");
    EXPECT_EQ(log4cpp::Category::getInstance("tests.configured").getPriority(),
              log4cpp::Priority::FATAL);
}

TEST_F(AppendersTest, AConfigurationTakesThePlaceOfTheOneBefore) {
    applicationCategory.addAppender(
        new log4cpp::FileAppender("application", application));  // takes it over
    const PropertyFile file(Properties());
    file.Configure();
    const long before = Descriptors();
    for (int round = 0; round < 20; ++round) {
        file.Configure();
        libraryCategory.debug("library ");
    }
    EXPECT_EQ(Descriptors(), before);
    EXPECT_EQ(libraryCategory.getAllAppenders().size(), 1U);
    EXPECT_EQ(std::filesystem::file_size(library), 20 * std::strlen("library "));

    applicationCategory.error("still there");
    EXPECT_THAT(ContentOf(application), testing::EndsWith("still there\n"));
    applicationCategory.removeAllAppenders();
}

TEST_F(AppendersTest, AFailedConfigurationLeavesNoAppender) {
    const long before = Descriptors();
    for (int round = 0; round < 20; ++round) {
        PropertyFile(Properties()).Configure();
        EXPECT_EQ(Descriptors(), before + 2);
        PropertyFile(Properties("NoSuchLayout")).Configure();
        EXPECT_EQ(Descriptors(), before);
    }
    EXPECT_THAT(libraryCategory.getAllAppenders(), testing::IsEmpty());
    EXPECT_EQ(log4cpp::Appender::getAppender("file"), nullptr);
}

// What an application does with appenders of the file: lends one, takes one over, deletes them all.
TEST_F(AppendersTest, AppendersOfTheFileMayBeUsedAndDeletedByTheApplication) {
    const PropertyFile file(Properties());
    file.Configure();
    applicationCategory.addAppender(*log4cpp::Appender::getAppender("file"));
    applicationCategory.addAppender(log4cpp::Appender::getAppender("other"));  // takes it over
    file.Configure();
    EXPECT_THAT(applicationCategory.getAllAppenders(), testing::IsEmpty());

    log4cpp::Category::shutdownForced();
    // Where the one of the file was deleted, the application's own may come to lie.
    applicationCategory.addAppender(
        new log4cpp::RollingFileAppender("file", application));  // takes it over
    file.Configure();
    applicationCategory.error("still there");
    EXPECT_THAT(ContentOf(application), testing::EndsWith("still there\n"));
    applicationCategory.removeAllAppenders();
    file.Configure();
}

TEST(ZelLog4Cpp, MessagesHaveTheirPriorityAndCode) {
    const Messages messages("tests.messages", "%p|%c|%m\n");
    // A '%' in a message is text.
    ZelLog4Cpp_Debug("tests.messages", 1, "a %s %n b");
    ZelLog4Cpp_Info("tests.messages", 2, "info");
    ZelLog4Cpp_Notice("tests.messages", "100% notice");
    ZelLog4Cpp_Warning("tests.messages", 4, "warning");
    ZelLog4Cpp_Error("tests.messages", 18446744073709551615UL, "error");
    ZelLog4Cpp_Fatal("tests.messages", 6, "");
    ZelLog4Cpp_DebugText("tests.messages", "100% debug");
    ZelLog4Cpp_ErrorText("tests.messages", "100% error");
    EXPECT_EQ(messages.Text(),
              "DEBUG|tests.messages|a %s %n b, code=1\n"
              "INFO|tests.messages|info, code=2\n"
              "NOTICE|tests.messages|100% notice\n"
              "WARN|tests.messages|warning, code=4\n"
              "ERROR|tests.messages|error, code=18446744073709551615\n"
              "FATAL|tests.messages|, code=6\n"
              "DEBUG|tests.messages|100% debug\n"
              "ERROR|tests.messages|100% error\n");
}
