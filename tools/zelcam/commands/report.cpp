// zelcam report: everything about a camera that somebody needs to help its user.

#include <algorithm>
#include <array>
#include <ctime>
#include <functional>
#include <iomanip>
#include <iostream>
#include <sstream>
#include <sys/utsname.h>

#include <GenApi/GenApi.h>

#include "tools/zelcam/camera/camerachoice.h"
#include "tools/zelcam/camera/listing.h"
#include "tools/zelcam/camera/reachability.h"
#include "tools/zelcam/camera/words.h"
#include "tools/zelcam/commands/commands.h"
#include "tools/zelcam/commands/masking.h"
#include "tools/zelcam/commands/reportwriter.h"
#include "tools/zelcam/console/interrupt.h"
#include "tools/zelcam/console/jsontext.h"
#include "tools/zelcam/console/outputfile.h"
#include "tools/zelcam/console/printable.h"
#include "tools/zelcam/console/progress.h"
#include "tools/zelcam/features/featurelisting.h"
#include "tools/zelcam/features/featurereading.h"
#include "tools/zelcam/frames/grabloop.h"

namespace ZelTool {

namespace {

struct ReportOptions : CameraOptions {
    std::string output;
    bool mask = false;
    GrabLimits limits = {10, 2000};
};

constexpr std::array kModules = {Module::Camera, Module::Local, Module::Interface, Module::Stream};
const FeatureFilter kEverything = {"", ZelGenParam::Visibility::Invisible, false};

std::string VersionText(const GenICam::Version_t& version) {
    return std::to_string(version.Major) + "." + std::to_string(version.Minor) + "." +
           std::to_string(version.SubMinor);
}

// Fills the sections one by one. A failure is reported in its section and does not affect the
// others.
class Report {
  public:
    Report(const ReportOptions& options, const Session& session, const Camera& camera)
        : options_(options), session_(session), camera_(camera), mask_(options.mask) {
        for (const Camera& other : session.Cameras()) {
            AddSecret(other.serial);
            AddSecret(other.userName);
        }
        whyNotOpened_ = FailureOf([this] { opened_.emplace(camera_, options_.access); });
        if (options_.mask && opened_) CollectSecrets();
        FillSections();
    }

    ExitCode Result() const { return writer_.Result(); }

    std::string Text() const {
        return options_.json ? JsonText(writer_.AsJson(mask_)) + "\n" : writer_.AsText(mask_);
    }

  private:
    void Section(const std::string& title, const std::string& key,
                 const std::function<void()>& body) {
        writer_.Begin(title, key);
        if (const auto failure = FailureOf(body)) {
            writer_.Problem(failure->Code(), failure->what());
        }
    }

    void Line(const std::string& label, const Json& value) { writer_.Line(label, value); }

    // Adds the value as JSON has it, and as the text has it.
    void AddSecret(const std::string& value) {
        mask_.AddSecret(value);
        mask_.AddSecret(Printable(value));
    }

    // A line whose value is always masked, however short, here and elsewhere.
    void SecretLine(const std::string& label, const std::string& value) {
        AddSecret(value);
        Line(label, options_.mask && !value.empty() ? "***" : value);
    }

    // For tables, which must mask their cells before they compute the widths of columns.
    TextFilter Masking() const {
        return [this](const std::string& text) { return mask_.Apply(text); };
    }

    void CollectSecrets();
    void FillSections();
    void Program();
    void CameraInfo();
    void Network();
    void Open();
    void Features(Module module);
    void DescriptionOf(ZelGenParam::Array& features);
    void CollectSecretsOf(ZelGenParam::Array& features);
    void Frames();
    void Counters(ZelCam::Stream& stream);

    const ReportOptions& options_;
    const Session& session_;
    const Camera& camera_;
    std::optional<OpenedCamera> opened_;
    std::optional<Failure> whyNotOpened_;
    Mask mask_;
    ReportWriter writer_;
};

// Collects from all modules before anything is written: one module may show a secret of another.
void Report::CollectSecrets() {
    for (Module module : kModules) {
        // The section with these features will report a failure.
        FailureOf([&] { CollectSecretsOf(opened_->Features(module)); });
    }
}

void Report::FillSections() {
    Section("Program", "program", [this] { Program(); });
    Section("Producers, interfaces, cameras", "system", [this] {
        PrintSession(writer_.Text(), session_, 0, Masking());
        writer_.Section() = SessionAsJson(session_);
    });
    Section("Camera", "camera", [this] { CameraInfo(); });
    if (camera_.interfaceType == ZelCam::InterfaceType::GEV) {
        Section("Network", "network", [this] { Network(); });
    }
    Section("Opened", "opened", [this] { Open(); });
    if (!opened_) return;
    for (Module module : kModules) {
        const std::string words = ModuleWords(module);
        Section("Features of the " + words, words + " features", [=] { Features(module); });
    }
    Section("Frames", "frames", [this] { Frames(); });
}

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
    Line("Access", AccessWords(camera_.accessStatus));
    Line("Access reason", AccessReasonOf(camera_));
    Line("USB host", TextOrEmpty(info.GetUSB3HostInfo()));
    Line("External XML", TextOrEmpty(info.GetExternalXml()));
    Line("Interface", camera_.interfaceId);
    Line("Link type", InterfaceTypeWords(camera_.interfaceType));
    Line("Link version", TextOrEmpty(info.GetInterface()->GetVersion()));
}

void Report::Network() {
    const ZelTool::Network network = NetworkOf(*camera_.info);
    SecretLine("Address", network.address);
    SecretLine("Mask", network.mask);
    SecretLine("Gateway", network.gateway);
}

void Report::Open() {
    if (whyNotOpened_) throw Failure(*whyNotOpened_);
    Line("Streams", opened_->Device().GetNumStreams());
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
    Line("Identity",
         std::string(info->GetProductGuid().c_str()) + " " + info->GetVersionGuid().c_str());
    Line("Schema", VersionText(schema) + " " + info->GetStandardNameSpace().c_str());
    Line("GenApi", VersionText(engine));
    writer_.Text() << '\n';
}

// Names may contain a hardware address without colons.
void Report::CollectSecretsOf(ZelGenParam::Array& features) {
    VisitFeatures(features, kEverything, [this](ZelGenParam::Param& feature, const auto&) {
        if (!IsSecretFeature(feature.GetName())) return;
        std::string value = ReadOrEmpty(feature);
        AddSecret(value);
        if (std::count(value.begin(), value.end(), ':') != 5) return;
        value.erase(std::remove(value.begin(), value.end(), ':'), value.end());
        AddSecret(value);
    });
}

void Report::Features(Module module) {
    ZelGenParam::Array& features = opened_->Features(module);
    DescriptionOf(features);
    const FeatureHiding hides = [this](const std::string& name, const std::string& value) {
        return options_.mask && (IsSecretFeature(name) || mask_.Apply(value) != value);
    };
    const FeatureListing listing =
        options_.json
            ? ListFeatures(writer_.Section()["features"], features, kEverything, hides)
            : PrintFeatures(writer_.Text(), features, kEverything, {0, false, hides, Masking()});
    if (!listing.failures.empty()) writer_.Problem(ExitCode::FeatureFailed, listing.Problem());
}

void Report::Counters(ZelCam::Stream& stream) {
    writer_.Text() << '\n';
    Line("Delivered", stream.GetNumDelivered());
    Line("Under-run", stream.GetNumUnderrun());
    Line("Buffer size", stream.GetBufferSize());
    Line("Least buffers", stream.GetMinNumBuffers());
    Line("Alignment", stream.GetBufferAlignment());
}

void Report::Frames() {
    GrabReport grabbed;
    grabbed.camera = camera_;
    constexpr size_t kBuffers = 8;
    GrabProgress progress(options_.limits.count);
    const auto count = [&](const Frame&, uint64_t) {
        progress.Add();
        return true;
    };
    GrabFrames(*opened_, kBuffers, options_.limits, nullptr, count, grabbed);
    if (options_.json) {
        writer_.Section() = grabbed.AsJson();
    } else {
        grabbed.PrintText(writer_.Text(), writer_.Text());
    }
    if (grabbed.exitCode != ExitCode::Ok) writer_.Problem(grabbed.exitCode, grabbed.error);
    Counters(opened_->Stream());
}

ExitCode RunReport(const ReportOptions& options) {
    const Session session(options);
    const Camera& camera = SelectCamera(session, options.camera);
    const Report report(options, session, camera);
    if (options.output.empty() || options.output == kStandardStream) {
        std::cout << report.Text();
    } else {
        WriteFile(options.output, report.Text());
    }
    return Interrupted() ? ExitCode::Interrupted : report.Result();
}

}  // namespace

void AddReportCommand(Command app, Invocation& invocation) {
    auto [command, options] = AddCommand(
        app, invocation, "report", "Write a report with everything about a camera", RunReport);
    AddCameraArgument(command, options.camera, false);
    command.AddOption("-o,--output", "FILE", options.output,
                      "Write to this file; -: standard output");
    command.AddFlag("--mask", options.mask,
                    "Replace addresses, serial numbers and user names by ***");
    AddSampleOptions(command, options.limits.count, options.limits.timeoutMs, "for the statistics");
    AddAccessOption(command, options.access, kAccessNames);
    AddSessionOptions(command, options);
    command.Footer(
        "Examples:\n"
        "  zelcam report 1 -o report.txt\n"
        "  zelcam report 1 --mask -o report.txt   to show to others\n\n"
        "!! marks what could not be found out; in JSON it is listed as \"problems\". The rest of "
        "the report is complete. The first problem decides the exit code.");
}

}  // namespace ZelTool
