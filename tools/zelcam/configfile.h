// Saved configurations: what is in them, and how two of them differ.
#ifndef ZELCAM_TOOLS_ZELCAM_CONFIGFILE_H
#define ZELCAM_TOOLS_ZELCAM_CONFIGFILE_H

#include <map>
#include <string>
#include <vector>

#include <GenApi/INodeMap.h>

#include "ZelGenParam/Array.h"
#include "tools/zelcam/openedcamera.h"

// What a configuration file holds.
struct Configuration {
    std::string camera;                // identifier of the one that it is from, empty when not told
    std::string text;                  // of the features, selectors before what they select
    std::vector<std::string> leftOut;  // features whose values did not fit into the text
};

// Reads a configuration file, or one that holds the text of the features only; "-" is standard
// input. Failure (FileFailed) when it cannot be read or is no configuration.
Configuration ReadConfiguration(const std::string& file);

// Names a text that the camera saved.
constexpr const char* savedText = "what the camera saved";

// The same of a text. `what` names it in failures: "the file a.xml".
Configuration ParseConfiguration(const std::string& text, const std::string& what);

// Of the text of a configuration: NAME, a tab and the value, or a comment that begins with "#".
std::vector<std::string> LinesOf(const std::string& text);

// The settings in a configuration, by the name of the feature and, where selectors choose among
// several values, theirs: "Gain[GainSelector=All]". Selectors themselves are left out.
using Settings = std::map<std::string, std::string>;

// `features` tells what is a selector.
Settings SettingsOf(const Configuration& configuration, ZelGenParam::Array& features);

// Writes the settings of the camera to a file. Failure (FeatureFailed, FileFailed).
void SaveConfiguration(ZelCam::Device& device, const std::string& file);

// What SaveConfiguration would write.
std::string SavedText(ZelCam::Device& device);
Settings SettingsOf(OpenedCamera& camera);

// Failure (FeatureFailed) when the camera has none.
GenApi::INodeMap& NodeMapOf(OpenedCamera& camera);

struct Difference {
    std::string feature;
    std::string camera;  // "(none)" on either side: not there
    std::string file;
};

// Numbers are the same in whatever form: "0x140" and "320".
std::vector<Difference> Compare(const Settings& camera, const Settings& file);

#endif  // ZELCAM_TOOLS_ZELCAM_CONFIGFILE_H
