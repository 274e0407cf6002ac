// A port over one chunk of a buffer.
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

// The device behind a port node with a ChunkID: NA until AttachChunk, then RO. The node must
// outlive the object.
//
// The chunk is read from the buffer itself. If the description asks for a cached chunk
// (CacheChunkData), the object copies it and keeps the copy without the buffer.
//
// Thread-bound, except for GetAccessMode and Read, which the node map calls. Hold the lock of the
// map for AttachChunk, DetachChunk, UpdateBuffer, DetachBuffer and ClearCache. After AttachChunk,
// and when one of the others returns true, the contents have changed: invalidate the node once the
// lock is released.
// invalidates the node once the lock is free.
class GENAPI_DECL CChunkPort : public IPort {
  public:
    // Does not connect. HasChunkID must hold for the node.
    explicit CChunkPort(INode* pNode);
    // Disconnects; catches exceptions of callbacks.
    ~CChunkPort() override;
    CChunkPort(const CChunkPort&) = delete;
    CChunkPort& operator=(const CChunkPort&) = delete;

    // Whether the node is a port for chunks.
    static bool HasChunkID(INode* pNode);

    // These invalidate the port node.
    void Connect();
    void Disconnect();

    // Reads the id again if another node provides it. A port without a readable id has no chunk.
    void UpdateChunkID();
    // Compares with an id in capital hexadecimal digits without leading zeros; empty for 0.
    bool CheckChunkID(const std::string& ChunkID) const;

    // The chunk must lie within the buffer. MaxCacheSize: the longest chunk that is copied, -1 for
    // any.
    void AttachChunk(const uint8_t* pBuffer, int64_t Offset, int64_t Length, int64_t MaxCacheSize);
    // The current buffer does not have this chunk.
    bool DetachChunk();
    // Another buffer has the chunk at the same place.
    bool UpdateBuffer(const uint8_t* pBuffer);
    // The buffer is no longer valid; a copy stays.
    bool DetachBuffer();
    // Drops a copy, unless it belongs to the current buffer.
    bool ClearCache();

    INode* GetNode() const;

    EAccessMode GetAccessMode() const override;
    // AccessException without a chunk, RuntimeException outside it.
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
    bool m_HasID;  // whether the id is known and a number
    bool m_IsConnected;
    bool m_IsInBuffer;  // the current buffer has the chunk, at m_Offset
    bool m_HasChunk;
    bool m_IsCopied;
    const uint8_t* m_pChunk;
    int64_t m_Offset;
    int64_t m_Length;
    std::vector<uint8_t> m_Copy;
};

}  // namespace GENAPI_NAMESPACE

#endif  // GENAPI_CHUNKPORT_H
