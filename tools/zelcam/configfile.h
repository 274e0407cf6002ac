// Saved configurations: what is in them, and how two of them differ.
#ifndef ZELCAM_TOOLS_ZELCAM_CONFIGFILE_H
#define ZELCAM_TOOLS_ZELCAM_CONFIGFILE_H

#include <map>
#include <string>
#include <vector>

#include "ZelGenParam/Array.h"
#include "tools/zelcam/openedcamera.h"

// The settings in a configuration, by the name of the feature and, where selectors choose among
// several values, theirs: "Gain[GainSelector=All]". Selectors themselves are left out.
using Settings = std::map<std::string, std::string>;

// Reads a configuration file, or one that holds the lines of the features only. `features` tells
// what is a selector. Failure (FileFailed) when it cannot be read or is no configuration.
Settings ReadConfiguration(const std::string& file, ZelGenParam::Array& features);

// Writes the settings of the camera to a file. Failure (FeatureFailed, FileFailed).
void SaveConfiguration(ZelCam::Device& device, const std::string& file);

// What SaveConfiguration would write.
Settings SettingsOf(OpenedCamera& camera);

struct Difference {
    std::string feature;
    std::string camera;  // "(none)" on either side: not there
    std::string file;
};

std::vector<Difference> Compare(const Settings& camera, const Settings& file);

#endif  // ZELCAM_TOOLS_ZELCAM_CONFIGFILE_H
