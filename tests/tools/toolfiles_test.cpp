// Commands that read and write files, with each operation on a file failing in turn. The program
// ends with an error and a message, or it succeeds anyway. Each file is completely old or
// completely new, and no other file is left behind.
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <regex>
#include <set>

#include <gmock/gmock.h>

#include "tests/tools/toolrun.h"

namespace fs = std::filesystem;

namespace {

using Names = std::vector<std::string>;

struct Command {
    Names arguments;
    Names outputs;
    bool replaces = true;      // the outputs exist already
    std::string growing = "";  // an output that has its name before it is whole
};

const Command kCommands[] = {
    {{"config", "save", "cam-a", "out.xml"}, {"out.xml"}},
    {{"config", "save", "cam-a", "out.xml", "--all"}, {"out.xml"}},
    {{"config", "load", "cam-a", "saved.xml"}, {}},
    {{"grab", "cam-a", "--count", "2", "--output", "{n}.png"}, {"0001.png", "0002.png"}, false},
    {{"grab", "cam-a", "--count", "1", "--format", "raw", "--output", "out.raw"},
     {"out.raw", "out.raw.txt"},
     false},
    {{"grab", "cam-a", "--count", "1", "--overwrite", "--output", "out.tiff"}, {"out.tiff"}},
    {{"grab", "cam-a", "--count", "1", "--overwrite", "--output", "out.jpg"}, {"out.jpg"}},
    {{"grab", "cam-a", "--count", "2", "--threads", "1", "--log", "log.csv", "--output", "{n}.png"},
     {"0001.png", "0002.png", "log.csv"},
     false,
     "log.csv"},
    {{"grab", "cam-a", "--count", "2", "--format", "none", "--overwrite", "--log", "log.csv"},
     {"log.csv"},
     true,
     "log.csv"},
    {{"xml", "cam-a", "--output", "out.xml"}, {"out.xml"}},
    {{"report", "cam-a", "--count", "1", "--output", "out.txt"}, {"out.txt"}},
};

class ToolFiles : public ToolTest {
  protected:
    void SetUp() override {
        ToolTest::SetUp();
        SetCameras(
            "<Interface id='eth7' type='GEV'>"
            "<Camera id='cam-a' width='64' height='48' frameRate='0'/></Interface>");
        fs::create_directory(Path("home"));
        SetVariable("HOME", Path("home"));
        SetVariable("TMPDIR", folder_);
        ASSERT_EQ(Run({"config", "save", "cam-a", "saved.xml"}).exitCode, 0);
    }

    void RunWithFault(const Command& command, int number, int error);
    void CheckFiles(const Command& command, bool succeeded);

    // Replaces numbers, such as times and temperatures, so that they compare equal.
    static std::string Whole(const std::string& content) {
        return std::regex_replace(content, std::regex("[0-9][0-9.]* *"), "0 ");
    }
    Names Files() const {
        Names files;
        for (const auto& entry : fs::directory_iterator(folder_))
            if (entry.is_regular_file()) files.push_back(entry.path().filename().string());
        return files;
    }

    std::map<std::string, std::string> whole;  // outputs of a run in which nothing fails
    Names expected;                            // the files that exist afterwards
    std::string met;                           // the operation that failed
};

void ToolFiles::CheckFiles(const Command& command, bool succeeded) {
    Names files = expected;
    for (const std::string& name : command.outputs) {
        const std::string content = Read(name);
        const std::string former = command.replaces ? "former" : "";
        if (name == command.growing && !succeeded && content != former) {
            EXPECT_THAT(whole[name], testing::StartsWith(Whole(content))) << name;
        } else if (succeeded || content != former) {
            EXPECT_EQ(Whole(content), whole[name]) << name;
        }
        if (succeeded || command.replaces || fs::exists(Path(name))) files.push_back(name);
    }
    EXPECT_THAT(Files(), testing::UnorderedElementsAreArray(files));
}

void ToolFiles::RunWithFault(const Command& command, int number, int error) {
    for (const std::string& name : command.outputs) {
        if (command.replaces)
            Write(name, "former");
        else
            fs::remove(Path(name));
    }
    Write("met", "");
    fs::remove_all(Path("home/.config"));
    SetVariable("FILEFAULTS_NUMBER", std::to_string(number));
    SetVariable("FILEFAULTS_ERROR", std::to_string(error));
    const ToolResult result = Run(command.arguments);
    met = Read("met");
    SCOPED_TRACE("operation " + std::to_string(number) + ", " + met + ": " +
                 (error != 0 ? std::strerror(error) : "short"));
    EXPECT_GE(result.exitCode, 0) << "the program crashed";
    if (result.exitCode != 0) {
        EXPECT_FALSE(result.err.empty());
    }
    // The program must not list a file as written that is not on the disk.
    if (error == EIO && (met == "fsync written" || met == "close written")) {
        EXPECT_NE(result.exitCode, 0);
    }
    CheckFiles(command, result.exitCode == 0);
}

TEST_F(ToolFiles, EachOperationFailingInTurn) {
    std::set<std::string> operations;
    for (const Command& command : kCommands) {
        SCOPED_TRACE(testing::PrintToString(command.arguments));
        whole.clear();
        ASSERT_EQ(Run(command.arguments).exitCode, 0);
        for (const std::string& name : command.outputs)
            whole[name] = Whole(Read(name));
        for (const std::string& name : command.outputs)
            fs::remove(Path(name));
        Write("met", "");
        expected = Files();
        SetVariable("LD_PRELOAD", ZELCAM_FILE_FAULTS);
        SetVariable("FILEFAULTS_FOLDER", folder_);
        SetVariable("FILEFAULTS_REPORT", Path("met"));
        int number = 0;
        do {
            RunWithFault(command, number++, EIO);
            operations.insert(met);
            if (met.rfind("write", 0) == 0) {
                for (const int error : {ENOSPC, EINTR, 0})
                    RunWithFault(command, number - 1, error);
            }
        } while (!met.empty() && !HasFailure());
        SetVariable("LD_PRELOAD", "");
        for (const std::string& name : command.outputs)
            fs::remove(Path(name));
        if (HasFailure()) return;
    }
    EXPECT_THAT(operations,
                testing::IsSupersetOf({"open written", "write written", "rename written",
                                       "fsync written", "close written", "read", "mkdir"}));
}

}  // namespace
