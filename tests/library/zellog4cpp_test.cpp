#include "log/zellog4cpp.h"

#include <filesystem>
#include <fstream>
#include <sstream>
#include <unistd.h>

#include <gtest/gtest.h>
#include <log4cpp/Category.hh>
#include <log4cpp/OstreamAppender.hh>
#include <log4cpp/PatternLayout.hh>

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

TEST(ZelLog4Cpp, GoesOnWithoutAPropertyFile) {
    EXPECT_NO_THROW(ZelLog4Cpp_configure("no such file.property", "tests"));
    ZelLog4Cpp_Error("tests.unconfigured", 1, "goes nowhere");
}

TEST(ZelLog4Cpp, ReadsThePropertyFileBesideTheProgram) {
    const std::filesystem::path folder =
        std::filesystem::read_symlink("/proc/self/exe").parent_path();
    const std::string name = "zellog4cpp_test_" + std::to_string(getpid()) + ".property";
    std::ofstream(folder / name) << "log4cpp.rootCategory=ERROR\n"
                                    "log4cpp.category.tests.configured=FATAL\n";
    ZelLog4Cpp_configure(name.c_str(), "ignored");
    std::filesystem::remove(folder / name);
    EXPECT_EQ(log4cpp::Category::getInstance("tests.configured").getPriority(),
              log4cpp::Priority::FATAL);
}

TEST(ZelLog4Cpp, MessagesHaveTheirPriorityAndCode) {
    std::ostringstream out;
    auto* const appender = new log4cpp::OstreamAppender("test", &out);
    auto* const layout = new log4cpp::PatternLayout;
    layout->setConversionPattern("%p|%c|%m\n");
    appender->setLayout(layout);
    log4cpp::Category& category = log4cpp::Category::getInstance("tests.messages");
    category.setPriority(log4cpp::Priority::DEBUG);
    category.setAdditivity(false);
    category.addAppender(appender);  // takes it over

    // A '%' in a message is text.
    ZelLog4Cpp_Debug("tests.messages", 1, "a %s %n b");
    ZelLog4Cpp_Info("tests.messages", 2, "info");
    ZelLog4Cpp_Notice("tests.messages", "100% notice");
    ZelLog4Cpp_Warning("tests.messages", 4, "warning");
    ZelLog4Cpp_Error("tests.messages", 18446744073709551615UL, "error");
    ZelLog4Cpp_Fatal("tests.messages", 6, "");
    category.removeAllAppenders();
    EXPECT_EQ(out.str(),
              "DEBUG|tests.messages|a %s %n b, code=1\n"
              "INFO|tests.messages|info, code=2\n"
              "NOTICE|tests.messages|100% notice\n"
              "WARN|tests.messages|warning, code=4\n"
              "ERROR|tests.messages|error, code=18446744073709551615\n"
              "FATAL|tests.messages|, code=6\n");
}
