// File names for frames.
#pragma once

#include <cstdint>
#include <string>
#include <utility>

namespace ZelTool {

// A file name with placeholders:
//   {n}       number of the frame in this run, from 1, with at least four digits
//   {frame}   number that the camera gave the frame
//   {camera}  identifier of the camera; characters that are unsafe in file names become '_'
class FileNamePattern {
  public:
    // Throws Failure (Usage) for an unknown placeholder and an unclosed brace.
    explicit FileNamePattern(std::string pattern);

    std::string Expand(uint64_t number, uint64_t frameId, const std::string& cameraId) const;

    bool Has(const std::string& place) const;

    // False when all frames of a camera would get the same name.
    bool DistinguishesFrames() const { return Has("n") || Has("frame"); }

  private:
    std::string pattern_;
};

// Names the frames of one camera in their order. The names of incomplete frames get "-incomplete"
// before the extension. Camera numbers can repeat, and those of incomplete frames may be wrong: in
// these cases, unless the pattern has {n}, the name also gets the number of the frame in the run,
// so that all names differ.
class FrameNamer {
  public:
    FrameNamer(FileNamePattern pattern, std::string cameraId)
        : pattern_(std::move(pattern)), cameraId_(std::move(cameraId)) {}

    std::string NameOf(uint64_t number, uint64_t frameId, bool incomplete);

    // The name of a complete frame, if it does not depend on the camera's number.
    std::string KnownName(uint64_t number) const { return pattern_.Expand(number, 0, cameraId_); }
    bool KnowsNames() const { return !pattern_.Has("frame"); }

  private:
    FileNamePattern pattern_;
    std::string cameraId_;
    uint64_t unusedFrom_ = 0;  // all complete frames had lower numbers
};

}  // namespace ZelTool
