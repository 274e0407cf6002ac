// Queries of the links of a node. None recurses, and each takes time at most in proportion to the
// description.
#include <algorithm>
#include <numeric>

#include "genapi/description/limits.h"
#include "genapi/description/linkrules.h"
#include "genapi/description/links.h"

namespace GENAPI_NAMESPACE {
namespace Engine {

namespace {

void AddReading(const Description& description, NodeId id, NodeCollection& found) {
    const NodeKind kind = description.Record(id).kind;
    AddTargets(
        description, id, [kind](Element e) { return Reads(kind, e); }, found);
}

void Remove(std::vector<NodeId>& nodes, NodeId id) {
    nodes.erase(std::remove(nodes.begin(), nodes.end(), id), nodes.end());
}

std::vector<NodeId> Reading(const Description& description, NodeId id) {
    NodeCollection found(description);
    AddReading(description, id, found);
    return found.Take();
}

std::vector<NodeId> Writing(const Description& description, NodeId id) {
    NodeCollection found(description);
    AddTargets(description, id, Writes, found);
    return found.Take();
}

std::vector<NodeId> Invalidating(const Description& description, NodeId id) {
    const NodeKind kind = description.Record(id).kind;
    NodeCollection found(description);
    AddTargets(
        description, id, [kind](Element e) { return Invalidates(kind, e); }, found);
    for (const NodeId selector : SelectingFeatures(description, id))
        found.Add(selector);
    return found.Take();
}

// Follows the links that the predicate accepts, and returns the nodes at their ends.
template <typename Predicate>
std::vector<NodeId> Ends(const Description& description, NodeId id, Predicate predicate) {
    NodeCollection reached(description);
    std::vector<NodeId> found;
    reached.Add(id);
    for (size_t i = 0; i < reached.size(); ++i) {
        bool isEnd = true;
        for (const Property& property : description.Properties(reached[i]))
            if (predicate(property.element)) {
                isEnd = false;
                reached.Add(property.Target());
            }
        if (isEnd) found.push_back(reached[i]);
    }
    return found;
}

std::vector<NodeId> Terminals(const Description& description, NodeId id) {
    std::vector<NodeId> found = Ends(description, id, Writes);
    const auto takesNoValue = [&](NodeId end) { return !IsTerminal(description.Record(end).kind); };
    found.erase(std::remove_if(found.begin(), found.end(), takesNoValue), found.end());
    return found;
}

// The nodes and everything that is invalidated together with them.
ChangeSet Dependents(const Description& description, const std::vector<NodeId>& nodes) {
    NodeCollection found(description);
    for (const NodeId id : nodes)
        found.Add(id);
    for (size_t i = 0; i < found.size(); ++i)
        for (const NodeId source : description.Links().InvalidatedWith(found[i]))
            found.Add(source);
    ChangeSet set = found.Take();
    std::sort(set.begin(), set.end());
    return set;
}

// Adds the selectors that name the node.
void AddSelectorsOf(const Description& description, NodeId id, NodeCollection& found) {
    const auto& selectors = description.Links().selectors;
    auto pair = std::lower_bound(selectors.begin(), selectors.end(), std::make_pair(id, NodeId{0}));
    for (; pair != selectors.end() && pair->first == id; ++pair)
        found.Add(pair->second);
}

// The set of a slot. The caller holds the lock.
const ChangeSet& SetOf(const Description& description, std::atomic<const ChangeSet*>& slot,
                       const std::vector<NodeId>& nodes) {
    const LinkTables& links = description.Links();
    if (const ChangeSet* known = slot.load(std::memory_order_relaxed)) return *known;
    const ChangeSet* set = links.allNodes.get();
    if (!set) {
        links.sets.push_back(std::make_unique<ChangeSet>(Dependents(description, nodes)));
        set = links.sets.back().get();
        links.setSize += set->size();
        if (links.setSize > kMaxChangeSetSize) {
            ChangeSet all(description.NodeCount());
            std::iota(all.begin(), all.end(), NodeId{0});
            links.allNodes = std::make_unique<ChangeSet>(std::move(all));
        }
    }
    slot.store(set, std::memory_order_release);
    return *set;
}

}  // namespace

std::vector<NodeId> Children(const Description& description, NodeId id, ELinkType type) {
    switch (type) {
        case ctReadingChildren:
            return Reading(description, id);
        case ctWritingChildren:
            return Writing(description, id);
        case ctInvalidatingChildren:
            return Invalidating(description, id);
        case ctTerminalNodes:
            return Terminals(description, id);
        case ctParentNodes:
            return Parents(description, id);
        case ctDependingNodes: {
            std::vector<NodeId> found = Dependents(description, {id});
            Remove(found, id);
            return found;
        }
        default:
            return {};
    }
}

std::vector<NodeId> Parents(const Description& description, NodeId id) {
    const Slice<NodeId> row = description.Links().Parents(id);
    std::vector<NodeId> found(row.begin(), row.end());
    std::sort(found.begin(), found.end());
    found.erase(std::unique(found.begin(), found.end()), found.end());
    return found;
}

std::vector<NodeId> SelectedFeatures(const Description& description, NodeId id) {
    NodeCollection found(description);
    AddTargets(
        description, id, [](Element e) { return e == Element::pSelected; }, found);
    for (size_t i = 0; i < found.size(); ++i) {
        const NodeKind kind = description.Record(found[i]).kind;
        for (const NodeId parent : description.Links().Parents(found[i])) {
            const NodeKind parentKind = description.Record(parent).kind;
            const bool isOwner = kind == NodeKind::EnumEntry && parentKind == NodeKind::Enumeration;
            if (!isOwner && parentKind != NodeKind::Category) found.Add(parent);
        }
    }
    std::vector<NodeId> selected = found.Take();
    Remove(selected, id);
    return selected;
}

std::vector<NodeId> SelectingFeatures(const Description& description, NodeId id) {
    if (description.Links().selectors.empty()) return {};
    NodeCollection read(description), found(description);
    read.Add(id);
    size_t direct = 0;
    for (size_t i = 0; i < read.size(); ++i) {
        AddSelectorsOf(description, read[i], found);
        if (i == 0) direct = found.size();
        if (description.Record(read[i]).kind != NodeKind::Category)
            AddReading(description, read[i], read);
    }
    std::vector<NodeId> selecting = found.Take();
    std::sort(selecting.begin() + static_cast<ptrdiff_t>(direct), selecting.end());
    Remove(selecting, id);
    return selecting;
}

const ChangeSet& InvalidatedBy(const Description& description, NodeId id) {
    const LinkTables& links = description.Links();
    std::atomic<const ChangeSet*>& slot = links.invalidated[id];
    if (const ChangeSet* known = slot.load(std::memory_order_acquire)) return *known;
    const std::lock_guard<std::mutex> lock(links.mutex);
    return SetOf(description, slot, {id});
}

// Each node on the way of a value reads the next one, so the set of the last node contains all of
// them and serves for all.
const ChangeSet& ChangedByWriteTo(const Description& description, NodeId id) {
    const LinkTables& links = description.Links();
    std::atomic<const ChangeSet*>& slot = links.written[id];
    if (const ChangeSet* known = slot.load(std::memory_order_acquire)) return *known;
    const std::vector<NodeId> nodes = Ends(description, id, PassesValue);
    if (nodes.size() != 1) {
        const std::lock_guard<std::mutex> lock(links.mutex);
        return SetOf(description, slot, nodes);
    }
    const ChangeSet& set = InvalidatedBy(description, nodes[0]);
    slot.store(&set, std::memory_order_release);
    return set;
}

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE
