// INode::GetPropertyNames and GetProperty: the description of a node, as texts.
#pragma once

#include <string_view>

#include <Base/GCStringVector.h>

#include "genapi/nodes/node.h"

namespace GENAPI_NAMESPACE {
namespace Engine {

// Appends the names.
void PropertyNames(const Node& node, GENICAM_NAMESPACE::gcstring_vector& names);
// False when the node has no such property. Tabs separate the values, and the attributes, of a
// property that occurs several times.
bool PropertyOf(const Node& node, std::string_view name, GENICAM_NAMESPACE::gcstring& value,
                GENICAM_NAMESPACE::gcstring& attribute);

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE
