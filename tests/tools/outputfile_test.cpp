// Files that are written completely or not at all.

#include "tools/zelcam/console/outputfile.h"

#include <chrono>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <gmock/gmock.h>

#include "tests/support/temporaryfolder.h"
#include "tools/zelcam/console/failure.h"
#include "tools/zelcam/frames/framelog.h"

using namespace ZelTool;
namespace fs = std::filesystem;
using ::testing::AllOf;
using ::testing::HasSubstr;

namespace {

class OutputFileTest : public ::testing::Test {
  protected:
    std::string Read(const std::string& name) const {
        std::ifstream in(folder_ + name, std::ios::binary);
        return {std::istreambuf_iterator<char>(in), {}};
    }
    static std::string FailureOf(const std::string& path, Existing existing, size_t size = 3) {
        try {
            WriteFile(path, std::string(size, 'n'), existing);
        } catch (const Failure& failure) {
            EXPECT_EQ(failure.Code(), ExitCode::FileFailed);
            return failure.what();
        }
        return "";
    }
    size_t FilesInFolder() const {
        const fs::directory_iterator files(folder_);
        return static_cast<size_t>(std::distance(begin(files), end(files)));
    }

    const ZelTest::TemporaryFolder temporary_;
    const std::string folder_ = temporary_.Path().string() + "/";
};

TEST_F(OutputFileTest, KeepsOrReplacesWhatIsThere) {
    WriteFile(folder_ + "file", "first version", Existing::Keep);
    EXPECT_THAT(FailureOf(folder_ + "file", Existing::Keep), HasSubstr("--overwrite"));
    EXPECT_EQ(Read("file"), "first version");
    fs::permissions(folder_ + "file", fs::perms::owner_read | fs::perms::owner_write);
    fs::create_symlink("file", folder_ + "link");
    WriteFile(folder_ + "link", "second", Existing::Replace);
    EXPECT_EQ(Read("file"), "second");
    EXPECT_TRUE(fs::is_symlink(folder_ + "link"));
    EXPECT_EQ(fs::status(folder_ + "file").permissions(),
              fs::perms::owner_read | fs::perms::owner_write);
    EXPECT_EQ(FilesInFolder(), 2U);
}

// A file that another program creates between the check and the end is kept, too.
TEST_F(OutputFileTest, KeepsWhatAppearsMeanwhile) {
    OutputFile file(folder_ + "file", Existing::Keep);
    file.Write("new", 3);
    std::ofstream(folder_ + "file") << "of another program";
    EXPECT_THROW(file.TakePlace(), Failure);
    EXPECT_EQ(Read("file"), "of another program");
}

// A link with the name of the temporary file points elsewhere.
TEST_F(OutputFileTest, WritesThroughNoLink) {
    std::ofstream(folder_ + "victim") << "precious";
    {
        const OutputFile probe(folder_ + "file", Existing::Keep);
        const std::string used = fs::directory_iterator(folder_)->path().filename() == "victim"
                                     ? std::next(fs::directory_iterator(folder_))->path().filename()
                                     : fs::directory_iterator(folder_)->path().filename();
        const size_t number = std::stoul(used.substr(used.rfind('-') + 1));
        for (size_t i = 1; i < 4; ++i) {
            fs::create_symlink("victim", folder_ + used.substr(0, used.rfind('-') + 1) +
                                             std::to_string(number + i));
        }
    }
    WriteFile(folder_ + "file", "new", Existing::Keep);
    EXPECT_EQ(Read("victim"), "precious");
    EXPECT_EQ(Read("file"), "new");
    EXPECT_FALSE(fs::is_symlink(folder_ + "file"));
}

TEST_F(OutputFileTest, FailuresNameFileAndReasonAndLeaveNothing) {
    const std::string lost = folder_ + "no/such/folder";
    fs::create_symlink("nowhere", folder_ + "dangling");
    for (const Existing existing : {Existing::Keep, Existing::Replace}) {
        EXPECT_THAT(FailureOf(lost, existing), AllOf(HasSubstr(lost), HasSubstr("No such file")));
        EXPECT_NE(FailureOf("/dev/null", existing), "");
        EXPECT_NE(FailureOf(folder_, existing), "");
        EXPECT_NE(FailureOf(folder_ + "dangling", existing), "");
        EXPECT_THAT(FailureOf(folder_ + std::string(300, 'x'), existing), HasSubstr("too long"));
    }
    EXPECT_TRUE(fs::is_character_file("/dev/null"));
    EXPECT_EQ(FilesInFolder(), 1U);
}

// Files may be finished in any order, and cameras may have any name.
TEST_F(OutputFileTest, LogHasItsFramesInOrder) {
    const std::chrono::system_clock::time_point arrived(
        std::chrono::microseconds(1'000'000'500'000));
    const std::array<uint8_t, 8> pixels{};
    const Frame frame = {{pixels.data(), pixels.size(), 0x01080001, 4, 2}, 7, 99, 0, 0, false};
    Arrival arrival = {"a\"b,\nc", 1, arrived};
    {
        FrameLog log(folder_ + "log", Existing::Keep);
        const uint64_t first = log.Reserve();
        const uint64_t second = log.Reserve();
        const uint64_t third = log.Reserve();
        arrival.number = 2;
        log.Add(second, arrival, frame, "two");
        EXPECT_EQ(Read("log").find("two"), std::string::npos) << "until the first one is known";
        arrival.number = 1;
        log.Add(first, arrival, frame, "one");
        EXPECT_NE(Read("log").find("two"), std::string::npos) << "and then at once";
        EXPECT_EQ(third, 2U);
        arrival.number = 4;
        log.Add(log.Reserve(), arrival, frame, "four");  // the third failed
        log.Finish();
    }
    const std::string begin = "\"a\"\"b,\\nc\",";
    const std::string middle = ",1970-01-12T13:46:40.500000Z,7,99,4,2,Mono8,8,yes,";
    const std::string log = Read("log");
    EXPECT_EQ(log.substr(log.find('\n') + 1), begin + "1" + middle + "one\n" + begin + "2" +
                                                  middle + "two\n" + begin + "4" + middle +
                                                  "four\n");
}

// A full disk looks the same.
TEST_F(OutputFileTest, KeepsTheFormerFileWhenTheDiskIsFull) {
    WriteFile(folder_ + "file", "former");
    rlimit limit = {};
    getrlimit(RLIMIT_FSIZE, &limit);
    const rlimit small = {1000, limit.rlim_max};
    const auto handler = std::signal(SIGXFSZ, SIG_IGN);
    setrlimit(RLIMIT_FSIZE, &small);
    EXPECT_THAT(FailureOf(folder_ + "file", Existing::Replace, 2000),
                HasSubstr("cannot be written"));
    EXPECT_THAT(FailureOf(folder_ + "new", Existing::Keep, 2000), HasSubstr("cannot be written"));
    setrlimit(RLIMIT_FSIZE, &limit);
    std::signal(SIGXFSZ, handler);
    EXPECT_EQ(Read("file"), "former");
    EXPECT_EQ(FilesInFolder(), 1U);
}

}  // namespace
