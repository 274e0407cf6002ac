// Chunk data of USB3 Vision cameras.
#ifndef GENAPI_CHUNKADAPTERU3V_H
#define GENAPI_CHUNKADAPTERU3V_H

#include <cstddef>
#include <cstdint>

#include <GenApi/ChunkAdapter.h>

namespace GENAPI_NAMESPACE {

// A buffer is a row of chunks, each with its data first and then, little endian, its id and the
// length of the data, four bytes each.
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
