// A camera description, parsed once: compact, immutable, shared by every node map made from it.
//
//   XML text -> DescriptionReader -> DescriptionBuilder -> Description -> NodeMap (one per camera)
//
// A description is a handful of flat tables. Nodes are numbered in the order in which their names
// are first mentioned; that number, NodeId, is an index into the node table here and into the node
// table of each map. Texts are interned in one pool. The content of a node is stored twice: as
// properties, which are the elements as written, and as the typed data of its kind (nodedata.h),
// which node maps compute with.
//
// Thread-safe: a description is constant once built, except for the change sets and the formulas,
// which are computed on first use under a lock of their own.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include <Base/GCTypes.h>
#include <GenApi/Types.h>

#include "genapi/description/elements.h"
#include "genapi/description/slice.h"

namespace GENAPI_NAMESPACE {
namespace Engine {

using NodeId = uint32_t;
constexpr NodeId kNoNode = 0xFFFFFFFF;

// Place of a text in the pool; 0 is the empty text.
using TextRef = uint32_t;

// One element of a node as it was written.
struct Property {
    Element element;
    uint32_t value;     // a NodeId where IsLink(element), a TextRef otherwise
    TextRef attribute;  // its attribute (Name, Index), empty when it has none

    NodeId Target() const { return value; }
    TextRef Text() const { return value; }
};

// What nodes of every kind have.
struct NodeRecord {
    TextRef name = 0;
    NodeKind kind = NodeKind::Node;
    uint8_t nameSpace = 0;           // ENameSpace
    uint8_t visibility = 0;          // EVisibility
    uint8_t imposedAccess = RW;      // EAccessMode
    uint8_t caching = WriteThrough;  // ECachingMode: the effective one
    uint8_t accessCacheable = Yes;   // EYesNo
    bool streamable = false;
    bool deprecated = false;
    bool feature = false;
    bool exposeStatic = false;
    bool defined = false;  // false while the name is only mentioned
    uint32_t firstProperty = 0;
    uint32_t propertyCount = 0;
    uint32_t data = 0;         // index into the table of its kind
    int32_t pollingTime = -1;  // milliseconds, -1 without polling
    // kNoNode if the node does not have that condition
    NodeId isImplemented = kNoNode;
    NodeId isAvailable = kNoNode;
    NodeId isLocked = kNoNode;
    NodeId blockPolling = kNoNode;
};

// The attributes of the root element.
struct DeviceInfo {
    std::string modelName, vendorName, toolTip, standardNameSpace, productGuid, versionGuid;
    GENICAM_NAMESPACE::Version_t schemaVersion{}, deviceVersion{};
};

// The nodes that a change affects, sorted and without repetition; computed once, then constant.
using ChangeSet = std::vector<NodeId>;

struct NodeTables;  // nodedata.h: the typed data of each kind
struct LinkTables;  // links.h: the reverse links, and the change sets made so far
class DescriptionBuilder;

class Description {
  public:
    ~Description();
    Description(const Description&) = delete;
    Description& operator=(const Description&) = delete;

    size_t NodeCount() const { return records_.size(); }
    const NodeRecord& Record(NodeId id) const { return records_[id]; }
    Slice<Property> Properties(NodeId id) const;
    // The first property of that element, or null.
    const Property* Find(NodeId id, Element element) const;
    // By name, with or without the node's own name space ("Std::", "Cust::") before it. kNoNode if
    // there is no such node.
    NodeId Find(std::string_view name) const;

    // The text, with a NUL after it.
    std::string_view Text(TextRef ref) const;
    std::string_view Name(NodeId id) const { return Text(records_[id].name); }
    // The text of an element, empty when the node has none.
    std::string_view Text(NodeId id, Element element) const;

    const DeviceInfo& Info() const { return info_; }
    const NodeTables& Tables() const { return *tables_; }
    const LinkTables& Links() const { return *links_; }

  private:
    friend class DescriptionBuilder;
    Description();

    std::vector<char> pool_;
    std::vector<NodeRecord> records_;
    std::vector<Property> properties_;
    std::vector<NodeId> names_;  // open addressing by hash of the name, a power of two in size
    DeviceInfo info_;
    std::unique_ptr<NodeTables> tables_;
    std::unique_ptr<LinkTables> links_;
};

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE
