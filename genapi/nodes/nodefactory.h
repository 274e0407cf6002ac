// From the kind of a node to the object that implements it.
#pragma once

#include <cstddef>

#include "genapi/nodes/node.h"

namespace GENAPI_NAMESPACE {
namespace Engine {

// Bytes that an object of that kind takes, rounded up so that the next one is aligned.
size_t NodeSize(NodeKind kind);
// Makes the object at the given place; its destructor must be called.
Node* MakeNode(NodeMap& map, NodeId id, void* place);

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE
