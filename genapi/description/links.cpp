#include "genapi/description/links.h"

#include <algorithm>
#include <numeric>

#include <GenApi/INode.h>

#include "genapi/description/caching.h"
#include "genapi/description/limits.h"

namespace GENAPI_NAMESPACE {
namespace Engine {

namespace {

bool isConverter(NodeKind kind) {
    return kind == NodeKind::Converter || kind == NodeKind::IntConverter;
}

// Elements by which a node has parts that are nodes.
bool owns(Element element) {
    return element == Element::pEnumEntry || element == Element::TextDesc ||
           element == Element::IntKey;
}

bool isPart(NodeKind kind) {
    return kind == NodeKind::EnumEntry || kind == NodeKind::TextDesc || kind == NodeKind::IntKey;
}

bool reads(NodeKind kind, Element element) {
    switch (element) {
        case Element::pAlias:
        case Element::pCastAlias:
        case Element::pInvalidator:
        case Element::pSelected:
        case Element::pBlockPolling:
            return false;
        case Element::pVariable:
        case Element::pExpression:
            return !isConverter(kind);
        default:
            return isLink(element) && !owns(element);
    }
}

// Elements that a written value is passed on to.
bool passesOn(Element element) {
    return element == Element::pValue || element == Element::pValueCopy ||
           element == Element::pValueIndexed || element == Element::pValueDefault;
}

bool writes(Element element) {
    return passesOn(element) || element == Element::pConvertTo || element == Element::pConvertFrom;
}

// Nodes in the order in which they were added, each once.
class NodeSet {
  public:
    explicit NodeSet(const Description& description) : seen_(description.nodeCount()) {}

    void add(NodeId id) {
        if (seen_[id]) return;
        seen_[id] = true;
        list_.push_back(id);
    }

    std::size_t size() const { return list_.size(); }
    NodeId operator[](std::size_t i) const { return list_[i]; }
    std::vector<NodeId> take() { return std::move(list_); }

  private:
    std::vector<bool> seen_;
    std::vector<NodeId> list_;
};

// Calls the action with the target of each link that the predicate takes, by its element.
template <typename Predicate, typename Action>
void eachTarget(const Description& description, NodeId id, Predicate predicate, Action action) {
    for (const Property& property : description.properties(id))
        if (isLink(property.element) && predicate(property.element)) action(property.node());
}

template <typename Predicate>
void addTargets(const Description& description, NodeId id, Predicate predicate, NodeSet& found) {
    eachTarget(description, id, predicate, [&](NodeId target) { found.add(target); });
}

void addRead(const Description& description, NodeId id, NodeSet& found) {
    const NodeKind kind = description.record(id).kind;
    addTargets(
        description, id, [kind](Element e) { return reads(kind, e); }, found);
}

Slice<NodeId> readersOf(const Description& description, NodeId id) {
    const LinkTables& links = description.links();
    return {links.dependents.data() + links.starts[id], links.readersEnd[id] - links.starts[id]};
}

Slice<NodeId> dependentsOf(const Description& description, NodeId id) {
    const LinkTables& links = description.links();
    return {links.dependents.data() + links.starts[id], links.starts[id + 1] - links.starts[id]};
}

// The nodes and all that depends on them, sorted.
ChangeSet withDependents(const Description& description, NodeSet reached) {
    for (std::size_t i = 0; i < reached.size(); ++i)
        for (const NodeId dependent : dependentsOf(description, reached[i]))
            reached.add(dependent);
    ChangeSet result = reached.take();
    std::sort(result.begin(), result.end());
    return result;
}

NodeSet setOf(const Description& description, NodeId id) {
    NodeSet result(description);
    result.add(id);
    return result;
}

// The node, and all nodes that a value written to it is passed on to.
NodeSet writtenThrough(const Description& description, NodeId id) {
    NodeSet reached = setOf(description, id);
    for (std::size_t i = 0; i < reached.size(); ++i)
        addTargets(description, reached[i], passesOn, reached);
    return reached;
}

bool takesValue(NodeKind kind) {
    switch (kind) {
        case NodeKind::Node:
        case NodeKind::Category:
        case NodeKind::Port:
        case NodeKind::SwissKnife:
        case NodeKind::IntSwissKnife:
            return false;
        default:
            return true;
    }
}

std::vector<NodeId> terminals(const Description& description, NodeId id) {
    std::vector<NodeId> found = writtenThrough(description, id).take();
    const auto isOnTheWay = [&](NodeId node) {
        bool passes = !takesValue(description.record(node).kind);
        eachTarget(description, node, passesOn, [&](NodeId) { passes = true; });
        return passes;
    };
    found.erase(std::remove_if(found.begin(), found.end(), isOnTheWay), found.end());
    return found;
}

std::vector<NodeId> invalidatingChildren(const Description& description, NodeId id) {
    NodeSet found(description);
    addRead(description, id, found);
    addTargets(
        description, id, [](Element e) { return owns(e) || e == Element::pInvalidator; }, found);
    for (const NodeId selector : selectingFeatures(description, id))
        found.add(selector);
    return found.take();
}

std::vector<NodeId> dependingNodes(const Description& description, NodeId id) {
    std::vector<NodeId> found = withDependents(description, setOf(description, id));
    found.erase(std::lower_bound(found.begin(), found.end(), id));
    return found;
}

// Calls read(reader, target), then other(source, dependent) for the links of the other sorts.
template <typename Read, typename Other>
void eachDependence(const Description& description, Read read, Other other) {
    const auto count = static_cast<NodeId>(description.nodeCount());
    for (NodeId id = 0; id < count; ++id) {
        const NodeKind kind = description.record(id).kind;
        for (const Property& property : description.properties(id)) {
            if (!isLink(property.element)) continue;
            if (reads(kind, property.element))
                read(id, property.node());
            else if (property.element == Element::pSelected)
                other(id, property.node());
            else if (owns(property.element) || property.element == Element::pInvalidator)
                other(property.node(), id);
        }
    }
}

void findDependents(const Description& description, LinkTables& links) {
    const std::size_t count = description.nodeCount();
    std::vector<std::uint32_t> others(count);
    links.starts.assign(count + 1, 0);
    eachDependence(
        description, [&](NodeId, NodeId target) { ++links.starts[target + 1]; },
        [&](NodeId source, NodeId) { ++others[source]; });
    links.readersEnd.resize(count);
    for (std::size_t i = 0; i < count; ++i) {
        const std::uint32_t readersEnd = links.starts[i] + links.starts[i + 1];
        links.starts[i + 1] = readersEnd + others[i];
        // While rows are filled: where the next reader, and the next of the others goes.
        links.readersEnd[i] = links.starts[i];
        others[i] = readersEnd;
    }
    links.dependents.resize(links.starts[count]);
    eachDependence(
        description,
        [&](NodeId reader, NodeId target) {
            links.dependents[links.readersEnd[target]++] = reader;
        },
        [&](NodeId source, NodeId dependent) { links.dependents[others[source]++] = dependent; });
}

void findSelections(const Description& description, LinkTables& links) {
    for (NodeId id = 0; id < description.nodeCount(); ++id)
        eachTarget(
            description, id, [](Element e) { return e == Element::pSelected; },
            [&](NodeId target) {
                links.selections.push_back({target, id});
            });
    // Selectors of one node stay in their order.
    std::stable_sort(links.selections.begin(), links.selections.end(),
                     [](Selection a, Selection b) { return a.selected < b.selected; });
}

// The nodes that name this one in pSelected.
void addSelectors(const Description& description, NodeId id, NodeSet& found) {
    const std::vector<Selection>& all = description.links().selections;
    auto place = std::lower_bound(all.begin(), all.end(), id,
                                  [](Selection s, NodeId node) { return s.selected < node; });
    for (; place != all.end() && place->selected == id; ++place)
        found.add(place->selector);
}

void findFeatures(const Description& description, std::vector<NodeRecord>& records) {
    const NodeId root = description.find("Root");
    if (root == kNoNode || records[root].kind != NodeKind::Category) return;
    std::vector<NodeId> open{root};
    records[root].feature = true;
    while (!open.empty()) {
        const NodeId id = open.back();
        open.pop_back();
        for (const Property& property : description.properties(id))
            if (property.element == Element::pFeature && !records[property.node()].feature) {
                records[property.node()].feature = true;
                open.push_back(property.node());
            }
    }
}

}  // namespace

void linkNodes(const Description& description, LinkTables& links,
               std::vector<NodeRecord>& records) {
    findCaching(description, records);
    findDependents(description, links);
    findSelections(description, links);
    findFeatures(description, records);
    links.invalidated.reset(new std::atomic<const ChangeSet*>[records.size()]());
    links.written.reset(new std::atomic<const ChangeSet*>[records.size()]());
}

std::vector<NodeId> children(const Description& description, NodeId id, ELinkType type) {
    NodeSet found(description);
    switch (type) {
        case ctReadingChildren:
            addRead(description, id, found);
            break;
        case ctWritingChildren:
            addTargets(description, id, writes, found);
            break;
        case ctInvalidatingChildren:
            return invalidatingChildren(description, id);
        case ctParentNodes:
            return parents(description, id);
        case ctDependingNodes:
            return dependingNodes(description, id);
        case ctTerminalNodes:
            return terminals(description, id);
        default:
            break;
    }
    return found.take();
}

std::vector<NodeId> parents(const Description& description, NodeId id) {
    NodeSet found(description);
    for (const NodeId reader : readersOf(description, id))
        found.add(reader);
    if (isPart(description.record(id).kind))
        for (const NodeId source : dependentsOf(description, id))
            eachTarget(description, source, owns, [&](NodeId part) {
                if (part == id) found.add(source);
            });
    return found.take();
}

std::vector<NodeId> selectedFeatures(const Description& description, NodeId id) {
    NodeSet found(description);
    addTargets(
        description, id, [](Element e) { return e == Element::pSelected; }, found);
    const auto named = static_cast<std::ptrdiff_t>(found.size());
    for (std::size_t i = 0; i < found.size(); ++i)
        for (const NodeId reader : readersOf(description, found[i]))
            if (description.record(reader).kind != NodeKind::Category) found.add(reader);
    std::vector<NodeId> result = found.take();
    // A selector that reads what it selects does not select itself by that.
    result.erase(std::remove(result.begin() + named, result.end(), id), result.end());
    return result;
}

std::vector<NodeId> selectingFeatures(const Description& description, NodeId id) {
    NodeSet found(description);
    addSelectors(description, id, found);
    const auto named = static_cast<std::ptrdiff_t>(found.size());
    if (!description.links().selections.empty() &&
        description.record(id).kind != NodeKind::Category) {
        NodeSet below = setOf(description, id);
        for (std::size_t i = 0; i < below.size(); ++i) {
            addRead(description, below[i], below);
            addSelectors(description, below[i], found);
        }
    }
    std::vector<NodeId> result = found.take();
    result.erase(std::remove(result.begin() + named, result.end(), id), result.end());
    std::sort(result.begin() + named, result.end());
    return result;
}

namespace {

const ChangeSet& everything(const Description& description) {
    const LinkTables& links = description.links();
    if (!links.everything) {
        ChangeSet all(description.nodeCount());
        std::iota(all.begin(), all.end(), NodeId{0});
        links.everything = std::make_unique<const ChangeSet>(std::move(all));
    }
    return *links.everything;
}

const ChangeSet& keep(const Description& description, std::atomic<const ChangeSet*>& slot,
                      ChangeSet made) {
    const LinkTables& links = description.links();
    const std::lock_guard<std::mutex> lock(links.mutex);
    const ChangeSet* kept = slot.load(std::memory_order_acquire);
    if (kept) return *kept;
    if (links.setSizes + made.size() > kMaxChangeSets) {
        kept = &everything(description);
    } else {
        links.setSizes += made.size();
        made.shrink_to_fit();
        links.sets.push_back(std::make_unique<const ChangeSet>(std::move(made)));
        kept = links.sets.back().get();
    }
    slot.store(kept, std::memory_order_release);
    return *kept;
}

}  // namespace

const ChangeSet& invalidatedBy(const Description& description, NodeId id) {
    std::atomic<const ChangeSet*>& slot = description.links().invalidated[id];
    if (const ChangeSet* known = slot.load(std::memory_order_acquire)) return *known;
    return keep(description, slot, withDependents(description, setOf(description, id)));
}

const ChangeSet& changedByWriteTo(const Description& description, NodeId id) {
    std::atomic<const ChangeSet*>& slot = description.links().written[id];
    if (const ChangeSet* known = slot.load(std::memory_order_acquire)) return *known;
    NodeSet chain = writtenThrough(description, id);
    if (chain.size() > 1) return keep(description, slot, withDependents(description, chain));
    // Nothing below: the same nodes as when it changes by itself.
    const ChangeSet& changed = invalidatedBy(description, id);
    slot.store(&changed, std::memory_order_release);
    return changed;
}

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE
