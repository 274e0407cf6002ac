// Port: where registers meet the device, which the application, an event adapter or a chunk adapter
// connects.
#pragma once

#include <GenApi/IChunkPort.h>
#include <GenApi/IPortConstruct.h>
#include <GenApi/IPortRecorder.h>
#include <GenApi/IPortStacked.h>

#include "genapi/nodes/nodemap.h"

namespace GENAPI_NAMESPACE {
namespace Engine {

class PortNode final : public Node, public IPortConstruct, public IChunkPort, public IPortRecorder {
  public:
    PortNode(NodeMap& map, NodeId id);

    EAccessMode GetAccessMode() const override { return Node::GetAccessMode(); }

    // IPort: reads and writes the device behind the port.
    void Read(void* buffer, int64_t address, int64_t length) override;
    void Write(const void* buffer, int64_t address, int64_t length) override;
    // IPortConstruct: connects, replaces, or with null disconnects the device.
    void SetPortImpl(IPort* port) override;
    EYesNo GetSwapEndianess() override;
    // IChunkPort
    GENICAM_NAMESPACE::gcstring GetChunkID() const override;
    EYesNo CacheChunkData() const override;
    // IPortRecorder
    void Replay(IPortWriteList* list, bool invalidate = true) override;
    void StartRecording(IPortWriteList* list) override;
    void StopRecording() override;

    // Whether it is a port of chunk data, whose addresses may count from the end.
    bool IsChunkPort() const;
    // Inside: the lock is held. AccessException while nothing is connected.
    void ReadDevice(void* buffer, int64_t address, int64_t length);
    void WriteDevice(const void* buffer, int64_t address, int64_t length);

  protected:
    EAccessMode PartsAccessMode() override;

  private:
    // Fixed, or the value of another node.
    GENICAM_NAMESPACE::gcstring ChunkId() const;

    const PortData& data_;
    IPort* port_ = nullptr;  // the application's, until it connects another one
    IPortWriteList* recording_ = nullptr;
};

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE
