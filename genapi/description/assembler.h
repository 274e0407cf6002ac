// From the elements of a node, as read, to the nodes of a description: beside the node itself those
// that its elements bring along.
//
//   Enumeration E, EnumEntry a          EnumEntry_E_a
//   Converter, IntConverter C           C_ConvertTo, C_ConvertFrom: its formulas as nodes
//   Constant, Expression X of K         _K_X: a number, a formula
//   IntSwissKnife G in register R       _R_G
//   StructReg                           one register for each StructEntry; none of its own
//   TextDesc, IntKey in a ConfRom       nodes of these kinds
#pragma once

#include <string>
#include <vector>

#include "genapi/description/builder.h"
#include "genapi/description/tags.h"

namespace GENAPI_NAMESPACE {
namespace Engine {

// A node between its start tag and its end tag.
struct OpenNode {
    ModelId model = kNoModel;
    NodeId id = kNoNode;  // none for a StructReg, nor for a formula in its address
    std::string name;     // as written
    ENameSpace nameSpace = Custom;
    bool exposeStatic = false;
    std::uint64_t seen = 0;  // places of its content model that are taken
    std::vector<Property> properties;

    NodeKind kind() const { return static_cast<NodeKind>(model); }
};

// Thrown for a second definition of a node.
struct DuplicateNode {
    NodeId id;
};

class NodeAssembler {
  public:
    explicit NodeAssembler(DescriptionBuilder& builder) : builder_(builder) {}

    // Numbers the node, and gives it its full name, when its start tag is read.
    void open(OpenNode& node, const OpenNode* parent);
    // Defines the node at its end tag; the parent gets a link to it.
    void close(OpenNode& node, OpenNode* parent);
    // A TextDesc or IntKey of a ConfRom.
    void addKey(OpenNode& confRom, Element element, std::string_view name, TextRef key);

  private:
    // A StructEntry until its StructReg is complete.
    struct Entry {
        NodeId id;
        ENameSpace nameSpace;
        bool exposeStatic;
        std::vector<Property> properties;
    };
    // A formula in the address of a StructReg: each entry gets its own.
    struct AddressFormula {
        std::string name;
        std::vector<Property> properties;
    };

    NodeId mentionJoined(std::string_view prefix, std::string_view owner, std::string_view glue,
                         std::string_view name);
    void define(NodeId id, NodeKind kind, ENameSpace nameSpace, bool exposeStatic,
                std::vector<Property>& properties);
    void expandNames(NodeId owner, NodeKind kind, std::vector<Property>& properties);
    void expandName(const std::string& owner, NodeKind kind, const std::vector<Property>& names,
                    Property& property);
    void expandConverter(NodeId owner, NodeKind kind, std::vector<Property>& properties);
    void expandStruct(const OpenNode& node);
    void inherit(const Property& property, const Entry& entry, std::vector<Property>& into);

    DescriptionBuilder& builder_;
    std::string joined_;
    std::vector<Entry> entries_;
    std::vector<AddressFormula> formulas_;
};

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE
