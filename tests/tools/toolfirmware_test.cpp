// zelcam firmware, run as a program against a simulated camera.

#include <array>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <poll.h>
#include <stdexcept>
#include <unistd.h>

#include <gmock/gmock.h>

#include "tests/tools/toolrun.h"

using ::testing::AllOf;
using ::testing::HasSubstr;

namespace {

// A terminal and its user.
class Terminal {
  public:
    Terminal() : mine_(posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC)) {
        if (mine_ < 0 || grantpt(mine_) != 0 || unlockpt(mine_) != 0) {
            throw std::runtime_error("posix_openpt");
        }
        name_ = ptsname(mine_);
        other_ = open(name_.c_str(), O_RDWR | O_NOCTTY | O_CLOEXEC);
    }
    ~Terminal() {
        close(other_);
        close(mine_);
    }
    Terminal(const Terminal&) = delete;
    Terminal& operator=(const Terminal&) = delete;

    const std::string& Name() const { return name_; }
    void Type(const std::string& text) const {
        if (write(mine_, text.data(), text.size()) < 0) throw std::runtime_error("write");
    }

    // Whether the text appears within a generous time.
    bool Await(const std::string& text) {
        constexpr int kGenerousMs = 60000;
        while (shown_.find(text) == std::string::npos) {
            if (!Receive(kGenerousMs)) return false;
        }
        return true;
    }

    // Everything on the terminal after the end of the program.
    const std::string& Shown() {
        while (Receive(0)) {
        }
        return shown_;
    }

  private:
    bool Receive(int milliseconds) {
        pollfd readable{mine_, POLLIN, 0};
        if (poll(&readable, 1, milliseconds) != 1) return false;
        std::array<char, 4096> bytes;
        const ssize_t size = read(mine_, bytes.data(), bytes.size());
        if (size > 0) shown_.append(bytes.data(), static_cast<size_t>(size));
        return size > 0;
    }

    int mine_;
    int other_ = -1;  // kept, so that the terminal outlives the program
    std::string name_;
    std::string shown_;
};

class ToolFirmware : public ToolTest {
  protected:
    void SetUp() override {
        ToolTest::SetUp();
        SetFlash("1");
        Write("empty.rpd", "");
    }

    void SetFlash(const std::string& busyTime) {
        SetCameras("<Interface id='eth7' type='GEV'><Camera id='cam-a' flashBusyTime='" + busyTime +
                   "'/></Interface>");
    }

    // The output of an upload without a terminal.
    ToolResult Upload(const std::string& file, std::vector<std::string> options) {
        options.insert(options.begin(), {"firmware", "cam-a", file});
        return Run(options);
    }

    int StartAt(const Terminal& terminal, const std::string& options) {
        return Start({"-c", "exec " ZELCAM_TOOL " firmware cam-a empty.rpd --erase " + options +
                                " <" + terminal.Name() + " 2>" + terminal.Name()},
                     "/bin/bash");
    }
};

TEST_F(ToolFirmware, ErasesOnlyOnRequestAndReportsTheVersions) {
    const ToolResult unwanted = Upload("empty.rpd", {"--yes"});
    EXPECT_EQ(unwanted.exitCode, 1);
    EXPECT_THAT(unwanted.err, HasSubstr("erases the camera's whole flash"));
    const ToolResult erased = Upload("empty.rpd", {"--yes", "--erase"});
    EXPECT_EQ(erased.exitCode, 0) << erased.err;
    EXPECT_THAT(erased.out, AllOf(HasSubstr("Erased   64 sectors of the flash, to 0x007f0000\n"),
                                  HasSubstr("Version  \"2.4.1\" before, \"2.4.1\" after"),
                                  HasSubstr("cannot be read back")));
    const auto json = Upload("empty.rpd", {"--yes", "--erase", "--json"}).Json();
    EXPECT_EQ(json.at("sectorsErased"), 64);
    EXPECT_EQ(json.at("versionBefore"), "2.4.1");
}

TEST_F(ToolFirmware, RefusesWhatIsNoImageBeforeTheCameraIsTouched) {
    Write("full.rpd", "firmware");
    const ToolResult full = Upload("full.rpd", {"-y"});
    EXPECT_EQ(full.exitCode, 7);
    EXPECT_THAT(full.err, HasSubstr("the camera is unchanged"));
    for (const char* file : {"/dev/null", "/proc/cpuinfo", "/proc", "missing.rpd"})
        EXPECT_EQ(Upload(file, {"-y", "--erase"}).exitCode, 7) << file;
    EXPECT_EQ(Upload("empty.rpd", {"-y", "--erase", "-a", "readonly"}).exitCode, 1);
}

TEST_F(ToolFirmware, AFlashThatStaysBusyIsAFailure) {
    SetFlash("60000");
    const ToolResult result = Upload("empty.rpd", {"-y", "--erase"});
    EXPECT_EQ(result.exitCode, 8);
    EXPECT_THAT(result.err, AllOf(HasSubstr("busy (-1022)"), HasSubstr("0x00400000"),
                                  HasSubstr("Upload again before the camera is switched off")));
}

TEST_F(ToolFirmware, AsksOnATerminal) {
    const ToolResult nobody = Wait(Start(
        {"-c", "exec " ZELCAM_TOOL " firmware cam-a empty.rpd --erase </dev/null"}, "/bin/bash"));
    EXPECT_EQ(nobody.exitCode, 1);
    EXPECT_THAT(nobody.err, HasSubstr("--yes"));
    const std::pair<const char*, int> answers[] = {{"y\n", 0}, {"\n", 1}, {"no\n", 1}, {"\x04", 1}};
    for (const auto& [answer, exitCode] : answers) {
        Terminal terminal;
        const int process = StartAt(terminal, "");
        ASSERT_TRUE(terminal.Await("Go on? [y/N] ")) << terminal.Shown();
        terminal.Type(answer);
        const ToolResult result = Wait(process);
        EXPECT_EQ(result.exitCode, exitCode) << answer;
        EXPECT_EQ(result.out.empty(), exitCode != 0);
        EXPECT_THAT(terminal.Shown(), AllOf(HasSubstr("cam-a"), HasSubstr("\"2.4.1\""),
                                            HasSubstr("nothing is written into it")));
    }
}

// Erasing a sector takes long enough for the signal to arrive meanwhile.
TEST_F(ToolFirmware, CtrlCDoesNotLeaveTheFlashHalfErased) {
    SetFlash("15");
    Terminal terminal;
    const int process = StartAt(terminal, "--yes");
    ASSERT_TRUE(terminal.Await("erased at 0x00410000")) << terminal.Shown();
    kill(process, SIGINT);
    const ToolResult result = Wait(process);
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_THAT(result.out, HasSubstr("64 sectors"));
    EXPECT_THAT(terminal.Shown(), HasSubstr("warning: the upload goes on to its end"));
}

}  // namespace
