#include "tools/zelcam/framefile.h"

#include <algorithm>
#include <cstdio>
#include <sstream>
#include <utility>

#include "tools/imaging/pixelformat.h"
#include "tools/imaging/png.h"
#include "tools/zelcam/failure.h"
#include "tools/zelcam/outputfile.h"
#include "tools/zelcam/printable.h"

namespace {

std::string FourDigits(uint64_t number) {
    const std::string digits = std::to_string(number);
    return std::string(digits.size() < 4 ? 4 - digits.size() : 0, '0') + digits;
}

// Whether a character of that length may be in a file name: letters and digits of all scripts.
bool IsFileNameSafe(const std::string& text, size_t at, size_t length) {
    const char c = text[at];
    const bool isPlain = (c >= '0' && c <= '9') || (c >= 'a' && c <= 'z') ||
                         (c >= 'A' && c <= 'Z') || c == '-' || c == '_';
    // Dots in front hide a file, or lead out of the folder.
    return length > 1 || (length == 1 && (isPlain || (c == '.' && at > 0)));
}

// A text of a camera as a part of a file name: never empty, and short enough to leave room for the
// rest.
std::string FileNameSafe(const std::string& text) {
    constexpr size_t longest = 100;
    std::string safe;
    for (size_t at = 0; at < text.size();) {
        const size_t length = PrintableLength(std::string_view(text).substr(at));
        const size_t step = std::max<size_t>(length, 1);
        if (safe.size() + step > longest) break;
        safe += IsFileNameSafe(text, at, length) ? text.substr(at, length) : "_";
        at += step;
    }
    return safe.empty() ? "_" : safe;
}

void CheckPlace(const std::string& name) {
    if (name == "n" || name == "frame" || name == "camera") return;
    throw Failure(ExitCode::Usage,
                  "--output does not know {" + name + "}; it knows {n}, {frame} and {camera}");
}

const char* PackingWords(const Imaging::PixelFormat& format) {
    switch (format.packing) {
        case Imaging::Packing::Bytes:
            return "one byte per component";
        case Imaging::Packing::Words:
            return "two bytes per component, little-endian";
        case Imaging::Packing::LsbFirst:
            return "bits without gaps, least significant first";
        default:
            return "two components in three bytes (GigE Vision Packed)";
    }
}

std::string DescribeRawFile(const Frame& frame, const std::string& cameraId) {
    const Imaging::RawImage& image = frame.image;
    char number[24];
    std::snprintf(number, sizeof number, "0x%08llX",
                  static_cast<unsigned long long>(image.pixelFormat));
    std::ostringstream text;
    text << "camera: " << Printable(cameraId)
         << "\npixel format: " << Imaging::PixelFormatName(image.pixelFormat)
         << "\npixel format number: " << number << "\nwidth: " << image.width
         << "\nheight: " << image.height
         << "\nbits per pixel: " << Imaging::BitsPerPixel(image.pixelFormat);
    if (const auto* format = Imaging::FindPixelFormat(image.pixelFormat)) {
        text << "\nbits per component: " << format->depth << "\npacking: " << PackingWords(*format);
    }
    text << "\nbytes per line: " << image.LinePitch() << "\nline padding: " << image.linePadding
         << "\nbytes: " << frame.BytesPresent()
         << "\nbytes of a whole image: " << image.ImageBytes() << "\nx offset: " << frame.xOffset
         << "\ny offset: " << frame.yOffset << "\nframe: " << frame.frameId
         << "\ntimestamp: " << frame.timestamp
         << "\nincomplete: " << (frame.incomplete ? "yes" : "no") << '\n';
    return text.str();
}

Imaging::RawImage ImageIn(ZelCam::Buffer& buffer) {
    const size_t size = buffer.GetBufferSize();
    const size_t offset = std::min(buffer.GetImageOffset(), size);
    const auto* base = static_cast<const uint8_t*>(buffer.GetBufferPtr());
    Imaging::RawImage image{};
    image.data = base == nullptr ? nullptr : base + offset;
    image.size = base == nullptr ? 0 : size - offset;
    image.pixelFormat = buffer.GetPixelFormat();
    image.width = buffer.GetWidth();
    image.height = buffer.GetHeight();
    // Cameras with a variable height fill fewer lines than announced.
    const size_t delivered = buffer.GetDeliveredHeight();
    if (delivered > 0) image.height = std::min(image.height, delivered);
    image.linePadding = buffer.GetXPadding();
    return image;
}

std::vector<uint8_t> ToPng(const Frame& frame) {
    try {
        return Imaging::EncodePng(Imaging::Decode(frame.image));
    } catch (const Imaging::Error& error) {
        throw Failure(ExitCode::FileFailed,
                      std::string(error.what()) + "; --format raw writes the bytes as they are");
    }
}

void WriteWhole(const std::string& name, const void* data, size_t size) {
    OutputFile file(name, Existing::Replace);
    file.Write(data, size);
    file.TakePlace();
}

}  // namespace

FileNamePattern::FileNamePattern(const std::string& pattern) {
    for (size_t at = 0; at < pattern.size();) {
        const size_t open = pattern.find('{', at);
        if (open != at) pieces_.push_back({false, pattern.substr(at, open - at)});
        if (open == std::string::npos) break;
        const size_t close = pattern.find('}', open);
        if (close == std::string::npos) {
            throw Failure(ExitCode::Usage, "--output has a { without }");
        }
        const std::string name = pattern.substr(open + 1, close - open - 1);
        CheckPlace(name);
        pieces_.push_back({true, name});
        at = close + 1;
    }
}

std::string FileNamePattern::Expand(uint64_t number, uint64_t frameId,
                                    const std::string& cameraId) const {
    std::string name;
    for (const Piece& piece : pieces_) {
        if (!piece.isPlace) {
            name += piece.text;
        } else if (piece.text == "n") {
            name += FourDigits(number);
        } else if (piece.text == "frame") {
            name += std::to_string(frameId);
        } else {
            name += FileNameSafe(cameraId);
        }
    }
    return name;
}

bool FileNamePattern::TellsFramesApart() const {
    return std::any_of(pieces_.begin(), pieces_.end(),
                       [](const Piece& piece) { return piece.isPlace && piece.text != "camera"; });
}

Frame::Frame(ZelCam::Buffer& buffer)
    : image(ImageIn(buffer)),
      frameId(buffer.GetFrameID()),
      timestamp(buffer.GetTimestamp()),
      xOffset(buffer.GetXOffset()),
      yOffset(buffer.GetYOffset()),
      incomplete(buffer.IsIncomplete()) {}

size_t Frame::BytesPresent() const {
    const size_t wanted = image.ImageBytes();
    return wanted == 0 ? image.size : std::min(wanted, image.size);
}

FrameWriter::FrameWriter(FileFormat format, FileNamePattern pattern, std::string cameraId)
    : format_(format), pattern_(std::move(pattern)), cameraId_(std::move(cameraId)) {}

std::string FrameWriter::Write(const Frame& frame, uint64_t number) const {
    if (format_ == FileFormat::None) return "";
    std::string name = pattern_.Expand(number, frame.frameId, cameraId_);
    if (format_ == FileFormat::Png) {
        const std::vector<uint8_t> bytes = ToPng(frame);
        WriteWhole(name, bytes.data(), bytes.size());
    } else {
        const std::string text = DescribeRawFile(frame, cameraId_);
        WriteWhole(name, frame.image.data, frame.BytesPresent());
        WriteWhole(name + ".txt", text.data(), text.size());
    }
    return name;
}
