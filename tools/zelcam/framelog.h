// A table of all frames.
#ifndef ZELCAM_TOOLS_ZELCAM_FRAMELOG_H
#define ZELCAM_TOOLS_ZELCAM_FRAMELOG_H

#include <chrono>
#include <cstdint>
#include <map>
#include <mutex>
#include <string>

#include "tools/zelcam/frame.h"
#include "tools/zelcam/outputfile.h"

// One frame of a run.
struct LoggedFrame {
    std::string camera;
    uint64_t number;
    std::chrono::system_clock::time_point arrived;
    uint64_t frameId;
    uint64_t timestamp;
    size_t width;
    size_t height;
    uint64_t pixelFormat;
    size_t bytes;
    bool incomplete;
};

// Of a frame that has just arrived.
LoggedFrame Logged(const std::string& cameraId, uint64_t number, const Frame& frame);

// A CSV file with a line for each frame, in the order of arrival though the files of the frames may
// be finished in another one. It can be read while it grows. Thread-safe; operations throw Failure
// (FileFailed).
class FrameLog {
  public:
    FrameLog(const std::string& file, Existing existing);

    // The place of the next line.
    uint64_t Reserve();

    // Fills a place; `file` is empty for a frame that was not written.
    void Add(uint64_t place, const LoggedFrame& frame, const std::string& file);

    // The last operation. Frames behind one that failed have their lines now, too.
    void Finish();

  private:
    std::mutex mutex_;
    OutputFile file_;
    uint64_t reserved_ = 0;                  // guarded by mutex_
    uint64_t next_ = 0;                      // guarded by mutex_
    std::map<uint64_t, std::string> lines_;  // guarded by mutex_; behind one that is missing yet
};

#endif  // ZELCAM_TOOLS_ZELCAM_FRAMELOG_H
