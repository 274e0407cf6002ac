// Saving the settings of a camera to a file.
#ifndef ZELCAM_TOOLS_ZELCAM_CONFIGSAVE_H
#define ZELCAM_TOOLS_ZELCAM_CONFIGSAVE_H

#include <cstddef>
#include <string>
#include <vector>

#include "tools/zelcam/openedcamera.h"

// Which features are settings.
enum class Settled {
    Streamable,  // those that the description says are
    All,         // all that can be read and written: the file is the text of the features alone
};

struct Saved {
    size_t settings = 0;
    std::vector<std::string> locked;  // settings that cannot be written now, and are left out
};

// Replaces the file as a whole. Failure, and the former file stays, when it cannot be written
// (FileFailed), or a feature not be read, nothing can be saved at the moment, or frames are being
// grabbed, which locks many settings (FeatureFailed). Failure (FeatureFailed) with the new file in
// place when single features could not be saved. Those that are locked are told as a note.
Saved SaveSettings(OpenedCamera& camera, const std::string& file, Settled settled);

#endif  // ZELCAM_TOOLS_ZELCAM_CONFIGSAVE_H
