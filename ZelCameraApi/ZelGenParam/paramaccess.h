// How parameter objects read and write the value of their node, by the interface that it has.
#pragma once

#include <utility>

#include <GenApi/GenApi.h>

#include "ZelCameraApi/ZelGenParam/genapierrors.h"
#include "ZelCameraApi/base/errorboundary.h"

namespace ZelCameraApi::Internal {

// `get(value)`; a failure, also a null value, gives the result type's zero.
template <typename Interface, typename Getter>
auto ParamGetterWithError(Interface* value, ZelCamErr* err, Getter&& get)
    -> decltype(get(std::declval<Interface&>())) {
    StoreError(err, ZelCamErr_Success);
    try {
        if (value != nullptr) return get(*value);
        StoreError(err, ZelCamErr_WrongParamType);
    } catch (...) {
        StoreError(err, CodeOfParamAccess(ValueAccess::Read));
    }
    return {};
}

// `set(value)`.
template <typename Interface, typename Setter>
ZelCamErr ParamSetter(Interface* value, Setter&& set) {
    if (value == nullptr) return ZelCamErr_WrongParamType;
    try {
        set(*value);
        return ZelCamErr_Success;
    } catch (...) {
        return CodeOfParamAccess(ValueAccess::Write);
    }
}

}  // namespace ZelCameraApi::Internal
