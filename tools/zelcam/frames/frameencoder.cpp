#include "tools/zelcam/frames/frameencoder.h"

#include <cctype>
#include <new>
#include <sstream>

#include "tools/zelcam/console/failure.h"
#include "tools/zelcam/console/printable.h"
#include "tools/zelcam/console/wordtable.h"

namespace ZelTool {

namespace {

constexpr Word<ZelImage::Packing> kPackings[] = {
    {ZelImage::Packing::LsbFirst, "bits without gaps, least significant first"},
    {ZelImage::Packing::GigEVision, "two components in three bytes (GigE Vision Packed)"},
    {ZelImage::Packing::PixelWord, "one word per pixel, first component in its lowest bits"},
    {ZelImage::Packing::Unknown, "not known"},
};

// Of components that are not packed, by their bytes.
constexpr Word<uint32_t> kUnpacked[] = {
    {1, "one byte per component"},
    {2, "two bytes per component, little-endian"},
    {4, "four bytes per component, little-endian"},
    {8, "eight bytes per component, little-endian"},
};

const char* WordsForPacking(const ZelImage::FormatInfo& format) {
    return format.packing == ZelImage::Packing::Unpacked
               ? WordsFor(format.componentBytes, kUnpacked, "")
               : WordsFor(format.packing, kPackings, "");
}

std::string DescribeRawFile(const Frame& frame, const std::string& cameraId) {
    const ZelImage::View& image = frame.image;
    std::ostringstream text;
    text << "camera: " << Printable(cameraId)
         << "\npixel format: " << PixelFormatName(image.pixelFormat)
         << "\npixel format number: " << PixelFormatNumber(image.pixelFormat)
         << "\nwidth: " << image.width << "\nheight: " << image.height
         << "\nbits per pixel: " << (image.pixelFormat >> 16 & 0xFF);
    ZelImage::FormatInfo format{};
    if (ZelImage::DescribeFormat(image.pixelFormat, &format, sizeof format)) {
        text << "\nbits per component: " << format.significantBits
             << "\npacking: " << WordsForPacking(format);
    }
    text << "\nbytes per line: "
         << ZelImage::LineBytes(image.pixelFormat, image.width) + frame.linePadding
         << "\nline padding: " << frame.linePadding << "\nbytes: " << frame.BytesPresent()
         << "\nbytes of a whole image: " << ZelImage::ImageSize(image)
         << "\nx offset: " << frame.xOffset << "\ny offset: " << frame.yOffset
         << "\nframe: " << frame.frameId << "\ntimestamp: " << frame.timestamp
         << "\nincomplete: " << (frame.incomplete ? "yes" : "no") << '\n';
    return text.str();
}

ZelImage::FileType FileTypeFor(FileFormat format) {
    if (format == FileFormat::Tiff) return ZelImage::FileType::Tiff;
    return format == FileFormat::Jpeg ? ZelImage::FileType::Jpeg : ZelImage::FileType::Png;
}

bool Append(void* bytes, const void* data, size_t size) try {
    const auto* const first = static_cast<const uint8_t*>(data);
    auto& all = *static_cast<std::vector<uint8_t>*>(bytes);
    all.insert(all.end(), first, first + size);
    return true;
} catch (const std::bad_alloc&) {
    return false;
}

std::vector<uint8_t> EncodePicture(const Frame& frame, FileFormat format) {
    std::vector<uint8_t> bytes;
    const ZelCamErr error =
        ZelImage::Encode(frame.image, FileTypeFor(format), nullptr, Append, &bytes);
    if (error == ZelCamErr_Success) return bytes;
    throw Failure(ExitCode::FileFailed, std::string(ZelImage::LastReason()) +
                                            "; --format raw writes the bytes unchanged");
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
