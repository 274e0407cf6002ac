// The program zelsim as a user runs it, with sockets of the test as its clients.

#include <arpa/inet.h>
#include <array>
#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <map>
#include <memory>
#include <poll.h>
#include <sstream>
#include <stdexcept>
#include <string>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

#include <gmock/gmock.h>

#include "tests/support/networkapplication.h"

using ::testing::AllOf;
using ::testing::HasSubstr;
using ::testing::StartsWith;
using ZelTest::NetworkApplication;
using ZelTest::TextAt;

namespace {

constexpr int kGenerousMs = 60000;
constexpr uint16_t kCcp = 0x0A00;

// A running program, whose output is read as it comes.
class Running {
  public:
    explicit Running(const std::vector<std::string>& arguments) {
        std::array<int, 2> ends{};
        if (pipe2(ends.data(), O_CLOEXEC) != 0) throw std::runtime_error("pipe2");
        process_ = fork();
        if (process_ < 0) throw std::runtime_error("fork");
        if (process_ == 0) Execute(arguments, ends[1]);
        close(ends[1]);
        output_ = ends[0];
    }
    ~Running() {
        if (process_ > 0) End(SIGKILL);
        close(output_);
    }
    Running(const Running&) = delete;
    Running& operator=(const Running&) = delete;

    // The next line; empty at the end.
    std::string Line() {
        std::string line;
        char c = 0;
        pollfd readable{output_, POLLIN, 0};
        while (poll(&readable, 1, kGenerousMs) == 1 && read(output_, &c, 1) == 1 && c != '\n')
            line += c;
        return line;
    }

    // Everything until the end.
    std::string Rest() {
        std::string rest;
        for (std::string line = Line(); !line.empty(); line = Line())
            rest += line + '\n';
        return rest;
    }

    int End(int signal) {
        kill(process_, signal);
        return Wait();
    }

    // The exit code; -1 when a signal ended it.
    int Wait() {
        int status = 0;
        waitpid(process_, &status, 0);
        process_ = 0;
        return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }

  private:
    [[noreturn]] static void Execute(const std::vector<std::string>& arguments, int output) {
        dup2(output, STDOUT_FILENO);
        dup2(output, STDERR_FILENO);
        std::vector<char*> argv = {const_cast<char*>(ZELSIM_TOOL)};
        for (const std::string& argument : arguments)
            argv.push_back(const_cast<char*>(argument.c_str()));
        argv.push_back(nullptr);
        execv(ZELSIM_TOOL, argv.data());
        _exit(127);
    }

    pid_t process_ = 0;
    int output_ = -1;
};

}  // namespace

class ZelsimTest : public ::testing::Test {
  protected:
    void SetUp() override {
        folder_ = ::testing::TempDir() + "zelsim-XXXXXX";
        ASSERT_NE(mkdtemp(folder_.data()), nullptr);
        std::ofstream(Path("cameras.xml"))
            << R"(<ZelSim><Interface id="I" type="U3V">)"
               R"(<Camera id="left" model="Left one" serial="17">)"
               R"(<Network Mac="02:00:00:00:12:34" Version="1.2"/></Camera>)"
               R"(<Camera id="right camera" model="Right one"/></Interface></ZelSim>)";
    }
    void TearDown() override { std::filesystem::remove_all(folder_); }

    std::string Path(const std::string& name) const { return folder_ + "/" + name; }

    // Starts the program, and waits until it serves both cameras and listens to commands.
    void Serve() {
        program_ = std::make_unique<Running>(
            std::vector<std::string>{"--config", Path("cameras.xml"), "--control", Path("socket")});
        for (std::string* address : {&left_, &right_}) {
            const std::string line = program_->Line();
            const size_t begin = line.find(" at ");
            ASSERT_NE(begin, std::string::npos) << line << '\n' << program_->Rest();
            *address = line.substr(begin + 4, line.find(',', begin) - begin - 4);
        }
        ASSERT_THAT(program_->Line(), HasSubstr("commands"));
    }

    // What the running program says to a command, and the exit code if it is not 0.
    std::string Tell(const std::string& command) const {
        Running teller({"--control", Path("socket"), "--tell", command});
        const std::string answer = teller.Rest();
        const int code = teller.Wait();
        return code == 0 ? answer : std::to_string(code) + ' ' + answer;
    }

    std::string folder_;
    std::unique_ptr<Running> program_;
    std::string left_;  // addresses
    std::string right_;
};

TEST_F(ZelsimTest, CamerasAnswerOnLoopbackWithoutSetUp) {
    Serve();
    EXPECT_THAT(left_, StartsWith("127."));
    EXPECT_NE(left_, right_);
    const std::vector<uint8_t> left = NetworkApplication(left_).Discover();
    ASSERT_EQ(left.size(), 256U);
    EXPECT_EQ(std::vector<uint8_t>(left.begin(), left.begin() + 12),
              (std::vector<uint8_t>{0, 0, 0, 3, 0, 248, 0, 1, 0, 1, 0, 2}))
        << "the header, and version 1.2";
    EXPECT_EQ(std::vector<uint8_t>(left.begin() + 18, left.begin() + 24),
              (std::vector<uint8_t>{2, 0, 0, 0, 0x12, 0x34}));
    in_addr address{};
    std::memcpy(&address, &left[44], sizeof address);
    EXPECT_EQ(inet_ntoa(address), left_);
    EXPECT_EQ(TextAt(left, 112), "Left one");
    EXPECT_EQ(TextAt(left, 224), "17");
    EXPECT_EQ(TextAt(NetworkApplication(right_).Discover(), 112), "Right one");
    EXPECT_EQ(program_->End(SIGTERM), 0);
    EXPECT_FALSE(std::filesystem::exists(Path("socket")));
}

TEST_F(ZelsimTest, ItTellsWhoConnects) {
    Serve();
    NetworkApplication first(left_);
    EXPECT_EQ(first.Write(kCcp, 2), 0);
    EXPECT_THAT(program_->Line(), AllOf(StartsWith("left: "), HasSubstr("127.0.0.1:")));
    EXPECT_THAT(Tell("list"), AllOf(HasSubstr("left: "), HasSubstr("controlled by 127.0.0.1:"),
                                    HasSubstr("right camera: ")));
    EXPECT_EQ(NetworkApplication(left_).Write(kCcp, 2), 0x8006);
    EXPECT_EQ(program_->End(SIGINT), 0);
}

TEST_F(ZelsimTest, SwitchesActAtRunTime) {
    Serve();
    EXPECT_EQ(Tell("get left DelayAckMs"), "0\n");
    EXPECT_EQ(Tell("set left EmptySerial true"), "");
    EXPECT_EQ(TextAt(NetworkApplication(left_).Discover(), 224), "");
    EXPECT_EQ(Tell("set all LossEvery 9"), "");
    EXPECT_EQ(Tell("get \"right camera\" LossEvery"), "9\n");
    EXPECT_EQ(Tell("reset all"), "");
    EXPECT_THAT(Tell("get \"right camera\""), HasSubstr("\nLossEvery=0\n"));
    EXPECT_EQ(TextAt(NetworkApplication(left_).Discover(), 224), "17");
    EXPECT_EQ(Tell("set left LossRate 2"),
              "2 zelsim: LossRate=\"2\": a number from 0 to 1 expected\n");
    EXPECT_EQ(Tell("get middle"), "2 zelsim: there is no camera middle\n");
    EXPECT_EQ(Tell("get right\" camera"), "2 zelsim: a quotation mark is missing\n");
    EXPECT_EQ(Tell("set left"), "2 zelsim: usage: set CAMERA NAME VALUE\n");
    EXPECT_EQ(Tell("reboot"), "2 zelsim: there is no command \"reboot\"; see help\n");
    EXPECT_EQ(program_->End(SIGTERM), 0);
}

TEST_F(ZelsimTest, CamerasComeAndGo) {
    Serve();
    EXPECT_EQ(Tell("unplug left"), "");
    EXPECT_EQ(NetworkApplication(left_).Discover().size(), 0U);
    EXPECT_EQ(Tell("get left Zip"), "2 zelsim: left is unplugged\n");
    EXPECT_THAT(Tell("list"), HasSubstr("left: unplugged\n"));
    EXPECT_EQ(Tell("plug left"), "");
    EXPECT_EQ(NetworkApplication(left_).Discover().size(), 256U);
    EXPECT_EQ(Tell("address left 127.77.0.5"), "");
    EXPECT_EQ(NetworkApplication(left_).Discover().size(), 0U);
    EXPECT_EQ(NetworkApplication("127.77.0.5").Read(0x24), 0x7F4D0005U);
    EXPECT_EQ(Tell("address left 192.0.2.1"),
              "2 zelsim: left: 192.0.2.1 is not among the addresses where cameras may be served\n");
    EXPECT_EQ(Tell("address left " + right_).substr(0, 9), "2 zelsim:");
    EXPECT_EQ(NetworkApplication("127.77.0.5").Discover().size(), 256U) << "it stays where it was";
    EXPECT_EQ(program_->End(SIGTERM), 0);
}

TEST_F(ZelsimTest, WhatCannotBeServedIsSaid) {
    const std::map<std::vector<std::string>, std::pair<int, std::string>> runs = {
        {{"--on", "nosuch0"}, {2, "zelsim: nosuch0 is neither an address nor an interface"}},
        {{"--on", "192.0.2.77"}, {2, "zelsim: 192.0.2.77 is neither"}},
        {{"--config", Path("none.xml")}, {2, "zelsim: " + Path("none.xml") + ": No such file"}},
        {{"--control", Path("none/socket")}, {2, "zelsim: " + Path("none/socket")}},
        {{"--control", Path("none"), "--tell", "list"},
         {2, "zelsim: " + Path("none") + ": No such"}},
        {{"--tell", "list"}, {1, "zelsim: --tell requires --control"}},
        {{"cameras.xml"}, {1, "zelsim: "}}};
    for (const auto& [arguments, end] : runs) {
        Running program(arguments);
        EXPECT_THAT(program.Rest(), HasSubstr(end.second));
        EXPECT_EQ(program.Wait(), end.first);
    }
}

// A camera whose address is elsewhere is not served by accident.
TEST_F(ZelsimTest, ConfigurationsDoNotLeaveLoopback) {
    std::ofstream(Path("cameras.xml"))
        << R"(<ZelSim><Interface id="I" type="GEV">)"
           R"(<Camera id="far"><Network Address="192.0.2.2"/></Camera>)"
           R"(</Interface></ZelSim>)";
    Running program({"--config", Path("cameras.xml")});
    EXPECT_EQ(program.Rest(),
              "zelsim: far: 192.0.2.2 is not among the addresses where cameras may "
              "be served\n");
    EXPECT_EQ(program.Wait(), 2);
}

TEST_F(ZelsimTest, OneProgramListensToASocket) {
    Serve();
    Running second({"--config", Path("cameras.xml"), "--control", Path("socket")});
    EXPECT_THAT(second.Rest(), HasSubstr("Address already in use"));
    EXPECT_EQ(second.Wait(), 2);
    EXPECT_EQ(program_->End(SIGKILL), -1);
    program_.reset();
    Serve();
    EXPECT_EQ(program_->End(SIGTERM), 0) << "what was left over did not matter";
}

TEST_F(ZelsimTest, PagesNameEveryCommandAndSwitch) {
    Running lister({"--switches"});
    std::istringstream switches(lister.Rest());
    std::stringstream page;
    page << std::ifstream(ZELSIM_PAGE).rdbuf();
    for (std::string line; std::getline(switches, line);) {
        std::istringstream words(line);
        std::string name;
        words >> name;
        EXPECT_NE(page.str().find("| `" + name + "` |"), std::string::npos) << name;
    }
    EXPECT_GT(page.str().size(), 0U);
}
