#include "genapi/nodes/portnode.h"

#include "genapi/description/links.h"

namespace GENAPI_NAMESPACE {
namespace Engine {

using GENICAM_NAMESPACE::gcstring;

PortNode::PortNode(NodeMap& map, NodeId id)
    : Node(map, id), data_(description().tables().ports[record().data]) {}

bool PortNode::isChunkPort() const {
    return data_.chunkIdNode != kNoNode || !description().text(data_.chunkId).empty();
}

EAccessMode PortNode::partsAccessMode() {
    if (port_) return port_->GetAccessMode();
    // A chunk port is there once its chunk has come.
    if (data_.chunkIdNode == kNoNode) return isChunkPort() ? NA : NI;
    Node& source = node(data_.chunkIdNode);
    const EAccessMode mode = restriction(source.accessMode(), true);
    return IsAvailable(mode) && chunkId().empty() ? NI : Combine(mode, NA);
}

void PortNode::readDevice(void* buffer, std::int64_t address, std::int64_t length) {
    if (!port_) throw NODE_ERROR(AccessException, *this)("CPortImplIntern::Read : port not set");
    port_->Read(buffer, address, length);
}

void PortNode::writeDevice(const void* buffer, std::int64_t address, std::int64_t length) {
    if (recording_) {
        recording_->Write(buffer, address, length);
        return;
    }
    if (!port_) throw NODE_ERROR(AccessException, *this)("CPortImplIntern::Write : port not set");
    port_->Write(buffer, address, length);
}

void PortNode::Read(void* buffer, int64_t address, int64_t length) {
    const Entry entry(*this, "Read");
    readDevice(buffer, address, length);
}

void PortNode::Write(const void* buffer, int64_t address, int64_t length) {
    modify("Write", invalidatedBy(description(), id()),
           [&] { writeDevice(buffer, address, length); });
}

void PortNode::SetPortImpl(IPort* port) {
    modify("SetPortImpl", invalidatedBy(description(), id()), [&] { port_ = port; });
    // A port that wants to invalidate this node must know it.
    if (auto* construct = dynamic_cast<IPortConstruct*>(port)) construct->SetPortImpl(this);
}

EYesNo PortNode::GetSwapEndianess() {
    return data_.swapEndianess ? Yes : No;
}

gcstring PortNode::GetChunkID() const {
    if (data_.chunkIdNode == kNoNode) return chunkId();
    const Entry entry(*this, "GetChunkID");
    return chunkId();
}

gcstring PortNode::chunkId() const {
    if (data_.chunkIdNode == kNoNode) return toText(description().text(data_.chunkId));
    return toText(node(data_.chunkIdNode).getText({}));
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
    modify("Replay", invalidate ? invalidatedBy(description(), id()) : kNothing, [&] {
        if (!port_)
            throw NODE_ERROR(AccessException, *this)("CPortImplIntern::Write : port not set");
        list->Replay(port_);
    });
}

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE
