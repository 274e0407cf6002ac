// Copies nodes of one description into another.
#pragma once

#include <memory>

#include "genapi/description/builder.h"

namespace GENAPI_NAMESPACE {
namespace Engine {

// A description of one node and everything that it refers to, directly or indirectly. The node may
// be renamed to "Root". RuntimeException when that name is taken.
std::shared_ptr<const Description> SubtreeOf(const Description& from, NodeId root,
                                             bool renameToRoot);

// Adds all nodes. RuntimeException for a node that exists already.
void AddNodes(const Description& from, DescriptionBuilder& to);

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE
