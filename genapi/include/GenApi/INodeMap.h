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

// The object also has IDeviceInfo, IDestroy and IUserData (dynamic_cast). IDestroy destroys it.
// Thread-safe, except for its destruction. Ports must outlive the map or be disconnected.
struct GENAPI_DECL_ABSTRACT INodeMap {
    // Replaces the list by all nodes, in the order of their first mention in the description.
    virtual void GetNodes(NodeList_t& Nodes) const = 0;
    // Takes the exact name, with or without "Std::" or "Cust::"; null if there is no such node.
    virtual INode* GetNode(const GENICAM_NAMESPACE::gcstring& Name) const = 0;
    // Drops everything cached and fires all callbacks.
    virtual void InvalidateNodes() const = 0;
    // Connects a device to the port node; null disconnects it. False if there is no such port node.
    virtual bool Connect(IPort* pPort, const GENICAM_NAMESPACE::gcstring& PortName) const = 0;
    // The same for the port node "Device".
    virtual bool Connect(IPort* pPort) const = 0;
    virtual bool Connect(IPortStacked* pPort, const GENICAM_NAMESPACE::gcstring& PortName) = 0;
    virtual bool Connect(IPortStacked* pPort) = 0;
    virtual GENICAM_NAMESPACE::gcstring GetDeviceName() = 0;
    // Invalidates the nodes whose polling time has passed. ElapsedTime: milliseconds since the last
    // call.
    virtual void Poll(int64_t ElapsedTime) = 0;
    // The recursive lock of all operations of the map. Hold it to make a series of operations
    // atomic.
    virtual CLock& GetLock() const = 0;
    virtual uint64_t GetNumNodes() const = 0;
    // Compiles all formulas. If any are invalid, returns false and adds one message for each.
    virtual bool ParseSwissKnifes(
        GENICAM_NAMESPACE::gcstring_vector* pErrorList = nullptr) const = 0;

  protected:
    ~INodeMap() = default;
};

}  // namespace GENAPI_NAMESPACE

#endif  // GENAPI_INODEMAP_H
