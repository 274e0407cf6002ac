// What all nodes of a map share: the INode interface, access modes, caching state, callbacks.
//
// A node holds state only; what it is stands in the description. Nodes refer to one another by
// number and reach one another through the map. Public operations lock the map (Entry) and then use
// the operations below "inside", which assume the lock and check access themselves, so that a value
// read through another node passes the same checks as one read directly.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include <GenApi/INode.h>
#include <GenApi/ISelector.h>
#include <GenApi/IUserData.h>

#include "genapi/description/description.h"
#include "genapi/description/nodedata.h"
#include "genapi/nodes/callbacks.h"
#include "genapi/nodes/errors.h"

namespace GENAPI_NAMESPACE {
namespace Engine {

class NodeMap;

inline GENICAM_NAMESPACE::gcstring toText(std::string_view text) {
    return GENICAM_NAMESPACE::gcstring(text.data(), text.size());
}

struct ReadOptions {
    bool verify = false;       // check range and error nodes, too
    bool ignoreCache = false;  // read the device, and leave nothing cached
    bool refresh = false;      // read the device, but cache what it says

    bool leavesNothing() const { return ignoreCache && !refresh; }
};

class Node : public INode, public ISelector, public IUserData {
  public:
    Node(NodeMap& map, NodeId id) : map_(map), id_(id) {}
    ~Node() override;
    Node(const Node&) = delete;
    Node& operator=(const Node&) = delete;

    // IBase, INode
    EAccessMode GetAccessMode() const override;
    GENICAM_NAMESPACE::gcstring GetName(bool fullQualified = false) const override;
    ENameSpace GetNameSpace() const override;
    EVisibility GetVisibility() const override;
    void InvalidateNode() override;
    bool IsCachable() const override;
    EYesNo IsAccessModeCacheable() const override;
    ECachingMode GetCachingMode() const override;
    int64_t GetPollingTime() const override;
    GENICAM_NAMESPACE::gcstring GetToolTip() const override;
    GENICAM_NAMESPACE::gcstring GetDescription() const override;
    GENICAM_NAMESPACE::gcstring GetDisplayName() const override;
    GENICAM_NAMESPACE::gcstring GetDeviceName() const override;
    void GetChildren(NodeList_t& children, ELinkType linkType = ctReadingChildren) const override;
    void GetParents(NodeList_t& parents) const override;
    CallbackHandleType RegisterCallback(CNodeCallback* callback) override;
    bool DeregisterCallback(CallbackHandleType handle) override;
    INodeMap* GetNodeMap() const override;
    GENICAM_NAMESPACE::gcstring GetEventID() const override;
    bool IsStreamable() const override;
    void GetPropertyNames(GENICAM_NAMESPACE::gcstring_vector& names) const override;
    bool GetProperty(const GENICAM_NAMESPACE::gcstring& name, GENICAM_NAMESPACE::gcstring& value,
                     GENICAM_NAMESPACE::gcstring& attribute) override;
    void ImposeAccessMode(EAccessMode mode) override;
    void ImposeVisibility(EVisibility visibility) override;
    INode* GetAlias() const override;
    INode* GetCastAlias() const override;
    GENICAM_NAMESPACE::gcstring GetDocuURL() const override;
    bool IsDeprecated() const override;
    EInterfaceType GetPrincipalInterfaceType() const override;
    bool IsFeature() const override;

    // ISelector
    bool IsSelector() const override;
    void GetSelectedFeatures(FeatureList_t& features) const override;
    void GetSelectingFeatures(FeatureList_t& features) const override;

    // IUserData
    UserData_t GetUserData() const override;
    UserData_t SetUserData(UserData_t userData) override;

    // Inside: the lock of the map is held.
    NodeMap& map() const { return map_; }
    NodeId id() const { return id_; }
    const NodeRecord& record() const;
    const Description& description() const;
    std::string_view name() const;

    EAccessMode accessMode();
    // Relaxed is what an unverified write goes by: locks and pIsAvailable do not count.
    EAccessMode accessMode(bool relaxed);

    // AccessException when the node is not implemented or not available: it has no limits then.
    void requireAvailable();

    // The value as an integer, with the limits that a reference to this node goes by. Nodes without
    // a number throw LogicalErrorException; descriptions that ask for one do not load.
    virtual std::int64_t getInt(ReadOptions options);
    virtual void setInt(std::int64_t value, bool verify);
    virtual std::int64_t minInt();
    virtual std::int64_t maxInt();
    virtual std::int64_t incInt();
    // The value as a floating-point number, likewise.
    virtual double getFloat(ReadOptions options);
    virtual void setFloat(double value, bool verify);
    virtual double minFloat();
    virtual double maxFloat();
    virtual bool hasInc();
    virtual double incFloat();
    // The value as a text, for String nodes over other nodes.
    virtual std::string getText(ReadOptions options);
    virtual void setText(const std::string& value, bool verify);
    virtual std::int64_t maxTextLength();
    // How numbers are shown; null for nodes without numbers.
    virtual const Presentation* presentation() const { return nullptr; }
    // The node whose presentation counts where this one does not say.
    virtual Node* presentationSource() { return nullptr; }

    // Drops what the node has cached beside its value and access mode.
    virtual void dropCaches() {}
    // Whether Poll counts the node's time now.
    virtual bool isPolled() const { return true; }
    bool isPollingBlocked();

    Node& node(NodeId id) const;
    std::vector<std::shared_ptr<Callback>>* callbacks() const { return callbacks_.get(); }

  protected:
    // The mode that the value source allows: a constant, a node, a register.
    virtual EAccessMode sourceAccessMode(bool relaxed);
    // What the parts of the node allow: the entries of an enumeration, the device behind a port.
    virtual EAccessMode partsAccessMode();
    // The mode that the description gives to the node itself, whatever the device says.
    virtual EAccessMode declaredAccessMode() const;

    // AccessException when the node is not readable. For a node that others read; where it is the
    // one that the application called, read says it at less cost.
    void requireReadable();
    bool isWritable(bool verify);
    void requireWritable(bool verify);
    // RuntimeException when one of the error nodes (pError) tells of an error.
    void checkErrorNodes();

    ECachingMode cachingMode() const { return static_cast<ECachingMode>(record().caching); }
    bool isValueCached() const;
    // Whether the value need not be computed: it is cached, or the operation in progress computed
    // it with these options. restsOnNodes: whether a verified read must verify nodes below, too.
    bool isValueKnown(ReadOptions options, bool restsOnNodes = true) const;
    void valueWasRead(ReadOptions options);
    // Whether a value that is known needs no more checks in the operation in progress.
    bool isVerified() const;
    void valueWasVerified();
    void valueWasWritten();
    void valueIsUnknown();

    // Runs an operation that reads the value: lock, access mode, operation. That the node is not
    // readable is said after the lock is released: applications that read all features meet many
    // such nodes, and an exception costs by the frames and scopes that it leaves.
    template <typename Operation>
    auto read(const char* name, Operation operation);

    // Runs an operation that changes the device, and with it the nodes of `changed`: lock,
    // operation, callbacks inside the lock, and after the lock is released those outside. What
    // needs memory comes before the operation, so that none is missing once the device has changed.
    template <typename Operation>
    void modify(const char* name, const ChangeSet& changed, Operation operation);

  private:
    GENICAM_NAMESPACE::AccessException notReadable(const Call& call) const;
    EAccessMode unrestrictedMode() const;
    EAccessMode computeAccessMode(bool relaxed);
    EAccessMode readNodesAccessMode();
    EAccessMode conditionalAccessMode(EAccessMode mode, bool relaxed);
    EAccessMode lockableAccessMode(EAccessMode mode);
    // RW where the condition holds.
    EAccessMode requiredAccessMode(NodeId condition, EAccessMode otherwise);
    bool isTrue(Node& condition);
    void fillFeatures(const std::vector<NodeId>& ids, FeatureList_t& features) const;
    void fillNodes(const std::vector<NodeId>& ids, NodeList_t& nodes) const;
    GENICAM_NAMESPACE::gcstring textOf(Element element) const;

    NodeMap& map_;
    const NodeId id_;
    std::uint8_t imposedAccess_ = _UndefinedAccesMode;
    std::uint8_t imposedVisibility_ = kNoImposedVisibility;
    std::unique_ptr<std::vector<std::shared_ptr<Callback>>> callbacks_;

    static constexpr std::uint8_t kNoImposedVisibility = 0xFF;
};

// How a node restricts one that reads it: NI, NA, or RW where it does not. Where its value counts,
// a node that cannot be read is not available.
EAccessMode restriction(EAccessMode found, bool valueCounts);

// ERepresentation and the like of a node, through the nodes below it where it says nothing itself.
Presentation effectivePresentation(Node& node);

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE
