// Saved settings as text.
#ifndef ZEL_CONFIGURATION_H
#define ZEL_CONFIGURATION_H

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "ZelCam/Device.h"
#include "zel/error.h"

namespace zel {

// A feature whose saved value is not that of the camera.
struct Difference {
    std::string feature;  // with its selectors, as "Gain[GainSelector=Red]"
    std::string saved;    // empty if the file has none
    std::string current;  // empty if the camera has none, or none that is saved
};

namespace detail {

inline std::string contentsOf(const std::filesystem::path& file) {
    std::ifstream in(file, std::ios::binary);
    if (!in) throw Error(ZelCamErr_FileOpenFailed, "reading " + file.string());
    return {std::istreambuf_iterator<char>(in), {}};
}

// A folder of its own that goes with it.
class TemporaryFolder {
  public:
    TemporaryFolder() : path_((std::filesystem::temp_directory_path() / "zel-XXXXXX").string()) {
        if (mkdtemp(path_.data()) == nullptr)
            throw Error(ZelCamErr_FileOpenFailed, "making a temporary folder " + path_);
    }
    ~TemporaryFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(path_, ignored);
    }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    std::filesystem::path operator/(const char* name) const {
        return std::filesystem::path(path_) / name;
    }

  private:
    std::string path_;
};

// What SaveConfiguration writes.
inline std::string configurationOf(ZelCam::Device& device) {
    const TemporaryFolder folder;
    const std::filesystem::path file = folder / "settings.xml";
    check(device.SaveConfiguration(file.c_str()), "saving the settings");
    return contentsOf(file);
}

// Sets the camera to what configurationOf returned.
inline void configure(ZelCam::Device& device, const std::string& configuration) {
    const TemporaryFolder folder;
    const std::filesystem::path file = folder / "settings.xml";
    std::ofstream out(file, std::ios::binary);
    out << configuration;
    out.close();
    if (!out) throw Error(ZelCamErr_FileOpenFailed, "writing " + file.string());
    check(device.LoadConfiguration(file.c_str()), "loading the settings");
}

// A line of a configuration: a feature and its value.
struct SavedLine {
    std::string name;
    std::string value;

    // Selectors stand before what they select.
    bool isSelector() const {
        const std::string end = "Selector";
        return name.size() > end.size() &&
               name.compare(name.size() - end.size(), end.size(), end) == 0;
    }
};

inline std::vector<SavedLine> linesOf(const std::string& configuration) {
    std::vector<SavedLine> saved;
    std::istringstream lines(configuration);
    for (std::string line; std::getline(lines, line);) {
        const size_t tab = line.find('\t');
        if (tab == std::string::npos || tab == 0 || line[0] == '#' || line[0] == '<') continue;
        if (line.back() == '\r') line.pop_back();
        saved.push_back({line.substr(0, tab), line.substr(tab + 1)});
    }
    return saved;
}

// The values of a configuration. A feature that it has several times is named with the selectors
// that stand right before it.
inline std::map<std::string, std::string> valuesOf(const std::string& configuration) {
    const std::vector<SavedLine> lines = linesOf(configuration);
    std::map<std::string, int> counts;
    for (const SavedLine& line : lines)
        ++counts[line.name];
    std::map<std::string, std::string> values;
    std::string selectors;
    bool isFirst = true;
    for (const SavedLine& line : lines) {
        if (line.isSelector()) {
            if (isFirst) selectors.clear();
            selectors += "[" + line.name + "=" + line.value + "]";
        } else {
            values[counts[line.name] > 1 ? line.name + selectors : line.name] = line.value;
        }
        isFirst = !line.isSelector();
    }
    return values;
}

inline std::vector<Difference> differences(const std::string& saved, const std::string& current) {
    const auto before = valuesOf(saved);
    const auto now = valuesOf(current);
    std::vector<Difference> found;
    for (const auto& [name, value] : before) {
        const auto other = now.find(name);
        if (other == now.end()) {
            found.push_back({name, value, ""});
        } else if (other->second != value) {
            found.push_back({name, value, other->second});
        }
    }
    for (const auto& [name, value] : now)
        if (before.count(name) == 0) found.push_back({name, "", value});
    return found;
}

}  // namespace detail

}  // namespace zel

#endif  // ZEL_CONFIGURATION_H
