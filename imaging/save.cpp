// Picture files.
#include <cctype>
#include <cerrno>
#include <cstring>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "imaging/encode.h"
#include "imaging/error.h"
#include "imaging/options.h"
#include "imaging/picture.h"
#include "imaging/shape.h"
#include "utils/replacefile.h"

namespace ZelImage {

using namespace Internal;  // what this file is made of

namespace {

using Bytes = std::vector<uint8_t>;

SaveOptions KnownSaveOptions(const SaveOptions* given) {
    const auto options = WithDefaults(given);
    if (options.jpegQuality < 1 || options.jpegQuality > 100)
        throw Error("the quality of JPEG is from 1 to 100");
    return options;
}

// What a file of the type holds of the image.
PictureForm FormFor(const Image& image, FileType type) {
    PictureForm form{};
    form.channels = image.format.PictureChannels() == 1 ? 1 : 3;
    form.depth = type == FileType::Jpeg ? 8 : image.format.PictureDepth();
    return form;
}

Bytes EncodePicture(const Image& image, FileType type, const SaveOptions& options) {
    const ConvertOptions how = KnownOptions(options.convert);
    RequirePicture(image);
    const PictureForm form = FormFor(image, type);
    Picture picture{image.width, image.height, form.channels, form.depth, nullptr};
    Bytes samples(picture.LineBytes() * image.height);
    ConvertToPicture(image, form, how, samples.data(), picture.LineBytes());
    picture.samples = samples.data();
    if (type == FileType::Tiff) return EncodeTiff(picture);
    return type == FileType::Jpeg ? EncodeJpeg(picture, static_cast<int>(options.jpegQuality))
                                  : EncodePng(picture);
}

// Calls `take` with the bytes of the file.
template <typename Take>
void EncodeFile(const View& from, FileType type, const SaveOptions* options, const Take& take) {
    if (type < FileType::Png || type > FileType::Raw) throw Error("there is no such type of file");
    const Image image = ImageOf(from);
    const SaveOptions known = KnownSaveOptions(options);
    if (type == FileType::Raw) return take(image.data, image.shape.bytes);
    const Bytes bytes = EncodePicture(image, type, known);
    take(bytes.data(), bytes.size());
}

FileType TypeOf(const char* fileName) {
    constexpr std::pair<std::string_view, FileType> kEndings[] = {
        {"png", FileType::Png},  {"tif", FileType::Tiff},  {"tiff", FileType::Tiff},
        {"jpg", FileType::Jpeg}, {"jpeg", FileType::Jpeg}, {"raw", FileType::Raw},
    };
    const std::string name = fileName == nullptr ? "" : fileName;
    const size_t dot = name.find_last_of("./");
    std::string ending = dot == std::string::npos || name[dot] == '/' ? "" : name.substr(dot + 1);
    for (char& c : ending)
        c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    for (const auto& [known, type] : kEndings)
        if (ending == known) return type;
    throw Error("the file \"" + name +
                "\" does not end with .png, .tif, .tiff, .jpg, .jpeg or .raw");
}

void WriteFile(const char* fileName, const uint8_t* bytes, size_t size) {
    if (ZelUtil::ReplaceFile(fileName, {reinterpret_cast<const char*>(bytes), size})) return;
    const int reason = errno;
    throw Error("the file " + std::string(fileName) + " cannot be written" +
                    (reason == 0 ? "" : std::string(": ") + std::strerror(reason)),
                ZelCamErr_FileOpenFailed);
}

}  // namespace

ZelCamErr FileTypeOf(const char* fileName, FileType* type) {
    return Guarded([&] {
        const FileType found = TypeOf(fileName);
        if (type != nullptr) *type = found;
    });
}

ZelCamErr Encode(const View& from, FileType type, const SaveOptions* options, WriteFunction write,
                 void* context) {
    return Guarded([&] {
        if (write == nullptr) throw Error("there is no function that writes");
        EncodeFile(from, type, options, [&](const uint8_t* bytes, size_t size) {
            if (!write(context, bytes, size))
                throw Error("the file cannot be written", ZelCamErr_FileOpenFailed);
        });
    });
}

ZelCamErr Save(const View& from, const char* fileName, const SaveOptions* options) {
    return Guarded([&] {
        EncodeFile(from, TypeOf(fileName), options,
                   [&](const uint8_t* bytes, size_t size) { WriteFile(fileName, bytes, size); });
    });
}

}  // namespace ZelImage
