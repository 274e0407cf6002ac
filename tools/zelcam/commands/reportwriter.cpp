#include "tools/zelcam/commands/reportwriter.h"

#include <cctype>
#include <iomanip>

namespace ZelTool {

namespace {

// "Serial number" as "serialNumber".
std::string KeyOf(const std::string& label) {
    std::string key;
    bool begins = false;  // at the first letter of a word, except for the first word
    for (const char c : label) {
        const auto letter = static_cast<unsigned char>(c);
        if (c != ' ')
            key += static_cast<char>(begins ? std::toupper(letter) : std::tolower(letter));
        begins = c == ' ' || c == '-';
    }
    return key;
}

// Masks all texts in `value`. A number that contains a secret becomes a text.
void MaskIn(Json& value, const Mask& mask) {
    if (value.is_structured()) {
        for (Json& element : value)
            MaskIn(element, mask);
        return;
    }
    const std::string text = value.is_string() ? value.get<std::string>() : value.dump();
    const std::string masked = mask.Apply(text);
    if (masked != text) value = masked;
}

}  // namespace

void ReportWriter::Begin(const std::string& title, const std::string& key) {
    key_ = KeyOf(key);
    document_[key_] = Json::object();
    text_ << "\n=== " << title << "\n\n";
}

void ReportWriter::Line(const std::string& label, const Json& value) {
    const std::string text = value.is_string() ? value.get<std::string>() : value.dump();
    text_ << std::left << std::setw(14) << label << (text.empty() ? "-" : Printable(text)) << '\n';
    Section()[KeyOf(label)] = value;
}

void ReportWriter::Problem(ExitCode code, const std::string& words) {
    if (result_ == ExitCode::Ok) result_ = code;
    text_ << "!! " << words << '\n';
    Section()["problems"].push_back(words);
}

Json ReportWriter::AsJson(const Mask& mask) const {
    Json document = document_;
    MaskIn(document, mask);
    return document;
}

}  // namespace ZelTool
