#include "genapi/nodes/portnode.h"

#include "genapi/description/links.h"

namespace GENAPI_NAMESPACE {
namespace Engine {

using GENICAM_NAMESPACE::gcstring;

PortNode::PortNode(NodeMap& map, NodeId id)
    : Node(map, id), data_(CameraDescription().Tables().ports[Record().data]) {}

bool PortNode::IsChunkPort() const {
    return data_.chunkIdNode != kNoNode || !CameraDescription().Text(data_.chunkId).empty();
}

EAccessMode PortNode::PartsAccessMode() {
    if (port_) return port_->GetAccessMode();
    // A chunk port is not available before its chunk has arrived.
    if (data_.chunkIdNode == kNoNode) return IsChunkPort() ? NA : NI;
    Node& source = NodeAt(data_.chunkIdNode);
    const EAccessMode mode = Restriction(source.AccessMode(), true);
    return IsAvailable(mode) && ChunkId().empty() ? NI : Combine(mode, NA);
}

void PortNode::ReadDevice(void* buffer, int64_t address, int64_t length) {
    if (!port_) throw NODE_ERROR(AccessException, *this)("CPortImplIntern::Read : port not set");
    port_->Read(buffer, address, length);
}

void PortNode::WriteDevice(const void* buffer, int64_t address, int64_t length) {
    if (recording_) {
        recording_->Write(buffer, address, length);
        return;
    }
    if (!port_) throw NODE_ERROR(AccessException, *this)("CPortImplIntern::Write : port not set");
    port_->Write(buffer, address, length);
}

void PortNode::Read(void* buffer, int64_t address, int64_t length) {
    const Entry entry(*this, "Read");
    ReadDevice(buffer, address, length);
}

void PortNode::Write(const void* buffer, int64_t address, int64_t length) {
    RunChange("Write", InvalidatedBy(CameraDescription(), Id()),
              [&] { WriteDevice(buffer, address, length); });
}

void PortNode::SetPortImpl(IPort* port) {
    RunChange("SetPortImpl", InvalidatedBy(CameraDescription(), Id()), [&] { port_ = port; });
    // A port needs this node in order to invalidate it.
    if (auto* construct = dynamic_cast<IPortConstruct*>(port)) construct->SetPortImpl(this);
}

EYesNo PortNode::GetSwapEndianess() {
    return data_.swapEndianess ? Yes : No;
}

gcstring PortNode::GetChunkID() const {
    if (data_.chunkIdNode == kNoNode) return ChunkId();
    const Entry entry(*this, "GetChunkID");
    return ChunkId();
}

gcstring PortNode::ChunkId() const {
    if (data_.chunkIdNode == kNoNode) return ToText(CameraDescription().Text(data_.chunkId));
    return ToText(NodeAt(data_.chunkIdNode).GetText({}));
}

EYesNo PortNode::CacheChunkData() const {
    return data_.cacheChunkData ? Yes : No;
}

void PortNode::StartRecording(IPortWriteList* list) {
    const Entry entry(*this, "StartRecording");
    recording_ = list;
}

void PortNode::StopRecording() {
    const Entry entry(*this, "StopRecording");
    recording_ = nullptr;
}

void PortNode::Replay(IPortWriteList* list, bool invalidate) {
    if (!list) {
        const Entry entry(*this, "Replay");
        throw NODE_ERROR(InvalidArgumentException, *this)("The list of writes must not be NULL");
    }
    static const ChangeSet kNothing;
    RunChange("Replay", invalidate ? InvalidatedBy(CameraDescription(), Id()) : kNothing, [&] {
        if (!port_)
            throw NODE_ERROR(AccessException, *this)("CPortImplIntern::Write : port not set");
        list->Replay(port_);
    });
}

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE
