// Access modes: what a node allows is what its value source allows, restricted by what the
// description or the application imposes and by its conditions.
#include <cstring>
#include <utility>

#include "genapi/nodes/nodemap.h"

namespace GENAPI_NAMESPACE {
namespace Engine {

using GENICAM_NAMESPACE::AccessException;

namespace {

EAccessMode modeOf(std::uint8_t cached) {
    return static_cast<EAccessMode>(cached & ~NodeMap::kPassingAccess);
}

}  // namespace

EAccessMode Node::GetAccessMode() const {
    // Most queries find the mode known; a mode that another thread is about to change is as true
    // with the lock as without.
    const std::uint8_t known = map_.accessOf(id_).load(std::memory_order_acquire);
    if (known < NodeMap::kComputingAccess) return modeOf(known);
    const Entry entry(*this, "GetAccessMode");
    return const_cast<Node*>(this)->accessMode();
}

EAccessMode Node::accessMode() {
    std::atomic<std::uint8_t>& cached = map_.accessOf(id_);
    const std::uint8_t known = cached.load(std::memory_order_relaxed);
    if (known < NodeMap::kComputingAccess) {
        if (known & NodeMap::kPassingAccess) map_.accessIsVolatile() = true;
        return modeOf(known);
    }
    if (known == NodeMap::kComputingAccess)
        return RW;  // a cycle through this node: it adds no restriction of its own
    const Nesting nesting(*this);
    // Where it cannot be computed it stays marked: until the node is invalidated, the mode does not
    // restrict, and the device is not asked again. A limit is no such case: the same mode may be
    // within reach from elsewhere.
    cached.store(NodeMap::kComputingAccess, std::memory_order_relaxed);
    const bool outer = std::exchange(map_.accessIsVolatile(), false);
    const EAccessMode mode = [&] {
        try {
            return computeAccessMode(false);
        } catch (const LimitExceeded&) {
            cached.store(NodeMap::kUnknownAccess, std::memory_order_relaxed);
            throw;
        }
    }();
    // Categories only group, so that theirs is kept in any case.
    const bool keep = !map_.accessIsVolatile() || record().kind == NodeKind::Category;
    map_.accessIsVolatile() = outer || !keep;
    if (!keep) map_.passes(id_);
    cached.store(static_cast<std::uint8_t>(mode | (keep ? 0 : NodeMap::kPassingAccess)),
                 std::memory_order_release);
    return mode;
}

EAccessMode Node::relaxedAccessMode() {
    const Nesting nesting(*this);
    return computeAccessMode(true);
}

EAccessMode Node::computeAccessMode(bool relaxed) {
    EAccessMode mode = conditionalAccessMode(relaxed);
    if (mode == NI) return NI;
    mode = Combine(mode, sourceAccessMode(relaxed));
    mode = Combine(mode, static_cast<EAccessMode>(record().imposedAccess));
    if (imposedAccess_ != _UndefinedAccesMode)
        mode = Combine(mode, static_cast<EAccessMode>(imposedAccess_));
    return mode;
}

bool Node::condition(NodeId id, EAccessMode& mode) {
    Node& source = node(id);
    mode = source.accessMode();
    if (!IsReadable(mode)) return false;
    if (source.record().caching == NoCache) map_.accessIsVolatile() = true;
    return source.getInt({}) != 0;
}

EAccessMode Node::conditionalAccessMode(bool relaxed) {
    const NodeRecord& own = record();
    EAccessMode mode = RW;
    EAccessMode source = RW;
    if (own.isImplemented != kNoNode && !condition(own.isImplemented, source)) {
        if (IsReadable(source) || source == NI) return NI;
        mode = NA;
    }
    if (relaxed || !isConditional()) return mode;
    if (own.isAvailable != kNoNode && !condition(own.isAvailable, source)) mode = NA;
    if (mode != NA && own.isLocked != kNoNode) {
        const bool locked = condition(own.isLocked, source);
        if (!IsReadable(source))
            mode = NA;
        else if (locked)
            mode = Combine(mode, RO);
    }
    return mode;
}

EAccessMode Node::sourceAccessMode(bool) {
    return RW;
}

EAccessMode Node::declaredAccessMode() const {
    return RW;
}

void Node::requireReadable() {
    if (!IsReadable(accessMode())) throw notReadable(map_.call());
}

AccessException Node::notReadable(const Call& call) const {
    // Applications know the text of ToString without a full stop.
    const bool asText = std::strcmp(call.operation, "ToString") == 0;
    return AccessException(asText ? "Node is not readable" : "Node is not readable.", __FILE__,
                           __LINE__, entryPointOf(call).c_str(), errorNodeOf(*this).c_str(),
                           "AccessException");
}

bool Node::isWritable(bool verify) {
    // What can never be written is not worth asking the device about.
    const EAccessMode declared =
        Combine(declaredAccessMode(), static_cast<EAccessMode>(record().imposedAccess));
    return IsWritable(declared) && IsWritable(verify ? accessMode() : relaxedAccessMode());
}

void Node::requireWritable(bool verify) {
    if (!isWritable(verify)) throw NODE_ERROR(AccessException, *this)("Node is not writable.");
}

void Node::requireAvailable() {
    if (!IsAvailable(accessMode()))
        throw NODE_ERROR(AccessException, *this)("Node is not available.");
}

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE
