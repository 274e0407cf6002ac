// Turns the elements of a node, as read, into nodes of a description: the node itself, and the
// nodes that its elements generate.
//
//   Enumeration E, EnumEntry a          EnumEntry_E_a
//   Converter, IntConverter C           C_ConvertTo, C_ConvertFrom: its formulas as nodes
//   Constant, Expression X of K         _K_X: a number, a formula
//   IntSwissKnife G in register R       _R_G
//     in StructReg, StringReg and IIDC nodes G, one for all entries
//   StructReg                           one register for each StructEntry; none of its own
//   TextDesc, IntKey in a ConfRom       nodes of these kinds
#pragma once

#include <string>
#include <vector>

#include "genapi/description/builder.h"
#include "genapi/description/schema.h"

namespace GENAPI_NAMESPACE {
namespace Engine {

// A node between its start tag and its end tag.
struct OpenNode {
    ModelId model = kNoModel;
    const NodeModel* rules = nullptr;
    ContentModel::State state = 0;  // of the content so far
    NodeId id = kNoNode;            // kNoNode for a StructReg
    std::string name;               // as written
    ENameSpace nameSpace = Custom;
    bool exposeStatic = false;
    std::vector<Property> properties;

    NodeKind Kind() const { return static_cast<NodeKind>(model); }
};

// Thrown for a second definition of a node.
struct DuplicateNode {
    NodeId id;
};

class NodeAssembler {
  public:
    explicit NodeAssembler(DescriptionBuilder& builder) : builder_(builder) {}

    // Numbers the node and gives it its full name; called at the start tag. NodeFault for an
    // invalid node name.
    void Open(OpenNode& node, const OpenNode* parent);
    // Defines the node, and links the parent to it; called at the end tag.
    void Close(OpenNode& node, OpenNode* parent);
    // A TextDesc or IntKey of a ConfRom.
    void AddKey(OpenNode& confRom, Element element, std::string_view name, TextRef key);
    // Call at the end of the description.
    void Finish();

  private:
    // A StructEntry that waits for the end of its StructReg, or an EnumEntry outside an
    // enumeration.
    struct Entry {
        NodeId id;
        ENameSpace nameSpace;
        bool exposeStatic;
        std::vector<Property> properties;
    };

    NodeId MentionJoined(std::string_view prefix, std::string_view owner, std::string_view glue,
                         std::string_view name);
    void Define(NodeId id, NodeKind kind, ENameSpace nameSpace, bool exposeStatic,
                std::vector<Property>& properties);
    void ExpandNames(NodeId owner, NodeKind kind, std::vector<Property>& properties);
    void ExpandName(const std::string& owner, NodeKind kind, const std::vector<Property>& names,
                    Property& property);
    void ExpandConverter(NodeId owner, NodeKind kind, std::vector<Property>& properties);
    void ExpandStruct(const OpenNode& node);
    void NameEntry(OpenNode& entry);

    DescriptionBuilder& builder_;
    std::string joined_;
    std::vector<Entry> entries_;     // of the open StructReg
    std::vector<Entry> standalone_;  // EnumEntries outside enumerations
};

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE
