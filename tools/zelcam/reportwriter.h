// A report section by section, as a text and as JSON.
#ifndef ZELCAM_TOOLS_ZELCAM_REPORTWRITER_H
#define ZELCAM_TOOLS_ZELCAM_REPORTWRITER_H

#include <sstream>
#include <string>

#include <nlohmann/json.hpp>

#include "tools/zelcam/failure.h"
#include "tools/zelcam/masking.h"
#include "tools/zelcam/printable.h"

class ReportWriter {
  public:
    using Json = nlohmann::ordered_json;

    // What follows goes there; `key` becomes the name in JSON as a label does.
    void Begin(const std::string& title, const std::string& key);

    // In the text "Serial number  4711", in JSON "serialNumber": "4711".
    void Line(const std::string& label, const Json& value);

    // Something could not be found out. The first one decides how the program ends.
    void Problem(ExitCode code, const std::string& words);

    // For what is not a line.
    std::ostream& Text() { return text_; }
    Json& Section() { return document_[key_]; }

    ExitCode Result() const { return result_; }
    std::string AsText() const { return PrintableLines(text_.str()); }
    std::string AsText(const Mask& mask) const { return mask.Apply(AsText()); }
    Json AsJson() const { return document_; }
    Json AsJson(const Mask& mask) const;

  private:
    std::ostringstream text_;
    Json document_ = Json::object();
    std::string key_;
    ExitCode result_ = ExitCode::Ok;
};

#endif  // ZELCAM_TOOLS_ZELCAM_REPORTWRITER_H
