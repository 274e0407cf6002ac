// Chunk data whose places the transport layer provides.
#ifndef GENAPI_CHUNKADAPTERGENERIC_H
#define GENAPI_CHUNKADAPTERGENERIC_H

#include <cstddef>
#include <cstdint>

#include <Base/GCString.h>
#include <GenApi/ChunkAdapter.h>

namespace GENAPI_NAMESPACE {

using SingleChunkData_t = struct _SingleChunkData_t {
    uint64_t ChunkID;
    ptrdiff_t ChunkOffset;
    size_t ChunkLength;
};

// ChunkID is in hexadecimal digits, without "0x".
using SingleChunkDataStr_t = struct _SingleChunkDataStr_t {
    GENICAM_NAMESPACE::gcstring ChunkID;
    ptrdiff_t ChunkOffset;
    size_t ChunkLength;
};

// A list gives the place of each chunk.
class GENAPI_DECL CChunkAdapterGeneric : public CChunkAdapter {
  public:
    CChunkAdapterGeneric(INodeMap* pNodeMap = nullptr, int64_t MaxChunkCacheSize = -1);
    ~CChunkAdapterGeneric() override;

    // Always false: a buffer alone does not show its chunks.
    bool CheckBufferLayout(uint8_t* pBuffer, int64_t BufferLength) override;
    // Always a RuntimeException, because the list is missing.
    void AttachBuffer(uint8_t* pBuffer, int64_t BufferLength,
                      AttachStatistics_t* pAttachStatistics = nullptr) override;

    // RuntimeException if a chunk exceeds the buffer; nothing changes then.
    virtual void AttachBuffer(uint8_t* pBuffer, int64_t BufferLength, SingleChunkData_t* ChunkData,
                              int64_t NumChunks, AttachStatistics_t* pAttachStatistics = nullptr);
    virtual void AttachBuffer(uint8_t* pBuffer, int64_t BufferLength,
                              SingleChunkDataStr_t* ChunkData, int64_t NumChunks,
                              AttachStatistics_t* pAttachStatistics = nullptr);
};

}  // namespace GENAPI_NAMESPACE

#endif  // GENAPI_CHUNKADAPTERGENERIC_H
