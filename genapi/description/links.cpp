#include "genapi/description/links.h"

#include <algorithm>

#include <Base/GCException.h>
#include <GenApi/INode.h>

namespace GENAPI_NAMESPACE {
namespace Engine {

namespace {

// Elements through which a node's value, limits, address or access mode rest on another node.
bool isRead(Element element) {
    switch (element) {
        case Element::pError:
        case Element::pAlias:
        case Element::pCastAlias:
        case Element::pInvalidator:
        case Element::pSelected:
        case Element::pValueCopy:
        case Element::pBlockPolling:
        case Element::pConvertTo:
            return false;
        default:
            return isLink(element);
    }
}

bool invalidates(Element element) {
    return isRead(element) || element == Element::pInvalidator;
}

// Elements that a written value passes on to.
bool isWritten(Element element) {
    switch (element) {
        case Element::pValue:
        case Element::pValueCopy:
        case Element::pValueIndexed:
        case Element::pValueDefault:
            return true;
        default:
            return false;
    }
}

void addUnique(std::vector<NodeId>& list, NodeId id) {
    if (std::find(list.begin(), list.end(), id) == list.end()) list.push_back(id);
}

template <typename Predicate>
std::vector<NodeId> targets(const Description& description, NodeId id, Predicate predicate) {
    std::vector<NodeId> found;
    for (const Property& property : description.properties(id))
        if (isLink(property.element) && predicate(property.element))
            addUnique(found, property.node());
    return found;
}

template <typename Follow>
std::vector<NodeId> closure(std::vector<NodeId> start, Follow follow) {
    std::vector<NodeId> reached = std::move(start);
    for (std::size_t i = 0; i < reached.size(); ++i)
        follow(reached[i], reached);
    return reached;
}

Slice<NodeId> sourcesOf(const Description& description, NodeId id) {
    const LinkTables& links = description.links();
    return {links.sources.data() + links.starts[id], links.starts[id + 1] - links.starts[id]};
}

ChangeSet dependents(const Description& description, std::vector<NodeId> start) {
    std::vector<bool> seen(description.nodeCount());
    std::vector<NodeId> reached;
    const auto add = [&](NodeId id) {
        if (!seen[id]) {
            seen[id] = true;
            reached.push_back(id);
        }
    };
    for (const NodeId id : start)
        add(id);
    for (std::size_t i = 0; i < reached.size(); ++i)
        for (const NodeId source : sourcesOf(description, reached[i]))
            add(source);
    std::sort(reached.begin(), reached.end());
    return reached;
}

// Elements through which the value itself is read.
bool carriesValue(Element element) {
    switch (element) {
        case Element::pValue:
        case Element::pValueCopy:
        case Element::pIndex:
        case Element::pValueIndexed:
        case Element::pValueDefault:
        case Element::pVariable:
        case Element::pAddress:
        case Element::IntSwissKnife:
        case Element::pOffset:
        case Element::pLength:
            return true;
        default:
            return false;
    }
}

bool carriesLimit(Element element) {
    return element == Element::pMin || element == Element::pMax || element == Element::pInc;
}

bool isCondition(Element element) {
    return element == Element::pIsImplemented || element == Element::pIsAvailable ||
           element == Element::pIsLocked;
}

// The nodes so that each comes after those that it links to by the elements that the predicate
// takes; without recursion, because chains may be long. Each way back into the path that is being
// walked is given to onCycle, and not followed.
template <typename Predicate, typename OnCycle>
std::vector<NodeId> targetsFirst(const Description& description, Predicate predicate,
                                 OnCycle onCycle) {
    struct Step {
        NodeId node;
        std::uint32_t next;  // property to look at
    };
    enum : std::uint8_t { kNew, kOpen, kDone };
    std::vector<std::uint8_t> state(description.nodeCount(), kNew);
    std::vector<NodeId> order;
    order.reserve(description.nodeCount());
    std::vector<Step> path;
    for (NodeId start = 0; start < description.nodeCount(); ++start) {
        if (state[start] != kNew) continue;
        state[start] = kOpen;
        path.push_back({start, 0});
        while (!path.empty()) {
            const NodeId node = path.back().node;
            const Slice<Property> properties = description.properties(node);
            if (path.back().next == properties.size()) {
                state[node] = kDone;
                order.push_back(node);
                path.pop_back();
                continue;
            }
            const Property& property = properties[path.back().next++];
            if (!isLink(property.element) || !predicate(property.element)) continue;
            const NodeId target = property.node();
            if (state[target] == kNew) {
                state[target] = kOpen;
                path.push_back({target, 0});
            } else if (state[target] == kOpen) {
                onCycle(path, target);
            }
        }
    }
    return order;
}

// Whether every step of a cycle goes through pValue.
template <typename Path>
bool isValueChain(const Description& description, const Path& path, std::size_t first) {
    for (std::size_t i = first; i < path.size(); ++i)
        if (description.properties(path[i].node)[path[i].next - 1].element != Element::pValue)
            return false;
    return true;
}

template <typename Path>
[[noreturn]] void throwCycle(const Description& description, const Path& path, NodeId back) {
    std::size_t first = 0;
    while (path[first].node != back)
        ++first;
    if (isValueChain(description, path, first))
        throw RUNTIME_EXCEPTION("WARNING: PropagateTerminals cycle detected in node = '%s'\n",
                                description.name(back).data());
    std::string text;
    for (std::size_t i = first; i < path.size() && text.size() < 500; ++i)
        text += std::string(description.name(path[i].node)) + " -> ";
    text += description.name(back);
    throw RUNTIME_EXCEPTION("ERROR : read cycle detected : %s", text.c_str());
}

// The caching mode that a node has without those it reads.
ECachingMode ownCaching(const Description& description, NodeId id) {
    const std::string_view text = description.text(id, Element::Cachable);
    if (text == "NoCache") return NoCache;
    switch (description.record(id).kind) {
        // What is written may read back differently.
        case NodeKind::SwissKnife:
        case NodeKind::Converter:
        case NodeKind::IntConverter:
        case NodeKind::FloatReg:
            return WriteAround;
        case NodeKind::Float:
            return description.find(id, Element::pValue) ? WriteThrough : WriteAround;
        default:
            return text == "WriteAround" ? WriteAround : WriteThrough;
    }
}

void findCaching(const Description& description, std::vector<NodeRecord>& records) {
    const auto order = targetsFirst(
        description, [](Element e) { return carriesValue(e) || carriesLimit(e); },
        [&](const auto& path, NodeId back) { throwCycle(description, path, back); });
    for (const NodeId id : order) {
        ECachingMode mode = ownCaching(description, id);
        for (const Property& property : description.properties(id))
            if (isLink(property.element) && carriesValue(property.element))
                mode = Combine(mode, static_cast<ECachingMode>(records[property.node()].caching));
        // An integer formula cannot be written, so that it matters only whether it may be cached.
        if (records[id].kind == NodeKind::IntSwissKnife && mode == WriteAround) mode = WriteThrough;
        records[id].caching = static_cast<std::uint8_t>(mode);
    }
}

void findCacheableAccess(const Description& description, std::vector<NodeRecord>& records) {
    const auto order = targetsFirst(description, isRead, [](const auto&, NodeId) {});
    for (const NodeId id : order) {
        bool cacheable = true;
        for (const Property& property : description.properties(id)) {
            if (!isLink(property.element) || !isRead(property.element)) continue;
            const NodeRecord& target = records[property.node()];
            if (target.accessCacheable == No ||
                (isCondition(property.element) && target.caching == NoCache))
                cacheable = false;
        }
        records[id].accessCacheable = cacheable ? Yes : No;
    }
}

void findParents(const Description& description, LinkTables& links) {
    const std::size_t count = description.nodeCount();
    links.starts.assign(count + 1, 0);
    const auto each = [&](auto action) {
        for (NodeId id = 0; id < count; ++id)
            for (const Property& property : description.properties(id))
                if (isLink(property.element) && invalidates(property.element))
                    action(id, property.node());
    };
    each([&](NodeId, NodeId target) { ++links.starts[target + 1]; });
    for (std::size_t i = 0; i < count; ++i)
        links.starts[i + 1] += links.starts[i];
    links.sources.resize(links.starts[count]);
    std::vector<std::uint32_t> next(links.starts.begin(), links.starts.end() - 1);
    each([&](NodeId source, NodeId target) { links.sources[next[target]++] = source; });
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
    findCacheableAccess(description, records);
    findParents(description, links);
    findFeatures(description, records);
    links.invalidated.reset(new std::atomic<const ChangeSet*>[records.size()]());
    links.written.reset(new std::atomic<const ChangeSet*>[records.size()]());
}

std::vector<NodeId> children(const Description& description, NodeId id, ELinkType type) {
    switch (type) {
        case ctReadingChildren:
            return targets(description, id, isRead);
        case ctInvalidatingChildren:
            return targets(description, id, invalidates);
        case ctWritingChildren:
            return targets(description, id, isWritten);
        case ctParentNodes:
            return parents(description, id);
        case ctDependingNodes: {
            std::vector<NodeId> found = dependents(description, {id});
            found.erase(std::remove(found.begin(), found.end(), id), found.end());
            return found;
        }
        default:
            return {};
    }
}

std::vector<NodeId> parents(const Description& description, NodeId id) {
    const auto sources = sourcesOf(description, id);
    std::vector<NodeId> found;
    for (const NodeId source : sources)
        addUnique(found, source);
    return found;
}

std::vector<NodeId> selectedFeatures(const Description& description, NodeId id) {
    return targets(description, id, [](Element e) { return e == Element::pSelected; });
}

std::vector<NodeId> selectingFeatures(const Description& description, NodeId id) {
    std::vector<NodeId> found;
    for (NodeId other = 0; other < description.nodeCount(); ++other)
        for (const Property& property : description.properties(other))
            if (property.element == Element::pSelected && property.node() == id)
                found.push_back(other);
    return found;
}

namespace {

const ChangeSet& cachedSet(const LinkTables& links, std::atomic<const ChangeSet*>& slot,
                           const Description& description, std::vector<NodeId> start) {
    auto made = std::make_unique<const ChangeSet>(dependents(description, std::move(start)));
    const std::lock_guard<std::mutex> lock(links.mutex);
    if (const ChangeSet* known = slot.load(std::memory_order_acquire)) return *known;
    links.sets.push_back(std::move(made));
    slot.store(links.sets.back().get(), std::memory_order_release);
    return *links.sets.back();
}

}  // namespace

const ChangeSet& invalidatedBy(const Description& description, NodeId id) {
    const LinkTables& links = description.links();
    if (const ChangeSet* known = links.invalidated[id].load(std::memory_order_acquire))
        return *known;
    return cachedSet(links, links.invalidated[id], description, {id});
}

const ChangeSet& changedByWriteTo(const Description& description, NodeId id) {
    const LinkTables& links = description.links();
    if (const ChangeSet* known = links.written[id].load(std::memory_order_acquire)) return *known;
    std::vector<NodeId> chain = closure({id}, [&](NodeId node, std::vector<NodeId>& reached) {
        for (const NodeId target : targets(description, node, isWritten))
            addUnique(reached, target);
    });
    return cachedSet(links, links.written[id], description, std::move(chain));
}

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE
