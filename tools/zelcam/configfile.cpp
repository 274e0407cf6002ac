#include "tools/zelcam/configfile.h"

#include <filesystem>
#include <optional>
#include <sstream>

#include <GenApi/GenApi.h>
#include <tinyxml2.h>

#include "tools/zelcam/failure.h"
#include "tools/zelcam/featuresetting.h"
#include "tools/zelcam/featurevalue.h"
#include "tools/zelcam/numbertext.h"
#include "tools/zelcam/outputfile.h"
#include "tools/zelcam/textfile.h"
#include "tools/zelcam/words.h"

namespace fs = std::filesystem;

namespace {

constexpr const char* none = "(none)";

// The text and the camera, from the elements of the file or the file itself.
Configuration PartsOf(const std::string& text, const std::string& what) {
    const size_t first = text.find_first_not_of(" \t\r\n");
    if (first == std::string::npos || text[first] != '<') return {"", text, {}};
    tinyxml2::XMLDocument document;
    document.Parse(text.c_str(), text.size());
    tinyxml2::XMLHandle camera = tinyxml2::XMLHandle(document).FirstChildElement("Camera");
    const tinyxml2::XMLElement* config = camera.FirstChildElement("Config").ToElement();
    if (document.Error() || config == nullptr) {
        throw Failure(ExitCode::FileFailed, what + " is no configuration");
    }
    const char* id = camera.ToElement()->Attribute("cameraId");
    Configuration result = {id == nullptr ? "" : id, "", {}};
    for (auto* part = config->FirstChild(); part != nullptr; part = part->NextSibling())
        if (part->ToText() != nullptr) result.text += part->Value();
    return result;
}

// In the notation with one feature a line, which the engine writes.
std::string Normalized(const std::string& text) {
    GenApi::CFeatureBag bag;
    std::istringstream(text) >> bag;
    std::ostringstream normalized;
    normalized << bag;
    return normalized.str();
}

// From the comments that the engine leaves in their place.
std::vector<std::string> LeftOut(const std::string& text) {
    const std::string mark = "# Left out: ";
    std::vector<std::string> names;
    for (const std::string& line : LinesOf(text)) {
        if (line.rfind(mark, 0) != 0) continue;
        names.push_back(line.substr(mark.size(), line.find(',') - mark.size()));
    }
    return names;
}

std::optional<double> NumberOf(const std::string& text) {
    const bool isHex = text.rfind("0x", 0) == 0 || text.rfind("0X", 0) == 0;
    const auto format = isHex ? std::chars_format::hex : std::chars_format::general;
    return ParseWhole<double>(std::string_view(text).substr(isHex ? 2 : 0), format);
}

bool IsSame(const std::string& a, const std::string& b) {
    return a == b || (NumberOf(a) && NumberOf(a) == NumberOf(b));
}

// A number without the unit that may follow it in a file that was edited.
std::string InItsUnit(ZelGenParam::Param& feature, const std::string& value) {
    if (NumberOf(value)) return value;
    try {
        return SettingText(feature, value);
    } catch (const Failure&) {
        return value;
    }
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
            settings_[Key(name, feature)] = feature == nullptr ? value : InItsUnit(*feature, value);
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

std::vector<std::string> LinesOf(const std::string& text) {
    std::vector<std::string> lines;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);)
        lines.push_back(line);
    return lines;
}

Configuration ReadConfiguration(const std::string& file) {
    if (file == standardStream) return ParseConfiguration(ReadStandardInput(), "standard input");
    return ParseConfiguration(ReadFile(file), "the file " + file);
}

Configuration ParseConfiguration(const std::string& text, const std::string& what) {
    Configuration configuration = PartsOf(text, what);
    configuration.leftOut = LeftOut(configuration.text);
    try {
        configuration.text = Normalized(configuration.text);
    } catch (const GenICam::GenericException& error) {
        throw Failure(ExitCode::FileFailed,
                      what + " is no configuration: " + error.GetDescription());
    }
    return configuration;
}

Settings SettingsOf(const Configuration& configuration, ZelGenParam::Array& features) {
    Reader reader(features);
    for (const std::string& line : LinesOf(configuration.text)) {
        const size_t tab = line.find('\t');
        if (line.front() != '#') reader.Line(line.substr(0, tab), line.substr(tab + 1));
    }
    return reader.Result();
}

// The library does not tell when it cannot write: then the file stays missing, or empty.
void SaveConfiguration(ZelCam::Device& device, const std::string& file) {
    const ZelCamErr code = device.SaveConfiguration(file.c_str());
    if (code != ZelCamErr_Success) {
        throw Failure(ExitCode::FeatureFailed, "the features cannot be saved: " + ErrorWords(code));
    }
    std::error_code missing;
    if (fs::file_size(file, missing) == 0 || missing) {
        throw Failure(ExitCode::FileFailed, "the file " + file +
                                                " cannot be written: is there room, and may this "
                                                "user write to the folder?");
    }
}

std::string SavedText(ZelCam::Device& device) {
    const TemporaryFile file((fs::temp_directory_path() / "zelcam-config").string());
    SaveConfiguration(device, file.Name());
    return ReadFile(file.Name());
}

Settings SettingsOf(OpenedCamera& camera) {
    return SettingsOf(ParseConfiguration(SavedText(camera.Device()), savedText),
                      camera.Features(Module::Camera));
}

GenApi::INodeMap& NodeMapOf(OpenedCamera& camera) {
    ZelCamErr code = ZelCamErr_Success;
    GenApi::INodeMap* nodeMap = camera.Features(Module::Camera).GetNodeMap(&code);
    if (nodeMap == nullptr) {
        throw Failure(ExitCode::FeatureFailed, "the features cannot be had: " + ErrorWords(code));
    }
    return *nodeMap;
}

std::vector<Difference> Compare(const Settings& camera, const Settings& file) {
    std::vector<Difference> differences;
    for (const auto& [feature, value] : camera) {
        const auto other = file.find(feature);
        const std::string there = other == file.end() ? none : other->second;
        if (!IsSame(value, there)) differences.push_back({feature, value, there});
    }
    for (const auto& [feature, value] : file) {
        if (camera.count(feature) == 0) differences.push_back({feature, none, value});
    }
    return differences;
}
