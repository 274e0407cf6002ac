// Makes the object that implements a node, according to its kind.
#pragma once

#include <cstddef>

#include "genapi/nodes/node.h"

namespace GENAPI_NAMESPACE {
namespace Engine {

// Size in bytes of an object of that kind, rounded up to the alignment of the next one.
size_t NodeSize(NodeKind kind);
// Makes the object at the given place; the caller must call its destructor.
Node* MakeNode(NodeMap& map, NodeId id, void* place);

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE
