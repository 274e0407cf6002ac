#include "genapi/nodes/nodemap.h"

#include <algorithm>

#include <Base/GCException.h>
#include <GenApi/GenApiVersion.h>

#include "genapi/description/formulas.h"
#include "genapi/description/links.h"
#include "genapi/nodes/nodefactory.h"
#include "genapi/nodes/portnode.h"

namespace GENAPI_NAMESPACE {
namespace Engine {

using GENICAM_NAMESPACE::gcstring;

namespace {

// Sets that come from one description. Many nodes may share one, which counts once: all of them
// together may hold much more than there is memory for.
ChangeSet unionOf(std::vector<const ChangeSet*> sets) {
    std::sort(sets.begin(), sets.end());
    sets.erase(std::unique(sets.begin(), sets.end()), sets.end());
    if (sets.size() == 1) return *sets.front();
    ChangeSet all;
    for (const ChangeSet* set : sets)
        all.insert(all.end(), set->begin(), set->end());
    std::sort(all.begin(), all.end());
    all.erase(std::unique(all.begin(), all.end()), all.end());
    return all;
}

}  // namespace

NodeMap::NodeMap(std::shared_ptr<const Description> description, const gcstring& name, CLock* lock)
    : description_(std::move(description)),
      deviceName_(name.c_str(), name.length()),
      lock_(lock ? *lock : ownLock_),
      access_(new std::atomic<std::uint8_t>[description_->nodeCount()]),
      flags_(new std::uint8_t[description_->nodeCount()]()) {
    for (NodeId id = 0; id < description_->nodeCount(); ++id)
        access_[id].store(kUnknownAccess, std::memory_order_relaxed);
    createNodes();
    initialisePolling();
}

NodeMap::~NodeMap() {
    for (Node* node : nodes_)
        node->~Node();
}

void NodeMap::createNodes() {
    // All nodes lie in one block, in the order of their numbers.
    std::size_t size = 0;
    for (NodeId id = 0; id < description_->nodeCount(); ++id)
        size += nodeSize(description_->record(id).kind);
    arena_.reset(new std::byte[size]);
    nodes_.reserve(description_->nodeCount());
    std::byte* place = arena_.get();
    for (NodeId id = 0; id < description_->nodeCount(); ++id) {
        nodes_.push_back(makeNode(*this, id, place));
        place += nodeSize(description_->record(id).kind);
    }
}

void NodeMap::initialisePolling() {
    for (NodeId id = 0; id < description_->nodeCount(); ++id)
        if (description_->record(id).pollingTime >= 0) polled_.push_back({id, 0});
}

void NodeMap::GetNodes(NodeList_t& nodes) const {
    nodes.clear();
    nodes.reserve(nodes_.size());
    for (Node* node : nodes_)
        nodes.push_back(node);
}

INode* NodeMap::GetNode(const gcstring& name) const {
    const NodeId id = description_->find(std::string_view(name.c_str(), name.length()));
    return id == kNoNode ? nullptr : nodes_[id];
}

uint64_t NodeMap::GetNumNodes() const {
    return nodes_.size();
}

void NodeMap::InvalidateNodes() const {
    auto& self = const_cast<NodeMap&>(*this);
    Notification notification;
    {
        const AutoLock lock(lock_);
        self.invalidateAll();
        notification.addAll(self);
        notification.fire(cbPostInsideLock);
    }
    notification.fire(cbPostOutsideLock);
}

void NodeMap::retryAccess(NodeId id) {
    if (access_[id].load(std::memory_order_relaxed) != kFailedAccess) return;
    access_[id].store(kPassingFailure, std::memory_order_relaxed);
    passes(id);
}

void NodeMap::keep(NodeId id) {
    flags_[id] |= kKeep;
    written_.push_back(id);
}

void NodeMap::forgetWritten() {
    for (const NodeId id : written_)
        flags_[id] &= static_cast<std::uint8_t>(~kKeep);
    try {
        std::vector<const ChangeSet*> sets;
        for (const NodeId id : written_)
            sets.push_back(&invalidatedBy(*description_, id));
        invalidate(unionOf(std::move(sets)));
    } catch (const std::bad_alloc&) {  // there is no memory to tell what has changed
        invalidateAll();
        written_.clear();
    }
}

void NodeMap::dropPassing() {
    for (const NodeId id : passing_) {
        flags_[id] &= static_cast<std::uint8_t>(~(kSeen | kFresh | kVerified));
        const std::uint8_t mode = access_[id].load(std::memory_order_relaxed);
        if (mode == kPassingFailure || (mode < kFirstUnknownAccess && (mode & kPassingAccess)))
            access_[id].store(kUnknownAccess, std::memory_order_release);
    }
    passing_.clear();
}

void NodeMap::throwTooMuchWork(const Node& node) const {
    const Node& feature = call_.node ? *call_.node : node;
    throw LIMIT_ERROR(feature)("'%s' takes too many evaluations of other nodes",
                               feature.name().data());
}

void NodeMap::invalidate(const ChangeSet& nodes) {
    for (const NodeId id : nodes) {
        access_[id].store(kUnknownAccess, std::memory_order_release);
        if (flags_[id] & kKeep) continue;
        flags_[id] &= kActive;
        nodes_[id]->dropCaches();
    }
    for (const NodeId id : written_)
        flags_[id] &= static_cast<std::uint8_t>(~kKeep);
    written_.clear();
}

void NodeMap::invalidateAll() {
    for (NodeId id = 0; id < nodes_.size(); ++id) {
        access_[id].store(kUnknownAccess, std::memory_order_relaxed);
        flags_[id] &= kActive;
    }
    registers_.dropAll();
}

bool NodeMap::connect(IPort* port, const gcstring& portName) {
    INode* node = GetNode(portName);
    if (!node || node->GetPrincipalInterfaceType() != intfIPort) return false;
    static_cast<PortNode*>(node)->SetPortImpl(port);
    return true;
}

bool NodeMap::Connect(IPort* port, const gcstring& portName) const {
    return const_cast<NodeMap*>(this)->connect(port, portName);
}

bool NodeMap::Connect(IPort* port) const {
    return Connect(port, "Device");
}

bool NodeMap::Connect(IPortStacked* port, const gcstring& portName) {
    return connect(port, portName);
}

bool NodeMap::Connect(IPortStacked* port) {
    return connect(port, "Device");
}

gcstring NodeMap::GetDeviceName() {
    return toText(deviceName_);
}

void NodeMap::Poll(int64_t elapsedTime) {
    if (elapsedTime <= 0) return;
    Notification notification;
    {
        const Operation operation(*this);
        std::vector<const ChangeSet*> sets;
        for (Polled& polled : polled_) {
            Node& node = *nodes_[polled.node];
            if (!node.isPolled()) continue;
            const std::int64_t period = node.record().pollingTime;
            // Counted only as far as it matters.
            polled.elapsed += std::min(elapsedTime, period + 1);
            if (polled.elapsed < period || node.isPollingBlocked()) continue;
            polled.elapsed = 0;
            sets.push_back(&invalidatedBy(*description_, polled.node));
        }
        const ChangeSet due = unionOf(std::move(sets));
        invalidate(due);
        notification.add(*this, due);
        notification.fire(cbPostInsideLock);
    }
    notification.fire(cbPostOutsideLock);
}

CLock& NodeMap::GetLock() const {
    return lock_;
}

bool NodeMap::ParseSwissKnifes(GENICAM_NAMESPACE::gcstring_vector* errors) const {
    bool good = true;
    for (std::uint32_t i = 0; i < description_->tables().formulas.size(); ++i) {
        const FormulaData& data = description_->tables().formulas[i];
        const NodeKind kind = description_->record(data.node).kind;
        if (kind == NodeKind::Converter || kind == NodeKind::IntConverter)
            continue;  // the nodes that stand for its halves have the same formulas
        const CompiledFormula& compiled = compiledFormula(*description_, i);
        // The node of an expression tells of its own faults.
        if (compiled.error.empty() || compiled.faulty != data.node) continue;
        good = false;
        if (!errors) continue;
        const std::string name(description_->name(data.node));
        const std::string text(description_->text(data.text));
        const GENICAM_NAMESPACE::LogicalErrorException error =
            NODE_ERROR(LogicalErrorException, *nodes_[data.node])(
                "%s : Failed to parse formula '%s' : error message is '%s'", name.c_str(),
                text.c_str(), compiled.error.c_str());
        errors->push_back(gcstring("Error while parsing equation for node '") + name.c_str() +
                          "': " + error.what());
    }
    return good;
}

gcstring NodeMap::GetModelName() {
    return toText(description_->info().modelName);
}

gcstring NodeMap::GetVendorName() {
    return toText(description_->info().vendorName);
}

gcstring NodeMap::GetToolTip() {
    return toText(description_->info().toolTip);
}

gcstring NodeMap::GetStandardNameSpace() {
    return toText(description_->info().standardNameSpace);
}

void NodeMap::GetGenApiVersion(GENICAM_NAMESPACE::Version_t& version, uint16_t& build) {
    version.Major = GENAPI_VERSION_MAJOR;
    version.Minor = GENAPI_VERSION_MINOR;
    version.SubMinor = GENAPI_VERSION_SUBMINOR;
    build = GENAPI_VERSION_BUILD;
}

void NodeMap::GetSchemaVersion(GENICAM_NAMESPACE::Version_t& version) {
    version = description_->info().schemaVersion;
}

void NodeMap::GetDeviceVersion(GENICAM_NAMESPACE::Version_t& version) {
    version = description_->info().deviceVersion;
}

gcstring NodeMap::GetProductGuid() {
    return toText(description_->info().productGuid);
}

gcstring NodeMap::GetVersionGuid() {
    return toText(description_->info().versionGuid);
}

void NodeMap::Destroy() {
    delete this;
}

UserData_t NodeMap::GetUserData() const {
    const AutoLock lock(lock_);
    return userData_;
}

UserData_t NodeMap::SetUserData(UserData_t userData) {
    const AutoLock lock(lock_);
    return std::exchange(userData_, userData);
}

UserData_t NodeMap::userDataOf(NodeId id) const {
    const auto found = nodeUserData_.find(id);
    return found == nodeUserData_.end() ? nullptr : found->second;
}

UserData_t NodeMap::setUserDataOf(NodeId id, UserData_t userData) {
    return std::exchange(nodeUserData_[id], userData);
}

Nesting::Nesting(const Node& node) : map_(node.map()) {
    map_.spend(1 + node.record().propertyCount / kPropertiesPerWork, node);
    if (map_.nesting_ >= kMaxDependencyDepth)
        throw LIMIT_ERROR(node)("Nodes depend on one another too deeply");
    ++map_.nesting_;
}

INodeMap* createNodeMap(std::shared_ptr<const Description> description, const gcstring& deviceName,
                        CLock* lock) {
    return new NodeMap(std::move(description), deviceName, lock);
}

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE
