// What all nodes of a map share: the INode interface, access modes, caching state, callbacks.
//
// A node holds only state; its properties stand in the description. Nodes refer to one another by
// number and find one another through the map. Public operations lock the map (Entry) and then use
// the operations below "Inside". Those expect the lock to be held and check access themselves, so a
// value read through another node passes the same checks as one read directly.
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

inline GENICAM_NAMESPACE::gcstring ToText(std::string_view text) {
    return GENICAM_NAMESPACE::gcstring(text.data(), text.size());
}

struct ReadOptions {
    bool verify = false;       // also check range and error nodes
    bool ignoreCache = false;  // read the device, and leave nothing cached
    bool refresh = false;      // read the device and cache its answer

    bool LeavesNothing() const { return ignoreCache && !refresh; }
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

    // Inside: the caller holds the lock of the map.
    NodeMap& Map() const { return map_; }
    NodeId Id() const { return id_; }
    const NodeRecord& Record() const;
    const Description& CameraDescription() const;
    std::string_view Name() const;

    EAccessMode AccessMode();
    // relaxed: the mode for an unverified write, which ignores locks and pIsAvailable.
    EAccessMode AccessMode(bool relaxed);

    // AccessException if the node is not implemented or not available, because it then has no
    // limits.
    void RequireAvailable();

    // The value as an integer, with the limits that apply to a reference to this node. Nodes
    // without a number throw LogicalErrorException, but no description that loads asks them for
    // one.
    virtual int64_t GetInt(ReadOptions options);
    virtual void SetInt(int64_t value, bool verify);
    virtual int64_t MinInt();
    virtual int64_t MaxInt();
    virtual int64_t IncInt();
    // The value as a floating-point number, likewise.
    virtual double GetFloat(ReadOptions options);
    virtual void SetFloat(double value, bool verify);
    virtual double MinFloat();
    virtual double MaxFloat();
    virtual bool HasIncFloat();
    virtual double IncFloat();
    // The value as a text, for String nodes that refer to other nodes.
    virtual std::string GetText(ReadOptions options);
    virtual void SetText(const std::string& value, bool verify);
    virtual int64_t MaxTextLength();
    // How the description displays the number; the default for nodes without a number.
    virtual const Presentation& OwnPresentation() const;
    // The node whose presentation fills the gaps in this node's own, or kNoNode.
    virtual NodeId PresentationSource() const { return kNoNode; }

    // Drops what the node caches in addition to its value and access mode.
    virtual void DropCaches() {}
    // Whether the polling time of the node counts now.
    virtual bool IsPolled() const { return true; }
    bool IsPollingBlocked();

    Node& NodeAt(NodeId id) const;
    // Null before the first registration.
    const std::vector<std::shared_ptr<Callback>>* Callbacks() const { return callbacks_.get(); }

  protected:
    // The mode that the value source allows: a constant, a node, a register.
    virtual EAccessMode SourceAccessMode(bool relaxed);
    // The mode that the parts of the node allow: the entries of an enumeration, the device behind a
    // port.
    virtual EAccessMode PartsAccessMode();
    // The mode that the description gives to the node itself, whatever the device allows.
    virtual EAccessMode DeclaredAccessMode() const;

    // AccessException if the node is not readable. For nodes that other nodes read; RunRead reports
    // it at less cost for the node that the application called.
    void RequireReadable();
    bool CanWrite(bool verify);
    void RequireWritable(bool verify);
    // RuntimeException if one of the error nodes (pError) reports an error.
    void CheckErrorNodes();

    ECachingMode CachingMode() const { return static_cast<ECachingMode>(Record().caching); }
    bool IsValueCached() const;
    // Whether the value is known: it is cached, or the operation in progress has already computed
    // it with these options. restsOnNodes: whether a verified read must also verify nodes below.
    bool IsValueKnown(ReadOptions options, bool restsOnNodes = true) const;
    void NoteRead(ReadOptions options);
    // Whether a known value needs no more checks in the operation in progress.
    bool IsVerified() const;
    void NoteVerified();
    void NoteWritten();
    void ForgetValue();

    // Runs an operation that reads the value: lock, access mode, operation. "Not readable" is
    // thrown after the lock is released: applications that read all features meet many such nodes,
    // and an exception costs more the more frames and scopes it leaves.
    template <typename Operation>
    auto RunRead(const char* name, Operation operation);

    // Runs an operation that changes the device and with it the nodes of `changed`: lock,
    // operation, callbacks inside the lock; then, without the lock, the callbacks outside. Memory
    // is allocated before the operation, so that a shortage cannot appear once the device has
    // changed.
    template <typename Operation>
    void RunChange(const char* name, const ChangeSet& changed, Operation operation);

  private:
    GENICAM_NAMESPACE::AccessException NotReadable(const Call& call) const;
    EAccessMode UnrestrictedMode() const;
    EAccessMode ComputeAccessMode(bool relaxed);
    EAccessMode ReadNodesAccessMode();
    EAccessMode ConditionalAccessMode(EAccessMode mode, bool relaxed);
    EAccessMode LockableAccessMode(EAccessMode mode);
    // RW if the condition holds, else `otherwise`.
    EAccessMode RequiredAccessMode(NodeId condition, EAccessMode otherwise);
    bool IsTrue(Node& condition);
    void FillFeatures(const std::vector<NodeId>& ids, FeatureList_t& features) const;
    void FillNodes(const std::vector<NodeId>& ids, NodeList_t& nodes) const;
    GENICAM_NAMESPACE::gcstring TextOf(Element element) const;

    NodeMap& map_;
    const NodeId id_;
    uint8_t imposedAccess_ = _UndefinedAccesMode;
    uint8_t imposedVisibility_ = kNoImposedVisibility;
    std::unique_ptr<std::vector<std::shared_ptr<Callback>>> callbacks_;

    static constexpr uint8_t kNoImposedVisibility = 0xFF;
};

// How a node restricts one that reads it: NI, NA, or RW for no restriction. If the reader needs its
// value, a node that cannot be read counts as not available.
EAccessMode Restriction(EAccessMode found, bool valueCounts);

// Representation, unit and notation of a node; the nodes below fill the gaps in its own.
Presentation EffectivePresentation(const Node& node);

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE
