// zelcam config, run as a program against a simulated camera.

#include <csignal>
#include <filesystem>
#include <sys/resource.h>
#include <sys/stat.h>

#include <gmock/gmock.h>

#include "tests/genapi/support/description.h"
#include "tests/tools/toolrun.h"

namespace fs = std::filesystem;
using ::testing::AllOf;
using ::testing::HasSubstr;
using ::testing::Not;

namespace {

class ToolConfig : public ToolTest {
  protected:
    ToolConfig()
        : ToolTest(R"(
  <Interface id="eth7" type="GEV">
    <Camera id="cam-a" width="640" height="480" frameRate="0" userName="left"/>
    <Camera id="cam-b" width="640" height="480" frameRate="0" userName="right"/>
  </Interface>)") {}

    // A camera with a description of its own.
    void SetFeatures(const std::string& root, const std::string& nodes) {
        Write("own.xml",
              test::Document(test::Named("Category", "Root", root) + nodes + test::kPort));
        SetCameras("<Interface id='usb7' type='U3V'><Camera id='own' descriptionFile='" +
                   Path("own.xml") + "'/></Interface>");
    }

    // zelcam config COMMAND cam-a -, reading the file from standard input.
    ToolResult RunWithInput(const std::string& file, const std::string& command) {
        return Run({"-c", "exec \"$0\" config \"$1\" cam-a - < \"$2\"", ZELCAM_TOOL, command, file},
                   "/bin/sh");
    }

    // The saved file with one of its lines changed.
    void WriteChanged(const std::string& name, const std::string& from, const std::string& to) {
        std::string text = Read("saved.xml");
        const size_t at = text.find("\n" + from + "\n");
        ASSERT_NE(at, std::string::npos) << from;
        Write(name, text.replace(at + 1, from.size(), to));
    }
};

TEST_F(ToolConfig, SavesLoadsAndComparesConfigurations) {
    ASSERT_EQ(Run({"config", "save", "cam-a", "saved.xml"}).exitCode, 0);
    EXPECT_EQ(Run({"config", "diff", "cam-a", "saved.xml"}).exitCode, 0);
    WriteChanged("other.xml", "Width\t640", "Width\t0xa0");
    EXPECT_EQ(Run({"config", "save", "cam-a", "-"}).out, Read("saved.xml"));
    EXPECT_FALSE(fs::exists(Path("-")));
    const ToolResult different = Run({"config", "diff", "cam-a", "other.xml"});
    EXPECT_EQ(different.exitCode, 9);
    EXPECT_EQ(different.out, "Width: camera 640, file 0xa0\n");
    EXPECT_EQ(RunWithInput("other.xml", "diff").out, different.out);
    EXPECT_EQ(RunWithInput("other.xml", "load").exitCode, 0);
    const auto loaded = Run({"config", "load", "cam-a", "other.xml", "--json"}).Json();
    EXPECT_EQ(loaded.at("failures").size(), 0U);
    WriteChanged("same.xml", "Width\t640", "Width\t0x280");
    EXPECT_EQ(Run({"config", "diff", "cam-a", "same.xml"}).exitCode, 0);
}

TEST_F(ToolConfig, JsonSaysWhatWasSaved) {
    const auto saved = Run({"config", "save", "cam-a", "saved.xml", "--json"}).Json();
    EXPECT_EQ(saved.at("camera"), "cam-a");
    EXPECT_EQ(saved.at("file"), "saved.xml");
    EXPECT_GT(saved.at("settings"), 10);
    EXPECT_EQ(saved.at("locked").size(), 0U);
    EXPECT_EQ(Run({"config", "save", "cam-a", "-", "--json"}).out, Read("saved.xml"));
}

TEST_F(ToolConfig, NamesFeaturesThatCouldNotBeLoaded) {
    ASSERT_EQ(Run({"config", "save", "cam-a", "saved.xml"}).exitCode, 0);
    WriteChanged("bad.xml", "Width\t640", "Width\t9999999\nNoSuch\t1");
    const ToolResult bad = Run({"config", "load", "cam-a", "bad.xml"});
    EXPECT_EQ(bad.exitCode, 8);
    EXPECT_THAT(bad.err, AllOf(HasSubstr("(2 failed)"),
                               HasSubstr("Width: Value = 9999999 must be equal or smaller than "),
                               HasSubstr("NoSuch: not found"), Not(HasSubstr("Exception"))));
    const auto failures = Run({"config", "load", "cam-a", "bad.xml", "--json"}).Json();
    EXPECT_EQ(failures.at("failures").at(1).at("feature"), "NoSuch");
}

TEST_F(ToolConfig, TheNameOfAnotherCameraIsLoadedOnRequestOnly) {
    ASSERT_EQ(Run({"config", "save", "cam-a", "saved.xml"}).exitCode, 0);
    // The file of a camera whose user name is a setting. A name that is too long makes loading
    // fail, which shows that it is loaded.
    WriteChanged("named.xml", "Width\t640", "Width\t640\nDeviceUserID\t" + std::string(100, 'x'));
    EXPECT_EQ(Run({"config", "load", "cam-a", "named.xml"}).exitCode, 8);
    const ToolResult other = Run({"config", "load", "cam-b", "named.xml"});
    EXPECT_EQ(other.exitCode, 0) << other.out;
    EXPECT_THAT(other.err, HasSubstr("DeviceUserID is not loaded"));
    EXPECT_EQ(Run({"config", "load", "cam-b", "named.xml", "--user-name"}).exitCode, 8);
}

TEST_F(ToolConfig, FilesThatCannotBeUsed) {
    EXPECT_EQ(Run({"config", "load", "cam-a", "missing.xml"}).exitCode, 7);
    for (const char* text : {"<Other/>", "<Camera/>", "Width\t5\n", ""}) {
        Write("foreign.xml", text);
        EXPECT_EQ(Run({"config", "load", "cam-a", "foreign.xml"}).exitCode, 7) << text;
    }
    ASSERT_EQ(mkfifo(Path("fifo").c_str(), 0600), 0);  // which nobody writes to
    for (const char* file : {".", "fifo", "/dev/zero"}) {
        const ToolResult result = Run({"config", "load", "cam-a", file});
        EXPECT_EQ(result.exitCode, 7) << file;
        EXPECT_THAT(result.err, HasSubstr("cannot be read: it is not a regular file")) << file;
    }
    EXPECT_THAT(RunWithInput("cameras.xml", "load").err,
                HasSubstr("standard input is not a configuration"));
    EXPECT_THAT(RunWithInput("/dev/zero", "diff").err,
                HasSubstr("standard input cannot be read: it is too large"));
    EXPECT_EQ(Run({"config", "save", "cam-a", "no/such/folder.xml"}).exitCode, 7);
    EXPECT_EQ(Run({"config", "save", "cam-a", "/dev/null"}).exitCode, 7);
    fs::create_symlink("nowhere", Path("dangling"));
    EXPECT_EQ(Run({"config", "save", "cam-a", "dangling"}).exitCode, 7);
    EXPECT_EQ(Run({"config"}).exitCode, 1);
}

TEST_F(ToolConfig, AFileIsReplacedAsAWholeOrNotAtAll) {
    Write("saved.xml", "former");
    fs::permissions(Path("saved.xml"), fs::perms::owner_read | fs::perms::owner_write);
    fs::create_symlink("saved.xml", Path("link"));

    // A full disk looks the same.
    rlimit limit = {};
    getrlimit(RLIMIT_FSIZE, &limit);
    const rlimit small = {1000, limit.rlim_max};
    const auto handler = std::signal(SIGXFSZ, SIG_IGN);
    setrlimit(RLIMIT_FSIZE, &small);
    const std::vector<ToolResult> full = {Run({"config", "save", "cam-a", "link"}),
                                          Run({"config", "save", "--all", "cam-a", "link"})};
    setrlimit(RLIMIT_FSIZE, &limit);
    std::signal(SIGXFSZ, handler);
    for (const ToolResult& result : full) {
        EXPECT_EQ(result.exitCode, 7);
        EXPECT_THAT(result.err, HasSubstr("cannot be written"));
    }
    EXPECT_EQ(Read("saved.xml"), "former");

    EXPECT_EQ(Run({"config", "save", "cam-a", "link"}).exitCode, 0);
    EXPECT_TRUE(fs::is_symlink(Path("link")));
    EXPECT_THAT(Read("saved.xml"), HasSubstr("\nWidth\t640\n"));
    EXPECT_EQ(fs::status(Path("saved.xml")).permissions(),
              fs::perms::owner_read | fs::perms::owner_write);
    for (const auto& file : fs::directory_iterator(folder_))
        EXPECT_THAT(file.path().filename().string(), Not(HasSubstr("zelcam-")));
}

TEST_F(ToolConfig, NothingToSaveIsAFailureThatSaysWhy) {
    Write("saved.xml", "former");
    const ToolResult readOnly = Run({"config", "save", "cam-a", "saved.xml", "-a", "readonly"});
    EXPECT_EQ(readOnly.exitCode, 8);
    EXPECT_THAT(readOnly.err, HasSubstr("read-only"));

    const std::string one = "<pFeature>One</pFeature>";
    SetFeatures(one, test::Literal("One", "1"));
    const ToolResult none = Run({"config", "save", "own", "saved.xml"});
    EXPECT_EQ(none.exitCode, 8);
    EXPECT_THAT(none.err, HasSubstr("marks no feature as streamable"));

    SetFeatures(one, "<Integer Name='One'><Streamable>Yes</Streamable><Value>1</Value></Integer>" +
                         test::Literal("TLParamsLocked", "1"));
    const ToolResult grabbing = Run({"config", "save", "own", "saved.xml"});
    EXPECT_EQ(grabbing.exitCode, 8);
    EXPECT_THAT(grabbing.err, HasSubstr("frames are being grabbed"));
    EXPECT_EQ(Read("saved.xml"), "former");
}

TEST_F(ToolConfig, WhatCannotBeSavedIsNamed) {
    SetFeatures("<pFeature>One</pFeature><pFeature>Two</pFeature><pFeature>Text</pFeature>",
                "<Integer Name='One'><pIsLocked>Two</pIsLocked><Streamable>Yes</Streamable>"
                "<Value>1</Value></Integer>"
                "<Integer Name='Two'><Streamable>Yes</Streamable><Value>2</Value></Integer>"
                "<String Name='Text'><Streamable>Yes</Streamable><Value>a&#10;One\t7</Value>"
                "</String>");
    const ToolResult result = Run({"config", "save", "own", "saved.xml"});
    EXPECT_EQ(result.exitCode, 8);
    EXPECT_THAT(result.err, AllOf(HasSubstr("cannot be written at the moment: One\n"),
                                  HasSubstr("contain line breaks: Text")));
    EXPECT_THAT(Read("saved.xml"), AllOf(HasSubstr("\nTwo\t2\n"), Not(HasSubstr("\nOne\t"))));
    EXPECT_EQ(Run({"config", "load", "own", "saved.xml"}).exitCode, 0);
}

TEST_F(ToolConfig, SavesAllThatCanBeReadAndWrittenOnRequest) {
    SetFeatures(
        "<pFeature>Gain</pFeature><pFeature>Fixed</pFeature><pFeature>Start</pFeature>",
        "<Integer Name='Sel'><Value>1</Value><Min>0</Min><Max>1</Max>"
        "<pSelected>Gain</pSelected></Integer>"
        "<Integer Name='Gain'><pIndex>Sel</pIndex><pValueIndexed Index='0'>G0"
        "</pValueIndexed><pValueIndexed Index='1'>G1</pValueIndexed>"
        "<pValueDefault>G0</pValueDefault></Integer>" +
            test::Literal("G0", "5") + test::Literal("G1", "6") +
            test::Named("Integer", "Fixed",
                        "<ImposedAccessMode>RO</ImposedAccessMode><Value>3</Value>") +
            test::Named("Command", "Start", "<Value>0</Value><CommandValue>1</CommandValue>"));
    ASSERT_EQ(Run({"config", "save", "--all", "own", "all.txt"}).exitCode, 0);
    EXPECT_THAT(Read("all.txt"),
                ::testing::EndsWith("\nSel\t0\nGain\t5\nSel\t1\nGain\t6\nSel\t1\n"));
    EXPECT_EQ(Run({"config", "load", "own", "all.txt"}).exitCode, 0);
}

TEST_F(ToolConfig, AllOfACameraCanBeLoadedAgain) {
    ASSERT_EQ(Run({"config", "save", "--all", "cam-a", "all.txt"}).exitCode, 0);
    EXPECT_THAT(Read("all.txt"), HasSubstr("\nUserSetDefault\t"));
    const ToolResult loaded = Run({"config", "load", "cam-a", "all.txt"});
    EXPECT_EQ(loaded.exitCode, 0) << loaded.out;
}

}  // namespace
