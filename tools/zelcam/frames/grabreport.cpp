#include "tools/zelcam/frames/grabreport.h"

#include <iomanip>
#include <ostream>

#include "tools/zelcam/camera/listing.h"
#include "tools/zelcam/console/outputfile.h"
#include "tools/zelcam/console/printable.h"

namespace ZelTool {

namespace {

// Prints a line of the summary, with an explanation if the count is not 0.
void PrintCount(std::ostream& out, const char* name, uint64_t count, const char* explanation) {
    out << name << count << (count == 0 ? "" : explanation) << '\n';
}

Json ChecksAsJson(const std::vector<Check>& checks) {
    Json result = Json::array();
    for (const Check& check : checks) {
        result.push_back({{"good", check.good},
                          {"finding", check.finding},
                          {"advice", check.good ? "" : check.advice}});
    }
    return result;
}

}  // namespace

void GrabReport::NoteFrame(const Frame& frame) {
    if (!geometry.empty()) return;
    geometry = std::to_string(frame.image.width) + " x " + std::to_string(frame.image.height) +
               " " + PixelFormatName(frame.image.pixelFormat);
}

void GrabReport::NoteFailure(const std::optional<Failure>& failure) {
    if (!failure) return;
    if (exitCode == ExitCode::Ok) exitCode = failure->Code();
    error += (error.empty() ? "" : "; ") + std::string(failure->what());
}

void GrabReport::PrintText(std::ostream& out, std::ostream& err) const {
    PrintSummary(out);
    out.flush();
    if (!error.empty()) PrintError(err);
}

void GrabReport::PrintSummary(std::ostream& out) const {
    out << "Camera      " << camera.Description() << '\n';
    for (const TakenSetting& setting : settings)
        out << "Set         " << Printable(setting.words) << '\n';
    if (!geometry.empty()) out << "Image       " << geometry << '\n';
    out << "Frames      " << statistics.Frames();
    if (statistics.Frames() > 1) {
        out << " in " << std::fixed << std::setprecision(2) << statistics.Seconds() << " s, "
            << std::setprecision(1) << statistics.FramesPerSecond() << " per second";
    }
    out << (interrupted ? ", ended with Ctrl-C\n" : "\n");
    PrintCount(out, "Incomplete  ", statistics.Incomplete(),
               "  (parts were lost on the way; `zelcam doctor` says where)");
    PrintCount(out, "Under-run   ", underruns,
               "  (no buffer was free; use more --buffers or write less)");
    PrintCount(out, "Lost        ", statistics.Lost(), "  (gaps in the camera's frame numbers)");
    if (triggers) out << "Triggers    " << *triggers << '\n';
    if (files.waits > 0) {
        PrintCount(out, "Queue full  ", files.waits,
                   " times  (writing is slower than the camera; --format tiff or raw is faster)");
    }
    if (files.count == 0) return;
    if (files.first == kStandardStream) {
        out << "Written     to standard output\n";
        return;
    }
    out << "Written     " << files.first;
    if (files.count > 1) out << (files.count > 2 ? " ... " : ", ") << files.last;
    out << '\n';
}

void GrabReport::PrintError(std::ostream& err) const {
    err << "zelcam: " << PrintableLines(error) << '\n';
    if (!checks.empty()) err << "Checks:\n";
    for (const Check& check : checks)
        err << (check.good ? "  ok  " : "  !!  ") << Printable(check.finding) << '\n';
    if (!otherCauses.empty()) err << "Other possible causes:\n";
    for (const std::string& cause : otherCauses)
        err << "  - " << cause << '\n';
    if (!nextStep.empty()) err << "Next: " << Printable(nextStep) << '\n';
}

Json GrabReport::AsJson() const {
    Json result = {{"camera", camera.id}, {"serial", camera.serial}};
    result.update(OriginAsJson(camera));
    for (const TakenSetting& setting : settings)
        result["set"].push_back(setting.json);
    result.update({{"image", geometry},
                   {"frames", statistics.Frames()},
                   {"seconds", statistics.Seconds()},
                   {"framesPerSecond", statistics.FramesPerSecond()},
                   {"incomplete", statistics.Incomplete()},
                   {"underruns", underruns},
                   {"lost", statistics.Lost()},
                   {"interrupted", interrupted},
                   {"written", files.count},
                   {"queueFull", files.waits},
                   {"firstFile", files.first},
                   {"lastFile", files.last},
                   {"exitCode", static_cast<int>(exitCode)},
                   {"error", error}});
    if (!checks.empty()) {
        result["checks"] = ChecksAsJson(checks);
        result["otherCauses"] = otherCauses;
    }
    if (!nextStep.empty()) result["nextStep"] = nextStep;
    if (triggers) result["triggers"] = *triggers;
    return result;
}

}  // namespace ZelTool
