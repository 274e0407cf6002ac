// Encodes frames as the contents of files.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "tools/zelcam/frames/frame.h"

namespace ZelTool {

enum class FileFormat { None, Png, Tiff, Jpeg, Raw };

// The names in the options.
extern const std::vector<std::string> kFormatNames;

// The format with that name. If `format` is empty, the format for the extension of the file name
// `output`; PNG if it has no extension. Throws Failure (Usage) for other extensions.
FileFormat FormatOf(const std::string& format, const std::string& output);

// The usual extension of a file, with the dot.
std::string UsualEnding(FileFormat format);

// A frame in one of the formats other than None. The frame must outlive this object.
class EncodedFrame {
  public:
    // Throws Failure (FileFailed) when the image cannot be converted.
    EncodedFrame(const Frame& frame, FileFormat format, const std::string& cameraId);

    const void* Data() const { return data_; }
    size_t Size() const { return size_; }

    // A text with everything that is needed to read a raw file; empty for the other formats.
    const std::string& Description() const { return description_; }

  private:
    std::vector<uint8_t> bytes_;
    const void* data_;
    size_t size_;
    std::string description_;
};

}  // namespace ZelTool
