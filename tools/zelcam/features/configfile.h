// Reads saved configurations and compares their settings.
#pragma once

#include <map>
#include <string>
#include <vector>

#include <GenApi/INodeMap.h>

#include "ZelGenParam/Array.h"
#include "tools/zelcam/camera/openedcamera.h"

namespace ZelTool {

// The contents of a configuration file.
struct Configuration {
    std::string camera;  // identifier of the camera it comes from; empty if unknown
    std::string text;    // a line per feature, selectors before what they select: a name, a tab and
                         // the value; a line that begins with "#" is a comment
    std::vector<std::string> leftOut;  // features whose values the text cannot hold
};

// Reads a configuration file, or a file with the text of the features only; "-" is standard input.
// Throws Failure (FileFailed) when the file cannot be read or is not a configuration.
Configuration ReadConfiguration(const std::string& file);

// The name, in failures, of a text that the camera saved.
constexpr const char* kSavedText = "the configuration saved by the camera";

// Parses the text of such a file. `what` names it in failures: "the file a.xml".
Configuration ParseConfiguration(const std::string& text, const std::string& what);

// Settings by the name of their feature. If selectors choose among several values, the key contains
// them: "Gain[GainSelector=All]". Selectors themselves are left out.
using Settings = std::map<std::string, std::string>;

// `features` shows which features are selectors.
Settings SettingsOf(const Configuration& configuration, ZelGenParam::Array& features);

// Writes the settings of the camera to a file. Throws Failure (FeatureFailed, FileFailed).
void SaveConfiguration(ZelCam::Device& device, const std::string& file);

// The text that SaveConfiguration would write, and the settings in it.
std::string SavedText(ZelCam::Device& device);
Settings SettingsOf(OpenedCamera& camera);

// Throws Failure (FeatureFailed) when the camera has none.
GenApi::INodeMap& NodeMapOf(OpenedCamera& camera);

struct Difference {
    std::string feature;
    std::string camera;  // "(none)" for a missing setting, on either side
    std::string file;
};

// Compares numbers by value: "0x140" equals "320".
std::vector<Difference> Compare(const Settings& camera, const Settings& file);

}  // namespace ZelTool
