#include "genapi/persistence/command.h"

#include <thread>

#include <GenApi/INode.h>

#include "genapi/persistence/problem.h"

namespace GENAPI_NAMESPACE {
namespace Engine {

using GENICAM_NAMESPACE::gcstring;

namespace {

constexpr std::chrono::milliseconds kPause(1);

ICommand* FindCommand(const INodeMap& nodeMap, const char* name) {
    INode* const node = nodeMap.GetNode(name);
    if (node == nullptr || node->GetNameSpace() != Standard) return nullptr;
    auto* const command = dynamic_cast<ICommand*>(node);
    return command != nullptr && IsWritable(command) ? command : nullptr;
}

}  // namespace

bool ExecuteAndWait(ICommand& command, std::chrono::milliseconds patience) {
    command.Execute();
    const auto end = std::chrono::steady_clock::now() + patience;
    while (!command.IsDone()) {
        if (std::chrono::steady_clock::now() > end) return false;
        std::this_thread::sleep_for(kPause);
    }
    return true;
}

gcstring NotifyCamera(const INodeMap& nodeMap, const char* command,
                      std::chrono::milliseconds patience) {
    bool isDone = true;
    gcstring problem = ProblemOf([&] {
        ICommand* const found = FindCommand(nodeMap, command);
        if (found != nullptr) isDone = ExecuteAndWait(*found, patience);
    });
    if (!isDone) problem = "the command does not end";
    if (problem.empty()) return problem;
    return gcstring("Error while executing node '") + command + "': " + problem;
}

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE
