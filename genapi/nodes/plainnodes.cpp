#include "genapi/nodes/plainnodes.h"

#include <algorithm>

#include "genapi/nodes/nodemap.h"

namespace GENAPI_NAMESPACE {
namespace Engine {

using GENICAM_NAMESPACE::gcstring;

gcstring PlainNode::ToString(bool, bool) {
    const Entry entry(*this, "ToString");
    throw NODE_ERROR(AccessException, *this)("Node is not readable");
}

void PlainNode::FromString(const gcstring&, bool) {
    const Entry entry(*this, "FromString");
    throw NODE_ERROR(AccessException, *this)("Node is not writable");
}

Slice<NodeId> CategoryNode::features() const {
    const CategoryData& data = description().tables().categories[record().data];
    return NodeTables::slice(description().tables().nodes, data.features);
}

EVisibility CategoryNode::GetVisibility() const {
    // A category is shown to those who may see something in it.
    std::uint8_t least = Invisible;
    for (const NodeId id : features())
        least = std::min(least, description().record(id).visibility);
    return imposed(static_cast<EVisibility>(least));
}

gcstring CategoryNode::ToString(bool, bool) {
    const Entry entry(*this, "ToString");
    requireReadable();
    return GetDisplayName();
}

void CategoryNode::FromString(const gcstring&, bool) {
    const Entry entry(*this, "FromString");
    throw NODE_ERROR(AccessException, *this)("Node is not writable");
}

void CategoryNode::GetFeatures(FeatureList_t& list) const {
    list.clear();
    for (const NodeId id : features())
        if (auto* value = dynamic_cast<IValue*>(&node(id))) list.push_back(value);
}

EAccessMode CategoryNode::sourceAccessMode(bool) {
    for (const NodeId id : features())
        if (node(id).accessMode() != NI) return RO;
    return NI;
}

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE
