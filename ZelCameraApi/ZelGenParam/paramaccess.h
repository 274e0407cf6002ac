// How parameter objects read and write the value of their node.
#pragma once

#include <utility>

#include <GenApi/GenApi.h>

#include "ZelCameraApi/ZelGenParam/genapierrors.h"
#include "ZelCameraApi/base/errorboundary.h"

namespace ZelCameraApi::Internal {

// `get(value)` with the node's interface `Interface`; a failure gives the result type's zero.
template <typename Interface, typename Getter>
auto ParamGetterWithError(GenApi::INode* node, ZelCamErr* err, Getter&& get)
    -> decltype(get(std::declval<Interface&>())) {
    StoreError(err, ZelCamErr_Success);
    try {
        const GenApi::CPointer<Interface> value(node);
        if (value.IsValid()) return get(*value);
        StoreError(err, ZelCamErr_WrongParamType);
    } catch (...) {
        StoreError(err, CodeOfParamAccess(ValueAccess::Read));
    }
    return {};
}

// `set(value)` with the node's interface `Interface`.
template <typename Interface, typename Setter>
ZelCamErr ParamSetter(GenApi::INode* node, Setter&& set) {
    try {
        const GenApi::CPointer<Interface> value(node);
        if (!value.IsValid()) return ZelCamErr_WrongParamType;
        set(*value);
        return ZelCamErr_Success;
    } catch (...) {
        return CodeOfParamAccess(ValueAccess::Write);
    }
}

}  // namespace ZelCameraApi::Internal
