// Collects a report section by section, as text and as JSON.
#pragma once

#include <sstream>
#include <string>

#include "tools/zelcam/commands/masking.h"
#include "tools/zelcam/console/failure.h"
#include "tools/zelcam/console/jsontext.h"
#include "tools/zelcam/console/printable.h"

namespace ZelTool {

class ReportWriter {
  public:
    // Begins a section. `key` becomes its name in JSON, like the label of a line.
    void Begin(const std::string& title, const std::string& key);

    // "Serial number  4711" in the text, "serialNumber": "4711" in JSON.
    void Line(const std::string& label, const Json& value);

    // Reports something that could not be found out. The first problem decides the exit code.
    void Problem(ExitCode code, const std::string& words);

    // For everything that is not a line.
    std::ostream& Text() { return text_; }
    Json& Section() { return document_[key_]; }

    ExitCode Result() const { return result_; }
    std::string AsText(const Mask& mask) const { return mask.Apply(PrintableLines(text_.str())); }
    Json AsJson(const Mask& mask) const;

  private:
    std::ostringstream text_;
    Json document_ = Json::object();
    std::string key_;
    ExitCode result_ = ExitCode::Ok;
};

}  // namespace ZelTool
