// Finds the camera that the user names.
#pragma once

#include <string>
#include <vector>

#include "tools/zelcam/camera/session.h"

namespace ZelTool {

// From at least one camera, the one whose identifier, serial number or user name is `wanted`, with
// or without the name or path of its producer and a slash in front. If no camera has that name and
// `wanted` is a number, the camera with that number in the listing. If `wanted` is empty, the first
// camera. Throws Failure (NoCamera) when no camera matches, or several do: the message lists them.
const Camera& ChooseCamera(const std::vector<Camera>& cameras, const std::string& wanted);

// The same for the cameras of a session. A producer that the user named must work, or this throws
// Failure (NoProducer); for one from a folder it prints a warning. When a producer for real cameras
// is loaded, an empty `wanted` means a real camera: without one this throws Failure (NoCamera).
// Without any camera, the message says how to get simulated ones. A simulated camera that the user
// did not choose by name gets a note on stderr.
const Camera& SelectCamera(const Session& session, const std::string& wanted);

// The same for each of `wanted`, or the first camera when it is empty. Warns of each producer once.
// Throws Failure (Usage) when a camera is named twice.
std::vector<const Camera*> SelectCameras(const Session& session,
                                         const std::vector<std::string>& wanted);

// Whether the cameras are enough for SelectCameras: it need not wait for others. The numbers of
// cameras are those of the whole list.
Session::Enough EnoughToSelect(const std::vector<std::string>& wanted);

// The same for TakeCamera and SelectCamera. A word that may as well be the name of a feature is not
// waited for.
Session::Enough EnoughToTake(const std::vector<std::string>& words, size_t others);

// Removes the camera from the front of `words` and returns its name. The user may leave it out:
// when there are at most `others` words and the first names no camera, the result is empty, which
// means the first camera.
std::string TakeCamera(const std::vector<Camera>& cameras, std::vector<std::string>& words,
                       size_t others);

}  // namespace ZelTool
