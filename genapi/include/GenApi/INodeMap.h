// All nodes of one description.
#ifndef GENAPI_INODEMAP_H
#define GENAPI_INODEMAP_H

#include <cstddef>

#include <Base/GCString.h>
#include <Base/GCStringVector.h>
#include <GenApi/Container.h>
#include <GenApi/Synch.h>

namespace GENAPI_NAMESPACE {

struct INode;
struct IPort;
struct IPortStacked;

// The object offers IDeviceInfo, IDestroy and IUserData too (dynamic_cast); IDestroy ends it.
// Thread-safe, except the end. Ports must outlive the map or be disconnected.
struct GENAPI_DECL_ABSTRACT INodeMap {
    // Replaces the list by all nodes in the order in which the description first names them.
    virtual void GetNodes(NodeList_t& Nodes) const = 0;
    // Exact name, also with its "Std::" or "Cust::"; null if there is none.
    virtual INode* GetNode(const GENICAM_NAMESPACE::gcstring& Name) const = 0;
    // Drops everything cached and fires all callbacks.
    virtual void InvalidateNodes() const = 0;
    // Puts a device behind the port node, or takes it away (null). False if there is no such node.
    virtual bool Connect(IPort* pPort, const GENICAM_NAMESPACE::gcstring& PortName) const = 0;
    // The same for the port node "Device".
    virtual bool Connect(IPort* pPort) const = 0;
    virtual bool Connect(IPortStacked* pPort, const GENICAM_NAMESPACE::gcstring& PortName) = 0;
    virtual bool Connect(IPortStacked* pPort) = 0;
    virtual GENICAM_NAMESPACE::gcstring GetDeviceName() = 0;
    // Invalidates the polled nodes whose time is up; milliseconds since the last call.
    virtual void Poll(int64_t ElapsedTime) = 0;
    // The recursive lock that every operation of the map takes. Holding it makes a series of
    // operations atomic.
    virtual CLock& GetLock() const = 0;
    virtual uint64_t GetNumNodes() const = 0;
    // Compiles all formulas. False and one message for each bad one if there are any.
    virtual bool ParseSwissKnifes(
        GENICAM_NAMESPACE::gcstring_vector* pErrorList = nullptr) const = 0;

  protected:
    ~INodeMap() = default;
};

}  // namespace GENAPI_NAMESPACE

#endif  // GENAPI_INODEMAP_H
