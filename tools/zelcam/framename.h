// The names of the files of frames.
#ifndef ZELCAM_TOOLS_ZELCAM_FRAMENAME_H
#define ZELCAM_TOOLS_ZELCAM_FRAMENAME_H

#include <cstdint>
#include <string>
#include <vector>

#include "tools/zelcam/frame.h"

// File names with places to fill in:
//   {n}       number of the frame in this run, from 1, with at least four digits
//   {frame}   number that the camera gave the frame
//   {camera}  identifier of the camera; what is bad in file names becomes '_'
class FileNamePattern {
  public:
    // Throws Failure (Usage) for a place of another name and a brace without partner.
    explicit FileNamePattern(const std::string& pattern);

    std::string Expand(uint64_t number, uint64_t frameId, const std::string& cameraId) const;

    bool Has(const std::string& place) const;

    // False when all frames of a camera would get the same name.
    bool TellsFramesApart() const { return Has("n") || Has("frame"); }

  private:
    struct Piece {
        bool isPlace;
        std::string text;  // name of the place, or the text itself
    };
    std::vector<Piece> pieces_;
};

// Names the frames of one camera in the order in which they come. Those that are incomplete get
// "-incomplete" before the ending. The numbers that cameras give repeat, and those of incomplete
// frames may be wrong: where {n} does not tell such frames apart, their number in the run is added,
// so that none takes the name of another.
class FrameNamer {
  public:
    FrameNamer(FileNamePattern pattern, std::string cameraId)
        : pattern_(std::move(pattern)), cameraId_(std::move(cameraId)) {}

    std::string NameOf(uint64_t number, uint64_t frameId, bool incomplete);

    // The name of a complete frame, where it does not depend on what the camera says.
    std::string KnownName(uint64_t number) const { return pattern_.Expand(number, 0, cameraId_); }
    bool KnowsNames() const { return !pattern_.Has("frame"); }

  private:
    FileNamePattern pattern_;
    std::string cameraId_;
    uint64_t unusedFrom_ = 0;  // no complete frame had this number or a higher one
};

#endif  // ZELCAM_TOOLS_ZELCAM_FRAMENAME_H
