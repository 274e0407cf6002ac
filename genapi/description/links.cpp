// The links that are computed once, when a description is loaded.
#include "genapi/description/links.h"

#include <algorithm>
#include <string>

#include <Base/GCException.h>
#include <GenApi/INode.h>

#include "genapi/description/linkrules.h"

namespace GENAPI_NAMESPACE {
namespace Engine {

namespace {

// Calls action(node, property) for each link element of the description.
template <typename Action>
void eachLink(const Description& description, Action action) {
    const auto count = static_cast<NodeId>(description.nodeCount());
    for (NodeId id = 0; id < count; ++id)
        for (const Property& property : description.properties(id))
            if (isLink(property.element)) action(id, property);
}

void findSources(const Description& description, LinkTables& links) {
    const std::size_t count = description.nodeCount();
    std::vector<std::uint32_t>& starts = links.starts;
    std::vector<std::uint32_t>& parentEnds = links.parentEnds;
    starts.assign(count + 1, 0);
    parentEnds.assign(count, 0);
    // action(node, what is invalidated with it, whether that is a parent)
    const auto each = [&](auto action) {
        eachLink(description, [&](NodeId id, const Property& property) {
            const NodeKind kind = description.record(id).kind;
            if (property.element == Element::pSelected)
                action(id, property.node(), false);
            else if (invalidates(kind, property.element))
                action(property.node(), id, isParent(kind, property.element));
        });
    };
    each([&](NodeId node, NodeId, bool parent) {
        ++starts[node + 1];
        if (parent) ++parentEnds[node];
    });
    std::vector<std::uint32_t> otherEnds(count);
    for (std::size_t i = 0; i < count; ++i) {
        starts[i + 1] += starts[i];
        otherEnds[i] = starts[i] + parentEnds[i];
        parentEnds[i] = starts[i];
    }
    links.sources.resize(starts[count]);
    each([&](NodeId node, NodeId source, bool parent) {
        links.sources[(parent ? parentEnds : otherEnds)[node]++] = source;
    });
}

void findSelectors(const Description& description, LinkTables& links) {
    eachLink(description, [&](NodeId id, const Property& property) {
        if (property.element == Element::pSelected)
            links.selectors.emplace_back(property.node(), id);
    });
    std::sort(links.selectors.begin(), links.selectors.end());
}

// Elements on which the value or its place rests.
bool carriesValue(NodeKind kind, Element element) {
    switch (element) {
        case Element::pVariable:
        case Element::pExpression:
            return !isConverter(kind);
        case Element::pIndex:
        case Element::pAddress:
        case Element::IntSwissKnife:
        case Element::pOffset:
        case Element::pLength:
            return true;
        default:
            return writes(element);
    }
}

bool carriesLimit(Element element) {
    return element == Element::pMin || element == Element::pMax || element == Element::pInc;
}

// A node on the way down to what nodes rest on, and its property that is looked at next.
struct Step {
    NodeId node;
    std::uint32_t next;
};
using Path = std::vector<Step>;

Element elementOf(const Description& description, const Step& step) {
    return description.properties(step.node)[step.next - 1].element;
}

[[noreturn]] void throwCycle(const Description& description, const Path& path, NodeId back) {
    const auto first = std::find_if(path.begin(), path.end(),
                                    [back](const Step& step) { return step.node == back; });
    const bool isValueCycle = std::all_of(
        first, path.end(), [&](const Step& step) { return writes(elementOf(description, step)); });
    if (isValueCycle)
        throw RUNTIME_EXCEPTION("WARNING: PropagateTerminals cycle detected in node = '%s'\n",
                                description.name(back).data());
    constexpr std::size_t kLongest = 500;
    std::string names;
    for (auto step = first; step != path.end() && names.size() < kLongest; ++step)
        names.append(description.name(step->node)).append(" -> ");
    names.append(description.name(back));
    throw RUNTIME_EXCEPTION("ERROR : read cycle detected : %s", names.c_str());
}

// The nodes so that each comes after those that its value and limits rest on. Without recursion:
// chains may be long.
std::vector<NodeId> targetsFirst(const Description& description) {
    enum : std::uint8_t { kNew, kOpen, kDone };
    std::vector<std::uint8_t> state(description.nodeCount(), kNew);
    std::vector<NodeId> order;
    order.reserve(description.nodeCount());
    Path path;
    const auto enter = [&](NodeId node) {
        state[node] = kOpen;
        path.push_back({node, 0});
    };
    for (NodeId start = 0; start < description.nodeCount(); ++start) {
        if (state[start] == kNew) enter(start);
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
            if (!carriesValue(description.record(node).kind, property.element) &&
                !carriesLimit(property.element))
                continue;
            if (state[property.node()] == kNew)
                enter(property.node());
            else if (state[property.node()] == kOpen)
                throwCycle(description, path, property.node());
        }
    }
    return order;
}

// The caching mode that a node has without those that it rests on.
ECachingMode ownCaching(const Description& description, NodeId id) {
    const std::string_view text = description.text(id, Element::Cachable);
    if (text == "NoCache") return NoCache;
    switch (description.record(id).kind) {
        // What is written to them may read back differently: they round.
        case NodeKind::Float:
        case NodeKind::FloatReg:
        case NodeKind::SwissKnife:
        case NodeKind::Converter:
        case NodeKind::IntConverter:
            return WriteAround;
        default:
            return text == "WriteAround" ? WriteAround : WriteThrough;
    }
}

// A node takes on the modes of the nodes that it writes to. Of the others that its value rests on
// it matters only whether they may be cached.
void findCaching(const Description& description, std::vector<NodeRecord>& records) {
    for (const NodeId id : targetsFirst(description)) {
        ECachingMode mode = ownCaching(description, id);
        for (const Property& property : description.properties(id)) {
            if (!carriesValue(records[id].kind, property.element)) continue;
            const auto other = static_cast<ECachingMode>(records[property.node()].caching);
            if (writes(property.element) || other == NoCache) mode = Combine(mode, other);
        }
        records[id].caching = static_cast<std::uint8_t>(mode);
    }
}

// An access mode may not be kept where a condition may not, nor where it rests on such a mode.
void findCacheableAccess(const LinkTables& links, std::vector<NodeRecord>& records) {
    const auto isVolatile = [&](NodeId condition) {
        return condition != kNoNode && records[condition].caching == NoCache;
    };
    std::vector<NodeId> found;
    const auto add = [&](NodeId id) {
        if (records[id].accessCacheable == No) return;
        records[id].accessCacheable = No;
        found.push_back(id);
    };
    for (NodeId id = 0; id < records.size(); ++id)
        if (isVolatile(records[id].isImplemented) || isVolatile(records[id].isAvailable) ||
            isVolatile(records[id].isLocked))
            add(id);
    for (std::size_t i = 0; i < found.size(); ++i)
        for (const NodeId parent : links.parents(found[i]))
            add(parent);
}

void findFeatures(const Description& description, std::vector<NodeRecord>& records) {
    const NodeId root = description.find("Root");
    if (root == kNoNode || records[root].kind != NodeKind::Category) return;
    NodeCollection features(description);
    features.add(root);
    for (std::size_t i = 0; i < features.size(); ++i) {
        records[features[i]].feature = true;
        addTargets(
            description, features[i], [](Element e) { return e == Element::pFeature; }, features);
    }
}

// A category is shown to those who may see something in it: its visibility is the least of those
// of its features, whatever its own element says.
void findCategoryVisibility(const Description& description, std::vector<NodeRecord>& records) {
    struct Membership {
        NodeId feature, category;
    };
    std::vector<Membership> members;
    for (NodeId id = 0; id < records.size(); ++id) {
        if (records[id].kind != NodeKind::Category) continue;
        records[id].visibility = Invisible;
        for (const Property& property : description.properties(id))
            if (property.element == Element::pFeature) members.push_back({property.node(), id});
    }
    const auto byFeature = [](const Membership& a, const Membership& b) {
        return a.feature < b.feature;
    };
    std::sort(members.begin(), members.end(), byFeature);
    // From the most visible features upwards, so that each category is settled once.
    for (std::uint8_t level = Beginner; level < Invisible; ++level) {
        std::vector<NodeId> open;
        for (const Membership& member : members)
            if (records[member.feature].visibility == level) open.push_back(member.feature);
        while (!open.empty()) {
            const auto [first, last] = std::equal_range(members.begin(), members.end(),
                                                        Membership{open.back(), 0}, byFeature);
            open.pop_back();
            for (auto member = first; member != last; ++member) {
                std::uint8_t& visibility = records[member->category].visibility;
                if (visibility <= level) continue;
                visibility = level;
                open.push_back(member->category);
            }
        }
    }
}

}  // namespace

void linkNodes(const Description& description, LinkTables& links,
               std::vector<NodeRecord>& records) {
    findSources(description, links);
    findSelectors(description, links);
    findCaching(description, records);
    findCacheableAccess(links, records);
    findCategoryVisibility(description, records);
    findFeatures(description, records);
    links.invalidated = std::make_unique<std::atomic<const ChangeSet*>[]>(records.size());
    links.written = std::make_unique<std::atomic<const ChangeSet*>[]>(records.size());
}

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE
