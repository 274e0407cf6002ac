// Saves the settings of a camera to a file.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "tools/zelcam/camera/openedcamera.h"

namespace ZelTool {

// The features to save.
enum class Settled {
    Streamable,  // features that the description calls streamable
    All,  // features that can be read and written; the file has just the text of the features
};

struct Saved {
    size_t settings = 0;
    std::vector<std::string>
        locked;  // settings that were left out because they are not writable now
};

// Replaces the file as a whole and prints a note about locked settings. Throws Failure, and leaves
// the former file, when the file cannot be written (FileFailed), nothing can be saved at the
// moment, or frames are being grabbed, which locks many settings (FeatureFailed). Throws Failure
// (FeatureFailed) after replacing the file when some features could not be saved.
Saved SaveSettings(OpenedCamera& camera, const std::string& file, Settled settled);

}  // namespace ZelTool
