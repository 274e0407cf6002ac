// What may be kept of a node: the effective caching mode of its value, and whether its access mode
// may be cached.
#pragma once

#include <vector>

#include "genapi/description/description.h"

namespace GENAPI_NAMESPACE {
namespace Engine {

// Completes the records: caching, accessCacheable. Throws RuntimeException for nodes whose values
// or limits rest on themselves.
void findCaching(const Description& description, std::vector<NodeRecord>& records);

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE
