// Commands of the camera that something waits for.
#pragma once

#include <chrono>

#include <Base/GCString.h>
#include <GenApi/ICommand.h>
#include <GenApi/INodeMap.h>

namespace GENAPI_NAMESPACE {
namespace Engine {

// Executes a command and waits until it is done; false if it still runs when the time is over.
bool ExecuteAndWait(ICommand& command, std::chrono::milliseconds patience);

// How long a camera may take to prepare for the storing or loading of its settings, or to end it.
constexpr std::chrono::milliseconds kPersistencePatience = std::chrono::seconds(10);

// Runs a command by which the standard lets a camera prepare, if it is there and available; of that
// name in another namespace, or of another kind, it is some other feature. Gives what went wrong,
// and nothing if all is well: settings are worth more than the notice, so nothing is thrown.
GENICAM_NAMESPACE::gcstring NotifyCamera(const INodeMap& nodeMap, const char* command,
                                         std::chrono::milliseconds patience);

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE
