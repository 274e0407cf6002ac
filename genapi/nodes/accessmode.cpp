// Access modes: what a node allows is what its value source allows, restricted by what the
// description or the application imposes, by its conditions, and by whatever else it reads:
//
//   A node that is read and is not implemented makes its reader not implemented, one that is not
//   available makes it not available; the former is the stronger. Where the value is needed to
//   find the mode (conditions, the index of a number) or to use the node at all (the value of a
//   command), a node that cannot be read counts as not available.
//
// The device is asked in this order: for the mode of the value source, for those of the other nodes
// that are read, for the values of the conditions, for the modes of the parts. The first answer
// that a node is not implemented ends it.
#include <cstring>
#include <utility>

#include "genapi/description/nodedata.h"
#include "genapi/nodes/nodemap.h"

namespace GENAPI_NAMESPACE {
namespace Engine {

using GENICAM_NAMESPACE::AccessException;

namespace {

EAccessMode modeOf(std::uint8_t cached) {
    return static_cast<EAccessMode>(cached & ~NodeMap::kPassingAccess);
}

// A number picked by an index is what the picked number is: neither its own conditions nor its
// limits count.
bool isIndexed(const NodeTables& tables, const NodeRecord& record) {
    if (record.kind == NodeKind::Integer) return tables.integers[record.data].index != kNoNode;
    return record.kind == NodeKind::Float && tables.floats[record.data].index != kNoNode;
}

// Links that are read beside the value source and the parts of a node.
bool isRead(Element element) {
    switch (element) {
        case Element::pIsImplemented:
        case Element::pIsAvailable:
        case Element::pIsLocked:
        case Element::pBlockPolling:
        case Element::pError:
        case Element::pMin:
        case Element::pMax:
        case Element::pInc:
        case Element::pVariable:
        case Element::pCommandValue:
        case Element::pAddress:
        case Element::pIndex:
        case Element::pOffset:
        case Element::pLength:
            return true;
        default:
            return false;
    }
}

}  // namespace

EAccessMode restriction(EAccessMode found, bool valueCounts) {
    if (!IsAvailable(found)) return found;
    return valueCounts && !IsReadable(found) ? NA : RW;
}

EAccessMode Node::GetAccessMode() const {
    // Most queries find the mode known; a mode that another thread is about to change is as true
    // with the lock as without.
    const std::uint8_t known = map_.accessOf(id_).load(std::memory_order_acquire);
    if (known < NodeMap::kFirstUnknownAccess) return modeOf(known);
    const Entry entry(*this, "GetAccessMode");
    return const_cast<Node*>(this)->accessMode();
}

// A mode whose computation goes in a circle, or has failed, does not restrict.
EAccessMode Node::unrestrictedMode() const {
    const NodeKind kind = record().kind;
    return kind == NodeKind::EnumEntry || kind == NodeKind::Category ? RO : RW;
}

EAccessMode Node::accessMode() {
    std::atomic<std::uint8_t>& cached = map_.accessOf(id_);
    const std::uint8_t known = cached.load(std::memory_order_relaxed);
    if (known < NodeMap::kFirstUnknownAccess) {
        if (known & NodeMap::kPassingAccess) map_.accessIsVolatile() = true;
        return modeOf(known);
    }
    if (known != NodeMap::kUnknownAccess) return unrestrictedMode();
    const Nesting nesting(*this);
    cached.store(NodeMap::kComputingAccess, std::memory_order_relaxed);
    const bool outer = std::exchange(map_.accessIsVolatile(), false);
    const auto leave = [&](std::uint8_t why) {
        cached.store(why, std::memory_order_release);
        map_.accessIsVolatile() = outer;
    };
    EAccessMode mode;
    try {
        mode = computeAccessMode(false);
    } catch (const LimitExceeded&) {
        leave(NodeMap::kUnknownAccess);  // it may be within reach from elsewhere
        throw;
    } catch (...) {
        leave(NodeMap::kFailedAccess);  // the device is not asked again
        throw;
    }
    // Categories only group, so that theirs is kept in any case.
    const bool keep = !map_.accessIsVolatile() || record().kind == NodeKind::Category;
    map_.accessIsVolatile() = outer || !keep;
    if (!keep) map_.passes(id_);
    cached.store(static_cast<std::uint8_t>(mode | (keep ? 0 : NodeMap::kPassingAccess)),
                 std::memory_order_release);
    return mode;
}

EAccessMode Node::accessMode(bool relaxed) {
    if (!relaxed) return accessMode();
    const Nesting nesting(*this);
    return computeAccessMode(true);
}

EAccessMode Node::computeAccessMode(bool relaxed) {
    EAccessMode mode = static_cast<EAccessMode>(record().imposedAccess);
    if (imposedAccess_ != _UndefinedAccesMode)
        mode = Combine(mode, static_cast<EAccessMode>(imposedAccess_));
    mode = Combine(mode, sourceAccessMode(relaxed));
    if (isIndexed(description().tables(), record())) return mode;
    const bool grouping = record().kind == NodeKind::Category;  // only pIsImplemented counts
    if (mode != NI && !relaxed && !grouping) mode = Combine(mode, readNodesAccessMode());
    if (mode != NI) mode = conditionalAccessMode(mode, relaxed || grouping);
    if (mode != NI && !relaxed) mode = Combine(mode, partsAccessMode());
    return mode;
}

EAccessMode Node::readNodesAccessMode() {
    EAccessMode mode = RW;
    for (const Property& property : description().properties(id_)) {
        if (!isRead(property.element)) continue;
        const bool valueCounts = property.element == Element::pCommandValue;
        mode = Combine(mode, restriction(node(property.node()).accessMode(), valueCounts));
        if (mode == NI) break;
    }
    return mode;
}

bool Node::isTrue(Node& condition) {
    if (condition.record().caching == NoCache) map_.accessIsVolatile() = true;
    return condition.getInt({}) != 0;
}

EAccessMode Node::requiredAccessMode(NodeId condition, EAccessMode otherwise) {
    Node& source = node(condition);
    const EAccessMode mode = restriction(source.accessMode(), true);
    return IsAvailable(mode) && !isTrue(source) ? otherwise : mode;
}

EAccessMode Node::conditionalAccessMode(EAccessMode mode, bool relaxed) {
    const NodeRecord& own = record();
    if (own.isImplemented != kNoNode) {
        const EAccessMode implemented = requiredAccessMode(own.isImplemented, NI);
        if (!IsAvailable(implemented)) return Combine(mode, implemented);
    }
    if (relaxed) return mode;
    if (own.isAvailable != kNoNode) {
        const EAccessMode available = requiredAccessMode(own.isAvailable, NA);
        if (!IsAvailable(available)) return Combine(mode, available);
    }
    return own.isLocked != kNoNode ? lockableAccessMode(mode) : mode;
}

// Whether it is locked matters only for what can be written.
EAccessMode Node::lockableAccessMode(EAccessMode mode) {
    Node& lock = node(record().isLocked);
    const EAccessMode found = lock.accessMode();
    mode = Combine(mode, restriction(found, false));
    if (!IsWritable(mode)) return mode;
    if (!IsReadable(found)) return NA;
    return isTrue(lock) ? Combine(mode, RO) : mode;
}

EAccessMode Node::sourceAccessMode(bool) {
    return RW;
}

EAccessMode Node::partsAccessMode() {
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
    return IsWritable(declared) && IsWritable(accessMode(!verify));
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
