// A node map: the state of one camera over a description, which other maps may share.
//
//   Description (constant, shared)          NodeMap (one per camera)
//   records, tables, links       <------    nodes (objects in one arena, by NodeId)
//   programs of formulas                    access modes and cache flags, flat, by NodeId
//   change sets                             contents of registers, shared by address
//                                           one recursive lock
//
// Thread-safe: every operation takes the lock.
#pragma once

#include <atomic>
#include <cstddef>
#include <memory>
#include <unordered_map>
#include <utility>
#include <vector>

#include <GenApi/IDestroy.h>
#include <GenApi/IDeviceInfo.h>
#include <GenApi/INodeMap.h>
#include <GenApi/IUserData.h>
#include <GenApi/Synch.h>

#include "genapi/description/description.h"
#include "genapi/description/limits.h"
#include "genapi/nodes/node.h"
#include "genapi/nodes/registercache.h"

namespace GENAPI_NAMESPACE {
namespace Engine {

class Entry;

class NodeMap final : public INodeMap, public IDeviceInfo, public IDestroy, public IUserData {
  public:
    // Uses the caller's lock, or a lock of its own if there is none.
    NodeMap(std::shared_ptr<const Description> description, const GENICAM_NAMESPACE::gcstring& name,
            CLock* lock);
    virtual ~NodeMap();
    NodeMap(const NodeMap&) = delete;
    NodeMap& operator=(const NodeMap&) = delete;

    // INodeMap
    void GetNodes(NodeList_t& nodes) const override;
    INode* GetNode(const GENICAM_NAMESPACE::gcstring& name) const override;
    void InvalidateNodes() const override;
    bool Connect(IPort* port, const GENICAM_NAMESPACE::gcstring& portName) const override;
    bool Connect(IPort* port) const override;
    bool Connect(IPortStacked* port, const GENICAM_NAMESPACE::gcstring& portName) override;
    bool Connect(IPortStacked* port) override;
    GENICAM_NAMESPACE::gcstring GetDeviceName() override;
    void Poll(int64_t elapsedTime) override;
    CLock& GetLock() const override;
    uint64_t GetNumNodes() const override;
    bool ParseSwissKnifes(GENICAM_NAMESPACE::gcstring_vector* errors = nullptr) const override;

    // IDeviceInfo
    GENICAM_NAMESPACE::gcstring GetModelName() override;
    GENICAM_NAMESPACE::gcstring GetVendorName() override;
    GENICAM_NAMESPACE::gcstring GetToolTip() override;
    GENICAM_NAMESPACE::gcstring GetStandardNameSpace() override;
    void GetGenApiVersion(GENICAM_NAMESPACE::Version_t& version, uint16_t& build) override;
    void GetSchemaVersion(GENICAM_NAMESPACE::Version_t& version) override;
    void GetDeviceVersion(GENICAM_NAMESPACE::Version_t& version) override;
    GENICAM_NAMESPACE::gcstring GetProductGuid() override;
    GENICAM_NAMESPACE::gcstring GetVersionGuid() override;

    // IDestroy, IUserData
    void Destroy() override;
    UserData_t GetUserData() const override;
    UserData_t SetUserData(UserData_t userData) override;

    // Inside: for the nodes, while they hold the lock.
    const Description& CameraDescription() const { return *description_; }
    size_t NodeCount() const { return nodes_.size(); }
    Node& NodeAt(NodeId id) const { return *nodes_[id]; }
    RegisterCache& Registers() { return registers_; }
    // The innermost call of the application.
    const Call& CurrentCall() const { return call_; }

    // Cached access modes, or the reason why there is none: unknown, being computed, or failed. A
    // failed mode stays until the node is invalidated or read past its cache. In the latter case it
    // is forgotten when the operation in progress ends, and so is a mode with kPassingAccess. May
    // be read without the lock.
    static constexpr uint8_t kUnknownAccess = 0xFF;
    static constexpr uint8_t kComputingAccess = 0xFE;
    static constexpr uint8_t kFailedAccess = 0xFD;
    static constexpr uint8_t kPassingFailure = 0xFC;
    static constexpr uint8_t kFirstUnknownAccess = kPassingFailure;
    static constexpr uint8_t kPassingAccess = 0x10;
    uint8_t Access(NodeId id, std::memory_order order = std::memory_order_relaxed) const {
        return access_[id].load(order);
    }
    void SetAccess(NodeId id, uint8_t mode) { access_[id].store(mode, std::memory_order_release); }
    // Call it when a node is read past its cache.
    void RetryAccess(NodeId id);

    // Whether the access mode being computed depends on a value that must not be cached.
    bool AccessIsVolatile() const { return accessIsVolatile_; }
    // Returns the former state.
    bool SetAccessVolatile(bool isVolatile) { return std::exchange(accessIsVolatile_, isVolatile); }

    // What a node has cached, as bits.
    enum Flag : uint8_t {
        kValueCached = 1,   // the value is cached
        kKeep = 2,          // ... and survives the change in progress
        kAddressKnown = 4,  // a register's address and length are cached
        kActive = 8,        // a command runs, or an enumeration waits for its entry to clear
        // for the operation in progress only:
        kSeen = 16,      // the value was computed
        kFresh = 32,     // ... from the device
        kVerified = 64,  // ... and range and error nodes were checked
    };
    uint8_t Flags(NodeId id) const { return flags_[id]; }
    void SetFlags(NodeId id, unsigned flags) { flags_[id] |= static_cast<uint8_t>(flags); }
    void ClearFlags(NodeId id, unsigned flags) { flags_[id] &= static_cast<uint8_t>(~flags); }

    // Forgets the present value or access mode of the node at the next write of the operation in
    // progress, or at its end.
    void LetPass(NodeId id) { passing_.push_back(id); }
    // Counts work of the operation in progress, in evaluations of a node. RuntimeException for more
    // work than any camera needs, so that no description hangs an operation.
    void Spend(size_t work, const Node& node) {
        if ((work_ += work) > kMaxWork) ThrowTooMuchWork(node);
    }

    // The node's cache holds the value just written; it survives the change in progress.
    void Keep(NodeId id);
    // Drops what a change made invalid, except for the kept values.
    void Invalidate(const ChangeSet& nodes);
    void InvalidateAll();
    // Call before the device is written: if the operation fails after that, the value is unknown.
    void BeginWrite(NodeId id) {
        written_.push_back(id);
        ForgetPassing();
    }
    // Drops what a failed operation may have changed.
    void ForgetWritten();

    bool HasCallbacks() const { return callbackCount_ > 0; }
    void CountCallback() { ++callbackCount_; }
    void UncountCallback() { --callbackCount_; }

    UserData_t UserDataOf(NodeId id) const;
    UserData_t SetUserDataOf(NodeId id, UserData_t userData);

  private:
    friend class Operation;
    friend class Entry;
    friend class Nesting;

    void CreateNodes();
    void InitialisePolling();
    bool ConnectPort(IPort* port, const GENICAM_NAMESPACE::gcstring& portName);
    void ForgetPassing() {
        if (!passing_.empty()) DropPassing();
    }
    void DropPassing();
    [[noreturn]] void ThrowTooMuchWork(const Node& node) const;

    struct Polled {
        NodeId node;
        int64_t elapsed;
    };

    const std::shared_ptr<const Description> description_;
    const std::string deviceName_;
    mutable CLock ownLock_;
    CLock& lock_;
    std::unique_ptr<std::byte[]> arena_;
    std::vector<Node*> nodes_;
    std::unique_ptr<std::atomic<uint8_t>[]> access_;
    std::unique_ptr<uint8_t[]> flags_;
    RegisterCache registers_;
    std::vector<Polled> polled_;
    std::vector<NodeId> written_;  // by the operation in progress; some of them are kept
    std::vector<NodeId> passing_;  // forgotten with the operation in progress
    std::unordered_map<NodeId, UserData_t> nodeUserData_;
    UserData_t userData_ = nullptr;
    Call call_;
    size_t callbackCount_ = 0;
    unsigned nesting_ = 0;
    size_t work_ = 0;  // of the operation in progress
    bool accessIsVolatile_ = false;
};

// A call of the application into the map: holds the lock and starts a new count of work. Values
// that must not be cached are still computed only once, unless the operation writes in between. A
// call from a callback or a port inside another call is an operation of its own.
class Operation {
  public:
    explicit Operation(NodeMap& map)
        : lock_(map.GetLock()), map_(map), outerWork_(std::exchange(map.work_, 0)) {
        map_.ForgetPassing();
    }
    ~Operation() {
        map_.ForgetPassing();
        map_.work_ = outerWork_;
    }
    Operation(const Operation&) = delete;
    Operation& operator=(const Operation&) = delete;

  private:
    AutoLock lock_;
    NodeMap& map_;
    const size_t outerWork_;
};

// An operation of a node, with its name for the texts of exceptions.
class Entry {
  public:
    Entry(const Node& node, const char* operation)
        : operation_(node.Map()),
          map_(node.Map()),
          outer_(std::exchange(map_.call_, {&node, operation})) {}
    ~Entry() { map_.call_ = outer_; }
    Entry(const Entry&) = delete;
    Entry& operator=(const Entry&) = delete;

  private:
    const Operation operation_;
    NodeMap& map_;
    const Call outer_;
};

// One step in the computation of a value, limit or access mode from other nodes. RuntimeException
// if the steps nest too deeply, so that a long chain of nodes cannot exhaust the stack, or if there
// are too many of them.
class Nesting {
  public:
    explicit Nesting(const Node& node);
    ~Nesting() { --map_.nesting_; }
    Nesting(const Nesting&) = delete;
    Nesting& operator=(const Nesting&) = delete;

  private:
    NodeMap& map_;
};

// A new map, which lives until Destroy. The caller's lock, if any, must outlive it.
INodeMap* MakeNodeMap(std::shared_ptr<const Description> description,
                      const GENICAM_NAMESPACE::gcstring& deviceName, CLock* lock = nullptr);

// Inlined, so that its exception leaves no frame but the called operation.
template <typename Operation>
[[gnu::always_inline]] inline auto Node::RunRead(const char* name, Operation operation) {
    {
        const Entry entry(*this, name);
        if (IsReadable(AccessMode())) return operation();
    }
    throw NotReadable({this, name});
}

template <typename Operation>
void Node::RunChange(const char* name, const ChangeSet& changed, Operation operation) {
    Notification notification;
    {
        const Entry entry(*this, name);
        notification.Add(map_, changed);
        try {
            operation();
        } catch (...) {
            map_.ForgetWritten();
            throw;
        }
        map_.Invalidate(changed);
        notification.Fire(cbPostInsideLock);
    }
    notification.Fire(cbPostOutsideLock);
}

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE
