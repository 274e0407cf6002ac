// A node, whatever its kind, and the helpers around access modes.
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

// What INode::RegisterCallback gives and INode::DeregisterCallback takes.
using CallbackHandleType = intptr_t;

// What all kinds of nodes have in common. Nodes live as long as their map; all operations are
// thread-safe.
struct GENAPI_DECL_ABSTRACT INode : virtual public IBase {
    // The name; with FullQualified prefixed by "Std::" or "Cust::".
    virtual GENICAM_NAMESPACE::gcstring GetName(bool FullQualified = false) const = 0;
    virtual ENameSpace GetNameSpace() const = 0;
    // The description's visibility, raised by ImposeVisibility.
    virtual EVisibility GetVisibility() const = 0;
    // Drops what is cached of this node and of all that depend on it, and fires their callbacks.
    virtual void InvalidateNode() = 0;
    // Whether the caching mode is another than NoCache.
    virtual bool IsCachable() const = 0;
    // Whether the access mode rests on cachable values only.
    virtual EYesNo IsAccessModeCacheable() const = 0;
    // Combined with the modes of the nodes read from.
    virtual ECachingMode GetCachingMode() const = 0;
    // Milliseconds, -1 if the node is not polled.
    virtual int64_t GetPollingTime() const = 0;
    virtual GENICAM_NAMESPACE::gcstring GetToolTip() const = 0;
    virtual GENICAM_NAMESPACE::gcstring GetDescription() const = 0;
    // Falls back on the name.
    virtual GENICAM_NAMESPACE::gcstring GetDisplayName() const = 0;
    // The name that the node map was created with.
    virtual GENICAM_NAMESPACE::gcstring GetDeviceName() const = 0;
    // Replaces the list by the neighbours of one kind.
    virtual void GetChildren(NodeList_t& Children,
                             ELinkType LinkType = ctReadingChildren) const = 0;
    // Replaces the list by the nodes that refer to this one.
    virtual void GetParents(NodeList_t& Parents) const = 0;
    // Takes the callback over; it ends (CNodeCallback::Destroy) when it is deregistered or with the
    // map. InvalidArgumentException for null.
    virtual CallbackHandleType RegisterCallback(CNodeCallback* pCallback) = 0;
    // False if the handle is not one of a callback of this node.
    virtual bool DeregisterCallback(CallbackHandleType hCallback) = 0;
    virtual INodeMap* GetNodeMap() const = 0;
    // Hexadecimal as in the description, empty for a node without event.
    virtual GENICAM_NAMESPACE::gcstring GetEventID() const = 0;
    virtual bool IsStreamable() const = 0;
    // Appends the names of the node's properties.
    virtual void GetPropertyNames(GENICAM_NAMESPACE::gcstring_vector& PropertyNames) const = 0;
    // Texts of one property, those of a list joined by tabs. False if the node has no such
    // property.
    virtual bool GetProperty(const GENICAM_NAMESPACE::gcstring& PropertyName,
                             GENICAM_NAMESPACE::gcstring& ValueStr,
                             GENICAM_NAMESPACE::gcstring& AttributeStr) = 0;
    // Restricts the access mode; _UndefinedAccesMode lifts the restriction.
    virtual void ImposeAccessMode(EAccessMode ImposedAccessMode) = 0;
    // Raises the visibility; _UndefinedVisibility lifts that.
    virtual void ImposeVisibility(EVisibility ImposedVisibility) = 0;
    // Another node for the same thing, or null.
    virtual INode* GetAlias() const = 0;
    // The same thing as another interface, or null.
    virtual INode* GetCastAlias() const = 0;
    virtual GENICAM_NAMESPACE::gcstring GetDocuURL() const = 0;
    virtual bool IsDeprecated() const = 0;
    virtual EInterfaceType GetPrincipalInterfaceType() const = 0;
    // Whether the category Root leads to the node.
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

// What remains possible when both restrictions hold.
inline EAccessMode Combine(EAccessMode First, EAccessMode Second) {
    if (First == NI || Second == NI) return NI;
    if (First == NA || Second == NA) return NA;
    if ((First == RO && Second == WO) || (First == WO && Second == RO)) return NA;
    if (First == WO || Second == WO) return WO;
    if (First == RO || Second == RO) return RO;
    return RW;
}

// The more hidden one.
inline EVisibility Combine(EVisibility First, EVisibility Second) {
    return First > Second ? First : Second;
}

// The one that caches less.
inline ECachingMode Combine(ECachingMode First, ECachingMode Second) {
    if (First == NoCache || Second == NoCache) return NoCache;
    if (First == WriteAround || Second == WriteAround) return WriteAround;
    return WriteThrough;
}

}  // namespace GENAPI_NAMESPACE

#endif  // GENAPI_INODE_H
