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

// Change sets of one description. Many nodes may share a set, which is merged once: without that,
// they could need much more memory than there is.
ChangeSet UnionOf(std::vector<const ChangeSet*> sets) {
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
      access_(new std::atomic<uint8_t>[description_->NodeCount()]),
      flags_(new uint8_t[description_->NodeCount()]()) {
    for (NodeId id = 0; id < description_->NodeCount(); ++id)
        access_[id].store(kUnknownAccess, std::memory_order_relaxed);
    CreateNodes();
    InitialisePolling();
}

NodeMap::~NodeMap() {
    for (Node* node : nodes_)
        node->~Node();
}

void NodeMap::CreateNodes() {
    // All nodes lie in one block, in the order of their numbers.
    size_t size = 0;
    for (NodeId id = 0; id < description_->NodeCount(); ++id)
        size += NodeSize(description_->Record(id).kind);
    arena_.reset(new std::byte[size]);
    nodes_.reserve(description_->NodeCount());
    std::byte* place = arena_.get();
    for (NodeId id = 0; id < description_->NodeCount(); ++id) {
        nodes_.push_back(MakeNode(*this, id, place));
        place += NodeSize(description_->Record(id).kind);
    }
}

void NodeMap::InitialisePolling() {
    for (NodeId id = 0; id < description_->NodeCount(); ++id)
        if (description_->Record(id).pollingTime >= 0) polled_.push_back({id, 0});
}

void NodeMap::GetNodes(NodeList_t& nodes) const {
    nodes.clear();
    nodes.reserve(nodes_.size());
    for (Node* node : nodes_)
        nodes.push_back(node);
}

INode* NodeMap::GetNode(const gcstring& name) const {
    const NodeId id = description_->Find(std::string_view(name.c_str(), name.length()));
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
        self.InvalidateAll();
        notification.AddAll(self);
        notification.Fire(cbPostInsideLock);
    }
    notification.Fire(cbPostOutsideLock);
}

void NodeMap::RetryAccess(NodeId id) {
    if (access_[id].load(std::memory_order_relaxed) != kFailedAccess) return;
    access_[id].store(kPassingFailure, std::memory_order_relaxed);
    LetPass(id);
}

void NodeMap::Keep(NodeId id) {
    SetFlags(id, kKeep);
    written_.push_back(id);
}

void NodeMap::ForgetWritten() {
    for (const NodeId id : written_)
        ClearFlags(id, kKeep);
    try {
        std::vector<const ChangeSet*> sets;
        for (const NodeId id : written_)
            sets.push_back(&InvalidatedBy(*description_, id));
        Invalidate(UnionOf(std::move(sets)));
    } catch (const std::bad_alloc&) {  // no memory for the set of changed nodes
        InvalidateAll();
        written_.clear();
    }
}

void NodeMap::DropPassing() {
    for (const NodeId id : passing_) {
        ClearFlags(id, kSeen | kFresh | kVerified);
        const uint8_t mode = access_[id].load(std::memory_order_relaxed);
        if (mode == kPassingFailure || (mode < kFirstUnknownAccess && (mode & kPassingAccess)))
            access_[id].store(kUnknownAccess, std::memory_order_release);
    }
    passing_.clear();
}

void NodeMap::ThrowTooMuchWork(const Node& node) const {
    const Node& feature = call_.node ? *call_.node : node;
    throw LIMIT_ERROR(feature)("'%s' takes too many evaluations of other nodes",
                               feature.Name().data());
}

void NodeMap::Invalidate(const ChangeSet& nodes) {
    for (const NodeId id : nodes) {
        access_[id].store(kUnknownAccess, std::memory_order_release);
        if (flags_[id] & kKeep) continue;
        flags_[id] &= kActive;
        nodes_[id]->DropCaches();
    }
    for (const NodeId id : written_)
        ClearFlags(id, kKeep);
    written_.clear();
}

void NodeMap::InvalidateAll() {
    for (NodeId id = 0; id < nodes_.size(); ++id) {
        access_[id].store(kUnknownAccess, std::memory_order_relaxed);
        flags_[id] &= kActive;
    }
    registers_.DropAll();
}

bool NodeMap::ConnectPort(IPort* port, const gcstring& portName) {
    INode* node = GetNode(portName);
    if (!node || node->GetPrincipalInterfaceType() != intfIPort) return false;
    static_cast<PortNode*>(node)->SetPortImpl(port);
    return true;
}

bool NodeMap::Connect(IPort* port, const gcstring& portName) const {
    return const_cast<NodeMap*>(this)->ConnectPort(port, portName);
}

bool NodeMap::Connect(IPort* port) const {
    return Connect(port, "Device");
}

bool NodeMap::Connect(IPortStacked* port, const gcstring& portName) {
    return ConnectPort(port, portName);
}

bool NodeMap::Connect(IPortStacked* port) {
    return ConnectPort(port, "Device");
}

gcstring NodeMap::GetDeviceName() {
    return ToText(deviceName_);
}

void NodeMap::Poll(int64_t elapsedTime) {
    if (elapsedTime <= 0) return;
    Notification notification;
    {
        const Operation operation(*this);
        std::vector<const ChangeSet*> sets;
        for (Polled& polled : polled_) {
            Node& node = *nodes_[polled.node];
            if (!node.IsPolled()) continue;
            const int64_t period = node.Record().pollingTime;
            // Limited, so that the sum does not overflow.
            polled.elapsed += std::min(elapsedTime, period + 1);
            if (polled.elapsed < period || node.IsPollingBlocked()) continue;
            polled.elapsed = 0;
            sets.push_back(&InvalidatedBy(*description_, polled.node));
        }
        const ChangeSet due = UnionOf(std::move(sets));
        Invalidate(due);
        notification.Add(*this, due);
        notification.Fire(cbPostInsideLock);
    }
    notification.Fire(cbPostOutsideLock);
}

CLock& NodeMap::GetLock() const {
    return lock_;
}

bool NodeMap::ParseSwissKnifes(GENICAM_NAMESPACE::gcstring_vector* errors) const {
    bool good = true;
    for (uint32_t i = 0; i < description_->Tables().formulas.size(); ++i) {
        const FormulaData& data = description_->Tables().formulas[i];
        const NodeKind kind = description_->Record(data.node).kind;
        if (kind == NodeKind::Converter || kind == NodeKind::IntConverter)
            continue;  // the nodes of its halves have the same formulas
        const CompiledFormula& compiled = ProgramOf(*description_, i);
        // The node of an expression reports its own faults.
        if (compiled.error.empty() || compiled.faulty != data.node) continue;
        good = false;
        if (!errors) continue;
        const std::string name(description_->Name(data.node));
        const std::string text(description_->Text(data.text));
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
    return ToText(description_->Info().modelName);
}

gcstring NodeMap::GetVendorName() {
    return ToText(description_->Info().vendorName);
}

gcstring NodeMap::GetToolTip() {
    return ToText(description_->Info().toolTip);
}

gcstring NodeMap::GetStandardNameSpace() {
    return ToText(description_->Info().standardNameSpace);
}

void NodeMap::GetGenApiVersion(GENICAM_NAMESPACE::Version_t& version, uint16_t& build) {
    version.Major = GENAPI_VERSION_MAJOR;
    version.Minor = GENAPI_VERSION_MINOR;
    version.SubMinor = GENAPI_VERSION_SUBMINOR;
    build = GENAPI_VERSION_BUILD;
}

void NodeMap::GetSchemaVersion(GENICAM_NAMESPACE::Version_t& version) {
    version = description_->Info().schemaVersion;
}

void NodeMap::GetDeviceVersion(GENICAM_NAMESPACE::Version_t& version) {
    version = description_->Info().deviceVersion;
}

gcstring NodeMap::GetProductGuid() {
    return ToText(description_->Info().productGuid);
}

gcstring NodeMap::GetVersionGuid() {
    return ToText(description_->Info().versionGuid);
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

UserData_t NodeMap::UserDataOf(NodeId id) const {
    const auto found = nodeUserData_.find(id);
    return found == nodeUserData_.end() ? nullptr : found->second;
}

UserData_t NodeMap::SetUserDataOf(NodeId id, UserData_t userData) {
    return std::exchange(nodeUserData_[id], userData);
}

Nesting::Nesting(const Node& node) : map_(node.Map()) {
    map_.Spend(1 + node.Record().propertyCount / kPropertiesPerWork, node);
    if (map_.nesting_ >= kMaxDependencyDepth)
        throw LIMIT_ERROR(node)("Nodes depend on one another too deeply");
    ++map_.nesting_;
}

INodeMap* MakeNodeMap(std::shared_ptr<const Description> description, const gcstring& deviceName,
                      CLock* lock) {
    return new NodeMap(std::move(description), deviceName, lock);
}

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE
