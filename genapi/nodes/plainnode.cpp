#include "genapi/nodes/plainnode.h"

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

Slice<NodeId> CategoryNode::Features() const {
    const CategoryData& data = CameraDescription().Tables().categories[Record().data];
    return NodeTables::SliceOf(CameraDescription().Tables().nodes, data.features);
}

gcstring CategoryNode::ToString(bool, bool) {
    return RunRead("ToString", [&] { return GetDisplayName(); });
}

void CategoryNode::FromString(const gcstring&, bool) {
    const Entry entry(*this, "FromString");
    throw NODE_ERROR(AccessException, *this)("Node is not writable");
}

void CategoryNode::GetFeatures(FeatureList_t& list) const {
    list.clear();
    for (const NodeId id : Features())
        if (auto* value = dynamic_cast<IValue*>(&NodeAt(id))) list.push_back(value);
}

EAccessMode CategoryNode::SourceAccessMode(bool) {
    for (const NodeId id : Features())
        if (NodeAt(id).AccessMode() != NI) return RO;
    return NI;
}

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE
