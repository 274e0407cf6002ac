#include "tools/zelcam/configfile.h"

#include <filesystem>
#include <sstream>

#include <GenApi/GenApi.h>
#include <tinyxml2.h>

#include "tools/zelcam/failure.h"
#include "tools/zelcam/featurevalue.h"
#include "tools/zelcam/textfile.h"
#include "tools/zelcam/words.h"

namespace fs = std::filesystem;

namespace {

constexpr const char* none = "(none)";

// The lines of the features: in an element of the file, or the file itself.
std::string FeatureLines(const std::string& file) {
    std::string text = ReadFile(file);
    const size_t first = text.find_first_not_of(" \t\r\n");
    if (first == std::string::npos || text[first] != '<') return text;
    tinyxml2::XMLDocument document;
    const tinyxml2::XMLElement* config = nullptr;
    if (document.Parse(text.c_str(), text.size()) == tinyxml2::XML_SUCCESS) {
        config = tinyxml2::XMLHandle(document)
                     .FirstChildElement("Camera")
                     .FirstChildElement("Config")
                     .ToElement();
    }
    if (config == nullptr) {
        throw Failure(ExitCode::FileFailed, "the file " + file + " is no configuration");
    }
    return config->GetText() == nullptr ? "" : config->GetText();
}

// Goes through the lines in their order, in which selectors come before what they select.
class Reader {
  public:
    explicit Reader(ZelGenParam::Array& features) : features_(features) {}

    void Line(const std::string& name, const std::string& value) {
        ZelGenParam::Param* feature = features_.GetParam(name.c_str(), nullptr);
        if (feature != nullptr && IsSelector(*feature)) {
            selectors_[name] = value;
        } else {
            settings_[Key(name, feature)] = value;
        }
    }

    const Settings& Result() const { return settings_; }

  private:
    std::string Key(const std::string& name, ZelGenParam::Param* feature) const {
        std::string key = name;
        if (feature == nullptr) return key;
        for (const std::string& selector : SelectorsOf(*feature)) {
            const auto value = selectors_.find(selector);
            if (value != selectors_.end()) key += "[" + selector + "=" + value->second + "]";
        }
        return key;
    }

    ZelGenParam::Array& features_;
    std::map<std::string, std::string> selectors_;
    Settings settings_;
};

}  // namespace

Settings ReadConfiguration(const std::string& file, ZelGenParam::Array& features) {
    std::istringstream lines(FeatureLines(file));
    Reader reader(features);
    for (std::string line; std::getline(lines, line);) {
        if (!line.empty() && line.back() == '\r') line.pop_back();
        const size_t tab = line.find('\t');
        if (line.empty() || line.front() == '#') continue;
        if (tab == std::string::npos) {
            throw Failure(ExitCode::FileFailed,
                          "the file " + file + " is no configuration: \"" + line + "\"");
        }
        reader.Line(line.substr(0, tab), line.substr(tab + 1));
    }
    return reader.Result();
}

// The library does not tell when it cannot write.
void SaveConfiguration(ZelCam::Device& device, const std::string& file) {
    const ZelCamErr code = device.SaveConfiguration(file.c_str());
    if (code != ZelCamErr_Success) {
        throw Failure(ExitCode::FeatureFailed, "the features cannot be saved: " + ErrorWords(code));
    }
    std::error_code ignored;
    if (fs::file_size(file, ignored) == 0) {
        throw Failure(ExitCode::FileFailed, "the file " + file + " cannot be written");
    }
}

Settings SettingsOf(OpenedCamera& camera) {
    const TemporaryFile file((fs::temp_directory_path() / "zelcam-config").string());
    SaveConfiguration(camera.Device(), file.Name());
    return ReadConfiguration(file.Name(), camera.Features(Module::Camera));
}

std::vector<Difference> Compare(const Settings& camera, const Settings& file) {
    std::vector<Difference> differences;
    for (const auto& [feature, value] : camera) {
        const auto other = file.find(feature);
        const std::string there = other == file.end() ? none : other->second;
        if (value != there) differences.push_back({feature, value, there});
    }
    for (const auto& [feature, value] : file) {
        if (camera.count(feature) == 0) differences.push_back({feature, none, value});
    }
    return differences;
}
