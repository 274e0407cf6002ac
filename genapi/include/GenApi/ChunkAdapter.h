// Chunk data of a camera's buffers in its node map.
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
    int NumAttachedChunks;  // those that a port node takes
};

// Shows the chunks of one buffer at a time in the port nodes whose ChunkID is the chunk's id:
//
//   detached --AttachNodeMap--> attached --AttachBuffer--> showing a buffer
//                                        <--DetachBuffer-- (AttachBuffer, UpdateBuffer: the next)
//
// A chunk is read from the buffer itself, so the buffer must stay until DetachBuffer. A port node
// with CacheChunkData gets a copy instead, unless the chunk is longer than the MaxChunkCacheSize,
// and keeps it until another buffer, ClearCaches or DetachNodeMap. All port nodes whose contents
// change are invalidated, after all of them have changed.
//
// The adapter must be detached or deleted before its map ends. Thread-bound; callbacks of the nodes
// run in the calling thread, and must not delete the adapter.
class GENAPI_DECL CChunkAdapter {
  public:
    using AttachStatistics_t = GENAPI_NAMESPACE::AttachStatistics_t;

    // Detaches.
    virtual ~CChunkAdapter();
    CChunkAdapter(const CChunkAdapter&) = delete;
    CChunkAdapter& operator=(const CChunkAdapter&) = delete;

    // Detaches from the former map, if any, and connects all chunk ports. Null only detaches.
    virtual void AttachNodeMap(INodeMap* pNodeMap);
    // Exceptions of callbacks end here.
    virtual void DetachNodeMap();

    // Whether the buffer consists of chunks as the adapter expects them.
    virtual bool CheckBufferLayout(uint8_t* pBuffer, int64_t BufferLength) = 0;
    // RuntimeException, and nothing changes, if it does not.
    virtual void AttachBuffer(uint8_t* pBuffer, int64_t BufferLength,
                              AttachStatistics_t* pAttachStatistics = nullptr) = 0;
    void DetachBuffer();
    // A buffer with the same length and layout as the one that is attached. LogicalErrorException
    // when none is, InvalidArgumentException for null.
    void UpdateBuffer(uint8_t* pBuffer);
    // Drops the copies that outlived their buffer.
    void ClearCaches();

  protected:
    // MaxChunkCacheSize: the longest chunk that is copied, -1 for any.
    CChunkAdapter(INodeMap* pNodeMap = nullptr, int64_t MaxChunkCacheSize = -1);

    // Of several chunks with one id the first counts. The chunks must lie within the buffer.
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
