// zelcam firmware: uploads firmware to a camera.

#include <cstdio>
#include <filesystem>
#include <iostream>
#include <optional>
#include <poll.h>
#include <unistd.h>

#include "tools/zelcam/camera/registervalue.h"
#include "tools/zelcam/camera/words.h"
#include "tools/zelcam/commands/commands.h"
#include "tools/zelcam/console/interrupt.h"
#include "tools/zelcam/console/jsontext.h"
#include "tools/zelcam/console/printable.h"
#include "tools/zelcam/features/featurereading.h"

namespace ZelTool {

namespace {

namespace fs = std::filesystem;
using ZelCam::Device;

struct FirmwareOptions : CameraOptions {
    std::string file;
    bool yes = false;
    bool erase = false;
};

// Checks only that the file can be read: the library checks the image.
uint64_t SizeOf(const std::string& file) {
    std::error_code error;
    const bool isFile = fs::is_regular_file(file, error);
    const uint64_t size = isFile ? fs::file_size(file, error) : 0;
    if (isFile && !error) return size;
    throw Failure(ExitCode::FileFailed, "the file " + file + " cannot be read: " +
                                            (error ? error.message() : "it is not a regular file"));
}

// Read from the camera. Nothing when the camera has no version, or does not answer.
std::optional<std::string> VersionOf(Device& device) {
    ZelGenParam::Array* const features = device.GetCameraParameters(nullptr);
    if (features == nullptr) return std::nullopt;
    ZelGenParam::Param* const version = features->GetParam("DeviceFirmwareVersion", nullptr);
    if (version == nullptr) return std::nullopt;
    const std::string text = ReadOrEmpty(*version, true);
    return text.empty() ? std::nullopt : std::optional(text);
}

std::string VersionWords(const std::optional<std::string>& version) {
    return version ? "\"" + Printable(*version) + "\"" : "unknown";
}

// Reads a line from the terminal. Throws Failure (Interrupted) at Ctrl-C.
std::string Answer() {
    pollfd input{STDIN_FILENO, POLLIN, 0};
    while (poll(&input, 1, static_cast<int>(kSliceMs)) <= 0)
        if (Interrupted()) throw Failure(ExitCode::Interrupted, "nothing was done");
    std::string line;
    std::getline(std::cin, line);
    return line;
}

void Confirm(const Camera& camera, const FirmwareOptions& options, uint64_t size,
             const std::optional<std::string>& version) {
    std::cerr << "Camera   " << camera.Description() << "\nVersion  " << VersionWords(version)
              << "\nFile     " << options.file << ", " << size
              << " bytes\n\nThe upload erases the camera's flash"
              << (size == 0 ? ", and nothing is written into it"
                            : " before it writes the file into it")
              << ". A camera without its firmware may not start again.\nGo on? [y/N] ";
    const std::string answer = Answer();
    if (answer != "y" && answer != "yes") throw Failure(ExitCode::Usage, "nothing was done");
}

// Runs an upload and shows its progress.
class Upload {
  public:
    ZelCamErr Run(Device& device, const std::string& file) {
        const ZelCamErr code = device.UploadFirmware(
            file.c_str(),
            [](Device::UploadEventType type, Device::UploadEventData data, void* upload) {
                static_cast<Upload*>(upload)->Note(type, data);
            },
            this);
        if (shown_) std::fputs("\r\x1b[K", stderr);
        return code;
    }

    uint64_t Erased() const { return erased_; }
    uint64_t Last() const { return last_; }

  private:
    void Note(Device::UploadEventType type, const Device::UploadEventData& data) {
        if (type == Device::UploadEvent_SectorErased) ++erased_;
        last_ = data.currentAddress;
        if (shown_) {
            std::fprintf(stderr, "\r\x1b[K%s at %s",
                         type == Device::UploadEvent_SectorErased ? "erased" : "written",
                         AddressText(last_).c_str());
        }
        if (!Interrupted() || warned_) return;
        warned_ = true;
        std::cerr << "\nzelcam: warning: the upload goes on to its end, which takes some seconds: "
                     "a camera with half\na firmware may not start again. Ctrl-C again ends the "
                     "program anyway\n";
    }

    const bool shown_ = isatty(STDERR_FILENO) != 0;
    bool warned_ = false;
    uint64_t erased_ = 0;  // sectors
    uint64_t last_ = 0;    // address
};

[[noreturn]] void FailUpload(const FirmwareOptions& options, const Upload& upload, ZelCamErr code) {
    if (code == ZelCamErr_InvalidFile || code == ZelCamErr_FileOpenFailed) {
        throw Failure(ExitCode::FileFailed,
                      options.file +
                          " was refused, and the camera is unchanged: " + ErrorWords(code) +
                          ". So far, only an empty file is accepted, which erases the flash");
    }
    const std::string what = "the upload failed: " + ErrorWords(code) + "; ";
    if (upload.Erased() == 0)
        throw Failure(ExitCode::FeatureFailed, what + "no sector was reported as erased");
    throw Failure(ExitCode::FeatureFailed,
                  what + "it ended at the flash address " + AddressText(upload.Last()) +
                      ", and everything before it is erased. Upload again before the camera is "
                      "switched off");
}

void PrintResult(const FirmwareOptions& options, const std::string& cameraId, const Upload& upload,
                 const std::optional<std::string>& before,
                 const std::optional<std::string>& after) {
    const auto json = [](const std::optional<std::string>& version) {
        return version ? Json(*version) : Json();
    };
    if (options.json) {
        PrintJson({{"camera", cameraId},
                   {"file", options.file},
                   {"sectorsErased", upload.Erased()},
                   {"versionBefore", json(before)},
                   {"versionAfter", json(after)}});
        return;
    }
    std::cout << "Erased   " << upload.Erased() << " sectors of the flash, to "
              << AddressText(upload.Last()) << "\nVersion  " << VersionWords(before) << " before, "
              << VersionWords(after)
              << " after; a new version may show only after DeviceReset\n"
                 "The flash cannot be read back: only the camera's answers were checked.\n";
}

ExitCode RunFirmware(const FirmwareOptions& options) {
    const uint64_t size = SizeOf(options.file);
    if (size == 0 && !options.erase) {
        throw Failure(ExitCode::Usage,
                      options.file +
                          " is empty: uploading it erases the camera's whole flash and "
                          "writes nothing; --erase allows that");
    }
    if (!options.yes && isatty(STDIN_FILENO) == 0) {
        throw Failure(ExitCode::Usage,
                      "there is no terminal to ask for confirmation: --yes uploads without asking");
    }
    FeatureSession session(options);
    const Camera& camera = session.Camera().Info();
    Device& device = session.Camera().Device();
    const std::optional<std::string> before = VersionOf(device);
    if (!options.yes) Confirm(camera, options, size, before);
    if (Interrupted()) throw Failure(ExitCode::Interrupted, "nothing was done");
    Upload upload;
    const ZelCamErr code = upload.Run(device, options.file);
    if (code != ZelCamErr_Success) FailUpload(options, upload, code);
    PrintResult(options, camera.id, upload, before, VersionOf(device));
    return ExitCode::Ok;
}

}  // namespace

void AddFirmwareCommand(Command app, Invocation& invocation) {
    auto [command, options] =
        AddCommand(app, invocation, "firmware", "Upload a firmware image to a camera", RunFirmware);
    options.access = "exclusive";
    AddCameraArgument(command, options.camera, true);
    command.AddOption("file", "FILE", options.file, "The image").Required();
    command.AddFlag("-y,--yes", options.yes, "Do not ask; required without a terminal");
    command.AddFlag("--erase", options.erase,
                    "Accept an empty FILE: erase the flash and write nothing");
    AddAccessOption(command, options.access, {"control", "exclusive"});
    AddSessionOptions(command, options);
    command.Footer(
        "Example:\n"
        "  zelcam firmware 4711 empty.rpd --erase\n\n"
        "The upload erases the camera's flash. The camera is unusable until it has firmware again. "
        "So far, the command refuses every image that is not empty, and leaves the camera alone. "
        "The "
        "first Ctrl-C does not end an upload, the second one does. Repeat a failed upload before "
        "you switch the camera off.");
}

}  // namespace ZelTool
