// Frames on their way into files.
#ifndef ZELCAM_TOOLS_ZELCAM_FRAMEFILES_H
#define ZELCAM_TOOLS_ZELCAM_FRAMEFILES_H

#include <condition_variable>
#include <cstdint>
#include <deque>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include "tools/zelcam/failure.h"
#include "tools/zelcam/frame.h"
#include "tools/zelcam/frameencoder.h"
#include "tools/zelcam/framelog.h"

// What became of the frames of one camera.
struct WrittenFiles {
    uint64_t count = 0;
    std::string first;
    std::string last;
    uint64_t firstNumber = 0;
    uint64_t lastNumber = 0;
    uint64_t waits = 0;  // how often the queue was full
};

// A frame that is to be written.
struct FrameToWrite {
    StoredFrame frame;
    LoggedFrame entry;
    std::string file;  // standardStream: there
    WrittenFiles* written;
};

// Converts frames and writes them with threads of its own, since both take longer than a fast
// camera leaves time for. So many frames can wait; more have to wait to be taken. After the first
// failure nothing is written any more. Thread-safe but for Finish.
class FrameFiles {
  public:
    struct Settings {
        FileFormat format = FileFormat::Png;
        bool overwrite = false;
        uint64_t threads = 0;   // 0: as many as there are processors
        uint64_t waiting = 16;  // frames
    };

    // `log` may be null; it must outlive this object.
    FrameFiles(const Settings& settings, FrameLog* log);

    // Does what Finish does. Nobody is left to be told about failures.
    ~FrameFiles();
    FrameFiles(const FrameFiles&) = delete;
    FrameFiles& operator=(const FrameFiles&) = delete;

    // Waits while too many frames are in the queue. False, and the frame is dropped, after a
    // failure. `frame.written` must stay until Finish.
    bool Put(FrameToWrite frame);

    // Waits until all is written; nothing comes afterwards. The failure that ended it, if one did.
    std::optional<Failure> Finish();

  private:
    // With its place in the log.
    struct Task {
        FrameToWrite frame;
        uint64_t place;
    };

    void Work();
    void Write(const Task& task);
    void WriteFiles(const FrameToWrite& frame);
    void Note(const FrameToWrite& frame);
    Existing ExistingFor(const std::string& file) const;

    Settings settings_;
    FrameLog* log_;
    std::mutex mutex_;
    std::condition_variable changed_;
    std::deque<Task> tasks_;          // guarded by mutex_
    std::optional<Failure> failure_;  // guarded by mutex_
    bool finished_ = false;           // guarded by mutex_: no more tasks come
    std::vector<std::thread> threads_;
};

#endif  // ZELCAM_TOOLS_ZELCAM_FRAMEFILES_H
