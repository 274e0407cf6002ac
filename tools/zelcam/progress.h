// How far the grabbing is, for somebody who watches.
#ifndef ZELCAM_TOOLS_ZELCAM_PROGRESS_H
#define ZELCAM_TOOLS_ZELCAM_PROGRESS_H

#include <cstdint>

#include "tools/zelcam/framestatistics.h"

// One line on the standard error output, redrawn at most ten times a second and wiped at the end.
// Shows nothing when that output is not a terminal.
class Progress {
  public:
    // `total` 0: there is no end.
    explicit Progress(uint64_t total);
    ~Progress();
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;

    void Update(const FrameStatistics& statistics);

  private:
    uint64_t total_;
    bool shown_;
    FrameStatistics::Clock::time_point next_;
};

#endif  // ZELCAM_TOOLS_ZELCAM_PROGRESS_H
