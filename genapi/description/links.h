// Who depends on whom in a description: the link queries of INode and ISelector, the features
// below "Root", effective caching modes, cycles, and the sets of nodes that a change touches.
// linkrules.h says what counts as which link.
#pragma once

#include <atomic>
#include <cstdint>
#include <memory>
#include <mutex>
#include <utility>
#include <vector>

#include "genapi/description/description.h"

namespace GENAPI_NAMESPACE {
namespace Engine {

struct LinkTables {
    // Compressed rows: sources[starts[n] .. starts[n + 1]) are invalidated with node n. Up to
    // parentEnds[n] they are its parents; the same node may occur several times.
    std::vector<uint32_t> starts, parentEnds;
    std::vector<NodeId> sources;
    // Sorted pairs of a node and a selector that names it in pSelected.
    std::vector<std::pair<NodeId, NodeId>> selectors;

    // Change sets made so far, by node; null until first asked for.
    std::unique_ptr<std::atomic<const ChangeSet*>[]> invalidated;
    std::unique_ptr<std::atomic<const ChangeSet*>[]> written;
    mutable std::mutex mutex;  // held while a set is made
    mutable std::vector<std::unique_ptr<const ChangeSet>> sets;
    mutable size_t setSize = 0;                         // nodes in all sets
    mutable std::unique_ptr<const ChangeSet> allNodes;  // once sets would need too much memory

    Slice<NodeId> InvalidatedWith(NodeId id) const {
        return {sources.data() + starts[id], starts[id + 1] - starts[id]};
    }
    Slice<NodeId> Parents(NodeId id) const {
        return {sources.data() + starts[id], parentEnds[id] - starts[id]};
    }
};

// Throws RuntimeException where a value is passed to the node that it comes from.
void CheckValues(const Description& description);

// Computes the link tables and completes the records: feature, caching, accessCacheable. Throws
// RuntimeException where a node reads itself or a selector selects itself. In descriptions of
// schema 1.0 limits, conditions and categories may go in circles, but values may not.
void LinkNodes(const Description& description, LinkTables& links, std::vector<NodeRecord>& records);

// INode::GetChildren and GetParents; no node occurs twice.
std::vector<NodeId> Children(const Description& description, NodeId id, ELinkType type);
std::vector<NodeId> Parents(const Description& description, NodeId id);

// ISelector: what a selector selects, directly and then through the nodes that read it; and the
// selectors of a node, those that name it and then those that reach it.
std::vector<NodeId> SelectedFeatures(const Description& description, NodeId id);
std::vector<NodeId> SelectingFeatures(const Description& description, NodeId id);

// The node and everything that must be recomputed when it changes. Thread-safe; the set lives as
// long as the description. A description that would need more memory for its sets than any in use
// gets the set of all nodes.
const ChangeSet& InvalidatedBy(const Description& description, NodeId id);

// What a successful write to the node changes: the node, the nodes below it down to the register
// or constant that takes the value, and everything that depends on these. As InvalidatedBy.
const ChangeSet& ChangedByWriteTo(const Description& description, NodeId id);

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE
