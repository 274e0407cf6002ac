// The base of parameter objects of all kinds.
#pragma once

#include <map>
#include <memory>
#include <mutex>

#include <GenApi/GenApi.h>

#include "ZelCameraApi/ZelGenParam/kepttexts.h"
#include "ZelGenParam/Array.h"
#include "ZelGenParam/Param.h"

namespace ZelCameraApi::Internal {

class ArrayImpl;

// A handle on one node of an Array's node map. The Array (or, for entries, the Enum) owns it and
// destroys it before the node map, so the node is valid as long as the Param. Callbacks that are
// still registered then end with the node map. Thread-safe, like the Array.
class ParamImpl : public virtual ZelGenParam::Param {
  public:
    ParamImpl(ArrayImpl* owner, GenApi::INode* node);
    ParamImpl(const ParamImpl&) = delete;
    ParamImpl& operator=(const ParamImpl&) = delete;

    const char* GetName() override;
    const char* GetToolTip() override;
    const char* GetDescription() override;
    const char* GetDisplayName() override;
    ZelGenParam::Visibility GetVisibility() override;
    bool IsValueCached() override;
    bool IsAvailable() override;
    bool IsWritable() override;
    bool IsReadable() override;
    bool IsStreamable() override;
    bool IsVisible(ZelGenParam::Visibility v) override;
    ZelCamErr RegisterEventSink(ZelGenParam::ParamEventSink* sink) override;
    ZelCamErr UnregisterEventSink(ZelGenParam::ParamEventSink* sink) override;

    // Throws LogicalErrorException if there is no node, like the four texts above.
    GenApi::INode* GetNode() override;

    ZelGenParam::Category* ToCategory() override;
    ZelGenParam::Boolean* ToBoolean() override;
    ZelGenParam::Command* ToCommand() override;
    ZelGenParam::EnumEntry* ToEnumEntry() override;
    ZelGenParam::Enum* ToEnum() override;
    ZelGenParam::Float* ToFloat() override;
    ZelGenParam::Int* ToInt() override;
    ZelGenParam::String* ToString() override;

    // Whether changes reach sinks: see ArrayImpl::Disconnect.
    bool IsConnected() const;

    virtual ~ParamImpl();

  protected:
    ArrayImpl* Owner() const { return owner_; }

    KeptTexts texts_;  // each under the name of the operation that returns it

  private:
    template <typename Get>
    const char* KeepText(const char* operation, Get&& get);
    template <typename Value, typename Query>
    Value Ask(Value fallback, Query&& query) const;

    GenApi::CNodePtr node_;
    ArrayImpl* owner_;
    std::mutex sinksMutex_;  // never held during a call of the node map
    // Guarded by sinksMutex_.
    std::map<ZelGenParam::ParamEventSink*, GenApi::CallbackHandleType> sinks_;
};

// A handle on a node with an interface. Finding that takes several times as long as reading a
// cached value, so it is found once.
template <typename Interface>
class TypedParamImpl : public ParamImpl {
  public:
    TypedParamImpl(ArrayImpl* owner, GenApi::INode* node)
        : ParamImpl(owner, node), value_(dynamic_cast<Interface*>(node)) {}

  protected:
    Interface* const value_;  // null if the node has none
};

// A node of no supported kind.
class UnknownParamImpl final : public ParamImpl {
  public:
    using ParamImpl::ParamImpl;
    ZelGenParam::ParamType GetType() override { return ZelGenParam::ParamType_Unknown; }
};

// The Param for a node. The node's principal interface decides its class. Null for a null node.
std::unique_ptr<ParamImpl> CreateParam(ArrayImpl* owner, GenApi::INode* node);

}  // namespace ZelCameraApi::Internal
