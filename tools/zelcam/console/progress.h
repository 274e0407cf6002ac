// Progress on the terminal.
#pragma once

#include <atomic>
#include <condition_variable>
#include <cstdint>
#include <functional>
#include <mutex>
#include <string>
#include <thread>

namespace ZelTool {

// A line on standard error that appears half a second after construction. A thread redraws it,
// since a call into a producer may take long; the destructor wipes it. Shows nothing when standard
// error is not a terminal.
class LiveLine {
  public:
    // The thread calls `text` with the seconds since construction. It returns a short, Printable
    // line.
    explicit LiveLine(std::function<std::string(unsigned seconds)> text);
    ~LiveLine();
    LiveLine(const LiveLine&) = delete;
    LiveLine& operator=(const LiveLine&) = delete;

    // Prints something above the line.
    void Print(const std::function<void()>& print);

  private:
    void Run();

    std::function<std::string(unsigned)> text_;
    std::mutex mutex_;
    std::condition_variable ending_;
    bool ended_ = false;    // guarded by mutex_
    bool isShown_ = false;  // guarded by mutex_
    std::thread thread_;
};

// "searching for cameras, 3 s", for LiveLine.
std::function<std::string(unsigned)> Waiting(const std::string& what);

// Counts the grabbed frames on a LiveLine. Add is thread-safe.
class GrabProgress {
  public:
    // `total` 0: until Ctrl-C.
    explicit GrabProgress(uint64_t total);

    void Add() { ++frames_; }

  private:
    std::string Text(unsigned seconds) const;

    uint64_t total_;
    std::atomic<uint64_t> frames_{0};
    LiveLine line_;
};

}  // namespace ZelTool
