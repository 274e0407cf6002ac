// Port: connects registers to the device, which is a port of the application, of an event adapter
// or of a chunk adapter.
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

    // IPort: reads and writes the device behind the port.
    void Read(void* buffer, int64_t address, int64_t length) override;
    void Write(const void* buffer, int64_t address, int64_t length) override;
    // IPortConstruct: connects or replaces the device; null disconnects it.
    void SetPortImpl(IPort* port) override;
    EYesNo GetSwapEndianess() override;
    // IChunkPort
    GENICAM_NAMESPACE::gcstring GetChunkID() const override;
    EYesNo CacheChunkData() const override;
    // IPortRecorder
    void Replay(IPortWriteList* list, bool invalidate = true) override;
    void StartRecording(IPortWriteList* list) override;
    void StopRecording() override;

    // Whether this is a port of chunk data, whose addresses may count from the end.
    bool IsChunkPort() const;
    // Inside: the caller holds the lock. AccessException while nothing is connected.
    void ReadDevice(void* buffer, int64_t address, int64_t length);
    void WriteDevice(const void* buffer, int64_t address, int64_t length);

  protected:
    EAccessMode PartsAccessMode() override;

  private:
    // A constant, or the value of another node.
    GENICAM_NAMESPACE::gcstring ChunkId() const;

    const PortData& data_;
    IPort* port_ = nullptr;  // not owned
    IPortWriteList* recording_ = nullptr;
};

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE
