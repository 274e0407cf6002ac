// What nodes tell about their links. Nothing here recurses, and each query takes time at most in
// proportion to the description.
#include <algorithm>
#include <numeric>

#include "genapi/description/limits.h"
#include "genapi/description/linkrules.h"
#include "genapi/description/links.h"

namespace GENAPI_NAMESPACE {
namespace Engine {

namespace {

void addReading(const Description& description, NodeId id, NodeCollection& found) {
    const NodeKind kind = description.record(id).kind;
    addTargets(
        description, id, [kind](Element e) { return reads(kind, e); }, found);
}

void remove(std::vector<NodeId>& nodes, NodeId id) {
    nodes.erase(std::remove(nodes.begin(), nodes.end(), id), nodes.end());
}

std::vector<NodeId> reading(const Description& description, NodeId id) {
    NodeCollection found(description);
    addReading(description, id, found);
    return found.take();
}

std::vector<NodeId> writing(const Description& description, NodeId id) {
    NodeCollection found(description);
    addTargets(description, id, writes, found);
    return found.take();
}

std::vector<NodeId> invalidating(const Description& description, NodeId id) {
    const NodeKind kind = description.record(id).kind;
    NodeCollection found(description);
    addTargets(
        description, id, [kind](Element e) { return invalidates(kind, e); }, found);
    for (const NodeId selector : selectingFeatures(description, id))
        found.add(selector);
    return found.take();
}

// The nodes where the links end that the predicate takes.
template <typename Predicate>
std::vector<NodeId> ends(const Description& description, NodeId id, Predicate predicate) {
    NodeCollection reached(description);
    std::vector<NodeId> found;
    reached.add(id);
    for (std::size_t i = 0; i < reached.size(); ++i) {
        bool isEnd = true;
        for (const Property& property : description.properties(reached[i]))
            if (predicate(property.element)) {
                isEnd = false;
                reached.add(property.node());
            }
        if (isEnd) found.push_back(reached[i]);
    }
    return found;
}

std::vector<NodeId> terminals(const Description& description, NodeId id) {
    std::vector<NodeId> found = ends(description, id, writes);
    const auto takesNoValue = [&](NodeId end) { return !isTerminal(description.record(end).kind); };
    found.erase(std::remove_if(found.begin(), found.end(), takesNoValue), found.end());
    return found;
}

// The nodes and everything that is invalidated with them.
ChangeSet dependents(const Description& description, const std::vector<NodeId>& nodes) {
    NodeCollection found(description);
    for (const NodeId id : nodes)
        found.add(id);
    for (std::size_t i = 0; i < found.size(); ++i)
        for (const NodeId source : description.links().invalidatedWith(found[i]))
            found.add(source);
    ChangeSet set = found.take();
    std::sort(set.begin(), set.end());
    return set;
}

// The selectors that name a node.
void addSelectorsOf(const Description& description, NodeId id, NodeCollection& found) {
    const auto& selectors = description.links().selectors;
    auto pair = std::lower_bound(selectors.begin(), selectors.end(), std::make_pair(id, NodeId{0}));
    for (; pair != selectors.end() && pair->first == id; ++pair)
        found.add(pair->second);
}

// The set for a slot, which the caller holds the lock for.
const ChangeSet& setOf(const Description& description, std::atomic<const ChangeSet*>& slot,
                       const std::vector<NodeId>& nodes) {
    const LinkTables& links = description.links();
    if (const ChangeSet* known = slot.load(std::memory_order_relaxed)) return *known;
    const ChangeSet* set = links.allNodes.get();
    if (!set) {
        links.sets.push_back(std::make_unique<ChangeSet>(dependents(description, nodes)));
        set = links.sets.back().get();
        links.setSize += set->size();
        if (links.setSize > kMaxChangeSetSize) {
            ChangeSet all(description.nodeCount());
            std::iota(all.begin(), all.end(), NodeId{0});
            links.allNodes = std::make_unique<ChangeSet>(std::move(all));
        }
    }
    slot.store(set, std::memory_order_release);
    return *set;
}

}  // namespace

std::vector<NodeId> children(const Description& description, NodeId id, ELinkType type) {
    switch (type) {
        case ctReadingChildren:
            return reading(description, id);
        case ctWritingChildren:
            return writing(description, id);
        case ctInvalidatingChildren:
            return invalidating(description, id);
        case ctTerminalNodes:
            return terminals(description, id);
        case ctParentNodes:
            return parents(description, id);
        case ctDependingNodes: {
            std::vector<NodeId> found = dependents(description, {id});
            remove(found, id);
            return found;
        }
        default:
            return {};
    }
}

std::vector<NodeId> parents(const Description& description, NodeId id) {
    const Slice<NodeId> row = description.links().parents(id);
    std::vector<NodeId> found(row.begin(), row.end());
    std::sort(found.begin(), found.end());
    found.erase(std::unique(found.begin(), found.end()), found.end());
    return found;
}

std::vector<NodeId> selectedFeatures(const Description& description, NodeId id) {
    NodeCollection found(description);
    addTargets(
        description, id, [](Element e) { return e == Element::pSelected; }, found);
    for (std::size_t i = 0; i < found.size(); ++i) {
        const NodeKind kind = description.record(found[i]).kind;
        for (const NodeId parent : description.links().parents(found[i])) {
            const NodeKind parentKind = description.record(parent).kind;
            const bool isOwner = kind == NodeKind::EnumEntry && parentKind == NodeKind::Enumeration;
            if (!isOwner && parentKind != NodeKind::Category) found.add(parent);
        }
    }
    std::vector<NodeId> selected = found.take();
    remove(selected, id);
    return selected;
}

std::vector<NodeId> selectingFeatures(const Description& description, NodeId id) {
    if (description.links().selectors.empty()) return {};
    NodeCollection read(description), found(description);
    read.add(id);
    std::size_t direct = 0;
    for (std::size_t i = 0; i < read.size(); ++i) {
        addSelectorsOf(description, read[i], found);
        if (i == 0) direct = found.size();
        if (description.record(read[i]).kind != NodeKind::Category)
            addReading(description, read[i], read);
    }
    std::vector<NodeId> selecting = found.take();
    std::sort(selecting.begin() + static_cast<std::ptrdiff_t>(direct), selecting.end());
    remove(selecting, id);
    return selecting;
}

const ChangeSet& invalidatedBy(const Description& description, NodeId id) {
    const LinkTables& links = description.links();
    std::atomic<const ChangeSet*>& slot = links.invalidated[id];
    if (const ChangeSet* known = slot.load(std::memory_order_acquire)) return *known;
    const std::lock_guard<std::mutex> lock(links.mutex);
    return setOf(description, slot, {id});
}

// Each node that a value passes through reads the next, so that the set of the node where the
// value ends holds them all, and serves for all.
const ChangeSet& changedByWriteTo(const Description& description, NodeId id) {
    const LinkTables& links = description.links();
    std::atomic<const ChangeSet*>& slot = links.written[id];
    if (const ChangeSet* known = slot.load(std::memory_order_acquire)) return *known;
    const std::vector<NodeId> nodes = ends(description, id, passesValue);
    if (nodes.size() != 1) {
        const std::lock_guard<std::mutex> lock(links.mutex);
        return setOf(description, slot, nodes);
    }
    const ChangeSet& set = invalidatedBy(description, nodes[0]);
    slot.store(&set, std::memory_order_release);
    return set;
}

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE
