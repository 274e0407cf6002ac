// The features of one module of a producer, over a GenApi node map.
#pragma once

#include <memory>
#include <mutex>
#include <string_view>
#include <unordered_map>
#include <vector>

#include <GenApi/GenApi.h>

#include "ZelCameraApi/ZelGenParam/kepttexts.h"
#include "ZelCameraApi/ZelGenParam/namedfeature.h"
#include "ZelCameraApi/base/gentlmodule.h"
#include "ZelGenParam/Array.h"

namespace ZelCameraApi::Internal {

// The node map of a module's port. It is also the GenApi port that the node map reads and writes:
// every access to a feature becomes an access to the producer's port.
//
// It belongs to the object that opened the module, which disconnects or destroys it before closing
// the module. It owns the node map, the Params that it handed out (one for each spelling of a name)
// and the texts read by name. The order of the members is the order of their dependence: Params end
// before their nodes, the node map before the producer.
//
// Thread-safe except for Disconnect and destruction. The node map has a lock. A second lock guards
// the data here; it is never held during a call of the node map, so a sink, which runs inside the
// node map's lock, may call everything.
class ArrayImpl final : public ZelGenParam::Array, public GenApi::IPort {
  public:
    // Builds and connects the node map, from the file `xmlFile` or, if that is null, from the
    // description that the port announces. Throws zelcam_exception, or what GenApi throws.
    ArrayImpl(const GenTLModule<void*>& module, const char* xmlFile);
    ArrayImpl(const ArrayImpl&) = delete;
    ArrayImpl& operator=(const ArrayImpl&) = delete;

    ZelGenParam::Param* GetParam(const char* name, ZelCamErr* err) override;
    ZelGenParam::Boolean* GetBoolean(const char* name, ZelCamErr* err) override;
    ZelGenParam::Command* GetCommand(const char* name, ZelCamErr* err) override;
    ZelGenParam::Enum* GetEnum(const char* name, ZelCamErr* err) override;
    ZelGenParam::Float* GetFloat(const char* name, ZelCamErr* err) override;
    ZelGenParam::Int* GetInt(const char* name, ZelCamErr* err) override;
    ZelGenParam::String* GetString(const char* name, ZelCamErr* err) override;
    ZelGenParam::Category* GetRootCategory(ZelCamErr* err) override;
    GenApi::INodeMap* GetNodeMap(ZelCamErr* err) override;
    uint32_t GetCount() override;
    ZelGenParam::Param* GetParamByIndex(uint32_t index, ZelCamErr* err) override;

    ZelCamErr SetBooleanValue(const char* name, bool value) override;
    bool GetBooleanValue(const char* name, ZelCamErr* err) override;
    ZelCamErr SetEnumValueStr(const char* name, const char* value) override;
    ZelCamErr SetEnumValue(const char* name, int64_t value) override;
    const char* GetEnumValueStr(const char* name, ZelCamErr* err) override;
    int64_t GetEnumValue(const char* name, ZelCamErr* err) override;
    ZelCamErr SetFloatValue(const char* name, double value) override;
    double GetFloatValue(const char* name, ZelCamErr* err) override;
    ZelCamErr SetIntegerValue(const char* name, int64_t value) override;
    int64_t GetIntegerValue(const char* name, ZelCamErr* err) override;
    ZelCamErr SetStringValue(const char* name, const char* value) override;
    const char* GetStringValue(const char* name, ZelCamErr* err) override;
    ZelCamErr ExecuteCommand(const char* name) override;
    bool IsCommandDone(const char* name, ZelCamErr* err) override;
    ZelCamErr Poll(int64_t elapsedMs) override;
    ZelCamErr SetValueStr(const char* name, const char* value, const char** reason) override;
    const char* GetValueStr(const char* name, ZelCamErr* err) override;
    void Lock() override;
    void Unlock() override;

    // Call this before closing the module if the Array ends later, because its end may change
    // features: afterwards no sink is called, and accesses to the port fail.
    void Disconnect() { connected_ = false; }
    bool IsConnected() const { return connected_; }

    ~ArrayImpl() override;

    // The node map calls these. They throw GenApi's exceptions, which reach the caller of the
    // feature.
    GenApi::EAccessMode GetAccessMode() const override;
    void Read(void* buffer, int64_t address, int64_t length) override;
    void Write(const void* buffer, int64_t address, int64_t length) override;

  private:
    void CreateNodeMap(const char* xmlFile);
    std::unique_ptr<GenApi::CNodeMapRef> LoadAnnounced(uint32_t urls,
                                                       const GenICam::gcstring& moduleId) const;

    // The port's text for a PORT_INFO command, or `fallback` if it has none.
    GenICam::gcstring PortText(int command, const char* fallback) const;
    bool PortFlag(int command) const;

    // A Param of the kind that `type` names, as the interface `Public` of it.
    template <typename Public>
    Public* FindTyped(const char* name, ZelGenParam::ParamType type, ZelCamErr* err);

    // The feature of that name; it lives as long as this Array. Null with a code if there is none.
    NamedFeature* Find(const char* name, ZelCamErr* err);

    // The node of that name as the interface `Interface`, which must be its principal one.
    template <typename Interface>
    Interface* Resolve(const char* name, ZelCamErr* err);

    // Access by name: `access(node)` with the node resolved and exceptions turned into codes.
    template <typename Interface, typename Access>
    ZelCamErr Set(const char* name, Access&& access);
    template <typename Interface, typename Access>
    auto Get(const char* name, ZelCamErr* err, Access&& access);

    GenTLModule<void*> module_;
    bool connected_ = true;
    std::unique_ptr<GenApi::CNodeMapRef> nodeMap_;

    std::mutex mutex_;
    // By their own names. Guarded by mutex_; entries are added only.
    std::unordered_map<std::string_view, std::unique_ptr<NamedFeature>> named_;
    std::vector<GenApi::INode*> features_;  // likewise; filled by GetCount, as a whole
    KeptTexts texts_;                       // read by name
};

// A new Array over the port `module`. Null with a code if it cannot be made: the code of the
// producer's failing call, ZelCamErr_FileOpenFailed for a missing `xmlFile`, ZelCamErr_NoNodeMap if
// there is no usable description, ZelCamErr_RuntimeError or ZelCamErr_GenApiError if GenApi
// refuses.
std::unique_ptr<ArrayImpl> CreateArray(const GenTLModule<void*>& module, ZelCamErr* err,
                                       const char* xmlFile);

}  // namespace ZelCameraApi::Internal
