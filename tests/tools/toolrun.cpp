#include "tests/tools/toolrun.h"

#include <array>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <poll.h>
#include <pty.h>
#include <stdexcept>
#include <sys/inotify.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

void Redirect(const std::string& path, int to) {
    const int file = open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0666);
    if (file < 0 || dup2(file, to) < 0) _exit(126);
}

int ExitCodeOf(int process) {
    int status = 0;
    if (waitpid(process, &status, 0) != process) throw std::runtime_error("waitpid");
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

}  // namespace

void ToolTest::SetUp() {
    folder_ = ::testing::TempDir() + "zelcam-XXXXXX";
    ASSERT_NE(mkdtemp(folder_.data()), nullptr);
    for (const char* variable : {"GENICAM_GENTL64_PATH", "ZELSIM", "ZELSIM_CONFIG"})
        unsetenv(variable);
    if (!interfaces_.empty()) SetCameras(interfaces_);
}

void ToolTest::TearDown() {
    std::filesystem::remove_all(folder_);
}

void ToolTest::SetCameras(const std::string& interfaces) {
    Write("cameras.xml", "<ZelSim>" + interfaces + "</ZelSim>");
    SetVariable("ZELSIM_CONFIG", Path("cameras.xml"));
}

int ToolTest::Start(const std::vector<std::string>& arguments, const char* program) {
    const int process = fork();
    if (process < 0) throw std::runtime_error("fork");
    if (process > 0) return process;
    Redirect(Path("stdout"), STDOUT_FILENO);
    Redirect(Path("stderr"), STDERR_FILENO);
    Execute(arguments, program);
}

void ToolTest::Execute(const std::vector<std::string>& arguments, const char* program) {
    if (chdir(folder_.c_str()) != 0) _exit(126);
    for (const auto& [name, value] : environment_)
        setenv(name.c_str(), value.c_str(), 1);
    std::vector<char*> argv = {const_cast<char*>(program)};
    for (const std::string& argument : arguments)
        argv.push_back(const_cast<char*>(argument.c_str()));
    argv.push_back(nullptr);
    execv(program, argv.data());
    _exit(127);
}

ToolResult ToolTest::RunOnTerminal(const std::vector<std::string>& arguments) {
    int terminal = -1;
    const int process = forkpty(&terminal, nullptr, nullptr, nullptr);
    if (process < 0) throw std::runtime_error("forkpty");
    if (process == 0) Execute(arguments, ZELCAM_TOOL);
    ToolResult result;
    std::array<char, 4096> bytes;
    for (ssize_t size = 0; (size = read(terminal, bytes.data(), bytes.size())) > 0;)
        result.out.append(bytes.data(), static_cast<size_t>(size));
    close(terminal);
    result.exitCode = ExitCodeOf(process);
    return result;
}

ToolResult ToolTest::Wait(int process) {
    ToolResult result;
    result.exitCode = ExitCodeOf(process);
    result.out = Read("stdout");
    result.err = Read("stderr");
    return result;
}

std::string ToolTest::Read(const std::string& name) const {
    std::ifstream in(Path(name), std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
}

void ToolTest::Write(const std::string& name, const std::string& text) const {
    std::ofstream(Path(name), std::ios::binary) << text;
}

ToolTest::FileWatch::FileWatch(const std::string& folder) : inotify_(inotify_init1(IN_CLOEXEC)) {
    if (inotify_add_watch(inotify_, folder.c_str(), IN_MOVED_TO) < 0) {
        throw std::runtime_error("inotify");
    }
}

ToolTest::FileWatch::~FileWatch() {
    close(inotify_);
}

bool ToolTest::FileWatch::Await(const std::string& name) const {
    constexpr int kGenerousMs = 60000;
    alignas(inotify_event) std::array<char, 4096> events;
    for (;;) {
        pollfd readable{inotify_, POLLIN, 0};
        if (poll(&readable, 1, kGenerousMs) != 1) return false;
        const ssize_t size = read(inotify_, events.data(), events.size());
        for (ssize_t at = 0; at < size;) {
            const auto* event = reinterpret_cast<const inotify_event*>(events.data() + at);
            if (name == event->name) return true;
            at += static_cast<ssize_t>(sizeof(inotify_event) + event->len);
        }
    }
}
