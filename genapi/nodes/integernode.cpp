#include "genapi/nodes/integernode.h"

namespace GENAPI_NAMESPACE {
namespace Engine {

IntegerNode::IntegerNode(NodeMap& map, NodeId id)
    : IntegerBase(map, id), source_(*this, description().tables().integers[record().data]) {}

Slice<std::int64_t> IntegerNode::validValues() {
    return NodeTables::slice(description().tables().validValues, source_.data().validValues);
}

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE
