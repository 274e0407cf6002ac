// The dependencies between the nodes of a description: the link queries of INode and ISelector, the
// features below "Root", effective caching modes, cycles, and the sets of nodes that a change
// affects. linkrules.h defines the links.
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
    // Compressed rows: sources[starts[n] .. starts[n + 1]) are invalidated with node n. Those
    // before parentEnds[n] are its parents; a node may occur several times.
    std::vector<uint32_t> starts, parentEnds;
    std::vector<NodeId> sources;
    // Sorted pairs of a node and a selector that names it in pSelected.
    std::vector<std::pair<NodeId, NodeId>> selectors;

    // Change sets made so far, by node; null until first asked for.
    std::unique_ptr<std::atomic<const ChangeSet*>[]> invalidated;
    std::unique_ptr<std::atomic<const ChangeSet*>[]> written;
    mutable std::mutex mutex;  // guards what follows
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

// Throws RuntimeException if a value would be passed back to the node that it comes from.
void CheckValues(const Description& description);

// Computes the link tables and completes the records: feature, caching, accessCacheable. Throws
// RuntimeException if a node reads itself or a selector selects itself. In descriptions of schema
// 1.0, limits, conditions and categories may form cycles, but values may not.
void LinkNodes(const Description& description, LinkTables& links, std::vector<NodeRecord>& records);

// INode::GetChildren and GetParents; no node occurs twice.
std::vector<NodeId> Children(const Description& description, NodeId id, ELinkType type);
std::vector<NodeId> Parents(const Description& description, NodeId id);

// ISelector. The selected features: those that the selector names, then the nodes that read these.
// The selecting features: the selectors that name the node, then those that reach it.
std::vector<NodeId> SelectedFeatures(const Description& description, NodeId id);
std::vector<NodeId> SelectingFeatures(const Description& description, NodeId id);

// The node and everything that must be recomputed when it changes. Thread-safe; the set lives as
// long as the description. If the sets of a description need more memory than those of any
// description in use, this is the set of all nodes.
const ChangeSet& InvalidatedBy(const Description& description, NodeId id);

// The nodes that a successful write to the node changes: the node, the nodes below it down to the
// register or constant that takes the value, and everything that depends on these. Otherwise as
// InvalidatedBy.
const ChangeSet& ChangedByWriteTo(const Description& description, NodeId id);

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE
