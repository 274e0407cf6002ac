#include "tools/zelcam/frames/frameencoder.h"

#include <cctype>
#include <sstream>

#include "tools/imaging/encode.h"
#include "tools/imaging/pixelformat.h"
#include "tools/zelcam/console/failure.h"
#include "tools/zelcam/console/printable.h"
#include "tools/zelcam/console/wordtable.h"

namespace ZelTool {

namespace {

constexpr Word<Imaging::Packing> kPackings[] = {
    {Imaging::Packing::Bytes, "one byte per component"},
    {Imaging::Packing::Words, "two bytes per component, little-endian"},
    {Imaging::Packing::LsbFirst, "bits without gaps, least significant first"},
    {Imaging::Packing::GigEVision, "two components in three bytes (GigE Vision Packed)"},
};

std::string DescribeRawFile(const Frame& frame, const std::string& cameraId) {
    const Imaging::RawImage& image = frame.image;
    std::ostringstream text;
    text << "camera: " << Printable(cameraId)
         << "\npixel format: " << Imaging::PixelFormatName(image.pixelFormat)
         << "\npixel format number: " << Imaging::PixelFormatNumber(image.pixelFormat)
         << "\nwidth: " << image.width << "\nheight: " << image.height
         << "\nbits per pixel: " << Imaging::BitsPerPixel(image.pixelFormat);
    if (const auto* format = Imaging::FindPixelFormat(image.pixelFormat)) {
        text << "\nbits per component: " << format->depth
             << "\npacking: " << WordsFor(format->packing, kPackings, "");
    }
    text << "\nbytes per line: " << image.LinePitch() << "\nline padding: " << image.linePadding
         << "\nbytes: " << frame.BytesPresent()
         << "\nbytes of a whole image: " << image.ImageBytes() << "\nx offset: " << frame.xOffset
         << "\ny offset: " << frame.yOffset << "\nframe: " << frame.frameId
         << "\ntimestamp: " << frame.timestamp
         << "\nincomplete: " << (frame.incomplete ? "yes" : "no") << '\n';
    return text.str();
}

std::vector<uint8_t> EncodePicture(const Frame& frame, FileFormat format) {
    try {
        const Imaging::Picture picture = Imaging::Decode(frame.image);
        if (format == FileFormat::Tiff) return Imaging::EncodeTiff(picture);
        return format == FileFormat::Jpeg ? Imaging::EncodeJpeg(picture)
                                          : Imaging::EncodePng(picture);
    } catch (const Imaging::Error& error) {
        throw Failure(ExitCode::FileFailed,
                      std::string(error.what()) + "; --format raw writes the bytes unchanged");
    }
}

// The text after the last dot, if it looks like an extension.
std::string LowerEndingOf(const std::string& file) {
    const size_t dot = file.find_last_of("./");
    if (dot == std::string::npos || file[dot] == '/') return "";
    std::string ending = file.substr(dot + 1);
    for (char& c : ending) {
        const auto character = static_cast<unsigned char>(c);
        if (std::isalnum(character) == 0) return "";
        c = static_cast<char>(std::tolower(character));
    }
    return ending.empty() || std::isdigit(static_cast<unsigned char>(ending[0])) != 0 ? "" : ending;
}

// The usual extension of each format comes first.
constexpr Word<FileFormat> kEndings[] = {
    {FileFormat::Png, "png"},  {FileFormat::Tiff, "tif"},  {FileFormat::Tiff, "tiff"},
    {FileFormat::Jpeg, "jpg"}, {FileFormat::Jpeg, "jpeg"}, {FileFormat::Raw, "raw"},
};

}  // namespace

FileFormat FormatOf(const std::string& format, const std::string& output) {
    if (format == "none") return FileFormat::None;
    const std::string ending = format.empty() ? LowerEndingOf(output) : format;
    if (ending.empty()) return FileFormat::Png;
    for (const auto& each : kEndings)
        if (ending == each.words) return each.code;
    throw Failure(ExitCode::Usage, "no format has the extension ." + ending +
                                       ": use .png, .tif, .jpg or .raw, or choose a format with "
                                       "--format (png, tiff, jpeg, raw)");
}

const std::vector<std::string> kFormatNames = {"png", "tiff", "jpeg", "raw", "none"};

std::string UsualEnding(FileFormat format) {
    return std::string(".") + WordsFor(format, kEndings, "png");
}

EncodedFrame::EncodedFrame(const Frame& frame, FileFormat format, const std::string& cameraId) {
    if (format == FileFormat::Raw) {
        data_ = frame.image.data;
        size_ = frame.BytesPresent();
        description_ = DescribeRawFile(frame, cameraId);
    } else {
        bytes_ = EncodePicture(frame, format);
        data_ = bytes_.data();
        size_ = bytes_.size();
    }
}

}  // namespace ZelTool
