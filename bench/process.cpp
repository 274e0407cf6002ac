#include "bench/process.h"

#include <array>
#include <csignal>
#include <spawn.h>
#include <stdexcept>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

#include "bench/measure.h"

namespace Bench {

Process::Process(std::vector<std::string> command) : output_(std::tmpfile()) {
    if (output_ == nullptr) throw std::runtime_error("no temporary file");
    std::vector<char*> arguments;
    arguments.reserve(command.size() + 1);
    for (std::string& argument : command)
        arguments.push_back(argument.data());
    arguments.push_back(nullptr);

    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    const int file = fileno(output_.get());
    posix_spawn_file_actions_adddup2(&actions, file, STDOUT_FILENO);
    posix_spawn_file_actions_adddup2(&actions, file, STDERR_FILENO);
    const int result =
        posix_spawnp(&process_, arguments[0], &actions, nullptr, arguments.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    if (result != 0) throw std::runtime_error(command[0] + " does not start");
}

Process::~Process() {
    Signal(SIGKILL);
    if (!isOver_) waitpid(process_, nullptr, 0);
}

bool Process::Runs() {
    if (!isOver_) isOver_ = waitpid(process_, nullptr, WNOHANG) == process_;
    return !isOver_;
}

void Process::Signal(int signal) {
    if (!isOver_) kill(process_, signal);
}

int64_t Process::CpuTime() const {
    clockid_t clock{};
    return clock_getcpuclockid(process_, &clock) == 0 ? CpuTimeOf(clock) : 0;
}

bool Process::Await(std::chrono::milliseconds patience) {
    constexpr std::chrono::milliseconds kStep(5);
    const auto end = std::chrono::steady_clock::now() + patience;
    while (Runs()) {
        if (std::chrono::steady_clock::now() >= end) return false;
        std::this_thread::sleep_for(kStep);
    }
    return true;
}

// Without moving the place at which the program writes.
std::string Process::Output() const {
    std::string text;
    std::array<char, 4096> bytes{};
    ssize_t size = 0;
    while ((size = pread(fileno(output_.get()), bytes.data(), bytes.size(),
                         static_cast<off_t>(text.size()))) > 0)
        text.append(bytes.data(), static_cast<size_t>(size));
    return text;
}

std::string ProgramBeside(const std::string& name) {
    std::array<char, 4096> path{};
    const ssize_t size = readlink("/proc/self/exe", path.data(), path.size());
    const std::string own(path.data(), size > 0 ? static_cast<size_t>(size) : 0);
    return own.substr(0, own.rfind('/') + 1) + name;
}

}  // namespace Bench
