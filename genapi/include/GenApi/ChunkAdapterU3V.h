// Chunk data of USB3 Vision cameras.
#ifndef GENAPI_CHUNKADAPTERU3V_H
#define GENAPI_CHUNKADAPTERU3V_H

#include <cstddef>
#include <cstdint>

#include <GenApi/ChunkAdapter.h>

namespace GENAPI_NAMESPACE {

// A buffer is a sequence of chunks: the data, then its id and its length in four bytes each, little
// endian.
class GENAPI_DECL CChunkAdapterU3V : public CChunkAdapter {
  public:
    CChunkAdapterU3V(INodeMap* pNodeMap = nullptr, int64_t MaxChunkCacheSize = -1);
    ~CChunkAdapterU3V() override;

    bool CheckBufferLayout(uint8_t* pBuffer, int64_t BufferLength) override;
    void AttachBuffer(uint8_t* pBuffer, int64_t BufferLength,
                      AttachStatistics_t* pAttachStatistics = nullptr) override;
};

}  // namespace GENAPI_NAMESPACE

#endif  // GENAPI_CHUNKADAPTERU3V_H
