#include "ZelCameraApi/ZelGenParam/paramimpl.h"

#include <new>

#include "ZelCameraApi/ZelGenParam/arrayimpl.h"
#include "ZelCameraApi/ZelGenParam/categoryparam.h"
#include "ZelCameraApi/ZelGenParam/enumparams.h"
#include "ZelCameraApi/ZelGenParam/genapierrors.h"
#include "ZelCameraApi/ZelGenParam/nodecallback.h"
#include "ZelCameraApi/ZelGenParam/valueparams.h"

namespace ZelCameraApi::Internal {

ParamImpl::ParamImpl(ArrayImpl* owner, GenApi::INode* node) : node_(node), owner_(owner) {}

ParamImpl::~ParamImpl() = default;

GenApi::INode* ParamImpl::GetNode() {
    return node_;
}

// The result of `get`, or null if there is no memory for it.
template <typename Get>
const char* ParamImpl::KeepText(const char* operation, Get&& get) {
    GenApi::INode& node = *node_;
    try {
        return texts_.Keep(operation, get(node));
    } catch (const std::bad_alloc&) {
        return nullptr;
    } catch (const GenICam::BadAllocException&) {
        return nullptr;
    }
}

const char* ParamImpl::GetName() {
    return KeepText("GetName", [](GenApi::INode& node) { return node.GetName(); });
}

const char* ParamImpl::GetToolTip() {
    return KeepText("GetToolTip", [](GenApi::INode& node) { return node.GetToolTip(); });
}

const char* ParamImpl::GetDescription() {
    return KeepText("GetDescription", [](GenApi::INode& node) { return node.GetDescription(); });
}

const char* ParamImpl::GetDisplayName() {
    return KeepText("GetDisplayName", [](GenApi::INode& node) { return node.GetDisplayName(); });
}

// The result of `query(node)`, or `fallback` if it fails.
template <typename Value, typename Query>
Value ParamImpl::Ask(Value fallback, Query&& query) const {
    if (!node_.IsValid()) return fallback;
    try {
        return query(*node_);
    } catch (...) {
        return fallback;
    }
}

ZelGenParam::Visibility ParamImpl::GetVisibility() {
    return Ask(ZelGenParam::Visibility::UndefinedVisibility, [](const GenApi::INode& node) {
        return static_cast<ZelGenParam::Visibility>(node.GetVisibility());
    });
}

bool ParamImpl::IsVisible(ZelGenParam::Visibility v) {
    return Ask(false, [v](const GenApi::INode& node) {
        return static_cast<ZelGenParam::Visibility>(node.GetVisibility()) <= v;
    });
}

bool ParamImpl::IsValueCached() {
    return Ask(false, [](GenApi::INode& node) {
        const GenApi::CValuePtr value(&node);
        return value.IsValid() && value->IsValueCacheValid();
    });
}

// Modes that are not certain count, too.
bool ParamImpl::IsAvailable() {
    return Ask(false, [](const GenApi::INode& node) { return GenApi::IsAvailable(node); });
}

bool ParamImpl::IsWritable() {
    return Ask(false, [](const GenApi::INode& node) { return GenApi::IsWritable(node); });
}

bool ParamImpl::IsReadable() {
    return Ask(false, [](const GenApi::INode& node) { return GenApi::IsReadable(node); });
}

bool ParamImpl::IsStreamable() {
    return Ask(false, [](const GenApi::INode& node) { return node.IsStreamable(); });
}

ZelCamErr ParamImpl::RegisterEventSink(ZelGenParam::ParamEventSink* sink) {
    try {
        auto callback = std::make_unique<ParamEventSink_NodeCallback>(GetNode(), this, sink,
                                                                      GenApi::cbPostInsideLock);
        // Nothing may fail once the callback is registered.
        decltype(sinks_) added;
        GenApi::CallbackHandleType& handle = added[sink];
        handle = node_->RegisterCallback(callback.get());
        (void)callback.release();  // the node map owns it
        const std::lock_guard<std::mutex> lock(sinksMutex_);
        // If a sink is registered twice, the first handle stays.
        sinks_.merge(added);
        return ZelCamErr_Success;
    } catch (...) {
        return CodeOfParamAccess(ValueAccess::Write);
    }
}

ZelCamErr ParamImpl::UnregisterEventSink(ZelGenParam::ParamEventSink* sink) {
    GenApi::CallbackHandleType handle{};
    {
        const std::lock_guard<std::mutex> lock(sinksMutex_);
        const auto found = sinks_.find(sink);
        if (found == sinks_.end()) return ZelCamErr_IndexOutOfRange;
        handle = found->second;
        sinks_.erase(found);
    }
    node_->DeregisterCallback(handle);
    return ZelCamErr_Success;
}

bool ParamImpl::IsConnected() const {
    return owner_->IsConnected();
}

ZelGenParam::Category* ParamImpl::ToCategory() {
    return dynamic_cast<ZelGenParam::Category*>(this);
}

ZelGenParam::Boolean* ParamImpl::ToBoolean() {
    return dynamic_cast<ZelGenParam::Boolean*>(this);
}

ZelGenParam::Command* ParamImpl::ToCommand() {
    return dynamic_cast<ZelGenParam::Command*>(this);
}

ZelGenParam::EnumEntry* ParamImpl::ToEnumEntry() {
    return dynamic_cast<ZelGenParam::EnumEntry*>(this);
}

ZelGenParam::Enum* ParamImpl::ToEnum() {
    return dynamic_cast<ZelGenParam::Enum*>(this);
}

ZelGenParam::Float* ParamImpl::ToFloat() {
    return dynamic_cast<ZelGenParam::Float*>(this);
}

ZelGenParam::Int* ParamImpl::ToInt() {
    return dynamic_cast<ZelGenParam::Int*>(this);
}

ZelGenParam::String* ParamImpl::ToString() {
    return dynamic_cast<ZelGenParam::String*>(this);
}

namespace {

std::unique_ptr<ParamImpl> MakeParam(ArrayImpl* owner, GenApi::INode* node) {
    switch (node->GetPrincipalInterfaceType()) {
        case GenApi::intfIInteger:
            return std::make_unique<IntParamImpl>(owner, node);
        case GenApi::intfIFloat:
            return std::make_unique<FloatParamImpl>(owner, node);
        case GenApi::intfIString:
            return std::make_unique<StringParamImpl>(owner, node);
        case GenApi::intfIEnumeration:
            return std::make_unique<EnumerationParamImpl>(owner, node);
        case GenApi::intfIEnumEntry:
            return std::make_unique<EnumEntryParamImpl>(owner, node);
        case GenApi::intfIBoolean:
            return std::make_unique<BooleanParamImpl>(owner, node);
        case GenApi::intfICommand:
            return std::make_unique<CommandParamImpl>(owner, node);
        case GenApi::intfICategory:
            return std::make_unique<CategoryParamImpl>(owner, node);
        default:
            return std::make_unique<UnknownParamImpl>(owner, node);
    }
}

}  // namespace

std::unique_ptr<ParamImpl> CreateParam(ArrayImpl* owner, GenApi::INode* node) {
    try {
        const GenApi::CNodePtr pointer(node);
        return MakeParam(owner, pointer);
    } catch (...) {
        return nullptr;
    }
}

}  // namespace ZelCameraApi::Internal
