#include "tools/zelcam/camera/producertrial.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <initializer_list>
#include <poll.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include "tools/zelcam/camera/producerexam.h"
#include "tools/zelcam/console/failure.h"
#include "tools/zelcam/console/interrupt.h"

namespace ZelTool {

namespace {

// Only a broken producer causes more records.
constexpr size_t kMostRecordBytes = size_t{1} << 20;

// Only the last words of the producer matter.
constexpr size_t kMostWordBytes = 4096;

// More searches do not prolong the trial.
constexpr size_t kMostSearches = 64;

std::array<int, 2> MakePipe() {
    std::array<int, 2> ends{};
    if (pipe2(ends.data(), O_CLOEXEC) != 0) {
        throw Failure(ExitCode::NoProducer, std::string("no pipe: ") + std::strerror(errno));
    }
    return ends;
}

// Makes the process end with `parent` and at signals, without a core file.
void Isolate(pid_t parent) {
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    if (getppid() != parent) _exit(0);
    const rlimit none{0, 0};
    setrlimit(RLIMIT_CORE, &none);
    for (int number : {SIGINT, SIGTERM, SIGHUP, SIGSEGV, SIGBUS, SIGFPE, SIGILL, SIGABRT, SIGPIPE})
        std::signal(number, SIG_DFL);
}

[[noreturn]] void RunTrial(const std::string& file, const TrialOptions& options, int records,
                           int words) {
    const int input = open("/dev/null", O_RDONLY | O_CLOEXEC);
    if (input < 0 || dup2(input, STDIN_FILENO) < 0 || dup2(words, STDOUT_FILENO) < 0 ||
        dup2(words, STDERR_FILENO) < 0) {
        _exit(1);
    }
    try {
        ExamineProducer(file, options, records);
    } catch (...) {
        // The parent reports a trial that did not complete.
        _exit(1);
    }
    _exit(0);
}

}  // namespace

ProducerTrial::ProducerTrial(const std::string& file, const TrialOptions& options)
    : options_(options) {
    const std::array<int, 2> records = MakePipe();
    const std::array<int, 2> words = MakePipe();
    const pid_t parent = getpid();
    process_ = fork();
    if (process_ == 0) {
        Isolate(parent);
        RunTrial(file, options, records[1], words[1]);
    }
    if (process_ < 0) reason_ = std::string("no process to try it in: ") + std::strerror(errno);
    close(records[1]);
    close(words[1]);
    records_.file = records[0];
    words_.file = words[0];
}

ProducerTrial::~ProducerTrial() {
    End();
    close(records_.file);
    close(words_.file);
}

void ProducerTrial::Await() {
    if (process_ < 0) return;
    while (records_.file >= 0 && !late_) {
        std::array<pollfd, 2> files{{{records_.file, POLLIN, 0}, {words_.file, POLLIN, 0}}};
        const uint64_t left = TimeLeftMs();
        late_ = left == 0;
        // Wait in slices: a process that the producer started may keep the pipe open, and the end
        // of the trial would go unnoticed.
        poll(files.data(), files.size(), static_cast<int>(std::min(left, kSliceMs)));
        EndIfInterrupted();
        if (files[1].revents != 0) Receive(words_, kMostWordBytes);
        if (files[0].revents != 0) Receive(records_, kMostRecordBytes);
        TakeRecords();
    }
    const int status = End();
    ReceiveLastWords();
    Judge(status);
}

// Appends what has arrived, and closes the channel at its end.
void ProducerTrial::Receive(Channel& channel, size_t most) {
    std::array<char, 4096> piece{};
    const ssize_t size = read(channel.file, piece.data(), piece.size());
    if (size <= 0) {
        close(channel.file);
        channel.file = -1;
        return;
    }
    channel.text.append(piece.data(), static_cast<size_t>(size));
    if (channel.text.size() > most) channel.text.erase(0, channel.text.size() - most);
}

// Receives the rest. It is bounded, since a process that the producer started may go on printing.
void ProducerTrial::ReceiveLastWords() {
    constexpr int kMostPieces = 16;
    for (int i = 0; i < kMostPieces && words_.file >= 0; ++i) {
        pollfd file{words_.file, POLLIN, 0};
        if (poll(&file, 1, 0) != 1) return;
        Receive(words_, kMostWordBytes);
    }
}

void ProducerTrial::TakeRecords() {
    size_t begin = 0;
    for (size_t end; (end = records_.text.find('\0', begin)) != std::string::npos;
         begin = end + 1) {
        if (end > begin) TakeRecord(records_.text.substr(begin, end - begin));
    }
    records_.text.erase(0, begin);
}

void ProducerTrial::TakeRecord(const std::string& record) {
    const std::string text = record.substr(1);
    switch (record.front()) {
        case TrialSearch:
            searched_ = std::min(searched_ + 1, kMostSearches);
            [[fallthrough]];
        case TrialStep:
            step_ = text;
            return;
        case TrialInterface:
        case TrialSimulated:
            return interfaces_.push_back({text, record.front() == TrialSimulated});
        case TrialFailed:
            reason_ = text;
            return;
        default:
            done_ = true;
    }
}

uint64_t ProducerTrial::TimeLeftMs() const {
    const auto limit = options_.limitMs + searched_ * options_.searchMs;
    const auto passed = std::chrono::duration_cast<std::chrono::milliseconds>(
                            std::chrono::steady_clock::now() - start_)
                            .count();
    return limit - std::min(limit, static_cast<uint64_t>(passed));
}

// `status` comes from waitpid.
void ProducerTrial::Judge(int status) {
    if (done_ || !reason_.empty()) return;
    if (late_) {
        reason_ = "it hangs: no return from " + step_ + " within " +
                  std::to_string(options_.limitMs) + " ms (--load-timeout)";
    } else if (WIFSIGNALED(status)) {
        reason_ = "it crashes in " + step_ + ": " + strsignal(WTERMSIG(status));
    } else {
        reason_ = "it ends the program in " + step_ + ", with exit code " +
                  std::to_string(WEXITSTATUS(status));
    }
    const std::string words = LastWords();
    if (!words.empty()) reason_ += "; its last words: " + words;
}

// Ends the process and returns its status.
int ProducerTrial::End() {
    int status = 0;
    if (process_ < 0) return status;
    // A process that has already ended keeps its status.
    kill(process_, SIGKILL);
    while (waitpid(process_, &status, 0) < 0 && errno == EINTR) {
    }
    process_ = -1;
    return status;
}

// The last line that the producer printed.
std::string ProducerTrial::LastWords() const {
    const size_t end = words_.text.find_last_not_of(" \r\n");
    if (end == std::string::npos) return "";
    const size_t begin = words_.text.find_last_of("\r\n", end);
    const size_t from = begin == std::string::npos ? 0 : begin + 1;
    return words_.text.substr(from, end + 1 - from);
}

}  // namespace ZelTool
