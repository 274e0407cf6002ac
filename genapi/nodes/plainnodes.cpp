#include "genapi/nodes/plainnodes.h"

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

gcstring CategoryNode::ToString(bool, bool) {
    return read("ToString", [&] { return GetDisplayName(); });
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
