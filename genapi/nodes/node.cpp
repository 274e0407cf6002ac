#include "genapi/nodes/node.h"

#include <algorithm>

#include <GenApi/IEnumEntry.h>
#include <GenApi/IEnumeration.h>

#include "genapi/description/links.h"
#include "genapi/nodes/nodemap.h"
#include "genapi/nodes/properties.h"

namespace GENAPI_NAMESPACE {
namespace Engine {

using GENICAM_NAMESPACE::gcstring;

std::string errorNodeOf(const Node& node) {
    return std::string(node.name());
}

std::string entryPointOf(const Call& call) {
    if (!call.node) return {};
    return std::string(call.node->name()) + "." + call.operation + "()";
}

std::string entryPointOf(const Node& node) {
    return entryPointOf(node.map().call());
}

namespace {

[[noreturn]] void throwNoNumber(const Node& node) {
    throw NODE_ERROR(LogicalErrorException, node)("Node has no number as its value");
}

[[noreturn]] void throwNoText(const Node& node) {
    throw NODE_ERROR(LogicalErrorException, node)("Node has no text as its value");
}

}  // namespace

Node::~Node() = default;

const Description& Node::description() const {
    return map_.description();
}

const NodeRecord& Node::record() const {
    return description().record(id_);
}

std::string_view Node::name() const {
    return description().text(record().name);
}

Node& Node::node(NodeId id) const {
    return map_.node(id);
}

gcstring Node::textOf(Element element) const {
    return toText(description().text(id_, element));
}

gcstring Node::GetName(bool fullQualified) const {
    if (!fullQualified) return toText(name());
    return gcstring(record().nameSpace == Standard ? "Std::" : "Cust::") + toText(name());
}

ENameSpace Node::GetNameSpace() const {
    return static_cast<ENameSpace>(record().nameSpace);
}

EVisibility Node::GetVisibility() const {
    const auto own = static_cast<EVisibility>(record().visibility);
    if (imposedVisibility_ == kNoImposedVisibility) return own;
    return Combine(own, static_cast<EVisibility>(imposedVisibility_));
}

bool Node::IsCachable() const {
    return record().caching != NoCache;
}

EYesNo Node::IsAccessModeCacheable() const {
    return static_cast<EYesNo>(record().accessCacheable);
}

ECachingMode Node::GetCachingMode() const {
    return cachingMode();
}

int64_t Node::GetPollingTime() const {
    return record().pollingTime;
}

gcstring Node::GetToolTip() const {
    return textOf(Element::ToolTip);
}

gcstring Node::GetDescription() const {
    return textOf(Element::Description);
}

gcstring Node::GetDisplayName() const {
    if (const Property* property = description().find(id_, Element::DisplayName))
        return toText(description().text(property->text()));
    if (record().kind == NodeKind::EnumEntry) {
        const TextRef symbolic = description().tables().entries[record().data].symbolic;
        return toText(description().text(symbolic));
    }
    return toText(name());
}

gcstring Node::GetDeviceName() const {
    return map_.GetDeviceName();
}

gcstring Node::GetEventID() const {
    return textOf(Element::EventID);
}

gcstring Node::GetDocuURL() const {
    return textOf(Element::DocuURL);
}

bool Node::IsStreamable() const {
    return record().streamable;
}

bool Node::IsDeprecated() const {
    return record().deprecated;
}

bool Node::IsFeature() const {
    return record().feature;
}

INodeMap* Node::GetNodeMap() const {
    return &map_;
}

INode* Node::GetAlias() const {
    const Property* property = description().find(id_, Element::pAlias);
    return property ? &node(property->node()) : nullptr;
}

INode* Node::GetCastAlias() const {
    const Property* property = description().find(id_, Element::pCastAlias);
    return property ? &node(property->node()) : nullptr;
}

void Node::fillNodes(const std::vector<NodeId>& ids, NodeList_t& nodes) const {
    nodes.clear();
    nodes.reserve(ids.size());
    for (const NodeId id : ids)
        nodes.push_back(&node(id));
}

void Node::fillFeatures(const std::vector<NodeId>& ids, FeatureList_t& features) const {
    features.clear();
    for (const NodeId id : ids)
        if (auto* value = dynamic_cast<IValue*>(&node(id))) features.push_back(value);
}

void Node::GetChildren(NodeList_t& found, ELinkType linkType) const {
    fillNodes(children(description(), id_, linkType), found);
}

void Node::GetParents(NodeList_t& found) const {
    fillNodes(parents(description(), id_), found);
}

bool Node::IsSelector() const {
    return description().find(id_, Element::pSelected) != nullptr;
}

void Node::GetSelectedFeatures(FeatureList_t& features) const {
    fillFeatures(selectedFeatures(description(), id_), features);
}

void Node::GetSelectingFeatures(FeatureList_t& features) const {
    fillFeatures(selectingFeatures(description(), id_), features);
}

void Node::GetPropertyNames(GENICAM_NAMESPACE::gcstring_vector& names) const {
    propertyNames(*this, names);
}

bool Node::GetProperty(const gcstring& property, gcstring& value, gcstring& attribute) {
    return propertyOf(*this, property.c_str(), value, attribute);
}

EInterfaceType Node::GetPrincipalInterfaceType() const {
    switch (record().kind) {
        case NodeKind::Node:
            return intfIValue;
        case NodeKind::Category:
            return intfICategory;
        case NodeKind::Boolean:
            return intfIBoolean;
        case NodeKind::Command:
            return intfICommand;
        case NodeKind::Float:
        case NodeKind::FloatReg:
        case NodeKind::SwissKnife:
        case NodeKind::Converter:
            return intfIFloat;
        case NodeKind::Enumeration:
            return intfIEnumeration;
        case NodeKind::EnumEntry:
            return intfIEnumEntry;
        case NodeKind::String:
        case NodeKind::StringReg:
        case NodeKind::TextDesc:
            return intfIString;
        case NodeKind::Register:
        case NodeKind::ConfRom:
            return intfIRegister;
        case NodeKind::Port:
            return intfIPort;
        default:
            return intfIInteger;
    }
}

void Node::InvalidateNode() {
    modify("InvalidateNode", invalidatedBy(description(), id_), [] {});
}

void Node::ImposeAccessMode(EAccessMode mode) {
    modify("ImposeAccessMode", invalidatedBy(description(), id_),
           [&] { imposedAccess_ = static_cast<std::uint8_t>(mode); });
}

void Node::ImposeVisibility(EVisibility visibility) {
    const Entry entry(*this, "ImposeVisibility");
    imposedVisibility_ = visibility == _UndefinedVisibility ? kNoImposedVisibility
                                                            : static_cast<std::uint8_t>(visibility);
}

UserData_t Node::GetUserData() const {
    const Entry entry(*this, "GetUserData");
    return map_.userDataOf(id_);
}

UserData_t Node::SetUserData(UserData_t userData) {
    const Entry entry(*this, "SetUserData");
    return map_.setUserDataOf(id_, userData);
}

CallbackHandleType Node::RegisterCallback(CNodeCallback* callback) {
    const Entry entry(*this, "RegisterCallback");
    if (!callback)
        throw NODE_ERROR(InvalidArgumentException, *this)("The callback must not be NULL");
    if (!callbacks_) callbacks_ = std::make_unique<std::vector<std::shared_ptr<Callback>>>();
    // The map owns the callback from here on, so that nothing fails after it.
    callbacks_->reserve(callbacks_->size() + 1);
    callbacks_->push_back(std::make_shared<Callback>(*callback));
    map_.callbackAdded();
    return reinterpret_cast<CallbackHandleType>(callback);
}

bool Node::DeregisterCallback(CallbackHandleType handle) {
    std::shared_ptr<Callback> removed;  // ends after the lock: its object may call into the map
    const Entry entry(*this, "DeregisterCallback");
    if (!callbacks_) return false;
    const auto found =
        std::find_if(callbacks_->begin(), callbacks_->end(),
                     [handle](const std::shared_ptr<Callback>& c) { return c->is(handle); });
    if (found == callbacks_->end()) return false;
    removed = std::move(*found);
    callbacks_->erase(found);
    map_.callbackRemoved();
    return true;
}

std::int64_t Node::getInt(ReadOptions) {
    throwNoNumber(*this);
}
void Node::setInt(std::int64_t, bool) {
    throwNoNumber(*this);
}
std::int64_t Node::minInt() {
    throwNoNumber(*this);
}
std::int64_t Node::maxInt() {
    throwNoNumber(*this);
}
std::int64_t Node::incInt() {
    throwNoNumber(*this);
}
double Node::getFloat(ReadOptions) {
    throwNoNumber(*this);
}
void Node::setFloat(double, bool) {
    throwNoNumber(*this);
}
double Node::minFloat() {
    throwNoNumber(*this);
}
double Node::maxFloat() {
    throwNoNumber(*this);
}
bool Node::hasInc() {
    throwNoNumber(*this);
}
double Node::incFloat() {
    throwNoNumber(*this);
}
std::string Node::getText(ReadOptions) {
    throwNoText(*this);
}
void Node::setText(const std::string&, bool) {
    throwNoText(*this);
}
std::int64_t Node::maxTextLength() {
    throwNoText(*this);
}

void Node::checkErrorNodes() {
    for (const Property& property : description().properties(id_)) {
        if (property.element != Element::pError) continue;
        Node& source = node(property.node());
        auto* error = dynamic_cast<IEnumeration*>(&source);
        const std::int64_t value = error ? source.getInt({}) : 0;
        if (value == 0) continue;
        IEnumEntry* entry = error->GetEntry(value);
        if (!entry)
            throw NODE_ERROR(LogicalErrorException, *this)(
                "Error node '%s' has a value that is none of its entries", source.name().data());
        throw NODE_ERROR(RuntimeException, *this)("%s : %s", entry->GetSymbolic().c_str(),
                                                  entry->GetNode()->GetToolTip().c_str());
    }
}

bool Node::isValueCached() const {
    return (map_.flagsOf(id_) & NodeMap::kValueCached) != 0;
}

bool Node::isValueKnown(ReadOptions options, bool restsOnNodes) const {
    const bool verify = options.verify && restsOnNodes;
    const std::uint8_t flags = map_.flagsOf(id_);
    if ((flags & NodeMap::kValueCached) && !options.ignoreCache && !verify) return true;
    return (flags & NodeMap::kSeen) && (!options.ignoreCache || (flags & NodeMap::kFresh)) &&
           (!verify || (flags & NodeMap::kVerified));
}

void Node::valueWasRead(ReadOptions options) {
    if (!options.leavesNothing() && cachingMode() != NoCache) {
        map_.flagsOf(id_) |= NodeMap::kValueCached;
    } else {
        valueIsUnknown();
        if (options.leavesNothing() || GetPrincipalInterfaceType() != intfIFloat)
            map_.retryAccess(id_);
    }
    std::uint8_t& flags = map_.flagsOf(id_);
    flags &= static_cast<std::uint8_t>(~(NodeMap::kFresh | NodeMap::kVerified));
    flags |= NodeMap::kSeen;
    if (options.ignoreCache) flags |= NodeMap::kFresh;
    map_.passes(id_);
}

bool Node::isVerified() const {
    return (map_.flagsOf(id_) & NodeMap::kVerified) != 0;
}

void Node::valueWasVerified() {
    map_.flagsOf(id_) |= NodeMap::kVerified;
    map_.passes(id_);
}

void Node::valueWasWritten() {
    if (cachingMode() == WriteThrough) {
        map_.flagsOf(id_) |= NodeMap::kValueCached;
        map_.keep(id_);
    } else {
        valueIsUnknown();
    }
}

void Node::valueIsUnknown() {
    map_.flagsOf(id_) &= static_cast<std::uint8_t>(~NodeMap::kValueCached);
}

bool Node::isPollingBlocked() {
    const NodeId blocker = record().blockPolling;
    if (blocker == kNoNode) return false;
    Node& source = node(blocker);
    return IsReadable(source.accessMode()) && isTrue(source);
}

Presentation effectivePresentation(Node& start) {
    Presentation result;
    // The chain was checked for cycles when the description was loaded.
    for (Node* node = &start; node; node = node->presentationSource()) {
        const Presentation* own = node->presentation();
        if (!own) break;
        if (!result.unit) result.unit = own->unit;
        if (result.representation == _UndefinedRepresentation)
            result.representation = own->representation;
        if (result.notation == _UndefinedEDisplayNotation) result.notation = own->notation;
        if (result.precision < 0) result.precision = own->precision;
    }
    return result;
}

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE
