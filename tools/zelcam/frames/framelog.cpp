#include "tools/zelcam/frames/framelog.h"

#include "tools/zelcam/console/printable.h"

namespace ZelTool {

namespace {

constexpr const char* kHeadings =
    "camera,number,arrived,frame_id,timestamp,width,height,pixel_format,bytes,complete,file\n";

// A cell on one line, with quotation marks if it needs them (RFC 4180).
std::string Cell(const std::string& text) {
    std::string cell = Printable(text);
    if (cell.find_first_of(",\"") == std::string::npos) return cell;
    for (size_t at = 0; (at = cell.find('"', at)) != std::string::npos; at += 2)
        cell.insert(at, 1, '"');
    return '"' + cell + '"';
}

std::string LineOf(const Arrival& arrival, const Frame& frame, const std::string& file) {
    const ZelImage::View& image = frame.image;
    std::string line;
    for (const std::string& cell :
         {Cell(arrival.camera), std::to_string(arrival.number), TimeStamp(arrival.time),
          std::to_string(frame.frameId), std::to_string(frame.timestamp),
          std::to_string(image.width), std::to_string(image.height),
          PixelFormatName(image.pixelFormat), std::to_string(frame.BytesPresent()),
          std::string(frame.incomplete ? "no" : "yes"), Cell(file)})
        line += cell + ',';
    line.back() = '\n';
    return line;
}

}  // namespace

FrameLog::FrameLog(const std::string& file, Existing existing) : file_(file, existing) {
    const std::string text = kHeadings;
    file_.Write(text.data(), text.size());
    file_.TakePlaceEarly();
}

uint64_t FrameLog::Reserve() {
    const std::lock_guard lock(mutex_);
    return reserved_++;
}

void FrameLog::Add(uint64_t place, const Arrival& arrival, const Frame& frame,
                   const std::string& file) {
    const std::lock_guard lock(mutex_);
    lines_[place] = LineOf(arrival, frame, file);
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

}  // namespace ZelTool
