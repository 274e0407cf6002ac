#include "producers/simulator/gige/control/descriptionurls.h"

#include <string_view>
#include <utility>
#include <vector>

namespace ZelSim {

using ZelCti::PortRegisters;
using ZelCti::PortUrl;

namespace {

// The parts of "Local:name.ext;address;size?SchemaVersion=1.1.0".
struct LocalUrl {
    std::string name;
    std::string extension;
    std::string address;
    std::string size;
    std::string schema;
};

// Up to the delimiter, which is dropped as well; everything if there is none.
std::string CutOff(std::string_view& rest, char delimiter) {
    const size_t end = rest.find(delimiter);
    std::string part(rest.substr(0, end));
    rest.remove_prefix(end == std::string_view::npos ? rest.size() : end + 1);
    return part;
}

LocalUrl ParseLocalUrl(std::string_view url) {
    LocalUrl parts;
    CutOff(url, ':');
    parts.name = CutOff(url, '.');
    parts.extension = CutOff(url, ';');
    parts.address = CutOff(url, ';');
    parts.size = CutOff(url, '?');
    parts.schema = std::string(url);
    return parts;
}

std::string UrlText(const LocalUrl& url, UrlForm form) {
    const std::string file = url.name + '.' + url.extension;
    const std::string place = ';' + url.address + ';' + url.size;
    switch (form) {
        case UrlForm::Plain:
            break;
        case UrlForm::Slashes:
            return "Local:///" + file + place;
        case UrlForm::Spaces:
            return "Local:" + file + "; " + url.address + "; " + url.size;
        case UrlForm::HexPrefix:
            return "Local:" + file + ";0x" + url.address + ";0x" + url.size;
        case UrlForm::SchemaVersion:
            return "Local:" + file + place + '?' + url.schema;
        case UrlForm::LowerCase:
            return "local:" + file + place;
        case UrlForm::UpperCaseZip:
            return "Local:" + url.name + ".ZIP" + place;
        case UrlForm::Http:
            return "http://localhost/" + file;
        case UrlForm::File:
            return "File:///" + file;
    }
    return "Local:" + file + place;
}

}  // namespace

std::array<std::string, 2> DescriptionUrls(const CameraConfig& config,
                                           const NetworkSettings& settings,
                                           PortRegisters& registers) {
    std::vector<std::string> urls;
    if (!config.descriptionUrl.empty()) urls.push_back(config.descriptionUrl);
    if (!config.descriptionFile.empty())
        urls.push_back(PortUrl::OfFile(config.descriptionFile).Text());
    for (const PortUrl& own : registers.Urls())
        urls.push_back(UrlText(ParseLocalUrl(own.Text()), settings.urlForm));
    if (urls.empty()) return {};
    if (settings.secondUrlOnly) return {std::string(), urls.back()};
    if (urls.size() == 1) return {urls.front(), std::string()};
    return {urls.front(), urls.back()};
}

}  // namespace ZelSim
