// Writes frames to files in threads of its own.
#pragma once

#include <condition_variable>
#include <cstdint>
#include <deque>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include "tools/zelcam/console/failure.h"
#include "tools/zelcam/frames/frame.h"
#include "tools/zelcam/frames/frameencoder.h"
#include "tools/zelcam/frames/framelog.h"

namespace ZelTool {

// The files of one camera.
struct WrittenFiles {
    uint64_t count = 0;
    std::string first;
    std::string last;
    uint64_t firstNumber = 0;
    uint64_t lastNumber = 0;
    uint64_t waits = 0;  // how often the queue was full
};

struct FrameToWrite {
    StoredFrame frame;
    Arrival arrival;
    std::string file;  // or kStandardStream
    WrittenFiles* written;
    uint64_t place = 0;  // in the log; FrameFiles sets it
};

// Converts and writes frames in several threads, since both take longer than a fast camera allows.
// A limited number of frames can wait in a queue. After the first failure it writes nothing more.
// Thread-safe except for Finish.
class FrameFiles {
  public:
    struct Settings {
        FileFormat format = FileFormat::Png;
        bool overwrite = false;
        uint64_t threads = 0;   // 0: one per processor
        uint64_t waiting = 16;  // frames in the queue
    };

    // `log` may be null; it must outlive this object.
    FrameFiles(const Settings& settings, FrameLog* log);

    // Does the same as Finish, but ignores a failure.
    ~FrameFiles();
    FrameFiles(const FrameFiles&) = delete;
    FrameFiles& operator=(const FrameFiles&) = delete;

    // Waits while the queue is full. After a failure it drops the frame and returns false.
    // `frame.written` must stay valid until Finish.
    bool Put(FrameToWrite frame);

    // Waits until everything is written and returns the failure, if there was one. Call Put no
    // more.
    std::optional<Failure> Finish();

  private:
    void Work();
    void Write(const FrameToWrite& frame);
    void WriteFiles(const FrameToWrite& frame);
    void Note(const FrameToWrite& frame);
    Existing ExistingFor(const std::string& file) const;

    Settings settings_;
    FrameLog* log_;
    std::mutex mutex_;
    std::condition_variable changed_;
    std::deque<FrameToWrite> queue_;  // guarded by mutex_
    std::optional<Failure> failure_;  // guarded by mutex_
    bool finished_ = false;           // guarded by mutex_
    std::vector<std::thread> threads_;
};

}  // namespace ZelTool
