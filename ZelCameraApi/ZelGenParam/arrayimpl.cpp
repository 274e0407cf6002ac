#include "ZelCameraApi/ZelGenParam/arrayimpl.h"

#include <algorithm>
#include <utility>

#include "ZelCameraApi/ZelGenParam/genapierrors.h"
#include "ZelCameraApi/ZelGenParam/portdescription.h"
#include "ZelCameraApi/ZelGenParam/porterrors.h"
#include "ZelCameraApi/base/errorboundary.h"
#include "ZelCameraApi/base/fixenvironment.h"
#include "ZelCameraApi/base/gentlinfo.h"

namespace ZelCameraApi::Internal {

namespace {

// Ports announce two or three; a broken producer may report any number of useless ones.
constexpr uint32_t kMaxUrls = 64;

// In the order of the node map. After a failure, the features gathered before it count; an empty
// result is gathered again by the next call.
std::vector<GenApi::INode*> FeaturesOf(const GenApi::CNodeMapRef& map) {
    std::vector<GenApi::INode*> features;
    try {
        GenApi::NodeList_t nodes;
        map._GetNodes(nodes);
        features.reserve(nodes.size());
        for (GenApi::INode* const node : nodes) {
            if (node->IsFeature()) features.push_back(node);
        }
    } catch (const GenICam::GenericException&) {
        // part of the features is better than no array
    } catch (const std::bad_alloc&) {
        // likewise
    }
    return features;
}

}  // namespace

std::unique_ptr<ArrayImpl> CreateArray(const GenTLModule<void*>& module, ZelCamErr* err,
                                       const char* xmlFile) {
    StoreError(err, ZelCamErr_Success);
    try {
        return std::make_unique<ArrayImpl>(module, xmlFile);
    } catch (...) {
        StoreError(err, CodeOfCreation());
        return nullptr;
    }
}

ArrayImpl::ArrayImpl(const GenTLModule<void*>& module, const char* xmlFile) : module_(module) {
    CreateNodeMap(xmlFile);
}

ArrayImpl::~ArrayImpl() = default;

void ArrayImpl::CreateNodeMap(const char* xmlFile) {
    const std::unique_ptr<Environment> environment = FixEnvironment();
    if (GetAccessMode() < GenApi::WO) throw ACCESS_EXCEPTION("Port inaccessable");
    uint32_t urls = 0;
    ThrowOnError(module_.lib->GCGetNumPortURLs(module_.handle, &urls));

    const GenICam::gcstring moduleId = PortText(GenTL::PORT_INFO_ID, "Module");
    nodeMap_ =
        xmlFile != nullptr ? LoadDescriptionFile(xmlFile, moduleId) : LoadAnnounced(urls, moduleId);
    if (nodeMap_ == nullptr) throw zelcam_exception(ZelCamErr_NoNodeMap);
    nodeMap_->_Connect(this, PortText(GenTL::PORT_INFO_PORTNAME, "Device"));
}

// From the first URL that leads to a description; null if none does. A failing URL does not end the
// search, because ports announce alternatives.
std::unique_ptr<GenApi::CNodeMapRef> ArrayImpl::LoadAnnounced(
    uint32_t urls, const GenICam::gcstring& moduleId) const {
    for (uint32_t i = 0; i < std::min(urls, kMaxUrls); ++i) {
        try {
            const std::string url = PortGetURLString(module_, i);
            return LoadDescriptionUrl(module_, url.substr(0, url.find('\0')), moduleId);
        } catch (const std::exception&) {
            // the next URL may work
        } catch (const GenICam::GenericException&) {
            // likewise
        }
    }
    return nullptr;
}

GenICam::gcstring ArrayImpl::PortText(int command, const char* fallback) const {
    try {
        const GenICam::gcstring text = PortGetInfoString(module_, command).c_str();
        if (!text.empty()) return text;
    } catch (const std::exception&) {
        // the port need not have this text
    }
    return fallback;
}

bool ArrayImpl::PortFlag(int command) const {
    int type = GenTL::INFO_DATATYPE_UNKNOWN;
    GenTL::bool8_t flag = 0;
    size_t size = sizeof flag;
    CheckPortInfo(command,
                  module_.lib->GCGetPortInfo(module_.handle, command, &type, &flag, &size));
    return flag != 0;
}

GenApi::EAccessMode ArrayImpl::GetAccessMode() const {
    if (!connected_ || PortFlag(GenTL::PORT_INFO_ACCESS_NI)) return GenApi::NI;
    if (PortFlag(GenTL::PORT_INFO_ACCESS_NA)) return GenApi::NA;
    const bool readable = PortFlag(GenTL::PORT_INFO_ACCESS_READ);
    const bool writable = PortFlag(GenTL::PORT_INFO_ACCESS_WRITE);
    if (readable) return writable ? GenApi::RW : GenApi::RO;
    return writable ? GenApi::WO : GenApi::_UndefinedAccesMode;
}

void ArrayImpl::Read(void* buffer, int64_t address, int64_t length) {
    auto size = static_cast<size_t>(length);
    const int result =
        connected_
            ? module_.lib->GCReadPort(module_.handle, static_cast<uint64_t>(address), buffer, &size)
            : GenTL::GC_ERR_INVALID_HANDLE;
    CheckPortAccess({"Read", address, length}, result, size);
}

void ArrayImpl::Write(const void* buffer, int64_t address, int64_t length) {
    auto size = static_cast<size_t>(length);
    const int result = connected_
                           ? module_.lib->GCWritePort(module_.handle,
                                                      static_cast<uint64_t>(address), buffer, &size)
                           : GenTL::GC_ERR_INVALID_HANDLE;
    CheckPortAccess({"Write", address, length}, result, size);
}

GenApi::INodeMap* ArrayImpl::GetNodeMap(ZelCamErr* err) {
    StoreError(err, nodeMap_ != nullptr ? ZelCamErr_Success : ZelCamErr_NoNodeMap);
    return nodeMap_ != nullptr ? nodeMap_->_Ptr : nullptr;
}

NamedFeature* ArrayImpl::Find(const char* name, ZelCamErr* err) {
    const char* const text = name != nullptr ? name : "";
    const std::string_view key = text;
    {
        const std::lock_guard<std::mutex> lock(mutex_);
        const auto known = named_.find(key);
        if (known != named_.end()) return known->second.get();
    }
    const GenApi::INodeMap* const map = GetNodeMap(err);
    if (map == nullptr) return nullptr;
    GenApi::INode* const node = map->GetNode(text);
    if (node == nullptr) {
        StoreError(err, ZelCamErr_ParamNotFound);
        return nullptr;
    }
    auto feature = std::make_unique<NamedFeature>(std::string(key), node);
    const std::string_view ownName = feature->name;
    const std::lock_guard<std::mutex> lock(mutex_);
    return named_.try_emplace(ownName, std::move(feature)).first->second.get();
}

ZelGenParam::Param* ArrayImpl::GetParam(const char* name, ZelCamErr* err) {
    return NullWithCode(err, [&]() -> ZelGenParam::Param* {
        NamedFeature* const feature = Find(name, err);
        if (feature == nullptr) return nullptr;
        {
            const std::lock_guard<std::mutex> lock(mutex_);
            if (feature->param != nullptr) return feature->param.get();
        }
        std::unique_ptr<ParamImpl> param = CreateParam(this, feature->node);
        const std::lock_guard<std::mutex> lock(mutex_);
        if (feature->param == nullptr) feature->param = std::move(param);
        if (feature->param == nullptr) StoreError(err, ZelCamErr_ParamNotFound);
        return feature->param.get();
    });
}

template <typename Public>
Public* ArrayImpl::FindTyped(const char* name, ZelGenParam::ParamType type, ZelCamErr* err) {
    ZelGenParam::Param* const param = GetParam(name, err);
    if (param == nullptr) return nullptr;
    if (param->GetType() == type) return dynamic_cast<Public*>(param);
    StoreError(err, ZelCamErr_WrongParamType);
    return nullptr;
}

ZelGenParam::Boolean* ArrayImpl::GetBoolean(const char* name, ZelCamErr* err) {
    return FindTyped<ZelGenParam::Boolean>(name, ZelGenParam::ParamType_Boolean, err);
}

ZelGenParam::Command* ArrayImpl::GetCommand(const char* name, ZelCamErr* err) {
    return FindTyped<ZelGenParam::Command>(name, ZelGenParam::ParamType_Command, err);
}

ZelGenParam::Enum* ArrayImpl::GetEnum(const char* name, ZelCamErr* err) {
    return FindTyped<ZelGenParam::Enum>(name, ZelGenParam::ParamType_Enum, err);
}

ZelGenParam::Float* ArrayImpl::GetFloat(const char* name, ZelCamErr* err) {
    return FindTyped<ZelGenParam::Float>(name, ZelGenParam::ParamType_Float, err);
}

ZelGenParam::Int* ArrayImpl::GetInt(const char* name, ZelCamErr* err) {
    return FindTyped<ZelGenParam::Int>(name, ZelGenParam::ParamType_Int, err);
}

ZelGenParam::String* ArrayImpl::GetString(const char* name, ZelCamErr* err) {
    return FindTyped<ZelGenParam::String>(name, ZelGenParam::ParamType_String, err);
}

ZelGenParam::Category* ArrayImpl::GetRootCategory(ZelCamErr* err) {
    return FindTyped<ZelGenParam::Category>("Root", ZelGenParam::ParamType_Category, err);
}

uint32_t ArrayImpl::GetCount() {
    {
        const std::lock_guard<std::mutex> lock(mutex_);
        if (!features_.empty()) return static_cast<uint32_t>(features_.size());
    }
    std::vector<GenApi::INode*> gathered = FeaturesOf(*nodeMap_);
    const std::lock_guard<std::mutex> lock(mutex_);
    if (features_.empty()) features_ = std::move(gathered);
    return static_cast<uint32_t>(features_.size());
}

ZelGenParam::Param* ArrayImpl::GetParamByIndex(uint32_t index, ZelCamErr* err) {
    // Features that are filled in never change again, so no lock is needed.
    if (index < GetCount()) return GetParam(features_[index]->GetName().c_str(), err);
    StoreError(err, ZelCamErr_IndexOutOfRange);
    return nullptr;
}

}  // namespace ZelCameraApi::Internal
