// One chunk of a buffer, for the registers over it.
#ifndef GENAPI_CHUNKPORT_H
#define GENAPI_CHUNKPORT_H

#include <cstdint>
#include <string>
#include <vector>

#include <GenApi/GenApiDll.h>
#include <GenApi/IChunkPort.h>
#include <GenApi/INode.h>
#include <GenApi/IPort.h>
#include <GenApi/IPortConstruct.h>

namespace GENAPI_NAMESPACE {

// Stands behind a port node with a ChunkID: NA until AttachChunk, then RO. The node must outlive
// the object.
//
// The chunk is read where it is in the buffer. If the description wants the chunk cached
// (CacheChunkData), it is copied, and stays when the buffer goes.
//
// Thread-bound, except for what the node map calls: GetAccessMode and Read. AttachChunk,
// DetachChunk, UpdateBuffer, DetachBuffer and ClearCache want the lock of the map held. After
// AttachChunk, and when one of the others returns true, the contents have changed: the caller
// invalidates the node once the lock is free.
class GENAPI_DECL CChunkPort : public IPort {
  public:
    // Does not connect. The node must be one that HasChunkID.
    explicit CChunkPort(INode* pNode);
    // Disconnects; exceptions of callbacks end here.
    ~CChunkPort() override;
    CChunkPort(const CChunkPort&) = delete;
    CChunkPort& operator=(const CChunkPort&) = delete;

    // Whether the description makes the node a port for chunks.
    static bool HasChunkID(INode* pNode);

    // These invalidate the port node.
    void Connect();
    void Disconnect();

    // Reads the id again if it is the value of a node. A port whose id cannot be read has no chunk.
    void UpdateChunkID();
    // The id in capital hexadecimal digits without leading zeros; empty for 0.
    bool CheckChunkID(const std::string& ChunkID) const;

    // The chunk lies within the buffer. MaxCacheSize: the longest chunk that is copied, -1 for any.
    void AttachChunk(const uint8_t* pBuffer, int64_t Offset, int64_t Length, int64_t MaxCacheSize);
    // The present buffer has no such chunk.
    bool DetachChunk();
    // The chunk at the same place of another buffer.
    bool UpdateBuffer(const uint8_t* pBuffer);
    // The buffer goes; a copy stays.
    bool DetachBuffer();
    // A copy goes, unless it belongs to the present buffer.
    bool ClearCache();

    INode* GetNode() const;

    EAccessMode GetAccessMode() const override;
    // AccessException without chunk, RuntimeException outside of it.
    void Read(void* pBuffer, int64_t Address, int64_t Length) override;
    // Always an AccessException.
    void Write(const void* pBuffer, int64_t Address, int64_t Length) override;

  private:
    bool Clear();

    INode* const m_pNode;
    IPortConstruct* const m_pPortNode;
    IChunkPort* const m_pChunkNode;
    const bool m_HasFixedID;
    std::string m_ChunkID;
    bool m_HasID;  // whether it is known and a number
    bool m_IsConnected;
    bool m_IsInBuffer;  // the present buffer has the chunk, at m_Offset
    bool m_HasChunk;
    bool m_IsCopied;
    const uint8_t* m_pChunk;
    int64_t m_Offset;
    int64_t m_Length;
    std::vector<uint8_t> m_Copy;
};

}  // namespace GENAPI_NAMESPACE

#endif  // GENAPI_CHUNKPORT_H
