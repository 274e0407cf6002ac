// Frames as the contents of files.
#ifndef ZELCAM_TOOLS_ZELCAM_FRAMEENCODER_H
#define ZELCAM_TOOLS_ZELCAM_FRAMEENCODER_H

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "tools/zelcam/frame.h"

enum class FileFormat { None, Png, Tiff, Jpeg, Raw };

// As users call them.
extern const std::vector<std::string> formatNames;

// By its name; without one by the ending of a file name, and PNG for a name without an ending.
// Failure (Usage) for other endings.
FileFormat FormatOf(const std::string& format, const std::string& output);

// With the dot.
const char* UsualEnding(FileFormat format);

// A frame in one of the formats with a file. The frame must outlive it.
class EncodedFrame {
  public:
    // Failure (FileFailed) when the image cannot be converted.
    EncodedFrame(const Frame& frame, FileFormat format, const std::string& cameraId);

    const void* Data() const { return data_; }
    size_t Size() const { return size_; }

    // All that is needed to read a raw file, as a text; empty for the other formats, which tell it
    // themselves.
    const std::string& Description() const { return description_; }

  private:
    std::vector<uint8_t> bytes_;
    const void* data_;
    size_t size_;
    std::string description_;
};

#endif  // ZELCAM_TOOLS_ZELCAM_FRAMEENCODER_H
