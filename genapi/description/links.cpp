// The links that are computed once, when a description is loaded.
#include "genapi/description/links.h"

#include <algorithm>
#include <string>

#include <Base/GCException.h>
#include <GenApi/INode.h>

#include "genapi/description/limits.h"
#include "genapi/description/linkrules.h"

namespace GENAPI_NAMESPACE {
namespace Engine {

namespace {

// Calls action(node, property) for each link element of the description.
template <typename Action>
void EachLink(const Description& description, Action action) {
    const auto count = static_cast<NodeId>(description.NodeCount());
    for (NodeId id = 0; id < count; ++id)
        for (const Property& property : description.Properties(id))
            if (IsLink(property.element)) action(id, property);
}

void FindSources(const Description& description, LinkTables& links) {
    const size_t count = description.NodeCount();
    std::vector<uint32_t>& starts = links.starts;
    std::vector<uint32_t>& parentEnds = links.parentEnds;
    starts.assign(count + 1, 0);
    parentEnds.assign(count, 0);
    // Calls action(node, a node that is invalidated with it, whether that one is a parent).
    const auto each = [&](auto action) {
        EachLink(description, [&](NodeId id, const Property& property) {
            const NodeKind kind = description.Record(id).kind;
            if (property.element == Element::pSelected)
                action(id, property.Target(), false);
            else if (Invalidates(kind, property.element))
                action(property.Target(), id, IsParent(kind, property.element));
        });
    };
    each([&](NodeId node, NodeId, bool parent) {
        ++starts[node + 1];
        if (parent) ++parentEnds[node];
    });
    std::vector<uint32_t> otherEnds(count);
    for (size_t i = 0; i < count; ++i) {
        starts[i + 1] += starts[i];
        otherEnds[i] = starts[i] + parentEnds[i];
        parentEnds[i] = starts[i];
    }
    links.sources.resize(starts[count]);
    each([&](NodeId node, NodeId source, bool parent) {
        links.sources[(parent ? parentEnds : otherEnds)[node]++] = source;
    });
}

void FindSelectors(const Description& description, LinkTables& links) {
    EachLink(description, [&](NodeId id, const Property& property) {
        if (property.element == Element::pSelected)
            links.selectors.emplace_back(property.Target(), id);
    });
    std::sort(links.selectors.begin(), links.selectors.end());
}

// Whether the element determines the value of the node, or the place of the value.
bool CarriesValue(NodeKind kind, Element element) {
    switch (element) {
        case Element::pVariable:
        case Element::pExpression:
            return !IsConverter(kind);
        case Element::pIndex:
        case Element::pAddress:
        case Element::pOffset:
        case Element::pLength:
            return true;
        default:
            return Writes(element);
    }
}

// Whether any answer of the node reads the target: its value, its limits, or its access mode.
bool IsRead(NodeKind kind, Element element) {
    if (kind == NodeKind::EnumEntry) return false;
    return Reads(kind, element) || element == Element::pVariable ||
           element == Element::pBlockPolling;
}

// A node on the way down, and its property to look at next.
struct Step {
    NodeId node;
    uint32_t next;
};
using Path = std::vector<Step>;

// Goes down from each node in turn along the links for which follows(kind, element) holds. Gives
// the nodes in an order in which each comes after those it links to, or else the nodes of a cycle.
// It does not recurse, because chains may be long.
class Descent {
  public:
    template <typename Follows>
    Descent(const Description& description, Follows follows)
        : description_(description), state_(description.NodeCount(), kNew) {
        order_.reserve(description.NodeCount());
        for (NodeId start = 0; start < description.NodeCount() && cycle_.empty(); ++start) {
            if (state_[start] != kNew) continue;
            Enter(start);
            while (!path_.empty() && cycle_.empty())
                StepDown(follows);
        }
    }

    const std::vector<NodeId>& Order() const { return order_; }
    bool HasCycle() const { return !cycle_.empty(); }

    // The first node of the cycle, and the whole cycle as "A -> B -> A", shortened if it is long.
    std::string Start() const { return std::string(description_.Name(cycle_.front())); }
    std::string Cycle() const {
        constexpr size_t kLongest = 500;
        std::string names;
        for (size_t i = 0; i < cycle_.size() && names.size() < kLongest; ++i)
            names.append(description_.Name(cycle_[i])).append(" -> ");
        return names.append(Start());
    }

  private:
    enum State : uint8_t { kNew, kOpen, kDone };

    void Enter(NodeId node) {
        state_[node] = kOpen;
        path_.push_back({node, 0});
    }

    template <typename Follows>
    void StepDown(Follows follows) {
        const NodeId node = path_.back().node;
        const Slice<Property> properties = description_.Properties(node);
        if (path_.back().next == properties.size()) {
            state_[node] = kDone;
            order_.push_back(node);
            path_.pop_back();
            return;
        }
        const Property& property = properties[path_.back().next++];
        if (!IsLink(property.element) || !follows(description_.Record(node).kind, property.element))
            return;
        if (state_[property.Target()] == kNew)
            Enter(property.Target());
        else if (state_[property.Target()] == kOpen)
            KeepCycle(property.Target());
    }

    // The cycle starts with its lowest node.
    void KeepCycle(NodeId back) {
        auto step = std::find_if(path_.begin(), path_.end(),
                                 [back](const Step& open) { return open.node == back; });
        for (; step != path_.end(); ++step)
            cycle_.push_back(step->node);
        std::rotate(cycle_.begin(), std::min_element(cycle_.begin(), cycle_.end()), cycle_.end());
    }

    const Description& description_;
    std::vector<uint8_t> state_;
    Path path_;
    std::vector<NodeId> order_, cycle_;
};

// All nodes, each after those that its value depends on; throws if a node reads itself. In
// descriptions of schema 1.0 only values are checked: while a limit or a condition is computed, the
// node answers without it.
std::vector<NodeId> TargetsFirst(const Description& description) {
    const bool all = description.Info().schemaVersion.Minor != 0;
    const Descent read(description, [all](NodeKind kind, Element element) {
        return CarriesValue(kind, element) || (all && IsRead(kind, element));
    });
    if (!read.HasCycle()) return read.Order();
    CheckValues(description);
    throw RUNTIME_EXCEPTION("ERROR : read cycle detected : %s", read.Cycle().c_str());
}

// The nodes of a cycle of pSelected; empty without one.
std::string SelectionCycle(const Description& description) {
    const Descent selected(description,
                           [](NodeKind, Element element) { return element == Element::pSelected; });
    return selected.HasCycle() ? selected.Cycle() : "";
}

// Finds whether a selector reads what it selects, over any distance.
class SelectorSearch {
  public:
    explicit SelectorSearch(const Description& description)
        : description_(description),
          selectedBy_(description.NodeCount(), kNoNode),
          reachedFrom_(description.NodeCount(), kNoNode) {}

    bool ReadsSelected(NodeId selector) {
        for (const Property& property : description_.Properties(selector))
            if (property.element == Element::pSelected) selectedBy_[property.Target()] = selector;
        std::vector<NodeId> open = {selector};
        while (!open.empty()) {
            const NodeId id = open.back();
            open.pop_back();
            if (selectedBy_[id] == selector) return true;
            for (const Property& property : description_.Properties(id)) {
                if (steps_ == kMaxSelectorSteps) return false;
                ++steps_;
                if (!IsLink(property.element) || reachedFrom_[property.Target()] == selector ||
                    !Reads(description_.Record(id).kind, property.element))
                    continue;
                reachedFrom_[property.Target()] = selector;
                open.push_back(property.Target());
            }
        }
        return false;
    }

  private:
    const Description& description_;
    std::vector<NodeId> selectedBy_, reachedFrom_;
    size_t steps_ = 0;  // in all searches
};

// Throws if a selector selects itself, through other selectors or through what they read.
void CheckSelectors(const Description& description, const LinkTables& links) {
    std::vector<NodeId> selectors;
    for (const auto& selection : links.selectors)
        selectors.push_back(selection.second);
    std::sort(selectors.begin(), selectors.end());
    selectors.erase(std::unique(selectors.begin(), selectors.end()), selectors.end());

    const bool hasChains =
        std::any_of(links.selectors.begin(), links.selectors.end(), [&](const auto& selection) {
            return std::binary_search(selectors.begin(), selectors.end(), selection.first);
        });
    std::string cycle;
    if (hasChains) cycle = SelectionCycle(description);
    SelectorSearch search(description);
    for (size_t i = 0; i < selectors.size() && cycle.empty(); ++i)
        if (search.ReadsSelected(selectors[i])) {
            const std::string_view name = description.Name(selectors[i]);
            cycle.append(name).append(" -> ").append(name);
        }
    if (!cycle.empty())
        throw RUNTIME_EXCEPTION("ERROR : pSelected cycle detected : %s", cycle.c_str());
}

// The caching mode of a node itself; FindCaching combines it with those of the nodes below. Floats
// and converters round, so a written value may read back differently and the next read asks the
// device. Integers and texts read back as written, so a write fills the cache, which is also the
// schema's default.
ECachingMode OwnCaching(const Description& description, NodeId id) {
    const std::string_view text = description.Text(id, Element::Cachable);
    if (text == "NoCache") return NoCache;
    switch (description.Record(id).kind) {
        // A register may promise not to round.
        case NodeKind::FloatReg:
            return text == "WriteThrough" ? WriteThrough : WriteAround;
        case NodeKind::Float:
        case NodeKind::SwissKnife:
        case NodeKind::Converter:
        case NodeKind::IntConverter:
            return WriteAround;
        default:
            return text == "WriteAround" ? WriteAround : WriteThrough;
    }
}

// A node combines its mode with those of the nodes that it writes to. The other nodes that
// determine its value count only if they may not be cached.
void FindCaching(const Description& description, std::vector<NodeRecord>& records) {
    for (const NodeId id : TargetsFirst(description)) {
        ECachingMode mode = OwnCaching(description, id);
        for (const Property& property : description.Properties(id)) {
            if (!CarriesValue(records[id].kind, property.element)) continue;
            const auto other = static_cast<ECachingMode>(records[property.Target()].caching);
            if (Writes(property.element) || other == NoCache) mode = Combine(mode, other);
        }
        records[id].caching = static_cast<uint8_t>(mode);
    }
}

// An access mode must not be cached if one of its conditions must not, or if it depends on such a
// mode.
void FindCacheableAccess(const LinkTables& links, std::vector<NodeRecord>& records) {
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
    for (size_t i = 0; i < found.size(); ++i)
        for (const NodeId parent : links.Parents(found[i]))
            add(parent);
}

void FindFeatures(const Description& description, std::vector<NodeRecord>& records) {
    const NodeId root = description.Find("Root");
    if (root == kNoNode || records[root].kind != NodeKind::Category) return;
    NodeCollection features(description);
    features.Add(root);
    for (size_t i = 0; i < features.size(); ++i) {
        records[features[i]].feature = true;
        AddTargets(
            description, features[i], [](Element e) { return e == Element::pFeature; }, features);
    }
}

// A category is as visible as its most visible feature, whatever its own element says.
void FindCategoryVisibility(const Description& description, std::vector<NodeRecord>& records) {
    struct Membership {
        NodeId feature, category;
    };
    std::vector<Membership> members;
    for (NodeId id = 0; id < records.size(); ++id) {
        if (records[id].kind != NodeKind::Category) continue;
        records[id].visibility = Invisible;
        for (const Property& property : description.Properties(id))
            if (property.element == Element::pFeature) members.push_back({property.Target(), id});
    }
    const auto byFeature = [](const Membership& a, const Membership& b) {
        return a.feature < b.feature;
    };
    std::sort(members.begin(), members.end(), byFeature);
    // From the most visible features on, so that the first level that reaches a category settles
    // it.
    for (uint8_t level = Beginner; level < Invisible; ++level) {
        std::vector<NodeId> open;
        for (const Membership& member : members)
            if (records[member.feature].visibility == level) open.push_back(member.feature);
        while (!open.empty()) {
            const auto [first, last] = std::equal_range(members.begin(), members.end(),
                                                        Membership{open.back(), 0}, byFeature);
            open.pop_back();
            for (auto member = first; member != last; ++member) {
                uint8_t& visibility = records[member->category].visibility;
                if (visibility <= level) continue;
                visibility = level;
                open.push_back(member->category);
            }
        }
    }
}

}  // namespace

void CheckValues(const Description& description) {
    const Descent passed(description,
                         [](NodeKind, Element element) { return PassesValue(element); });
    if (passed.HasCycle())
        throw RUNTIME_EXCEPTION("WARNING: PropagateTerminals cycle detected in node = '%s'\n",
                                passed.Start().c_str());
}

void LinkNodes(const Description& description, LinkTables& links,
               std::vector<NodeRecord>& records) {
    FindSources(description, links);
    FindSelectors(description, links);
    FindCaching(description, records);
    CheckSelectors(description, links);
    FindCacheableAccess(links, records);
    FindCategoryVisibility(description, records);
    FindFeatures(description, records);
    links.invalidated = std::make_unique<std::atomic<const ChangeSet*>[]>(records.size());
    links.written = std::make_unique<std::atomic<const ChangeSet*>[]>(records.size());
}

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE
