// Shows the chunk data of a camera's buffers in its node map.
#ifndef GENAPI_CHUNKADAPTER_H
#define GENAPI_CHUNKADAPTER_H

#include <cstddef>
#include <cstdint>
#include <vector>

#include <GenApi/GenApiDll.h>
#include <GenApi/INodeMap.h>

namespace GENAPI_NAMESPACE {

class CChunkPort;
namespace Engine {
struct Chunk;
}

// What AttachBuffer found.
using AttachStatistics_t = struct _AttachStatistics_t {
    int NumChunkPorts;      // port nodes for chunks in the map
    int NumChunks;          // chunks in the buffer
    int NumAttachedChunks;  // chunks with a port node
};

// Shows the chunks of one buffer at a time in the port nodes whose ChunkID is the chunk's id:
//
//   detached --AttachNodeMap--> attached --AttachBuffer--> showing a buffer
//                                        <--DetachBuffer-- (AttachBuffer, UpdateBuffer: the next)
//
// Port nodes read a chunk from the buffer itself, so the buffer must exist until DetachBuffer. A
// port node with CacheChunkData gets a copy instead, unless the chunk is longer than
// MaxChunkCacheSize, and keeps it until another buffer, ClearCaches or DetachNodeMap. After all
// port nodes have changed, those with new contents are invalidated.
//
// Detach or delete the adapter before its map ends. Thread-bound; the nodes' callbacks run in the
// calling thread and must not delete the adapter.
class GENAPI_DECL CChunkAdapter {
  public:
    using AttachStatistics_t = GENAPI_NAMESPACE::AttachStatistics_t;

    // Detaches.
    virtual ~CChunkAdapter();
    CChunkAdapter(const CChunkAdapter&) = delete;
    CChunkAdapter& operator=(const CChunkAdapter&) = delete;

    // Detaches from the previous map, if any, and connects all chunk ports. Null only detaches.
    virtual void AttachNodeMap(INodeMap* pNodeMap);
    // Catches exceptions of callbacks.
    virtual void DetachNodeMap();

    // Whether the buffer has the layout of chunks that the adapter expects.
    virtual bool CheckBufferLayout(uint8_t* pBuffer, int64_t BufferLength) = 0;
    // RuntimeException if the buffer has another layout; nothing changes then.
    virtual void AttachBuffer(uint8_t* pBuffer, int64_t BufferLength,
                              AttachStatistics_t* pAttachStatistics = nullptr) = 0;
    void DetachBuffer();
    // Changes to a buffer with the same length and layout as the attached one.
    // LogicalErrorException if no buffer is attached, InvalidArgumentException for null.
    void UpdateBuffer(uint8_t* pBuffer);
    // Drops the copies of chunks whose buffer is gone.
    void ClearCaches();

  protected:
    // MaxChunkCacheSize: the longest chunk that is copied, -1 for any.
    CChunkAdapter(INodeMap* pNodeMap = nullptr, int64_t MaxChunkCacheSize = -1);

    // The first of several chunks with one id counts. All chunks must lie within the buffer.
    void AttachChunks(const uint8_t* pBuffer, const std::vector<Engine::Chunk>& Chunks,
                      AttachStatistics_t* pAttachStatistics);

    std::vector<CChunkPort*>* m_ppChunkPorts;
    int64_t m_MaxChunkCacheSize;

  private:
    struct CUnattached {};
    CChunkAdapter(CUnattached, int64_t MaxChunkCacheSize);

    template <class Change>
    void ChangePorts(Change change);

    INodeMap* m_pNodeMap;
    bool m_HasBuffer;
};

}  // namespace GENAPI_NAMESPACE

#endif  // GENAPI_CHUNKADAPTER_H
