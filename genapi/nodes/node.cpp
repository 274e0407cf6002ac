#include "genapi/nodes/node.h"

#include <algorithm>

#include "genapi/description/interfaces.h"
#include "genapi/description/links.h"
#include "genapi/nodes/enumerationnode.h"
#include "genapi/nodes/nodemap.h"
#include "genapi/nodes/properties.h"

namespace GENAPI_NAMESPACE {
namespace Engine {

using GENICAM_NAMESPACE::gcstring;

std::string ErrorNodeOf(const Node& node) {
    return std::string(node.Name());
}

std::string EntryPointOf(const Call& call) {
    if (!call.node) return {};
    return std::string(call.node->Name()) + "." + call.operation + "()";
}

std::string EntryPointOf(const Node& node) {
    return EntryPointOf(node.Map().CurrentCall());
}

namespace {

[[noreturn]] void ThrowNoNumber(const Node& node) {
    throw NODE_ERROR(LogicalErrorException, node)("Node has no number as its value");
}

[[noreturn]] void ThrowNoText(const Node& node) {
    throw NODE_ERROR(LogicalErrorException, node)("Node has no text as its value");
}

}  // namespace

Node::~Node() = default;

const Description& Node::CameraDescription() const {
    return map_.CameraDescription();
}

const NodeRecord& Node::Record() const {
    return CameraDescription().Record(id_);
}

std::string_view Node::Name() const {
    return CameraDescription().Text(Record().name);
}

Node& Node::NodeAt(NodeId id) const {
    return map_.NodeAt(id);
}

gcstring Node::TextOf(Element element) const {
    return ToText(CameraDescription().Text(id_, element));
}

gcstring Node::GetName(bool fullQualified) const {
    if (!fullQualified) return ToText(Name());
    return gcstring(Record().nameSpace == Standard ? "Std::" : "Cust::") + ToText(Name());
}

ENameSpace Node::GetNameSpace() const {
    return static_cast<ENameSpace>(Record().nameSpace);
}

EVisibility Node::GetVisibility() const {
    const auto own = static_cast<EVisibility>(Record().visibility);
    if (imposedVisibility_ == kNoImposedVisibility) return own;
    return Combine(own, static_cast<EVisibility>(imposedVisibility_));
}

bool Node::IsCachable() const {
    return Record().caching != NoCache;
}

EYesNo Node::IsAccessModeCacheable() const {
    return static_cast<EYesNo>(Record().accessCacheable);
}

ECachingMode Node::GetCachingMode() const {
    return CachingMode();
}

int64_t Node::GetPollingTime() const {
    return Record().pollingTime;
}

gcstring Node::GetToolTip() const {
    return TextOf(Element::ToolTip);
}

gcstring Node::GetDescription() const {
    return TextOf(Element::Description);
}

gcstring Node::GetDisplayName() const {
    if (const Property* property = CameraDescription().Find(id_, Element::DisplayName))
        return ToText(CameraDescription().Text(property->Text()));
    if (Record().kind == NodeKind::EnumEntry) {
        const TextRef symbolic = CameraDescription().Tables().entries[Record().data].symbolic;
        return ToText(CameraDescription().Text(symbolic));
    }
    return ToText(Name());
}

gcstring Node::GetDeviceName() const {
    return map_.GetDeviceName();
}

gcstring Node::GetEventID() const {
    return TextOf(Element::EventID);
}

gcstring Node::GetDocuURL() const {
    return TextOf(Element::DocuURL);
}

bool Node::IsStreamable() const {
    return Record().streamable;
}

bool Node::IsDeprecated() const {
    return Record().deprecated;
}

bool Node::IsFeature() const {
    return Record().feature;
}

INodeMap* Node::GetNodeMap() const {
    return &map_;
}

INode* Node::GetAlias() const {
    const Property* property = CameraDescription().Find(id_, Element::pAlias);
    return property ? &NodeAt(property->Target()) : nullptr;
}

INode* Node::GetCastAlias() const {
    const Property* property = CameraDescription().Find(id_, Element::pCastAlias);
    return property ? &NodeAt(property->Target()) : nullptr;
}

void Node::FillNodes(const std::vector<NodeId>& ids, NodeList_t& nodes) const {
    nodes.clear();
    nodes.reserve(ids.size());
    for (const NodeId id : ids)
        nodes.push_back(&NodeAt(id));
}

void Node::FillFeatures(const std::vector<NodeId>& ids, FeatureList_t& features) const {
    features.clear();
    for (const NodeId id : ids)
        if (auto* value = dynamic_cast<IValue*>(&NodeAt(id))) features.push_back(value);
}

void Node::GetChildren(NodeList_t& found, ELinkType linkType) const {
    FillNodes(Children(CameraDescription(), id_, linkType), found);
}

void Node::GetParents(NodeList_t& found) const {
    FillNodes(Parents(CameraDescription(), id_), found);
}

bool Node::IsSelector() const {
    return CameraDescription().Find(id_, Element::pSelected) != nullptr;
}

void Node::GetSelectedFeatures(FeatureList_t& features) const {
    FillFeatures(SelectedFeatures(CameraDescription(), id_), features);
}

void Node::GetSelectingFeatures(FeatureList_t& features) const {
    FillFeatures(SelectingFeatures(CameraDescription(), id_), features);
}

void Node::GetPropertyNames(GENICAM_NAMESPACE::gcstring_vector& names) const {
    PropertyNames(*this, names);
}

bool Node::GetProperty(const gcstring& property, gcstring& value, gcstring& attribute) {
    return PropertyOf(*this, property.c_str(), value, attribute);
}

EInterfaceType Node::GetPrincipalInterfaceType() const {
    return InterfaceOf(Record().kind);
}

void Node::InvalidateNode() {
    RunChange("InvalidateNode", InvalidatedBy(CameraDescription(), id_), [] {});
}

void Node::ImposeAccessMode(EAccessMode mode) {
    RunChange("ImposeAccessMode", InvalidatedBy(CameraDescription(), id_),
              [&] { imposedAccess_ = static_cast<uint8_t>(mode); });
}

void Node::ImposeVisibility(EVisibility visibility) {
    const Entry entry(*this, "ImposeVisibility");
    imposedVisibility_ = visibility == _UndefinedVisibility ? kNoImposedVisibility
                                                            : static_cast<uint8_t>(visibility);
}

UserData_t Node::GetUserData() const {
    const Entry entry(*this, "GetUserData");
    return map_.UserDataOf(id_);
}

UserData_t Node::SetUserData(UserData_t userData) {
    const Entry entry(*this, "SetUserData");
    return map_.SetUserDataOf(id_, userData);
}

CallbackHandleType Node::RegisterCallback(CNodeCallback* callback) {
    const Entry entry(*this, "RegisterCallback");
    if (!callback)
        throw NODE_ERROR(InvalidArgumentException, *this)("The callback must not be NULL");
    if (!callbacks_) callbacks_ = std::make_unique<std::vector<std::shared_ptr<Callback>>>();
    // From push_back on the map owns the callback, so nothing after it may fail.
    callbacks_->reserve(callbacks_->size() + 1);
    callbacks_->push_back(std::make_shared<Callback>(*callback));
    map_.CountCallback();
    return reinterpret_cast<CallbackHandleType>(callback);
}

bool Node::DeregisterCallback(CallbackHandleType handle) {
    std::shared_ptr<Callback>
        removed;  // destroyed without the lock, as its object may call into the map
    const Entry entry(*this, "DeregisterCallback");
    if (!callbacks_) return false;
    const auto found =
        std::find_if(callbacks_->begin(), callbacks_->end(),
                     [handle](const std::shared_ptr<Callback>& c) { return c->Is(handle); });
    if (found == callbacks_->end()) return false;
    removed = std::move(*found);
    callbacks_->erase(found);
    map_.UncountCallback();
    return true;
}

int64_t Node::GetInt(ReadOptions) {
    ThrowNoNumber(*this);
}
void Node::SetInt(int64_t, bool) {
    ThrowNoNumber(*this);
}
int64_t Node::MinInt() {
    ThrowNoNumber(*this);
}
int64_t Node::MaxInt() {
    ThrowNoNumber(*this);
}
int64_t Node::IncInt() {
    ThrowNoNumber(*this);
}
double Node::GetFloat(ReadOptions) {
    ThrowNoNumber(*this);
}
void Node::SetFloat(double, bool) {
    ThrowNoNumber(*this);
}
double Node::MinFloat() {
    ThrowNoNumber(*this);
}
double Node::MaxFloat() {
    ThrowNoNumber(*this);
}
bool Node::HasIncFloat() {
    ThrowNoNumber(*this);
}
double Node::IncFloat() {
    ThrowNoNumber(*this);
}
std::string Node::GetText(ReadOptions) {
    ThrowNoText(*this);
}
void Node::SetText(const std::string&, bool) {
    ThrowNoText(*this);
}
int64_t Node::MaxTextLength() {
    ThrowNoText(*this);
}

void Node::CheckErrorNodes() {
    for (const Property& property : CameraDescription().Properties(id_)) {
        if (property.element != Element::pError) continue;
        Node& source = NodeAt(property.Target());
        if (source.Record().kind != NodeKind::Enumeration) continue;
        const int64_t value = source.GetInt({});
        if (value == 0) continue;
        const EnumEntryNode* entry = static_cast<EnumerationNode&>(source).EntryOf(value);
        if (!entry)
            throw NODE_ERROR(LogicalErrorException, *this)(
                "Error node '%s' has a value that is none of its entries", source.Name().data());
        throw NODE_ERROR(RuntimeException, *this)("%s : %s", entry->GetSymbolic().c_str(),
                                                  entry->GetToolTip().c_str());
    }
}

bool Node::IsValueCached() const {
    return (map_.Flags(id_) & NodeMap::kValueCached) != 0;
}

bool Node::IsValueKnown(ReadOptions options, bool restsOnNodes) const {
    const bool verify = options.verify && restsOnNodes;
    const uint8_t flags = map_.Flags(id_);
    if ((flags & NodeMap::kValueCached) && !options.ignoreCache && !verify) return true;
    return (flags & NodeMap::kSeen) && (!options.ignoreCache || (flags & NodeMap::kFresh)) &&
           (!verify || (flags & NodeMap::kVerified));
}

void Node::NoteRead(ReadOptions options) {
    if (!options.LeavesNothing() && CachingMode() != NoCache) {
        map_.SetFlags(id_, NodeMap::kValueCached);
    } else {
        ForgetValue();
        if (options.LeavesNothing() || GetPrincipalInterfaceType() != intfIFloat)
            map_.RetryAccess(id_);
    }
    map_.ClearFlags(id_, NodeMap::kFresh | NodeMap::kVerified);
    map_.SetFlags(id_, options.ignoreCache ? NodeMap::kSeen | NodeMap::kFresh : NodeMap::kSeen);
    map_.LetPass(id_);
}

bool Node::IsVerified() const {
    return (map_.Flags(id_) & NodeMap::kVerified) != 0;
}

void Node::NoteVerified() {
    map_.SetFlags(id_, NodeMap::kVerified);
    map_.LetPass(id_);
}

void Node::NoteWritten() {
    if (CachingMode() == WriteThrough) {
        map_.SetFlags(id_, NodeMap::kValueCached);
        map_.Keep(id_);
    } else {
        ForgetValue();
    }
}

void Node::ForgetValue() {
    map_.ClearFlags(id_, NodeMap::kValueCached);
}

bool Node::IsPollingBlocked() {
    const NodeId blocker = Record().blockPolling;
    if (blocker == kNoNode) return false;
    Node& source = NodeAt(blocker);
    return IsReadable(source.AccessMode()) && IsTrue(source);
}

const Presentation& Node::OwnPresentation() const {
    static const Presentation kNone;
    return kNone;
}

Presentation EffectivePresentation(const Node& node) {
    Presentation result = node.OwnPresentation();
    // The loader has checked this chain for cycles.
    for (NodeId id = node.PresentationSource(); id != kNoNode;) {
        const Node& source = node.NodeAt(id);
        const Presentation& own = source.OwnPresentation();
        if (!result.unit) result.unit = own.unit;
        if (result.representation == _UndefinedRepresentation)
            result.representation = own.representation;
        if (result.notation == _UndefinedEDisplayNotation) result.notation = own.notation;
        if (result.precision < 0) result.precision = own.precision;
        id = source.PresentationSource();
    }
    return result;
}

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE
