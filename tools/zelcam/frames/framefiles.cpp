#include "tools/zelcam/frames/framefiles.h"

#include <algorithm>
#include <filesystem>
#include <utility>

#include "tools/zelcam/console/outputfile.h"

namespace ZelTool {

FrameFiles::FrameFiles(const Settings& settings, FrameLog* log) : settings_(settings), log_(log) {
    constexpr uint64_t kMostThreads = 64;
    uint64_t threads = settings.threads;
    if (threads == 0) threads = std::thread::hardware_concurrency();
    threads = std::clamp<uint64_t>(threads, 1, kMostThreads);
    for (uint64_t i = 0; i < threads; ++i)
        threads_.emplace_back([this] { Work(); });
}

FrameFiles::~FrameFiles() {
    Finish();
}

bool FrameFiles::Put(FrameToWrite frame) {
    std::unique_lock lock(mutex_);
    const auto hasRoom = [this] { return queue_.size() < settings_.waiting || failure_; };
    if (!hasRoom()) {
        ++frame.written->waits;
        changed_.wait(lock, hasRoom);
    }
    if (failure_) return false;
    if (log_ != nullptr) frame.place = log_->Reserve();
    queue_.push_back(std::move(frame));
    changed_.notify_all();
    return true;
}

std::optional<Failure> FrameFiles::Finish() {
    {
        const std::lock_guard lock(mutex_);
        finished_ = true;
    }
    changed_.notify_all();
    for (std::thread& thread : threads_)
        thread.join();
    threads_.clear();
    return failure_;
}

void FrameFiles::Work() {
    std::unique_lock lock(mutex_);
    for (;;) {
        changed_.wait(lock, [this] { return !queue_.empty() || finished_; });
        if (queue_.empty()) return;
        const FrameToWrite frame = std::move(queue_.front());
        queue_.pop_front();
        if (failure_) continue;
        lock.unlock();
        changed_.notify_all();
        std::optional<Failure> failure;
        try {
            Write(frame);
        } catch (const Failure& error) {
            failure = error;
        } catch (const std::exception& error) {
            failure = Failure(ExitCode::FileFailed, error.what());
        }
        lock.lock();
        if (failure && !failure_) failure_ = failure;
        if (failure) changed_.notify_all();
    }
}

void FrameFiles::Write(const FrameToWrite& frame) {
    WriteFiles(frame);
    Note(frame);
    if (log_ != nullptr) log_->Add(frame.place, frame.arrival, frame.frame.Get(), frame.file);
}

void FrameFiles::WriteFiles(const FrameToWrite& frame) {
    const EncodedFrame encoded(frame.frame.Get(), settings_.format, frame.arrival.camera);
    if (frame.file == kStandardStream) {
        WriteToStandardOutput(encoded.Data(), encoded.Size());
        return;
    }
    OutputFile file(frame.file, ExistingFor(frame.file));
    file.Write(encoded.Data(), encoded.Size());
    const std::string description = frame.file + ".txt";
    if (!encoded.Description().empty())
        WriteFile(description, encoded.Description(), ExistingFor(description));
    file.TakePlace();
}

// Keep for a free name, even with --overwrite: only replacing a file must wait for the disk.
Existing FrameFiles::ExistingFor(const std::string& file) const {
    std::error_code error;
    const auto status = std::filesystem::symlink_status(file, error);
    return settings_.overwrite && std::filesystem::exists(status) ? Existing::Replace
                                                                  : Existing::Keep;
}

void FrameFiles::Note(const FrameToWrite& frame) {
    const std::lock_guard lock(mutex_);
    WrittenFiles& written = *frame.written;
    const uint64_t number = frame.arrival.number;
    if (written.count == 0 || number < written.firstNumber) {
        written.first = frame.file;
        written.firstNumber = number;
    }
    if (number > written.lastNumber) {
        written.last = frame.file;
        written.lastNumber = number;
    }
    ++written.count;
}

}  // namespace ZelTool
