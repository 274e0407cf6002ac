#include "tests/tools/doctor/doctornetwork.h"

#include <array>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <sched.h>
#include <sstream>
#include <sys/mount.h>
#include <sys/ptrace.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace {

constexpr const char* kNsenter = "/usr/bin/nsenter";
constexpr uint64_t kMuch = 4 << 20;  // more than it takes to open a camera
constexpr const char* kSetpriv = "/usr/bin/setpriv";

void WriteTo(const char* file, const std::string& text) {
    std::ofstream(file) << text;
}

// With the rights to make namespaces, or as root of a user namespace.
bool Separate() {
    constexpr int kNamespaces = CLONE_NEWNET | CLONE_NEWNS;
    if (unshare(kNamespaces) == 0) return true;
    const std::string user = std::to_string(getuid());
    const std::string group = std::to_string(getgid());
    if (unshare(kNamespaces | CLONE_NEWUSER) != 0) return false;
    WriteTo("/proc/self/setgroups", "deny");
    WriteTo("/proc/self/uid_map", "0 " + user + " 1");
    WriteTo("/proc/self/gid_map", "0 " + group + " 1");
    return getuid() == 0;
}

bool Run(const std::string& command) {
    return std::system(command.c_str()) == 0;  // NOLINT(cert-env33-c): of the test itself
}

// A process that only holds a network namespace.
pid_t HoldNamespace() {
    std::array<int, 2> ready{};
    if (pipe(ready.data()) != 0) return -1;
    const pid_t process = fork();
    if (process == 0) {
        const char done = unshare(CLONE_NEWNET) == 0 ? 'y' : 'n';
        if (write(ready[1], &done, 1) != 1 || done != 'y') _exit(1);
        for (;;)
            pause();
    }
    char done = 'n';
    const bool isReady = read(ready[0], &done, 1) == 1 && done == 'y';
    close(ready[0]);
    close(ready[1]);
    return isReady ? process : -1;
}

std::string Entry(pid_t process) {
    return "--net=/proc/" + std::to_string(process) + "/ns/net";
}

// The column of a line of /proc/net with this beginning, the last such line.
uint64_t CountIn(const std::string& file, const std::string& beginning, int column) {
    std::ifstream in("/proc/self/net/" + file);
    uint64_t count = 0;
    for (std::string line; std::getline(in, line);) {
        const size_t at = line.find(beginning);
        if (at == std::string::npos) continue;
        std::istringstream numbers(line.substr(at + beginning.size()));
        for (int i = 0; i <= column; ++i)
            numbers >> count;
    }
    return count;
}

uint64_t BytesReceived() {
    return CountIn("dev", "eth1:", 0);
}

uint64_t SocketDrops() {
    constexpr int kRcvbufErrors = 4;
    return CountIn("snmp", "Udp:", kRcvbufErrors);
}

void AwaitThat(const std::function<bool()>& isSo) {
    constexpr int kGenerousMs = 60000;
    for (int i = 0; i < kGenerousMs && !isSo(); ++i)
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    EXPECT_TRUE(isSo());
}

std::string Name(const nlohmann::json& check) {
    return check.at("about").get<std::string>() + ", " + check.at("check").get<std::string>();
}

}  // namespace

std::vector<std::string> DoctorResult::Findings() const {
    std::vector<std::string> findings;
    const nlohmann::json all = Json();
    for (const auto& check : all.at("checks")) {
        if (check.at("state") != "FOUND") continue;
        findings.push_back(Name(check) + " -> " + check.at("advice").get<std::string>());
    }
    return findings;
}

std::string DoctorResult::Detail(const std::string& aboutAndCheck) const {
    const nlohmann::json all = Json();
    for (const auto& check : all.at("checks")) {
        if (check.at("state") == "FOUND" && Name(check) == aboutAndCheck) {
            return check.at("detail");
        }
    }
    return "";
}

void DoctorTest::SetUp() {
    for (const char* program : {"ip", "mount", "nft", "nsenter", "setpriv"}) {
        const std::string search = std::string("command -v ") + program + " >/dev/null 2>&1";
        if (!::Run(search)) GTEST_SKIP() << program << " is not installed";
    }
    if (!EnterNamespaces()) GTEST_SKIP() << "namespaces are not allowed here";
    ToolTest::SetUp();
    SetVariable("ZELGEV_INTERFACES", "");
    LayCable();
}

void DoctorTest::TearDown() {
    Stop(camera_);
    Stop(far_);
    for (const std::string& place : mounted_)
        umount2(place.c_str(), MNT_DETACH);
    if (!folder_.empty()) ToolTest::TearDown();
}

// What is mounted stays here.
bool DoctorTest::EnterNamespaces() {
    if (!Separate() || mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0) return false;
    const pid_t far = HoldNamespace();
    if (far < 0) return false;
    far_ = far;
    return true;
}

void DoctorTest::LayCable() {
    Here("ip link set lo up");
    Here("ip link add eth1 mtu 9000 type veth peer name cam mtu 9000 netns " +
         std::to_string(*far_));
    Here("ip address add 10.77.0.1/24 dev eth1");
    Here("ip link set eth1 up");
    Far("ip link set lo up");
    Far("ip link set cam up");
}

void DoctorTest::Stop(std::optional<pid_t>& process) {
    if (!process) return;
    kill(*process, SIGKILL);
    waitpid(*process, nullptr, 0);
    process.reset();
}

void DoctorTest::Here(const std::string& command) const {
    ASSERT_TRUE(::Run(command)) << command;
}

void DoctorTest::Far(const std::string& command) const {
    Here("nsenter " + Entry(*far_) + " -- " + command);
}

void DoctorTest::PlugCamera(const std::string& address, const std::string& switches,
                            const std::string& attributes) {
    PlugCameras({address}, R"(<Camera id="CAM" )" + attributes +
                               R"(><Network Mac="02:00:00:00:00:01" )" + switches + "/></Camera>");
}

// Waits until the cameras say that they take commands.
void DoctorTest::PlugCameras(const std::vector<std::string>& addresses,
                             const std::string& cameras) {
    for (const std::string& address : addresses)
        Far("ip address add " + address + " dev cam");
    Write("camera.xml",
          R"(<ZelSim><Interface id="e" type="GEV">)" + cameras + "</Interface></ZelSim>");
    std::array<int, 2> said{};
    ASSERT_EQ(pipe(said.data()), 0);
    const pid_t process = fork();
    if (process == 0) {
        dup2(said[1], STDOUT_FILENO);
        close(said[0]);
        close(said[1]);
        execl(kNsenter, kNsenter, Entry(*far_).c_str(), "--", ZELSIM_TOOL, "--config",
              Path("camera.xml").c_str(), "--on", "cam", "--control", Path("control").c_str(),
              nullptr);
        _exit(127);
    }
    close(said[1]);
    camera_ = process;
    std::string text;
    for (char c = 0; text.find("commands are taken") == std::string::npos;) {
        ASSERT_EQ(read(said[0], &c, 1), 1) << "the camera ended: " << text;
        text += c;
    }
    // It goes on saying what happens to it: the pipe stays open until the test ends.
}

void DoctorTest::Tell(const std::string& command) const {
    Here(std::string(ZELSIM_TOOL) + " --control " + Path("control") + " --tell '" + command +
         "' >" + Path("told"));
}

void DoctorTest::Replace(const std::string& file, const std::string& text) {
    const std::string name = "instead-" + std::to_string(std::hash<std::string>()(file));
    Write(name, text);
    ASSERT_EQ(mount(Path(name).c_str(), file.c_str(), nullptr, MS_BIND, nullptr), 0) << file;
    mounted_.push_back(file);
}

void DoctorTest::Cover(const std::string& folder) {
    ASSERT_EQ(mount("none", folder.c_str(), "tmpfs", 0, nullptr), 0) << folder;
    mounted_.push_back(folder);
}

void DoctorTest::CoverEtc() {
    constexpr const char* kLibraries = "/etc/ld.so.cache";
    std::stringstream libraries;
    libraries << std::ifstream(kLibraries, std::ios::binary).rdbuf();
    Cover("/etc");
    WriteTo(kLibraries, libraries.str());
}

bool DoctorTest::MayExceedLimits() {
    const int descriptor = socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0);
    const int size = 1 << 20;
    const bool may = setsockopt(descriptor, SOL_SOCKET, SO_RCVBUFFORCE, &size, sizeof size) == 0;
    close(descriptor);
    return may;
}

int DoctorTest::StartDoctor(const std::vector<std::string>& arguments, bool ofUser) {
    std::vector<std::string> all = {"doctor", "--json"};
    if (ofUser) {
        all.insert(all.begin(),
                   {"--bounding-set=-net_admin,-dac_override,-dac_read_search", "--", ZELCAM_TOOL});
    }
    all.insert(all.end(), arguments.begin(), arguments.end());
    return Start(all, ofUser ? kSetpriv : ZELCAM_TOOL);
}

DoctorResult DoctorTest::Doctor(const std::vector<std::string>& arguments) {
    return {Wait(StartDoctor(arguments, false))};
}

DoctorResult DoctorTest::DoctorOfUser(const std::vector<std::string>& arguments) {
    return {Wait(StartDoctor(arguments, true))};
}

// The file is a pipe that another one replaces once it is open. Each process has a /proc/net of its
// own.
DoctorResult DoctorTest::DoctorWhile(const std::string& file, const std::string& first,
                                     const std::string& then) {
    const std::filesystem::path folder = Path("net");
    std::filesystem::remove_all(folder);
    std::filesystem::create_directory(folder);
    const std::string real = "/proc/" + std::to_string(getpid()) + "/net/";
    for (const auto& entry : std::filesystem::directory_iterator(real))
        std::filesystem::create_symlink(entry.path(), folder / entry.path().filename());
    std::filesystem::remove(folder / file);
    EXPECT_EQ(mkfifo((folder / file).c_str(), 0600), 0);
    const int process = Start({"-c", "mount --bind \"$0\" /proc/$$/net && exec \"$@\"", folder,
                               ZELCAM_TOOL, "doctor", "--json", kCamera},
                              "/bin/sh");
    std::ofstream pipe(folder / file);
    Write("later", then);
    std::filesystem::rename(Path("later"), folder / file);
    pipe << first;
    pipe.close();
    return {Wait(process)};
}

DoctorResult DoctorTest::DoctorWithPausedThread(uint64_t bytes) {
    const uint64_t before = BytesReceived();
    const pid_t process = StartDoctor({kCamera}, false);
    AwaitThat([=] { return BytesReceived() > before + kMuch; });
    const uint64_t then = BytesReceived();
    EXPECT_EQ(ptrace(PTRACE_SEIZE, process, nullptr, nullptr), 0);
    EXPECT_EQ(ptrace(PTRACE_INTERRUPT, process, nullptr, nullptr), 0);
    EXPECT_EQ(waitpid(process, nullptr, 0), process);
    AwaitThat([=] { return BytesReceived() > then + bytes; });
    EXPECT_EQ(ptrace(PTRACE_DETACH, process, nullptr, nullptr), 0);
    return {Wait(process)};
}

DoctorResult DoctorTest::DoctorWithPause(bool ofUser) {
    const uint64_t bytes = BytesReceived();
    const uint64_t drops = SocketDrops();
    const int process = StartDoctor({kCamera}, ofUser);
    AwaitThat([=] { return BytesReceived() > bytes + kMuch; });
    kill(process, SIGSTOP);
    AwaitThat([=] { return SocketDrops() > drops; });
    kill(process, SIGCONT);
    return {Wait(process)};
}
