// Writes a table of all frames.
#pragma once

#include <cstdint>
#include <map>
#include <mutex>
#include <string>

#include "tools/zelcam/console/outputfile.h"
#include "tools/zelcam/console/timetext.h"
#include "tools/zelcam/frames/frame.h"

namespace ZelTool {

// The arrival of a frame.
struct Arrival {
    std::string camera;  // identifier
    uint64_t number;     // of the frame in this run, from 1
    WallClock::time_point time;
};

// A CSV file with a line for each frame. The lines are in the order of arrival, even if the files
// of the frames are finished in another order. Other programs can read it while it grows.
// Thread-safe; operations throw Failure (FileFailed).
class FrameLog {
  public:
    FrameLog(const std::string& file, Existing existing);

    // Reserves the next line.
    uint64_t Reserve();

    // Fills a reserved line; `file` is empty for a frame that was not written.
    void Add(uint64_t place, const Arrival& arrival, const Frame& frame, const std::string& file);

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
