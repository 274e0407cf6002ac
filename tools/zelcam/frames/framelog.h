// Writes a table of all frames.
#pragma once

#include <chrono>
#include <cstdint>
#include <map>
#include <mutex>
#include <string>

#include "tools/zelcam/console/outputfile.h"
#include "tools/zelcam/frames/frame.h"

namespace ZelTool {

// A frame without its image.
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

// The entry for a frame that has just arrived.
LoggedFrame Logged(const std::string& cameraId, uint64_t number, const Frame& frame);

// A CSV file with a line for each frame. The lines are in the order of arrival, even if the files
// of the frames are finished in another order. Other programs can read it while it grows.
// Thread-safe; operations throw Failure (FileFailed).
class FrameLog {
  public:
    FrameLog(const std::string& file, Existing existing);

    // Reserves the next line.
    uint64_t Reserve();

    // Fills a reserved line; `file` is empty for a frame that was not written.
    void Add(uint64_t place, const LoggedFrame& frame, const std::string& file);

    // The last operation. Writes the lines that waited for a frame that failed.
    void Finish();

  private:
    std::mutex mutex_;
    OutputFile file_;
    uint64_t reserved_ = 0;                  // guarded by mutex_
    uint64_t next_ = 0;                      // guarded by mutex_
    std::map<uint64_t, std::string> lines_;  // guarded by mutex_; they wait for an earlier line
};

}  // namespace ZelTool
