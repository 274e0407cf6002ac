// The camera the user means.
#ifndef ZELCAM_TOOLS_ZELCAM_CAMERACHOICE_H
#define ZELCAM_TOOLS_ZELCAM_CAMERACHOICE_H

#include <string>
#include <vector>

#include "tools/zelcam/session.h"

// Of `cameras`, at least one, the camera whose identifier, serial number or user name is `wanted`,
// alone or behind the name or path of its producer and a slash; else, for a number, the camera with
// that number in the listing; for an empty `wanted` the first one. Throws Failure (NoCamera) when
// no camera fits, and when several do: the message then lists them.
const Camera& ChooseCamera(const std::vector<Camera>& cameras, const std::string& wanted);

// The same for the cameras of a session. A producer that the user named must work, else Failure
// (NoProducer); one found in a folder only gets a warning. The first camera is a real one wherever
// a producer for real cameras is loaded, else Failure (NoCamera). Without any camera, the message
// of the failure says how to get simulated ones. A simulated camera that was not chosen by its name
// is told of on stderr.
const Camera& SelectCamera(const Session& session, const std::string& wanted);

// The same for each of `wanted`, producers being told of once; for none the first camera. Failure
// (Usage) also when a camera is named twice.
std::vector<const Camera*> SelectCameras(const Session& session,
                                         const std::vector<std::string>& wanted);

// Takes the camera from the front of `words`, and returns how it is called. It may be left out:
// words of which the first names no camera, and which are no more than `others`, name none. The
// first camera, an empty name, is meant then.
std::string TakeCamera(const std::vector<Camera>& cameras, std::vector<std::string>& words,
                       size_t others);

#endif  // ZELCAM_TOOLS_ZELCAM_CAMERACHOICE_H
