// What each link element means for the links between nodes.
//
//   reading      every link but those that only name a node: pAlias, pCastAlias, pSelected,
//                pInvalidator, pBlockPolling, and those to the parts of a node: entries, text
//                descriptions, keys. The names in the formulas of a converter are read by the
//                two nodes that stand for its halves.
//   writing      pValue, pValueCopy, pValueIndexed, pValueDefault, and the halves of a converter
//   invalidating reading, and pInvalidator, the entries of an enumeration, and the selectors that
//                select the node
//   depending    the nodes that are invalidated with this one, over any distance; not itself
//   terminal     where the writing links end, over any distance, the node itself where it has
//                none; but formulas, categories and ports take no value
//   parents      the nodes that read this one; of an entry also its enumeration
//
// A selector selects what it names in pSelected and every node that reads such a node, over any
// distance, up to the categories.
//
// A write changes the node and the nodes that the value is passed to, by pValue and the like, but
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

// To which nodes a value is passed that is written.
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

// The nodes in the order in which they were first added.
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

// Adds the nodes that a node links to by the elements that the predicate takes.
template <typename Predicate>
void AddTargets(const Description& description, NodeId id, Predicate predicate,
                NodeCollection& found) {
    for (const Property& property : description.Properties(id))
        if (IsLink(property.element) && predicate(property.element)) found.Add(property.Target());
}

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE
