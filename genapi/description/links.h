// Who depends on whom in a description: the link queries of INode and ISelector, the features below
// "Root", and the sets of nodes that a change touches.
//
// - A node reads every node that it links to, but for aliases, pSelected, pInvalidator,
//   pBlockPolling, and the entries and keys that it owns. A converter reads its value and the nodes
//   that stand for its two formulas; its variables are read by these.
// - A node is invalidated by what it reads, by its entries, by what it names in pInvalidator, and
//   by its selectors. What follows from that over any number of steps are its depending nodes.
// - A selector selects the nodes that it names in pSelected, in that order, and then whatever reads
//   these over any number of steps, nearest first; categories are left out.
// - A value that is written is passed on to pValue and its copies. The nodes at the ends of these
//   chains are terminals, unless they are formulas.
#pragma once

#include <atomic>
#include <cstdint>
#include <memory>
#include <mutex>
#include <vector>

#include "genapi/description/description.h"

namespace GENAPI_NAMESPACE {
namespace Engine {

struct Selection {
    NodeId selected, selector;
};

struct LinkTables {
    // Compressed rows: the nodes that node n invalidates directly are
    // dependents[starts[n] .. starts[n + 1]); those before readersEnd[n] read it.
    std::vector<std::uint32_t> starts, readersEnd;
    std::vector<NodeId> dependents;
    std::vector<Selection> selections;  // by pSelected, sorted
    // change sets made so far, by node; null until first asked for
    std::unique_ptr<std::atomic<const ChangeSet*>[]> invalidated;
    std::unique_ptr<std::atomic<const ChangeSet*>[]> written;
    mutable std::mutex mutex;  // held while a set is added
    mutable std::vector<std::unique_ptr<const ChangeSet>> sets;
    mutable std::size_t setSizes = 0;                     // sum of the sizes of the sets
    mutable std::unique_ptr<const ChangeSet> everything;  // all nodes; null until needed
};

// Computes the link tables and completes the records: feature, caching, accessCacheable.
// Throws RuntimeException for cycles.
void linkNodes(const Description& description, LinkTables& links, std::vector<NodeRecord>& records);

// INode::GetChildren and GetParents, without repetition.
std::vector<NodeId> children(const Description& description, NodeId id, ELinkType type);
std::vector<NodeId> parents(const Description& description, NodeId id);

// ISelector. Those that select the node by name come first.
std::vector<NodeId> selectedFeatures(const Description& description, NodeId id);
std::vector<NodeId> selectingFeatures(const Description& description, NodeId id);

// The node and everything that must be recomputed when it changes. Thread-safe; the set lives as
// long as the description. Sets are kept, so that their number times their size is bounded: a
// description made to exceed the bound gets the set of all nodes instead.
const ChangeSet& invalidatedBy(const Description& description, NodeId id);

// What a successful write to the node changes: the node, the nodes below it down to the register
// or constant that takes the value, and everything that depends on these. As invalidatedBy().
const ChangeSet& changedByWriteTo(const Description& description, NodeId id);

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE
