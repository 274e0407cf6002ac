#include "genapi/nodes/commandnode.h"

#include "genapi/description/links.h"
#include "genapi/nodes/nodemap.h"

namespace GENAPI_NAMESPACE {
namespace Engine {

using GENICAM_NAMESPACE::gcstring;

CommandNode::CommandNode(NodeMap& map, NodeId id)
    : Node(map, id),
      value_(*this, description().tables().commands[record().data].value),
      commandValue_(*this, description().tables().commands[record().data].commandValue) {}

EAccessMode CommandNode::sourceAccessMode(bool relaxed) {
    return value_.accessMode(relaxed);
}

bool CommandNode::isRunning() const {
    return (map().flagsOf(id()) & NodeMap::kActive) != 0;
}

void CommandNode::setRunning(bool running) {
    std::uint8_t& flags = map().flagsOf(id());
    if (running)
        flags |= NodeMap::kActive;
    else
        flags &= static_cast<std::uint8_t>(~NodeMap::kActive);
}

void CommandNode::execute(bool verify) {
    requireWritable(true);
    const std::int64_t command = commandValue_.read({});
    {
        const Nesting nesting(*this);
        value_.write(command, verify);
    }
    setRunning(value_.isNode());
}

void CommandNode::Execute(bool verify) {
    modify("Execute", changedByWriteTo(description(), id()), [&] { execute(verify); });
}

// Asks the device; true when the command has finished since it was last asked.
bool CommandNode::checkDone(EAccessMode mode) {
    if (!isRunning() || !IsReadable(mode)) return false;
    const Nesting nesting(*this);
    if (value_.read({false, true}) == commandValue_.read({})) return false;
    setRunning(false);
    return true;
}

bool CommandNode::IsDone(bool verify) {
    bool finished = false;
    bool done = false;
    {
        const Entry entry(*this, "IsDone");
        const EAccessMode mode = accessMode();
        if (!IsImplemented(mode))
            throw NODE_ERROR(AccessException, *this)("Node is not implemented.");
        if (verify && !isRunning()) checkErrorNodes();
        finished = checkDone(mode);
        done = !isRunning() || !IsReadable(mode);
    }
    if (finished) modify("IsDone", invalidatedBy(description(), id()), [] {});
    return done;
}

gcstring CommandNode::ToString(bool verify, bool ignoreCache) {
    return read("ToString", [&] {
        if (ignoreCache) map().retryAccess(id());
        if (verify) checkErrorNodes();
        checkDone(accessMode());
        return gcstring(isRunning() ? "1" : "0");
    });
}

void CommandNode::FromString(const gcstring& text, bool verify) {
    modify("FromString", changedByWriteTo(description(), id()), [&] {
        if (text != "1" && text != "true")
            throw NODE_ERROR(InvalidArgumentException, *this)("'%s' does not convert to TRUE",
                                                              text.c_str());
        execute(verify);
        if (verify) checkErrorNodes();
    });
}

bool CommandNode::IsValueCacheValid() const {
    const Entry entry(*this, "IsValueCacheValid");
    return isValueCached();
}

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE
