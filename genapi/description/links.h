// Who depends on whom in a description: reverse links, the link queries of INode, the features
// below "Root", effective caching modes, cycles, and the sets of nodes that a change touches.
#pragma once

#include <atomic>
#include <cstdint>
#include <memory>
#include <mutex>
#include <vector>

#include "genapi/description/description.h"

namespace GENAPI_NAMESPACE {
namespace Engine {

struct LinkTables {
    // compressed rows: the nodes that name node n are sources[starts[n] .. starts[n + 1])
    std::vector<std::uint32_t> starts;
    std::vector<NodeId> sources;
    // change sets made so far, by node; null until first asked for
    std::unique_ptr<std::atomic<const ChangeSet*>[]> invalidated;
    std::unique_ptr<std::atomic<const ChangeSet*>[]> written;
    mutable std::mutex mutex;  // held while a set is made
    mutable std::vector<std::unique_ptr<const ChangeSet>> sets;
};

// Computes the link tables and completes the records: feature, caching, accessCacheable.
// Throws RuntimeException for cycles.
void linkNodes(const Description& description, LinkTables& links, std::vector<NodeRecord>& records);

// INode::GetChildren and GetParents, in the order in which they are reported.
std::vector<NodeId> children(const Description& description, NodeId id, ELinkType type);
std::vector<NodeId> parents(const Description& description, NodeId id);

// ISelector: the direct targets of pSelected, and the nodes that name this one in pSelected.
std::vector<NodeId> selectedFeatures(const Description& description, NodeId id);
std::vector<NodeId> selectingFeatures(const Description& description, NodeId id);

// The node and everything that must be recomputed when it changes. Thread-safe; the set lives as
// long as the description.
const ChangeSet& invalidatedBy(const Description& description, NodeId id);

// What a successful write to the node changes: the node, the nodes below it down to the register
// or constant that takes the value, and everything that depends on these.
const ChangeSet& changedByWriteTo(const Description& description, NodeId id);

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE
