#include "tools/zelcam/framelog.h"

#include <cstdio>
#include <ctime>

#include "tools/imaging/pixelformat.h"
#include "tools/zelcam/failure.h"
#include "tools/zelcam/printable.h"

namespace {

constexpr const char* headings =
    "camera,number,arrived,frame_id,timestamp,width,height,pixel_format,bytes,complete,file\n";

// In quotation marks where it needs them (RFC 4180); on one line in any case.
std::string Cell(const std::string& text) {
    std::string cell = Printable(text);
    if (cell.find_first_of(",\"") == std::string::npos) return cell;
    for (size_t at = 0; (at = cell.find('"', at)) != std::string::npos; at += 2)
        cell.insert(at, 1, '"');
    return '"' + cell + '"';
}

// "2026-03-01T12:00:00.123456Z".
std::string TimeText(std::chrono::system_clock::time_point when) {
    using namespace std::chrono;
    const std::time_t seconds = system_clock::to_time_t(floor<std::chrono::seconds>(when));
    const auto rest = duration_cast<microseconds>(when - floor<std::chrono::seconds>(when));
    std::tm utc{};
    gmtime_r(&seconds, &utc);
    char day[32];
    std::strftime(day, sizeof day, "%Y-%m-%dT%H:%M:%S", &utc);
    char text[48];
    std::snprintf(text, sizeof text, "%s.%06dZ", day, static_cast<int>(rest.count()));
    return text;
}

std::string LineOf(const LoggedFrame& frame, const std::string& file) {
    std::string line;
    for (const std::string& cell :
         {Cell(frame.camera), std::to_string(frame.number), TimeText(frame.arrived),
          std::to_string(frame.frameId), std::to_string(frame.timestamp),
          std::to_string(frame.width), std::to_string(frame.height),
          Imaging::PixelFormatName(frame.pixelFormat), std::to_string(frame.bytes),
          std::string(frame.incomplete ? "no" : "yes"), Cell(file)})
        line += cell + ',';
    line.back() = '\n';
    return line;
}

}  // namespace

LoggedFrame Logged(const std::string& cameraId, uint64_t number, const Frame& frame) {
    return {cameraId,
            number,
            std::chrono::system_clock::now(),
            frame.frameId,
            frame.timestamp,
            frame.image.width,
            frame.image.height,
            frame.image.pixelFormat,
            frame.BytesPresent(),
            frame.incomplete};
}

FrameLog::FrameLog(const std::string& file, Existing existing) : file_(file, existing) {
    const std::string text = headings;
    file_.Write(text.data(), text.size());
    file_.TakePlaceEarly();
}

uint64_t FrameLog::Reserve() {
    const std::lock_guard lock(mutex_);
    return reserved_++;
}

void FrameLog::Add(uint64_t place, const LoggedFrame& frame, const std::string& file) {
    const std::lock_guard lock(mutex_);
    lines_[place] = LineOf(frame, file);
    std::string text;
    for (auto line = lines_.begin(); line != lines_.end() && line->first == next_; ++next_) {
        text += line->second;
        line = lines_.erase(line);
    }
    file_.Write(text.data(), text.size());
}

void FrameLog::Finish() {
    const std::lock_guard lock(mutex_);
    for (const auto& [place, line] : lines_)
        file_.Write(line.data(), line.size());
    file_.Finish();
}
