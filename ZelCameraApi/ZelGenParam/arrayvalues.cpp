// ArrayImpl's access by name, which makes no parameter objects.
#include <type_traits>

#include "ZelCameraApi/ZelGenParam/arrayimpl.h"
#include "ZelCameraApi/ZelGenParam/genapierrors.h"
#include "ZelCameraApi/base/errorboundary.h"

namespace ZelCameraApi::Internal {

namespace {

// Null for a node that has no value, although some of these nodes have the interface.
GenApi::IValue* ValueInterfaceOf(GenApi::INode* node) {
    switch (node->GetPrincipalInterfaceType()) {
        case GenApi::intfICategory:
        case GenApi::intfICommand:
        case GenApi::intfIEnumEntry:
        case GenApi::intfIPort:
            return nullptr;
        default:
            return dynamic_cast<GenApi::IValue*>(node);
    }
}

}  // namespace

using GenApi::IBoolean;
using GenApi::ICommand;
using GenApi::IEnumeration;
using GenApi::IFloat;
using GenApi::IInteger;
using GenApi::IString;

template <typename Interface>
Interface* ArrayImpl::Resolve(const char* name, ZelCamErr* err) {
    const NamedFeature* const feature = Find(name, err);
    if (feature == nullptr) return nullptr;
    Interface* const* const value = std::get_if<Interface*>(&feature->value);
    if (value != nullptr) return *value;
    StoreError(err, ZelCamErr_WrongParamType);
    return nullptr;
}

template <typename Interface, typename Access>
ZelCamErr ArrayImpl::Set(const char* name, Access&& access) {
    try {
        ZelCamErr err = ZelCamErr_Success;
        Interface* const value = Resolve<Interface>(name, &err);
        if (value == nullptr) return err;
        access(*value);
        return ZelCamErr_Success;
    } catch (...) {
        return CodeOfNamedAccess(ValueAccess::Write);
    }
}

template <typename Interface, typename Access>
auto ArrayImpl::Get(const char* name, ZelCamErr* err, Access&& access) {
    using Value = std::invoke_result_t<Access, Interface&>;
    StoreError(err, ZelCamErr_Success);
    try {
        Interface* const value = Resolve<Interface>(name, err);
        return value != nullptr ? access(*value) : Value{};
    } catch (...) {
        StoreError(err, CodeOfNamedAccess(ValueAccess::Read));
        return Value{};
    }
}

ZelCamErr ArrayImpl::SetBooleanValue(const char* name, bool value) {
    return Set<IBoolean>(name, [=](IBoolean& b) { b.SetValue(value); });
}

bool ArrayImpl::GetBooleanValue(const char* name, ZelCamErr* err) {
    return Get<IBoolean>(name, err, [](IBoolean& b) { return b.GetValue(); });
}

ZelCamErr ArrayImpl::SetEnumValueStr(const char* name, const char* value) {
    return Set<IEnumeration>(name, [=](IEnumeration& e) { e = GenICam::gcstring(value); });
}

ZelCamErr ArrayImpl::SetEnumValue(const char* name, int64_t value) {
    return Set<IEnumeration>(name, [=](IEnumeration& e) { e.SetIntValue(value); });
}

const char* ArrayImpl::GetEnumValueStr(const char* name, ZelCamErr* err) {
    return Get<IEnumeration>(name, err, [=](IEnumeration& e) { return texts_.Keep(name, *e); });
}

int64_t ArrayImpl::GetEnumValue(const char* name, ZelCamErr* err) {
    return Get<IEnumeration>(name, err, [](IEnumeration& e) { return e.GetIntValue(); });
}

ZelCamErr ArrayImpl::SetFloatValue(const char* name, double value) {
    return Set<IFloat>(name, [=](IFloat& f) { f.SetValue(value); });
}

double ArrayImpl::GetFloatValue(const char* name, ZelCamErr* err) {
    return Get<IFloat>(name, err, [](IFloat& f) { return f.GetValue(); });
}

ZelCamErr ArrayImpl::SetIntegerValue(const char* name, int64_t value) {
    return Set<IInteger>(name, [=](IInteger& i) { i.SetValue(value); });
}

int64_t ArrayImpl::GetIntegerValue(const char* name, ZelCamErr* err) {
    return Get<IInteger>(name, err, [](IInteger& i) { return i.GetValue(); });
}

ZelCamErr ArrayImpl::SetStringValue(const char* name, const char* value) {
    return Set<IString>(name, [=](IString& s) { s.SetValue(value); });
}

const char* ArrayImpl::GetStringValue(const char* name, ZelCamErr* err) {
    return Get<IString>(name, err, [=](IString& s) { return texts_.Keep(name, s.GetValue()); });
}

ZelCamErr ArrayImpl::ExecuteCommand(const char* name) {
    return Set<ICommand>(name, [](ICommand& c) { c.Execute(); });
}

bool ArrayImpl::IsCommandDone(const char* name, ZelCamErr* err) {
    return Get<ICommand>(name, err, [](ICommand& c) { return c.IsDone(); });
}

ZelCamErr ArrayImpl::Poll(int64_t elapsedMs) {
    ZelCamErr err = ZelCamErr_Success;
    GenApi::INodeMap* const map = GetNodeMap(&err);
    if (map == nullptr) return err;
    try {
        map->Poll(elapsedMs);
        return ZelCamErr_Success;
    } catch (...) {
        return CodeOfNamedAccess(ValueAccess::Read);
    }
}

// The reason is kept under a name that no feature has: texts that were read stay valid.
ZelCamErr ArrayImpl::SetValueStr(const char* name, const char* value, const char** reason) {
    if (reason != nullptr) *reason = "";
    try {
        ZelCamErr err = ZelCamErr_Success;
        const NamedFeature* const feature = Find(name, &err);
        if (feature == nullptr) return err;
        GenApi::IValue* const valueInterface = ValueInterfaceOf(feature->node);
        if (valueInterface == nullptr) return ZelCamErr_WrongParamType;
        try {
            valueInterface->FromString(value);
        } catch (const GenICam::GenericException& e) {
            if (reason != nullptr) *reason = texts_.Keep("", e.GetDescription());
            throw;
        }
        return ZelCamErr_Success;
    } catch (...) {
        return CodeOfNamedAccess(ValueAccess::Write);
    }
}

const char* ArrayImpl::GetValueStr(const char* name, ZelCamErr* err) {
    StoreError(err, ZelCamErr_Success);
    try {
        const NamedFeature* const feature = Find(name, err);
        if (feature == nullptr) return nullptr;
        GenApi::IValue* const value = ValueInterfaceOf(feature->node);
        if (value != nullptr) return texts_.Keep(name, value->ToString());
        StoreError(err, ZelCamErr_WrongParamType);
    } catch (...) {
        StoreError(err, CodeOfNamedAccess(ValueAccess::Read));
    }
    return nullptr;
}

void ArrayImpl::Lock() {
    nodeMap_->_Ptr->GetLock().Lock();
}

void ArrayImpl::Unlock() {
    nodeMap_->_Ptr->GetLock().Unlock();
}

}  // namespace ZelCameraApi::Internal
