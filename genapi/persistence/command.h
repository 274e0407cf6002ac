// Commands of the camera that an operation waits for.
#pragma once

#include <chrono>

#include <Base/GCString.h>
#include <GenApi/ICommand.h>
#include <GenApi/INodeMap.h>

namespace GENAPI_NAMESPACE {
namespace Engine {

// Executes a command and waits until it is done; false if it still runs when the time is up.
bool ExecuteAndWait(ICommand& command, std::chrono::milliseconds patience);

// How long a camera may take to prepare for storing or loading its settings, and to finish it.
constexpr std::chrono::milliseconds kPersistencePatience = std::chrono::seconds(10);

// Runs a command of the standard by which a camera prepares, if it exists and is available. A node
// of that name in another name space, or of another kind, is a different feature. Returns the
// error, or an empty text: a failure does not throw, because settings matter more than this notice.
GENICAM_NAMESPACE::gcstring NotifyCamera(const INodeMap& nodeMap, const char* command,
                                         std::chrono::milliseconds patience);

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE
