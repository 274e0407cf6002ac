#include "genapi/description/links.h"

#include <algorithm>

#include <Base/GCException.h>
#include <GenApi/INode.h>

namespace GENAPI_NAMESPACE {
namespace Engine {

namespace {

// Elements through which a node's value, limits, address or access mode rest on another node.
bool isRead(Element element)
{
    switch (element) {
    case Element::pError:
    case Element::pAlias:
    case Element::pCastAlias:
    case Element::pInvalidator:
    case Element::pSelected:
    case Element::pValueCopy:
    case Element::pBlockPolling:
    case Element::pConvertTo: return false;
    default: return isLink(element);
    }
}

bool invalidates(Element element)
{
    return isRead(element) || element == Element::pInvalidator;
}

// Elements that a written value passes on to.
bool isWritten(Element element)
{
    switch (element) {
    case Element::pValue:
    case Element::pValueCopy:
    case Element::pValueIndexed:
    case Element::pValueDefault: return true;
    default: return false;
    }
}

void addUnique(std::vector<NodeId>& list, NodeId id)
{
    if (std::find(list.begin(), list.end(), id) == list.end())
        list.push_back(id);
}

template <typename Predicate>
std::vector<NodeId> targets(const Description& description, NodeId id, Predicate predicate)
{
    std::vector<NodeId> found;
    for (const Property& property : description.properties(id))
        if (isLink(property.element) && predicate(property.element))
            addUnique(found, property.node());
    return found;
}

template <typename Follow>
std::vector<NodeId> closure(std::vector<NodeId> start, Follow follow)
{
    std::vector<NodeId> reached = std::move(start);
    for (std::size_t i = 0; i < reached.size(); ++i)
        follow(reached[i], reached);
    return reached;
}

Slice<NodeId> sourcesOf(const Description& description, NodeId id)
{
    const LinkTables& links = description.links();
    return {links.sources.data() + links.starts[id], links.starts[id + 1] - links.starts[id]};
}

ChangeSet dependents(const Description& description, std::vector<NodeId> start)
{
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

}  // namespace

void linkNodes(const Description& description, LinkTables& links, std::vector<NodeRecord>& records)
{
    const std::size_t count = records.size();
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
    links.invalidated.reset(new std::atomic<const ChangeSet*>[count]());
    links.written.reset(new std::atomic<const ChangeSet*>[count]());
    const NodeId root = description.find("Root");
    if (root != kNoNode && records[root].kind == NodeKind::Category) {
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
}

std::vector<NodeId> children(const Description& description, NodeId id, ELinkType type)
{
    switch (type) {
    case ctReadingChildren: return targets(description, id, isRead);
    case ctInvalidatingChildren: return targets(description, id, invalidates);
    case ctWritingChildren: return targets(description, id, isWritten);
    case ctParentNodes: return parents(description, id);
    case ctDependingNodes: {
        std::vector<NodeId> found = dependents(description, {id});
        found.erase(std::remove(found.begin(), found.end(), id), found.end());
        return found;
    }
    default: return {};
    }
}

std::vector<NodeId> parents(const Description& description, NodeId id)
{
    const auto sources = sourcesOf(description, id);
    std::vector<NodeId> found;
    for (const NodeId source : sources)
        addUnique(found, source);
    return found;
}

std::vector<NodeId> selectedFeatures(const Description& description, NodeId id)
{
    return targets(description, id, [](Element e) { return e == Element::pSelected; });
}

std::vector<NodeId> selectingFeatures(const Description& description, NodeId id)
{
    std::vector<NodeId> found;
    for (NodeId other = 0; other < description.nodeCount(); ++other)
        for (const Property& property : description.properties(other))
            if (property.element == Element::pSelected && property.node() == id)
                found.push_back(other);
    return found;
}

namespace {

const ChangeSet& cachedSet(const LinkTables& links, std::atomic<const ChangeSet*>& slot,
                           const Description& description, std::vector<NodeId> start)
{
    auto made = std::make_unique<const ChangeSet>(dependents(description, std::move(start)));
    const std::lock_guard<std::mutex> lock(links.mutex);
    if (const ChangeSet* known = slot.load(std::memory_order_acquire))
        return *known;
    links.sets.push_back(std::move(made));
    slot.store(links.sets.back().get(), std::memory_order_release);
    return *links.sets.back();
}

}  // namespace

const ChangeSet& invalidatedBy(const Description& description, NodeId id)
{
    const LinkTables& links = description.links();
    if (const ChangeSet* known = links.invalidated[id].load(std::memory_order_acquire))
        return *known;
    return cachedSet(links, links.invalidated[id], description, {id});
}

const ChangeSet& changedByWriteTo(const Description& description, NodeId id)
{
    const LinkTables& links = description.links();
    if (const ChangeSet* known = links.written[id].load(std::memory_order_acquire))
        return *known;
    std::vector<NodeId> chain =
        closure({id}, [&](NodeId node, std::vector<NodeId>& reached) {
            for (const NodeId target : targets(description, node, isWritten))
                addUnique(reached, target);
        });
    return cachedSet(links, links.written[id], description, std::move(chain));
}

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE
