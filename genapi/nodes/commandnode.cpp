#include "genapi/nodes/commandnode.h"

#include "genapi/description/links.h"
#include "genapi/nodes/nodemap.h"

namespace GENAPI_NAMESPACE {
namespace Engine {

using GENICAM_NAMESPACE::gcstring;

CommandNode::CommandNode(NodeMap& map, NodeId id)
    : Node(map, id),
      value_(*this, CameraDescription().Tables().commands[Record().data].value),
      commandValue_(*this, CameraDescription().Tables().commands[Record().data].commandValue) {}

EAccessMode CommandNode::SourceAccessMode(bool relaxed) {
    return value_.AccessMode(relaxed);
}

bool CommandNode::IsRunning() const {
    return (Map().Flags(Id()) & NodeMap::kActive) != 0;
}

void CommandNode::SetRunning(bool running) {
    if (running)
        Map().SetFlags(Id(), NodeMap::kActive);
    else
        Map().ClearFlags(Id(), NodeMap::kActive);
}

void CommandNode::Start(bool verify) {
    RequireWritable(true);
    const int64_t command = commandValue_.Read({});
    {
        const Nesting nesting(*this);
        value_.Write(command, verify);
    }
    SetRunning(value_.IsNode());
}

void CommandNode::Execute(bool verify) {
    RunChange("Execute", ChangedByWriteTo(CameraDescription(), Id()), [&] { Start(verify); });
}

// Asks the device; true if the command has finished since the last time.
bool CommandNode::CheckDone(EAccessMode mode) {
    if (!IsRunning() || !IsReadable(mode)) return false;
    const Nesting nesting(*this);
    if (value_.Read({false, true}) == commandValue_.Read({})) return false;
    SetRunning(false);
    return true;
}

bool CommandNode::IsDone(bool verify) {
    bool finished = false;
    bool done = false;
    {
        const Entry entry(*this, "IsDone");
        const EAccessMode mode = AccessMode();
        if (!IsImplemented(mode))
            throw NODE_ERROR(AccessException, *this)("Node is not implemented.");
        if (verify && !IsRunning()) CheckErrorNodes();
        finished = CheckDone(mode);
        done = !IsRunning() || !IsReadable(mode);
    }
    if (finished) RunChange("IsDone", InvalidatedBy(CameraDescription(), Id()), [] {});
    return done;
}

gcstring CommandNode::ToString(bool verify, bool ignoreCache) {
    return RunRead("ToString", [&] {
        if (ignoreCache) Map().RetryAccess(Id());
        if (verify) CheckErrorNodes();
        CheckDone(AccessMode());
        return gcstring(IsRunning() ? "1" : "0");
    });
}

void CommandNode::FromString(const gcstring& text, bool verify) {
    RunChange("FromString", ChangedByWriteTo(CameraDescription(), Id()), [&] {
        if (text != "1" && text != "true")
            throw NODE_ERROR(InvalidArgumentException, *this)("'%s' does not convert to TRUE",
                                                              text.c_str());
        Start(verify);
        if (verify) CheckErrorNodes();
    });
}

bool CommandNode::IsValueCacheValid() const {
    const Entry entry(*this, "IsValueCacheValid");
    return IsValueCached();
}

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE
