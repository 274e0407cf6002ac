// A feature that was asked for by name.
#pragma once

#include <memory>
#include <string>
#include <utility>
#include <variant>

#include <GenApi/GenApi.h>

#include "ZelCameraApi/ZelGenParam/paramimpl.h"

namespace ZelCameraApi::Internal {

// A node as its principal interface, if that is one of these.
using NodeValue =
    std::variant<std::monostate, GenApi::IBoolean*, GenApi::ICommand*, GenApi::IEnumeration*,
                 GenApi::IFloat*, GenApi::IInteger*, GenApi::IString*>;

NodeValue ValueOf(GenApi::INode* node);

// The feature of a name. Finding a node and its interface takes many times as long as reading a
// cached value, so both are found only once.
struct NamedFeature {
    NamedFeature(std::string spelling, GenApi::INode* found)
        : name(std::move(spelling)), node(found), value(ValueOf(found)) {}

    const std::string name;
    GenApi::INode* const node;
    const NodeValue value;
    std::unique_ptr<ParamImpl> param;  // made when first asked for; guarded by the array's mutex
};

}  // namespace ZelCameraApi::Internal
