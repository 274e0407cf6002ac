// What each link element means for the links between nodes.
//
//   reading      every link except those that only name a node: pAlias, pCastAlias, pSelected,
//                pInvalidator, pBlockPolling, and links to the parts of a node (entries, text
//                descriptions, keys). The two nodes that stand for the halves of a converter
//                read the names in its formulas.
//   writing      pValue, pValueCopy, pValueIndexed, pValueDefault, and the halves of a converter
//   invalidating reading, pInvalidator, the entries of an enumeration, and the selectors of the
//                node
//   depending    the nodes that are invalidated with this one, over any distance; not itself
//   terminal     the ends of the writing links, over any distance; the node itself if it has no
//                such link. Formulas, categories and ports take no value.
//   parents      the nodes that read this one; for an entry also its enumeration
//
// A selector selects the nodes that it names in pSelected and every node that reads one of these,
// over any distance, up to the categories.
//
// A write changes the node, the nodes that it passes the value to (pValue and the like, but not the
// halves of a converter), and everything that depends on these.
// not through the halves of a converter; with everything that depends on these.
#pragma once

#include "genapi/description/description.h"

namespace GENAPI_NAMESPACE {
namespace Engine {

inline bool IsConverter(NodeKind kind) {
    return kind == NodeKind::Converter || kind == NodeKind::IntConverter;
}

inline bool Reads(NodeKind kind, Element element) {
    switch (element) {
        case Element::pAlias:
        case Element::pCastAlias:
        case Element::pSelected:
        case Element::pInvalidator:
        case Element::pBlockPolling:
        case Element::pEnumEntry:
        case Element::TextDesc:
        case Element::IntKey:
            return false;
        case Element::pVariable:
        case Element::pExpression:
            return !IsConverter(kind);
        default:
            return IsLink(element);
    }
}

// Whether the element names a node that a written value is passed to.
inline bool PassesValue(Element element) {
    return element == Element::pValue || element == Element::pValueCopy ||
           element == Element::pValueIndexed || element == Element::pValueDefault;
}

inline bool Writes(Element element) {
    return PassesValue(element) || element == Element::pConvertTo ||
           element == Element::pConvertFrom;
}

inline bool IsParent(NodeKind kind, Element element) {
    return Reads(kind, element) || element == Element::pEnumEntry;
}

inline bool Invalidates(NodeKind kind, Element element) {
    return IsParent(kind, element) || element == Element::pInvalidator;
}

// Whether a value can end there.
inline bool IsTerminal(NodeKind kind) {
    return kind != NodeKind::SwissKnife && kind != NodeKind::IntSwissKnife &&
           kind != NodeKind::Category && kind != NodeKind::Port;
}

// A set of nodes that keeps the order in which they were added.
class NodeCollection {
  public:
    explicit NodeCollection(const Description& description) : added_(description.NodeCount()) {}

    void Add(NodeId id) {
        if (added_[id]) return;
        added_[id] = true;
        nodes_.push_back(id);
    }
    size_t size() const { return nodes_.size(); }
    NodeId operator[](size_t i) const { return nodes_[i]; }
    std::vector<NodeId> Take() { return std::move(nodes_); }

  private:
    std::vector<bool> added_;
    std::vector<NodeId> nodes_;
};

// Adds the targets of a node's links whose element the predicate accepts.
template <typename Predicate>
void AddTargets(const Description& description, NodeId id, Predicate predicate,
                NodeCollection& found) {
    for (const Property& property : description.Properties(id))
        if (IsLink(property.element) && predicate(property.element)) found.Add(property.Target());
}

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE
