// Frames as files.
#ifndef ZELCAM_TOOLS_ZELCAM_FRAMEFILE_H
#define ZELCAM_TOOLS_ZELCAM_FRAMEFILE_H

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "ZelCam/ZelCam.h"
#include "tools/imaging/decode.h"

// File names with places to fill in:
//   {n}       number of the frame in this run, from 1, with at least four digits
//   {frame}   number that the camera gave the frame
//   {camera}  identifier of the camera; characters that are bad in file names become '_'
class FileNamePattern {
  public:
    // Throws Failure (Usage) for a place of another name and a brace without partner.
    explicit FileNamePattern(const std::string& pattern);

    std::string Expand(uint64_t number, uint64_t frameId, const std::string& cameraId) const;

    // False when all frames of a run would get the same name.
    bool TellsFramesApart() const;

  private:
    struct Piece {
        bool isPlace;
        std::string text;  // name of the place, or the text itself
    };
    std::vector<Piece> pieces_;
};

// What the buffer of a frame holds. The image in it is that of the buffer: it is valid until the
// buffer is queued again.
struct Frame {
    explicit Frame(ZelCam::Buffer& buffer);

    Imaging::RawImage image;
    uint64_t frameId;
    uint64_t timestamp;
    size_t xOffset;
    size_t yOffset;
    bool incomplete;

    // Bytes of the image that are in the buffer, fewer than the geometry asks for if it is too
    // small; the whole buffer for formats whose geometry is not known.
    size_t BytesPresent() const;
};

enum class FileFormat { None, Png, Raw };

// Writes frames. A raw file holds the bytes of the image as the camera sent them; beside it, with
// ".txt" added to its name, a text with all that is needed to read them.
class FrameWriter {
  public:
    FrameWriter(FileFormat format, FileNamePattern pattern, std::string cameraId);

    // Returns the name of the file, empty for FileFormat::None. Throws Failure (FileFailed).
    std::string Write(const Frame& frame, uint64_t number) const;

  private:
    FileFormat format_;
    FileNamePattern pattern_;
    std::string cameraId_;
};

#endif  // ZELCAM_TOOLS_ZELCAM_FRAMEFILE_H
