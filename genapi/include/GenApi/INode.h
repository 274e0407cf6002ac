// The interface of every node, and helper functions for access modes.
#ifndef GENAPI_INODE_H
#define GENAPI_INODE_H

#include <Base/GCString.h>
#include <Base/GCStringVector.h>
#include <GenApi/Container.h>
#include <GenApi/IBase.h>
#include <GenApi/Types.h>

namespace GENAPI_NAMESPACE {

class CNodeCallback;
struct INodeMap;

// The handle that INode::RegisterCallback returns and INode::DeregisterCallback takes.
using CallbackHandleType = intptr_t;

// Common to nodes of all kinds. Nodes live as long as their map; all operations are thread-safe.
struct GENAPI_DECL_ABSTRACT INode : virtual public IBase {
    // The name; FullQualified puts "Std::" or "Cust::" before it.
    virtual GENICAM_NAMESPACE::gcstring GetName(bool FullQualified = false) const = 0;
    virtual ENameSpace GetNameSpace() const = 0;
    // The visibility in the description, raised by ImposeVisibility.
    virtual EVisibility GetVisibility() const = 0;
    // Drops the caches of this node and of all nodes that depend on it, and fires their callbacks.
    virtual void InvalidateNode() = 0;
    // Whether the caching mode is not NoCache.
    virtual bool IsCachable() const = 0;
    // Whether the access mode depends on cachable values only.
    virtual EYesNo IsAccessModeCacheable() const = 0;
    // Combined with the modes of the nodes that this one reads.
    virtual ECachingMode GetCachingMode() const = 0;
    // Milliseconds, -1 if the node is not polled.
    virtual int64_t GetPollingTime() const = 0;
    virtual GENICAM_NAMESPACE::gcstring GetToolTip() const = 0;
    virtual GENICAM_NAMESPACE::gcstring GetDescription() const = 0;
    // The name, if the description gives no display name.
    virtual GENICAM_NAMESPACE::gcstring GetDisplayName() const = 0;
    // The device name given when the node map was created.
    virtual GENICAM_NAMESPACE::gcstring GetDeviceName() const = 0;
    // Replaces the list by the neighbours of the given type.
    virtual void GetChildren(NodeList_t& Children,
                             ELinkType LinkType = ctReadingChildren) const = 0;
    // Replaces the list by the nodes that refer to this one.
    virtual void GetParents(NodeList_t& Parents) const = 0;
    // Takes ownership of the callback. CNodeCallback::Destroy ends it when it is deregistered, or
    // with the map. InvalidArgumentException for null.
    virtual CallbackHandleType RegisterCallback(CNodeCallback* pCallback) = 0;
    // False if the handle does not belong to a callback of this node.
    virtual bool DeregisterCallback(CallbackHandleType hCallback) = 0;
    virtual INodeMap* GetNodeMap() const = 0;
    // Hexadecimal as in the description; empty for a node without an event.
    virtual GENICAM_NAMESPACE::gcstring GetEventID() const = 0;
    virtual bool IsStreamable() const = 0;
    // Appends the names of the node's properties.
    virtual void GetPropertyNames(GENICAM_NAMESPACE::gcstring_vector& PropertyNames) const = 0;
    // The texts of one property; tabs separate those of a list. False if the node does not have the
    // property.
    virtual bool GetProperty(const GENICAM_NAMESPACE::gcstring& PropertyName,
                             GENICAM_NAMESPACE::gcstring& ValueStr,
                             GENICAM_NAMESPACE::gcstring& AttributeStr) = 0;
    // Restricts the access mode; _UndefinedAccesMode lifts the restriction.
    virtual void ImposeAccessMode(EAccessMode ImposedAccessMode) = 0;
    // Raises the visibility; _UndefinedVisibility restores it.
    virtual void ImposeVisibility(EVisibility ImposedVisibility) = 0;
    // Another node for the same quantity, or null.
    virtual INode* GetAlias() const = 0;
    // A node for the same quantity with another interface, or null.
    virtual INode* GetCastAlias() const = 0;
    virtual GENICAM_NAMESPACE::gcstring GetDocuURL() const = 0;
    virtual bool IsDeprecated() const = 0;
    virtual EInterfaceType GetPrincipalInterfaceType() const = 0;
    // Whether the category Root leads to this node.
    virtual bool IsFeature() const = 0;
};

inline bool IsReadable(EAccessMode AccessMode) {
    return AccessMode == RW || AccessMode == RO;
}
inline bool IsReadable(const IBase* p) {
    return p != nullptr && IsReadable(p->GetAccessMode());
}
inline bool IsReadable(const IBase& r) {
    return IsReadable(r.GetAccessMode());
}

inline bool IsWritable(EAccessMode AccessMode) {
    return AccessMode == RW || AccessMode == WO;
}
inline bool IsWritable(const IBase* p) {
    return p != nullptr && IsWritable(p->GetAccessMode());
}
inline bool IsWritable(const IBase& r) {
    return IsWritable(r.GetAccessMode());
}

inline bool IsImplemented(EAccessMode AccessMode) {
    return AccessMode != NI;
}
inline bool IsImplemented(const IBase* p) {
    return p != nullptr && IsImplemented(p->GetAccessMode());
}
inline bool IsImplemented(const IBase& r) {
    return IsImplemented(r.GetAccessMode());
}

inline bool IsAvailable(EAccessMode AccessMode) {
    return AccessMode != NA && AccessMode != NI;
}
inline bool IsAvailable(const IBase* p) {
    return p != nullptr && IsAvailable(p->GetAccessMode());
}
inline bool IsAvailable(const IBase& r) {
    return IsAvailable(r.GetAccessMode());
}

inline bool IsVisible(EVisibility Visibility, EVisibility MaxVisibility) {
    return Visibility <= MaxVisibility;
}

inline bool IsCacheable(ECachingMode CachingMode) {
    return CachingMode != NoCache;
}

// The mode that both restrictions allow.
inline EAccessMode Combine(EAccessMode First, EAccessMode Second) {
    if (First == NI || Second == NI) return NI;
    if (First == NA || Second == NA) return NA;
    if ((First == RO && Second == WO) || (First == WO && Second == RO)) return NA;
    if (First == WO || Second == WO) return WO;
    if (First == RO || Second == RO) return RO;
    return RW;
}

// The visibility that hides more.
inline EVisibility Combine(EVisibility First, EVisibility Second) {
    return First > Second ? First : Second;
}

// The mode that caches less.
inline ECachingMode Combine(ECachingMode First, ECachingMode Second) {
    if (First == NoCache || Second == NoCache) return NoCache;
    if (First == WriteAround || Second == WriteAround) return WriteAround;
    return WriteThrough;
}

}  // namespace GENAPI_NAMESPACE

#endif  // GENAPI_INODE_H
