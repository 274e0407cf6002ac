#include "tools/zelcam/features/configfile.h"

#include <filesystem>
#include <optional>
#include <sstream>

#include <GenApi/GenApi.h>
#include <tinyxml2.h>

#include "tools/zelcam/camera/words.h"
#include "tools/zelcam/console/failure.h"
#include "tools/zelcam/console/numbertext.h"
#include "tools/zelcam/console/outputfile.h"
#include "tools/zelcam/console/textfile.h"
#include "tools/zelcam/console/texttable.h"
#include "tools/zelcam/features/featuresetting.h"
#include "tools/zelcam/features/featurevalue.h"

namespace ZelTool {

namespace fs = std::filesystem;

namespace {

constexpr const char* kNone = "(none)";

// The text and the camera in the XML elements of the file, or the whole file as the text.
Configuration PartsOf(const std::string& text, const std::string& what) {
    const size_t first = text.find_first_not_of(" \t\r\n");
    if (first == std::string::npos || text[first] != '<') return {"", text, {}};
    tinyxml2::XMLDocument document;
    document.Parse(text.c_str(), text.size());
    tinyxml2::XMLHandle camera = tinyxml2::XMLHandle(document).FirstChildElement("Camera");
    const tinyxml2::XMLElement* config = camera.FirstChildElement("Config").ToElement();
    if (document.Error() || config == nullptr) {
        throw Failure(ExitCode::FileFailed, what + " is not a configuration");
    }
    const char* id = camera.ToElement()->Attribute("cameraId");
    Configuration result = {id == nullptr ? "" : id, "", {}};
    for (auto* part = config->FirstChild(); part != nullptr; part = part->NextSibling())
        if (part->ToText() != nullptr) result.text += part->Value();
    return result;
}

// Rewrites the text with one feature per line, as the engine writes it.
std::string Normalized(const std::string& text) {
    GenApi::CFeatureBag bag;
    std::istringstream(text) >> bag;
    std::ostringstream normalized;
    normalized << bag;
    return normalized.str();
}

// Names from the comments that the engine writes instead of a feature.
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

// A number without a unit: an edited file may have one behind the number.
std::string InItsUnit(ZelGenParam::Param& feature, const std::string& value) {
    if (NumberOf(value)) return value;
    try {
        return SettingText(feature, value);
    } catch (const Failure&) {
        return value;
    }
}

// Reads lines in their order: selectors come before the features that they select.
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

Configuration ReadConfiguration(const std::string& file) {
    if (file == kStandardStream) return ParseConfiguration(ReadStandardInput(), "standard input");
    return ParseConfiguration(ReadFile(file), "the file " + file);
}

Configuration ParseConfiguration(const std::string& text, const std::string& what) {
    Configuration configuration = PartsOf(text, what);
    configuration.leftOut = LeftOut(configuration.text);
    try {
        configuration.text = Normalized(configuration.text);
    } catch (const GenICam::GenericException& error) {
        throw Failure(ExitCode::FileFailed,
                      what + " is not a configuration: " + error.GetDescription());
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

// The library reports no failed write: the file is then missing or empty.
void SaveConfiguration(ZelCam::Device& device, const std::string& file) {
    RequireSuccess(device.SaveConfiguration(file.c_str()), "the features cannot be saved");
    std::error_code missing;
    if (fs::file_size(file, missing) == 0 || missing) {
        throw Failure(ExitCode::FileFailed, "the file " + file +
                                                " cannot be written: check the free space and "
                                                "the permissions of the folder");
    }
}

std::string SavedText(ZelCam::Device& device) {
    const TemporaryFile file((fs::temp_directory_path() / "zelcam-config").string());
    SaveConfiguration(device, file.Name());
    return ReadFile(file.Name());
}

Settings SettingsOf(OpenedCamera& camera) {
    return SettingsOf(ParseConfiguration(SavedText(camera.Device()), kSavedText),
                      camera.Features(Module::Camera));
}

GenApi::INodeMap& NodeMapOf(OpenedCamera& camera) {
    ZelCamErr code = ZelCamErr_Success;
    GenApi::INodeMap* nodeMap = camera.Features(Module::Camera).GetNodeMap(&code);
    RequireSuccess(code, "the features are not available");
    return *nodeMap;
}

std::vector<Difference> Compare(const Settings& camera, const Settings& file) {
    std::vector<Difference> differences;
    for (const auto& [feature, value] : camera) {
        const auto other = file.find(feature);
        const std::string there = other == file.end() ? kNone : other->second;
        if (!IsSame(value, there)) differences.push_back({feature, value, there});
    }
    for (const auto& [feature, value] : file) {
        if (camera.count(feature) == 0) differences.push_back({feature, kNone, value});
    }
    return differences;
}

}  // namespace ZelTool
