#include "genapi/description/caching.h"

#include <string>
#include <string_view>

#include <Base/GCException.h>
#include <GenApi/INode.h>

namespace GENAPI_NAMESPACE {
namespace Engine {

namespace {

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

// Elements that an access mode rests on, directly or through the value.
bool affectsAccess(Element element) {
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

void findValueCaching(const Description& description, std::vector<NodeRecord>& records) {
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
    const auto order = targetsFirst(description, affectsAccess, [](const auto&, NodeId) {});
    for (const NodeId id : order) {
        bool cacheable = true;
        for (const Property& property : description.properties(id)) {
            if (!isLink(property.element) || !affectsAccess(property.element)) continue;
            const NodeRecord& target = records[property.node()];
            if (target.accessCacheable == No ||
                (isCondition(property.element) && target.caching == NoCache))
                cacheable = false;
        }
        records[id].accessCacheable = cacheable ? Yes : No;
    }
}

}  // namespace

void findCaching(const Description& description, std::vector<NodeRecord>& records) {
    findValueCaching(description, records);
    findCacheableAccess(description, records);
}

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE
