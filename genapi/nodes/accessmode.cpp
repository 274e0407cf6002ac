// Access modes. A node allows what its value source allows, restricted by the description, the
// application, its conditions, and every other node that it reads:
//
//   A node that reads a node that is not implemented is not implemented itself; one that reads a
//   node that is not available is not available. "Not implemented" prevails. Where the value is
//   needed, a node that cannot be read counts as not available: to find the mode (conditions, the
//   index of a number), or to use the node at all (the value of a command).
//
// The device is asked in this order: for the mode of the value source, for the modes of the other
// nodes that are read, for the values of the conditions, for the modes of the parts. The first
// "not implemented" ends the search.
#include <cstring>

#include "genapi/description/nodedata.h"
#include "genapi/nodes/nodemap.h"

namespace GENAPI_NAMESPACE {
namespace Engine {

using GENICAM_NAMESPACE::AccessException;

namespace {

EAccessMode ModeOf(uint8_t cached) {
    return static_cast<EAccessMode>(cached & ~NodeMap::kPassingAccess);
}

// A number picked by an index has the mode of the picked number: its own conditions and limits do
// not count.
bool IsIndexed(const NodeTables& tables, const NodeRecord& record) {
    if (record.kind == NodeKind::Integer) return tables.integers[record.data].index != kNoNode;
    return record.kind == NodeKind::Float && tables.floats[record.data].index != kNoNode;
}

// Links that are read in addition to the value source and the parts of a node.
bool IsRead(Element element) {
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

EAccessMode Restriction(EAccessMode found, bool valueCounts) {
    if (!IsAvailable(found)) return found;
    return valueCounts && !IsReadable(found) ? NA : RW;
}

EAccessMode Node::GetAccessMode() const {
    // Most queries find the mode known. Reading it without the lock is as good: another thread may
    // change it right after the answer either way.
    const uint8_t known = map_.Access(id_, std::memory_order_acquire);
    if (known < NodeMap::kFirstUnknownAccess) return ModeOf(known);
    const Entry entry(*this, "GetAccessMode");
    return const_cast<Node*>(this)->AccessMode();
}

// A mode that depends on itself, or whose computation failed, does not restrict.
EAccessMode Node::UnrestrictedMode() const {
    const NodeKind kind = Record().kind;
    return kind == NodeKind::EnumEntry || kind == NodeKind::Category ? RO : RW;
}

EAccessMode Node::AccessMode() {
    const uint8_t known = map_.Access(id_);
    if (known < NodeMap::kFirstUnknownAccess) {
        if (known & NodeMap::kPassingAccess) map_.SetAccessVolatile(true);
        return ModeOf(known);
    }
    if (known != NodeMap::kUnknownAccess) return UnrestrictedMode();
    const Nesting nesting(*this);
    map_.SetAccess(id_, NodeMap::kComputingAccess);
    const bool outer = map_.SetAccessVolatile(false);
    const auto leave = [&](uint8_t why) {
        map_.SetAccess(id_, why);
        map_.SetAccessVolatile(outer);
    };
    EAccessMode mode;
    try {
        mode = ComputeAccessMode(false);
    } catch (const LimitExceeded&) {
        leave(NodeMap::kUnknownAccess);  // another way to the node may stay within the limits
        throw;
    } catch (...) {
        leave(NodeMap::kFailedAccess);  // the device is not asked again
        throw;
    }
    // Categories only group, so their modes are always kept.
    const bool keep = !map_.AccessIsVolatile() || Record().kind == NodeKind::Category;
    map_.SetAccessVolatile(outer || !keep);
    if (!keep) map_.LetPass(id_);
    map_.SetAccess(id_, static_cast<uint8_t>(mode | (keep ? 0 : NodeMap::kPassingAccess)));
    return mode;
}

EAccessMode Node::AccessMode(bool relaxed) {
    if (!relaxed) return AccessMode();
    const Nesting nesting(*this);
    return ComputeAccessMode(true);
}

EAccessMode Node::ComputeAccessMode(bool relaxed) {
    EAccessMode mode = static_cast<EAccessMode>(Record().imposedAccess);
    if (imposedAccess_ != _UndefinedAccesMode)
        mode = Combine(mode, static_cast<EAccessMode>(imposedAccess_));
    mode = Combine(mode, SourceAccessMode(relaxed));
    if (IsIndexed(CameraDescription().Tables(), Record())) return mode;
    const bool grouping = Record().kind == NodeKind::Category;  // only pIsImplemented counts
    if (mode != NI && !relaxed && !grouping) mode = Combine(mode, ReadNodesAccessMode());
    if (mode != NI) mode = ConditionalAccessMode(mode, relaxed || grouping);
    if (mode != NI && !relaxed) mode = Combine(mode, PartsAccessMode());
    return mode;
}

EAccessMode Node::ReadNodesAccessMode() {
    EAccessMode mode = RW;
    for (const Property& property : CameraDescription().Properties(id_)) {
        if (!IsRead(property.element)) continue;
        const bool valueCounts = property.element == Element::pCommandValue;
        mode = Combine(mode, Restriction(NodeAt(property.Target()).AccessMode(), valueCounts));
        if (mode == NI) break;
    }
    return mode;
}

bool Node::IsTrue(Node& condition) {
    if (condition.Record().caching == NoCache) map_.SetAccessVolatile(true);
    return condition.GetInt({}) != 0;
}

EAccessMode Node::RequiredAccessMode(NodeId condition, EAccessMode otherwise) {
    Node& source = NodeAt(condition);
    const EAccessMode mode = Restriction(source.AccessMode(), true);
    return IsAvailable(mode) && !IsTrue(source) ? otherwise : mode;
}

EAccessMode Node::ConditionalAccessMode(EAccessMode mode, bool relaxed) {
    const NodeRecord& own = Record();
    if (own.isImplemented != kNoNode) {
        const EAccessMode implemented = RequiredAccessMode(own.isImplemented, NI);
        if (!IsAvailable(implemented)) return Combine(mode, implemented);
    }
    if (relaxed) return mode;
    if (own.isAvailable != kNoNode) {
        const EAccessMode available = RequiredAccessMode(own.isAvailable, NA);
        if (!IsAvailable(available)) return Combine(mode, available);
    }
    return own.isLocked != kNoNode ? LockableAccessMode(mode) : mode;
}

// The lock matters only if the node can be written.
EAccessMode Node::LockableAccessMode(EAccessMode mode) {
    Node& lock = NodeAt(Record().isLocked);
    const EAccessMode found = lock.AccessMode();
    mode = Combine(mode, Restriction(found, false));
    if (!IsWritable(mode)) return mode;
    if (!IsReadable(found)) return NA;
    return IsTrue(lock) ? Combine(mode, RO) : mode;
}

EAccessMode Node::SourceAccessMode(bool) {
    return RW;
}

EAccessMode Node::PartsAccessMode() {
    return RW;
}

EAccessMode Node::DeclaredAccessMode() const {
    return RW;
}

void Node::RequireReadable() {
    if (!IsReadable(AccessMode())) throw NotReadable(map_.CurrentCall());
}

AccessException Node::NotReadable(const Call& call) const {
    // Applications expect the text of ToString without a full stop.
    const bool asText = std::strcmp(call.operation, "ToString") == 0;
    return AccessException(asText ? "Node is not readable" : "Node is not readable.", __FILE__,
                           __LINE__, EntryPointOf(call).c_str(), ErrorNodeOf(*this).c_str(),
                           "AccessException");
}

bool Node::CanWrite(bool verify) {
    // Do not ask the device about a node that can never be written.
    const EAccessMode declared =
        Combine(DeclaredAccessMode(), static_cast<EAccessMode>(Record().imposedAccess));
    return IsWritable(declared) && IsWritable(AccessMode(!verify));
}

void Node::RequireWritable(bool verify) {
    if (!CanWrite(verify)) throw NODE_ERROR(AccessException, *this)("Node is not writable.");
}

void Node::RequireAvailable() {
    if (!IsAvailable(AccessMode()))
        throw NODE_ERROR(AccessException, *this)("Node is not available.");
}

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE
