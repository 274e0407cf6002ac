// zelcam report: all that somebody who is to help needs to know.

#include <algorithm>
#include <ctime>
#include <iomanip>
#include <iostream>
#include <sstream>
#include <sys/utsname.h>

#include <GenApi/GenApi.h>

#include "tools/zelcam/camerachoice.h"
#include "tools/zelcam/commands.h"
#include "tools/zelcam/featurelisting.h"
#include "tools/zelcam/featurevalue.h"
#include "tools/zelcam/grabloop.h"
#include "tools/zelcam/interrupt.h"
#include "tools/zelcam/listing.h"
#include "tools/zelcam/masking.h"
#include "tools/zelcam/outputfile.h"
#include "tools/zelcam/printable.h"
#include "tools/zelcam/progress.h"
#include "tools/zelcam/words.h"

namespace {

struct ReportOptions {
    FeatureOptions camera;
    std::string output;
    bool mask = false;
    GrabLimits limits = {10, 2000};
};

const FeatureFilter everything = {"", ZelGenParam::Visibility::Invisible, false};

std::string VersionText(const GenICam::Version_t& version) {
    return std::to_string(version.Major) + "." + std::to_string(version.Minor) + "." +
           std::to_string(version.SubMinor);
}

// Writes the sections one by one. What fails in one is told there and leaves the rest alone.
class Report {
  public:
    Report(const ReportOptions& options, const Session& session, const Camera& camera)
        : options_(options), session_(session), camera_(camera) {
        for (const Camera& other : session.Cameras()) {
            mask_.AddSecret(Printable(other.serial));
            mask_.AddSecret(Printable(other.userName));
        }
    }

    std::string Write() {
        Section("Program", [this] { Program(); });
        Section("Producers, interfaces, cameras", [this] { PrintSession(out_, session_); });
        Section("Camera", [this] { CameraInfo(); });
        if (camera_.interfaceType == ZelCam::InterfaceType::GEV) {
            Section("Network", [this] { Network(); });
        }
        Section("Opened", [this] { Open(); });
        if (opened_) {
            for (Module module : {Module::Camera, Module::Local, Module::Interface, Module::Stream})
                Section("Features of the " + ModuleWords(module), [=] { Features(module); });
            Section("Frames", [this] { Frames(); });
        }
        const std::string text = PrintableLines(out_.str());
        return options_.mask ? mask_.Apply(text) : text;
    }

  private:
    template <typename Body>
    void Section(const std::string& title, Body body) {
        out_ << "\n=== " << title << "\n\n";
        try {
            body();
        } catch (const GenICam::GenericException& error) {
            out_ << "!! " << error.GetDescription() << '\n';
        } catch (const std::exception& error) {
            out_ << "!! " << error.what() << '\n';
        }
    }

    void Line(const std::string& name, const std::string& value) {
        out_ << std::left << std::setw(14) << name << (value.empty() ? "-" : Printable(value))
             << '\n';
    }

    // A value that is masked where it stands, however short, and elsewhere.
    void SecretLine(const std::string& name, const std::string& value) {
        mask_.AddSecret(Printable(value));
        Line(name, options_.mask && !value.empty() ? "***" : value);
    }

    void Program();
    void CameraInfo();
    void Network();
    void Open();
    void Features(Module module);
    void DescriptionOf(ZelGenParam::Array& features);
    void CollectSecrets(ZelGenParam::Array& features);
    void Frames();
    void Counters(ZelCam::Stream& stream);

    const ReportOptions& options_;
    const Session& session_;
    const Camera& camera_;
    std::optional<OpenedCamera> opened_;
    Mask mask_;
    std::ostringstream out_;
};

void Report::Program() {
    const std::time_t now = std::time(nullptr);
    std::tm utc{};
    gmtime_r(&now, &utc);
    std::ostringstream time;
    time << std::put_time(&utc, "%Y-%m-%d %H:%M:%S UTC");
    utsname machine{};
    uname(&machine);
    Line("zelcam", ZELCAM_VERSION);
    Line("Time", time.str());
    Line("Machine", std::string(machine.sysname) + " " + machine.release + " " + machine.machine);
    Line("Producer", session_.DefaultProducerName());
}

void Report::CameraInfo() {
    ZelCam::DeviceInfo& info = *camera_.info;
    SecretLine("Serial number", camera_.serial);
    SecretLine("User name", camera_.userName);
    Line("Identifier", camera_.id);
    Line("Vendor", camera_.vendor);
    Line("Model", camera_.model);
    Line("Display name", TextOrEmpty(info.GetDisplayName()));
    Line("Version", camera_.version);
    Line("Access", AccessWords(info.GetAccessStatus()));
    Line("USB host", TextOrEmpty(info.GetUSB3HostInfo()));
    Line("External XML", TextOrEmpty(info.GetExternalXml()));
    Line("Interface", camera_.interfaceId);
    Line("Its type", InterfaceTypeWords(camera_.interfaceType));
    Line("Its version", TextOrEmpty(info.GetInterface()->GetVersion()));
}

void Report::Network() {
    ZelCam::DeviceInfo& info = *camera_.info;
    ZelCamErr code = ZelCamErr_Success;
    SecretLine("Address", TextOrEmpty(info.GetIPAddress(&code)));
    SecretLine("Mask", TextOrEmpty(info.GetIPMask(&code)));
    SecretLine("Gateway", TextOrEmpty(info.GetIPGateway(&code)));
    if (code != ZelCamErr_Success) {
        out_ << "!! the interface does not tell: " << ErrorWords(code) << '\n';
    }
}

void Report::Open() {
    opened_.emplace(camera_, options_.camera.access);
    Line("Streams", std::to_string(opened_->Device().GetNumStreams()));
    Line("Byte order", opened_->Device().GetEndianness() == 1 ? "little-endian" : "big-endian");
}

void Report::DescriptionOf(ZelGenParam::Array& features) {
    auto* info = dynamic_cast<GenApi::IDeviceInfo*>(features.GetNodeMap(nullptr));
    if (info == nullptr) return;
    GenICam::Version_t schema{};
    GenICam::Version_t description{};
    GenICam::Version_t engine{};
    uint16_t build = 0;
    info->GetSchemaVersion(schema);
    info->GetDeviceVersion(description);
    info->GetGenApiVersion(engine, build);
    Line("Description", std::string(info->GetVendorName().c_str()) + " " +
                            info->GetModelName().c_str() + " " + VersionText(description));
    Line("Its identity",
         std::string(info->GetProductGuid().c_str()) + " " + info->GetVersionGuid().c_str());
    Line("Schema", VersionText(schema) + " " + info->GetStandardNameSpace().c_str());
    Line("GenApi", VersionText(engine));
    out_ << '\n';
}

// An address of hardware may be in names without the signs between its digits.
void Report::CollectSecrets(ZelGenParam::Array& features) {
    VisitFeatures(features, everything, [this](ZelGenParam::Param& feature, const auto&) {
        if (!IsSecretFeature(feature.GetName())) return;
        std::string value = ReadFeature(feature).value_or("");
        mask_.AddSecret(Printable(value));
        if (std::count(value.begin(), value.end(), ':') != 5) return;
        value.erase(std::remove(value.begin(), value.end(), ':'), value.end());
        mask_.AddSecret(Printable(value));
    });
}

void Report::Features(Module module) {
    ZelGenParam::Array& features = opened_->Features(module);
    DescriptionOf(features);
    CollectSecrets(features);
    PrintFeatures(out_, features, everything, options_.mask ? IsSecretFeature : nullptr);
}

void Report::Counters(ZelCam::Stream& stream) {
    out_ << '\n';
    Line("Delivered", std::to_string(stream.GetNumDelivered()));
    Line("Under-run", std::to_string(stream.GetNumUnderrun()));
    Line("Buffer size", std::to_string(stream.GetBufferSize()));
    Line("Least buffers", std::to_string(stream.GetMinNumBuffers()));
    Line("Alignment", std::to_string(stream.GetBufferAlignment()));
}

void Report::Frames() {
    GrabReport grabbed;
    grabbed.camera = camera_;
    constexpr size_t buffers = 8;
    GrabProgress progress(options_.limits.count);
    const auto count = [&](const Frame&, uint64_t) {
        progress.Add();
        return true;
    };
    GrabFrames(*opened_, buffers, options_.limits, nullptr, count, grabbed);
    grabbed.PrintText(out_, out_);
    Counters(opened_->Stream());
}

ExitCode RunReport(const ReportOptions& options) {
    const Session session(options.camera.session);
    const Camera& camera = SelectCamera(session, options.camera.camera);
    const std::string text = Report(options, session, camera).Write();
    if (options.output.empty() || options.output == "-") {
        std::cout << text;
    } else {
        WriteFile(options.output, text);
    }
    return Interrupted() ? ExitCode::Interrupted : ExitCode::Ok;
}

}  // namespace

void AddReportCommand(Command app, Invocation& invocation) {
    auto options = std::make_shared<ReportOptions>();
    Command command =
        app.AddCommand("report", "Write all there is to know about a camera to a text");
    AddCameraArgument(command, options->camera.camera, false);
    command
        .AddOption("-o,--output", options->output, "Write it to this file; -: to standard output")
        .TypeName("FILE");
    command.AddFlag("--mask", options->mask,
                    "Replace addresses, serial numbers and user names by ***");
    command.AddOption("-n,--count", options->limits.count, "Frames to grab for its statistics")
        .TypeName("N")
        .Range(1, 100000)
        .ShowDefault();
    AddTimeoutOption(command, options->limits.timeoutMs);
    AddAccessOption(command, options->camera.access, accessNames);
    AddProducerOptions(command, options->camera.session);
    command.Footer(
        "Examples:\n"
        "  zelcam report 1 -o report.txt\n"
        "  zelcam report 1 --mask -o report.txt   to show to others\n\n"
        "What cannot be found out is marked with !! and leaves the rest alone.");
    Connect(command, invocation, options, RunReport);
}
