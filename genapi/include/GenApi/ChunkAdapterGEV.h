// Chunk data of GigE Vision cameras.
#ifndef GENAPI_CHUNKADAPTERGEV_H
#define GENAPI_CHUNKADAPTERGEV_H

#include <cstddef>
#include <cstdint>

#include <GenApi/ChunkAdapter.h>

namespace GENAPI_NAMESPACE {

// A buffer is a sequence of chunks: the data, then its id and its length in four bytes each, big
// endian.
class GENAPI_DECL CChunkAdapterGEV : public CChunkAdapter {
  public:
    CChunkAdapterGEV(INodeMap* pNodeMap = nullptr, int64_t MaxChunkCacheSize = -1);
    ~CChunkAdapterGEV() override;

    bool CheckBufferLayout(uint8_t* pBuffer, int64_t BufferLength) override;
    void AttachBuffer(uint8_t* pBuffer, int64_t BufferLength,
                      AttachStatistics_t* pAttachStatistics = nullptr) override;
};

}  // namespace GENAPI_NAMESPACE

#endif  // GENAPI_CHUNKADAPTERGEV_H
