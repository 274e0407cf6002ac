// Signs of life, for somebody who watches.
#ifndef ZELCAM_TOOLS_ZELCAM_PROGRESS_H
#define ZELCAM_TOOLS_ZELCAM_PROGRESS_H

#include <atomic>
#include <condition_variable>
#include <cstdint>
#include <functional>
#include <mutex>
#include <string>
#include <thread>

// One line on the standard error output, from half a second after construction on, redrawn by a
// thread of its own: a call of a producer may take its time. Wiped at the end. Shows nothing when
// that output is not a terminal.
class LiveLine {
  public:
    // `text` gets the seconds since construction, in the other thread; the line is short and
    // Printable.
    explicit LiveLine(std::function<std::string(unsigned seconds)> text);
    ~LiveLine();
    LiveLine(const LiveLine&) = delete;
    LiveLine& operator=(const LiveLine&) = delete;

    // Prints something that stays, above the line.
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

// How far grabbing is. Add is thread-safe.
class GrabProgress {
  public:
    // `total` 0: there is no end.
    explicit GrabProgress(uint64_t total);

    void Add() { ++frames_; }

  private:
    std::string Text(unsigned seconds) const;

    uint64_t total_;
    std::atomic<uint64_t> frames_{0};
    LiveLine line_;
};

#endif  // ZELCAM_TOOLS_ZELCAM_PROGRESS_H
